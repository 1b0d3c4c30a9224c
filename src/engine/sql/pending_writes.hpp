#pragma once

// The writes of one statement to one table. They are checked and their records locked as the
// statement produces them, and reach the table only when the whole statement has succeeded
// (Apply). A failure while applying puts back the records already written, so a statement
// never leaves half of its writes behind.

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "engine/sql/field_values.hpp"
#include "engine/sql/table_source.hpp"

namespace fnrk::engine::sql {

class PendingWrites {
  public:
    PendingWrites(TableSource& source, std::string path, const std::vector<FieldInfo>& fields)
        : source_(source), path_(std::move(path)), fields_(fields) {}
    ~PendingWrites() { Discard(); }
    PendingWrites(const PendingWrites&) = delete;
    PendingWrites& operator=(const PendingWrites&) = delete;

    // Each returns an empty text or why the write is refused. Values are by field number
    // (index into the fields); a field without value keeps its contents.
    using Values = std::vector<std::optional<FieldValue>>;
    std::string Delete(std::uint32_t record);
    std::string Update(std::uint32_t record, Values values);
    std::string Insert(Values values);

    // Writes everything to the table; on failure the table is as before and the text says why.
    std::string Apply();
    // Releases the locks and forgets the writes; applied ones are put back first.
    void Discard();
    // Keeps the applied writes and releases the locks.
    void Finish();

  private:
    enum class Kind { Delete, Update, Insert };
    struct Change {
        Kind kind;
        std::uint32_t record = 0;
        Values values;
    };
    struct Undo {
        std::uint32_t record = 0;
        std::string before;  // empty for an appended record
    };

    std::string OpenWriter();
    std::string LockFor(std::uint32_t record);
    [[nodiscard]] Status ApplyChange(Change& change);
    [[nodiscard]] Status WriteValues(const Values& values);
    void Close();

    TableSource& source_;
    std::string path_;
    const std::vector<FieldInfo>& fields_;
    Handle writer_ = 0;
    std::vector<Change> changes_;
    std::vector<std::uint32_t> locked_;
    std::vector<Undo> undo_;
};

}  // namespace fnrk::engine::sql
