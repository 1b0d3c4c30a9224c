// fennrick run and fennrick call: the JSON-lines protocol, its answers and exit status, the
// member listing, a session on the sample dossier, and the worked example of the README.

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "answer_lines.hpp"
#include "support/invoice_validation.hpp"
#include "support/run_command.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::facade {
namespace {

using fnrk::testing::RunCommand;
using fnrk::testing::RunFennrick;
using nlohmann::json;
using testing::AnswerLines;

TEST(RunCommandTest, EachLineIsAnsweredAndAnErrorDoesNotStopTheRun) {
    const std::string script =
        R"({"call": "AssetClass_Init", "args": [{"registry": [{"Alias": "ACT", "ActiveIndexHandle": 0, "Order": 1}]}]})"
        "\n"
        R"({"call": "AssetClass_Add", "args": [{"registry": []}, {"date": "14/03/2025"}]})"
        "\n"
        R"({"call": "AssetClass_Get", "args": [{"registry": []}, 1]})"
        "\n"
        R"({"call": "AssetClass_Get", "args": [{"registry": []}, 2]})"
        "\n\n"
        R"({"call": "CarsOpen", "args": []})"
        "\n"
        R"({"set": "TestMode", "value": "True"})"
        "\n"
        R"({"get": "testmode"})"
        "\n"
        R"({"call": "InitializeProperty", "args": ["TEMPPATH", "/x"]})"
        "\n"
        R"({"get": "TempPath"})"
        "\n"
        "not json\n"
        R"({"call": "ReinitializeColAdsTable", "args": [{"font": {"Name": "Tahoma", "Size": 8}}]})"
        "\n"
        R"({"call": "init", "args": [{"bytes": "AAH/"}]})"
        "\n";
    const auto result = RunFennrick({"run", "-"}, script);
    EXPECT_EQ(result.exitCode, 1) << result.err;
    const std::vector<json> answers = AnswerLines(result.out);
    ASSERT_EQ(answers.size(), 12u) << result.out;
    EXPECT_EQ(answers[0], json::parse(R"({"call": "AssetClass_Init", "result": null})"));
    EXPECT_EQ(answers[2], json::parse(R"({"call": "AssetClass_Get",
                                          "result": {"date": "14/03/2025"}})"));
    EXPECT_EQ(answers[3], json::parse(R"({"call": "AssetClass_Get", "result": null})"));
    EXPECT_EQ(answers[4],
              json::parse(R"({"call": "CarsOpen", "error": {"number": 445, "description":
                             "FnrkRoutines.CarsOpen is not available in this build"}})"));
    EXPECT_EQ(answers[5], json::parse(R"({"set": "TestMode"})"));
    EXPECT_EQ(answers[6], json::parse(R"({"get": "testmode", "value": true})"));
    EXPECT_EQ(answers[8], json::parse(R"({"get": "TempPath", "value": ""})"));
    EXPECT_EQ(answers[9]["error"]["number"], 5);
    EXPECT_EQ(answers[10]["error"]["number"], 13) << answers[10];
    EXPECT_EQ(answers[11], json::parse(R"({"call": "init", "result": true})"));
    // The answer keeps the order of the request: the member first.
    EXPECT_NE(result.out.find(R"({"call":"CarsOpen","error":{"number":445,)"), std::string::npos);
}

TEST(RunCommandTest, InitializeTakesItsListAndByReferenceValuesTravelByName) {
    const std::string script =
        R"({"call": "Initialize", "args": [0, 0, {"registry": [{"Alias": "ACT", "ActiveIndexHandle": 0, "Order": 1}]}, false, "3", "E", "/tmp", "/org", "/users/", "/x.ini", {"font": {"Name": "Tahoma", "Size": 8.25}}]})"
        "\n"
        R"({"get": "CurrentBYNum"})"
        "\n"
        R"({"get": "ScreenFont"})"
        "\n"
        R"({"call": "OssXmlHeader", "args": [{"registry": []}, {"ref": "doc", "value": null}, "1", "", "1", "BE", "0477472701", "2024", "2"]})"
        "\n"
        R"({"call": "OssXmlNil", "args": [{"registry": []}, {"ref": "doc"}]})"
        "\n";
    const auto result = RunFennrick({"run", "-"}, script);
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
    const std::vector<json> answers = AnswerLines(result.out);
    ASSERT_EQ(answers.size(), 5u) << result.out;
    EXPECT_EQ(answers[1], json::parse(R"({"get": "CurrentBYNum", "value": 3})"));
    EXPECT_EQ(answers[2]["value"],
              json::parse(R"({"font": {"Name": "Tahoma", "Size": 8.25, "Bold": false,
                                        "Italic": false}})"));
    const std::string xml = answers[4]["refs"]["doc"]["properties"]["xml"].get<std::string>();
    EXPECT_EQ(answers[4]["refs"]["doc"]["object"], "DOMDocument");
    EXPECT_NE(xml.find("<ns2:VATNumber issuedBy=\"BE\">0477472701</ns2:VATNumber>"),
              std::string::npos)
        << xml;
    EXPECT_NE(xml.find("<ns0:IsNihil>true</ns0:IsNihil>"), std::string::npos) << xml;
}

