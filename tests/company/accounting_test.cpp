// clsAccounting and clsAnalytical over the company's parameters, accounts and analytical zones,
// and the bank-code list of the installation.

#include <gtest/gtest.h>

#include <filesystem>

#include "company/cls_accounting.hpp"
#include "company/cls_analytical.hpp"
#include "param_fixture.hpp"
#include "platform/paths.hpp"
#include "support/run_command.hpp"

namespace fnrk::company::testing {
namespace {

using fnrk::testing::RunFennrick;

class AccountingTest : public ParamTest {
  protected:
    void AddLong(const std::string& id, const std::string& text) {
        AddParam(id, text.substr(0, 12), text.size() > 12 ? text.substr(12) : "");
    }
    // Book year `number`: an opening slot and the given period starts ("DDMMYYYY"), labelled
    // with an opening and a closing slot around them.
    void AddBookYear(int number, const std::vector<std::string>& starts) {
        std::string dates = starts.front();
        std::string labels = "Open    ";
        for (const std::string& start : starts) {
            dates += start;
            labels += "Period  ";
        }
        const std::string key = "BOOKYEAR" + std::to_string(number);
        AddLong(key + ".PERDATE", dates);
        AddLong(key + ".PERLIB1", labels + "Closing ");
    }
    void OpenAccounts(const std::vector<std::string>& numbers) {
        CreateStandard("ACF", "GLNUMBER,C,10,0;ISANALYT,L,1,0;PLANANALYT,C,2,0");
        ASSERT_EQ(ads.FileOpen("ACF"), engine::AE_SUCCESS);
        for (const std::string& number : numbers) {
            AddRecord("ACF", {{"GLNUMBER", number}, {"ISANALYT", number[0] == '6' ? "T" : "F"}});
        }
        ASSERT_EQ(ads.ActivateAlias("PARAM"), engine::AE_SUCCESS);
    }

