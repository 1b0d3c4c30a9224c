// The SODA, EFFF and CARO members: all of them are in the member table, and a scripted session
// through `fennrick run` on a company with an intake tree sets the settings, walks the waiting
// files of a year, files one away, reads mappings back after updating them, and reads the
// status codes.

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <span>

#include "answer_lines.hpp"
#include "company/shared_company.hpp"
#include "facade_fixture.hpp"
#include "intake/company_facts.hpp"
#include "platform/paths.hpp"
#include "support/host_separators.hpp"
#include "support/run_command.hpp"

namespace fnrk::facade {
namespace {

namespace fs = std::filesystem;
using fnrk::testing::HostSeparators;
using fnrk::testing::RunFennrick;
using fnrk::testing::WriteFileBytes;
using nlohmann::json;
using testing::AnswerLines;
using testing::FacadeTest;

constexpr const char* kSodaMembers[] = {"SODAInit",
                                        "SODAGetIs",
                                        "SODASetIs",
                                        "SODAGetMoveFile",
                                        "SODASetMoveFile",
                                        "SODAGetLastMovedFile",
                                        "SODASetLastMovedFile",
                                        "SODAGetWaitingAccount",
                                        "SODASetWaitingAccount",
                                        "SODAGetPath",
                                        "SODASetPath",
                                        "SODAGetSocialPeriod",
                                        "SODASetSocialPeriod",
                                        "SODAGetAnaType",
                                        "SODASetAnaType",
                                        "SODAGetFile",
                                        "SODAFileInTheGoodBookyear",
                                        "SODAUpdateFile",
                                        "SODADateToPeriode",
                                        "SODAConstNothing",
                                        "SODAConstProcessed",
                                        "SODAConstError",
                                        "SODAConstErrorAna",
                                        "SODAConstBadYear",
                                        "SODAGetPdfFile",
                                        "SODAGetWarningPath",
                                        "SODAGetErrorPath",
                                        "SODAGetProcessedPath",
                                        "SODADeleteAnaSection",
                                        "SODAGetMapping",
                                        "SODAUpdateMapping",
                                        "SODACreateMapping",
                                        "SODAGetMappingANA",
                                        "SODAUpdateMappingANA",
                                        "SODACreateMappingANA"};

constexpr const char* kEfffMembers[] = {"EFFFInit",
                                        "EFFFGetIs",
                                        "EFFFSetIs",
                                        "EFFFGetMoveFile",
                                        "EFFFSetMoveFile",
                                        "EFFFGetLastMovedFile",
                                        "EFFFSetLastMovedFile",
                                        "EFFFGetWaitingAccount",
                                        "EFFFSetWaitingAccount",
                                        "EFFFGetPath",
                                        "EFFFSetPath",
                                        "EFFFGetAnaType",
                                        "EFFFSetAnaType",
                                        "EFFFGetSplit",
                                        "EFFFSetSplit",
                                        "EFFFGetDownloadEFFF",
                                        "EFFFSetDownloadEFFF",
                                        "EFFFGetFile",
                                        "EFFFFileInTheGoodBookyear",
                                        "EFFFUpdateFile",
                                        "EFFFDateToPeriode",
                                        "EFFFConstNothing",
                                        "EFFFConstProcessed",
                                        "EFFFConstError",
                                        "EFFFConstErrorAna",
                                        "EFFFConstBadYear",
                                        "EFFFGetPdfFile",
                                        "EFFFGetWarningPath",
                                        "EFFFGetErrorPath",
                                        "EFFFGetProcessedPath",
                                        "EFFFDownloadFiles",
                                        "EFFFGetMapping",
                                        "EFFFUpdateMapping",
                                        "EFFFCreateMapping",
                                        "EFFFGetMappingInfo",
                                        "EFFFGetMappingIsGlobal",
                                        "EFFFUpdateMappingGLAccount",
                                        "EFFFUpdateMappingDetailByFile",
                                        "EFFFUpdateMappingByUser",
                                        "EFFFCreateACTEFFF",
                                        "EFFFGetACTEFFF",
                                        "EFFFUpdateACTEFFF",
                                        "EFFFDeleteACTEFFF",
                                        "EfffDeleteAnaSection",
                                        "EFFFGetINSS",
                                        "EFFFGetTypeLabel"};

constexpr const char* kCaroMembers[] = {"CAROInit",
                                        "CAROGetMoveFile",
                                        "CAROSetMoveFile",
                                        "CAROGetLastMovedFile",
                                        "CAROSetLastMovedFile",
                                        "CAROGetWaitingAccount",
                                        "CAROSetWaitingAccount",
                                        "CAROGetPath",
                                        "CAROSetPath",
                                        "CAROGetFeeAccount",
                                        "CAROSetFeeAccount",
                                        "CAROGetFile",
                                        "CAROFileInTheGoodBookyear",
                                        "CAROUpdateFile",
                                        "CAROConstNothing",
                                        "CAROConstProcessed",
                                        "CAROConstError",
                                        "CAROConstBadYear",
                                        "CAROGetPdfFile",
                                        "CAROGetWarningPath",
                                        "CAROGetErrorPath",
                                        "CAROGetProcessedPath",
                                        "CAROOpenMapping",
                                        "CAROReadMapping",
                                        "CAROGetMapping",
                                        "CAROUpdateMapping",
                                        "CAROCreateMapping",
                                        "CARODeleteMapping",
                                        "CAROFlushAndUnlockMapping",
                                        "CAROPackCloseMapping",
                                        "CAROCreateIndexMapping",
                                        "CAROOpenKeyMapping",
                                        "CAROReadKeyMapping",
                                        "CAROGetKeyMapping",
                                        "CAROUpdateKeyMapping",
                                        "CAROCreateKeyMapping",
                                        "CARODeleteKeyMapping",
                                        "CAROFlushAndUnlockKeyMapping",
                                        "CAROPackCloseKeyMapping",
                                        "CAROCreateIndexKeyMapping",
                                        "CAROGetInfoCCDDETAIL",
                                        "CAROGetPrettyInfoCCDDETAIL",
                                        "CAROUpdateCCDDETAIL",
                                        "CARODeleteCCDDETAIL",
                                        "CAROPackCloseCCDDETAIL",
                                        "CAROCreateIndexCCDDETAIL",
                                        "CAROGetComment"};

bool IsIntakeName(const std::string& name) {
    for (const char* word : {"SODA", "EFFF", "CARO"}) {
        if (name.rfind(word, 0) == 0) return true;
    }
    return name == "EfffDeleteAnaSection";
}

TEST(IntakeMemberTableTest, EverySodaEfffAndCaroMemberIsAnEntryAndNoOther) {
    EXPECT_EQ(std::size(kSodaMembers), 35u);
    EXPECT_EQ(std::size(kEfffMembers), 46u);
    EXPECT_EQ(std::size(kCaroMembers), 47u);
    std::set<std::string> expected;
    for (const auto& names :
         {std::span<const char* const>(kSodaMembers), std::span<const char* const>(kEfffMembers),
          std::span<const char* const>(kCaroMembers)}) {
        for (const char* name : names) {
            expected.insert(name);
            const Member* member = MemberTable::Instance().Find(name, MemberKind::Method);
            ASSERT_NE(member, nullptr) << name;
            EXPECT_TRUE(member->Available()) << name;
            // The caller's table registry comes first, as for every wrapped service.
            ASSERT_FALSE(member->args.empty()) << name;
            EXPECT_EQ(member->args.front().kind, ArgKind::Object) << name;
        }
    }
    std::set<std::string> present;
    for (const Member& member : MemberTable::Instance().Members()) {
        if (IsIntakeName(member.name)) present.insert(member.name);
    }
    EXPECT_EQ(present, expected);
}

// A step of the script: a call of `member` with the caller's (empty) registry first.
std::string Step(const std::string& member, const std::vector<json>& values = {}) {
    json args = json::array({json::parse(R"({"registry": []})")});
    for (const json& value : values) args.push_back(value);
    return json{{"call", member}, {"args", args}}.dump() + "\n";
}

json Ref(const std::string& name, json value = "") {
    return json{{"ref", name}, {"value", std::move(value)}};
}

// The company SOC1 with one monthly book year, 2024, and an intake tree whose year folder
// holds two SODA files waiting (the first with its PDF) in a lower-case "soda_from_" folder.
class IntakeSessionTest : public FacadeTest {
  protected:
    void SetUp() override {
        FacadeTest::SetUp();
        OpenCompanyTables();
        intake::CompanyFacts company(Tables(), company::SharedSocParamColClassApi());
        std::string dates = "01012024";
        for (int month = 1; month <= 12; ++month) {
            dates += (month < 10 ? "010" : "01") + std::to_string(month) + "2024";
        }
        ASSERT_TRUE(company.SaveParamValue("BOOKYEAR1.PerDate", dates));
        ASSERT_TRUE(company.SaveParamValue("BOOKYEAR1.PERLIB1", std::string(14 * 8, 'L')));
        ASSERT_TRUE(company.SaveParamValue("Bookyearcount", "1"));
        static_cast<void>(Tables().FileCloseAll());

        fs::create_directories(waiting / "pdf");
        WriteFileBytes(waiting / "a1.xml",
                       "<Payroll><AccountPeriod>2024-03</AccountPeriod></Payroll>");
        WriteFileBytes(waiting / "pdf" / "a1.pdf", "%PDF-1.4");
        WriteFileBytes(waiting / "b2.xml",
                       "<Payroll><AccountPeriod>2024-04</AccountPeriod></Payroll>");
    }

