#pragma once

// Configuration files of sections and "key=value" lines, read and written with the rules of the
// classic private-profile functions: section and key names compared without regard to case or
// surrounding blanks, the first section of a name and the first key in it win, values trimmed and
// freed of one pair of surrounding quotes, ";" lines are comments. Files are Windows-1252 on disk
// and UTF-8 at this interface; files created here use CRLF line ends.

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fnrk::platform {

// The value of `key`, cut to `bufferSize` - 1 characters; `defaultValue` (without its trailing
// blanks, cut the same way) when the file, the section or the key is missing.
std::string GetPrivateProfileString(std::string_view section, std::string_view key,
                                    std::string_view defaultValue, std::size_t bufferSize,
                                    std::string_view file);

// Sets `key` to `value`: in place when the key exists, else at the end of its section, else in a
// new section at the end of the file (created when missing). Every other byte of the file stays
// as it was. False, with nothing written, when the file cannot be written or a name is empty or a
// text holds a line break.
bool WritePrivateProfileString(std::string_view section, std::string_view key,
                               std::string_view value, std::string_view file);

// Keys and values of the first section of that name, in file order, each key once (first wins).
std::vector<std::pair<std::string, std::string>> GetPrivateProfileSection(std::string_view section,
                                                                          std::string_view file);

// The same on a file-system path taken as it is, without the translation of Windows-form paths
// (the settings store, which holds the drive map, reads itself through these).
std::string ReadIniString(std::string_view section, std::string_view key,
                          std::string_view defaultValue, std::size_t bufferSize,
                          const std::filesystem::path& file);
bool WriteIniString(std::string_view section, std::string_view key, std::string_view value,
                    const std::filesystem::path& file);
std::vector<std::pair<std::string, std::string>> ReadIniSection(std::string_view section,
                                                                const std::filesystem::path& file);

}  // namespace fnrk::platform
