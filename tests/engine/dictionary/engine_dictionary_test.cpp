// A dossier put under a data dictionary as the library does it: the dictionary with its
// properties, its user, its tables and the two views that hide secret accounts; then a login
// as that user opens the tables by name, encrypted ones included, and queries the views.

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>

#include "engine/sql/sql_fixture.hpp"

namespace fnrk::engine {
namespace {

constexpr const char* kPassword = "dossier key";

class EngineDictionaryTest : public SqlTest {
  protected:
    void SetUp() override {
        SqlTest::SetUp();
        Create("SOC1_act", "ACCOUNTGL,C,10;AMOUNT,N,12,2");
        Create("SOC1_acf", "NUMBER,C,10;SECRET,L;TITLE,C,30");
        Handle none = 0;
        ASSERT_EQ(Run("INSERT INTO SOC1_acf (NUMBER, SECRET, TITLE) VALUES ('400000', false, "
                      "'Clients'), ('550000', true, 'Banque'), ('600000', false, 'Achats')",
                      none),
                  AE_SUCCESS)
            << LastErrorText();
        ASSERT_EQ(Run("INSERT INTO SOC1_act (ACCOUNTGL, AMOUNT) VALUES ('400000', 10), "
                      "('550000', 20), ('600000', 30), ('400000', 40), ('700000', 50)",
                      none),
                  AE_SUCCESS)
            << LastErrorText();
    }

    std::string DictionaryPath() const { return (dir / "SOC1.add").string(); }

    // The steps of putting a dossier under its dictionary.
    void Build() {
        Handle created = 0;
        ASSERT_EQ(engine.DDCreate(DictionaryPath(), 1, "Data Dictionnary", created), AE_SUCCESS)
            << LastErrorText();
        Handle admin = 0;
        ASSERT_EQ(
            engine.Connect60(DictionaryPath(), ADS_LOCAL_SERVER, "ADSSYS", kPassword, 0, admin),
            AE_SUCCESS);
        for (std::uint16_t property : {107, 108, 109})
            ASSERT_EQ(engine.DDSetDatabaseProperty(admin, property, "0"), AE_SUCCESS);
        ASSERT_EQ(engine.DDCreateUser(admin, "", "SYSTEM", kPassword, "SYSTEM ADMINISTRATOR"),
                  AE_SUCCESS);
        ASSERT_EQ(engine.DDSetUserProperty(admin, "SYSTEM", ADS_DD_USER_PASSWORD, kPassword),
                  AE_SUCCESS);
        ASSERT_EQ(engine.DDSetDatabaseProperty(admin, ADS_DD_ADMIN_PASSWORD, kPassword),
                  AE_SUCCESS);
        ASSERT_EQ(engine.DDAddTable(admin, "ACT", "SOC1_act.dbf", ADS_CDX, ADS_ANSI, "", ""),
                  AE_SUCCESS)
            << LastErrorText();
        ASSERT_EQ(engine.DDAddTable(admin, "ACF", "SOC1_acf.dbf", ADS_CDX, ADS_ANSI, "", ""),
                  AE_SUCCESS);
        ASSERT_EQ(
            engine.DDAddView(admin, "VIEWACF", "", "SELECT * FROM ACF where ACF.SECRET = false"),
            AE_SUCCESS)
            << LastErrorText();
        ASSERT_EQ(engine.DDAddView(admin, "VIEWACT", "",
                                   "SELECT * FROM ACT,ACF WHERE ACT.accountgl = ACF.number and "
                                   "ACF.secret=false"),
                  AE_SUCCESS)
            << LastErrorText();
        ASSERT_EQ(engine.Disconnect(admin), AE_SUCCESS);
        ASSERT_EQ(engine.Disconnect(created), AE_SUCCESS);
    }

    Handle Login(const std::string& user, const std::string& password) {
        Handle handle = 0;
        EXPECT_EQ(engine.Connect60(DictionaryPath(), ADS_LOCAL_SERVER, user, password, 0, handle),
                  AE_SUCCESS);
        return handle;
    }

    // ACT amounts of accounts that are in ACF and not secret, found by navigation.
    std::multiset<std::string> OpenAmounts() {
        std::set<std::string> open;
        const Handle acf = Open("SOC1_acf");
        for (const auto& row : Rows(acf, {"NUMBER", "SECRET"}))
            if (row[1] == "F") open.insert(row[0]);
        std::multiset<std::string> amounts;
        const Handle act = Open("SOC1_act");
        for (const auto& row : Rows(act, {"ACCOUNTGL", "AMOUNT"}))
            if (open.contains(row[0])) amounts.insert(row[1]);
        EXPECT_EQ(engine.CloseTable(acf), AE_SUCCESS);
        EXPECT_EQ(engine.CloseTable(act), AE_SUCCESS);
        return amounts;
    }

