#include "company/cls_accounting.hpp"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <optional>
#include <vector>

#include "company/soc_param_col_class_api.hpp"
#include "platform/paths.hpp"
#include "platform/text.hpp"
#include "session/app_class.hpp"
#include "tables/ads_class.hpp"
#include "tables/table_file_lookup.hpp"

namespace fnrk::company {

namespace {

namespace chrono = std::chrono;

constexpr std::string_view kBankListAlias = "BANKCODE";
constexpr std::string_view kBankListFile = "BANKCODE.ORG";
constexpr std::size_t kNationalDigits = 12;
constexpr std::size_t kProtocolDigits = 3;
constexpr int kMonthsPerYear = 12;

bool AllDigits(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](unsigned char c) { return std::isdigit(c) != 0; });
}

std::optional<chrono::year_month_day> MakeDate(std::string_view day, std::string_view month,
                                               std::string_view year) {
    if (!AllDigits(day) || !AllDigits(month) || !AllDigits(year)) return std::nullopt;
    const chrono::year_month_day date{chrono::year(std::stoi(std::string(year))),
                                      chrono::month(std::stoul(std::string(month))),
                                      chrono::day(std::stoul(std::string(day)))};
    return date.ok() ? std::optional(date) : std::nullopt;
}

// "DD/MM/YYYY".
std::optional<chrono::year_month_day> ReadSlashDate(std::string_view text) {
    const std::string date = platform::Trim(text);
    if (date.size() != 10 || date[2] != '/' || date[5] != '/') return std::nullopt;
    return MakeDate(std::string_view(date).substr(0, 2), std::string_view(date).substr(3, 2),
                    std::string_view(date).substr(6, 4));
}

// "DDMMYYYY", as the period dates keep them.
std::optional<chrono::year_month_day> ReadPeriodDate(std::string_view text) {
    if (text.size() != 8) return std::nullopt;
    return MakeDate(text.substr(0, 2), text.substr(2, 2), text.substr(4, 4));
}

int MonthNumber(const chrono::year_month_day& date) {
    return static_cast<int>(date.year()) * kMonthsPerYear +
           static_cast<int>(static_cast<unsigned>(date.month()));
}

std::string TwoDigits(std::size_t number) {
    return number < 10 ? "0" + std::to_string(number) : std::to_string(number);
}

}  // namespace

std::string clsAccounting::ReturnPeriode(std::string_view date, std::int16_t bookYear) {
    const auto day = ReadSlashDate(date);
    if (!day) return {};
    const std::vector<std::string> slots = params_.PeriodDates(bookYear);
    std::string number = std::to_string(bookYear == 0 ? params_.CurrentBYNum() : bookYear);
    std::size_t periods = static_cast<std::size_t>(std::max<int>(0, params_.NbrPerByYear(number)));
    if (periods == 0 && !slots.empty()) periods = slots.size() - 1;  // no labels: no closing slot
    // starts[k - 1]: the first day of ordinary period k.
    std::vector<chrono::sys_days> starts;
    for (std::size_t slot = 1; slot <= periods && slot < slots.size(); ++slot) {
        const auto start = ReadPeriodDate(slots[slot]);
        if (!start) return {};
        starts.push_back(chrono::sys_days(*start));
    }
    if (starts.empty()) return {};
    const chrono::year_month_day lastStart(starts.back());
    const int lastLength = starts.size() > 1
                               ? MonthNumber(lastStart) -
                                     MonthNumber(chrono::year_month_day(starts[starts.size() - 2]))
                               : kMonthsPerYear;
    const chrono::sys_days end(lastStart + chrono::months(lastLength));
    const chrono::sys_days wanted(*day);
    if (wanted < starts.front() || wanted >= end) return {};
    const auto after = std::upper_bound(starts.begin(), starts.end(), wanted);
    return TwoDigits(static_cast<std::size_t>(after - starts.begin()));
}

bool clsAccounting::CheckCentralisateur(std::string_view account) {
    const std::string number = platform::Trim(account);
    return (number.rfind("40", 0) == 0 || number.rfind("44", 0) == 0) &&
           params_.AccountExists(number);
}

std::string BankProtocolCode(std::string_view account) {
    std::string compact;
    for (const char c : account) {
        if (c != ' ' && c != '-' && c != '.') compact += c;
    }
    compact = platform::UpperCase(compact);
    if (compact.rfind("BE", 0) == 0 && compact.size() == 4 + kNationalDigits &&
        AllDigits(std::string_view(compact).substr(2)))
        return compact.substr(4, kProtocolDigits);
    if ((compact.size() == kNationalDigits || compact.size() == kProtocolDigits) &&
        AllDigits(compact))
        return compact.substr(0, kProtocolDigits);
    return {};
}

std::string clsAccounting::GetBankName(std::string_view account) {
    const std::string code = BankProtocolCode(account);
    if (code.empty()) return {};
    const std::string file =
        session::SharedAppClass().OrgPath() + platform::kPathSep + std::string(kBankListFile);
    std::string name;
    tables::LookUpTableFile(
        tables_, kBankListAlias, file, "FROMCODE<='" + code + "' .AND. TOCODE>='" + code + "'",
        [&](tables::AdsClass& table) { name = platform::Trim(table.GetStringValue("NAME")); });
    return name;
}

}  // namespace fnrk::company
