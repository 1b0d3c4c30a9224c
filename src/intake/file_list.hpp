#pragma once

// The list of files found waiting in a year folder. It is never empty: a fresh list is one entry
// with an empty name, which the first file found takes.

#include <string>
#include <string_view>
#include <vector>

namespace fnrk::intake {

struct FileEntry {
    std::string name;  // file name
    std::string path;  // full path
    bool done = false;
};

class FileList {
  public:
    FileList() { Reset(); }

    void Reset();
    // Stores a file: in the free first entry while it is free, else appended.
    void Add(std::string name, std::string path);
    // Sorts by name, exact comparison, with a shell sort on the gaps 1, 4, 13, 40, ... so that
    // files of the same name in two folders keep the order that sort gives them.
    void SortByName();
    // Marks the files handled before `lastFile` as done, `lastFile` itself included: walking in
    // order, an entry whose upper-cased `folderPrefix` + name sorts before the upper-cased
    // `lastFile` is done; the one equal to it is done and ends the walk.
    void MarkDoneUpTo(std::string_view folderPrefix, std::string_view lastFile);

    // Only the single empty entry of a fresh list.
    bool IsFresh() const { return entries_.size() == 1 && entries_.front().name.empty(); }
    const std::vector<FileEntry>& Entries() const { return entries_; }

  private:
    std::vector<FileEntry> entries_;
    bool firstFree_ = true;
};

}  // namespace fnrk::intake
