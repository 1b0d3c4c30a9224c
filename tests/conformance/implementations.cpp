#include "conformance/implementations.hpp"

#include "backend/frc_database.hpp"
#include "engine/engine.hpp"
#include "support/postgres_server.hpp"

namespace fnrk::conformance {

using namespace engine;  // option and status numbers

namespace {

std::unique_ptr<Operations> Backend() {
    auto backend = std::make_unique<backend::FRCDatabase>();
    backend->handleStart(300'000);
    return backend;
}

std::string Folder(const std::filesystem::path& folder) {
    return folder.string();
}

#if FNRK_TEST_POSTGRESQL
// A schema named after the test's folder: empty, and the same for a second connection. The
// folder is the dossier's (where its dictionary lies).
std::string PostgresSchema(const std::filesystem::path& folder) {
    return fnrk::testing::PostgresServer::Shared().ConnectionPath(folder.filename().string()) +
           "<DIR>" + folder.string();
}
#endif

}  // namespace

std::vector<Implementation> Implementations() {
    return {
        {"Engine", [] { return std::make_unique<Engine>(); }, Folder, sql::RowIdStyle::Base64},
            {"SQLite", Backend, Folder, sql::RowIdStyle::Decimal},
#if FNRK_TEST_POSTGRESQL
            {"PostgreSQL", Backend, PostgresSchema, sql::RowIdStyle::Decimal},
#endif
    };
}

namespace {

void Configure(Operations& ops) {
    ASSERT_EQ(ops.SetDateFormat("DD/MM/YYYY"), AE_SUCCESS);
    ASSERT_EQ(ops.SetEpoch(2000), AE_SUCCESS);
}

}  // namespace

void Conformance::SetUp() {
    ops = GetParam().make();
    Configure(*ops);
    ASSERT_EQ(ops->Connect26(GetParam().where(folder.path()), ADS_LOCAL_SERVER, connection),
              AE_SUCCESS);
}

std::unique_ptr<Operations> Conformance::SecondConnection(Handle& second) {
    auto other = GetParam().make();
    Configure(*other);
    EXPECT_EQ(other->Connect26(GetParam().where(folder.path()), ADS_LOCAL_SERVER, second),
              AE_SUCCESS);
    return other;
}

Handle Conformance::CreateItems() {
    Handle table = 0;
    EXPECT_EQ(ops->CreateTable(connection, "items.dbf", "", ADS_CDX, ADS_ANSI,
                               ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0,
                               "CODE,Character,6,0;NAME,C,20,0;AMOUNT,Numeric,10,2;QTY,Integer;"
                               "RATE,Double,8,2;DAY,Date;PAID,Logical;NOTE,Memo",
                               table),
              AE_SUCCESS);
    return table;
}

void Conformance::AddItem(Handle table, const std::string& code, const std::string& name,
                          double amount) {
    ASSERT_EQ(ops->AppendRecord(table), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(table, "CODE", code), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(table, "NAME", name), AE_SUCCESS);
    ASSERT_EQ(ops->SetDouble(table, "AMOUNT", amount), AE_SUCCESS);
}

std::string Conformance::Text(Handle table, const std::string& field) {
    std::string value;
    EXPECT_EQ(ops->GetString(table, field, value, ADS_RTRIM), AE_SUCCESS) << field;
    return value;
}

std::uint32_t Conformance::RecordNumber(Handle table) {
    std::uint32_t record = 0;
    EXPECT_EQ(ops->GetRecordNum(table, ADS_IGNOREFILTERS, record), AE_SUCCESS);
    return record;
}

std::vector<std::uint32_t> Conformance::Walk(Handle table, Handle object) {
    std::vector<std::uint32_t> seen;
    if (ops->GotoTop(object) != AE_SUCCESS) {
        ADD_FAILURE() << "GotoTop failed";
        return seen;
    }
    bool atEof = false;
    while (ops->AtEOF(table, atEof) == AE_SUCCESS && !atEof && seen.size() < 1000) {
        seen.push_back(RecordNumber(table));
        if (ops->Skip(object, 1) != AE_SUCCESS) {
            ADD_FAILURE() << "Skip failed after record " << seen.back();
            break;
        }
    }
    return seen;
}

}  // namespace fnrk::conformance