    std::multiset<std::string> ViewAmounts(Handle user) {
        Handle statement = 0;
        EXPECT_EQ(engine.CreateSQLStatement(user, statement), AE_SUCCESS);
        Handle cursor = 0;
        EXPECT_EQ(engine.ExecuteSQLDirect(statement, "SELECT AMOUNT FROM VIEWACT", cursor),
                  AE_SUCCESS)
            << LastErrorText();
        std::multiset<std::string> amounts;
        for (const auto& row : Rows(cursor, {"AMOUNT"})) amounts.insert(row[0]);
        return amounts;
    }
};

TEST_F(EngineDictionaryTest, UserOpensTablesByNameAndQueriesTheViews) {
    const std::multiset<std::string> expected = OpenAmounts();
    ASSERT_EQ(expected.size(), 3U);
    Build();

    Handle refused = 0;
    EXPECT_EQ(
        engine.Connect60(DictionaryPath(), ADS_LOCAL_SERVER, "SYSTEM", "dossier kez", 0, refused),
        AE_INVALID_PASSWORD);
    EXPECT_EQ(engine.Connect60(DictionaryPath(), ADS_LOCAL_SERVER, "ADSSYS", "", 0, refused),
              AE_INVALID_PASSWORD);
    EXPECT_EQ(engine.Connect60(DictionaryPath(), ADS_LOCAL_SERVER, "NOBODY", kPassword, 0, refused),
              AE_INVALID_USERNAME);
    EXPECT_EQ(refused, 0);

    const Handle user = Login("system", kPassword);
    Handle acf = 0;
    ASSERT_EQ(engine.OpenTable(user, "ACF", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                               ADS_IGNORERIGHTS, ADS_SHARED, acf),
              AE_SUCCESS)
        << LastErrorText();
    std::string name;
    ASSERT_EQ(engine.GetTableFilename(acf, ADS_BASENAME, name), AE_SUCCESS);
    EXPECT_EQ(name, "SOC1_acf");
    EXPECT_EQ(ViewAmounts(user), expected);

    // Only the administrator changes the dictionary.
    EXPECT_EQ(engine.DDCreateUser(user, "", "OTHER", "x", ""), AE_PERMISSION_DENIED);
    EXPECT_EQ(engine.DDCreateUser(connection, "", "OTHER", "x", ""), AE_INVALID_DICTIONARY_HANDLE);
}

TEST_F(EngineDictionaryTest, EncryptedTablesOpenWithTheLoginPassword) {
    const std::multiset<std::string> expected = OpenAmounts();
    const Handle act = Open("SOC1_act", ADS_EXCLUSIVE);
    ASSERT_EQ(engine.EnableEncryption(act, kPassword), AE_SUCCESS);
    ASSERT_EQ(engine.EncryptTable(act), AE_SUCCESS) << LastErrorText();
    ASSERT_EQ(engine.CloseTable(act), AE_SUCCESS);
    Build();

    const Handle user = Login("SYSTEM", kPassword);
    Handle table = 0;
    ASSERT_EQ(engine.OpenTable(user, "ACT", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                               ADS_IGNORERIGHTS, ADS_SHARED, table),
              AE_SUCCESS);
    EXPECT_EQ(String(table, "ACCOUNTGL"), "400000    ");
    EXPECT_EQ(ViewAmounts(user), expected);

    // Through the plain folder connection the table stays locked.
    const Handle plain = Open("SOC1_act");
    EXPECT_TRUE(Eof(plain));
}

TEST_F(EngineDictionaryTest, ViewThatCannotRunIsRefusedWithItsReason) {
    Handle admin = 0;
    ASSERT_EQ(engine.DDCreate(DictionaryPath(), 0, "", admin), AE_SUCCESS);
    const std::string before = testing::ReadFileBytes(DictionaryPath());
    EXPECT_NE(engine.DDAddView(admin, "BROKEN", "", "SELECT NOSUCH FROM SOC1_acf"), AE_SUCCESS);
    EXPECT_NE(LastErrorText().find("BROKEN"), std::string::npos) << LastErrorText();
    EXPECT_EQ(engine.DDAddTable(admin, "X", "SOC1_act.dbf", ADS_NTX, ADS_ANSI, "", ""),
              AE_INVALID_TABLETYPE);
    EXPECT_EQ(testing::ReadFileBytes(DictionaryPath()), before);
    Handle again = 0;
    EXPECT_EQ(engine.DDCreate(DictionaryPath(), 0, "", again), AE_DICTIONARY_ALREADY_EXISTS);
}

TEST_F(EngineDictionaryTest, AViewNameIsAnIdentifierAndAViewOneQuery) {
    Handle admin = 0;
    ASSERT_EQ(engine.DDCreate(DictionaryPath(), 0, "", admin), AE_SUCCESS);
    const std::filesystem::path planted = dir / "planted.db";
    const std::string attach = "ATTACH DATABASE '" + planted.string() + "' AS planted";
    const std::string before = testing::ReadFileBytes(DictionaryPath());
    for (const std::string& name :
         {"V\" AS SELECT 1 AS A; " + attach + "; --", std::string(), std::string("1ST"),
          std::string("TWO WORDS"), std::string("DASH-ED"), std::string(129, 'V')}) {
        EXPECT_EQ(engine.DDAddView(admin, name, "", "SELECT * FROM SOC1_acf"),
                  AE_INVALID_OBJECT_NAME)
            << name;
        EXPECT_NE(LastErrorText().find("view name"), std::string::npos) << LastErrorText();
    }
    for (const std::string& sql :
         {std::string("DELETE FROM SOC1_acf"), "SELECT * FROM SOC1_acf; " + attach,
          std::string("SELECT 1; SELECT 2")})
        EXPECT_NE(engine.DDAddView(admin, "V", "", sql), AE_SUCCESS) << sql;
    EXPECT_EQ(testing::ReadFileBytes(DictionaryPath()), before);
    // Names of letters, digits and "_" are fine, and the SQL's own quotes and comments too.
    EXPECT_EQ(engine.DDAddView(admin, "_View_2", "",
                               "SELECT NUMBER FROM SOC1_acf WHERE TITLE <> 'a;b' -- last ;\n"),
              AE_SUCCESS)
        << LastErrorText();
    Handle statement = 0;
    ASSERT_EQ(engine.CreateSQLStatement(admin, statement), AE_SUCCESS);
    Handle cursor = 0;
    EXPECT_EQ(engine.ExecuteSQLDirect(statement, "SELECT * FROM _View_2", cursor), AE_SUCCESS)
        << LastErrorText();
    EXPECT_EQ(Rows(cursor, {"NUMBER"}).size(), 3u);
    EXPECT_FALSE(std::filesystem::exists(planted));
}

TEST_F(EngineDictionaryTest, ADictionaryFileWithABadViewIsRefusedWhole) {
    Build();
    const std::filesystem::path planted = dir / "planted.db";
    const std::string attach = "ATTACH DATABASE '" + planted.string() + "' AS planted";
    const nlohmann::json original = nlohmann::json::parse(testing::ReadFileBytes(DictionaryPath()));
    const std::vector<nlohmann::json> bad = {
        {{"name", "V\" AS SELECT 1 AS A; " + attach + "; --"},
         {"sql", "SELECT * FROM ACF"},
         {"comments", ""}},
        {{"name", "EVIL"}, {"sql", "SELECT * FROM ACF; " + attach}, {"comments", ""}},
        {{"name", "EVIL"}, {"sql", attach}, {"comments", ""}}};
    for (const nlohmann::json& view : bad) {
        nlohmann::json edited = original;
        edited["views"].push_back(view);
        testing::WriteFileBytes(DictionaryPath(), edited.dump());
        Handle user = 0;
        EXPECT_EQ(
            engine.Connect60(DictionaryPath(), ADS_LOCAL_SERVER, "SYSTEM", kPassword, 0, user),
            AE_INVALID_DICTIONARY_FILE)
            << view.dump();
        EXPECT_NE(LastErrorText().find("view "), std::string::npos) << LastErrorText();
    }
    EXPECT_FALSE(std::filesystem::exists(planted));
}

TEST_F(EngineDictionaryTest, StatementsCannotAttachOtherDatabaseFiles) {
    const std::filesystem::path planted = dir / "planted.db";
    Handle none = 0;
    for (const std::string& sql :
         {"ATTACH DATABASE '" + planted.string() + "' AS planted", std::string("DETACH temp")}) {
        EXPECT_EQ(Run(sql, none), AE_SQL_ERROR) << sql;
        EXPECT_NE(LastErrorText().find("ATTACH and DETACH are refused"), std::string::npos)
            << LastErrorText();
    }
    EXPECT_FALSE(std::filesystem::exists(planted));
}

}  // namespace
}  // namespace fnrk::engine
