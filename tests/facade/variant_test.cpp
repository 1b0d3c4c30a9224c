// The late-bound conversions of Variant: what callers rely on, and the errors (not crashes)
// when a value cannot be had as the type asked for.

#include "facade/variant.hpp"

#include <gtest/gtest.h>

#include <functional>

#include "facade/facade_error.hpp"
#include "facade/variant_object.hpp"

namespace fnrk::facade {
namespace {

// The error number of a conversion, 0 when it succeeds.
std::int32_t ErrorOf(const std::function<void()>& convert) {
    try {
        convert();
    } catch (const FacadeError& error) {
        return error.number();
    }
    return 0;
}

TEST(VariantTest, NumbersAndBooleansGivenAsTextAreTaken) {
    EXPECT_EQ(Variant("42").ToLong(), 42);
    EXPECT_EQ(Variant(" -7 ").ToInteger(), -7);
    EXPECT_DOUBLE_EQ(Variant("1234,56").ToDouble(), 1234.56);
    EXPECT_DOUBLE_EQ(Variant("1.5E3").ToDouble(), 1500.0);
    EXPECT_TRUE(Variant("True").ToBoolean());
    EXPECT_TRUE(Variant("true").ToBoolean());
    EXPECT_FALSE(Variant("False").ToBoolean());
    EXPECT_TRUE(Variant("-1").ToBoolean());
    EXPECT_FALSE(Variant("0").ToBoolean());
    EXPECT_TRUE(Variant(-1).ToBoolean());
    EXPECT_TRUE(Variant(2.5).ToBoolean());
    EXPECT_EQ(Variant(true).ToLong(), -1);
    EXPECT_EQ(Variant(true).ToString(), "True");
    EXPECT_EQ(Variant(false).ToString(), "False");
    EXPECT_EQ(Variant(std::int16_t{12}).ToString(), "12");
    EXPECT_EQ(Variant(0.1).ToString(), "0.1");
    EXPECT_EQ(Variant(1e20).ToString(), "1E+20");
    EXPECT_EQ(Variant(VariantCurrency{123450}).ToString(), "12.345");
    // An empty value reads as nothing of every type.
    EXPECT_EQ(Variant().ToString(), "");
    EXPECT_EQ(Variant().ToLong(), 0);
    EXPECT_FALSE(Variant().ToBoolean());
}

TEST(VariantTest, FractionsRoundHalfToEvenAndOutOfRangeIsAnOverflow) {
    EXPECT_EQ(Variant(2.5).ToLong(), 2);
    EXPECT_EQ(Variant(3.5).ToLong(), 4);
    EXPECT_EQ(Variant(-2.5).ToInteger(), -2);
    EXPECT_EQ(Variant("2.6").ToInteger(), 3);
    EXPECT_EQ(Variant(32767).ToInteger(), 32767);
    EXPECT_EQ(ErrorOf([] { Variant(32768).ToInteger(); }), kErrOverflow);
    EXPECT_EQ(ErrorOf([] { Variant(3e9).ToLong(); }), kErrOverflow);
    EXPECT_EQ(ErrorOf([] { Variant("99999999999").ToLong(); }), kErrOverflow);
    EXPECT_EQ(Variant(1.23456).ToCurrency().tenThousandths, 12346);
}

TEST(VariantTest, DatesTravelAsDayMonthYearText) {
    const VariantDate date = Variant("14/03/2025").ToDate();
    EXPECT_EQ(DateText(date), "14/03/2025");
    EXPECT_EQ(Variant(date).ToString(), "14/03/2025");
    EXPECT_EQ(Variant("2025-03-14").ToDate(), date);
    EXPECT_DOUBLE_EQ(Variant("31/12/1899").ToDate().serial, 1.0);
    EXPECT_DOUBLE_EQ(Variant("01/03/1900").ToDate().serial, 61.0);
    EXPECT_EQ(Variant(45730.0).ToDate(), date);
    EXPECT_EQ(ErrorOf([] { Variant("31/02/2025").ToDate(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant("  /  /    ").ToDate(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant("14/03/2025 extra").ToDate(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant(true).ToDate(); }), kErrTypeMismatch);
}

TEST(VariantTest, AFailedConversionIsAnErrorNeverACrash) {
    EXPECT_EQ(ErrorOf([] { Variant("abc").ToLong(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant("12abc").ToDouble(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant("").ToDouble(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant("nan").ToDouble(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant("yes").ToBoolean(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant(VariantNull{}).ToString(); }), kErrInvalidUseOfNull);
    EXPECT_EQ(ErrorOf([] { Variant(VariantNull{}).ToLong(); }), kErrInvalidUseOfNull);
    EXPECT_EQ(ErrorOf([] { Variant("Tahoma").ToObject(); }), kErrObjectRequired);
    EXPECT_EQ(ErrorOf([] { Variant().ToObject(); }), kErrObjectRequired);
    EXPECT_EQ(ErrorOf([] { Variant(MakeFont("Tahoma", 8)).ToString(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant(MakeFont("Tahoma", 8)).ToLong(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant(VariantBytes{1, 2}).ToString(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant(VariantArray{Variant(1)}).ToDouble(); }), kErrTypeMismatch);
    EXPECT_EQ(ErrorOf([] { Variant(7).ToArray(); }), kErrTypeMismatch);
}

TEST(VariantTest, ObjectsBytesAndArraysKeepTheirContent) {
    const auto font = MakeFont("Tahoma", 8.25);
    const Variant value(font);
    EXPECT_EQ(value.Type(), VariantType::Object);
    EXPECT_EQ(value.ToObject(), font);
    EXPECT_EQ(value.ToObject()->GetProperty("SIZE").ToDouble(), 8.25);
    EXPECT_EQ(ErrorOf([&] { value.ToObject()->GetProperty("Colour"); }), kErrNoSuchMember);

    EXPECT_EQ(Variant(VariantBytes{0, 255}).ToBytes(), (VariantBytes{0, 255}));
    EXPECT_EQ(Variant("AB").ToBytes(), (VariantBytes{'A', 'B'}));
    const Variant array(VariantArray{Variant(1), Variant("two"), Variant(VariantArray{})});
    ASSERT_EQ(array.ToArray().size(), 3u);
    EXPECT_EQ(array.ToArray()[1], Variant("two"));
    EXPECT_EQ(array, Variant(VariantArray{Variant(1), Variant("two"), Variant(VariantArray{})}));
    EXPECT_FALSE(Variant(1) == Variant(std::int16_t{1})) << "types differ";
    EXPECT_EQ(array.TypeName(), "Variant()");

    VariantCollection collection;
    collection.Add(Variant("a"), "Key");
    EXPECT_EQ(ErrorOf([&] { collection.Add(Variant("b"), "KEY"); }), 457);
    EXPECT_EQ(collection.Count(), 1u);
    EXPECT_EQ(ErrorOf([&] { collection.Item(2); }), 9);
}

}  // namespace
}  // namespace fnrk::facade
