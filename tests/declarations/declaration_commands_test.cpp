#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <nlohmann/json.hpp>

#include "support/run_command.hpp"
#include "support/temp_dir.hpp"
#include "xml_expectation.hpp"

namespace fnrk::testing {
namespace {

using nlohmann::json;

const json* FindBox(const json& output, const std::string& number) {
    for (const json& box : output.at("boxes"))
        if (box.at("Number") == number) return &box;
    return nullptr;
}

TEST(VatBoxesCommand, PrintsTheLayoutAndComputesTotalsFromValues) {
    const auto later = RunFennrick({"vat-boxes", "--layout", "12"});
    ASSERT_EQ(later.exitCode, 0) << later.err;
    const json boxes = json::parse(later.out);
    ASSERT_EQ(boxes.at("boxes").size(), 170u);
    EXPECT_EQ(boxes.at("boxes")[0].at("Number"), "204");
    EXPECT_EQ(nlohmann::ordered_json::parse(later.out).at("boxes")[0].begin().key(), "Number");
    EXPECT_EQ(FindBox(boxes, "012")->at("Total"), "+454+455+456");
    EXPECT_EQ(FindBox(boxes, "042")->count("Computed"), 0u);

    const auto earlier = RunFennrick({"vat-boxes", "--layout", "11"});
    ASSERT_EQ(earlier.exitCode, 0) << earlier.err;
    EXPECT_EQ(json::parse(earlier.out).at("boxes").size(), 165u);

    TempDir dir;
    WriteFileBytes(dir / "values.json", R"({"033": "1000", "403": 17, "701": "12,5"})");
    const auto filled =
        RunFennrick({"vat-boxes", "--layout", "12", "--values", (dir / "values.json").string()});
    ASSERT_EQ(filled.exitCode, 0) << filled.err;
    const json computed = json::parse(filled.out);
    EXPECT_DOUBLE_EQ(FindBox(computed, "042")->at("Computed").get<double>(), 170);
    EXPECT_DOUBLE_EQ(FindBox(computed, "037")->at("Computed").get<double>(), 1012.5);
    EXPECT_EQ(FindBox(computed, "033")->at("ValueModified"), "1000");
    EXPECT_EQ(FindBox(computed, "033")->count("Computed"), 0u);
}

TEST(VatBoxesCommand, NamesBadInput) {
    EXPECT_NE(RunFennrick({"vat-boxes", "--layout", "13"}).exitCode, 0);
    EXPECT_NE(RunFennrick({"vat-boxes"}).exitCode, 0);

    TempDir dir;
    const struct {
        const char* values;
        const char* named;
    } cases[] = {{R"({"999": 1})", "box 999"},     {R"({"042": 1})", "box 042"},
                 {R"({"033": "12a"})", "box 033"}, {R"({"033": true})", "box 033"},
                 {R"([1, 2])", "object"},          {R"({"033": )", "not valid JSON"}};
    for (const auto& bad : cases) {
        WriteFileBytes(dir / "values.json", bad.values);
        const auto result = RunFennrick(
            {"vat-boxes", "--layout", "12", "--values", (dir / "values.json").string()});
        EXPECT_NE(result.exitCode, 0) << bad.values;
        EXPECT_NE(result.err.find(bad.named), std::string::npos) << result.err;
        EXPECT_TRUE(result.out.empty()) << result.out;
    }
}

const char* kOssDescription = R"({
  "trader": {"country": "BE", "vatNumber": "0477472701"},
  "year": "2024", "quarter": "2",
  "representative": {"NTVA": "0123456789", "Name": "Élan", "Adress": "Rue Haute 12~bte 3",
                     "PostCode": "BE-1000", "Locality": "Bruxelles", "Country": "BE",
                     "Email": "info@elan.be"},
  "memberStates": [{"country": "FR",
    "rows": [{"goods": true, "rateType": "STANDARD", "rate": "20", "vatAmount": "246,91",
              "taxableAmount": "1234,56", "currency": "EUR"}],
    "corrections": [{"year": "2024", "quarter": "1", "vatAmount": "-12,50",
                     "currency": "EUR"}]}]
})";

