#pragma once

// The hook through which indexes follow every change of a table's records.

#include <cstdint>
#include <string_view>

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
    // Record numbers changed (pack) or every record went (zap): keys must be rebuilt or dropped.
    virtual void TablePacked() = 0;
    virtual void TableZapped() = 0;
};

}  // namespace fnrk::engine::dbf
