#include "users/users_news.hpp"

#include <algorithm>
#include <charconv>
#include <cstdlib>

#include "platform/file_system.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"
#include "users/users_folder.hpp"

namespace fnrk::users {

namespace {

constexpr std::string_view kAlias = "USERSNEWS";
constexpr const char* kFields =
    "NAME,C,15,0;TYPENEWS,N,2,0;FREQNEWS,N,2,0;LASTNEWS,C,20,0;LABELS,C,254,0;LASTRN,C,20,0";
constexpr std::string_view kNameTag = "NAME";
constexpr std::string_view kNameExpression = "iif(.not. deleted(),upper(name),space(15))";
constexpr std::size_t kNameWidth = 15;
constexpr char kLabelSeparator = ';';

std::string NameKey(std::string_view user) {
    return platform::PadRight(platform::UpperCase(platform::Trim(user)), kNameWidth);
}

std::vector<std::string> Labels(std::string_view text) {
    std::vector<std::string> labels;
    std::string rest(text);
    for (std::size_t end; !rest.empty(); rest.erase(0, end == std::string::npos ? end : end + 1)) {
        end = rest.find(kLabelSeparator);
        std::string label = platform::Trim(rest.substr(0, end));
        if (!label.empty()) labels.push_back(std::move(label));
    }
    return labels;
}

// The numbers of a dotted version; nothing for another text.
std::optional<std::vector<long>> VersionParts(std::string_view version) {
    std::vector<long> parts;
    const std::string text = platform::Trim(version);
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = std::min(text.find('.', start), text.size());
        long part = 0;
        const auto [stop, error] = std::from_chars(text.data() + start, text.data() + end, part);
        if (end == start || error != std::errc() || stop != text.data() + end) return std::nullopt;
        parts.push_back(part);
        start = end + 1;
    }
    while (parts.size() > 1 && parts.back() == 0) parts.pop_back();  // "4.2.0" is "4.2"
    return parts;
}

}  // namespace

std::string UsersNews::TablePath() {
    return InstallationFile("USERSNEWS.dbf");
}

bool UsersNews::Create(const std::string& path) {
    if (tables_.CreateTableFile(kAlias, path, kFields) != 0 ||
        tables_.OpenFile(kAlias, path, "", "EXCLUSIVE", tables::AdsClass::kOpenQuiet) != 0)
        return false;
    const bool tagged = tables_.CreateIndexTag(kAlias, kNameTag, kNameExpression) == 0;
    engine::IgnoreStatus(tables_.CloseAlias(kAlias));  // reopened shared next
    return tagged;
}

bool UsersNews::Open(bool create) {
    if (!tables_.IsAlias(kAlias)) {
        const std::string path = TablePath();
        if (path.empty()) return false;
        if (tables_.OpenFile(kAlias, path, "", "SHARED", tables::AdsClass::kOpenQuiet) != 0 &&
            (!create || platform::FileExists(path) || !Create(path) ||
             tables_.OpenFile(kAlias, path, "", "SHARED", tables::AdsClass::kOpenQuiet) != 0))
            return false;
    }
    return tables_.ActivateAlias(kAlias) == 0 && tables_.SetIndex(kNameTag);
}

std::optional<std::string> UsersNews::Read(std::string_view user, std::string_view field) {
    const tables::CurrentAliasGuard caller(tables_);
    if (platform::Trim(user).empty() || !Open(false) || !tables_.seekKey(NameKey(user)))
        return std::nullopt;
    return platform::Trim(tables_.GetStringValue(field));
}

bool UsersNews::Write(std::string_view user, const Change& change) {
    if (platform::Trim(user).empty()) return false;
    const tables::CurrentAliasGuard caller(tables_);
    if (!Open(true)) return false;
    const std::string key = NameKey(user);
    bool found = tables_.seekKey(key);
    if (found ? !tables_.RecLock(kAlias, tables_.recno()) : !tables_.LockTable(kAlias))
        return false;
    // Read again under the lock: another workstation may have added the user or changed the
    // row since the first look.
    found = tables_.seekKey(key);
    // Computed from the row as it is under the lock, so that no other change is lost.
    const Values values = change([&](std::string_view field) {
        return found ? platform::Trim(tables_.GetStringValue(field)) : std::string();
    });
    bool written = !values.empty();
    for (const auto& [field, value] : values) {
        written = written && platform::CharCount(value) <= tables_.FieldLength(field);
    }
    if (written && !found) written = tables_.RecordAdd() == 0 && tables_.PutFieldValue("NAME", key);
    for (const auto& [field, value] : values) {
        written = written && tables_.PutFieldValue(field, value);
    }
    return tables_.FlushAndUnlock(kAlias) == 0 && written;
}

std::int16_t UsersNews::GetTypeNews(std::string_view user) {
    return static_cast<std::int16_t>(std::atoi(Read(user, "TYPENEWS").value_or("0").c_str()));
}

std::int16_t UsersNews::GetFreqNews(std::string_view user) {
    return static_cast<std::int16_t>(std::atoi(Read(user, "FREQNEWS").value_or("0").c_str()));
}

std::string UsersNews::GetLastNews(std::string_view user) {
    return Read(user, "LASTNEWS").value_or("");
}

std::string UsersNews::NewsLabelsSelected(std::string_view user) {
    return Read(user, "LABELS").value_or("");
}

std::string UsersNews::GetLastReleaseNote(std::string_view user) {
    return Read(user, "LASTRN").value_or("");
}

bool UsersNews::SaveNewsPref(std::string_view user, std::int16_t typeNews, std::int16_t freqNews) {
    constexpr std::int16_t kLargest = 99;  // two digits
    if (typeNews < 0 || typeNews > kLargest || freqNews < 0 || freqNews > kLargest) return false;
    return Write(user, [&](const Current&) {
        return Values{{"TYPENEWS", std::to_string(typeNews)},
                      {"FREQNEWS", std::to_string(freqNews)}};
    });
}

bool UsersNews::SaveLastNews(std::string_view user, std::string_view news) {
    return Write(user, [&](const Current&) { return Values{{"LASTNEWS", platform::Trim(news)}}; });
}

bool UsersNews::SelectLabel(std::string_view user, std::string_view label, bool selected) {
    const std::string wanted = platform::Trim(label);
    if (wanted.empty() || wanted.find(kLabelSeparator) != std::string::npos) return false;
    return Write(user, [&](const Current& current) {
        std::vector<std::string> labels = Labels(current("LABELS"));
        const auto same = [&](const std::string& each) {
            return platform::EqualsNoCase(each, wanted);
        };
        labels.erase(std::remove_if(labels.begin(), labels.end(), same), labels.end());
        if (selected) labels.push_back(wanted);
        std::string joined;
        for (const std::string& each : labels) {
            joined += (joined.empty() ? "" : std::string(1, kLabelSeparator)) + each;
        }
        return Values{{"LABELS", joined}};
    });
}

bool UsersNews::SetLastReleaseNote(std::string_view user, std::string_view version) {
    if (!VersionParts(version)) return false;
    return Write(user, [&](const Current&) { return Values{{"LASTRN", platform::Trim(version)}}; });
}

bool UsersNews::IsUnreadReleaseNote(std::string_view user, std::string_view version) {
    const auto wanted = VersionParts(version);
    if (!wanted) return false;
    const auto read = VersionParts(GetLastReleaseNote(user));
    return !read ||
           std::lexicographical_compare(read->begin(), read->end(), wanted->begin(), wanted->end());
}

}  // namespace fnrk::users
