// The intake folder trees of the three kinds: scanning, done marks, filing into the status
// folders with the PDFs, on real folders.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "intake/intake_folders.hpp"
#include "intake/intake_settings.hpp"
#include "intake_fixture.hpp"
#include "support/host_separators.hpp"
#include "support/scoped_environment.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::intake {
namespace {

namespace fs = std::filesystem;
using fnrk::testing::HostSeparators;
using fnrk::testing::ReadFileBytes;
using fnrk::testing::WriteFileBytes;
using tables::ads_testing::Keeping;
using testing::IntakeTest;

class FoldersTest : public IntakeTest {
  protected:
    void SetUp() override {
        IntakeTest::SetUp();
        for (IntakeKind kind : {IntakeKind::Soda, IntakeKind::Efff, IntakeKind::Caro}) {
            ASSERT_TRUE(IntakeSettings(company, kind).SetPath(base.string()));
        }
    }
    // A file of the year folder of 2024, with its folders.
    fs::path Put(const std::string& relative, const std::string& content = "<x/>") {
        const fs::path file = year / relative;
        fs::create_directories(file.parent_path());
        WriteFileBytes(file, content);
        return file;
    }
    std::vector<std::string> Names(const IntakeFolders& folders) {
        std::vector<std::string> names;
        for (const FileEntry& entry : folders.Files().Entries()) names.push_back(entry.name);
        return names;
    }

