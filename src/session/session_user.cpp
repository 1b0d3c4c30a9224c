#include "session/session_user.hpp"

namespace fnrk::session {
namespace {

MessageLanguage& LanguageSlot() {
    static MessageLanguage language = MessageLanguage::French;
    return language;
}

}  // namespace

SessionUser& CurrentUser() {
    static SessionUser user;
    return user;
}

MessageLanguage MessageLanguageOf(std::string_view code) {
    if (code == "N") return MessageLanguage::Dutch;
    if (code == "E") return MessageLanguage::English;
    return MessageLanguage::French;
}

void SetMessageLanguage(std::string_view code) {
    LanguageSlot() = MessageLanguageOf(code);
}

MessageLanguage CurrentMessageLanguage() {
    return LanguageSlot();
}

SharedFacadeSettings& SharedFacade() {
    static SharedFacadeSettings settings;
    return settings;
}

}  // namespace fnrk::session
