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

void SetMessageLanguage(std::string_view code) {
    if (code == "N") {
        LanguageSlot() = MessageLanguage::Dutch;
    } else if (code == "E") {
        LanguageSlot() = MessageLanguage::English;
    } else {
        LanguageSlot() = MessageLanguage::French;
    }
}

MessageLanguage CurrentMessageLanguage() {
    return LanguageSlot();
}

SharedFacadeSettings& SharedFacade() {
    static SharedFacadeSettings settings;
    return settings;
}

}  // namespace fnrk::session
