#pragma once

// The helpers that answer for the host's windows, screens and folders: clsIO, clsProcess,
// clsVbControl and clsExcel.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fnrk::utilities {

class clsIO {
  public:
    // Makes sure the folder exists, creating missing parents; true when it exists afterwards.
    // Windows-form paths go through the drive map. A file in the way gives false.
    bool IsDirectoryCreated(std::string_view path) const;
};

class clsProcess {
  public:
    // Id of the process that owns a window. The library runs without windows of its own on this
    // platform, so every handle answers 0, the "no process" of the window functions.
    std::int64_t WindowToProcessId(std::int64_t windowHandle) const;
};

class clsVbControl {
  public:
    // Height of a form's status bar in twips: 315, one line of the default 8-point font (21
    // pixels at 96 dots per inch, 15 twips a pixel). Forms size their client area with it.
    static constexpr int kStatusBarHeightTwips = 315;
    int StatusBarOfAFormHeight() const { return kStatusBarHeightTwips; }
};

class clsExcel {
  public:
    // One row for pasting into a spreadsheet: the cells joined by tabs, with tabs, carriage
    // returns and line feeds inside a cell replaced by a blank so that the row stays one row.
    std::string TabFormat(const std::vector<std::string>& cells) const;
};

}  // namespace fnrk::utilities
