#include "declarations/lux_vat_layout.hpp"

#include <array>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "platform/text.hpp"

namespace fnrk::declarations {
namespace {

// Boxes that must be filled on a corrected return. Left empty until the list is settled with
// the official form, so no box is marked mandatory.
constexpr std::string_view kMandatoryBoxes = "";

// Boxes whose value computed from the books starts at "0" rather than empty.
constexpr std::array<std::string_view, 5> kBoxesStartingAtZero = {"457", "014", "018", "423",
                                                                  "419"};

constexpr std::int16_t kInputHeight = 300;
constexpr std::int16_t kInputWidth = 1215;

// A run of boxes of one page and section, written as on the paper layout sheet: the box number,
// "^" before it when a section heading precedes it, then any of "=" (computed total),
// "choice", "c2" (right-hand column), "+1"/"+2" (blank lines after it), "no calc" (input box
// without its computed-value field).
struct BoxRun {
    std::uint8_t page;
    std::uint8_t section;
    std::string_view boxes;
};

// Page 2's purchases and deductions blocks are the same on both forms.
constexpr std::string_view kSalesAndTaxBoxes =
    "^701, 901, 703, 903, 705, 905, 031, 403 no calc, 033 no calc, 042 =, 418 no calc, "
    "416 no calc, 417 =, 453 no calc, 451 no calc, 452 =, 037 =, ^702 c2, 902 c2, 704 c2, "
    "904 c2, 706 c2, 906 c2, 040 c2, 046 =";
constexpr std::string_view kIntraCommunityBoxes =
    "^711, 911, 713, 913, 715, 915, 049, 194 +1, 719 +1, 051 =, 152, ^712 c2, 912 c2, 714 c2, "
    "914 c2, 716 c2, 916 c2, 054 c2, 056 =";

constexpr std::array kLaterLayout = {
    BoxRun{1, 1,
           "204 choice, 205 choice, 491 choice, 492 choice, 493 choice, 012 =, 454 =, "
           "^471, 472, 455, 456"},
    BoxRun{1, 2, "021 =, ^457, 014, 015, 016, 017, 481, 482, 226"},
    BoxRun{2, 2, "018, 423, 424, 019, 419"},
    BoxRun{2, 3, "022 ="},
    BoxRun{2, 3, kSalesAndTaxBoxes},
    BoxRun{2, 4, kIntraCommunityBoxes},
    BoxRun{3, 5,
           "065 =, 407 =, ^721, 921, 723, 923, 725, 925, 059, 195, 729, 731, 931, 733, "
           "933, 735, 935, 063, 196, ^722 c2, 922 c2, 724 c2, 924 c2, 726 c2, 926 c2, "
           "068 c2 +2, 732 c2, 932 c2, 734 c2, 934 c2, 736 c2, 936 c2, 073 c2"},
    BoxRun{3, 6,
           "409 =, 410 =, 436 =, 462 =, ^741, 941, 743, 943, 745, 945, 431, 435, 463 =, "
           "464 =, 751, 951, 753, 953, 755, 955, 441, 445"},
    BoxRun{4, 6, "765 =, 766 =, 761, 961"},
    BoxRun{3, 6,
           "^742 c2, 942 c2, 744 c2, 944 c2, 746 c2, 946 c2, 432 c2 +1, 752 c2, 952 c2, "
           "754 c2, 954 c2, 756 c2, 956 c2, 442 c2 +1"},
    BoxRun{4, 6, "762 c2, 962 c2"},
    BoxRun{4, 7, "767 =, 768 =, ^769, 763, 963, ^770 c2, 764 c2, 964 c2 +1, 227 c2, 076 ="},
    BoxRun{4, 8, "093 =, ^458, 459, 460, 090, 461, 092, 228, 097 =, 094, 095, 102 ="},
    BoxRun{4, 9, "103 =, 104 =, 105 ="},
};

// The earlier form places each total after the boxes it sums.
constexpr std::array kEarlierLayout = {
    BoxRun{1, 1, "204 choice, 205 choice, ^471, 472, 454 =, 455, 456, 012 ="},
    BoxRun{1, 2, "^457, 014, 015, 016, 017, 018, 423, 424, 226, 019, 419, 021 ="},
    BoxRun{1, 3, "022 ="},
    BoxRun{2, 3, kSalesAndTaxBoxes},
    BoxRun{2, 4, kIntraCommunityBoxes},
    BoxRun{2, 5, "^721, 921, 723, 923, 725, 925, 059, 195, 729"},
    BoxRun{3, 5, "731, 931, 733, 933, 735, 935, 063, 196"},
    BoxRun{2, 5, "065 =, ^722 c2, 922 c2, 724 c2, 924 c2, 726 c2, 926 c2, 068 c2 +2"},
    BoxRun{3, 5, "732 c2, 932 c2, 734 c2, 934 c2, 736 c2, 936 c2, 073 c2"},
    BoxRun{2, 5, "407 ="},
    BoxRun{3, 6,
           "409 =, 410 =, ^741, 941, 743, 943, 745, 945, 431, 436 =, 435, 751, 951, 753, "
           "953, 755, 955, 441, 445, 463 =, 761, 961, 765 =, ^742 c2, 942 c2, 744 c2, "
           "944 c2, 746 c2, 946 c2, 432 c2 +1, 462 =, 752 c2, 952 c2, 754 c2, 954 c2, "
           "756 c2, 956 c2, 442 c2 +1, 464 =, 762 c2, 962 c2, 766 ="},
    BoxRun{3, 7, "^769, 763, 963, 767 =, ^770 c2, 764 c2, 964 c2 +1, 768 =, 227 c2, 076 ="},
    BoxRun{4, 8, "^458, 459, 460, 090, 461, 092, 228, 093 =, 094, 095, 097 =, 102 ="},
    BoxRun{4, 9, "103 =, 104 =, 105 ="},
};

constexpr std::array<std::pair<std::string_view, std::string_view>, 29> kFormulas = {{
    {"012", "+454+455+456"},
    {"454", "+471+472"},
    {"022", "+012-021"},
    {"042", "+033*+403/#+100"},
    {"417", "+416*+418/#+100"},
    {"452", "+451*+453/#+100"},
    {"037", "+701+901+703+903+705+905+031+033+416+451"},
    {"046", "+702+902+704+904+706+906+040+042+417+452"},
    {"051", "+711+911+713+913+715+915+049+194+719"},
    {"056", "+712+912+714+914+716+916+054"},
    {"065", "+721+921+723+923+725+925+059+195+729+731+931+733+933+735+935+063+196"},
    {"407", "+722+922+724+924+726+926+068+732+932+734+934+736+936+073"},
    {"409", "+436+435+463+765"},
    {"410", "+462+464+766"},
    {"436", "+741+941+743+943+745+945+431"},
    {"462", "+742+942+744+944+746+946+432"},
    {"463", "+751+951+753+953+755+955+441+445"},
    {"464", "+752+952+754+954+756+956+442"},
    {"765", "+761+961"},
    {"766", "+762+962"},
    {"767", "+769+763+963"},
    {"768", "+770+764+964"},
    {"076", "+046+056+407+410+768+227"},
    {"093", "+458+459+460+090+461+092+228"},
    {"097", "+094+095"},
    {"102", "+093-097"},
    {"103", "+076"},
    {"104", "+102"},
    {"105", "+103-104"},
}};

// Box 021 is the only formula that differs between the forms.
constexpr std::string_view kLaterVatDue = "+457+014+015+016+017+481+482+226+018+423+424+019+419";
constexpr std::string_view kEarlierVatDue = "+457+014+015+016+017+018+423+424+226+019+419";

std::string TotalFormula(std::string_view number, std::int16_t layout) {
    if (number == "021")
        return std::string(layout == kLuxLayoutLater ? kLaterVatDue : kEarlierVatDue);
    for (const auto& [box, formula] : kFormulas)
        if (box == number) return std::string(formula);
    throw std::logic_error("no formula for the total box " + std::string(number));
}

bool IsMandatory(std::string_view number) {
    return !kMandatoryBoxes.empty() &&
           platform::UpperCase(kMandatoryBoxes).find(platform::UpperCase(number)) !=
               std::string::npos;
}

std::string StartingValue(std::string_view number) {
    for (auto box : kBoxesStartingAtZero)
        if (box == number) return "0";
    return "";
}

// What one entry of a run says about its box.
struct BoxNotation {
    std::string number;
    bool header = false;
    bool total = false;
    bool choice = false;
    bool noCalc = false;
    std::uint8_t column = 1;
    std::uint8_t blankLines = 0;
};

BoxNotation ReadNotation(std::string_view entry) {
    BoxNotation box;
    if (entry.starts_with('^')) {
        box.header = true;
        entry.remove_prefix(1);
    }
    box.number = std::string(entry.substr(0, 3));
    std::string_view flags = entry.substr(3);
    while (!flags.empty()) {
        flags.remove_prefix(1);  // the blank before each flag
        auto end = flags.find(' ');
        std::string_view flag = flags.substr(0, end);
        if (flag == "=") {
            box.total = true;
        } else if (flag == "choice") {
            box.choice = true;
        } else if (flag == "c2") {
            box.column = 2;
        } else if (flag == "+1" || flag == "+2") {
            box.blankLines = static_cast<std::uint8_t>(flag[1] - '0');
        } else if (flag == "no" && flags.substr(0, 7) == "no calc") {
            box.noCalc = true;
            end = flags.find(' ', 3);
        } else {
            throw std::logic_error("unknown box flag in \"" + std::string(entry) + "\"");
        }
        flags = end == std::string_view::npos ? std::string_view() : flags.substr(end);
    }
    return box;
}

void AddRun(VatBoxDictionary& boxes, const BoxRun& run, std::int16_t layout) {
    std::string_view rest = run.boxes;
    while (!rest.empty()) {
        auto comma = rest.find(", ");
        BoxNotation box = ReadNotation(rest.substr(0, comma));
        rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 2);

        // Totals and choices have no entry field, so none of their fields is shown or sized.
        if (box.total) {
            AddVatBox(boxes, run.page, run.section, box.number, "", StartingValue(box.number),
                      kCaseTotal, TotalFormula(box.number, layout), false, box.blankLines,
                      box.header, false, 0, 0, false, 0, 0, 1, "");
        } else if (box.choice) {
            AddVatBox(boxes, run.page, run.section, box.number, "", StartingValue(box.number),
                      kCaseChoice, "", false, box.blankLines, box.header, false, 0, 0, false, 0, 0,
                      1, "");
        } else {
            AddVatBox(boxes, run.page, run.section, box.number, "", StartingValue(box.number),
                      kCaseNumeric, "", true, box.blankLines, box.header, !box.noCalc, kInputHeight,
                      kInputWidth, true, kInputHeight, kInputWidth, box.column, "");
        }
    }
}

template <typename Runs>
void AddRuns(VatBoxDictionary& boxes, const Runs& runs, std::int16_t layout) {
    for (const BoxRun& run : runs) AddRun(boxes, run, layout);
}

}  // namespace