TEST(RunCommandTest, AScriptWithoutErrorsEndsWithStatusZero) {
    const auto result = RunFennrick({"run", "-"}, R"({"call": "init", "args": []})"
                                                  "\n"
                                                  R"({"get": "IsFiduc"})"
                                                  "\n");
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
    EXPECT_EQ(AnswerLines(result.out).size(), 2u);
}

TEST(RunCommandTest, TheListingNamesEveryMemberWithItsArguments) {
    const auto result = RunFennrick({"run", "--list"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.out.find("GetParamValue\tmethod\tObject, String, ByRef String\n"),
              std::string::npos);
    EXPECT_NE(result.out.find("ConnexionInternetActive\tproperty get\t\n"), std::string::npos);
    EXPECT_NE(result.out.find("UserExtGetValueUserExtented\tmethod\t"), std::string::npos);
    EXPECT_GT(std::count(result.out.begin(), result.out.end(), '\n'), 400);
}

TEST(RunCommandTest, WithoutANetworkThereIsNoInternetConnection) {
    const auto probe = RunCommand({"unshare", "-rn", "true"});
    if (probe.exitCode != 0) GTEST_SKIP() << "no network namespace here: " << probe.err;
    const auto result = RunCommand({"unshare", "-rn", FNRK_CLI_PATH, "run", "-"},
                                   R"({"get": "ConnexionInternetActive"})"
                                   "\n");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(json::parse(result.out),
              json::parse(R"({"get": "ConnexionInternetActive", "value": false})"));
}

class SampleDossierTest : public ::testing::Test {
  protected:
    void SetUp() override {
        const auto demo = RunFennrick({"demo", "--dir", folder.path().string()});
        ASSERT_EQ(demo.exitCode, 0) << demo.out << demo.err;
    }
    fnrk::testing::TempDir folder;
    std::string dossier = (folder / "DATA" / "SOC1").string();
};

TEST_F(SampleDossierTest, CallAnswersTheResultAndTheByReferenceValues) {
    auto result = RunFennrick({"call", "--dossier", dossier, "--language", "N", "GetParamValue",
                               R"({"registry": []})", "SocName", R"("")"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(
        json::parse(result.out),
        json::parse(R"({"call": "GetParamValue", "result": null, "refs": {"3": "SOC1 sprl"}})"));

    result = RunFennrick({"call", "--dossier", dossier, "IsAlias", "param"});
    EXPECT_EQ(json::parse(result.out), json::parse(R"({"call": "IsAlias", "result": true})"));
    result = RunFennrick({"call", "UBLTaxTotal", R"({"registry": []})", "many"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(json::parse(result.out)["error"]["number"], 13) << result.out;
    result = RunFennrick({"call", "--dossier", (folder / "DATA" / "NONE").string(), "init"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.err.find("no dossier folder"), std::string::npos) << result.err;
}

TEST_F(SampleDossierTest, DbDisconnectClosesTheLibrarysTables) {
    const std::string script = R"({"call": "IsAlias", "args": ["PARAM"]})"
                               "\n"
                               R"({"call": "DBDisconnect", "args": []})"
                               "\n"
                               R"({"call": "IsAlias", "args": ["PARAM"]})"
                               "\n";
    const auto result = RunFennrick({"run", "--dossier", dossier, "-"}, script);
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
    const std::vector<json> answers = AnswerLines(result.out);
    ASSERT_EQ(answers.size(), 3u) << result.out;
    EXPECT_EQ(answers[0]["result"], true);
    EXPECT_EQ(answers[2]["result"], false);
}

TEST_F(SampleDossierTest, TheReadmeExampleWritesAnInvoiceThatPassesThePeppolRules) {
    // Absolute: the command runs in the folder where the example writes its invoice.
    const std::string example =
        std::filesystem::absolute(std::filesystem::path(FNRK_EXAMPLES_DIR) / "peppol-invoice.jsonl")
            .string();
    const auto result =
        RunCommand({FNRK_CLI_PATH, "run", "--dossier", dossier, example}, "", folder.path());
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
    const std::vector<json> answers = AnswerLines(result.out);
    ASSERT_EQ(answers.size(), 17u) << result.out;
    EXPECT_EQ(answers[0], json::parse(R"({"get": "socShortName", "value": "SOC1"})"));
    EXPECT_EQ(answers[1]["refs"], json::parse(R"({"name": "SOC1 sprl"})"));
    for (const json& answer : answers) {
        EXPECT_FALSE(answer.contains("error")) << answer;
        if (answer.contains("call") && answer["call"] != "GetParamValue") {
            EXPECT_EQ(answer["result"], true) << answer;
        }
    }
    const auto validation = fnrk::testing::ValidateInvoice(folder / "INV-0001.xml", true);
    EXPECT_EQ(validation.exitCode, 0) << validation.out << validation.err;
    EXPECT_EQ(validation.out.find("fatal"), std::string::npos) << validation.out;
}

}  // namespace
}  // namespace fnrk::facade
