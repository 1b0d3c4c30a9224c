#include "utilities/cls_format.hpp"

#include <charconv>
#include <cmath>
#include <optional>
#include <vector>

#include <fmt/format.h>

#include "platform/text.hpp"
#include "utilities/calendar.hpp"

namespace fnrk::utilities {

namespace {

std::optional<int> Digits(std::string_view text) {
    if (text.empty() || text.size() > 4) return std::nullopt;
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::vector<std::string_view> SplitDateParts(std::string_view text) {
    std::vector<std::string_view> parts;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i == text.size() || text[i] == '/' || text[i] == '-' || text[i] == '.') {
            parts.push_back(text.substr(start, i - start));
            start = i + 1;
        }
    }
    return parts;
}

std::string DayMonthYear(int day, int month, int year) {
    if (!IsValidDate(year, month, day)) return {};
    return fmt::format("{:02}/{:02}/{:04}", day, month, year);
}

}  // namespace

std::string clsFormat::Currency(double amount, std::string_view decimalSeparator,
                                std::string_view thousandSeparator) const {
    const std::string plain = platform::FormatNumber(std::fabs(amount), "0.00");
    const std::size_t point = plain.find('.');
    const std::string integerPart = plain.substr(0, point);
    std::string grouped;
    for (std::size_t i = 0; i < integerPart.size(); ++i) {
        if (i > 0 && (integerPart.size() - i) % 3 == 0) grouped += thousandSeparator;
        grouped += integerPart[i];
    }
    const bool negative = amount < 0 && plain != "0.00";
    return (negative ? "-" : "") + grouped +
           std::string(decimalSeparator.empty() ? "," : decimalSeparator) + plain.substr(point + 1);
}

std::string clsFormat::DateDDMMYYYYWithSlash(std::string_view date) const {
    const std::string text = platform::Trim(date);
    if (text.size() == 8 && text.find_first_not_of("0123456789") == std::string::npos) {
        return DayMonthYear(*Digits(std::string_view(text).substr(6, 2)),
                            *Digits(std::string_view(text).substr(4, 2)),
                            *Digits(std::string_view(text).substr(0, 4)));
    }
    const auto parts = SplitDateParts(text);
    if (parts.size() != 3) return {};
    const auto first = Digits(parts[0]), second = Digits(parts[1]), third = Digits(parts[2]);
    if (!first || !second || !third) return {};
    if (parts[0].size() == 4) return DayMonthYear(*third, *second, *first);
    int year = *third;
    if (parts[2].size() <= 2)
        year += year <= 80 ? 2000 : 1900;
    else if (parts[2].size() != 4)
        return {};
    return DayMonthYear(*first, *second, year);
}

}  // namespace fnrk::utilities
