// Objects across the boundary: the library's objects as IDispatch and back as themselves, a
// registry answering Count and Item, and a caller's objects and collections read by name.

#include <gtest/gtest.h>

#include <objbase.h>

#include <memory>

#include "com/foreign_object.hpp"
#include "com/object_crossing.hpp"
#include "com/variant_conversion.hpp"
#include "com_test_support.hpp"
#include "facade/facade_error.hpp"
#include "facade/table_registry.hpp"

namespace fnrk::com::testing {
namespace {

using facade::Variant;

// A caller's collection as a compiled caller has one: "Count" and a 1-based "Item", nothing else.
class CallerCollection : public IDispatch {
  public:
    explicit CallerCollection(std::vector<IDispatch*> items) : items_(std::move(items)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (iid != IID_IUnknown && iid != IID_IDispatch) {
            *out = nullptr;
            return E_NOINTERFACE;
        }
        *out = this;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override { return --references_; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* ids) override {
        if (_wcsicmp(names[0], L"Count") == 0) {
            ids[0] = 1;
        } else if (_wcsicmp(names[0], L"Item") == 0) {
            ids[0] = 2;
        } else {
            ids[0] = DISPID_UNKNOWN;
            return DISP_E_UNKNOWNNAME;
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO*, UINT*) override {
        if (id == 1) {
            V_VT(result) = VT_I4;
            V_I4(result) = static_cast<LONG>(items_.size());
            return S_OK;
        }
        const LONG index = V_I4(&params->rgvarg[0]);
        if (params->cArgs != 1 || index < 1 || index > static_cast<LONG>(items_.size())) {
            return DISP_E_BADINDEX;
        }
        V_VT(result) = VT_DISPATCH;
        V_DISPATCH(result) = items_[static_cast<std::size_t>(index - 1)];
        V_DISPATCH(result)->AddRef();
        return S_OK;
    }

    ULONG references_ = 1;

  private:
    std::vector<IDispatch*> items_;
};

std::shared_ptr<facade::PropertyBag> Entry(const char* alias, std::int32_t handle, double order) {
    auto entry = std::make_shared<facade::PropertyBag>(
        "TableEntry", std::vector<std::string>{"Alias", "ActiveIndexHandle", "Order"});
    entry->SetProperty("Alias", Variant(alias));
    entry->SetProperty("ActiveIndexHandle", Variant(handle));
    entry->SetProperty("Order", Variant(order));
    return entry;
}

TEST(ObjectCrossingTest, TheLibrarysObjectsGoOutByNameAndComeBackAsThemselves) {
    auto font = facade::MakeFont("Tahoma", 8.0);
    IDispatch* dispatch = DispatchFromObject(font);
    ASSERT_NE(dispatch, nullptr);
    EXPECT_EQ(ObjectFromDispatch(dispatch), font) << "the same object, not a copy";

    CallOutcome name;
    Call(dispatch, L"NAME", DISPATCH_PROPERTYGET, {}, name);
    ASSERT_HRESULT_SUCCEEDED(name.result);
    EXPECT_STREQ(V_BSTR(&name.value.value), L"Tahoma");
    OwnedVariant size = LongVariant(11);
    CallOutcome put;
    Call(dispatch, L"size", DISPATCH_PROPERTYPUT, {&size.value}, put);
    ASSERT_HRESULT_SUCCEEDED(put.result);
    EXPECT_EQ(font->GetProperty("Size").ToLong(), 11);

    CallOutcome unknown;
    Call(dispatch, L"Colour", DISPATCH_PROPERTYGET, {}, unknown);
    ASSERT_EQ(unknown.result, DISP_E_EXCEPTION);
    EXPECT_EQ(unknown.error.scode, MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 438));
    EXPECT_STREQ(unknown.error.bstrSource, L"Fennrickfct.Font");
    CallOutcome walk;
    Call(dispatch, L"_NewEnum", DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}, walk);
    EXPECT_EQ(walk.result, DISP_E_MEMBERNOTFOUND) << "a font is no collection";
    dispatch->Release();

