#include "declarations/vat_box_totals.hpp"

#include <gtest/gtest.h>

#include <string>

#include "declarations/lux_vat_layout.hpp"

namespace fnrk::declarations {
namespace {

// A form of the layout where every input box holds its own number ("701" holds 701).
VatBoxDictionary FilledForm(std::int16_t layout) {
    VatBoxDictionary boxes;
    LuxXmlCaseInitialise(boxes, layout);
    for (auto& [number, box] : boxes)
        if (box.CaseType == kCaseNumeric) box.ValueModified = number;
    return boxes;
}

TEST(VatBoxTotals, TaxOnTheBaseAtTheGivenRate) {
    VatBoxDictionary boxes;
    LuxXmlCaseInitialise(boxes, 12);
    boxes.Find("033")->ValueOriginal = "1000";
    boxes.Find("403")->ValueOriginal = "17";
    const auto totals = ComputeTotals(boxes);
    ASSERT_NE(totals.Find("042"), nullptr);
    EXPECT_DOUBLE_EQ(*totals.Find("042"), 170);
    EXPECT_DOUBLE_EQ(*totals.Find("037"), 1000);
    EXPECT_DOUBLE_EQ(*totals.Find("046"), 170);
    EXPECT_DOUBLE_EQ(*totals.Find("105"), 170);

    boxes.Find("033")->ValueModified = "1200,50";  // a correction wins over the books
    EXPECT_DOUBLE_EQ(*ComputeTotals(boxes).Find("042"), 1200.5 * 17 / 100);
}

TEST(VatBoxTotals, EveryTotalOfAFullyFilledForm) {
    const auto totals = ComputeTotals(FilledForm(12));
    const auto total = [&](const char* number) { return *totals.Find(number); };
    ASSERT_EQ(totals.Count(), 30u);

    const double b454 = 471 + 472;
    const double b012 = b454 + 455 + 456;
    const double b021 = 457 + 14 + 15 + 16 + 17 + 481 + 482 + 226 + 18 + 423 + 424 + 19 + 419;
    const double b042 = 33.0 * 403 / 100;
    const double b417 = 416.0 * 418 / 100;
    const double b452 = 451.0 * 453 / 100;
    const double b037 = 701 + 901 + 703 + 903 + 705 + 905 + 31 + 33 + 416 + 451;
    const double b046 = 702 + 902 + 704 + 904 + 706 + 906 + 40 + b042 + b417 + b452;
    const double b051 = 711 + 911 + 713 + 913 + 715 + 915 + 49 + 194 + 719;
    const double b056 = 712 + 912 + 714 + 914 + 716 + 916 + 54;
    const double b065 = 721 + 921 + 723 + 923 + 725 + 925 + 59 + 195 + 729 + 731 + 931 + 733 + 933 +
                        735 + 935 + 63 + 196;
    const double b407 =
        722 + 922 + 724 + 924 + 726 + 926 + 68 + 732 + 932 + 734 + 934 + 736 + 936 + 73;
    const double b436 = 741 + 941 + 743 + 943 + 745 + 945 + 431;
    const double b462 = 742 + 942 + 744 + 944 + 746 + 946 + 432;
    const double b463 = 751 + 951 + 753 + 953 + 755 + 955 + 441 + 445;
    const double b464 = 752 + 952 + 754 + 954 + 756 + 956 + 442;
    const double b765 = 761 + 961;
    const double b766 = 762 + 962;
    const double b409 = b436 + 435 + b463 + b765;
    const double b410 = b462 + b464 + b766;
    const double b767 = 769 + 763 + 963;
    const double b768 = 770 + 764 + 964;
    const double b076 = b046 + b056 + b407 + b410 + b768 + 227;
    const double b093 = 458 + 459 + 460 + 90 + 461 + 92 + 228;
    const double b097 = 94 + 95;
    const double b102 = b093 - b097;

    EXPECT_DOUBLE_EQ(total("454"), b454);
    EXPECT_DOUBLE_EQ(total("012"), 1854);
    EXPECT_DOUBLE_EQ(total("012"), b012);
    EXPECT_DOUBLE_EQ(total("021"), 3011);
    EXPECT_DOUBLE_EQ(total("021"), b021);
    EXPECT_DOUBLE_EQ(total("022"), -1157);
    EXPECT_DOUBLE_EQ(total("022"), b012 - b021);
    EXPECT_DOUBLE_EQ(total("042"), 132.99);
    EXPECT_DOUBLE_EQ(total("417"), b417);
    EXPECT_DOUBLE_EQ(total("452"), b452);
    EXPECT_DOUBLE_EQ(total("037"), 5749);
    EXPECT_DOUBLE_EQ(total("037"), b037);
    EXPECT_NEAR(total("046"), b046, 1e-9);
    EXPECT_DOUBLE_EQ(total("051"), b051);
    EXPECT_DOUBLE_EQ(total("056"), b056);
    EXPECT_DOUBLE_EQ(total("065"), b065);
    EXPECT_DOUBLE_EQ(total("407"), b407);
    EXPECT_DOUBLE_EQ(total("409"), b409);
    EXPECT_DOUBLE_EQ(total("410"), b410);
    EXPECT_DOUBLE_EQ(total("436"), b436);
    EXPECT_DOUBLE_EQ(total("462"), b462);
    EXPECT_DOUBLE_EQ(total("463"), b463);
    EXPECT_DOUBLE_EQ(total("464"), b464);
    EXPECT_DOUBLE_EQ(total("765"), b765);
    EXPECT_DOUBLE_EQ(total("766"), b766);
    EXPECT_DOUBLE_EQ(total("767"), b767);
    EXPECT_DOUBLE_EQ(total("768"), b768);
    EXPECT_NEAR(total("076"), b076, 1e-9);
    EXPECT_DOUBLE_EQ(total("093"), b093);
    EXPECT_DOUBLE_EQ(total("097"), b097);
    EXPECT_DOUBLE_EQ(total("102"), b102);
    EXPECT_NEAR(total("103"), b076, 1e-9);
    EXPECT_DOUBLE_EQ(total("104"), b102);
    EXPECT_NEAR(total("105"), b076 - b102, 1e-9);

    const auto earlier = ComputeTotals(FilledForm(11));
    EXPECT_DOUBLE_EQ(*earlier.Find("021"), b021 - 481 - 482);
    EXPECT_DOUBLE_EQ(*earlier.Find("022"), b012 - (b021 - 481 - 482));
}

TEST(VatBoxTotals, TotalsComeInDrawingOrder) {
    VatBoxDictionary boxes;
    LuxXmlCaseInitialise(boxes, 11);
    std::vector<std::string> order;
    for (const auto& [number, value] : ComputeTotals(boxes)) order.push_back(number);
    ASSERT_EQ(order.size(), 30u);
    EXPECT_EQ(order[0], "454");
    EXPECT_EQ(order[1], "012");
    EXPECT_EQ(order[2], "021");
    EXPECT_EQ(order.back(), "105");
}

TEST(VatBoxTotals, ReportsLoopsUnknownBoxesAndTextThatIsNoNumber) {
    VatBoxDictionary loop;
    const auto addTotal = [](VatBoxDictionary& boxes, const char* number, const char* formula) {
        AddVatBox(boxes, 1, 1, number, "", "", kCaseTotal, formula, false, 0, false, false, 0, 0,
                  false, 0, 0, 1, "");
    };
    const auto addInput = [](VatBoxDictionary& boxes, const char* number, const char* value) {
        AddVatBox(boxes, 1, 1, number, value, "", kCaseNumeric, "", true, 0, false, true, 300, 1215,
                  true, 300, 1215, 1, "");
    };
    addInput(loop, "001", "5");
    addTotal(loop, "010", "+001+011");
    addTotal(loop, "011", "+012");
    addTotal(loop, "012", "+001*+010");
    try {
        ComputeTotals(loop);
        ADD_FAILURE() << "a loop was computed";
    } catch (const FormulaError& error) {
        EXPECT_STREQ(error.what(),
                     "formula of box 010 refers to itself through 010 -> 011 -> 012 -> 010");
    }

    VatBoxDictionary unknown;
    addTotal(unknown, "020", "+001+999");
    addInput(unknown, "001", "1");
    try {
        ComputeTotals(unknown);
        ADD_FAILURE() << "an unknown box was computed";
    } catch (const FormulaError& error) {
        EXPECT_NE(std::string(error.what()).find("box 999"), std::string::npos) << error.what();
    }

    VatBoxDictionary text;
    addInput(text, "001", "12a");
    addTotal(text, "020", "+001");
    try {
        ComputeTotals(text);
        ADD_FAILURE() << "text was read as a number";
    } catch (const FormulaError& error) {
        EXPECT_NE(std::string(error.what()).find("box 001"), std::string::npos) << error.what();
    }

    DeclarationTvaCase box;
    box.ValueOriginal = " -12,5 ";
    EXPECT_DOUBLE_EQ(EnteredValue(box), -12.5);
    box.ValueModified = "+3.25";
    EXPECT_DOUBLE_EQ(EnteredValue(box), 3.25);
    box.ValueModified = "";
    box.ValueOriginal = "";
    EXPECT_DOUBLE_EQ(EnteredValue(box), 0);
}

}  // namespace
}  // namespace fnrk::declarations
