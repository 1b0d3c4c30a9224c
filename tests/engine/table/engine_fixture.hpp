#pragma once

// An Engine connected to a fresh temporary folder, with helpers that fail the test on a bad
// status.

#include <gtest/gtest.h>

#include "engine/engine.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine {

class EngineTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(engine.Connect26(dir.path().string(), ADS_LOCAL_SERVER, connection), 0);
    }

    // Creates a table (opened exclusively by CreateTable) and closes it again.
    void Create(const std::string& name, const std::string& fields) {
        Handle table = 0;
        ASSERT_EQ(engine.CreateTable(connection, name, "", ADS_CDX, ADS_ANSI,
                                     ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, 0, fields, table),
                  AE_SUCCESS);
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
    }

    Handle Open(const std::string& name, std::uint32_t options = ADS_SHARED,
                const std::string& alias = "") {
        Handle table = 0;
        EXPECT_EQ(engine.OpenTable(connection, name, alias, ADS_CDX, ADS_ANSI,
                                   ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, options, table),
                  AE_SUCCESS);
        return table;
    }

    // Opens `name` (shared unless told otherwise) in `other`, an engine of its own as another
    // workstation has it, connected to the same folder; 0 when that fails.
    Handle OpenElsewhere(Engine& other, const std::string& name,
                         std::uint32_t options = ADS_SHARED) {
        Handle folder = 0;
        Handle table = 0;
        if (other.Connect26(dir.path().string(), ADS_LOCAL_SERVER, folder) != AE_SUCCESS ||
            other.OpenTable(folder, name, "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                            ADS_IGNORERIGHTS, options, table) != AE_SUCCESS)
            return 0;
        return table;
    }

    Status OpenStatus(const std::string& name, std::uint32_t options, const std::string& alias) {
        Handle table = 0;
        return engine.OpenTable(connection, name, alias, ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                                ADS_IGNORERIGHTS, options, table);
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

    // Steps of a walk over `table` in the for loops of the tests.
    void Top(Handle table) { ASSERT_EQ(engine.GotoTop(table), AE_SUCCESS); }
    void Next(Handle table) { ASSERT_EQ(engine.Skip(table, 1), AE_SUCCESS); }
    bool Eof(Handle table) {
        bool eof = false;
        EXPECT_EQ(engine.AtEOF(table, eof), AE_SUCCESS);
        return eof;
    }

    bool Bof(Handle table) {
        bool bof = false;
        EXPECT_EQ(engine.AtBOF(table, bof), AE_SUCCESS);
        return bof;
    }

    std::uint32_t Count(Handle table, std::uint16_t option) {
        std::uint32_t count = 0;
        EXPECT_EQ(engine.GetRecordCount(table, option, count), AE_SUCCESS);
        return count;
    }

    testing::TempDir dir;
    Engine engine;
    Handle connection = 0;
};

}  // namespace fnrk::engine
