// The key and FOR expressions stored in the fixture indexes: they compile against the tables'
// own field layouts with the right type and length, and the keys they give, sorted, put the
// records in the order the independent engine wrote.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "engine/expr/expression.hpp"
#include "support/temp_dir.hpp"

namespace fnrk::engine::expr {
namespace {

std::filesystem::path FixtureDir() {
    return fnrk::testing::SharedDir() / "fixtures" / "xbase";
}

std::uint32_t Little(const std::string& bytes, std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = size; i > 0; --i) {
        value = (value << 8) | static_cast<unsigned char>(bytes[at + i - 1]);
    }
    return value;
}

// A table file read straight from its bytes: field descriptors and records.
class DbfFile : public FieldResolver {
  public:
    explicit DbfFile(const std::filesystem::path& path)
        : bytes_(fnrk::testing::ReadFileBytes(path)) {
        const std::uint32_t count = Little(bytes_, 4, 4);
        const std::uint32_t headerLength = Little(bytes_, 8, 2);
        const std::uint32_t recordLength = Little(bytes_, 10, 2);
        std::uint32_t offset = 1;
        for (std::size_t at = 32; at < headerLength && bytes_[at] != '\x0D'; at += 32) {
            const std::string descriptor = bytes_.substr(at, 32);
            std::string name = descriptor.substr(0, 11);
            name.resize(name.find('\0') == std::string::npos ? 11 : name.find('\0'));
            const auto length = static_cast<unsigned char>(descriptor[16]);
            const auto decimals = static_cast<unsigned char>(descriptor[17]);
            fields_[name] = FieldBinding{0, descriptor[11], offset, length, decimals};
            offset += length;
        }
        for (std::uint32_t i = 0; i < count; ++i) {
            records_.push_back(bytes_.substr(headerLength + i * recordLength, recordLength));
        }
    }

    std::optional<FieldBinding> Resolve(std::string_view alias,
                                        std::string_view field) const override {
        if (!alias.empty()) return std::nullopt;
        std::string upper(field);
        for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        const auto found = fields_.find(upper);
        if (found == fields_.end()) return std::nullopt;
        return found->second;
    }

    const std::vector<std::string>& records() const { return records_; }

