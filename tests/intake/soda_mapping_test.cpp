// MSODA and MSODAANA on both keepings, an outside reader of what they hold, and two processes
// mapping codes of one company at once.

#include <gtest/gtest.h>

#include <future>
#include <nlohmann/json.hpp>

#include "intake/mapping_layouts.hpp"
#include "intake/soda_mappings.hpp"
#include "mapping_fixture.hpp"
#include "retrying_sink.hpp"

namespace fnrk::intake {
namespace {

using tables::ads_testing::Keeping;
using testing::MappingTest;

class SodaMappingTest : public MappingTest {};

TEST_P(SodaMappingTest, OneRecordPerSourceAndDeletedRecordsAreNeverFound) {
    SodaMappings soda(company);
    ASSERT_TRUE(soda.CreateMapping());
    ASSERT_TRUE(soda.CreateMappingANA());
    ASSERT_TRUE(soda.CreateMapping()) << "a second create finds the table there";
    ASSERT_EQ(ads.ActivateAlias("PARAM"), engine::AE_SUCCESS);

    EXPECT_EQ(soda.GetMapping("1000"), "");
    ASSERT_TRUE(soda.UpdateMapping(" 1000 ", "620000"));
    ASSERT_TRUE(soda.UpdateMapping("1000", " 621000 "));
    ASSERT_TRUE(soda.UpdateMapping("2000", "453000"));
    ASSERT_TRUE(soda.UpdateMapping("3000", ""));
    EXPECT_EQ(soda.GetMapping("1000"), "621000") << "the second destination wins";
    EXPECT_EQ(soda.GetMapping("3000"), "");
    EXPECT_EQ(soda.GetMapping("100"), "") << "a prefix is not a code";
    EXPECT_EQ(ads.GetCurrentAlias(), "PARAM") << "the caller's table stays current";
    EXPECT_EQ(InTagOrder("MSODA", "SOURCE", "SOURCE"),
              (std::vector<std::string>{"1000", "2000", "3000"}));
    EXPECT_EQ(TagExpression("MSODA", "SOURCE"), "IIf(.not.deleted(),'X' + SOURCE,'X' + space(10))");
    EXPECT_EQ(TagExpression("MSODA", "DEST"), "IIf(.not.deleted(),'X' + DEST,'X' + space(10))");

    // A code mapped, then its record deleted, has no mapping; mapping it again adds a record.
    ASSERT_EQ(ads.ActivateAlias("MSODA"), engine::AE_SUCCESS);
    ASSERT_TRUE(ads.SetIndex("SOURCE"));
    ASSERT_TRUE(ads.seekKey("X2000      "));
    ASSERT_TRUE(ads.RecLock("MSODA", ads.recno()));
    ASSERT_EQ(ads.RecordDelete(), engine::AE_SUCCESS);
    ASSERT_EQ(ads.FlushAndUnlock("MSODA"), engine::AE_SUCCESS);
    EXPECT_EQ(soda.GetMapping("2000"), "");
    ASSERT_TRUE(soda.UpdateMapping("2000", "454000"));
    EXPECT_EQ(soda.GetMapping("2000"), "454000");

    // The analytical mapping is a table of its own, and is cleared as a whole.
    ASSERT_TRUE(soda.UpdateMappingANA("1000", "SECT01"));
    ASSERT_TRUE(soda.UpdateMappingANA("2000", "SECT02"));
    EXPECT_EQ(soda.GetMappingANA("1000"), "SECT01");
    EXPECT_EQ(soda.GetMapping("1000"), "621000");
    ASSERT_TRUE(soda.DeleteAnaSection());
    EXPECT_EQ(soda.GetMappingANA("1000"), "");
    EXPECT_EQ(soda.GetMappingANA("2000"), "");
    EXPECT_EQ(soda.GetMapping("1000"), "621000");
    EXPECT_EQ(Shown(), "");
}

TEST_P(SodaMappingTest, WritesWithoutATableAreRefused) {
    SodaMappings soda(company);
    EXPECT_FALSE(soda.UpdateMapping("1000", "620000"));
    EXPECT_EQ(soda.GetMapping("1000"), "");
}

INSTANTIATE_TEST_SUITE_P(Keeping, SodaMappingTest, ::testing::Values(Keeping::Files, Keeping::Sql),
                         tables::ads_testing::KeepingName);

class SodaMappingFilesTest : public MappingTest {};

TEST_P(SodaMappingFilesTest, AnOutsideReaderSeesTheRecordsWritten) {
    SodaMappings soda(company);
    ASSERT_TRUE(soda.CreateMapping());
    ASSERT_TRUE(soda.CreateMappingANA());
    ASSERT_TRUE(soda.UpdateMapping("B1", "600000"));
    ASSERT_TRUE(soda.UpdateMapping("A1", "610000"));
    ASSERT_TRUE(soda.UpdateMapping("B1", "620000"));
    ASSERT_TRUE(soda.UpdateMappingANA("A1", "S1"));
    ASSERT_TRUE(soda.DeleteAnaSection());
    ads.FileCloseAll(true);
    const nlohmann::json msoda = ReadWithDbfread("MSODA");
    EXPECT_EQ(msoda["fields"], nlohmann::json({"SOURCE,C,10", "DEST,C,10"}));
    EXPECT_EQ(msoda["live"], nlohmann::json::parse(R"([{"SOURCE": "B1", "DEST": "620000"},
                                                      {"SOURCE": "A1", "DEST": "610000"}])"));
    EXPECT_TRUE(msoda["deleted"].empty());
    const nlohmann::json ana = ReadWithDbfread("MSODAANA");
    EXPECT_TRUE(ana["live"].empty());
    EXPECT_EQ(ana["deleted"], nlohmann::json::parse(R"([{"SOURCE": "A1", "DEST": "S1"}])"));
    for (const auto& [tag, expression] : MsodaLayout().tags) {
        EXPECT_TRUE(IndexHolds("MSODA", expression)) << tag;
        EXPECT_TRUE(IndexHolds("MSODAANA", expression)) << tag;
    }
}

TEST_P(SodaMappingFilesTest, TwoProcessesMappingAtOnceKeepEveryUpdate) {
    SodaMappings soda(company);
    ASSERT_TRUE(soda.CreateMapping());
    constexpr int kShared = 20;
    constexpr int kOwn = 30;
    constexpr int kRounds = 10;
    const std::vector<std::string> writer = {FNRK_MAPPING_WRITER,     ads.Dossier().prefix,
                                             std::to_string(kShared), std::to_string(kOwn),
                                             std::to_string(kRounds), "P"};
    // Both workstations wait out each other's locks.
    testing::RetryingSink retrying;
    platform::SetMessageSink(&retrying);
    auto other = std::async(std::launch::async, [&] { return fnrk::testing::RunCommand(writer); });
    int failures = 0;
    for (int round = 0; round < kRounds; ++round) {
        for (int code = 0; code < kShared; ++code) {
            failures +=
                soda.UpdateMapping("S" + std::to_string(code), "Q" + std::to_string(round)) ? 0 : 1;
        }
        for (int code = 0; code < kOwn; ++code) {
            failures += soda.UpdateMapping("Q" + std::to_string(code), "Q") ? 0 : 1;
        }
    }
    const auto result = other.get();
    platform::SetMessageSink(&messages);
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(failures, 0);

    const std::vector<std::string> sources = InTagOrder("MSODA", "SOURCE", "SOURCE");
    EXPECT_EQ(sources.size(), static_cast<std::size_t>(kShared + 2 * kOwn))
        << "one record per code";
    EXPECT_TRUE(std::adjacent_find(sources.begin(), sources.end()) == sources.end());
    for (int code = 0; code < kOwn; ++code) {
        EXPECT_EQ(soda.GetMapping("P" + std::to_string(code)), "P");
        EXPECT_EQ(soda.GetMapping("Q" + std::to_string(code)), "Q");
    }
    for (int code = 0; code < kShared; ++code) {
        const std::string last = soda.GetMapping("S" + std::to_string(code));
        const std::string lastRound = std::to_string(kRounds - 1);
        EXPECT_TRUE(last == "P" + lastRound || last == "Q" + lastRound)
            << last << ": a last round's write";
    }
}

INSTANTIATE_TEST_SUITE_P(Keeping, SodaMappingFilesTest, ::testing::Values(Keeping::Files),
                         tables::ads_testing::KeepingName);

}  // namespace
}  // namespace fnrk::intake