std::string NodeTypeName(std::uint8_t caseType) {
    switch (caseType) {
        case kCaseChoiceAlternative:
        case kCaseChoice:
            return "Choice";
        case kCaseText:
            return "TextField";
        default:
            return "NumericField";
    }
}

void AddVatBox(VatBoxDictionary& boxes, std::uint8_t page, std::uint8_t tabOrder,
               std::string number, std::string valueModified, std::string valueOriginal,
               std::uint8_t caseType, std::string total, bool fieldVisible,
               std::uint8_t addEmptyLineAfter, bool showHeaderBefore, bool calcVisible,
               std::int16_t calcHeight, std::int16_t calcWidth, bool corrVisible,
               std::int16_t corrHeight, std::int16_t corrWidth, std::uint8_t columnNumber,
               std::string label) {
    DeclarationTvaCase box;
    box.Number = number;
    box.ValueModified = std::move(valueModified);
    box.ValueOriginal = std::move(valueOriginal);
    box.XmlNodeNameModified = NodeTypeName(caseType);
    box.XmlNodeNameOfficial = box.XmlNodeNameModified;
    box.MandatoryOriginal = false;
    box.MandatoryModified = IsMandatory(number);
    box.CaseType = caseType;
    box.Total = std::move(total);
    box.Page = page;
    box.TabOrder = tabOrder;
    box.AddEmptyLineAfter = addEmptyLineAfter;
    box.FieldVisible = fieldVisible;
    box.ShowHeaderBefore = showHeaderBefore;
    box.CalcVisible = calcVisible;
    box.CalcHeight = calcHeight;
    box.CalcWidth = calcWidth;
    box.CorrVisible = corrVisible;
    box.CorrHeight = corrHeight;
    box.CorrWidth = corrWidth;
    box.ColumnNumber = columnNumber;
    box.Label = std::move(label);
    if (!boxes.Add(number, std::move(box)))
        throw std::logic_error("box " + number + " is laid out twice");
}

void LuxXmlCaseInitialise(VatBoxDictionary& boxes, std::int16_t layout) {
    boxes.Clear();
    if (layout == kLuxLayoutLater) AddRuns(boxes, kLaterLayout, layout);
    if (layout == kLuxLayoutEarlier) AddRuns(boxes, kEarlierLayout, layout);
}

}  // namespace fnrk::declarations
