#pragma once

// A dispatch over recording engine and backends, with helpers that put a backend in a slot.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tables/recording_backend.hpp"
#include "tables/sql_database.hpp"

namespace fnrk::tables::testing {

class DispatchTest : public ::testing::Test {
  protected:
    std::vector<std::string> log;
    RecordingBackend engine{"engine", log};
    SqlDatabase db{engine, [this] { return std::make_unique<RecordingBackend>("", log); }};

    // Connects the backend of the range starting at `base` (0 = Folder) through the dispatch.
    RecordingBackend& ConnectSlot(Handle base) {
        Handle connection = base;
        EXPECT_EQ(db.Connect26("<SQL>Driver=SQLite", 1, connection), engine::AE_SUCCESS);
        return Recorder(static_cast<BackendSlot>(base / 300'000));
    }
    RecordingBackend& Recorder(BackendSlot slot) {
        return static_cast<RecordingBackend&>(*db.Backend(slot));
    }
    // The log since the last call, then cleared.
    std::vector<std::string> Calls() { return std::exchange(log, {}); }
    // Who received an OpenTable of `path` by name.
    std::string OpenedBy(const std::string& path) {
        log.clear();
        Handle table = 0;
        // Who received the call is the question here, not what it answered.
        engine::IgnoreStatus(db.OpenTable(0, path, "T", engine::ADS_CDX, engine::ADS_ANSI, 0, 0,
                                          engine::ADS_SHARED, table));
        return log.empty() ? "" : log.back().substr(0, log.back().find('.'));
    }
};

}  // namespace fnrk::tables::testing
