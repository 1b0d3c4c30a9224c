// MEFFFSOC, made from the shipped template, and ACTCOM, on both keepings.

#include <gtest/gtest.h>

#include "intake/efff_mappings.hpp"
#include "intake/efff_type_labels.hpp"
#include "mapping_fixture.hpp"
#include "platform/file_system.hpp"

namespace fnrk::intake {
namespace {

using tables::ads_testing::Keeping;
using testing::MappingTest;

class EfffMappingTest : public MappingTest {};

TEST_P(EfffMappingTest, TypesMapForAllWorkersOrForOne) {
    EfffMappings efff(company);
    ASSERT_TRUE(efff.CreateMapping());
    ASSERT_EQ(ads.FileOpenExternal("MEFFFSOC", (dossier / "SOC1_MEFFFSOC.dbf").string()),
              engine::AE_SUCCESS);
    for (const char* field : {"LINETYPE", "TYPE", "INSS", "DEST", "NAME", "FIRSTNAME", "ANAREF"})
        EXPECT_TRUE(ads.FieldExist(field)) << field << " comes from the template";
    EXPECT_EQ(ads.FieldLength("TYPE"), 40u);
    EXPECT_EQ(TagExpression("MEFFFSOC", "DETAIL"),
              "IIf(.not.deleted(),'X' + LINETYPE + TYPE + INSS,'X' + space(53))");
    EXPECT_EQ(TagExpression("MEFFFSOC", "LIST"), "IIf(.not.deleted(),'X' + TYPE,'X' + space(40))");

    EXPECT_EQ(efff.GetMapping("1SALARY"), "");
    ASSERT_TRUE(efff.UpdateMapping("1SALARY", "620000"));
    ASSERT_TRUE(efff.UpdateMappingByUser("1BONUS", "85010112345", "620200", "ANA01"));
    ASSERT_TRUE(efff.UpdateMappingDetailByFile("1BONUS", "85010112345", "Doe", "Jane"));
    EXPECT_EQ(efff.GetMapping("1SALARY"), "620000");
    EXPECT_TRUE(efff.GetMappingIsGlobal("1SALARY"));
    EXPECT_FALSE(efff.GetMappingIsGlobal("1BONUS")) << "only a worker's own mapping";
    EXPECT_FALSE(efff.GetMappingIsGlobal("2SALARY")) << "the line type is part of the key";

    std::string destination;
    std::string anaRef;
    ASSERT_TRUE(efff.GetMappingInfo("1BONUS", "85010112345", destination, anaRef));
    EXPECT_EQ(destination + "/" + anaRef, "620200/ANA01")
        << "the names from the file did not touch the user's choice";
    ASSERT_TRUE(efff.GetMappingInfo("1SALARY", "85010112345", destination, anaRef));
    EXPECT_EQ(destination + "/" + anaRef, "620000/") << "the mapping for all workers";
    EXPECT_FALSE(efff.GetMappingInfo("1BONUS", "90020254321", destination, anaRef));

    ASSERT_TRUE(efff.UpdateMappingGLAccount("1BONUS", "85010112345", "620300"));
    ASSERT_TRUE(efff.DeleteAnaSection());
    ASSERT_TRUE(efff.GetMappingInfo("1BONUS", "85010112345", destination, anaRef));
    EXPECT_EQ(destination + "/" + anaRef, "620300/");
    EXPECT_EQ(InTagOrder("MEFFFSOC", "DETAIL", "NAME"), (std::vector<std::string>{"Doe", ""}));
    EXPECT_EQ(Shown(), "");
}

TEST_P(EfffMappingTest, WithoutTheTemplateNoTableIsMade) {
    std::filesystem::remove(folder / "RESOURCES" / "ORG" / "EFFFSOC.ORG");
    EfffMappings efff(company);
    EXPECT_FALSE(efff.CreateMapping());
    EXPECT_FALSE(efff.UpdateMapping("1SALARY", "620000"));
}

TEST_P(EfffMappingTest, DocumentLinesKeyByTheNumbersValue) {
    EfffMappings efff(company);
    ASSERT_TRUE(efff.CreateACTEFFF());
    ASSERT_TRUE(efff.UpdateACTEFFF("SAL", "00000042", "001", "1", "03", "1SALARY", "85010112345",
                                   "P-2024-03", "March payroll"));
    std::string type, inss, payroll, name;
    ASSERT_TRUE(efff.GetACTEFFF("SAL", "42", "001", "1", "03", type, inss, payroll, name))
        << "42 and 00000042 are one key";
    EXPECT_EQ(type + "|" + inss + "|" + payroll + "|" + name,
              "1SALARY|85010112345|P-2024-03|March payroll");
    ASSERT_TRUE(efff.UpdateACTEFFF("SAL", "42", "001", "1", "03", "1BONUS", "", "", ""));
    EXPECT_EQ(InTagOrder("ACTCOM", "JNL", "TYPEEFFF"), std::vector<std::string>{"1BONUS"});
    EXPECT_EQ(InTagOrder("ACTCOM", "JNL", "DOCNUMBER"), std::vector<std::string>{"42"})
        << "the number as the last update wrote it";
    EXPECT_FALSE(efff.GetACTEFFF("SAL", "42", "002", "1", "03", type, inss, payroll, name));
    EXPECT_TRUE(efff.DeleteACTEFFF("SAL", "0042", "001", "1", "03"));
    EXPECT_FALSE(efff.GetACTEFFF("SAL", "42", "001", "1", "03", type, inss, payroll, name));
    EXPECT_EQ(TagExpression("ACTCOM", "JNL"),
              "iif(.not. deleted(),dbkcode+bookyear+period+str(val(docnumber),8)+docorder,"
              "space(20))");
}

TEST_P(EfffMappingTest, WorkersAreWalkedOnceEachInNumberOrder) {
    EfffMappings efff(company);
    ASSERT_TRUE(efff.CreateMapping());
    std::string inss;
    std::string first = "kept";
    std::string last = "kept";
    EXPECT_FALSE(efff.GetINSS(inss, first, last)) << "an empty mapping has no workers";
    EXPECT_EQ(first + last, "keptkept");

    ASSERT_TRUE(efff.UpdateMapping("1SALARY", "620000"));  // for all workers: not a worker
    ASSERT_TRUE(efff.UpdateMappingGLAccount("1SALARY", "90020254321", "620100"));
    ASSERT_TRUE(efff.UpdateMappingDetailByFile("1BONUS", "90020254321", "Roe", "Rick"));
    ASSERT_TRUE(efff.UpdateMappingDetailByFile("1BONUS", "85010112345", "Doe", "Jane"));
    ASSERT_TRUE(efff.UpdateMappingGLAccount("1SALARY", "85010112345", "620200"));
    ASSERT_TRUE(efff.UpdateMappingGLAccount("1SALARY", "70010100001", "620300"));

    std::vector<std::string> walked;
    while (efff.GetINSS(inss, first, last)) walked.push_back(inss + " " + first + " " + last);
    EXPECT_EQ(walked, (std::vector<std::string>{"70010100001  ", "85010112345 Jane Doe",
                                                "90020254321 Rick Roe"}))
        << "each worker once, with the names of whichever of their mappings has them";
    EXPECT_EQ(inss, "90020254321") << "past the last worker the arguments stay";

    inss = "8";
    ASSERT_TRUE(efff.GetINSS(inss, first, last)) << "any number starts the walk after it";
    EXPECT_EQ(inss, "85010112345");
}

TEST_P(EfffMappingTest, TypeLabelsComeInTheAskedLanguageOrInFrench) {
    const std::filesystem::path labels = folder / "RESOURCES" / "ORG" / "EFFFTYPE.ORG";
    std::string label = "kept";
    EXPECT_FALSE(EfffTypeLabel(ads, "1SALARY", "N", label)) << "no label table installed";
    ASSERT_EQ(fnrk::testing::RunFennrick({"table", "create", labels.string(), "--fields",
                                          "TYPE,C,41,0;LABELFR,C,60,0;LABELNL,C,60,0;"
                                          "LABELEN,C,60,0"})
                  .exitCode,
              0);
    const auto loaded = fnrk::testing::RunFennrick(
        {"table", "load", labels.string()},
        R"({"TYPE": "1SALARY", "LABELFR": "Salaire", "LABELNL": "Loon", "LABELEN": "Salary"})"
        "\n"
        R"({"TYPE": "1BONUS", "LABELFR": "Prime", "LABELNL": "", "LABELEN": ""})"
        "\n");
    ASSERT_EQ(loaded.exitCode, 0) << loaded.err;

    ASSERT_EQ(ads.ActivateAlias("PARAM"), engine::AE_SUCCESS);
    EXPECT_TRUE(EfffTypeLabel(ads, "1SALARY", "N", label));
    EXPECT_EQ(label, "Loon");
    EXPECT_TRUE(EfffTypeLabel(ads, " 1SALARY ", "e", label));
    EXPECT_EQ(label, "Salary");
    EXPECT_TRUE(EfffTypeLabel(ads, "1SALARY", "D", label)) << "any other language is French";
    EXPECT_EQ(label, "Salaire");
    EXPECT_TRUE(EfffTypeLabel(ads, "1BONUS", "N", label)) << "a missing label falls back";
    EXPECT_EQ(label, "Prime");
    label = "kept";
    EXPECT_FALSE(EfffTypeLabel(ads, "1SAL", "F", label)) << "types are matched whole";
    EXPECT_FALSE(EfffTypeLabel(ads, "", "F", label));
    EXPECT_EQ(label, "kept");
    EXPECT_EQ(ads.GetCurrentAlias(), "PARAM");
    EXPECT_FALSE(ads.IsAlias("EFFFTYPE")) << "the label table is closed again";
}

INSTANTIATE_TEST_SUITE_P(Keeping, EfffMappingTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::intake
