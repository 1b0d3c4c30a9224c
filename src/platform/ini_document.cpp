#include "platform/ini_document.hpp"

#include "platform/text.hpp"

namespace fnrk::platform {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view TrimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    const std::size_t last = text.find_last_not_of(kBlanks);
    return text.substr(first, last - first + 1);
}

// Name of a section header line ("[ name ]"), or nothing.
std::optional<std::string_view> SectionName(std::string_view line) {
    const std::string_view trimmed = TrimBlanks(line);
    if (trimmed.empty() || trimmed.front() != '[') return std::nullopt;
    const std::size_t close = trimmed.find(']');
    const std::size_t length = close == std::string_view::npos ? std::string_view::npos : close - 1;
    return TrimBlanks(trimmed.substr(1, length));
}

bool IsComment(std::string_view line) {
    const std::string_view trimmed = TrimBlanks(line);
    return !trimmed.empty() && trimmed.front() == ';';
}

}  // namespace

IniDocument::IniDocument(std::string_view content) {
    std::size_t start = 0;
    while (start < content.size()) {
        const std::size_t newline = content.find('\n', start);
        if (newline == std::string_view::npos) {
            lines_.push_back({std::string(content.substr(start)), ""});
            break;
        }
        std::size_t textEnd = newline;
        if (textEnd > start && content[textEnd - 1] == '\r') --textEnd;
        lines_.push_back({std::string(content.substr(start, textEnd - start)),
                          std::string(content.substr(textEnd, newline + 1 - textEnd))});
        start = newline + 1;
    }
}

std::string IniDocument::Text() const {
    std::string text;
    for (const Line& line : lines_) text += line.text + line.end;
    return text;
}

std::optional<std::size_t> IniDocument::FindSection(std::string_view section) const {
    const std::string_view wanted = TrimBlanks(section);
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const auto name = SectionName(lines_[i].text);
        if (name && EqualsNoCase(*name, wanted)) return i;
    }
    return std::nullopt;
}

std::size_t IniDocument::SectionEnd(std::size_t sectionLine) const {
    std::size_t i = sectionLine + 1;
    while (i < lines_.size() && !SectionName(lines_[i].text)) ++i;
    return i;
}

std::string IniDocument::KeyAt(std::size_t line) const {
    const std::string& text = lines_[line].text;
    if (IsComment(text) || SectionName(text)) return {};
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) return {};
    return std::string(TrimBlanks(std::string_view(text).substr(0, equals)));
}

std::optional<std::size_t> IniDocument::FindKey(std::size_t sectionLine,
                                                std::string_view key) const {
    const std::string_view wanted = TrimBlanks(key);
    const std::size_t end = SectionEnd(sectionLine);
    for (std::size_t i = sectionLine + 1; i < end; ++i) {
        const std::string name = KeyAt(i);
        if (!name.empty() && EqualsNoCase(name, wanted)) return i;
    }
    return std::nullopt;
}

std::string IniDocument::ValueAt(std::size_t keyLine) const {
    const std::string& text = lines_[keyLine].text;
    std::string_view value = TrimBlanks(std::string_view(text).substr(text.find('=') + 1));
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front()) {
        value = value.substr(1, value.size() - 2);
    }
    return std::string(value);
}

void IniDocument::ReplaceValue(std::size_t keyLine, std::string_view value) {
    std::string& text = lines_[keyLine].text;
    text = text.substr(0, text.find('=') + 1) + std::string(value);
}

std::string IniDocument::LineEnd() const {
    for (const Line& line : lines_) {
        if (!line.end.empty()) return line.end;
    }
    return "\r\n";
}

void IniDocument::AddKey(std::size_t sectionLine, std::string_view key, std::string_view value) {
    // After the section's last non-blank line, so blank lines before the next header stay there.
    std::size_t after = sectionLine;
    const std::size_t end = SectionEnd(sectionLine);
    for (std::size_t i = sectionLine + 1; i < end; ++i) {
        if (!TrimBlanks(lines_[i].text).empty()) after = i;
    }
    const std::string lineEnd = LineEnd();
    if (lines_[after].end.empty()) lines_[after].end = lineEnd;
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(after) + 1,
                  Line{std::string(key) + "=" + std::string(value), lineEnd});
}

void IniDocument::AddSection(std::string_view section, std::string_view key,
                             std::string_view value) {
    const std::string lineEnd = LineEnd();
    if (!lines_.empty() && lines_.back().end.empty()) lines_.back().end = lineEnd;
    lines_.push_back({"[" + std::string(section) + "]", lineEnd});
    lines_.push_back({std::string(key) + "=" + std::string(value), lineEnd});
}

}  // namespace fnrk::platform
