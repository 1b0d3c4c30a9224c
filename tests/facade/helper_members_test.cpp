// The small helpers, hashing, PDF and file members driven through `fennrick run`, as a calling
// application reaches them: one scripted run over every member of these families.

#include <gtest/gtest.h>

#include <cairo-pdf.h>
#include <cairo.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::facade {
namespace {

using fnrk::testing::RunFennrick;
using nlohmann::json;

void MakePdf(const std::string& path, int pages) {
    cairo_surface_t* surface = cairo_pdf_surface_create(path.c_str(), 595, 842);
    cairo_t* cr = cairo_create(surface);
    for (int page = 1; page <= pages; ++page) {
        cairo_move_to(cr, 50, 60);
        cairo_show_text(cr, ("page " + std::to_string(page)).c_str());
        cairo_show_page(cr);
    }
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
}

// Runs the calls (member, args) as one script; the answers by position.
std::vector<json> RunScript(const std::vector<std::pair<std::string, json>>& calls) {
    std::string script;
    for (const auto& [member, args] : calls) {
        json args_with_registry = json::array({json{{"registry", json::array()}}});
        for (const auto& arg : args) args_with_registry.push_back(arg);
        script += json{{"call", member}, {"args", args_with_registry}}.dump() + "\n";
    }
    const auto result = RunFennrick({"run", "-"}, script);
    std::vector<json> answers;
    std::istringstream lines(result.out);
    std::string line;
    while (std::getline(lines, line)) answers.push_back(json::parse(line));
    EXPECT_EQ(answers.size(), calls.size()) << result.out << result.err;
    return answers;
}

TEST(HelperMembersTest, EveryHelperMemberAnswersThroughTheMemberTable) {
    fnrk::testing::TempDir folder;
    const std::string logFile = (folder / "run.log").string();
    const std::vector<std::pair<std::string, json>> calls = {
        {"DATIMDaysInYearCount", {2024}},
        {"DATIMPerToDate", {2023, 1, 4}},
        {"CLRIsColorDark", {0x7F7F7F}},
        {"CLRBrightnessColorGet", {"255"}},  // a number given as text
        {"FMTCCurrency", {1234.5, ",", "."}},
        {"FMTCDateDDMMYYYYWithSlash", {"20240229"}},
        {"FMTCDateDDMMYYYYWithSlash", json::array({json{{"date", "05/03/2024"}}})},
        {"XLSTabFormat", {{"a", 1, "b\tc"}}},
        {"XMLEscaping", {"<a & 'b'>"}},
        {"PRNSignTot", {10, 25.5}},
        {"PRNCalculCarac", {1234567.5, 2}},
        {"PRNCalculCaracForAnyZone", {"abc  "}},
        {"PRNClotureValue", {-40, false}},
        {"PRNClotureValueCentral", {300, 100, true}},
        {"PRNZoneIsSimulation", {"SIM"}},
        {"PRNFormatCheckedNumber", {"1234567890"}},
        {"PRNGetNumberKeyControl", {"0000000097"}},
        {"LSTValuesInit", json::array({json{{"ref", "list"}, {"value", nullptr}}})},
        {"LSTValuesComplete", {json{{"ref", "list"}, {"value", json::array()}}, "A;B"}},
        {"LSTValuesAddItem",
         {json{{"ref", "list"}, {"value", json::parse(R"([["A", 0], ["B", 1]])")}}, "B", 7}},
        {"LSTIsItemInListValues", {json::parse(R"([["A", 0], ["B", 7]])"), "b"}},
        {"LSTIndexListByItemListGet", {json::parse(R"([["A", 0], ["B", 7], ["B", 8]])"), "B"}},
        {"LSTIndexListByItemDataGet", {json::parse(R"([["A", 0], ["B", 7]])"), 9}},
        {"COLIsItemExistsInCollection",
         {json{{"registry", {{{"Alias", "PARAM"}, {"ActiveIndexHandle", 0}, {"Order", 1}}}}},
          "param"}},
        {"IOIsDirectoryCreated", {(folder / "a" / "b").string()}},
        {"PRCWindowToProcessId", {4242}},
        {"VBCStatusBarOfAFormHeight", json::array()},
        {"LOGFileInfoAdd", {logFile, "started"}},
        {"LOGFileReset", {logFile}},
        {"LOGExcelAndFennrickProcessCreated", {logFile, 999999}},
        {"LOGExcelAndFennrickProcessManage", {logFile}},
        {"LOGExcelAndFennrickProcessDeleted", {logFile, 999999}},
        {"ConvertToMD5", {"abc"}},
        {"ConvertTabOfByteToMD5", json::array({json{{"bytes", "YWJj"}}})},
        {"ReplaceCharactersReminderFileName", {"a/b?. "}},
        {"CreateFolderRecursive", {(folder / "c" / "d").string()}},
        {"getScreenDPI", json::array()},
    };
    const std::vector<json> answers = RunScript(calls);
    ASSERT_EQ(answers.size(), calls.size());
    const std::vector<json> expected = {
        366,
        "31/03/2023",
        true,
        76,
        "1.234,50",
        "29/02/2024",
        "05/03/2024",
        "a\t1\tb c",
        "&lt;a &amp; &apos;b&apos;&gt;",
        -15.5,
        12,
        3,
        40.0,
        200.0,
        true,
        "+++123/4567/89002+++",
        "97",
        true,
        2,
        2,
        true,
        1,
        -1,
        true,
        true,
        0,
        315,
        true,
        true,
        true,
        json::array(),  // no process 999999 runs
        true,
        "900150983cd24fb0d6963f7d28e17f72",
        "900150983cd24fb0d6963f7d28e17f72",
        "a_b_",
        true,
        96,
    };
    for (std::size_t i = 0; i < calls.size(); ++i)
        EXPECT_EQ(answers[i]["result"], expected[i]) << calls[i].first << ": " << answers[i];
    EXPECT_EQ(answers[17]["refs"]["list"], json::array());
    EXPECT_EQ(answers[18]["refs"]["list"], json::parse(R"([["A", 0], ["B", 1]])"));
    EXPECT_EQ(answers[19]["refs"]["list"], json::parse(R"([["A", 0], ["B", 1], ["B", 7]])"));
    EXPECT_TRUE(std::filesystem::is_directory(folder / "a" / "b"));
}

TEST(HelperMembersTest, PdfMembersWriteRealFilesAndReportFailuresInTheirMessageArgument) {
    fnrk::testing::TempDir folder;
    const std::string first = (folder / "first.pdf").string();
    const std::string second = (folder / "second.pdf").string();
    MakePdf(first, 2);
    MakePdf(second, 1);
    const std::string merged = (folder / "merged.pdf").string();
    const std::string copy = (folder / "copy.pdf").string();
    const json message = {{"ref", "message"}, {"value", ""}};
    const std::vector<json> answers = RunScript({
        {"MergePDFFile", {{first, second}, merged, message}},
        {"CreateDuplicata", {merged, copy}},
        {"MergePDFFile", {{first, (folder / "missing.pdf").string()}, copy, message}},
        {"CreateDuplicata", {(folder / "missing.pdf").string(), copy, message}},
    });
    ASSERT_EQ(answers.size(), 4u);
    EXPECT_EQ(answers[0]["result"], true) << answers[0];
    EXPECT_EQ(answers[0]["refs"]["message"], "");
    EXPECT_EQ(answers[1]["result"], true) << answers[1];
    EXPECT_EQ(fnrk::testing::RunCommand({"qpdf", "--show-npages", copy}).out, "3\n");
    const std::string text = fnrk::testing::RunCommand({"pdftotext", copy, "-"}).out;
    EXPECT_NE(text.find("DUPLICATA"), std::string::npos) << text;
    EXPECT_EQ(answers[2]["result"], false);
    EXPECT_NE(answers[2]["refs"]["message"].get<std::string>().find("missing.pdf"),
              std::string::npos);
    EXPECT_EQ(answers[3]["result"], false);
    EXPECT_NE(answers[3]["refs"]["message"].get<std::string>().find("missing.pdf"),
              std::string::npos);
}

}  // namespace
}  // namespace fnrk::facade
