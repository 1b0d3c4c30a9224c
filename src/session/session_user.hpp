#pragma once

// The process-wide session state that the configuration and path classes read: the current user,
// the message language and the settings the façade shares. The users module and the façade fill
// them; everything below the façade only reads them.

#include <string>
#include <string_view>

namespace fnrk::session {

// The current user as far as the session needs it.
struct SessionUser {
    std::string Name;
    std::string language;
    std::string Rights;
    std::string Password;
};

SessionUser& CurrentUser();

enum class MessageLanguage { French, Dutch, English };

// "N" selects Dutch, "E" English, anything else French.
MessageLanguage MessageLanguageOf(std::string_view code);
void SetMessageLanguage(std::string_view code);
MessageLanguage CurrentMessageLanguage();

// The settings a caller hands to the shared façade, read by modules that need one.
struct SharedFacadeSettings {
    std::string TempPath;
    std::string OrgPath;
    std::string UserDbfPath;
    std::string language;
    bool TestMode = false;
    std::string INIfile;
    bool IsFiduc = false;
    std::string ProtectedBy;
};

SharedFacadeSettings& SharedFacade();

}  // namespace fnrk::session
