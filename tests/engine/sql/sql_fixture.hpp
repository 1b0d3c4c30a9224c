#pragma once

// An Engine connected to a temporary folder holding copies of fixture tables, with helpers to
// run statements and to read cursors and tables by navigation.

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "engine/engine.hpp"
#include "engine/sql/row_id.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine {

class SqlTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(engine.Connect26(dir.path().string(), ADS_LOCAL_SERVER, connection), 0);
        ASSERT_EQ(engine.ShowDeleted(false), AE_SUCCESS);
    }

    // Copies fixture table `fixture` (dbf, cdx and fpt when there) in as `name`.
    void CopyFixture(const std::string& fixture, const std::string& name) {
        const auto source = testing::SharedDir() / "fixtures" / "xbase";
        for (const char* extension : {".dbf", ".cdx", ".fpt"}) {
            const auto from = source / (fixture + extension);
            if (std::filesystem::exists(from))
                std::filesystem::copy_file(from, dir / (name + extension));
        }
    }

    Handle Open(const std::string& name, std::uint32_t options = ADS_SHARED,
                const std::string& alias = "") {
        Handle table = 0;
        EXPECT_EQ(engine.OpenTable(connection, name, alias, ADS_CDX, ADS_ANSI,
                                   ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, options, table),
                  AE_SUCCESS);
        return table;
    }

    Handle NewStatement() {
        Handle statement = 0;
        EXPECT_EQ(engine.CreateSQLStatement(connection, statement), AE_SUCCESS);
        return statement;
    }

    // Runs `sql` on a new statement; the cursor (0 for other statements) or 0 on failure.
    Status Run(const std::string& sql, Handle& cursor) {
        const Handle statement = NewStatement();
        return engine.ExecuteSQLDirect(statement, sql, cursor);
    }

    Handle Query(const std::string& sql) {
        Handle cursor = 0;
        const Status status = Run(sql, cursor);
        EXPECT_EQ(status, AE_SUCCESS) << sql << ": " << LastErrorText();
        EXPECT_NE(cursor, 0) << sql;
        return cursor;
    }

    std::string LastErrorText() {
        Status code = 0;
        std::string text;
        engine.GetLastError(code, text);
        return text;
    }

    std::string String(Handle table, const std::string& field) {
        std::string value;
        EXPECT_EQ(engine.GetString(table, field, value, ADS_NONE), AE_SUCCESS) << field;
        return value;
    }

    std::uint32_t Recno(Handle table) {
        std::uint32_t record = 0;
        EXPECT_EQ(engine.GetRecordNum(table, ADS_IGNOREFILTERS, record), AE_SUCCESS);
        return record;
    }

    bool Eof(Handle table) {
        bool eof = true;
        EXPECT_EQ(engine.AtEOF(table, eof), AE_SUCCESS);
        return eof;
    }

    // Every row of `object` from the top, as the text of `fields`.
    std::vector<std::vector<std::string>> Rows(Handle object,
                                               const std::vector<std::string>& fields) {
        std::vector<std::vector<std::string>> rows;
        EXPECT_EQ(engine.GotoTop(object), AE_SUCCESS);
        while (!Eof(object)) {
            std::vector<std::string> row;
            for (const std::string& field : fields) row.push_back(String(object, field));
            rows.push_back(std::move(row));
            EXPECT_EQ(engine.Skip(object, 1), AE_SUCCESS);
        }
        return rows;
    }

    // The record numbers named by the ROWID column of a cursor, in cursor order.
    std::vector<std::uint32_t> RowIdRecords(Handle cursor) {
        std::vector<std::uint32_t> records;
        for (const auto& row : Rows(cursor, {"ROWID"})) {
            EXPECT_EQ(row[0].size(), sql::kRowIdLength);
            records.push_back(sql::RowIdRecord(row[0]).value_or(0));
        }
        return records;
    }

    testing::TempDir dir;
    Engine engine;
    Handle connection = 0;
};

}  // namespace fnrk::engine
