#include "declarations/lux_vat_layout.hpp"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "declarations/vat_box_formula.hpp"

namespace fnrk::declarations {
namespace {

VatBoxDictionary Layout(std::int16_t code) {
    VatBoxDictionary boxes;
    LuxXmlCaseInitialise(boxes, code);
    return boxes;
}

std::vector<std::string> Numbers(const VatBoxDictionary& boxes) {
    std::vector<std::string> numbers;
    for (const auto& [number, box] : boxes) numbers.push_back(number);
    return numbers;
}

const DeclarationTvaCase& Box(const VatBoxDictionary& boxes, const std::string& number) {
    const DeclarationTvaCase* box = boxes.Find(number);
    if (box == nullptr) throw std::runtime_error("box " + number + " missing");
    return *box;
}

TEST(LuxVatLayout, BoxCountsByLayoutCode) {
    EXPECT_EQ(Layout(11).Count(), 165u);
    EXPECT_EQ(Layout(12).Count(), 170u);
    for (std::int16_t other : {0, 10, 13, -12, 1112}) EXPECT_TRUE(Layout(other).Empty()) << other;

    VatBoxDictionary boxes = Layout(12);
    LuxXmlCaseInitialise(boxes, 7);
    EXPECT_TRUE(boxes.Empty()) << "a new call replaces the earlier boxes";
    LuxXmlCaseInitialise(boxes, 11);
    EXPECT_EQ(boxes.Count(), 165u);
}

TEST(LuxVatLayout, ChoiceAndTotalBoxes) {
    for (std::int16_t code : {11, 12}) {
        const VatBoxDictionary boxes = Layout(code);
        const DeclarationTvaCase& choice = Box(boxes, "204");
        EXPECT_EQ(choice.CaseType, 8);
        EXPECT_EQ(choice.XmlNodeNameOfficial, "Choice");
        EXPECT_EQ(choice.XmlNodeNameModified, "Choice");
        EXPECT_FALSE(choice.FieldVisible);
        EXPECT_EQ(choice.CalcHeight + choice.CalcWidth + choice.CorrHeight + choice.CorrWidth, 0);
        EXPECT_EQ(choice.Page, 1);
        EXPECT_EQ(choice.TabOrder, 1);

        const DeclarationTvaCase& total = Box(boxes, "012");
        EXPECT_EQ(total.CaseType, 7);
        EXPECT_EQ(total.XmlNodeNameOfficial, "NumericField");
        EXPECT_EQ(total.XmlNodeNameModified, "NumericField");
        EXPECT_EQ(total.Total, "+454+455+456");
        EXPECT_FALSE(total.FieldVisible);
        EXPECT_EQ(total.ColumnNumber, 1);
        EXPECT_EQ(total.CalcHeight + total.CalcWidth + total.CorrHeight + total.CorrWidth, 0);
        EXPECT_EQ(Box(boxes, "042").Total, "+033*+403/#+100");
    }
}

TEST(LuxVatLayout, InputBoxAttributes) {
    const VatBoxDictionary boxes = Layout(12);
    const DeclarationTvaCase& first = Box(boxes, "471");
    EXPECT_EQ(first.CaseType, 1);
    EXPECT_TRUE(first.ShowHeaderBefore);
    EXPECT_TRUE(first.FieldVisible);
    EXPECT_TRUE(first.CalcVisible);
    EXPECT_TRUE(first.CorrVisible);
    EXPECT_EQ(first.CalcHeight, 300);
    EXPECT_EQ(first.CalcWidth, 1215);
    EXPECT_EQ(first.CorrHeight, 300);
    EXPECT_EQ(first.CorrWidth, 1215);
    EXPECT_EQ(first.ColumnNumber, 1);
    EXPECT_EQ(first.AddEmptyLineAfter, 0);
    EXPECT_TRUE(first.Total.empty());
    EXPECT_FALSE(Box(boxes, "472").ShowHeaderBefore);

    const DeclarationTvaCase& rate = Box(boxes, "403");
    EXPECT_FALSE(rate.CalcVisible);
    EXPECT_TRUE(rate.CorrVisible);
    EXPECT_TRUE(rate.FieldVisible);

    EXPECT_EQ(Box(boxes, "702").ColumnNumber, 2);
    EXPECT_TRUE(Box(boxes, "702").ShowHeaderBefore);
    EXPECT_EQ(Box(boxes, "194").AddEmptyLineAfter, 1);
    EXPECT_EQ(Box(boxes, "068").AddEmptyLineAfter, 2);
    EXPECT_EQ(Box(boxes, "068").ColumnNumber, 2);
    EXPECT_EQ(Box(boxes, "964").AddEmptyLineAfter, 1);
    EXPECT_EQ(Box(boxes, "227").ColumnNumber, 2);
    EXPECT_EQ(Box(boxes, "046").ColumnNumber, 1) << "totals stay in the first column";

    std::set<std::string> startingAtZero;
    for (const auto& [number, box] : boxes) {
        if (box.ValueOriginal == "0") {
            startingAtZero.insert(number);
        } else {
            EXPECT_EQ(box.ValueOriginal, "") << number;
        }
        EXPECT_EQ(box.ValueModified, "") << number;
        EXPECT_EQ(box.Label, "") << number;
        EXPECT_FALSE(box.MandatoryOriginal) << number;
        EXPECT_FALSE(box.MandatoryModified) << number;
        EXPECT_EQ(box.Number, number);
    }
    EXPECT_EQ(startingAtZero, (std::set<std::string>{"457", "014", "018", "423", "419"}));
}

TEST(LuxVatLayout, DrawingOrderKeepsThePagesAsLaidOut) {
    const std::vector<std::string> later = Numbers(Layout(12));
    EXPECT_EQ(std::vector<std::string>(later.begin(), later.begin() + 12),
              (std::vector<std::string>{"204", "205", "491", "492", "493", "012", "454", "471",
                                        "472", "455", "456", "021"}));
    EXPECT_EQ(std::vector<std::string>(later.end() - 4, later.end()),
              (std::vector<std::string>{"102", "103", "104", "105"}));

    const std::vector<std::string> earlier = Numbers(Layout(11));
    EXPECT_EQ(std::vector<std::string>(earlier.begin(), earlier.begin() + 8),
              (std::vector<std::string>{"204", "205", "471", "472", "454", "455", "456", "012"}));

    // Section 6 of the later form goes from page 3 to page 4 and back.
    const VatBoxDictionary boxes = Layout(12);
    std::vector<int> pages;
    for (const char* number : {"445", "765", "961", "742", "442", "762", "962", "767"})
        pages.push_back(Box(boxes, number).Page);
    EXPECT_EQ(pages, (std::vector<int>{3, 4, 4, 3, 3, 4, 4, 4}));
    EXPECT_EQ(Box(boxes, "767").TabOrder, 7);
    EXPECT_EQ(Box(boxes, "762").TabOrder, 6);

    // The earlier form keeps box 022 on page 1 and sends 065 and 407 back to page 2.
    const VatBoxDictionary old = Layout(11);
    EXPECT_EQ(Box(old, "022").Page, 1);
    EXPECT_EQ(Box(boxes, "022").Page, 2);
    EXPECT_EQ(Box(old, "731").Page, 3);
    EXPECT_EQ(Box(old, "065").Page, 2);
    EXPECT_EQ(Box(old, "407").Page, 2);
    EXPECT_EQ(Box(old, "767").Page, 3);
}

TEST(LuxVatLayout, LayoutsDifferByFiveBoxesAndTheVatDueFormula) {
    const VatBoxDictionary later = Layout(12);
    const VatBoxDictionary earlier = Layout(11);
    std::set<std::string> added;
    for (const auto& [number, box] : later)
        if (!earlier.Exists(number)) added.insert(number);
    EXPECT_EQ(added, (std::set<std::string>{"491", "492", "493", "481", "482"}));
    for (const auto& [number, box] : earlier) EXPECT_TRUE(later.Exists(number)) << number;

    EXPECT_EQ(Box(later, "021").Total, "+457+014+015+016+017+481+482+226+018+423+424+019+419");
    EXPECT_EQ(Box(earlier, "021").Total, "+457+014+015+016+017+018+423+424+226+019+419");
    EXPECT_EQ(Box(later, "491").CaseType, 8);
    EXPECT_EQ(Box(later, "481").CaseType, 1);

    for (const auto& [number, box] : earlier) {
        if (number == "021") continue;
        const DeclarationTvaCase& same = Box(later, number);
        EXPECT_EQ(same.Total, box.Total) << number;
        EXPECT_EQ(same.CaseType, box.CaseType) << number;
        EXPECT_EQ(same.ColumnNumber, box.ColumnNumber) << number;
        EXPECT_EQ(same.ShowHeaderBefore, box.ShowHeaderBefore) << number;
        EXPECT_EQ(same.AddEmptyLineAfter, box.AddEmptyLineAfter) << number;
        EXPECT_EQ(same.CalcVisible, box.CalcVisible) << number;
    }
}

TEST(LuxVatLayout, EveryTotalHasAFormulaOverBoxesOfItsForm) {
    for (std::int16_t code : {11, 12}) {
        const VatBoxDictionary boxes = Layout(code);
        int totals = 0;
        for (const auto& [number, box] : boxes) {
            EXPECT_EQ(box.CaseType == 7, !box.Total.empty()) << number;
            if (box.Total.empty()) continue;
            ++totals;
            for (const FormulaTerm& term : ParseFormula(box.Total)) {
                if (!term.box.empty()) {
                    EXPECT_TRUE(boxes.Exists(term.box)) << number;
                }
            }
        }
        EXPECT_EQ(totals, 30) << code;
    }
}

TEST(LuxVatLayout, NodeTypeNamesByCaseType) {
    EXPECT_EQ(NodeTypeName(3), "Choice");
    EXPECT_EQ(NodeTypeName(8), "Choice");
    EXPECT_EQ(NodeTypeName(6), "TextField");
    for (std::uint8_t other : {0, 1, 2, 4, 5, 7, 9, 255})
        EXPECT_EQ(NodeTypeName(other), "NumericField");

    VatBoxDictionary boxes;
    AddVatBox(boxes, 1, 1, "900", "a", "b", 6, "", true, 0, false, true, 300, 1215, true, 300, 1215,
              2, "Remarks");
    const DeclarationTvaCase& text = Box(boxes, "900");
    EXPECT_EQ(text.XmlNodeNameOfficial, "TextField");
    EXPECT_EQ(text.XmlNodeNameModified, "TextField");
    EXPECT_EQ(text.ValueModified, "a");
    EXPECT_EQ(text.ValueOriginal, "b");
    EXPECT_EQ(text.Label, "Remarks");
    EXPECT_EQ(text.ColumnNumber, 2);
}

}  // namespace
}  // namespace fnrk::declarations