  private:
    std::string bytes_;
    std::map<std::string, FieldBinding> fields_;
    std::vector<std::string> records_;
};

struct Tag {
    std::string table;
    nlohmann::json json;
};

std::vector<Tag> AllTags() {
    std::vector<Tag> tags;
    for (const auto& entry : std::filesystem::directory_iterator(FixtureDir())) {
        const std::string file = entry.path().filename().string();
        const std::string suffix = ".tags.jsonl";
        if (file.size() <= suffix.size() || !file.ends_with(suffix)) continue;
        std::ifstream lines(entry.path());
        for (std::string line; std::getline(lines, line);) {
            if (!line.empty())
                tags.push_back(
                    {file.substr(0, file.size() - suffix.size()), nlohmann::json::parse(line)});
        }
    }
    return tags;
}

// One key of one record, comparable whatever the key's type.
struct Entry {
    std::string text;
    double number = 0;
    std::uint32_t recno = 0;
};

TEST(FixtureKeys, CompileWithTheTypeAndLengthOfTheirTables) {
    // Lengths worked out by hand from the field layouts.
    const std::map<std::string, std::pair<ValueType, std::uint32_t>> expected = {
        {"SOC1_ACTCOM/JNL", {ValueType::Character, 20}},
        {"SOC1_MSODA/SOURCE", {ValueType::Character, 11}},
        {"SOC1_MSODA/DEST", {ValueType::Character, 11}},
        {"SOC1_param/ID", {ValueType::Character, 25}},
        {"USERSEXT/NAME", {ValueType::Character, 75}},
        {"USERSEXT/UPPERKEY", {ValueType::Character, 75}},
        {"big/ACCDATE", {ValueType::Character, 18}},
        {"big/JNL", {ValueType::Character, 14}},
        {"big/AMOUNT", {ValueType::Numeric, 0}},
        {"big/DOCDATE", {ValueType::Date, 0}},
        {"big/COMMENT", {ValueType::Character, 40}},
        {"people/NAME", {ValueType::Character, 15}},
        {"people/CODE", {ValueType::Character, 30}},
        {"people/LIVE", {ValueType::Character, 16}},
        {"people/ACTIVE", {ValueType::Logical, 0}},
    };
    std::size_t checked = 0;
    std::size_t conditions = 0;
    for (const Tag& tag : AllTags()) {
        const DbfFile table(FixtureDir() / (tag.table + ".dbf"));
        const std::string name = tag.table + "/" + tag.json["tag"].get<std::string>();
        const Expression key = Expression::Compile(tag.json["key"].get<std::string>(), table);
        if (const auto found = expected.find(name); found != expected.end()) {
            EXPECT_EQ(key.type(), found->second.first) << name;
            EXPECT_EQ(key.length(), found->second.second) << name;
            ++checked;
        }
        const std::string condition = tag.json["for"].get<std::string>();
        if (!condition.empty()) {
            EXPECT_EQ(Expression::Compile(condition, table).type(), ValueType::Logical) << name;
            ++conditions;
        }
    }
    EXPECT_EQ(checked, expected.size());
    EXPECT_EQ(conditions, 2u);
}

TEST(FixtureKeys, EmptyMemoMatchesTheStoredContents) {
    const DbfFile table(FixtureDir() / "people.dbf");
    Expression empty = Expression::Compile("EMPTY(NOTE)", table);
    std::ifstream lines(FixtureDir() / "people.natural.jsonl");
    std::size_t withMemo = 0;
    std::size_t index = 0;
    for (std::string line; std::getline(lines, line); ++index) {
        const nlohmann::json row = nlohmann::json::parse(line);
        ASSERT_LT(index, table.records().size());
        const std::string_view records[] = {table.records()[index]};
        const bool stored = !row["NOTE"].get<std::string>().empty();
        EXPECT_EQ(empty.EvaluateLogical({records, 1, nullptr}), !stored) << "record " << index + 1;
        if (stored) ++withMemo;
    }
    EXPECT_GT(withMemo, 0u);
}

TEST(FixtureKeys, SortedKeysGiveTheStoredOrder) {
    std::size_t compared = 0;
    for (const Tag& tag : AllTags()) {
        const std::string name = tag.table + "/" + tag.json["tag"].get<std::string>();
        const DbfFile table(FixtureDir() / (tag.table + ".dbf"));
        Expression key = Expression::Compile(tag.json["key"].get<std::string>(), table);
        const std::string condition = tag.json["for"].get<std::string>();
        std::optional<Expression> filter;
        if (!condition.empty()) filter.emplace(Expression::Compile(condition, table));

        std::vector<Entry> entries;
        for (std::size_t i = 0; i < table.records().size(); ++i) {
            const std::string_view records[] = {table.records()[i]};
            const EvaluationContext context{records, static_cast<std::uint32_t>(i + 1), nullptr};
            if (filter && !filter->EvaluateLogical(context)) continue;
            Entry entry;
            entry.recno = context.recordNumber;
            const Value value = key.Evaluate(context);
            switch (value.type) {
                case ValueType::Character:
                    entry.text = std::string(key.EvaluateKey(context));
                    break;
                case ValueType::Numeric:
                    entry.number = value.number;
                    break;
                case ValueType::Date:
                    entry.number = value.julian;
                    break;
                case ValueType::Logical:
                    entry.number = value.logical ? 1 : 0;
                    break;
            }
            entries.push_back(std::move(entry));
        }
        std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
            return a.text != b.text ? a.text < b.text : a.number < b.number;
        });
        // A descending tag is the ascending one read backwards, ties included.
        if (tag.json["descending"].get<bool>()) std::reverse(entries.begin(), entries.end());
        if (tag.json["unique"].get<bool>()) {
            // One entry per key: the first record that has it.
            std::vector<Entry> first;
            for (Entry& entry : entries) {
                if (first.empty() || first.back().text != entry.text ||
                    first.back().number != entry.number) {
                    first.push_back(std::move(entry));
                }
            }
            entries = std::move(first);
        }
        std::vector<std::uint32_t> order;
        for (const Entry& entry : entries) order.push_back(entry.recno);
        EXPECT_EQ(order, tag.json["order"].get<std::vector<std::uint32_t>>()) << name;
        ++compared;
    }
    EXPECT_EQ(compared, 24u);
}

}  // namespace
}  // namespace fnrk::engine::expr
