#pragma once

// The hook through which indexes follow every change of a table's records.

#include <cstdint>
#include <string>
#include <string_view>

#include "engine/errors.hpp"

namespace fnrk::engine::dbf {

// How a record reached the file.
enum class RecordChange {
    Appended,   // a new record: it has no keys yet (`oldRecord` is empty)
    Rewritten,  // field writes, delete, recall: the keys of `oldRecord` are in the indexes
    // The first write of a blank record appended without keys (a shared append). Keys of the
    // blank record (`oldRecord`) are only in tags that another process built meanwhile.
    BlankFilled,
};

class UpkeepObserver {
  public:
    virtual ~UpkeepObserver() = default;
    // A record reached the file. Both buffers include the deletion flag byte.
    virtual void RecordWritten(std::uint32_t record, RecordChange change,
                               std::string_view oldRecord, std::string_view newRecord) = 0;
    // A blank record was appended without keys (a shared append); its first write comes as
    // BlankFilled.
    virtual void BlankAppended(std::uint32_t record) = 0;
    // The table is flushing: whatever the indexes still keep in memory is written now.
    [[nodiscard]] virtual Status WritePending() = 0;
    // The table now reads new files written beside its own (a pack: record numbers changed; a
    // change of encryption: every byte did), which take their names only once all are complete.
    // The index files are written anew beside theirs too, named with `suffix` added.
    [[nodiscard]] virtual Status BuildBeside(const std::string& suffix, std::string& message) = 0;
    // The table's new files took their names: the index files built beside take theirs.
    [[nodiscard]] virtual Status PlaceBeside(std::string& message) = 0;
    // The table keeps its old files: the index files built beside go.
    virtual void DropBeside() = 0;
    // Every record went: keys must be dropped.
    virtual void TableZapped() = 0;
};

}  // namespace fnrk::engine::dbf
