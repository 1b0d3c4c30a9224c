#pragma once

// From a (month, year) pair to the company's (period, book year), through the period start
// dates of its book years.

#include <string>
#include <string_view>

#include "intake/company_facts.hpp"

namespace fnrk::intake {

// The 8-character key "01" + MM + year that a period starting on the month's first day (monthly
// company) or its quarter's first day (quarterly company) carries in the period dates.
std::string PeriodStartKey(int month, int year, bool monthly);

// The period ("0#") and book-year number of a month. The newest book year holding the key wins;
// the opening period (the first date of a book year) is never matched. False, with `Period` and
// `booyear` unchanged, for an empty or non-positive month or year and when no book year holds
// the key.
bool DateToPeriode(CompanyFacts& company, std::string_view month, std::string_view Year,
                   std::string& Period, std::string& booyear);

}  // namespace fnrk::intake
