#pragma once

// The implementations of the engine's operation set that the conformance suite runs against,
// each on an empty place of its own: a folder for the engine and SQLite, a schema of the test
// program's throwaway server for PostgreSQL.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "engine/operations.hpp"
#include "engine/sql/row_id.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::conformance {

using engine::Handle;
using engine::Status;

struct Implementation {
    std::string name;
    std::function<std::unique_ptr<engine::Operations>()> make;
    // The connection path of the test's place, given the test's own empty folder.
    std::function<std::string(const std::filesystem::path&)> where;
    // How the ROWIDs of its statements give the record number.
    engine::sql::RowIdStyle rowIds = engine::sql::RowIdStyle::Base64;
};

std::vector<Implementation> Implementations();
// Test names and failure reports show the implementation's name.
inline void PrintTo(const Implementation& implementation, std::ostream* out) {
    *out << implementation.name;
}

// Every test starts with a connected implementation on an empty folder, dates "DD/MM/YYYY".
class Conformance : public ::testing::TestWithParam<Implementation> {
  protected:
    void SetUp() override;
    // A second, independent connection to the same folder (another workstation).
    std::unique_ptr<engine::Operations> SecondConnection(Handle& connection);
    // Creates the sample table "items.dbf" (opened exclusively) with fields of every type.
    Handle CreateItems();
    // Appends one item with the given code, name and amount.
    void AddItem(Handle table, const std::string& code, const std::string& name, double amount);
    std::string Text(Handle table, const std::string& field);
    // Record numbers of `table` met walking `object` (the table or one of its indexes) from
    // the top to EOF.
    std::vector<std::uint32_t> Walk(Handle table, Handle object);
    std::vector<std::uint32_t> Walk(Handle table) { return Walk(table, table); }
    std::uint32_t RecordNumber(Handle table);

    fnrk::testing::TempDir folder;
    std::unique_ptr<engine::Operations> ops;
    Handle connection = 0;
};

}  // namespace fnrk::conformance
