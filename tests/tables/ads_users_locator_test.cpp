// The users-table locator answered by AdsClass, and the shared table-access object installing it.

#include <gtest/gtest.h>

#include "platform/paths.hpp"
#include "session/api_ini.hpp"
#include "tables/ads_fixture.hpp"
#include "tables/ads_users_locator.hpp"
#include "tables/shared_tables.hpp"

namespace fnrk::tables::ads_testing {
namespace {

using namespace engine;  // status and option numbers

// Creates "USERS.DBF" in `folder` through `ads`'s dispatch.
void CreateUsersTable(AdsClass& ads, const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    Handle table = 0;
    ASSERT_EQ(ads.Database().CreateTable(0, (folder / "USERS.DBF").string(), "USERS", ADS_CDX,
                                         ADS_ANSI, ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0,
                                         "NAME,C,15,0", table),
              AE_SUCCESS);
    ASSERT_EQ(ads.Database().CloseTable(table), AE_SUCCESS);
}

TEST_P(AdsFilesTest, TheUsersFolderIsThatOfTheOpenUsersTable) {
    const AdsUsersTableLocator locator(ads);
    EXPECT_EQ(locator.OpenUsersTableFolder(), std::nullopt);
    CreateUsersTable(ads, folder / "USERS");
    ASSERT_EQ(ads.FileOpenExternal("users", (folder / "USERS" / "USERS.DBF").string()), AE_SUCCESS);
    EXPECT_EQ(locator.OpenUsersTableFolder(), (folder / "USERS").string() + platform::kPathSep);
    ASSERT_EQ(ads.FileClose("USERS"), AE_SUCCESS);
    EXPECT_EQ(locator.OpenUsersTableFolder(), std::nullopt);
}

TEST(SharedTables, TheSharedObjectAnswersTheSessionsUsersQuestion) {
    fnrk::testing::TempDir folder;
    AdsClass& ads = SharedAdsClass();
    EXPECT_EQ(&ads, &SharedAdsClass());
    EXPECT_EQ(&ads.Database(), &SharedSqlDatabase());
    const session::UsersTableLocator* told = session::SharedApiIni().UsersTable();
    ASSERT_NE(told, nullptr);
    EXPECT_EQ(told->OpenUsersTableFolder(), std::nullopt);
    CreateUsersTable(ads, folder / "USERS");
    ASSERT_EQ(ads.FileOpenExternal("USERS", (folder / "USERS" / "USERS.DBF").string()), AE_SUCCESS);
    EXPECT_EQ(told->OpenUsersTableFolder(), (folder / "USERS").string() + platform::kPathSep);
    ads.FileClose("USERS");
    ads.disconnect();
}

}  // namespace
}  // namespace fnrk::tables::ads_testing