    clsAccounting accounting{params, ads};
};

TEST_P(AccountingTest, APeriodHoldsTheDaysFromItsStartToTheNextOne) {
    AddBookYear(1, {"01012024", "01042024", "01072024", "01102024"});  // quarters of 2024
    std::vector<std::string> months;
    for (int month = 7; month <= 12; ++month)
        months.push_back(std::string("01") + (month < 10 ? "0" : "") + std::to_string(month) +
                         "2024");
    for (int month = 1; month <= 6; ++month)
        months.push_back("010" + std::to_string(month) + "2025");
    AddBookYear(2, months);  // monthly, July 2024 to June 2025
    params.CurrentBYNum(2);

    EXPECT_EQ(accounting.ReturnPeriode("01/01/2024", 1), "01");
    EXPECT_EQ(accounting.ReturnPeriode("31/03/2024", 1), "01");
    EXPECT_EQ(accounting.ReturnPeriode("01/04/2024", 1), "02");
    EXPECT_EQ(accounting.ReturnPeriode("29/02/2024", 1), "01") << "a leap day";
    EXPECT_EQ(accounting.ReturnPeriode("31/12/2024", 1), "04")
        << "the last quarter lasts three months";
    EXPECT_EQ(accounting.ReturnPeriode("01/01/2025", 1), "") << "after the book year";
    EXPECT_EQ(accounting.ReturnPeriode("31/12/2023", 1), "") << "before it";

    EXPECT_EQ(accounting.ReturnPeriode("15/07/2024", 0), "01") << "the current book year";
    EXPECT_EQ(accounting.ReturnPeriode("28/02/2025", 0), "08");
    EXPECT_EQ(accounting.ReturnPeriode("30/06/2025", 0), "12");
    EXPECT_EQ(accounting.ReturnPeriode("01/07/2025", 0), "") << "the last month lasts one month";

    for (const char* bad : {"2024-03-01", "31/02/2024", "1/3/2024", ""})
        EXPECT_EQ(accounting.ReturnPeriode(bad, 1), "") << bad;
    EXPECT_EQ(accounting.ReturnPeriode("01/03/2024", 3), "") << "a book year without dates";
    EXPECT_EQ(Shown(), "");
}

TEST_P(AccountingTest, CentralisingAccountsAreTheCompanysReceivablesAndPayables) {
    EXPECT_FALSE(accounting.CheckCentralisateur("400000")) << "no account table open";
    OpenAccounts({"400000", "440000", "441000", "600000", "4000"});
    EXPECT_TRUE(accounting.CheckCentralisateur("400000"));
    EXPECT_TRUE(accounting.CheckCentralisateur(" 440000 "));
    EXPECT_TRUE(accounting.CheckCentralisateur("441000"));
    EXPECT_FALSE(accounting.CheckCentralisateur("410000")) << "not one of the company's accounts";
    EXPECT_FALSE(accounting.CheckCentralisateur("600000")) << "a cost account";
    EXPECT_FALSE(accounting.CheckCentralisateur("40")) << "accounts are matched whole";
    EXPECT_TRUE(accounting.CheckCentralisateur("4000"));
    EXPECT_EQ(ads.GetCurrentAlias(), "PARAM");
}

TEST_P(AccountingTest, BankNamesComeFromTheInstallationsCodeRanges) {
    const std::filesystem::path list = folder / "RESOURCES" / "ORG" / "BANKCODE.ORG";
    std::filesystem::create_directories(list.parent_path());
    const std::string previousProgram = platform::ProgramFolder();
    platform::SetProgramFolder((folder / "PRG").string());
    EXPECT_EQ(accounting.GetBankName("BE68539007547034"), "") << "no list installed";
    ASSERT_EQ(RunFennrick({"table", "create", list.string(), "--fields",
                           "FROMCODE,C,3,0;TOCODE,C,3,0;NAME,C,60,0"})
                  .exitCode,
              0);
    ASSERT_EQ(RunFennrick({"table", "load", list.string()},
                          R"({"FROMCODE": "000", "TOCODE": "099", "NAME": "Bank Zero"})"
                          "\n"
                          R"({"FROMCODE": "539", "TOCODE": "539", "NAME": "Bank Five"})"
                          "\n")
                  .exitCode,
              0);
    EXPECT_EQ(accounting.GetBankName("BE68 5390 0754 7034"), "Bank Five");
    EXPECT_EQ(accounting.GetBankName("be68539007547034"), "Bank Five");
    EXPECT_EQ(accounting.GetBankName("539-0075470-34"), "Bank Five");
    EXPECT_EQ(accounting.GetBankName("099"), "Bank Zero") << "the end of a range";
    EXPECT_EQ(accounting.GetBankName("000"), "Bank Zero");
    EXPECT_EQ(accounting.GetBankName("100"), "") << "between ranges";
    EXPECT_EQ(accounting.GetBankName("NL91ABNA0417164300"), "") << "not a Belgian account";
    EXPECT_EQ(accounting.GetBankName("53"), "");
    EXPECT_FALSE(ads.IsAlias("BANKCODE")) << "the list is closed again";
    platform::SetProgramFolder(previousProgram);
}

TEST_P(AccountingTest, SectionFormatsAndAnalyticalAccounts) {
    clsAnalytical analytical(params);
    EXPECT_EQ(analytical.GetFormatforSectionQuantity(1), "") << "no zone table";
    const std::string path = (dossier / "SOC1_zonana.dbf").string();
    engine::Handle table = 0;
    ASSERT_EQ(
        db.CreateTable(ads.DossierConnection(), path, "ZONANA", engine::ADS_CDX, engine::ADS_ANSI,
                       engine::ADS_COMPATIBLE_LOCKING, engine::ADS_IGNORERIGHTS, 0,
                       "GEN,C,2,0;LEN,N,2,0;TIT1,C,30,0;MSK,C,20,0;USRTYP,C,1,0", table),
        engine::AE_SUCCESS);
    ASSERT_EQ(db.CloseTable(table), engine::AE_SUCCESS);
    ASSERT_EQ(ads.FileOpenExternal("ZONANA", path), engine::AE_SUCCESS);
    AddRecord("ZONANA", {{"GEN", "1"}, {"LEN", "4"}, {"MSK", "9999"}});
    AddRecord("ZONANA", {{"GEN", "1"}, {"LEN", "3"}, {"MSK", ""}});
    EXPECT_EQ(analytical.GetFormatforSectionQuantity(1), "9999");
    EXPECT_EQ(analytical.GetFormatforSectionQuantity(2), "XXX") << "the length without a mask";
    EXPECT_EQ(analytical.GetFormatforSectionQuantity(3), "");
    EXPECT_EQ(analytical.GetFormatforSectionQuantity(0), "");

    OpenAccounts({"600000", "400000"});
    EXPECT_TRUE(analytical.IsAccountAnalytical("600000"));
    EXPECT_FALSE(analytical.IsAccountAnalytical("400000"));
    EXPECT_FALSE(analytical.IsAccountAnalytical("610000"));
}

INSTANTIATE_TEST_SUITE_P(Keepings, AccountingTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         KeepingName);

}  // namespace
}  // namespace fnrk::company::testing
