#pragma once

// Puts a table of the shared fixtures (fixtures/xbase) into a test folder, for either keeping:
// kept as files, the fixture's own DBF and CDX are copied (bytes written by another engine);
// kept in SQL, a table of the same fields and tags is made on the folder's connection and
// filled with the records of NAME.natural.jsonl, deleted ones deleted.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "support/temp_dir.hpp"
#include "tables/ads_fixture.hpp"

namespace fnrk::tables::ads_testing {

inline std::filesystem::path FixtureTablePath(const std::string& name) {
    return fnrk::testing::SharedDir() / "fixtures" / "xbase" / name;
}

// `target` is the table's path without extension; `fields` and `tags` describe the fixture's
// structure for the SQL keeping. The table is left closed.
inline void InstallFixtureTable(AdsClass& ads, Keeping keeping, const std::string& name,
                                const std::filesystem::path& target, const std::string& fields,
                                const Tags& tags) {
    if (keeping == Keeping::Files) {
        for (const char* extension : {".dbf", ".cdx"}) {
            std::filesystem::path source = FixtureTablePath(name + extension);
            ASSERT_TRUE(std::filesystem::exists(source)) << source;
            std::filesystem::copy_file(source, target.string() + extension,
                                       std::filesystem::copy_options::overwrite_existing);
        }
        return;
    }
    const std::string path = target.string() + ".dbf";
    SqlDatabase& db = ads.Database();
    const engine::Handle connection = ads.ConnectionOfTableFile("FIXTURE", path);
    ASSERT_NE(connection, 0u);
    engine::Handle table = 0;
    ASSERT_EQ(
        db.CreateTable(connection, path, "FIXTURE", engine::ADS_CDX, engine::ADS_ANSI,
                       engine::ADS_COMPATIBLE_LOCKING, engine::ADS_IGNORERIGHTS, 0, fields, table),
        engine::AE_SUCCESS);
    for (const auto& [tag, expression] : tags) {
        engine::Handle index = 0;
        ASSERT_EQ(db.CreateIndex(table, "", tag, expression, "", "", engine::ADS_COMPOUND, index),
                  engine::AE_SUCCESS);
    }
    ASSERT_EQ(db.CloseTable(table), engine::AE_SUCCESS);

    ASSERT_EQ(ads.FileOpenExternal("FIXTURE", path), engine::AE_SUCCESS);
    std::ifstream records(FixtureTablePath(name + ".natural.jsonl"));
    ASSERT_TRUE(records) << name;
    for (std::string line; std::getline(records, line);) {
        const nlohmann::json record = nlohmann::json::parse(line);
        ASSERT_EQ(ads.RecordAdd(), engine::AE_SUCCESS);
        for (const auto& [field, value] : record.items()) {
            if (field != "recno" && field != "deleted") {
                ASSERT_TRUE(ads.PutFieldValue(field, value.get<std::string>())) << field;
            }
        }
        if (record["deleted"].get<bool>()) {
            ASSERT_EQ(ads.RecordDelete(), engine::AE_SUCCESS);
        }
        ASSERT_EQ(ads.FlushAndUnlock("FIXTURE"), engine::AE_SUCCESS);
    }
    ASSERT_EQ(ads.CloseAlias("FIXTURE"), engine::AE_SUCCESS);
}

}  // namespace fnrk::tables::ads_testing
