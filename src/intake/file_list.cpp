#include "intake/file_list.hpp"

#include "platform/text.hpp"

namespace fnrk::intake {

void FileList::Reset() {
    entries_.assign(1, FileEntry{});
    firstFree_ = true;
}

void FileList::Add(std::string name, std::string path) {
    FileEntry entry{std::move(name), std::move(path), false};
    if (firstFree_) {
        entries_.front() = std::move(entry);
        firstFree_ = false;
    } else {
        entries_.push_back(std::move(entry));
    }
}

void FileList::SortByName() {
    const std::size_t count = entries_.size();
    std::size_t gap = 1;
    while (gap * 3 + 1 < count) gap = gap * 3 + 1;
    for (; gap >= 1; gap /= 3) {
        for (std::size_t i = gap; i < count; ++i) {
            FileEntry moving = std::move(entries_[i]);
            std::size_t j = i;
            while (j >= gap && moving.name < entries_[j - gap].name) {
                entries_[j] = std::move(entries_[j - gap]);
                j -= gap;
            }
            entries_[j] = std::move(moving);
        }
    }
}

void FileList::MarkDoneUpTo(std::string_view folderPrefix, std::string_view lastFile) {
    const std::string last = platform::UpperCase(lastFile);
    for (FileEntry& entry : entries_) {
        const std::string path = platform::UpperCase(std::string(folderPrefix) + entry.name);
        if (path < last) {
            entry.done = true;
        } else if (path == last) {
            entry.done = true;
            return;
        }
    }
}

}  // namespace fnrk::intake
