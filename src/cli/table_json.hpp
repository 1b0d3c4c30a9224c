#pragma once

// Records as JSON objects, in the shape `table dump` writes and `table load` reads: "recno",
// "deleted", then each field by name: text as stored, numbers as their stored text, dates as
// "YYYYMMDD" (8 blanks when empty), logicals as booleans, memos as text.

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/table_access.hpp"

namespace fnrk::cli {

// A field as the record's bytes hold it.
struct FieldShape {
    std::string name;  // UTF-8
    std::uint16_t type = 0;
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
};

std::vector<FieldShape> ReadFieldShapes(const OpenedTable& table);

// The current record of the table.
nlohmann::ordered_json RecordToJson(const OpenedTable& table,
                                    const std::vector<FieldShape>& fields);

// Records printed one JSON line each by `table dump`: a record that cannot be read (a damaged
// memo) is named on standard error and the rest still printed. Finish() fails the command when
// any could not be.
class RecordPrinter {
  public:
    explicit RecordPrinter(const OpenedTable& table)
        : table_(table), fields_(ReadFieldShapes(table)) {}
    void Print(std::uint32_t record);
    void Finish() const;

  private:
    const OpenedTable& table_;
    std::vector<FieldShape> fields_;
    std::uint32_t unreadable_ = 0;
};

// Appends one record from a JSON object; unknown names and values of the wrong kind fail with
// a message naming them. The new record is written and unlocked before returning.
void AppendRecordFromJson(const OpenedTable& table, const std::vector<FieldShape>& fields,
                          const nlohmann::json& object);

}  // namespace fnrk::cli
