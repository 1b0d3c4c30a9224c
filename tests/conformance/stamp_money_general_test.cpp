#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "conformance/implementations.hpp"
#include "engine/expr/dates.hpp"

namespace fnrk::conformance {
namespace {

using namespace engine;  // option and status numbers

// Date-and-time (T), currency (Y) and general (G) fields: written, stored and read back by
// another workstation exactly, their empty values included.
class StampMoneyGeneral : public Conformance {
  protected:
    Handle CreateKinds() {
        Handle table = 0;
        EXPECT_EQ(
            ops->CreateTable(connection, "kinds.dbf", "", ADS_CDX, ADS_ANSI, ADS_COMPATIBLE_LOCKING,
                             ADS_IGNORERIGHTS, 0,
                             "CODE,C,4,0;STAMP,DateTime;PRICE,Currency;PICTURE,General", table),
            AE_SUCCESS);
        return table;
    }

    struct Values {
        std::int32_t julian = -1;
        std::int32_t milliseconds = -1;
        std::int64_t money = -1;
        std::string picture;
    };
    static Values Read(Operations& on, Handle table) {
        Values values;
        EXPECT_EQ(on.GetJulian(table, "STAMP", values.julian), AE_SUCCESS);
        EXPECT_EQ(on.GetMilliseconds(table, "STAMP", values.milliseconds), AE_SUCCESS);
        EXPECT_EQ(on.GetMoney(table, "PRICE", values.money), AE_SUCCESS);
        std::uint32_t length = 0;
        EXPECT_EQ(on.GetBinaryLength(table, "PICTURE", length), AE_SUCCESS);
        if (length > 0) {
            EXPECT_EQ(on.GetBinary(table, "PICTURE", 0, length, values.picture), AE_SUCCESS);
        }
        return values;
    }
    static std::string Text(Operations& on, Handle table, const char* field) {
        std::string value;
        EXPECT_EQ(on.GetString(table, field, value, ADS_NONE), AE_SUCCESS) << field;
        return value;
    }
};

const std::int32_t kDay = expr::JulianFromCivil(2026, 11, 24);
const std::int32_t kTime = ((13 * 60 + 45) * 60 + 7) * 1000 + 89;  // 13:45:07.089
// More digits than a double holds: 12,345,678,901,234.5678.
constexpr std::int64_t kBigMoney = 123'456'789'012'345'678;
const std::string kPicture("GIF\0\x01\xff\x80 tail", 12);

TEST_P(StampMoneyGeneral, ValuesAndEmptyValuesComeBackExactly) {
    Handle t = CreateKinds();
    std::uint16_t type = 0;
    ASSERT_EQ(ops->GetFieldType(t, "STAMP", type), AE_SUCCESS);
    EXPECT_EQ(type, ADS_TIMESTAMP);
    ASSERT_EQ(ops->GetFieldType(t, "PRICE", type), AE_SUCCESS);
    EXPECT_EQ(type, ADS_MONEY);
    ASSERT_EQ(ops->GetFieldType(t, "PICTURE", type), AE_SUCCESS);
    EXPECT_EQ(type, ADS_IMAGE);
    std::uint16_t decimals = 0;
    ASSERT_EQ(ops->GetFieldDecimals(t, "PRICE", decimals), AE_SUCCESS);
    EXPECT_EQ(decimals, 4);

    // 1: every value through the typed operations; 2: nothing written; 3: through text, at the
    // ends of their ranges.
    ASSERT_EQ(ops->AppendRecord(t), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "CODE", "full"), AE_SUCCESS);
    ASSERT_EQ(ops->SetJulian(t, "STAMP", kDay), AE_SUCCESS);
    ASSERT_EQ(ops->SetMilliseconds(t, "STAMP", kTime), AE_SUCCESS);
    ASSERT_EQ(ops->SetMoney(t, "PRICE", kBigMoney), AE_SUCCESS);
    ASSERT_EQ(ops->SetBinary(t, "PICTURE", ADS_IMAGE, static_cast<std::uint32_t>(kPicture.size()),
                             0, kPicture),
              AE_SUCCESS);
    ASSERT_EQ(ops->AppendRecord(t), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "CODE", "none"), AE_SUCCESS);
    ASSERT_EQ(ops->AppendRecord(t), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "CODE", "ends"), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "STAMP", "31/12/9999 23:59:59.999"), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "PRICE", "-922337203685477.5808"), AE_SUCCESS);

    // Refused values change nothing.
    EXPECT_EQ(ops->SetMilliseconds(t, "STAMP", 86'400'000), AE_INVALID_VALUE);
    EXPECT_EQ(ops->SetMilliseconds(t, "STAMP", -1), AE_INVALID_VALUE);
    EXPECT_EQ(ops->SetString(t, "STAMP", "30/02/2026 10:00"), AE_INVALID_DATE);
    EXPECT_EQ(ops->SetString(t, "STAMP", "24/11/2026 24:00"), AE_INVALID_DATE);
    EXPECT_EQ(ops->SetString(t, "PRICE", "922337203685477.5808"), AE_VALUE_OVERFLOW);
    EXPECT_EQ(ops->SetMilliseconds(t, "CODE", 0), AE_INVALID_FIELD_TYPE);
    std::int64_t units = 0;
    EXPECT_EQ(ops->GetMoney(t, "STAMP", units), AE_INVALID_FIELD_TYPE);
    EXPECT_EQ(ops->SetMoney(t, "CODE", 1), AE_INVALID_FIELD_TYPE);
    ASSERT_EQ(ops->CloseTable(t), AE_SUCCESS);

    // Another workstation reads what was stored.
    Handle otherConnection = 0;
    auto other = SecondConnection(otherConnection);
    Handle r = 0;
    ASSERT_EQ(other->OpenTable(otherConnection, "kinds.dbf", "", ADS_CDX, ADS_ANSI,
                               ADS_COMPATIBLE_LOCKING, ADS_IGNORERIGHTS, ADS_SHARED, r),
              AE_SUCCESS);
    ASSERT_EQ(other->GotoRecord(r, 1), AE_SUCCESS);
    Values full = Read(*other, r);
    EXPECT_EQ(full.julian, kDay);
    EXPECT_EQ(full.milliseconds, kTime);
    EXPECT_EQ(full.money, kBigMoney);
    EXPECT_EQ(full.picture, kPicture);
    EXPECT_EQ(Text(*other, r, "STAMP"), "24/11/2026 13:45:07.089");
    EXPECT_EQ(Text(*other, r, "PRICE"), "12345678901234.5678");

    ASSERT_EQ(other->GotoRecord(r, 2), AE_SUCCESS);
    Values none = Read(*other, r);
    EXPECT_EQ(none.julian, 0);
    EXPECT_EQ(none.milliseconds, 0);
    EXPECT_EQ(none.money, 0);
    EXPECT_EQ(none.picture, "");
    EXPECT_EQ(Text(*other, r, "STAMP"), "  /  /    ");
    EXPECT_EQ(Text(*other, r, "PRICE"), "0");

    ASSERT_EQ(other->GotoRecord(r, 3), AE_SUCCESS);
    Values ends = Read(*other, r);
    EXPECT_EQ(ends.julian, expr::JulianFromCivil(9999, 12, 31));
    EXPECT_EQ(ends.milliseconds, 86'399'999);
    EXPECT_EQ(ends.money, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(Text(*other, r, "PRICE"), "-922337203685477.5808");
}

