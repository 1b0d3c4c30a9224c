#pragma once

// Named queries: the view of a table that a screen leaves and later restores (table, order,
// filter, key range, record), and the decoding of cursor ROWIDs into record numbers.

#include <cstdint>
#include <string>
#include <string_view>

namespace fnrk::tables {

// The answer of the query getters for a query that does not exist.
inline constexpr std::string_view kQueryNotFound = "NOT$FOUND";
// The index name stored for a query whose index matches no tag of its table.
inline constexpr std::string_view kTagError = "tag_err";

struct NamedQuery {
    std::string Name;  // the key, see NamedQueryKey
    std::int32_t FormNum = 0;
    std::string Alias;
    std::string IndexName;
    std::string FilterExpr;
    std::string BegScope;
    std::string EndScope;
    std::uint32_t RecordNumber = 0;
    std::string comment;
};

// The key of a query: its name trimmed and upper-cased, joined with the form number, cut to 25
// characters (so names that differ only further on are the same query).
std::string NamedQueryKey(std::string_view name, std::int32_t formNum);

// The filter of a query on the entries table while temporary entries are hidden: the caller's
// filter with " AND ISTEMP=.F." appended, or "ISTEMP=.F." alone.
std::string WithoutTemporaryEntries(std::string_view filter);

// The record number an engine cursor's ROWID names: its last 6 characters as a base-64 number,
// most significant first, over "A-Z a-z 0-9 + /". A letter counts as its upper-case form, so
// "a" is 0 like "A": the readers of these numbers have always decoded them so. 0 when the text
// is shorter or holds another character.
std::uint32_t RecordNumberOfEngineRowId(std::string_view rowId);
// The record number a SQL backend cursor's ROWID names: its last 8 characters, decimal; 0 when
// they are not digits.
std::uint32_t RecordNumberOfSqlRowId(std::string_view rowId);

// The statements of the user cursors. A quote in the user name is doubled, so the name stays
// one string literal whatever it holds. The system user has one row per company.
std::string UserCursorStatement(std::string_view userName);
// The same rows with a sentinel row per user record that sorts last ("ZZZ..." company code).
std::string PathCursorStatement(std::string_view userName);

// A SELECT without the static hint gets it ("SELECT {static} ..."), so that every query gives a
// static cursor; any other statement is left as it is.
std::string WithStaticCursor(std::string_view statement);

}  // namespace fnrk::tables
