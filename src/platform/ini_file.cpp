#include "platform/ini_file.hpp"

#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <sstream>
#include <system_error>

#include "platform/codepage.hpp"
#include "platform/file_stamp.hpp"
#include "platform/ini_document.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"

namespace fnrk::platform {
namespace {

// The file's text as UTF-8, or nothing when it cannot be read.
std::optional<std::string> ReadIniTextFromDisk(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return Cp1252ToUtf8(bytes.str());
}

// Configuration files are read on every table open and most settings lookups; each is read
// from disk once per change, known by its write time and size, and kept as text meanwhile.
class IniTextCache {
  public:
    std::optional<std::string> Read(const std::filesystem::path& path) {
        const std::optional<FileStamp> stamp = StampOf(path);
        if (!stamp) {
            Forget(path);
            return ReadIniTextFromDisk(path);
        }
        const std::lock_guard lock(mutex_);
        const auto found = texts_.find(path);
        if (found != texts_.end() && found->second.stamp == *stamp) return found->second.text;
        auto text = ReadIniTextFromDisk(path);
        if (text) texts_[path] = Entry{*stamp, *text};
        return text;
    }
    void Forget(const std::filesystem::path& path) {
        const std::lock_guard lock(mutex_);
        texts_.erase(path);
    }

  private:
    struct Entry {
        FileStamp stamp;
        std::string text;
    };
    std::mutex mutex_;
    std::map<std::filesystem::path, Entry> texts_;
};

IniTextCache& TextCache() {
    static IniTextCache cache;
    return cache;
}

std::optional<std::string> ReadIniText(const std::filesystem::path& path) {
    return TextCache().Read(path);
}

// Writes beside the file and renames, so that a failed write never leaves half a file.
bool WriteIniText(const std::filesystem::path& path, const std::string& text) {
    std::filesystem::path temporary = path;
    temporary += ".fnrk-tmp";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!out) return false;
        out << Utf8ToCp1252(text);
        if (!out.flush()) return false;
    }
    std::error_code error;
    std::filesystem::rename(temporary, path, error);
    if (error) std::filesystem::remove(temporary, error);
    // A write within the clock's resolution could keep the old write time and size.
    TextCache().Forget(path);
    return !error;
}

std::string CutToBuffer(std::string_view text, std::size_t bufferSize) {
    return bufferSize == 0 ? std::string() : LeftChars(text, bufferSize - 1);
}

bool HasLineBreak(std::string_view text) {
    return text.find_first_of("\r\n") != text.npos;
}

}  // namespace

std::string GetPrivateProfileString(std::string_view section, std::string_view key,
                                    std::string_view defaultValue, std::size_t bufferSize,
                                    std::string_view file) {
    return ReadIniString(section, key, defaultValue, bufferSize, FileSystemPath(file));
}

bool WritePrivateProfileString(std::string_view section, std::string_view key,
                               std::string_view value, std::string_view file) {
    return WriteIniString(section, key, value, FileSystemPath(file));
}

std::vector<std::pair<std::string, std::string>> GetPrivateProfileSection(std::string_view section,
                                                                          std::string_view file) {
    return ReadIniSection(section, FileSystemPath(file));
}

std::string ReadIniString(std::string_view section, std::string_view key,
                          std::string_view defaultValue, std::size_t bufferSize,
                          const std::filesystem::path& file) {
    if (const auto text = ReadIniText(file)) {
        const IniDocument document(*text);
        if (const auto sectionLine = document.FindSection(section)) {
            if (const auto keyLine = document.FindKey(*sectionLine, key)) {
                return CutToBuffer(document.ValueAt(*keyLine), bufferSize);
            }
        }
    }
    return CutToBuffer(TrimRight(defaultValue), bufferSize);
}

bool WriteIniString(std::string_view section, std::string_view key, std::string_view value,
                    const std::filesystem::path& path) {
    if (!path.has_filename() || Trim(section).empty() || Trim(key).empty() ||
        HasLineBreak(section) || HasLineBreak(key) || HasLineBreak(value)) {
        return false;
    }
    IniDocument document(ReadIniText(path).value_or(std::string()));
    if (const auto sectionLine = document.FindSection(section)) {
        if (const auto keyLine = document.FindKey(*sectionLine, key)) {
            document.ReplaceValue(*keyLine, value);
        } else {
            document.AddKey(*sectionLine, key, value);
        }
    } else {
        document.AddSection(section, key, value);
    }
    return WriteIniText(path, document.Text());
}

std::vector<std::pair<std::string, std::string>> ReadIniSection(std::string_view section,
                                                                const std::filesystem::path& file) {
    std::vector<std::pair<std::string, std::string>> entries;
    const auto text = ReadIniText(file);
    if (!text) return entries;
    const IniDocument document(*text);
    const auto sectionLine = document.FindSection(section);
    if (!sectionLine) return entries;
    for (std::size_t i = *sectionLine + 1; i < document.SectionEnd(*sectionLine); ++i) {
        const std::string key = document.KeyAt(i);
        if (key.empty() || document.FindKey(*sectionLine, key) != i) continue;
        entries.emplace_back(key, document.ValueAt(i));
    }
    return entries;
}

}  // namespace fnrk::platform
