#include "users/users_ext.hpp"

#include <set>

#include "platform/file_system.hpp"
#include "platform/text.hpp"
#include "tables/ads_class.hpp"
#include "tables/current_alias_guard.hpp"
#include "tables/shared_tables.hpp"
#include "users/users_folder.hpp"

namespace fnrk::users {

const std::array<std::pair<std::string_view, std::string_view>, 6> kUsersExtTags = {{
    {"NAME", "iif(.not. deleted(),name+type+key,space(75))"},
    {"TYPE", "iif(.not. deleted(),type+name+key,space(75))"},
    {"KEY", "iif(.not. deleted(), type+key+name,space(75))"},
    {"UPPERNAME", "iif(.not. deleted(),upper(name)+type+key,space(75))"},
    {"UPPERTYPE", "iif(.not. deleted(),type+upper(name)+key,space(75))"},
    {"UPPERKEY", "iif(.not. deleted(), type+key+upper(name),space(75))"},
}};

namespace {

constexpr std::string_view kAlias = "USERSEXT";
constexpr const char* kFields = "NAME,C,50,0;TYPE,C,10,0;KEY,C,15,0;VALUE,C,255,0";
constexpr std::size_t kNameWidth = 50;
constexpr std::size_t kTypeWidth = 10;
constexpr std::size_t kKeyWidth = 15;
constexpr std::size_t kValueWidth = 255;
constexpr std::int32_t kQueryForm = 0;

std::string Name(std::string_view name) {
    return platform::PadRight(platform::Trim(name), kNameWidth);
}
std::string Type(std::string_view type) {
    return platform::PadRight(platform::Trim(type), kTypeWidth);
}
std::string Key(std::string_view key) {
    return platform::PadRight(platform::Trim(key), kKeyWidth);
}

}  // namespace

UsersExt::UsersExt() : UsersExt(tables::SharedAdsClass()) {}

std::string UsersExt::TablePath() {
    return InstallationFile("USERSEXT.dbf");
}

bool UsersExt::Open(bool create) {
    if (tables_.IsAlias(kAlias)) return tables_.ActivateAlias(kAlias) == 0;
    const std::string path = TablePath();
    if (path.empty()) return false;
    if (tables_.OpenFile(kAlias, path, "", "SHARED", tables::AdsClass::kOpenQuiet) == 0)
        return true;
    return create && CreateUserExtended() && tables_.FileOpenExternal(kAlias, path) == 0;
}

bool UsersExt::CreateUserExtended() {
    const std::string path = TablePath();
    if (path.empty()) return false;
    const tables::CurrentAliasGuard caller(tables_);
    if (tables_.IsAlias(kAlias)) tables_.CloseAlias(kAlias);
    const tables::AdsClass::Handle connection = tables_.ConnectionOfTableFile(kAlias, path);
    if (connection != 0 && connection < engine::kEngineHandleStart) {
        bool exists = false;
        tables::SqlDatabase& db = tables_.Database();
        if (db.TableExists(connection, path, exists) == 0 && exists)
            engine::IgnoreStatus(
                db.DropTable(connection, path));  // the creation that follows reports
    } else {
        platform::DeleteFile(path);
        platform::DeleteFile(path.substr(0, path.size() - 4) + ".cdx");
    }
    if (tables_.CreateTableFile(kAlias, path, kFields) != 0 ||
        tables_.OpenFile(kAlias, path, "", "EXCLUSIVE", tables::AdsClass::kOpenQuiet) != 0)
        return false;
    bool tagged = true;
    for (const auto& [tag, expression] : kUsersExtTags)
        tagged = tagged && tables_.CreateIndexTag(kAlias, tag, expression) == 0;
    tables_.CloseAlias(kAlias);
    return tagged;
}

bool UsersExt::RebuildUserExtendedIndex() {
    const std::string path = TablePath();
    if (path.empty()) return false;
    const tables::CurrentAliasGuard caller(tables_);
    if (tables_.IsAlias(kAlias)) tables_.CloseAlias(kAlias);
    if (tables_.OpenFile(kAlias, path, "", "EXCLUSIVE", tables::AdsClass::kOpenQuiet) != 0)
        return false;
    bool complete = true;
    for (const auto& [tag, expression] : kUsersExtTags) {
        if (!tables_.SetIndex(tag) || tables_.GetIndexTagName() != tag)
            complete = tables_.CreateIndexTag(kAlias, tag, expression) == 0 && complete;
    }
    // The view the other routines browse through must work on the rebuilt orders.
    complete = complete &&
               tables_.AddQuery("BROWSETYPE", kQueryForm, kAlias, "UPPERTYPE", "", 0, "") == 0 &&
               tables_.ActivateQuery("BROWSETYPE", kQueryForm) == 0 &&
               tables_.GetIndexTagName() == "UPPERTYPE";
    tables_.RemoveQuery("BROWSETYPE", kQueryForm);
    tables_.CloseAlias(kAlias);
    return complete;
}

bool UsersExt::UpdateUserExtended(std::string_view name, std::string_view type,
                                  std::string_view key, std::string_view value) {
    if (platform::Trim(name).empty() || platform::Trim(type).empty() ||
        platform::CharCount(platform::TrimRight(value)) > kValueWidth)
        return false;
    const tables::CurrentAliasGuard caller(tables_);
    if (!Open(true) || !tables_.SetIndex("NAME")) return false;
    const std::string seek = Name(name) + Type(type) + Key(key);
    if (!tables_.seekKey(seek)) {
        // Added under the table lock and looked for again once held.
        if (!tables_.LockTable(kAlias)) return false;
        bool added = true;
        if (!tables_.seekKey(seek)) {
            added = tables_.RecordAdd() == 0 && tables_.PutFieldValue("NAME", Name(name)) &&
                    tables_.PutFieldValue("TYPE", Type(type)) &&
                    tables_.PutFieldValue("KEY", Key(key)) &&
                    tables_.PutFieldValue("VALUE", std::string(value));
        } else {
            added = tables_.PutFieldValue("VALUE", std::string(value));
        }
        return tables_.FlushAndUnlock(kAlias) == 0 && added;
    }
    if (!tables_.RecLock(kAlias, tables_.recno())) return false;
    const bool written = tables_.PutFieldValue("VALUE", std::string(value));
    return tables_.FlushAndUnlock(kAlias) == 0 && written;
}

std::string UsersExt::GetValueUserExtented(std::string_view name, std::string_view type,
                                           std::string_view key) {
    const tables::CurrentAliasGuard caller(tables_);
    if (!Open(false) || !tables_.SetIndex("NAME") ||
        !tables_.seekKey(Name(name) + Type(type) + Key(key)))
        return {};
    return tables_.GetStringValue("VALUE");
}

template <class Matches>
std::vector<std::uint32_t> UsersExt::RowsFrom(std::string_view query, std::string_view tag,
                                              const std::string& key, Matches matches) {
    std::vector<std::uint32_t> records;
    if (tables_.AddQuery(query, kQueryForm, kAlias, tag, "", 0, "") != 0 ||
        tables_.ActivateQuery(query, kQueryForm) != 0 || tables_.GetIndexTagName() != tag)
        return records;
    tables_.seekKey(key, true);
    for (; !tables_.SelectionEof() && matches(); tables_.moveNext())
        records.push_back(tables_.recno());
    return records;
}

std::int32_t UsersExt::DeleteRows(const std::vector<std::uint32_t>& records) {
    std::int32_t deleted = 0;
    for (std::uint32_t record : records) {
        if (!tables_.RecLock(kAlias, record)) continue;
        if (tables_.RecordDelete() == 0) ++deleted;
        tables_.FlushAndUnlock(kAlias);
    }
    return deleted;
}

std::int32_t UsersExt::DeleteSpecificUser(std::string_view name) {
    const tables::CurrentAliasGuard caller(tables_);
    const std::string upperName = platform::UpperCase(Name(name));
    if (platform::Trim(upperName).empty() || !Open(false)) return 0;
    return DeleteRows(RowsFrom("BROWSEUEXT", "UPPERNAME", upperName, [&] {
        return platform::UpperCase(Name(tables_.GetStringValue("NAME"))) == upperName;
    }));
}

std::int32_t UsersExt::DeleteAllUsersExtended(std::string_view type, std::string_view key) {
    const tables::CurrentAliasGuard caller(tables_);
    if (!Open(false)) return 0;
    const std::string typeKey = Type(type) + Key(key);
    return DeleteRows(RowsFrom("BROWSEUEXT", "UPPERKEY", typeKey, [&] {
        return Type(tables_.GetStringValue("TYPE")) + Key(tables_.GetStringValue("KEY")) == typeKey;
    }));
}

bool UsersExt::IsMultiUserExtented(std::string_view type, std::string_view key) {
    const tables::CurrentAliasGuard caller(tables_);
    if (!Open(false)) return false;
    const std::string typeKey = Type(type) + Key(key);
    std::set<std::string> holders;
    RowsFrom("BROWSEKEY", "UPPERKEY", typeKey, [&] {
        if (Type(tables_.GetStringValue("TYPE")) + Key(tables_.GetStringValue("KEY")) != typeKey)
            return false;
        holders.insert(platform::UpperCase(platform::Trim(tables_.GetStringValue("NAME"))));
        return holders.size() < 2;
    });
    return holders.size() > 1;
}

}  // namespace fnrk::users