    std::vector<json> Run(const std::string& script, int exitCode) {
        const auto result = RunFennrick({"run", "--dossier", dossier.string(), "-"}, script);
        EXPECT_EQ(result.exitCode, exitCode) << result.out << result.err;
        return AnswerLines(result.out);
    }

    fs::path base = folder / "intake";
    fs::path yearFolder = base / "SOC1" / "2024";
    fs::path waiting = yearFolder / "soda_from_bank";
};

TEST_F(IntakeSessionTest, SettingsWaitingFilesFilingAndStatusCodes) {
    const std::string a1 = (waiting / "a1.xml").string();
    const std::string pdf = (waiting / "pdf" / "a1.pdf").string();
    const std::string script =
        Step("SODASetPath", {"  " + base.string() + "  "}) + Step("SODAGetPath", {Ref("path")}) +
        Step("SODASetMoveFile", {true}) + Step("SODASetSocialPeriod", {false}) +
        Step("SODASetWaitingAccount", {"499000"}) + Step("SODAGetWaitingAccount", {Ref("wait")}) +
        Step("SODASetIs", {false}) + Step("SODAGetIs", {Ref("soda", true)}) +
        Step("EFFFGetIs", {Ref("efff", false)}) + Step("SODAInit") +
        Step("SODAGetFile", {2024, Ref("first")}) +
        Step("SODAFileInTheGoodBookyear", {a1, 1, Ref("in1")}) +
        Step("SODAFileInTheGoodBookyear", {a1, 2, Ref("in2", true)}) +
        Step("SODADateToPeriode", {"3", "2024", Ref("period"), Ref("year"), Ref("found")}) +
        Step("SODADateToPeriode", {"3", "2030", Ref("p", "kept"), Ref("y", "kept"), Ref("f")}) +
        Step("SODAGetPdfFile", {a1, Ref("pdf")}) + Step("SODAUpdateFile", {a1, 1, pdf}) +
        Step("SODAGetLastMovedFile", {Ref("last")}) +
        Step("SODAGetProcessedPath", {Ref("processed")}) + Step("SODAInit") +
        Step("SODAGetFile", {2024, Ref("second")}) + Step("SODAConstNothing", {Ref("c0")}) +
        Step("SODAConstProcessed", {Ref("c1")}) + Step("SODAConstError", {Ref("c2")}) +
        Step("SODAConstErrorAna", {Ref("c3")}) + Step("SODAConstBadYear", {Ref("c4")}) +
        Step("CAROConstBadYear", {Ref("caro4")});
    const std::vector<json> answers = Run(script, 0);
    ASSERT_EQ(answers.size(), 27u);
    for (const json& answer : answers) {
        EXPECT_FALSE(answer.contains("error")) << answer;
        EXPECT_TRUE(answer["result"].is_null()) << answer;
    }
    const auto ref = [&](std::size_t step, const std::string& name) {
        return answers.at(step)["refs"][name];
    };
    EXPECT_EQ(ref(1, "path"), base.string() + platform::kPathSep);
    EXPECT_EQ(ref(5, "wait"), "499000");
    EXPECT_EQ(ref(7, "soda"), false);
    EXPECT_EQ(ref(8, "efff"), true);
    EXPECT_EQ(ref(10, "first"), a1);
    EXPECT_EQ(ref(11, "in1"), true);
    EXPECT_EQ(ref(12, "in2"), false);
    EXPECT_EQ(answers[13]["refs"], json::parse(R"({"period": "03", "year": "1", "found": true})"));
    EXPECT_EQ(answers[14]["refs"], json::parse(R"({"p": "kept", "y": "kept", "f": false})"));
    EXPECT_EQ(ref(15, "pdf"), pdf);
    EXPECT_EQ(ref(17, "last"), a1);
    EXPECT_EQ(ref(18, "processed"), (yearFolder / "PROCESSED").string() + platform::kPathSep);
    EXPECT_EQ(ref(20, "second"), (waiting / "b2.xml").string());
    for (int code = 0; code <= 4; ++code) {
        EXPECT_EQ(ref(21 + static_cast<std::size_t>(code), "c" + std::to_string(code)), code);
    }
    EXPECT_EQ(ref(26, "caro4"), 4);

    // The file and its PDF went to PROCESSED, keeping the folder they waited in.
    const fs::path processed = yearFolder / "PROCESSED" / "soda_from_bank";
    EXPECT_TRUE(fs::exists(processed / "a1.xml"));
    EXPECT_TRUE(fs::exists(processed / "pdf" / "a1.pdf"));
    EXPECT_FALSE(fs::exists(waiting / "a1.xml"));
    EXPECT_TRUE(fs::exists(waiting / "b2.xml"));
}

TEST_F(IntakeSessionTest, EachKindKeepsItsOwnFolderAndFiles) {
    const fs::path caroFolder = yearFolder / "CARO";
    fs::create_directories(caroFolder);
    WriteFileBytes(caroFolder / "c1.xml", "<Statement><EndDate>2024-05-31</EndDate></Statement>");
    const std::string c1 = (caroFolder / "c1.xml").string();
    const std::string script =
        Step("SODASetPath", {base.string()}) + Step("CAROSetPath", {base.string()}) +
        Step("CAROSetMoveFile", {true}) + Step("SODAInit") + Step("CAROInit") +
        Step("CAROGetWarningPath", {Ref("bare")}) + Step("SODAGetFile", {2024, Ref("soda")}) +
        Step("CAROGetFile", {2024, Ref("caro")}) +
        Step("CAROFileInTheGoodBookyear", {c1, 1, Ref("in")}) +
        Step("CAROUpdateFile", {c1, 2, ""}) + Step("CAROGetErrorPath", {Ref("errors")}) +
        Step("SODAGetFile", {2024, Ref("soda")}) +
        Step("EFFFDownloadFiles", {Ref("message"), Ref("fetched", true)});
    const std::vector<json> answers = Run(script, 0);
    ASSERT_EQ(answers.size(), 13u);
    EXPECT_EQ(answers[5]["refs"]["bare"], HostSeparators("WARNING/"));
    EXPECT_EQ(answers[6]["refs"]["soda"], (waiting / "a1.xml").string());
    EXPECT_EQ(answers[7]["refs"]["caro"], c1);
    EXPECT_EQ(answers[8]["refs"]["in"], true);
    EXPECT_EQ(answers[10]["refs"]["errors"], (yearFolder / "ERROR").string() + platform::kPathSep);
    EXPECT_TRUE(fs::exists(yearFolder / "ERROR" / "CARO" / "c1.xml"));
    EXPECT_FALSE(fs::exists(c1));
    // Filing a CARO file leaves the SODA files found before as they were.
    EXPECT_EQ(answers[11]["refs"]["soda"], (waiting / "a1.xml").string());
    // No transport is configured for EFFF downloads: false, and the message says why.
    EXPECT_EQ(answers[12]["refs"]["fetched"], false);
    EXPECT_FALSE(answers[12]["refs"]["message"].get<std::string>().empty()) << answers[12];
}

TEST_F(IntakeSessionTest, MappingsReadBackWhatWasWrittenAndRefusalsFailTheMember) {
    const std::string script =
        Step("SODACreateMapping", {Ref("made")}) + Step("SODAUpdateMapping", {"1000", "620000"}) +
        Step("SODAUpdateMapping", {"1000", "621000"}) +
        Step("SODAGetMapping", {"1000", Ref("dest")}) +
        Step("SODAGetMapping", {"2000", Ref("none", "x")}) +
        Step("EFFFCreateACTEFFF", {Ref("made")}) +
        Step("EFFFUpdateACTEFFF",
             {"SAL", "00000042", "001", "1", "03", "A1010", "85010112345", "P1", "March payroll"}) +
        Step("EFFFGetACTEFFF", {"SAL", "42", "001", "1", "03", Ref("type"), Ref("inss"),
                                Ref("payroll"), Ref("name"), Ref("found")}) +
        Step("CAROCreateKeyMapping", {Ref("made")}) +
        Step("CAROUpdateKeyMapping", {"SHELL", 2, "SHL01"}) +
        Step("CAROGetKeyMapping", {"ESSO", Ref("kind", 0), Ref("to"), Ref("known")}) +
        Step("CAROGetKeyMapping", {"SHELL", Ref("kind", 0), Ref("to"), Ref("known")}) +
        Step("CAROUpdateCCDDETAIL",
             {"CARD", "7", "001", "1", "03", "CARDID=C1|TRANSNAME=Fuel|AMOUNT=12.5", Ref("ok")}) +
        Step("CAROGetInfoCCDDETAIL", {"CARD", "0000007", "001", "1", "03", Ref("info")}) +
        Step("CAROUpdateKeyMapping", {"ESSO", 3, "ESS01"}) + Step("SODASetAnaType", {"many"});
    const std::vector<json> answers = Run(script, 1);
    ASSERT_EQ(answers.size(), 16u);
    for (std::size_t step = 0; step < 14; ++step) {
        EXPECT_FALSE(answers[step].contains("error")) << answers[step];
    }
    for (std::size_t step : {0u, 5u, 8u}) EXPECT_EQ(answers[step]["refs"]["made"], true);
    EXPECT_EQ(answers[3]["refs"]["dest"], "621000");
    EXPECT_EQ(answers[4]["refs"]["none"], "");
    // The document number keys by its value: "42" finds the line written as "00000042".
    EXPECT_EQ(answers[7]["refs"], json::parse(R"({"type": "A1010", "inss": "85010112345",
                                                  "payroll": "P1", "name": "March payroll",
                                                  "found": true})"));
    EXPECT_EQ(answers[10]["refs"], json::parse(R"({"kind": 0, "to": "", "known": false})"));
    EXPECT_EQ(answers[11]["refs"], json::parse(R"({"kind": 2, "to": "SHL01", "known": true})"));
    EXPECT_EQ(answers[12]["refs"]["ok"], true);
    const std::string info = answers[13]["refs"]["info"].get<std::string>();
    EXPECT_NE(info.find("CARDID=C1|"), std::string::npos) << info;
    EXPECT_NE(info.find("TRANSNAME=Fuel|"), std::string::npos) << info;
    EXPECT_NE(info.find("AMOUNT=12.50|"), std::string::npos) << info;
    // A refused write and a failed conversion reach the caller as errors of the member.
    EXPECT_EQ(answers[14]["error"]["number"], 5) << answers[14];
    EXPECT_NE(answers[14]["error"]["description"].get<std::string>().find(
                  "FnrkRoutines.CAROUpdateKeyMapping: the mapping could not be written"),
              std::string::npos)
        << answers[14];
    EXPECT_EQ(answers[15]["error"]["number"], 13) << answers[15];
}

// Called in the process, as the template folder lies beside the program.
TEST_F(IntakeSessionTest, WorkersTypeLabelsAndCardCommentsAnswerInTheirArguments) {
    const fs::path program = folder / "PRG";
    const fs::path templates = folder / "RESOURCES" / "ORG";
    fs::create_directories(templates);
    fs::copy_file(fs::path(FNRK_TEMPLATE_FOLDER) / "EFFFSOC.ORG", templates / "EFFFSOC.ORG");
    const std::string labels = (templates / "EFFFTYPE.ORG").string();
    ASSERT_EQ(RunFennrick({"table", "create", labels, "--fields",
                           "TYPE,C,41,0;LABELFR,C,60,0;LABELNL,C,60,0;LABELEN,C,60,0"})
                  .exitCode,
              0);
    ASSERT_EQ(RunFennrick({"table", "load", labels},
                          R"({"TYPE": "1BONUS", "LABELFR": "Prime", "LABELNL": "Premie"})"
                          "\n")
                  .exitCode,
              0);
    const std::string previousProgram = platform::ProgramFolder();
    platform::SetProgramFolder(program.string());
    const Variant registry = RegistryOf({});
    const auto call = [&](const std::string& member, std::vector<Variant> args) {
        args.insert(args.begin(), registry);
        MemberTable::Instance().Invoke(routines, member, MemberKind::Method, args);
        return args;
    };
    EXPECT_TRUE(call("EFFFCreateMapping", {Variant()})[1].ToBoolean());
    call("EFFFUpdateMappingDetailByFile", {"1BONUS", "85010112345", "Doe", "Jane"});
    call("EFFFUpdateMappingDetailByFile", {"1BONUS", "70010100001", "Roe", "Rick"});
    const auto worker = [&](const std::string& after) {
        const auto args = call("EFFFGetINSS", {after, "kept", "kept", Variant()});
        return args[1].ToString() + "|" + args[2].ToString() + "|" + args[3].ToString() + "|" +
               (args[4].ToBoolean() ? "found" : "none");
    };
    EXPECT_EQ(worker(""), "70010100001|Rick|Roe|found");
    EXPECT_EQ(worker("70010100001"), "85010112345|Jane|Doe|found");
    EXPECT_EQ(worker("85010112345"), "85010112345|kept|kept|none");

    const auto label = [&](const std::string& type) {
        const auto args = call("EFFFGetTypeLabel", {type, "N", "kept", Variant()});
        return args[3].ToString() + "|" + (args[4].ToBoolean() ? "found" : "none");
    };
    EXPECT_EQ(label("1BONUS"), "Premie|found");
    EXPECT_EQ(label("1SALARY"), "kept|none");

    call("CAROUpdateCCDDETAIL",
         {"CARD", "7", "001", "1", "03", "TRANSDATE=02/03/2024|MERCHANT=ESSO|CURRENCY=EUR", ""});
    EXPECT_EQ(call("CAROGetComment", {"CARD", "0007", "001", "1", "03", ""})[6].ToString(),
              "02/03/2024 ESSO");
    EXPECT_EQ(call("CAROGetComment", {"CARD", "8", "001", "1", "03", "x"})[6].ToString(), "");
    platform::SetProgramFolder(previousProgram);
}

}  // namespace
}  // namespace fnrk::facade
