// Tags over random schemas (a fixed seed, so every run makes the same tables): character,
// numeric, date, logical and memo fields of random sizes, blank and deleted records, keys over
// UPPER, STR, DTOS, SUBSTR, IIF(DELETED()...) and concatenations, FOR conditions, unique and
// descending tags, some built before the records are written and kept up to date, some after.
// Every table must check clean, and reindex to the very orders it had.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "engine/dbf/table_check.hpp"
#include "engine/order/table_indexes.hpp"
#include "engine/table/engine_fixture.hpp"

namespace fnrk::engine {
namespace {

constexpr int kTables = 24;
constexpr std::uint32_t kSeed = 24;

struct FieldSpec {
    std::string name;
    char type = 'C';
    int length = 0;
    int decimals = 0;
};

struct TagSpec {
    std::string key;
    std::string condition;
    std::uint32_t options = ADS_COMPOUND;
};

class RandomSchemaOrder : public EngineTest {
  protected:
    std::mt19937 random{kSeed};

    int Between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }
    bool Chance(int percent) { return Between(1, 100) <= percent; }

    std::vector<FieldSpec> Schema() {
        std::vector<FieldSpec> fields;
        // One text and one number always, so that every key template has something to use.
        fields.push_back({"CX", 'C', Chance(15) ? Between(241, 254) : Between(1, 30), 0});
        const int width = Between(3, 20);
        fields.push_back({"NX", 'N', width, Between(0, std::min(10, width - 2))});
        const int more = Between(0, 4);
        for (int i = 1; i <= more; ++i) {
            const char type = "CNDLM"[Between(0, 4)];
            FieldSpec field{"F" + std::to_string(i), type, 0, 0};
            if (type == 'C') field.length = Between(1, 60);
            if (type == 'N') {
                field.length = Between(2, 18);
                field.decimals = Between(0, std::min(8, field.length - 2));
            }
            fields.push_back(field);
        }
        return fields;
    }

    static std::string FieldList(const std::vector<FieldSpec>& fields) {
        std::string list;
        for (const FieldSpec& field : fields) {
            if (!list.empty()) list += ';';
            list += field.name + ',' + field.type;
            if (field.type == 'C' || field.type == 'N')
                list += ',' + std::to_string(field.length) + ',' + std::to_string(field.decimals);
        }
        return list;
    }

    const FieldSpec* Pick(const std::vector<FieldSpec>& fields, char type) {
        std::vector<const FieldSpec*> found;
        for (const FieldSpec& field : fields)
            if (field.type == type) found.push_back(&field);
        return found.empty() ? nullptr
                             : found[static_cast<std::size_t>(
                                   Between(0, static_cast<int>(found.size()) - 1))];
    }

    std::string StrOf(const FieldSpec& number) {
        const int width = Between(6, 20);
        return "STR(" + number.name + "," + std::to_string(width) + "," +
               std::to_string(Between(0, std::min(10, width - 2))) + ")";
    }

    TagSpec Tag(const std::vector<FieldSpec>& fields) {
        const FieldSpec& text = *Pick(fields, 'C');
        const FieldSpec& number = *Pick(fields, 'N');
        const FieldSpec* date = Pick(fields, 'D');
        const FieldSpec* logical = Pick(fields, 'L');
        TagSpec tag;
        switch (Between(0, 8)) {
            case 0:
                tag.key = text.name;
                break;
            case 1:
                tag.key = "UPPER(" + text.name + ")";
                break;
            case 2:
                tag.key = number.name;
                break;
            case 3:
                tag.key = text.name + "+" + StrOf(number);
                break;
            case 4:
                tag.key = "SUBSTR(" + text.name + "," + std::to_string(Between(1, 3)) + "," +
                          std::to_string(Between(1, 12)) + ")";
                break;
            case 5:
                tag.key = "IIF(.NOT. DELETED()," + text.name + ",SPACE(" +
                          std::to_string(text.length) + "))";
                break;
            case 6:
                tag.key = date ? "DTOS(" + date->name + ")+" + text.name : StrOf(number);
                break;
            case 7:
                tag.key = date ? date->name : "UPPER(" + text.name + ")+" + StrOf(number);
                break;
            default:
                tag.key = logical ? "IIF(" + logical->name + ",'T','F')+" + text.name
                                  : StrOf(number) + "+" + text.name;
                break;
        }
        if (Chance(25)) {
            const std::string conditions[] = {
                ".NOT. DELETED()", number.name + " > 0",
                logical ? logical->name : "!EMPTY(" + text.name + ")"};
            tag.condition = conditions[Between(0, 2)];
        }
        if (Chance(15)) tag.options |= ADS_UNIQUE;
        if (Chance(20)) tag.options |= ADS_DESCENDING;
        return tag;
    }

    std::string Text(int length) {
        if (Chance(20)) return "";
        std::string text(static_cast<std::size_t>(Between(1, length)), ' ');
        for (char& c : text) c = Chance(10) ? ' ' : "abcXYZ019 -"[Between(0, 10)];
        return text;
    }

