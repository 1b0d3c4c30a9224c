#pragma once

// The mapping tables of a company: their names (also their aliases), fields and index tags.
// Every tag but ACTCOM's puts "X" before the live key and gives a deleted record "X" and blanks,
// so that a seek for "X" + key never finds a deleted record.

#include <string_view>
#include <utility>
#include <vector>

namespace fnrk::intake {

struct MappingLayout {
    std::string_view name;  // table name and alias: "MSODA" is "<short name>_MSODA.dbf"
    // Field list "NAME,TYPE,LENGTH,DECIMALS;..." in file order; empty for a table made from a
    // template.
    std::string_view fields;
    std::vector<std::pair<std::string_view, std::string_view>> tags;  // (name, expression)
};

const MappingLayout& MsodaLayout();
const MappingLayout& MsodaAnaLayout();
// Made from the template "EFFFSOC.ORG" of the application's template folder.
const MappingLayout& MefffsocLayout();
const MappingLayout& ActcomLayout();
const MappingLayout& CcdLayout();
const MappingLayout& CcdKeyLayout();
const MappingLayout& CcdDetailLayout();

// The layout named `name` (any case) among the tables above; nullptr for another name.
const MappingLayout* MappingLayoutNamed(std::string_view name);

// The template of MEFFFSOC, in the application's template folder.
inline constexpr std::string_view kMefffsocTemplate = "EFFFSOC.ORG";

}  // namespace fnrk::intake
