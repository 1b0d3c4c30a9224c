// SocParamColClassApi: book years, their periods, archives and currencies.

#include "company/param_table.hpp"
#include "company/soc_param_col_class_api.hpp"
#include "platform/text.hpp"
#include "session/session_user.hpp"

namespace fnrk::company {

namespace {

constexpr std::size_t kSlotWidth = 8;
// Period labels hold an opening and a closing slot besides the ordinary periods.
constexpr double kExtraSlots = 2;
constexpr std::int16_t kMonthsPerYear = 12;

// The session language letter, upper case; empty when none is set.
std::string SessionLanguage() {
    return platform::UpperCase(
        platform::LeftChars(platform::Trim(session::SharedFacade().language), 1));
}

}  // namespace

std::vector<std::string> EightCharacterSlots(std::string_view text) {
    std::vector<std::string> slots;
    const std::size_t count = platform::CharCount(text);
    std::string rest(text);
    for (std::size_t taken = 0; taken < count; taken += kSlotWidth) {
        slots.push_back(platform::TrimRight(platform::LeftChars(rest, kSlotWidth)));
        rest = platform::RightChars(rest, count - std::min(count, taken + kSlotWidth));
    }
    return slots;
}

std::string SocParamColClassApi::BookYearKey(std::int16_t bookYear, std::string_view suffix) const {
    const std::int16_t number = bookYear == 0 ? currentBookYear_ : bookYear;
    return "BOOKYEAR" + std::to_string(number) + std::string(suffix);
}

std::string SocParamColClassApi::BookYearValue(std::int16_t bookYear, std::string_view suffix) {
    return GetParamValue(BookYearKey(bookYear, suffix));
}

std::int16_t SocParamColClassApi::BookYearCount() {
    return AsShort(ParamNumber(GetParamValue("Bookyearcount")));
}

std::string SocParamColClassApi::BookYearStatus(std::int16_t bookYear) {
    return BookYearValue(bookYear, ".Status");
}

bool SocParamColClassApi::IsBookYearClosed(std::int16_t bookYear) {
    return platform::UpperCase(BookYearStatus(bookYear)) != "OPEN";
}

std::string SocParamColClassApi::LongLabel(std::int16_t bookYear) {
    return BookYearValue(bookYear, ".LongLabel");
}

std::string SocParamColClassApi::ShortLabel(std::int16_t bookYear) {
    return BookYearValue(bookYear, ".ShortLabel");
}

std::string SocParamColClassApi::CurrentBookYearName() {
    if (currentBookYear_ <= 0) return {};
    return BookYearValue(currentBookYear_, ".shortlabel");
}

std::int16_t SocParamColClassApi::CurrentbookYearNum1() {
    if (currentBookYear_ > 0) return currentBookYear_;
    return BookYearCount() > 0 ? 1 : 0;
}

std::string SocParamColClassApi::perlib(std::int16_t bookYear) {
    const std::string language = SessionLanguage();
    const std::string order = platform::UpperCase(platform::Trim(GetParamValue("OrderLanguage")));
    std::string suffix;
    if (!order.empty()) {
        // A language absent from the order gives ".Perlib0", which holds nothing.
        const std::size_t position = language.empty() ? std::string::npos : order.find(language);
        suffix = ".Perlib" + std::to_string(position == std::string::npos ? 0 : position + 1);
    } else {
        const std::string creation = platform::UpperCase(platform::Trim(Langofcreation()));
        suffix = language == creation ? ".Perlib1" : ".Perlib2";
    }
    return BookYearValue(bookYear, suffix);
}

std::vector<std::string> SocParamColClassApi::PeriodLabels(std::int16_t bookYear) {
    return EightCharacterSlots(perlib(bookYear));
}

std::string SocParamColClassApi::PerDate(std::int16_t bookYear) {
    return BookYearValue(bookYear, ".PerDate");
}

std::vector<std::string> SocParamColClassApi::PeriodDates(std::int16_t bookYear) {
    return EightCharacterSlots(PerDate(bookYear));
}

std::int16_t SocParamColClassApi::NbrPerByYear(std::string& bookYear) {
    if (platform::Trim(bookYear).empty()) bookYear = std::to_string(currentBookYear_);
    const std::string labels = BookYearValue(AsShort(ParamNumber(bookYear)), ".Perlib1");
    if (labels.empty()) return 0;
    const double slots = static_cast<double>(platform::CharCount(labels)) / kSlotWidth;
    return std::max<std::int16_t>(0, AsShort(slots - kExtraSlots));
}

bool SocParamColClassApi::IsSocMensuel(std::int16_t bookYear) {
    std::string number = std::to_string(bookYear == 0 ? currentBookYear_ : bookYear);
    return NbrPerByYear(number) == kMonthsPerYear;
}

std::string SocParamColClassApi::SocCurrency(std::int16_t bookYear) {
    return BookYearValue(bookYear, ".Currency");
}

bool SocParamColClassApi::IsBookYearInEuro(std::int16_t bookYear) {
    return platform::UpperCase(platform::Trim(SocCurrency(bookYear))) == "EUR";
}

bool SocParamColClassApi::IsYear1BEFYear2EUR(std::int16_t firstBookYear,
                                             std::int16_t secondBookYear) {
    return !platform::Trim(SocCurrency(firstBookYear)).empty() &&
           !IsBookYearInEuro(firstBookYear) && IsBookYearInEuro(secondBookYear);
}

bool SocParamColClassApi::IsFullBookyearReport(std::int16_t bookYear) {
    return platform::UpperCase(platform::Trim(BookYearValue(bookYear, ".ReopenMode"))) == "FULL" &&
           IsBookYearInEuro(bookYear);
}

std::string SocParamColClassApi::SocArchiveWithYear(std::int16_t bookYear) {
    return platform::Trim(BookYearValue(bookYear, ".NAMEARCH"));
}

bool SocParamColClassApi::IsBookyearArchive(std::int16_t bookYear) {
    return !SocArchiveWithYear(bookYear).empty();
}

std::string SocParamColClassApi::IsPathBookYearArchive(std::int16_t bookYear) {
    return platform::Trim(BookYearValue(bookYear, ".PATHARCH"));
}

std::int16_t SocParamColClassApi::SigIndiceOfYear() {
    return AsShort(ParamNumber(GetParamValue("SigIndiceOfYear")));
}

std::string SocParamColClassApi::SocArchive() {
    const std::int16_t bookYear = SigIndiceOfYear();
    return bookYear > 0 ? SocArchiveWithYear(bookYear) : std::string();
}

bool SocParamColClassApi::IsDossierArchive() {
    return !SocArchive().empty();
}

}  // namespace fnrk::company
