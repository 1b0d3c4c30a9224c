// FnrkRoutines of the server DLL through IDispatch, as a late-bound caller drives it: names in
// any case, property put and get in the forms callers send, by-reference results in both forms,
// by-value arguments left alone, and a member's error with the library's number, source and
// description.

#include <gtest/gtest.h>

#include <string>

#include "com_test_support.hpp"
#include "engine/constants.hpp"
#include "engine/errors.hpp"
#include "intake/intake_kind.hpp"
#include "support/temp_dir.hpp"
#include "tables/shared_tables.hpp"

namespace fnrk::com::testing {
namespace {

constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kPut = DISPATCH_PROPERTYPUT;
constexpr WORD kMethod = DISPATCH_METHOD;

class RoutinesDispatchTest : public ::testing::Test {
  protected:
    void SetUp() override {
        routines = ServerDll::Loaded().NewRoutines();
        ASSERT_NE(routines, nullptr);
    }
    void TearDown() override {
        if (routines != nullptr) routines->Release();
    }

    DISPID IdOf(const wchar_t* name) {
        std::wstring text = name;
        LPOLESTR names[] = {text.data()};
        DISPID id = DISPID_UNKNOWN;
        static_cast<void>(routines->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id));
        return id;
    }

    // A script's empty registry: an array of no entries.
    static OwnedVariant EmptyRegistry() {
        OwnedVariant registry;
        V_VT(&registry.value) = VT_ARRAY | VT_VARIANT;
        V_ARRAY(&registry.value) = SafeArrayCreateVector(VT_VARIANT, 0, 0);
        return registry;
    }

    IDispatch* routines = nullptr;
};

std::wstring TextOf(const VARIANT& value) {
    return V_VT(&value) == VT_BSTR ? std::wstring(V_BSTR(&value), SysStringLen(V_BSTR(&value)))
                                   : L"(not text)";
}

TEST_F(RoutinesDispatchTest, NamesMatchWithoutRegardToCaseAndEachHasOneDispid) {
    const DISPID tempPath = IdOf(L"TempPath");
    EXPECT_GT(tempPath, 0) << "0 is the default member, which FnrkRoutines has not";
    EXPECT_EQ(IdOf(L"TEMPPATH"), tempPath);
    EXPECT_EQ(IdOf(L"temppath"), tempPath);
    EXPECT_NE(IdOf(L"OrgPath"), tempPath);
    EXPECT_EQ(IdOf(L"getparamvalue"), IdOf(L"GetParamValue"));

    std::wstring unknown = L"NoSuchMember";
    LPOLESTR names[] = {unknown.data()};
    DISPID id = 0;
    EXPECT_EQ(routines->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id),
              DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);

    // Argument names are not known: the members take their arguments by position.
    std::wstring member = L"GetParamValue", argument = L"key";
    LPOLESTR withArgument[] = {member.data(), argument.data()};
    DISPID ids[2] = {0, 0};
    EXPECT_EQ(routines->GetIDsOfNames(IID_NULL, withArgument, 2, LOCALE_USER_DEFAULT, ids),
              DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids[0], IdOf(L"GetParamValue"));
    EXPECT_EQ(ids[1], DISPID_UNKNOWN);