TEST(OssCommand, WritesTheConsignmentDescribed) {
    TempDir dir;
    WriteFileBytes(dir / "oss.json", kOssDescription);
    const auto result = RunFennrick(
        {"oss", "--in", (dir / "oss.json").string(), "--out", (dir / "oss.xml").string()});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const ParsedXml parsed = ParseXml(ReadFileBytes(dir / "oss.xml"));
    ASSERT_TRUE(parsed);
    const xmlNode* root = xmlDocGetRootElement(parsed.get());
    EXPECT_EQ(QualifiedName(root), "ns0:OSSConsignment");
    const auto blocks = ChildElements(root);
    ASSERT_EQ(blocks.size(), 2u);
    EXPECT_EQ(QualifiedName(blocks[0]), "ns0:Representative");
    const auto declaration = ChildElements(blocks[1]);
    ASSERT_EQ(declaration.size(), 3u);
    const auto france = ChildElements(declaration[2]);
    ASSERT_EQ(france.size(), 3u);
    EXPECT_EQ(QualifiedName(france[1]), "ns2:OSSDeclarationRows");
    EXPECT_EQ(QualifiedName(france[2]), "ns2:CorrectionsInfo");
    EXPECT_NE(ReadFileBytes(dir / "oss.xml").find(">1234.56<"), std::string::npos);

    // Without member states the quarter is declared nil, and without a representative none
    // is written.
    WriteFileBytes(dir / "nil.json",
                   R"({"trader": {"country": "BE", "vatNumber": "1"}, "year": "2024",
                       "quarter": "3"})");
    ASSERT_EQ(RunFennrick(
                  {"oss", "--in", (dir / "nil.json").string(), "--out", (dir / "nil.xml").string()})
                  .exitCode,
              0);
    const std::string nil = ReadFileBytes(dir / "nil.xml");
    EXPECT_NE(nil.find("<ns0:IsNihil>true</ns0:IsNihil>"), std::string::npos) << nil;
    EXPECT_EQ(nil.find("Representative"), std::string::npos) << nil;
}

TEST(ConsignmentCommands, BadDescriptionsAreNamedAndLeaveNoFile) {
    TempDir dir;
    const struct {
        const char* command;
        const char* description;
        const char* named;
    } cases[] = {
        {"oss", R"({"trader": {"country": "BE"}, "year": "2024", "quarter": "2"})",
         "field trader.vatNumber: missing"},
        {"oss",
         R"({"trader": {"country": "BE", "vatNumber": "1"}, "year": "2024", "quarter": "2",
             "memberStates": [{"country": "FR", "rows": [{"rateType": "S"}]}]})",
         "field memberStates[0].rows[0].rate: missing"},
        {"oss",
         R"({"trader": {"country": "BE", "vatNumber": "1"}, "year": "2024", "quarter": "2",
             "representative": {"Address": "x"}})",
         "field representative.Address: unknown field"},
        {"oss", R"({"trader": {"country": "BE", "vatNumber": "1"}, "year": 2024, "quarter": "2"})",
         "field year: must be a text"},
        {"moss",
         R"({"trader": {"country": "BE", "vatNumber": "1"}, "year": "2014", "quarter": "4",
             "memberStates": [{"country": "DE"}]})",
         "field memberStates[0].totals: missing"},
        {"moss", R"({"trader": "BE", "year": "2014", "quarter": "4"})",
         "field trader: must be an object"},
        {"moss", "{", "not valid JSON"},
    };
    for (const auto& bad : cases) {
        WriteFileBytes(dir / "in.json", bad.description);
        WriteFileBytes(dir / "kept.xml", "earlier file");
        for (const char* out : {"new.xml", "kept.xml"}) {
            const auto result = RunFennrick(
                {bad.command, "--in", (dir / "in.json").string(), "--out", (dir / out).string()});
            EXPECT_NE(result.exitCode, 0) << bad.description;
            EXPECT_NE(result.err.find(bad.named), std::string::npos) << result.err;
        }
        EXPECT_FALSE(std::filesystem::exists(dir / "new.xml")) << bad.description;
        EXPECT_EQ(ReadFileBytes(dir / "kept.xml"), "earlier file");
    }
    EXPECT_NE(RunFennrick({"oss", "--in", (dir / "absent.json").string(), "--out",
                           (dir / "new.xml").string()})
                  .err.find("cannot read"),
              std::string::npos);
}

TEST(DemoOssStep, WritesTheSampleCompanysDeclaration) {
    TempDir dir;
    const auto result = RunFennrick({"demo", "--dir", (dir / "install").string()});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto file = dir / "install" / "DATA" / "DEMO" / "OSS_2024_Q2.xml";
    EXPECT_NE(result.out.find("[50-oss-declaration]"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("written to " + file.string()), std::string::npos) << result.out;
    const ParsedXml parsed = ParseXml(ReadFileBytes(file));
    ASSERT_TRUE(parsed);
    EXPECT_EQ(QualifiedName(xmlDocGetRootElement(parsed.get())), "ns0:OSSConsignment");
}

}  // namespace
}  // namespace fnrk::testing
