#pragma once

// A façade over the process's shared table access, pointed at a temporary company "SOC1" kept
// as files, with a recording message sink. The shared objects outlive a test: tear-down closes
// the tables, empties the registry and drops the parameter view, so that tests do not see each
// other's state.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "facade/fnrk_routines.hpp"
#include "facade/member_table.hpp"
#include "platform/messages.hpp"
#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"
#include "tables/shared_tables.hpp"

namespace fnrk::facade::testing {

using Row = std::vector<std::pair<std::string, tables::FieldValue>>;
// Index tags as (name, expression).
using Tags = std::vector<std::pair<std::string, std::string>>;

inline constexpr const char* kParamFields = "ID,C,25,0;VALUE,C,60,0;VALUEEXT,C,60,0";
inline constexpr const char* kAccountFields = "NUMBER,C,10,0;NAME1,C,40,0";

class FacadeTest : public ::testing::Test {
  protected:
    void SetUp() override {
        previousSink = platform::SetMessageSink(&messages);
        std::filesystem::create_directories(dossier);
        Tables().SetInteractive(false);
        static_cast<void>(Tables().Initialize());
        FnrkRoutines::pathName(dossier.string());
        FnrkRoutines::socShortName("SOC1");
    }
    void TearDown() override {
        static_cast<void>(Tables().FileCloseAll());
        Tables().RemoveQuery("SEEKPARAM", 0);
        while (FnrkRoutines::Registry().Count() > 0) FnrkRoutines::Registry().RemoveFirst();
        platform::SetMessageSink(previousSink);
    }

    static tables::AdsClass& Tables() { return tables::SharedAdsClass(); }

    // Creates a table of the company with its tags and rows, and leaves it open under `alias`:
    // a standard table at its standard place, any other as "<alias>.dbf" in the company folder.
    void CreateTable(const std::string& alias, const std::string& fields, const Tags& tags = {},
                     const std::vector<Row>& rows = {}) {
        tables::SqlDatabase& db = tables::SharedSqlDatabase();
        const std::string standard = Tables().StandardTablePath(alias);
        const std::string path =
            standard.empty() ? (dossier / (alias + ".dbf")).string() : standard;
        engine::Handle table = 0;
        ASSERT_EQ(db.CreateTable(Tables().DossierConnection(), path, alias, engine::ADS_CDX,
                                 engine::ADS_ANSI, engine::ADS_COMPATIBLE_LOCKING,
                                 engine::ADS_IGNORERIGHTS, 0, fields, table),
                  engine::AE_SUCCESS)
            << alias << ": " << Tables().GetAdsLastError();
        for (const auto& [tag, expression] : tags) {
            engine::Handle index = 0;
            ASSERT_EQ(
                db.CreateIndex(table, "", tag, expression, "", "", engine::ADS_COMPOUND, index),
                engine::AE_SUCCESS);
        }
        ASSERT_EQ(db.CloseTable(table), engine::AE_SUCCESS);
        ASSERT_EQ(
            standard.empty() ? Tables().FileOpenExternal(alias, path) : Tables().FileOpen(alias),
            engine::AE_SUCCESS)
            << alias;
        for (const Row& row : rows) {
            ASSERT_EQ(Tables().ActivateAlias(alias), engine::AE_SUCCESS);
            ASSERT_EQ(Tables().RecordAdd(), engine::AE_SUCCESS);
            for (const auto& [field, value] : row) {
                EXPECT_TRUE(Tables().PutFieldValue(field, value)) << field;
            }
            ASSERT_EQ(Tables().FlushAndUnlock(alias), engine::AE_SUCCESS);
        }
    }

    // The company's parameter table ("PARAM", tag "ID") and "CSF", "ACF" and "ACT", all open.
    void OpenCompanyTables(const std::vector<Row>& parameters = {}) {
        CreateTable("PARAM", kParamFields, {{"ID", "ID"}}, parameters);
        CreateTable("CSF", kAccountFields, {{"NUMBER", "NUMBER"}});
        CreateTable("ACF", kAccountFields, {{"NUMBER", "NUMBER"}});
        CreateTable("ACT", kAccountFields);
    }

    // A registry object as a caller builds one: (alias, index handle, order) per entry.
    static Variant RegistryOf(const std::vector<AdsPropertyClass>& entries) {
        auto registry = std::make_shared<TableRegistry>();
        for (const AdsPropertyClass& entry : entries) registry->Add(entry);
        return Variant(registry);
    }

    // Calls a member through the member table, as a late-bound caller does.
    Variant Call(const std::string& member, std::vector<Variant> args) {
        return MemberTable::Instance().Invoke(routines, member, MemberKind::Method, args);
    }

    fnrk::testing::TempDir folder;
    fnrk::testing::ScopedEnvironment mainPath{"FNRK_MAIN_PATH", folder.path().string()};
    std::filesystem::path dossier = folder / "SOC1";
    platform::RecordingMessageSink messages;
    platform::MessageSink* previousSink = nullptr;
    FnrkRoutines routines;
};

}  // namespace fnrk::facade::testing
