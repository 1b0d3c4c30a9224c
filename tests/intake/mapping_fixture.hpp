#pragma once

// A company with the application's template folder (holding the shipped EFFFSOC.ORG), for the
// mapping tables, and readers that look at those tables from outside the intake classes.

#include <filesystem>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "intake_fixture.hpp"
#include "platform/paths.hpp"
#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::intake::testing {

class MappingTest : public IntakeTest {
  protected:
    void SetUp() override {
        IntakeTest::SetUp();
        const std::filesystem::path templates = folder / "RESOURCES" / "ORG";
        std::filesystem::create_directories(templates);
        std::filesystem::copy_file(std::filesystem::path(FNRK_TEMPLATE_FOLDER) / "EFFFSOC.ORG",
                                   templates / "EFFFSOC.ORG");
        previousProgramFolder = platform::ProgramFolder();
        platform::SetProgramFolder((folder / "PRG").string());
    }
    void TearDown() override {
        platform::SetProgramFolder(previousProgramFolder);
        IntakeTest::TearDown();
    }

    // The values of `field` in the order of tag `tag` of the open table `alias`, deleted
    // records hidden; the caller's current table is left current.
    std::vector<std::string> InTagOrder(const std::string& alias, const std::string& tag,
                                        const std::string& field) {
        const std::string caller = ads.GetCurrentAlias();
        std::vector<std::string> values;
        EXPECT_EQ(ads.ActivateAlias(alias), engine::AE_SUCCESS);
        EXPECT_TRUE(ads.SetIndex(tag));
        for (ads.MoveTop(); !ads.SelectionEof(); ads.moveNext()) {
            values.push_back(ads.GetStringValue(field));
        }
        if (!caller.empty()) ads.ActivateAlias(caller);
        return values;
    }
    std::string TagExpression(const std::string& alias, const std::string& tag) {
        EXPECT_EQ(ads.ActivateAlias(alias), engine::AE_SUCCESS);
        EXPECT_TRUE(ads.SetIndex(tag));
        return ads.CurrentIndexKeyExpr();
    }

    // The company table `table` as python3-dbfread reads it: {"fields": ["NAME,TYPE,LENGTH"],
    // "live": [records], "deleted": [records]}, dates as "YYYY-MM-DD".
    nlohmann::json ReadWithDbfread(const std::string& table) {
        static constexpr const char* kScript = R"(
import datetime, json, sys, dbfread
table = dbfread.DBF(sys.argv[1], encoding='cp1252', char_decode_errors='strict')
text = lambda r: {k: (v.isoformat() if isinstance(v, datetime.date) else v) for k, v in r.items()}
print(json.dumps({'fields': [f.name + ',' + f.type + ',' + str(f.length) for f in table.fields],
                  'live': [text(r) for r in table], 'deleted': [text(r) for r in table.deleted]}))
)";
        const auto result = fnrk::testing::RunCommand(
            {"/usr/bin/python3", "-c", kScript,
             fnrk::testing::LinuxPath(dossier / ("SOC1_" + table + ".dbf"))});
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return result.exitCode == 0 ? nlohmann::json::parse(result.out) : nlohmann::json();
    }
    // The company table's index file holds `expression`, byte for byte, as a tag's key.
    bool IndexHolds(const std::string& table, std::string_view expression) {
        const std::string index =
            fnrk::testing::ReadFileBytes(dossier / ("SOC1_" + table + ".cdx"));
        return index.find(std::string(expression) + '\0') != std::string::npos;
    }

    std::string previousProgramFolder;
};

}  // namespace fnrk::intake::testing
