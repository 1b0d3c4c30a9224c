#include "einvoice/ubl_values.hpp"

#include <cctype>
#include <charconv>
#include <sstream>

#include "platform/text.hpp"

namespace fnrk::einvoice {
namespace {

bool AllDigits(std::string_view text) {
    for (char c : text) {
        if (!std::isdigit(static_cast<unsigned char>(c))) return false;
    }
    return true;
}

}  // namespace

char DetectDecimalSeparator() {
    std::ostringstream formatted;
    formatted.imbue(std::locale());
    formatted.setf(std::ios::fixed);
    formatted.precision(1);
    formatted << 1.1;
    const std::string text = formatted.str();
    return text.size() > 1 && text[1] == '.' ? '.' : ',';
}

std::string NumberWriter::Amount(double value) const {
    return Pattern(value, "#0.00");
}

std::string NumberWriter::Pattern(double value, std::string_view pattern) const {
    std::string text = platform::FormatNumber(value, pattern);
    for (char& c : text) {
        if (c == separator_) c = '.';
    }
    return text;
}

std::string DecimalsPattern(int decimals) {
    if (decimals <= 2) return "#0.00";
    return "#0." + std::string(static_cast<std::size_t>(decimals), '0');
}

double ParseNumber(std::string_view text) {
    std::string cleaned;
    for (char c : text) {
        if (c == ',') c = '.';
        if (c != ' ') cleaned += c;
    }
    if (cleaned.empty()) return 0.0;
    if (cleaned.front() == '+') cleaned.erase(0, 1);
    double value = 0.0;
    const char* end = cleaned.data() + cleaned.size();
    const auto [stop, error] = std::from_chars(cleaned.data(), end, value);
    return error == std::errc() && stop == end ? value : 0.0;
}

std::optional<std::string> IsoDate(std::string_view date) {
    const std::string text = platform::Trim(date);
    if (text.empty() || text == "/  /") return std::string();
    if (text.size() == 10 && text[2] == '/' && text[5] == '/' && AllDigits(text.substr(0, 2)) &&
        AllDigits(text.substr(3, 2)) && AllDigits(text.substr(6, 4))) {
        return text.substr(6, 4) + "-" + text.substr(3, 2) + "-" + text.substr(0, 2);
    }
    if (text.size() == 10 && text[4] == '-' && text[7] == '-' && AllDigits(text.substr(0, 4)) &&
        AllDigits(text.substr(5, 2)) && AllDigits(text.substr(8, 2))) {
        return text;
    }
    return std::nullopt;
}

std::optional<IsoPeriod> IsoPeriodOf(std::string_view start, std::string_view end) {
    auto first = IsoDate(start);
    auto last = IsoDate(end);
    if (!first || !last || first->empty() != last->empty()) return std::nullopt;
    // ISO dates compare as text.
    if (*last < *first) return std::nullopt;
    return IsoPeriod{std::move(*first), std::move(*last)};
}

}  // namespace fnrk::einvoice
