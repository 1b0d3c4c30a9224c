// ArchiveTables: an archived book year's copy of the company's tables opens beside the current
// ones.

#include <gtest/gtest.h>

#include <filesystem>

#include "company/archive_tables.hpp"
#include "param_fixture.hpp"

namespace fnrk::company::testing {
namespace {

class ArchiveTablesTest : public ParamTest {
  protected:
    // An archived copy of the company's ACT in `folder` under the short name `name`, one entry.
    void ArchiveEntries(const std::filesystem::path& where, const std::string& name,
                        const std::string& document) {
        std::filesystem::create_directories(where);
        const std::string path =
            tables::AdsClass::StandardTablePathOf((where / name).string(), "ACT");
        engine::Handle table = 0;
        ASSERT_EQ(db.CreateTable(0, path, "ARCHIVED", engine::ADS_CDX, engine::ADS_ANSI,
                                 engine::ADS_COMPATIBLE_LOCKING, engine::ADS_IGNORERIGHTS, 0,
                                 "DOCNUMBER,C,8,0", table),
                  engine::AE_SUCCESS);
        ASSERT_EQ(db.AppendRecord(table), engine::AE_SUCCESS);
        ASSERT_EQ(db.SetString(table, "DOCNUMBER", document), engine::AE_SUCCESS);
        ASSERT_EQ(db.CloseTable(table), engine::AE_SUCCESS);
    }

    ArchiveTables archives{params, ads};
};

TEST_P(ArchiveTablesTest, AnArchivedYearOpensUnderItsOwnAliasFromItsFolder) {
    params.socShortName("SOC1");
    const std::filesystem::path year1 = folder / "ARCH2022";
    const std::filesystem::path year2 = folder / "ARCH2023";
    AddParam("BOOKYEAR1.PATHARCH", year1.string().substr(0, 12), year1.string().substr(12));
    AddParam("BOOKYEAR1.NAMEARCH", "OLD1");
    AddParam("BOOKYEAR2.PATHARCH", year2.string().substr(0, 12), year2.string().substr(12) + "/");
    ArchiveEntries(year1, "OLD1", "2022-1");
    ArchiveEntries(year2, "SOC1", "2023-1");  // no archive name: the company's own

    EXPECT_EQ(archives.ArchivedTablePath("ACF", 1),
              tables::AdsClass::StandardTablePathOf((year1 / "OLD1").string(), "ACF"));
    EXPECT_EQ(archives.ArchivedTablePath("ACT", 3), "") << "a book year that is not archived";
    EXPECT_EQ(archives.ArchivedTablePath("NOSUCH", 1), "");
    EXPECT_FALSE(archives.OpenArchived("ACT", 3));
    EXPECT_FALSE(archives.OpenArchived("ACF", 1)) << "the archive holds no ACF";

    ASSERT_TRUE(archives.OpenArchived("ACT", 1));
    ASSERT_EQ(ads.ActivateAlias("ARCHACT"), engine::AE_SUCCESS);
    EXPECT_EQ(ads.GetStringValue("DOCNUMBER"), "2022-1");
    ASSERT_TRUE(archives.OpenArchived("ACT", 2)) << "another year replaces the first";
    ASSERT_EQ(ads.ActivateAlias("ARCHACT"), engine::AE_SUCCESS);
    EXPECT_EQ(ads.GetStringValue("DOCNUMBER"), "2023-1");
    EXPECT_TRUE(ads.IsAlias("PARAM")) << "the company's own tables stay open";
}

INSTANTIATE_TEST_SUITE_P(Keepings, ArchiveTablesTest,
                         ::testing::Values(Keeping::Files, Keeping::Sql), KeepingName);

}  // namespace
}  // namespace fnrk::company::testing
