#pragma once

// UsersExt: the installation's table of extra values per user, "USERSEXT.dbf" (alias
// "USERSEXT", fields NAME C 50, TYPE C 10, KEY C 15, VALUE C 255) beside the shared
// configuration file in the installation folder (settings "Installation"/"MainPath"), with the
// six tags of "USERSEXT.cdx". One row is one value: user name, entry type, key within the
// type, value. Each tag indexes deleted rows as 75 blanks, so they never appear in any order.
//
// Matching rules:
// - names, types and keys are trimmed and cut to their field widths (a 60-character name is
//   its first 50);
// - update and get value find the row by name, type and key exactly as given (NAME order);
// - delete specific user matches the name in any case (UPPERNAME order);
// - delete all and is multi match type and key exactly, any user (UPPERKEY order); is multi
//   counts users by their name in upper case.
// Each operation opens the table shared when "USERSEXT" is not open, and gives the caller its
// current alias back. A missing table holds no values: reads answer empty, zero or false
// without a message; update creates the table first.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fnrk::tables {
class AdsClass;
}

namespace fnrk::users {

// The six tags, as (name, expression), exactly as every installation has them.
extern const std::array<std::pair<std::string_view, std::string_view>, 6> kUsersExtTags;

class UsersExt {
  public:
    // Works on the process's shared table access.
    UsersExt();
    // `tables` must outlive this object.
    explicit UsersExt(tables::AdsClass& tables) : tables_(tables) {}

    // The table's path in the installation folder; empty when that folder is not set.
    static std::string TablePath();

    // Creates the table and its six tags, deleting a table (and index) of those names first.
    // False when the installation folder is not set or the table cannot be made.
    bool CreateUserExtended();
    // Writes `value` for name, type and key, adding the row when missing (under the table's
    // lock, so that two workstations never both add it). False, and nothing written, for a
    // blank name or type, a value longer than 255 characters, or a refused lock.
    bool UpdateUserExtended(std::string_view name, std::string_view type, std::string_view key,
                            std::string_view value);
    // The value, trailing blanks removed; empty when absent.
    std::string GetValueUserExtented(std::string_view name, std::string_view type,
                                     std::string_view key);
    // Deletes every row of the user (name in any case); the number of rows deleted.
    std::int32_t DeleteSpecificUser(std::string_view name);
    // Deletes the rows of every user for a type and key; the number of rows deleted.
    std::int32_t DeleteAllUsersExtended(std::string_view type, std::string_view key);
    // More than one user holds a value for the type and key.
    bool IsMultiUserExtented(std::string_view type, std::string_view key);
    // Opens the table exclusively and adds whichever of the six tags its index lacks; true
    // when all six are there afterwards. False when others have the table open.
    bool RebuildUserExtendedIndex();

  private:
    // Makes "USERSEXT" open and current; `create` makes a missing table first.
    bool Open(bool create);
    // The records of the rows met from a soft seek of `key` in the order of `query` (on
    // `tag`) while `matches` holds for the current row.
    template <class Matches>
    std::vector<std::uint32_t> RowsFrom(std::string_view query, std::string_view tag,
                                        const std::string& key, Matches matches);
    // Deletes the rows, each under its lock; the number deleted.
    std::int32_t DeleteRows(const std::vector<std::uint32_t>& records);

    tables::AdsClass& tables_;
};

}  // namespace fnrk::users
