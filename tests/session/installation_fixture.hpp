#pragma once

// A sample installation in a temporary folder: program folder "<root>/PRG", the shared
// "FennRick.ini" in the root, the users folder "<root>/USERS", a settings file of its own. The
// process-wide state it changes is put back afterwards.

#include <string>

#include <gtest/gtest.h>

#include "platform/paths.hpp"
#include "session/session_user.hpp"
#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::session {

class InstallationTest : public ::testing::Test {
  protected:
    InstallationTest();
    ~InstallationTest() override;

    std::string Root() const { return dir_.path().string(); }
    // `relative` ("a/b/") under the root, in the host's separators.
    std::string Path(std::string relative) const;
    std::string Users() const { return Path("USERS"); }
    std::string SharedIni() const { return Path("FennRick.ini"); }
    std::string PreferenceIni(const std::string& user) const;
    // Writes a file under the root, its folders included.
    void Write(const std::string& relativePath, const std::string& content) const;

    fnrk::testing::TempDir dir_;
    fnrk::testing::ScopedEnvironment settings_{"FNRK_SETTINGS_FILE", Path("settings.ini")};
    fnrk::testing::ScopedEnvironment mainPath_{"FNRK_MAIN_PATH", Root()};
    fnrk::testing::ScopedEnvironment userCode_{"FNRK_USER_CODE", std::nullopt};

  private:
    std::string savedProgramFolder_;
    SessionUser savedUser_;
};

}  // namespace fnrk::session