    fs::path base = folder / "intake";
    fs::path year = base / "SOC1" / "2024";
};

TEST_P(FoldersTest, SodaScanTakesSodaFromFoldersInAnyCaseAndXmlAnywhereInTheName) {
    IntakeFolders soda(IntakeKind::Soda);
    EXPECT_EQ(soda.GetFile(company, 2024), "") << "a missing tree finds nothing";
    EXPECT_EQ(Names(soda), std::vector<std::string>{""});

    Put("soda_from_acme/b.xml");
    Put("soda_from_acme/a.XML");
    Put("soda_from_acme/c.xml.bak");
    Put("soda_from_acme/notes.txt");
    Put("SODA_FROM_Z/a.xml");
    Put("other/x.xml");
    Put("loose.xml");
    // The first scan found nothing, so the next call scans again.
    EXPECT_EQ(soda.GetFile(company, 2024), (year / "soda_from_acme" / "a.XML").string());
    // Exact order: "a.XML" before "a.xml"; files of two folders in one list.
    EXPECT_EQ(Names(soda), (std::vector<std::string>{"a.XML", "a.xml", "b.xml", "c.xml.bak"}));
    EXPECT_EQ(soda.Files().Entries()[1].path, (year / "SODA_FROM_Z" / "a.xml").string());

    // One scan per year: a file added later is not seen until Init or another year.
    Put("soda_from_acme/0.xml");
    EXPECT_EQ(soda.GetFile(company, 2024), (year / "soda_from_acme" / "a.XML").string());
    EXPECT_EQ(soda.Files().Entries().size(), 4u);
    soda.Init();
    EXPECT_EQ(soda.GetFile(company, 2024), (year / "soda_from_acme" / "0.xml").string());
    EXPECT_EQ(soda.GetFile(company, 2023), "");
    EXPECT_EQ(soda.GetWarningPath(),
              (base / "SOC1" / "2023" / "WARNING").string() + platform::kPathSep);
    soda.Init();
    EXPECT_EQ(soda.GetProcessedPath(), HostSeparators("PROCESSED/")) << "no year folder since Init";

    // A status folder that exists does not hold waiting files.
    Put("PROCESSED/soda_from_acme/z.xml");
    soda.Init();
    EXPECT_EQ(soda.GetFile(company, 2024), (year / "soda_from_acme" / "0.xml").string());
    EXPECT_EQ(soda.Files().Entries().size(), 5u);
}

TEST_P(FoldersTest, EfffFilesWaitInTheYearFolderAndCaroFilesInItsCaroFolder) {
    Put("e2.xml");
    Put("e1.xml");
    Put("CARO/s1.xml");
    Put("soda_from_x/p.xml");
    IntakeFolders efff(IntakeKind::Efff);
    IntakeFolders caro(IntakeKind::Caro);
    EXPECT_EQ(efff.GetFile(company, 2024), (year / "e1.xml").string());
    EXPECT_EQ(Names(efff), (std::vector<std::string>{"e1.xml", "e2.xml"}));
    EXPECT_EQ(caro.GetFile(company, 2024), (year / "CARO" / "s1.xml").string());
    EXPECT_EQ(Names(caro), std::vector<std::string>{"s1.xml"});
}

TEST_P(FoldersTest, WithoutMovingTheFilesUpToTheLastFiledOneAreDone) {
    IntakeSettings settings(company, IntakeKind::Soda);
    Put("soda_from_acme/a.xml");
    Put("soda_from_acme/b.xml");
    Put("soda_from_acme/c.xml");
    ASSERT_TRUE(settings.SetLastMovedFile((year / "SODA_FROM_ACME" / "B.XML").string()));
    IntakeFolders soda(IntakeKind::Soda);
    EXPECT_EQ(soda.GetFile(company, 2024), (year / "soda_from_acme" / "a.xml").string())
        << "while files are moved, nothing is marked";

    ASSERT_TRUE(settings.SetMoveFile(false));
    soda.Init();
    EXPECT_EQ(soda.GetFile(company, 2024), (year / "soda_from_acme" / "c.xml").string())
        << "the last filed file and those before it are done, compared in upper case";
    const auto& entries = soda.Files().Entries();
    EXPECT_TRUE(entries[0].done && entries[1].done);
    EXPECT_FALSE(entries[2].done);

    // Filing without moving records the file and leaves it in place.
    ASSERT_TRUE(soda.UpdateFile(company, (year / "soda_from_acme" / "c.xml").string(),
                                kStatusProcessed, ""));
    EXPECT_TRUE(fs::exists(year / "soda_from_acme" / "c.xml"));
    soda.Init();
    EXPECT_EQ(soda.GetFile(company, 2024), "");
}

TEST_P(FoldersTest, FilingMovesByStatusWithThePdfAndReplacesWhatIsThere) {
    IntakeFolders soda(IntakeKind::Soda);
    IntakeSettings settings(company, IntakeKind::Soda);
    const fs::path a = Put("soda_from_acme/a.XML", "new a");
    Put("soda_from_acme/pdf/a.pdf", "pdf of a");
    const fs::path b = Put("soda_from_acme/b.xml", "new b");
    const fs::path c = Put("soda_from_acme/c.xml");
    const fs::path d = Put("soda_from_acme/d.xml");
    const fs::path e = Put("soda_from_acme/e.xml");
    Put("ERROR/soda_from_acme/b.xml", "old b");

    ASSERT_TRUE(soda.UpdateFile(company, a.string(), kStatusProcessed, "yes"));
    EXPECT_EQ(settings.GetLastMovedFile(), a.string());
    EXPECT_FALSE(fs::exists(a));
    EXPECT_EQ(ReadFileBytes(year / "PROCESSED" / "soda_from_acme" / "a.XML"), "new a");
    EXPECT_EQ(ReadFileBytes(year / "PROCESSED" / "soda_from_acme" / "pdf" / "a.pdf"), "pdf of a");

    ASSERT_TRUE(soda.UpdateFile(company, b.string(), kStatusError, ""));
    EXPECT_EQ(ReadFileBytes(year / "ERROR" / "soda_from_acme" / "b.xml"), "new b")
        << "an existing target is replaced";
    EXPECT_EQ(fs::directory_iterator(year / "ERROR" / "soda_from_acme")->path().filename(), "b.xml")
        << "nothing else is left beside it";

    ASSERT_TRUE(soda.UpdateFile(company, c.string(), kStatusErrorAna, ""));
    ASSERT_TRUE(soda.UpdateFile(company, d.string(), kStatusWarning, ""));
    EXPECT_TRUE(fs::exists(year / "WARNING" / "soda_from_acme" / "c.xml"));
    EXPECT_TRUE(fs::exists(year / "WARNING" / "soda_from_acme" / "d.xml"))
        << "status 5 goes to WARNING like 3";
    ASSERT_TRUE(soda.UpdateFile(company, e.string(), kStatusBadYear, ""));
    EXPECT_TRUE(fs::exists(e)) << "a file of another book year stays in place";
    EXPECT_EQ(settings.GetLastMovedFile(), e.string()) << "but is recorded";

    // A move that cannot be made leaves the file where it was.
    fs::create_directories(year / "PROCESSED" / "soda_from_acme" / "e.xml");
    EXPECT_FALSE(soda.UpdateFile(company, e.string(), kStatusProcessed, ""));
    EXPECT_EQ(ReadFileBytes(e), "<x/>");
    // A file that is gone is recorded, and nothing is moved.
    EXPECT_TRUE(soda.UpdateFile(company, (year / "soda_from_acme" / "gone.xml").string(),
                                kStatusProcessed, ""));
    EXPECT_EQ(settings.GetLastMovedFile(), (year / "soda_from_acme" / "gone.xml").string());
}

TEST_P(FoldersTest, EfffAndCaroFilesFileUnderTheYearFolderKeepingTheirSubFolder) {
    const fs::path p1 = Put("p1.xml");
    Put("pdf/p1.pdf");
    const fs::path s1 = Put("CARO/s1.xml");
    IntakeFolders efff(IntakeKind::Efff);
    IntakeFolders caro(IntakeKind::Caro);
    ASSERT_TRUE(efff.UpdateFile(company, p1.string(), kStatusProcessed, "pdf"));
    EXPECT_TRUE(fs::exists(year / "PROCESSED" / "p1.xml"));
    EXPECT_TRUE(fs::exists(year / "PROCESSED" / "pdf" / "p1.pdf"));
    ASSERT_TRUE(caro.UpdateFile(company, s1.string(), kStatusError, ""));
    EXPECT_TRUE(fs::exists(year / "ERROR" / "CARO" / "s1.xml"));
    EXPECT_EQ(IntakeSettings(company, IntakeKind::Caro).GetLastMovedFile(), s1.string());
    EXPECT_EQ(IntakeSettings(company, IntakeKind::Efff).GetLastMovedFile(), p1.string());
}

TEST_P(FoldersTest, ThePdfOfAFileLiesInItsPdfFolder) {
    const fs::path file = Put("soda_from_acme/Pay.2024.XML");
    EXPECT_EQ(IntakeFolders::GetPdfFile(file.string()), "");
    Put("soda_from_acme/pdf/Pay.2024.pdf");
    EXPECT_EQ(IntakeFolders::GetPdfFile(file.string()),
              (year / "soda_from_acme" / "pdf" / "Pay.2024.pdf").string());
}

TEST_P(FoldersTest, DownloadNeedsAConfiguredTransport) {
    fnrk::testing::ScopedEnvironment settingsFile("FNRK_SETTINGS_FILE",
                                                  (folder / "settings.ini").string());
    IntakeFolders efff(IntakeKind::Efff);
    std::string message;
    EXPECT_FALSE(efff.DownloadFiles(message));
    EXPECT_NE(message.find("DownloadFolder"), std::string::npos) << message;

    const fs::path drop = folder / "drop";
    fs::create_directories(drop);
    WriteFileBytes(drop / "new.xml", "<n/>");
    WriteFileBytes(drop / "readme.txt", "");
    WriteFileBytes(folder / "settings.ini", "[EFFF]\nDownloadFolder=" + drop.string() + "\n");
    message.clear();
    EXPECT_FALSE(efff.DownloadFiles(message)) << "no year folder yet";
    EXPECT_FALSE(message.empty());
    EXPECT_EQ(efff.GetFile(company, 2024), "");
    message.clear();
    ASSERT_TRUE(efff.DownloadFiles(message)) << message;
    EXPECT_EQ(efff.GetFile(company, 2024), (year / "new.xml").string());
    EXPECT_TRUE(fs::exists(drop / "readme.txt"));
}

INSTANTIATE_TEST_SUITE_P(Keeping, FoldersTest, ::testing::Values(Keeping::Files),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::intake

namespace fnrk::intake {
namespace {

TEST(FileList, TheFirstFileTakesTheFreeEntryAndTheSortOrdersManyNames) {
    FileList list;
    EXPECT_TRUE(list.IsFresh());
    std::vector<std::string> names;
    // 61 names in a scrambled order: every gap of the sort (40, 13, 4, 1) is used.
    for (int i = 0; i < 61; ++i) names.push_back("f" + std::to_string((i * 37) % 61) + ".xml");
    for (const std::string& name : names) list.Add(name, "/in/" + name);
    EXPECT_FALSE(list.IsFresh());
    ASSERT_EQ(list.Entries().size(), names.size()) << "no empty entry is left";
    list.SortByName();
    std::sort(names.begin(), names.end());
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(list.Entries()[i].name, names[i]);
        EXPECT_EQ(list.Entries()[i].path, "/in/" + names[i]);
    }
    list.Reset();
    EXPECT_TRUE(list.IsFresh());

    // Equal names keep the order the gaps give them: with five entries the gap of 4 first moves
    // the last "a" before the other one, which a plain insertion sort would not.
    list.Reset();
    for (const std::string path : {"b1", "a2", "c3", "d4", "a5"}) list.Add(path.substr(0, 1), path);
    list.SortByName();
    std::vector<std::string> order;
    for (const FileEntry& entry : list.Entries()) order.push_back(entry.path);
    EXPECT_EQ(order, (std::vector<std::string>{"a5", "a2", "b1", "c3", "d4"}));
}

}  // namespace
}  // namespace fnrk::intake
