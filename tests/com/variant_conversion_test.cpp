// VARIANTs to the library's values and back: each type a caller sends, text in UTF-16 and UTF-8,
// arrays, left-out arguments, and the error numbers a script reads back.

#include <gtest/gtest.h>

#include <cmath>

#include "com/dispatch_errors.hpp"
#include "com/variant_conversion.hpp"
#include "com_test_support.hpp"
#include "facade/facade_error.hpp"

namespace fnrk::com::testing {
namespace {

using facade::Variant;
using facade::VariantType;

Variant RoundTrip(const Variant& value) {
    OwnedVariant out;
    ToComVariant(value, out.value);
    return FromComVariant(out.value);
}

TEST(VariantConversionTest, EveryScalarKeepsItsTypeBothWays) {
    const Variant values[] = {Variant(),
                              Variant(facade::VariantNull{}),
                              Variant(true),
                              Variant(false),
                              Variant(std::int16_t{-12}),
                              Variant(std::int32_t{2400001}),
                              Variant(-0.125),
                              Variant(facade::VariantCurrency{123456789}),
                              Variant(facade::VariantDate{45731.5}),
                              Variant("Soci\xc3\xa9t\xc3\xa9 \xe2\x82\xac 12"),
                              Variant(std::string())};
    for (const Variant& value : values) {
        const Variant back = RoundTrip(value);
        EXPECT_EQ(back.Type(), value.Type()) << value.TypeName();
        EXPECT_TRUE(back == value) << value.TypeName();
    }

    OwnedVariant boolean;
    ToComVariant(Variant(true), boolean.value);
    EXPECT_EQ(V_BOOL(&boolean.value), VARIANT_TRUE) << "true is -1 to COM";
    OwnedVariant text;
    ToComVariant(Variant("\xe2\x82\xac"), text.value);
    ASSERT_EQ(V_VT(&text.value), VT_BSTR);
    EXPECT_STREQ(V_BSTR(&text.value), L"\u20ac");
}

TEST(VariantConversionTest, OtherNumbersWidenAndLeftOutArgumentsAreEmpty) {
    OwnedVariant byte;
    V_VT(&byte.value) = VT_UI1;
    V_UI1(&byte.value) = 200;
    EXPECT_EQ(FromComVariant(byte.value).Type(), VariantType::Integer);
    EXPECT_EQ(FromComVariant(byte.value).ToLong(), 200);

    OwnedVariant wide;
    V_VT(&wide.value) = VT_I8;
    V_I8(&wide.value) = 5000000000LL;
    EXPECT_EQ(FromComVariant(wide.value).Type(), VariantType::Double);
    EXPECT_EQ(FromComVariant(wide.value).ToDouble(), 5e9);

    OwnedVariant single;
    V_VT(&single.value) = VT_R4;
    V_R4(&single.value) = 2.5f;
    EXPECT_EQ(FromComVariant(single.value).ToDouble(), 2.5);

    OwnedVariant leftOut;
    V_VT(&leftOut.value) = VT_ERROR;
    V_ERROR(&leftOut.value) = DISP_E_PARAMNOTFOUND;
    EXPECT_TRUE(FromComVariant(leftOut.value).IsEmpty());

    OwnedVariant otherError;
    V_VT(&otherError.value) = VT_ERROR;
    V_ERROR(&otherError.value) = E_FAIL;
    try {
        FromComVariant(otherError.value);
        ADD_FAILURE() << "an error value is no argument";
    } catch (const facade::FacadeError& error) {
        EXPECT_EQ(error.number(), facade::kErrTypeMismatch);
    }

    LONG number = 42;
    OwnedVariant reference = ReferenceTo(VT_I4, &number);
    EXPECT_EQ(FromComVariant(reference.value).ToLong(), 42) << "read through the reference";
}

TEST(VariantConversionTest, ArraysAndBytesCrossAsSafeArrays) {
    const Variant list(facade::VariantArray{Variant("a"), Variant(std::int32_t{2}),
                                            Variant(facade::VariantArray{Variant(true)})});
    OwnedVariant out;
    ToComVariant(list, out.value);
    EXPECT_EQ(V_VT(&out.value), VT_ARRAY | VT_VARIANT);
    EXPECT_TRUE(FromComVariant(out.value) == list);

    const Variant bytes(facade::VariantBytes{0, 1, 254, 255});
    OwnedVariant byteArray;
    ToComVariant(bytes, byteArray.value);
    EXPECT_EQ(V_VT(&byteArray.value), VT_ARRAY | VT_UI1);
    EXPECT_TRUE(FromComVariant(byteArray.value) == bytes);

    // An array of strings from a typed caller, 1-based.
    SAFEARRAYBOUND bound{2, 1};
    OwnedVariant texts;
    V_VT(&texts.value) = VT_ARRAY | VT_BSTR;
    V_ARRAY(&texts.value) = SafeArrayCreate(VT_BSTR, 1, &bound);
    for (LONG i = 1; i <= 2; ++i) {
        BSTR text = SysAllocString(i == 1 ? L"x" : L"y");
        SafeArrayPutElement(V_ARRAY(&texts.value), &i, text);
        SysFreeString(text);
    }
    EXPECT_TRUE(FromComVariant(texts.value) ==
                Variant(facade::VariantArray{Variant("x"), Variant("y")}));

    SAFEARRAYBOUND square[2] = {{2, 0}, {2, 0}};
    OwnedVariant table;
    V_VT(&table.value) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&table.value) = SafeArrayCreate(VT_VARIANT, 2, square);
    EXPECT_THROW(FromComVariant(table.value), facade::FacadeError);
}

TEST(VariantConversionTest, ErrorNumbersTravelSoThatScriptsReadThemBack) {
    EXPECT_EQ(ScodeOfNumber(13), static_cast<HRESULT>(0x800A000D));
    EXPECT_EQ(ScodeOfNumber(7008), static_cast<HRESULT>(0x800A1B60));
    EXPECT_EQ(ScodeOfNumber(-2147024891), E_ACCESSDENIED) << "an HRESULT stays one";
    for (const std::int32_t number : {5, 445, 7008, 65535, 70000, -2147024891}) {
        EXCEPINFO info{};
        info.scode = ScodeOfNumber(number);
        EXPECT_EQ(NumberOfExcepInfo(info), number);
    }
    EXCEPINFO byCode{};
    byCode.wCode = 1004;
    EXPECT_EQ(NumberOfExcepInfo(byCode), 1004);
}

}  // namespace
}  // namespace fnrk::com::testing
