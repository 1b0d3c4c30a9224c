#pragma once

// The period an incoming file belongs to, read from its XML:
//   SODA  the text of the first "SocialPeriod" (social period chosen) or "AccountPeriod" element;
//   EFFF  the first "startDaySocialPayPeriod" inside an "employerDeclaration" element;
//   CARO  the first "EndDate" element.
// Elements are matched by local name, whatever their namespace. The text may be a date
// "yyyy-MM-dd" (a time after it is ignored), "DD/MM/YYYY", a month "yyyy-MM" or "yyyyMM", or
// "MM/YYYY"; the month and the year are taken from it.

#include <optional>
#include <string>
#include <string_view>

#include "intake/intake_kind.hpp"

namespace fnrk::intake {

struct MonthOfYear {
    int month = 0;
    int year = 0;
};

// The month and year of a period text in one of the forms above, white space around it
// ignored; nothing for another text.
std::optional<MonthOfYear> ParsePeriodText(std::string_view text);

// The period of the file at `path`; nothing when the file is missing, is not well-formed XML, or
// has no readable period element.
std::optional<MonthOfYear> ReadFilePeriod(std::string_view path, IntakeKind kind,
                                          bool socialPeriod);

}  // namespace fnrk::intake
