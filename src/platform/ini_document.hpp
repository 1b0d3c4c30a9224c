#pragma once

// The lines of one configuration file as the private-profile functions see them. Internal to the
// INI reader and writer.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace fnrk::platform {

class IniDocument {
  public:
    // `content` is the file's text (UTF-8); every line keeps its own line end.
    explicit IniDocument(std::string_view content);

    std::string Text() const;

    // Index of the header line of the first section named `section`.
    std::optional<std::size_t> FindSection(std::string_view section) const;
    // Index of the first line of that section's `key`.
    std::optional<std::size_t> FindKey(std::size_t sectionLine, std::string_view key) const;
    // Value (trimmed, unquoted) of a key line.
    std::string ValueAt(std::size_t keyLine) const;
    // Key name (trimmed) of a line, empty when it is not a key line.
    std::string KeyAt(std::size_t line) const;
    // Index one past the last line of the section that starts at `sectionLine`.
    std::size_t SectionEnd(std::size_t sectionLine) const;

    void ReplaceValue(std::size_t keyLine, std::string_view value);
    void AddKey(std::size_t sectionLine, std::string_view key, std::string_view value);
    void AddSection(std::string_view section, std::string_view key, std::string_view value);

  private:
    struct Line {
        std::string text;  // without its line end
        std::string end;   // "\r\n", "\n" or "" for a last line without one
    };

    std::string LineEnd() const;

    std::vector<Line> lines_;
};

}  // namespace fnrk::platform
