#include "installation_fixture.hpp"

#include <filesystem>
#include <utility>

#include "support/host_separators.hpp"

namespace fnrk::session {

InstallationTest::InstallationTest()
    : savedProgramFolder_(platform::ProgramFolder()), savedUser_(CurrentUser()) {
    std::filesystem::create_directories(dir_ / "PRG");
    std::filesystem::create_directories(dir_ / "USERS");
    platform::SetProgramFolder(Path("PRG"));
    CurrentUser() = SessionUser{"ANN", "F", "", ""};
}

InstallationTest::~InstallationTest() {
    platform::SetProgramFolder(savedProgramFolder_);
    CurrentUser() = savedUser_;
}

std::string InstallationTest::PreferenceIni(const std::string& user) const {
    return Path("USERS/UsersPrefs/") + user + ".ini";
}

std::string InstallationTest::Path(std::string relative) const {
    return Root() + platform::kPathSep + fnrk::testing::HostSeparators(std::move(relative));
}

void InstallationTest::Write(const std::string& relativePath, const std::string& content) const {
    const std::filesystem::path file = dir_ / relativePath;
    std::filesystem::create_directories(file.parent_path());
    fnrk::testing::WriteFileBytes(file, content);
}

}  // namespace fnrk::session
