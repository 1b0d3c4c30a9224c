// MEFFFSOC, made from the shipped template, and ACTCOM, on both keepings.

#include <gtest/gtest.h>

#include "intake/efff_mappings.hpp"
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

INSTANTIATE_TEST_SUITE_P(Keeping, EfffMappingTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::intake
