#pragma once

// UsersNews: each user's news preferences and reading marks, "USERSNEWS.dbf" (alias
// "USERSNEWS") beside the shared configuration file in the installation folder (settings
// "Installation"/"MainPath"). One row per user:
//
//   NAME      C 15   the user's name, upper case
//   TYPENEWS  N 2    the kinds of news the user wants (the caller's code)
//   FREQNEWS  N 2    how often news are shown (the caller's code)
//   LASTNEWS  C 20   the last news item shown
//   LABELS    C 254  the news labels the user chose, joined by ";"
//   LASTRN    C 20   the last release note the user read ("4.2.1")
//
// Tag "NAME" = "iif(.not. deleted(),upper(name),space(15))". The table is made on the first
// write; reads of a missing table or row answer zero and empty text. A row is added under the
// table's lock after a second look, so two workstations never both add one user; a row found
// is rewritten under its record lock. Each change is made from the row as it stands under the
// lock, so that two workstations choosing labels at once lose neither choice.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace fnrk::tables {
class AdsClass;
}

namespace fnrk::users {

class UsersNews {
  public:
    // `tables` must outlive this object.
    explicit UsersNews(tables::AdsClass& tables) : tables_(tables) {}

    // The table's path in the installation folder; empty when that folder is not set.
    static std::string TablePath();

    std::int16_t GetTypeNews(std::string_view user);
    std::int16_t GetFreqNews(std::string_view user);
    std::string GetLastNews(std::string_view user);
    // The chosen labels, joined by ";" in the order they were chosen.
    std::string NewsLabelsSelected(std::string_view user);
    std::string GetLastReleaseNote(std::string_view user);

    // Each write answers false, with nothing written, for a blank user name, a value that does
    // not fit its field, a refused lock or a table that cannot be made.
    bool SaveNewsPref(std::string_view user, std::int16_t typeNews, std::int16_t freqNews);
    bool SaveLastNews(std::string_view user, std::string_view news);
    // Adds the label to the user's choice (`selected`) or takes it out; labels are compared in
    // any case, and a label holding ";" is refused.
    bool SelectLabel(std::string_view user, std::string_view label, bool selected);
    bool SetLastReleaseNote(std::string_view user, std::string_view version);
    // `version` is newer than the last release note the user read (dotted numbers compared
    // part by part, "4.10" after "4.9"; a user who read none has every version unread).
    bool IsUnreadReleaseNote(std::string_view user, std::string_view version);

  private:
    using Values = std::vector<std::pair<std::string_view, std::string>>;
    // A field of the user's row as it stands ("" for a user without a row yet).
    using Current = std::function<std::string(std::string_view field)>;
    // The values to write, from the row as it stands.
    using Change = std::function<Values(const Current& current)>;
    // A field of the user's row; nothing when the table or the row is missing.
    std::optional<std::string> Read(std::string_view user, std::string_view field);
    // Locks the user's row (the table, to add it), writes what `change` gives, and unlocks.
    bool Write(std::string_view user, const Change& change);
    bool Create(const std::string& path);
    // Makes the table open and current in name order; `create` makes a missing table first.
    bool Open(bool create);

    tables::AdsClass& tables_;
};

}  // namespace fnrk::users
