// Tags kept up to date through thousands of random appends, field writes, deletes and recalls
// must equal a model sorted in the test, including a key that changes through DELETED(); after
// pack and zap the tags are rebuilt and sound.

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "engine/cdx/index_key.hpp"
#include "engine/table/engine_fixture.hpp"

namespace fnrk::engine {
namespace {

constexpr const char* kFields = "NAME,C,8;QTY,N,6,0;ACTIVE,L";

struct Row {
    std::string name = "        ";
    double qty = 0;
    bool active = false;
    bool deleted = false;
};

class UpkeepOrderTest : public EngineTest {
  protected:
    void SetUp() override {
        EngineTest::SetUp();
        Create("moves", kFields);
        table = Open("moves", openMode);
        Handle index = 0;
        ASSERT_EQ(
            engine.CreateIndex(table, "", "LIVE", "IIf(.not.deleted(),'X' + NAME,'X' + space(8))",
                               "", "", ADS_COMPOUND, index),
            AE_SUCCESS);
        ASSERT_EQ(engine.CreateIndex(table, "", "QTYDESC", "QTY", "", "",
                                     ADS_COMPOUND | ADS_DESCENDING, index),
                  AE_SUCCESS);
        ASSERT_EQ(engine.CreateIndex(table, "", "ACTNAME", "upper(NAME)", "ACTIVE", "",
                                     ADS_COMPOUND, index),
                  AE_SUCCESS);
    }

    std::vector<std::uint32_t> Walk(const std::string& tag) {
        Handle index = 0;
        EXPECT_EQ(engine.GetIndexHandle(table, tag, index), AE_SUCCESS);
        std::vector<std::uint32_t> records;
        EXPECT_EQ(engine.GotoTop(index), AE_SUCCESS);
        while (!Eof(index) && records.size() <= rows.size()) {
            records.push_back(Recno(index));
            EXPECT_EQ(engine.Skip(index, 1), AE_SUCCESS);
        }
        return records;
    }

    // The orders the three tags must give, computed here from the rows.
    std::map<std::string, std::vector<std::uint32_t>> Model() {
        std::set<std::pair<std::string, std::uint32_t>> live, actname;
        std::set<std::pair<std::string, std::uint32_t>> qty;
        for (std::uint32_t r = 1; r <= rows.size(); ++r) {
            const Row& row = rows[r - 1];
            live.emplace("X" + (row.deleted ? std::string(8, ' ') : row.name), r);
            qty.emplace(cdx::EncodeNumberKey(row.qty), r);
            std::string upper = row.name;
            for (char& c : upper)
                c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
            if (row.active) actname.emplace(upper, r);
        }
        auto records = [](const auto& set) {
            std::vector<std::uint32_t> out;
            for (const auto& [key, record] : set) out.push_back(record);
            return out;
        };
        auto descending = records(qty);
        std::reverse(descending.begin(), descending.end());
        return {{"LIVE", records(live)}, {"QTYDESC", descending}, {"ACTNAME", records(actname)}};
    }

    void ExpectTagsMatchModel() {
        for (const auto& [tag, order] : Model()) EXPECT_EQ(Walk(tag), order) << tag;
    }

    void RandomChangesKeepEveryTagEqualToTheModel();

