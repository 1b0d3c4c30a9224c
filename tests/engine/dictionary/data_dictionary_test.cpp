// The dictionary file on its own: what it keeps across a reload, that it keeps no password
// readable, and that refused changes leave the file as it was.

#include <gtest/gtest.h>

#include <filesystem>

#include "engine/constants.hpp"
#include "engine/dictionary/data_dictionary.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine::dictionary {
namespace {

class DataDictionaryTest : public ::testing::Test {
  protected:
    void SetUp() override {
        testing::WriteFileBytes(dir / "SOC1_act.dbf", "table bytes");
        std::string message;
        ASSERT_EQ(DataDictionary::Create(Path(), false, "Data Dictionnary", dictionary, message),
                  AE_SUCCESS)
            << message;
    }
    std::string Path() const { return (dir / "SOC1.add").string(); }
    DataDictionary Reloaded() {
        DataDictionary loaded;
        std::string message;
        EXPECT_EQ(DataDictionary::Load(Path(), loaded, message), AE_SUCCESS) << message;
        return loaded;
    }

    testing::TempDir dir;
    DataDictionary dictionary;
    std::string message;
};

TEST_F(DataDictionaryTest, KeepsEntriesAcrossAReloadAndNoPasswordInClear) {
    EXPECT_EQ(dictionary.CheckLogin("adssys", "anything"), AE_SUCCESS);  // none set yet
    ASSERT_EQ(dictionary.SetDatabaseProperty(ADS_DD_ADMIN_PASSWORD, "Adm1n-pw", message),
              AE_SUCCESS);
    ASSERT_EQ(dictionary.SetDatabaseProperty(ADS_DD_ENCRYPT_TABLE_PASSWORD, "T4ble-pw", message),
              AE_SUCCESS);
    ASSERT_EQ(dictionary.SetDatabaseProperty(ADS_DD_MAX_FAILED_ATTEMPTS, "5", message), AE_SUCCESS);
    ASSERT_EQ(dictionary.CreateUser("", "SYSTEM", "S3sam-first", "SYSTEM ADMINISTRATOR", message),
              AE_SUCCESS);
    ASSERT_EQ(dictionary.SetUserProperty("system", ADS_DD_USER_PASSWORD, "S3sam-second", message),
              AE_SUCCESS);
    ASSERT_EQ(dictionary.AddTable({"ACT", "SOC1_act.dbf", ADS_CDX, ADS_ANSI, "", ""}, message),
              AE_SUCCESS)
        << message;
    ASSERT_EQ(
        dictionary.AddView({"VIEWACF", "SELECT * FROM ACF where ACF.SECRET = false", ""}, message),
        AE_SUCCESS);

    const std::string bytes = testing::ReadFileBytes(Path());
    for (const char* secret : {"Adm1n-pw", "T4ble-pw", "S3sam-first", "S3sam-second"})
        EXPECT_EQ(bytes.find(secret), std::string::npos) << secret;

    const DataDictionary loaded = Reloaded();
    EXPECT_EQ(loaded.CheckLogin("ADSSYS", "Adm1n-pw"), AE_SUCCESS);
    EXPECT_EQ(loaded.CheckLogin("ADSSYS", "anything"), AE_INVALID_PASSWORD);
    EXPECT_EQ(loaded.CheckLogin("SYSTEM", "S3sam-second"), AE_SUCCESS);
    EXPECT_EQ(loaded.CheckLogin("SYSTEM", "S3sam-first"), AE_INVALID_PASSWORD);
    EXPECT_EQ(loaded.CheckLogin("NOBODY", "S3sam-second"), AE_INVALID_USERNAME);
    EXPECT_EQ(loaded.DatabaseProperty(ADS_DD_MAX_FAILED_ATTEMPTS), "5");
    EXPECT_EQ(loaded.DatabaseProperty(ADS_DD_ADMIN_PASSWORD), std::nullopt);
    ASSERT_NE(loaded.FindUser("system"), nullptr);
    EXPECT_EQ(loaded.FindUser("system")->description, "SYSTEM ADMINISTRATOR");
    ASSERT_NE(loaded.FindView("viewacf"), nullptr);
    EXPECT_EQ(loaded.FindView("viewacf")->sql, "SELECT * FROM ACF where ACF.SECRET = false");
    ASSERT_NE(loaded.FindTable("act"), nullptr);
    EXPECT_EQ(loaded.TablePath(*loaded.FindTable("act")), (dir / "SOC1_act.dbf").string());
}

TEST_F(DataDictionaryTest, TablesFollowTheirFolderWhenItMoves) {
    ASSERT_EQ(dictionary.AddTable({"ACT", "SOC1_act.dbf", ADS_CDX, ADS_ANSI, "", ""}, message),
              AE_SUCCESS);
    testing::TempDir elsewhere;
    // Entry by entry: MinGW's copy of a whole folder refuses a target folder that exists.
    for (const auto& entry : std::filesystem::directory_iterator(dir.path()))
        std::filesystem::copy(entry.path(), elsewhere.path() / entry.path().filename(),
                              std::filesystem::copy_options::recursive);
    DataDictionary moved;
    ASSERT_EQ(DataDictionary::Load((elsewhere / "SOC1.add").string(), moved, message), AE_SUCCESS);
    EXPECT_EQ(moved.TablePath(*moved.FindTable("ACT")), (elsewhere / "SOC1_act.dbf").string());
}

TEST_F(DataDictionaryTest, RefusalsLeaveTheFileAsItWas) {
    ASSERT_EQ(dictionary.AddTable({"ACT", "SOC1_act.dbf", ADS_CDX, ADS_ANSI, "", ""}, message),
              AE_SUCCESS);
    ASSERT_EQ(dictionary.CreateUser("", "SYSTEM", "pw", "", message), AE_SUCCESS);
    const std::string before = testing::ReadFileBytes(Path());

    EXPECT_EQ(dictionary.AddTable({"act", "SOC1_act.dbf", ADS_CDX, ADS_ANSI, "", ""}, message),
              AE_INVALID_OBJECT_NAME);
    EXPECT_EQ(dictionary.AddView({"ACT", "SELECT 1", ""}, message), AE_INVALID_OBJECT_NAME);
    EXPECT_EQ(dictionary.AddView({" ", "SELECT 1", ""}, message), AE_INVALID_OBJECT_NAME);
    EXPECT_EQ(dictionary.AddView({"V", "  ", ""}, message), AE_INVALID_STATEMENT);
    EXPECT_EQ(dictionary.AddTable({"ACF", "SOC1_acf.dbf", ADS_CDX, ADS_ANSI, "", ""}, message),
              AE_FILE_NOT_FOUND);
    EXPECT_NE(message.find("SOC1_acf.dbf"), std::string::npos);
    EXPECT_EQ(dictionary.CreateUser("", "system", "pw", "", message), AE_INVALID_USERNAME);
    EXPECT_EQ(dictionary.CreateUser("", "ADSSYS", "pw", "", message), AE_INVALID_USERNAME);
    EXPECT_EQ(dictionary.SetUserProperty("NOBODY", ADS_DD_USER_PASSWORD, "x", message),
              AE_INVALID_USERNAME);
    EXPECT_EQ(dictionary.SetUserProperty("SYSTEM", ADS_DD_ADMIN_PASSWORD, "x", message),
              AE_INVALID_PROPERTY_ID);
    EXPECT_EQ(dictionary.SetDatabaseProperty(ADS_DD_USER_PASSWORD, "x", message),
              AE_INVALID_PROPERTY_ID);
    EXPECT_EQ(testing::ReadFileBytes(Path()), before);

    DataDictionary again;
    EXPECT_EQ(DataDictionary::Create(Path(), false, "", again, message),
              AE_DICTIONARY_ALREADY_EXISTS);
    EXPECT_EQ(testing::ReadFileBytes(Path()), before);
    EXPECT_EQ(
        DataDictionary::Create((dir / "missing" / "x.add").string(), false, "", again, message),
        AE_INVALID_PATH);
}

TEST_F(DataDictionaryTest, ForeignOrDamagedFilesAreRefused) {
    DataDictionary loaded;
    const std::string full = testing::ReadFileBytes(Path());
    const std::vector<std::string> bad = {
        "", "not json", "{\"format\": \"something else\", \"version\": 1}",
        full.substr(0, full.size() / 2),
        std::string(full).replace(full.find("\"version\": 1"), 12, "\"version\": 9")};
    for (const std::string& bytes : bad) {
        testing::WriteFileBytes(dir / "bad.add", bytes);
        EXPECT_EQ(DataDictionary::Load((dir / "bad.add").string(), loaded, message),
                  AE_INVALID_DICTIONARY_FILE)
            << bytes;
    }
    EXPECT_EQ(DataDictionary::Load((dir / "none.add").string(), loaded, message),
              AE_FILE_NOT_FOUND);
}

}  // namespace
}  // namespace fnrk::engine::dictionary
