#pragma once

// The labels of EFFF payroll item types, in the three languages of the application, from the
// label table "EFFFTYPE.ORG" of the application's template folder (resources/ORG in the source
// tree): TYPE C 41 (the item type as ACTCOM keeps it: line-type letter, then the type), LABELFR,
// LABELNL, LABELEN C 60. The installation fills it; the library only reads it.

#include <string>
#include <string_view>

namespace fnrk::tables {
class AdsClass;
}

namespace fnrk::intake {

// The label of `typeEfff` in `language` ("N" Dutch, "E" English, in any case, any other French, as
// the message language is chosen), the French one when that is blank. False, `typeLabel` left as it
// was, when the table is missing or does not hold the type. The caller's current table is kept; the
// label table is closed again.
bool EfffTypeLabel(tables::AdsClass& tables, std::string_view typeEfff, std::string_view language,
                   std::string& typeLabel);

}  // namespace fnrk::intake
