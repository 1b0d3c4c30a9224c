#pragma once

// user: the person working in the session. The calling application fills one after its own
// log-on dialog; the façade makes it the process-wide current user (shared_user.hpp). It
// answers what the rest of the system asks about that person: administrator or not, may use a
// menu function, right password for a user row, chosen language, logged on elsewhere, private
// folder.
//
// The user register is "USERS.DBF" in the users folder (ApiIni::GetUserDbfPath), open under
// the alias "USERS"; names are compared upper case and blank-padded to 15 characters, and
// deleted rows are never found. The user "SYSTEM" has one row per company (NAME with
// CODESOC); every other user is found by name alone.
//
// Log-ons. The log-on table "USERSLOG.DBF" (fields NAME C 15, LOGGED L) lives in the "USERS"
// subfolder of the users folder, one row per user. The workstation that logs a user on is the
// one that writes and holds that row: CheckAccess adds the row when missing, takes its record
// lock, writes LOGGED true and keeps the lock (the table stays open as "LOGUSERS") until
// LogOff, UnRegister or the end of the process. A user counts as logged on while LOGGED is true
// AND another open of the table holds the row lock; LOGGED alone is not trusted, since a
// workstation that crashed leaves it true but loses its lock with its process. The lock is
// tested by trying to take it without asking the user: the engine's lock test only reports the
// caller's own locks. The password the user typed is held in the object but has no public
// member: only the library's own code reaches it (user_password.hpp).

#include <string>
#include <string_view>

namespace fnrk::tables {
class AdsClass;
}

namespace fnrk::users {

class user {
  public:
    // Works on the process's shared table access.
    user();
    // `tables` must outlive this object.
    explicit user(tables::AdsClass& tables);
    ~user();
    user(const user& other);
    user& operator=(const user& other);

    const std::string& Name() const { return name_; }
    void Name(std::string name) { name_ = std::move(name); }
    const std::string& language() const { return language_; }
    void language(std::string language) { language_ = std::move(language); }
    const std::string& Rights() const { return rights_; }
    void Rights(std::string rights) { rights_ = std::move(rights); }

    // Stores name, language, password and rights; the first argument is not used.
    void Register(std::string_view unused, std::string_view name, std::string_view language,
                  std::string_view password, std::string_view rights);
    // Blanks the four stored values, and ends a log-on this object registered.
    void UnRegister();

    // The numeric value of the rights' first character, as text.
    std::string Level() const;
    bool IsAdministrator() const;
    // The user may use the menu function `menuCode` (any case); see menu_rights.hpp.
    bool IsAccess(std::string_view menuCode) const;

    // Logs `userName` on: false when another workstation has that user logged on (or the
    // dossier set on the table access has no parameter table, or the log-on table cannot be
    // opened or written); otherwise the row is held as described above and true is returned.
    // A log-on this object held for another user ends first.
    bool CheckAccess(std::string_view userName);
    // Ends the log-on this object holds: LOGGED false, the row unlocked, the table closed.
    void LogOff();
    // `userName` is logged on, here or on another workstation. When the log-on table cannot be
    // opened, the log-file message is shown and the answer is false.
    bool IsUserLoggedInDossier(std::string_view userName);

    // The user register has a row of `userName` for the company `companyCode`.
    bool IsUserAccessInDossier(std::string_view userName, std::string_view companyCode);
    // This object's password is right for the row of `userName` (and, for "SYSTEM" in any case,
    // of `companyCode`): equal in upper case on 15 characters, or the stored one is blank (which
    // admits any password, deliberately). False when the row is missing. The register is
    // opened as "USERS" when it is not open yet.
    bool CheckPasswordOfUser(std::string_view userName, std::string_view companyCode);
    // The language letter of this object's user in the open register; empty when "USERS" is
    // not open or the user has no row.
    std::string GetLanguageOfCurrentUser();
    // The first company (by code) whose PATH starts with "11" or "02" among the rows of
    // `userName`, read with AlternateDossierStatement: its code and PATH. A register kept in
    // SQL offers no statements: its rows are walked for the same answer. False for "SYSTEM",
    // when no row matches, or when the register cannot be opened.
    bool GetAlternateUsernameAndDossier(std::string_view userName, std::string& companyCode,
                                        std::string& folder);
    // The user's private folder: the users folder, "USERS", then the user name; both folders
    // are created when missing. Empty, after the message "Error getting user private path",
    // when the users folder is not known.
    std::string PrefsPath();

  private:
    friend const std::string& UserPassword(const user& person);
    friend void SetUserPassword(user& person, std::string password);

    // Opens the register as "USERS" when it is not open; false when it cannot be.
    bool OpenUsersTable();
    // Positions "USERS" on the row of `userName` (with `companyCode` for "SYSTEM", or when
    // `byCompany` is set); false when missing.
    bool LocateUserRow(std::string_view userName, std::string_view companyCode, bool byCompany);
    // The first row (by company code) for GetAlternateUsernameAndDossier, by the statement or
    // by walking the register; its code and PATH as stored.
    bool FirstAlternateByStatement(std::string_view userName, std::string& code, std::string& path);
    bool FirstAlternateByWalk(std::string_view userName, std::string& code, std::string& path);

    tables::AdsClass* tables_;
    std::string name_;
    std::string language_;
    std::string password_;
    std::string rights_;
    // The name (padded) whose log-on row this object holds; empty when none.
    std::string loggedOn_;
};

// The statement GetAlternateUsernameAndDossier runs, with the name in upper case, trimmed, and
// every quote doubled so that no name can change the statement.
std::string AlternateDossierStatement(std::string_view userName);

// The start of the message shown when the log-on table cannot be opened (error code 10), in the
// process's message language; empty for other codes. The caller adds the detail and ")".
std::string LogFileMessage(int errorCode);

// A user name as the register keeps it: trimmed, upper case, blank-padded and cut to 15.
std::string RegisterName(std::string_view userName);

}  // namespace fnrk::users