    EXPECT_EQ(DispatchFromObject(nullptr), nullptr) << "Nothing stays Nothing";
    EXPECT_EQ(ObjectFromDispatch(nullptr), nullptr);
}

TEST(ObjectCrossingTest, ARegistryAnswersCountAndItemByIndexOrAlias) {
    auto registry = std::make_shared<facade::TableRegistry>();
    registry->Add(facade::AdsPropertyClass("ACT", 5, 1));
    registry->Add(facade::AdsPropertyClass("PARAM", 7, 2));
    IDispatch* dispatch = DispatchFromObject(registry);

    CallOutcome count;
    Call(dispatch, L"Count", DISPATCH_PROPERTYGET, {}, count);
    EXPECT_EQ(V_I4(&count.value.value), 2);

    OwnedVariant second = LongVariant(2);
    CallOutcome item;
    Call(dispatch, L"Item", DISPATCH_METHOD | DISPATCH_PROPERTYGET, {&second.value}, item);
    ASSERT_EQ(V_VT(&item.value.value), VT_DISPATCH);
    CallOutcome alias;
    Call(V_DISPATCH(&item.value.value), L"Alias", DISPATCH_PROPERTYGET, {}, alias);
    EXPECT_STREQ(V_BSTR(&alias.value.value), L"PARAM");

    // An entry's properties are the registry's own: a put changes the entry.
    OwnedVariant handle = LongVariant(9);
    CallOutcome put;
    Call(V_DISPATCH(&item.value.value), L"ActiveIndexHandle", DISPATCH_PROPERTYPUT, {&handle.value},
         put);
    EXPECT_EQ(registry->Entries()[1]->ActiveIndexHandle, 9);

    OwnedVariant byAlias = TextVariant(L"act");
    CallOutcome keyed;
    Call(dispatch, L"item", DISPATCH_METHOD, {&byAlias.value}, keyed);
    ASSERT_EQ(V_VT(&keyed.value.value), VT_DISPATCH);
    EXPECT_EQ(ObjectFromDispatch(V_DISPATCH(&keyed.value.value)), registry->Entries()[0]);

    // For Each walks the entries through _NewEnum.
    CallOutcome walk;
    Call(dispatch, L"_NewEnum", DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}, walk);
    ASSERT_EQ(V_VT(&walk.value.value), VT_UNKNOWN);
    IEnumVARIANT* entries = nullptr;
    ASSERT_HRESULT_SUCCEEDED(
        V_UNKNOWN(&walk.value.value)
            ->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(&entries)));
    OwnedVariant walked[3];
    ULONG fetched = 0;
    VARIANT slots[3];
    EXPECT_EQ(entries->Next(3, slots, &fetched), S_FALSE) << "two entries, not three";
    ASSERT_EQ(fetched, 2u);
    for (ULONG i = 0; i < fetched; ++i) walked[i].value = slots[i];
    EXPECT_EQ(ObjectFromDispatch(V_DISPATCH(&walked[1].value)), registry->Entries()[1]);
    EXPECT_EQ(entries->Next(1, slots, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
    ASSERT_HRESULT_SUCCEEDED(entries->Reset());
    EXPECT_EQ(entries->Skip(1), S_OK);
    OwnedVariant last;
    EXPECT_EQ(entries->Next(1, &last.value, nullptr), S_OK);
    EXPECT_EQ(ObjectFromDispatch(V_DISPATCH(&last.value)), registry->Entries()[1]);
    entries->Release();

    OwnedVariant past = LongVariant(3);
    CallOutcome outside;
    Call(dispatch, L"Item", DISPATCH_METHOD, {&past.value}, outside);
    ASSERT_EQ(outside.result, DISP_E_EXCEPTION);
    EXPECT_EQ(outside.error.scode, MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 9));
    dispatch->Release();
}

TEST(ObjectCrossingTest, ACallersCollectionOfEntriesIsReadAsARegistry) {
    IDispatch* first = DispatchFromObject(Entry("ACF", 3, 1));
    IDispatch* second = DispatchFromObject(Entry("CSF", 4, 2));
    CallerCollection collection({first, second});
    const auto read = ObjectFromDispatch(&collection);
    ASSERT_NE(dynamic_cast<facade::VariantCollection*>(read.get()), nullptr);
    const auto entries = facade::ReadCallerRegistry(Variant(read));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].Alias, "ACF");
    EXPECT_EQ(entries[1].ActiveIndexHandle, 4);
    EXPECT_EQ(collection.references_, 1u) << "the caller's collection is not kept";

    // A dictionary (Scripting.Dictionary) gives its items in its own order.
    CLSID dictionaryClass;
    ASSERT_HRESULT_SUCCEEDED(CLSIDFromProgID(L"Scripting.Dictionary", &dictionaryClass));
    IDispatch* dictionary = nullptr;
    ASSERT_HRESULT_SUCCEEDED(CoCreateInstance(dictionaryClass, nullptr, CLSCTX_INPROC_SERVER,
                                              IID_IDispatch,
                                              reinterpret_cast<void**>(&dictionary)));
    for (IDispatch* entry : {second, first}) {
        OwnedVariant key = LongVariant(entry == second ? 1 : 2);
        OwnedVariant value;
        V_VT(&value.value) = VT_DISPATCH;
        V_DISPATCH(&value.value) = entry;
        entry->AddRef();
        CallOutcome added;
        Call(dictionary, L"Add", DISPATCH_METHOD, {&key.value, &value.value}, added);
        ASSERT_HRESULT_SUCCEEDED(added.result);
    }
    const auto fromDictionary = facade::ReadCallerRegistry(Variant(ObjectFromDispatch(dictionary)));
    ASSERT_EQ(fromDictionary.size(), 2u);
    EXPECT_EQ(fromDictionary[0].Alias, "CSF");
    EXPECT_EQ(fromDictionary[1].Alias, "ACF");
    dictionary->Release();
    first->Release();
    second->Release();
}

TEST(ObjectCrossingTest, ACallersObjectIsReadAndWrittenByNameAndGoesBackAsItself) {
    IDispatch* routines = ServerDll::Loaded().NewRoutines();
    ASSERT_NE(routines, nullptr);
    const auto object = ObjectFromDispatch(routines);
    auto* caller = dynamic_cast<ForeignObject*>(object.get());
    ASSERT_NE(caller, nullptr);

    caller->SetProperty("TempPath", Variant("C:\\Temp"));
    EXPECT_EQ(caller->GetProperty("temppath").ToString(), "C:\\Temp");
    try {
        caller->GetProperty("NoSuchProperty");
        ADD_FAILURE() << "an unknown name is an error";
    } catch (const facade::FacadeError& error) {
        EXPECT_EQ(error.number(), facade::kErrNoSuchMember);
    }
    try {
        caller->Call("CarsOpen", DISPATCH_METHOD, {Variant(facade::VariantArray{})});
        ADD_FAILURE() << "the caller's error comes through";
    } catch (const facade::FacadeError& error) {
        EXPECT_EQ(error.number(), 445);
        EXPECT_STREQ(error.what(), "FnrkRoutines.CarsOpen is not available in this build");
    }

    IDispatch* back = DispatchFromObject(object);
    EXPECT_EQ(back, routines) << "the caller's own object, not a wrapper";
    back->Release();
    routines->Release();
}

}  // namespace
}  // namespace fnrk::com::testing
