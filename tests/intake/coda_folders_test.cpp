// The CODA folders with their switches and defaults, and the network form of paths through the
// drive map of the settings store.

#include <gtest/gtest.h>

#include "intake/coda_folders.hpp"
#include "intake/network_paths.hpp"
#include "intake_fixture.hpp"
#include "support/host_separators.hpp"
#include "support/scoped_environment.hpp"

namespace fnrk::intake {
namespace {

using fnrk::testing::HostSeparators;
using fnrk::testing::WriteFileBytes;
using tables::ads_testing::Keeping;
using testing::IntakeTest;

class CodaFoldersTest : public IntakeTest {
  protected:
    void SetUp() override {
        IntakeTest::SetUp();
        WriteFileBytes(folder / "settings.ini", "[Drives]\nk:=/srv/bank\nM:=/srv/mail \n");
    }
    fnrk::testing::ScopedEnvironment settings{"FNRK_SETTINGS_FILE",
                                              (folder / "settings.ini").string()};
};

#ifndef _WIN32  // the drive map stands in for the network drives of Windows
TEST_P(CodaFoldersTest, MappedDrivesBecomeTheirRemoteNames) {
    EXPECT_EQ(RemoteNameOfDrive("K:"), "/srv/bank");
    EXPECT_EQ(RemoteNameOfDrive("Z:"), "Z:") << "an unmapped drive names itself";
    EXPECT_EQ(NetworkFormOfPath("K:\\BANK\\in"), "/srv/bank/BANK/in");
    EXPECT_EQ(NetworkFormOfPath("m:\\x"), "/srv/mail/x");
    EXPECT_EQ(NetworkFormOfPath("C:\\DATA"), "C:\\DATA") << "a local disk stays as it is";
    EXPECT_EQ(NetworkFormOfPath("\\\\server\\share\\x"), "\\\\server\\share\\x");
    EXPECT_EQ(NetworkFormOfPath("/srv/data"), "/srv/data");
    EXPECT_EQ(NetworkFormOfPath("   "), "");
}
#endif

TEST_P(CodaFoldersTest, FoldersFollowTheirSwitchesDefaultsAndTheCodaModule) {
    CodaFolders coda(company);
    const std::string companyFolder = dossier.string();
    SaveParam("CODA_PARAMFILE",
              "WITHDEFAULT=true,DEFAULT=K:\\BANK,PROCESSCAN=FALSE,"
              "PROCESPDF=K:\\PDF,PROCES=yes,PROCESPATH=K:\\DONE");
    EXPECT_EQ(coda.DefaultFolder(false), "") << "the company does not use CODA";
    EXPECT_EQ(coda.PdfFolder(false), "");
    EXPECT_EQ(coda.ProcessedFolder(false), "");

    SaveParam("ISCODA", "TRUE");
#ifndef _WIN32  // the drive map stands in for the network drives of Windows
    EXPECT_EQ(coda.DefaultFolder(false), "/srv/bank/BANK");
#endif
    EXPECT_EQ(coda.PdfFolder(false), companyFolder + HostSeparators("/CODA/PDF/"))
        << "switched off: the default folder";
    EXPECT_EQ(coda.ProcessedFolder(false), "") << "only TRUE switches on; no default";

    SaveParam("CODA_PARAMFILE",
              "WITHDEFAULT=FALSE,DEFAULT=K:\\BANK,PROCES=True,"
              "PROCESPATH=C:\\CODA\\DONE,PROCESSCAN=TRUE,PROCESPDF= ");
    EXPECT_EQ(coda.DefaultFolder(false), companyFolder + HostSeparators("/CODA/"));
    EXPECT_EQ(coda.PdfFolder(false), companyFolder + HostSeparators("/CODA/PDF/"))
        << "an empty folder";
    EXPECT_EQ(coda.ProcessedFolder(false), "C:\\CODA\\DONE");
    EXPECT_EQ(coda.ProcessedFolder(true), "C:\\\\CODA\\\\DONE") << "every \\ doubled";
}

INSTANTIATE_TEST_SUITE_P(Keeping, CodaFoldersTest, ::testing::Values(Keeping::Files),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::intake
