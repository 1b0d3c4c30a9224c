#pragma once

// The engine test fixture with copies of fixture tables and helpers to run statements and to
// read cursors and tables by navigation. Deleted records are hidden, as the library sets it.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "engine/sql/row_id.hpp"
#include "engine/table/engine_fixture.hpp"

namespace fnrk::engine {

class SqlTest : public EngineTest {
  protected:
    void SetUp() override {
        EngineTest::SetUp();
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
        EXPECT_EQ(engine.GetLastError(code, text), AE_SUCCESS);
        return text;
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
};

}  // namespace fnrk::engine
