#include "utilities/cls_print.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

#include "platform/text.hpp"

namespace fnrk::utilities {

namespace {

double RoundCents(double value) {
    const double rounded = std::round(value * 100.0) / 100.0;
    return rounded == 0.0 ? 0.0 : rounded;
}

std::string DigitsOf(std::string_view text) {
    std::string digits;
    for (const char c : text)
        if (c >= '0' && c <= '9') digits += c;
    return digits;
}

}  // namespace

double clsPrint::SignTot(double debit, double credit) const {
    return RoundCents(debit - credit);
}

int clsPrint::CalculCarac(double amount, int decimals) const {
    decimals = std::clamp(decimals, 0, 6);
    const std::string pattern = decimals == 0 ? "0" : "0." + std::string(decimals, '0');
    const std::string plain = platform::FormatNumber(amount, pattern);
    const bool negative = !plain.empty() && plain.front() == '-';
    const std::size_t point = plain.find('.');
    const std::size_t integerDigits =
        (point == std::string::npos ? plain.size() : point) - (negative ? 1 : 0);
    const std::size_t separators = (integerDigits - 1) / 3;
    return static_cast<int>(plain.size() + separators);
}

int clsPrint::CalculCaracForAnyZone(std::string_view text, int width) const {
    const int count = static_cast<int>(platform::CharCount(platform::TrimRight(text)));
    return width > 0 ? std::min(count, width) : count;
}

double clsPrint::ClotureValue(double balance, bool debitColumn) const {
    if (debitColumn) return balance > 0 ? RoundCents(balance) : 0.0;
    return balance < 0 ? RoundCents(-balance) : 0.0;
}

double clsPrint::ClotureValueCentral(double debitTotal, double creditTotal,
                                     bool debitColumn) const {
    return ClotureValue(debitTotal - creditTotal, debitColumn);
}

bool clsPrint::ZoneIsSimulation(std::string_view zoneCode) const {
    const std::string code = platform::Trim(zoneCode);
    return !code.empty() && (code.front() == 'S' || code.front() == 's');
}

std::string clsPrint::GetNumberKeyControl(std::string_view number) const {
    const std::string digits = DigitsOf(number);
    if (digits.size() != 10) return {};
    const std::uint64_t remainder = std::stoull(digits) % 97;
    return fmt::format("{:02}", remainder == 0 ? 97 : remainder);
}

std::string clsPrint::FormatCheckedNumber(std::string_view number) const {
    const std::string text = platform::Trim(number);
    if (text.empty() || text.size() > 10 || DigitsOf(text) != text) return {};
    const std::string base = std::string(10 - text.size(), '0') + text;
    return fmt::format("+++{}/{}/{}{}+++", base.substr(0, 3), base.substr(3, 4), base.substr(7, 3),
                       GetNumberKeyControl(base));
}

}  // namespace fnrk::utilities