    void Fill(Handle table, const FieldSpec& field) {
        switch (field.type) {
            case 'C':
            case 'M':
                ASSERT_EQ(engine.SetString(table, field.name,
                                           Text(field.type == 'M' ? 300 : field.length)),
                          AE_SUCCESS);
                return;
            case 'N': {
                if (Chance(10)) return;  // stays blank
                const double limit = std::pow(10.0, field.length - field.decimals - 2) - 1;
                const double value =
                    std::round(std::uniform_real_distribution<double>(-limit, limit)(random) *
                               std::pow(10.0, field.decimals)) /
                    std::pow(10.0, field.decimals);
                ASSERT_EQ(engine.SetDouble(table, field.name, value), AE_SUCCESS) << value;
                return;
            }
            case 'D':
                if (Chance(15)) return;
                ASSERT_EQ(engine.SetJulian(table, field.name, Between(2'415'021, 2'488'069)),
                          AE_SUCCESS);
                return;
            default:
                ASSERT_EQ(engine.SetLogical(table, field.name, Chance(50)), AE_SUCCESS);
                return;
        }
    }

    std::vector<std::vector<std::uint32_t>> Orders(Handle table) {
        std::vector<Handle> indexes;
        EXPECT_EQ(engine.GetAllIndexes(table, indexes), AE_SUCCESS);
        std::vector<std::vector<std::uint32_t>> orders;
        for (const Handle index : indexes) {
            std::vector<std::uint32_t> order;
            EXPECT_EQ(engine.GotoTop(index), AE_SUCCESS);
            while (!Eof(table) && order.size() <= 1000) {
                order.push_back(Recno(table));
                EXPECT_EQ(engine.Skip(index, 1), AE_SUCCESS);
            }
            orders.push_back(order);
        }
        return orders;
    }

    std::vector<std::string> Check(const std::string& name) {
        const std::string path = (dir / (name + ".dbf")).string();
        std::vector<std::string> problems = dbf::CheckTable(path);
        cursor::EngineSettings settings;
        cursor::TableCursor cursor(settings);
        std::string message;
        EXPECT_EQ(cursor.Open(path, "T", {.exclusive = false, .readOnly = true}, message),
                  AE_SUCCESS)
            << message;
        order::TableIndexes indexes(cursor, settings.dates);
        EXPECT_EQ(indexes.OpenStructural(message), AE_SUCCESS) << message;
        for (std::string& problem : indexes.Check()) problems.push_back(std::move(problem));
        return problems;
    }
};

TEST_F(RandomSchemaOrder, EveryTableChecksCleanAndReindexesToTheSameOrders) {
    for (int number = 0; number < kTables; ++number) {
        const std::string name = "R" + std::to_string(number);
        const std::vector<FieldSpec> fields = Schema();
        std::vector<TagSpec> tags;
        for (int i = Between(1, 4); i > 0; --i) tags.push_back(Tag(fields));
        std::string what = name + " " + FieldList(fields);
        for (const TagSpec& tag : tags)
            what += " | " + tag.key + (tag.condition.empty() ? "" : " FOR " + tag.condition) +
                    ((tag.options & ADS_UNIQUE) ? " UNIQUE" : "") +
                    ((tag.options & ADS_DESCENDING) ? " DESC" : "");
        SCOPED_TRACE(what);

        Create(name, FieldList(fields));
        const bool tagsFirst = number % 2 == 0;
        const Handle table = Open(name, number % 3 == 0 ? ADS_EXCLUSIVE : ADS_SHARED);
        auto createTags = [&] {
            for (std::size_t i = 0; i < tags.size(); ++i) {
                Handle index = 0;
                ASSERT_EQ(engine.CreateIndex(table, "", "T" + std::to_string(i + 1), tags[i].key,
                                             tags[i].condition, "", tags[i].options, index),
                          AE_SUCCESS);
            }
        };
        if (tagsFirst) createTags();
        const int records = Between(40, 120);
        for (int record = 0; record < records; ++record) {
            ASSERT_EQ(engine.AppendRecord(table), AE_SUCCESS);
            for (const FieldSpec& field : fields)
                if (!Chance(10)) Fill(table, field);
            if (Chance(10)) {
                ASSERT_EQ(engine.DeleteRecord(table), AE_SUCCESS);
            }
            ASSERT_EQ(engine.UnlockRecord(table, 0), AE_SUCCESS);
        }
        // Some records change afterwards, their keys with them.
        for (int change = 0; change < records / 4; ++change) {
            ASSERT_EQ(engine.GotoRecord(table, static_cast<std::uint32_t>(Between(1, records))),
                      AE_SUCCESS);
            Fill(table,
                 fields[static_cast<std::size_t>(Between(0, static_cast<int>(fields.size()) - 1))]);
            ASSERT_EQ(engine.Skip(table, 0), AE_SUCCESS);
        }
        if (!tagsFirst) createTags();
        const auto orders = Orders(table);
        ASSERT_EQ(engine.CloseTable(table), AE_SUCCESS);

        const std::vector<std::string> problems = Check(name);
        EXPECT_TRUE(problems.empty()) << ::testing::PrintToString(problems);

        const Handle again = Open(name, ADS_EXCLUSIVE);
        ASSERT_EQ(engine.Reindex(again), AE_SUCCESS);
        EXPECT_EQ(Orders(again), orders);
        ASSERT_EQ(engine.CloseTable(again), AE_SUCCESS);
        EXPECT_TRUE(Check(name).empty());
    }
}

}  // namespace
}  // namespace fnrk::engine