    std::uint32_t openMode = ADS_EXCLUSIVE;
    Handle table = 0;
    std::vector<Row> rows;
};

// Shared, an appended record is written blank at once and gets its keys when it is written.
class SharedUpkeepOrderTest : public UpkeepOrderTest {
  protected:
    void SetUp() override {
        openMode = ADS_SHARED;
        UpkeepOrderTest::SetUp();
    }
};

void UpkeepOrderTest::RandomChangesKeepEveryTagEqualToTheModel() {
    std::mt19937 random(11);
    auto randomName = [&] {
        std::string name(8, ' ');
        const int used = 1 + static_cast<int>(random() % 8);
        for (int i = 0; i < used; ++i) name[i] = "abcABC "[random() % 7];
        return name;
    };
    for (int step = 0; step < 3000; ++step) {
        const unsigned what = rows.size() < 20 ? 0 : random() % 6;
        if (what == 0 || what == 5) {
            ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
            rows.emplace_back();
        } else {
            const auto record = static_cast<std::uint32_t>(1 + random() % rows.size());
            ASSERT_EQ(engine.GotoRecord(table, record), AE_SUCCESS);
        }
        Row& row = rows[Recno(table) - 1];
        switch (what) {
            case 0:
            case 1:
                row.name = randomName();
                ASSERT_EQ(engine.SetString(table, "NAME", row.name), AE_SUCCESS);
                row.qty = static_cast<double>(random() % 50) - 10;
                ASSERT_EQ(engine.SetDouble(table, "QTY", row.qty), AE_SUCCESS);
                break;
            case 2:
                row.active = !row.active;
                ASSERT_EQ(engine.SetLogical(table, "ACTIVE", row.active), AE_SUCCESS);
                break;
            case 3:
                row.deleted = true;
                ASSERT_EQ(engine.DeleteRecord(table), AE_SUCCESS);
                break;
            case 4:
                row.deleted = false;
                ASSERT_EQ(engine.RecallRecord(table), AE_SUCCESS);
                break;
            case 5:  // left blank
                break;
        }
        if (step % 1000 == 999) ExpectTagsMatchModel();
    }
    ASSERT_EQ(engine.GotoTop(table), AE_SUCCESS);  // writes the pending record
    ExpectTagsMatchModel();

    // A deleted record is never found behind its "X" key.
    Handle live = 0;
    ASSERT_EQ(engine.GetIndexHandle(table, "LIVE", live), AE_SUCCESS);
    for (std::uint32_t r = 1; r <= rows.size(); ++r) {
        // A blank name's key is the key of every deleted record.
        if (!rows[r - 1].deleted || rows[r - 1].name == std::string(8, ' ')) continue;
        bool found = false;
        ASSERT_EQ(engine.Seek(live, "X" + rows[r - 1].name, ADS_STRINGKEY, ADS_HARDSEEK, found),
                  AE_SUCCESS);
        while (found && !Eof(live)) {
            std::string key;
            ASSERT_EQ(engine.ExtractKey(live, key), AE_SUCCESS);
            if (key != "X" + rows[r - 1].name) break;
            EXPECT_NE(Recno(live), r);
            ASSERT_EQ(engine.Skip(live, 1), AE_SUCCESS);
        }
    }

    // Pack drops the deleted rows and renumbers; the tags follow.
    if (openMode != ADS_EXCLUSIVE) {
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);
        table = Open("moves", ADS_EXCLUSIVE);
    }
    ASSERT_EQ(engine.PackTable(table), AE_SUCCESS);
    std::erase_if(rows, [](const Row& row) { return row.deleted; });
    ExpectTagsMatchModel();
    ASSERT_EQ(engine.Reindex(table), AE_SUCCESS);
    ExpectTagsMatchModel();
    ASSERT_EQ(engine.ZapTable(table), AE_SUCCESS);
    rows.clear();
    ExpectTagsMatchModel();
    std::uint32_t keys = 1;
    Handle index = 0;
    ASSERT_EQ(engine.GetIndexHandle(table, "LIVE", index), AE_SUCCESS);
    ASSERT_EQ(engine.GetKeyCount(index, ADS_IGNOREFILTERS, keys), AE_SUCCESS);
    EXPECT_EQ(keys, 0u);
}

TEST_F(UpkeepOrderTest, RandomChangesKeepEveryTagEqualToTheModel) {
    RandomChangesKeepEveryTagEqualToTheModel();
}

TEST_F(SharedUpkeepOrderTest, RandomChangesKeepEveryTagEqualToTheModel) {
    RandomChangesKeepEveryTagEqualToTheModel();
}

TEST_F(UpkeepOrderTest, ScopesSkipsAndRelativePositions) {
    for (int i = 0; i < 30; ++i) {
        ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
        ASSERT_EQ(engine.SetString(table, "NAME", std::string(1, static_cast<char>('A' + i % 10))),
                  AE_SUCCESS);
        rows.emplace_back();
    }
    Handle live = 0;
    ASSERT_EQ(engine.GetIndexHandle(table, "LIVE", live), AE_SUCCESS);
    ASSERT_EQ(engine.SetScope(live, ADS_TOP, "XC", ADS_STRINGKEY), AE_SUCCESS);
    ASSERT_EQ(engine.SetScope(live, ADS_BOTTOM, "XE", ADS_STRINGKEY), AE_SUCCESS);
    std::string scope;
    ASSERT_EQ(engine.GetScope(live, ADS_TOP, scope), AE_SUCCESS);
    EXPECT_EQ(scope, "XC");
    std::uint32_t count = 0;
    ASSERT_EQ(engine.GetKeyCount(live, ADS_RESPECTSCOPES, count), AE_SUCCESS);
    EXPECT_EQ(count, 9u);  // three each of C, D and E
    ASSERT_EQ(engine.GotoTop(live), AE_SUCCESS);
    EXPECT_EQ(String(live, "NAME"), "C       ");
    ASSERT_EQ(engine.Skip(live, -1), AE_SUCCESS);
    EXPECT_TRUE(Bof(live));
    EXPECT_EQ(String(live, "NAME"), "C       ");
    ASSERT_EQ(engine.GotoBottom(live), AE_SUCCESS);
    EXPECT_EQ(String(live, "NAME"), "E       ");
    ASSERT_EQ(engine.Skip(live, 1), AE_SUCCESS);
    EXPECT_TRUE(Eof(live));
    bool found = true;
    ASSERT_EQ(engine.Seek(live, "XA", ADS_STRINGKEY, ADS_HARDSEEK, found), AE_SUCCESS);
    EXPECT_FALSE(found) << "outside the scope";
    ASSERT_EQ(engine.SetRelKeyPos(live, 1.0), AE_SUCCESS);
    EXPECT_EQ(String(live, "NAME"), "E       ");
    double position = 0;
    ASSERT_EQ(engine.GetRelKeyPos(live, position), AE_SUCCESS);
    EXPECT_DOUBLE_EQ(position, 1.0);
    ASSERT_EQ(engine.SetRelKeyPos(live, 0.5), AE_SUCCESS);
    EXPECT_EQ(String(live, "NAME"), "D       ");
    ASSERT_EQ(engine.ClearScope(live, ADS_TOP), AE_SUCCESS);
    ASSERT_EQ(engine.ClearScope(live, ADS_BOTTOM), AE_SUCCESS);
    EXPECT_EQ(engine.GetScope(live, ADS_TOP, scope), AE_NO_SCOPE);
    ASSERT_EQ(engine.GetKeyCount(live, ADS_RESPECTSCOPES, count), AE_SUCCESS);
    EXPECT_EQ(count, 30u);

    // Bad requests change nothing and say why.
    Handle none = 0;
    EXPECT_EQ(engine.GetIndexHandle(table, "NOSUCH", none), AE_INVALID_INDEX_ORDER_NAME);
    EXPECT_EQ(engine.GetIndexHandleByOrder(table, 9, none), AE_INVALID_INDEX_ORDER);
    EXPECT_EQ(engine.CreateIndex(table, "", "BAD", "NOSUCHFIELD + 1", "", "", 0, none),
              AE_INVALID_EXPRESSION);
    std::vector<Handle> all;
    ASSERT_EQ(engine.GetAllIndexes(table, all), AE_SUCCESS);
    EXPECT_EQ(all.size(), 3u);
    std::uint16_t order = 0;
    ASSERT_EQ(engine.GetIndexOrderByHandle(all[1], order), AE_SUCCESS);
    EXPECT_EQ(order, 2);
}

TEST_F(UpkeepOrderTest, OptimizedFiltersGiveWhatPerRecordEvaluationGives) {
    std::mt19937 random(5);
    for (int i = 0; i < 400; ++i) {
        ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
        ASSERT_EQ(engine.SetString(table, "NAME", std::string(1, "ABCD"[random() % 4])),
                  AE_SUCCESS);
        ASSERT_EQ(engine.SetDouble(table, "QTY", static_cast<double>(random() % 20)), AE_SUCCESS);
        ASSERT_EQ(engine.SetLogical(table, "ACTIVE", random() % 2 == 0), AE_SUCCESS);
        if (random() % 7 == 0) {
            ASSERT_EQ(engine.DeleteRecord(table), AE_SUCCESS);
        }
    }
    Handle byQty = 0;
    ASSERT_EQ(engine.CreateIndex(table, "", "QTY", "QTY", "", "", ADS_COMPOUND, byQty), AE_SUCCESS);
    ASSERT_EQ(engine.CreateIndex(table, "", "NAME", "NAME", "", "", ADS_COMPOUND, byQty),
              AE_SUCCESS);
    const std::pair<const char*, std::uint16_t> conditions[] = {
        {"QTY = 7", ADS_OPTIMIZED_FULL},
        {"QTY >= 5 .AND. QTY < 9", ADS_OPTIMIZED_FULL},
        {"QTY < 12 .AND. QTY > 3", ADS_OPTIMIZED_FULL},
        {"NAME >= 'B' .AND. NAME <= 'C'", ADS_OPTIMIZED_FULL},
        {"NAME > 'A' .AND. NAME < 'C' .AND. QTY >= 6", ADS_OPTIMIZED_FULL},
        {"'B' <= NAME .AND. NAME < 'D'", ADS_OPTIMIZED_PART},
        {"NAME = 'B' .OR. 3 > QTY", ADS_OPTIMIZED_FULL},
        {".NOT. (QTY <= 10)", ADS_OPTIMIZED_FULL},
        {"QTY <> 4 .AND. ACTIVE", ADS_OPTIMIZED_PART},
        {"NAME = 'C' .AND. .NOT. DELETED()", ADS_OPTIMIZED_PART},
        {"ACTIVE .OR. QTY = 1", ADS_OPTIMIZED_NONE},
        {"RECNO() % 3 = 0", ADS_OPTIMIZED_NONE},
    };
    for (const auto& [condition, level] : conditions) {
        SCOPED_TRACE(condition);
        ASSERT_EQ(engine.SetFilter(table, condition), AE_SUCCESS);
        const std::uint32_t expected = Count(table, ADS_RESPECTFILTERS);
        ASSERT_EQ(engine.ClearFilter(table), AE_SUCCESS);
        ASSERT_EQ(engine.SetAOF(table, condition, ADS_RESOLVE_DYNAMIC), AE_SUCCESS);
        std::uint16_t reported = 0;
        std::string rest;
        ASSERT_EQ(engine.GetAOFOptLevel(table, reported, rest), AE_SUCCESS);
        EXPECT_EQ(reported, level) << rest;
        EXPECT_EQ(Count(table, ADS_RESPECTFILTERS), expected);
        // Records changed after the filter was set are judged by their new values.
        ASSERT_EQ(engine.GotoRecord(table, 1), AE_SUCCESS);
        ASSERT_EQ(engine.SetDouble(table, "QTY", 7), AE_SUCCESS);
        ASSERT_EQ(engine.SetString(table, "NAME", "B"), AE_SUCCESS);
        ASSERT_EQ(engine.GotoTop(table), AE_SUCCESS);
        const std::uint32_t withAof = Count(table, ADS_RESPECTFILTERS);
        ASSERT_EQ(engine.ClearAOF(table), AE_SUCCESS);
        ASSERT_EQ(engine.SetFilter(table, condition), AE_SUCCESS);
        EXPECT_EQ(withAof, Count(table, ADS_RESPECTFILTERS));
        ASSERT_EQ(engine.ClearFilter(table), AE_SUCCESS);
    }
    EXPECT_EQ(engine.SetAOF(table, "QTY +", ADS_RESOLVE_DYNAMIC), AE_INVALID_EXPRESSION);
    std::string text;
    EXPECT_EQ(engine.GetAOF(table, text), AE_NO_FILTER);
}

}  // namespace
}  // namespace fnrk::engine
