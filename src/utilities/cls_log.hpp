#pragma once

// clsLog: the plain-text log files of long runs (imports, exports), and the process log, a file
// listing the ids of helper processes (spreadsheet exports) the application started, so that
// those left behind by a crash can be found later.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fnrk::utilities {

class clsLog {
  public:
    // Empties the log file, creating it (and its folder) when missing. False when it cannot be
    // written.
    bool FileReset(std::string_view path) const;

    // Appends one line "DD/MM/YYYY HH:MM:SS text" (local time; the text's line breaks become
    // blanks) to the log file, creating it when missing. False when it cannot be written.
    bool FileInfoAdd(std::string_view path, std::string_view text) const;

    // The process log: one process id a line. Created adds the id (once), Deleted removes it;
    // both false when the file cannot be written. Manage drops the ids of processes that no
    // longer run, rewrites the file, and returns the ids still running.
    bool ExcelAndFennrickProcessCreated(std::string_view path, std::int64_t processId) const;
    bool ExcelAndFennrickProcessDeleted(std::string_view path, std::int64_t processId) const;
    std::vector<std::int64_t> ExcelAndFennrickProcessManage(std::string_view path) const;
};

}  // namespace fnrk::utilities
