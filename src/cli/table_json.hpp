#pragma once

// Records as JSON objects, in the shape `table dump` writes and `table load` reads: "recno",
// "deleted", then each field by name: text as stored, numbers as their stored text, dates as
// "YYYYMMDD" (8 blanks when empty), logicals as booleans, memos as text.

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "engine/cursor/table_cursor.hpp"

namespace fnrk::cli {

// The current record of the cursor.
nlohmann::ordered_json RecordToJson(engine::cursor::TableCursor& table);

// Records printed one JSON line each by `table dump`: a record that cannot be read (a damaged
// memo) is named on standard error and the rest still printed. Finish() fails the command when
// any could not be.
class RecordPrinter {
  public:
    explicit RecordPrinter(engine::cursor::TableCursor& table) : table_(table) {}
    void Print(std::uint32_t record);
    void Finish() const;

  private:
    engine::cursor::TableCursor& table_;
    std::uint32_t unreadable_ = 0;
};

// Appends one record from a JSON object; unknown names and values of the wrong kind fail with
// a message naming them. The new record is written and unlocked before returning.
void AppendRecordFromJson(engine::cursor::TableCursor& table, const nlohmann::json& object);

}  // namespace fnrk::cli