    DISPPARAMS none{nullptr, nullptr, 0, 0};
    EXPECT_EQ(routines->Invoke(DISPID_VALUE, IID_NULL, 0, kGet, &none, nullptr, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(routines->Invoke(100000, IID_NULL, 0, kMethod, &none, nullptr, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
}

TEST_F(RoutinesDispatchTest, PropertiesArePutAndReadInTheFormsCallersSend) {
    OwnedVariant folder = TextVariant(L"C:\\Temp\\Soci\u00e9t\u00e9 \u20ac");
    CallOutcome put;
    Call(routines, L"tempPath", kPut, {&folder.value}, put);
    ASSERT_HRESULT_SUCCEEDED(put.result);

    CallOutcome get;
    Call(routines, L"TEMPPATH", kGet, {}, get);
    ASSERT_HRESULT_SUCCEEDED(get.result);
    EXPECT_EQ(TextOf(get.value.value), L"C:\\Temp\\Soci\u00e9t\u00e9 \u20ac")
        << "UTF-16 in, UTF-8 inside, UTF-16 out";

    // A script reading `x = r.TempPath` sends METHOD|PROPERTYGET.
    CallOutcome scripted;
    Call(routines, L"TempPath", kMethod | kGet, {}, scripted);
    EXPECT_EQ(TextOf(scripted.value.value), TextOf(get.value.value));

    OwnedVariant yes = TextVariant(L"True");
    CallOutcome flag;
    Call(routines, L"TestMode", kPut, {&yes.value}, flag);
    ASSERT_HRESULT_SUCCEEDED(flag.result);
    CallOutcome mode;
    Call(routines, L"testmode", kGet, {}, mode);
    ASSERT_EQ(V_VT(&mode.value.value), VT_BOOL);
    EXPECT_EQ(V_BOOL(&mode.value.value), VARIANT_TRUE);

    // A method read like a property: the call of a member without arguments.
    CallOutcome alias;
    Call(routines, L"GetCurrentAlias", kGet, {}, alias);
    ASSERT_HRESULT_SUCCEEDED(alias.result);
    EXPECT_EQ(V_VT(&alias.value.value), VT_BSTR);
}

TEST_F(RoutinesDispatchTest, NamedArgumentsOtherThanThePutValueAreRefused) {
    OwnedVariant value = LongVariant(1);
    DISPID named = 0;
    DISPPARAMS params{&value.value, &named, 1, 1};
    OwnedVariant result;
    EXPECT_EQ(routines->Invoke(IdOf(L"init"), IID_NULL, 0, kMethod, &params, &result.value, nullptr,
                               nullptr),
              DISP_E_NONAMEDARGS);
}

TEST_F(RoutinesDispatchTest, ByReferenceArgumentsTakeTheResultAndByValueOnesDoNot) {
    OwnedVariant registry = EmptyRegistry();
    OwnedVariant text = TextVariant(L"first");
    OwnedVariant data = LongVariant(7);

    // VT_BYREF|VT_VARIANT: a script's variable.
    OwnedVariant list;
    OwnedVariant listReference = ReferenceTo(VT_VARIANT, &list.value);
    CallOutcome added;
    Call(routines, L"LSTValuesAddItem", kMethod,
         {&registry.value, &listReference.value, &text.value, &data.value}, added);
    ASSERT_HRESULT_SUCCEEDED(added.result);
    ASSERT_EQ(V_VT(&list.value), VT_ARRAY | VT_VARIANT) << "the list came back in the variable";
    LONG upper = -1;
    SafeArrayGetUBound(V_ARRAY(&list.value), 1, &upper);
    EXPECT_EQ(upper, 0);
    OwnedVariant item;
    LONG first = 0;
    ASSERT_HRESULT_SUCCEEDED(SafeArrayGetElement(V_ARRAY(&list.value), &first, &item.value));
    ASSERT_EQ(V_VT(&item.value), VT_ARRAY | VT_VARIANT) << "an item is a pair [text, data]";
    OwnedVariant itemText;
    ASSERT_HRESULT_SUCCEEDED(SafeArrayGetElement(V_ARRAY(&item.value), &first, &itemText.value));
    EXPECT_EQ(TextOf(itemText.value), L"first");

    // A compiled caller's typed variables: Long and Integer by reference.
    LONG longStatus = -1;
    OwnedVariant longReference = ReferenceTo(VT_I4, &longStatus);
    CallOutcome asLong;
    Call(routines, L"SODAConstProcessed", kMethod, {&registry.value, &longReference.value}, asLong);
    ASSERT_HRESULT_SUCCEEDED(asLong.result);
    EXPECT_EQ(longStatus, intake::kStatusProcessed);
    SHORT shortStatus = -1;
    OwnedVariant shortReference = ReferenceTo(VT_I2, &shortStatus);
    CallOutcome asInteger;
    Call(routines, L"CAROConstBadYear", kMethod, {&registry.value, &shortReference.value},
         asInteger);
    ASSERT_HRESULT_SUCCEEDED(asInteger.result);
    EXPECT_EQ(shortStatus, intake::kStatusBadYear);

    // The same list passed by value: the member's new list goes nowhere.
    OwnedVariant byValue;
    CallOutcome ignored;
    Call(routines, L"LSTValuesAddItem", kMethod,
         {&registry.value, &byValue.value, &text.value, &data.value}, ignored);
    ASSERT_HRESULT_SUCCEEDED(ignored.result);
    EXPECT_EQ(V_VT(&byValue.value), VT_EMPTY);
}

TEST_F(RoutinesDispatchTest, AMembersErrorCarriesTheLibrarysNumberSourceAndDescription) {
    OwnedVariant registry = EmptyRegistry();
    CallOutcome missing;
    Call(routines, L"CarsOpen", kMethod, {&registry.value}, missing);
    ASSERT_EQ(missing.result, DISP_E_EXCEPTION);
    EXPECT_EQ(missing.error.scode, MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 445))
        << "a script's Err.Number reads 445";
    EXPECT_EQ(missing.error.wCode, 0);
    EXPECT_STREQ(missing.error.bstrSource, L"Fennrickfct.FnrkRoutines");
    EXPECT_STREQ(missing.error.bstrDescription,
                 L"FnrkRoutines.CarsOpen is not available in this build");

    OwnedVariant notAFlag = TextVariant(L"not a flag");
    CallOutcome mismatch;
    Call(routines, L"TestMode", kPut, {&notAFlag.value}, mismatch);
    ASSERT_EQ(mismatch.result, DISP_E_EXCEPTION);
    EXPECT_EQ(mismatch.error.scode, MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 13));

    CallOutcome tooMany;
    OwnedVariant extra = LongVariant(1);
    Call(routines, L"InitializeDLL", kMethod, {&extra.value}, tooMany);
    ASSERT_EQ(tooMany.result, DISP_E_EXCEPTION);
    EXPECT_EQ(tooMany.error.scode, MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 450));
}

// A company "SOC1" whose parameter table holds the company's name, written through the library
// linked into this program; the DLL opens it on its own, as another program would.
void WriteCompany(const std::filesystem::path& dossier) {
    std::filesystem::create_directories(dossier);
    tables::AdsClass& tables = tables::SharedAdsClass();
    tables.SetInteractive(false);
    static_cast<void>(tables.Initialize());
    tables.SetDossierPrefix((dossier / "SOC1").string());
    tables::SqlDatabase& db = tables::SharedSqlDatabase();
    engine::Handle table = 0;
    ASSERT_EQ(db.CreateTable(tables.DossierConnection(), tables.StandardTablePath("PARAM"), "PARAM",
                             engine::ADS_CDX, engine::ADS_ANSI, engine::ADS_COMPATIBLE_LOCKING,
                             engine::ADS_IGNORERIGHTS, 0, "ID,C,25,0;VALUE,C,60,0;VALUEEXT,C,60,0",
                             table),
              engine::AE_SUCCESS);
    engine::Handle index = 0;
    ASSERT_EQ(db.CreateIndex(table, "", "ID", "ID", "", "", engine::ADS_COMPOUND, index),
              engine::AE_SUCCESS);
    ASSERT_EQ(db.CloseTable(table), engine::AE_SUCCESS);
    ASSERT_EQ(tables.FileOpenParam("SHARED"), engine::AE_SUCCESS);
    ASSERT_EQ(tables.RecordAdd(), engine::AE_SUCCESS);
    EXPECT_TRUE(tables.PutFieldValue("ID", std::string("SOCNAME")));
    EXPECT_TRUE(tables.PutFieldValue("VALUE", std::string("Soci\xc3\xa9t\xc3\xa9 Anonyme")));
    ASSERT_EQ(tables.FlushAndUnlock("PARAM"), engine::AE_SUCCESS);
    ASSERT_EQ(tables.FileCloseAll(), engine::AE_SUCCESS);
}

TEST_F(RoutinesDispatchTest, AByReferenceStringTakesACompanyParameter) {
    fnrk::testing::TempDir folder;
    const std::filesystem::path dossier = folder / "SOC1";
    ASSERT_NO_FATAL_FAILURE(WriteCompany(dossier));

    OwnedVariant path = TextVariant(dossier.wstring().c_str());
    OwnedVariant shortName = TextVariant(L"SOC1");
    CallOutcome pointed, named, opened;
    Call(routines, L"pathName", kPut, {&path.value}, pointed);
    Call(routines, L"socShortName", kPut, {&shortName.value}, named);
    Call(routines, L"FileOpenParam", kMethod, {}, opened);
    ASSERT_HRESULT_SUCCEEDED(opened.result);
    ASSERT_EQ(V_VT(&opened.value.value), VT_I4);
    ASSERT_EQ(V_I4(&opened.value.value), 0) << "the parameter table opened";

    // VT_BYREF|VT_BSTR: a compiled caller's String variable.
    OwnedVariant registry = EmptyRegistry();
    OwnedVariant key = TextVariant(L"SOCNAME");
    BSTR name = SysAllocString(L"before");
    OwnedVariant nameReference = ReferenceTo(VT_BSTR, &name);
    CallOutcome read;
    Call(routines, L"GetParamValue", kMethod, {&registry.value, &key.value, &nameReference.value},
         read);
    EXPECT_HRESULT_SUCCEEDED(read.result);
    EXPECT_STREQ(name, L"Soci\u00e9t\u00e9 Anonyme");
    SysFreeString(name);

    CallOutcome closed;
    Call(routines, L"FileCloseAll", kMethod, {}, closed);
    EXPECT_HRESULT_SUCCEEDED(closed.result);
}

}  // namespace
}  // namespace fnrk::com::testing
