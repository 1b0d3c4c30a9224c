#pragma once

// The hook through which indexes follow every change of a table's records.

#include <cstdint>
#include <string_view>

namespace fnrk::engine::dbf {

class UpkeepObserver {
  public:
    virtual ~UpkeepObserver() = default;
    // A record reached the file: appended (`oldRecord` empty) or rewritten (field writes,
    // delete, recall). Both buffers include the deletion flag byte.
    virtual void RecordWritten(std::uint32_t record, std::string_view oldRecord,
                               std::string_view newRecord) = 0;
    // Record numbers changed (pack) or every record went (zap): keys must be rebuilt or dropped.
    virtual void TablePacked() = 0;
    virtual void TableZapped() = 0;
};

}  // namespace fnrk::engine::dbf