TEST_P(StampMoneyGeneral, EmptyingAndOrderingFollowTheValues) {
    Handle t = CreateKinds();
    Handle byPrice = 0, byStamp = 0;
    ASSERT_EQ(ops->CreateIndex(t, "kinds.cdx", "PRICE", "PRICE", "", "", ADS_COMPOUND, byPrice),
              AE_SUCCESS);
    ASSERT_EQ(
        ops->CreateIndex(t, "kinds.cdx", "STAMP", "DTOS(STAMP)", "", "", ADS_COMPOUND, byStamp),
        AE_SUCCESS);
    // Prices and days in an order of their own: 2 < 3 < 1 by price, 3 < 1 < 2 by day.
    const struct {
        const char* price;
        const char* stamp;
    } rows[] = {{"0.0002", "02/01/2026 00:00"},
                {"-1234567.8901", "03/01/2026 08:00:00"},
                {"0.0001", "01/01/2026 23:59:59.5"}};
    for (const auto& row : rows) {
        ASSERT_EQ(ops->AppendRecord(t), AE_SUCCESS);
        ASSERT_EQ(ops->SetString(t, "PRICE", row.price), AE_SUCCESS);
        ASSERT_EQ(ops->SetString(t, "STAMP", row.stamp), AE_SUCCESS);
    }
    EXPECT_EQ(Walk(t, byPrice), (std::vector<std::uint32_t>{2, 3, 1}));
    EXPECT_EQ(Walk(t, byStamp), (std::vector<std::uint32_t>{3, 1, 2}));
    ASSERT_EQ(ops->GotoRecord(t, 3), AE_SUCCESS);
    EXPECT_EQ(Text(*ops, t, "STAMP"), "01/01/2026 23:59:59.500");
    EXPECT_EQ(Text(*ops, t, "PRICE"), "0.0001");
    // A fifth decimal rounds half away from zero; other spellings of a number are taken too.
    for (const auto& [written, read] :
         {std::pair{"1.23455", "1.2346"}, {"-.00005", "-0.0001"}, {"+7", "7"}, {"2.5e3", "2500"}}) {
        ASSERT_EQ(ops->SetString(t, "PRICE", written), AE_SUCCESS) << written;
        EXPECT_EQ(Text(*ops, t, "PRICE"), read) << written;
    }
    ASSERT_EQ(ops->SetString(t, "PRICE", "0.0001"), AE_SUCCESS);

    // A day of 0 empties the whole field, its time too; the empty text empties it as well.
    ASSERT_EQ(ops->SetJulian(t, "STAMP", 0), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "STAMP", ""), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "PRICE", ""), AE_SUCCESS);
    ASSERT_EQ(ops->GotoRecord(t, 3), AE_SUCCESS);
    Values emptied = Read(*ops, t);
    EXPECT_EQ(emptied.julian, 0);
    EXPECT_EQ(emptied.milliseconds, 0);
    ASSERT_EQ(ops->GotoRecord(t, 1), AE_SUCCESS);
    emptied = Read(*ops, t);
    EXPECT_EQ(emptied.julian, 0);
    EXPECT_EQ(emptied.milliseconds, 0);
    EXPECT_EQ(emptied.money, 0);
    EXPECT_EQ(Walk(t, byStamp), (std::vector<std::uint32_t>{1, 3, 2}));
    EXPECT_EQ(Walk(t, byPrice), (std::vector<std::uint32_t>{2, 1, 3}));
}

INSTANTIATE_TEST_SUITE_P(Implementations, StampMoneyGeneral, ::testing::ValuesIn(Implementations()),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace fnrk::conformance
