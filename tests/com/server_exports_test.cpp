// The DLL's exports: the class factory of FnrkRoutines only, no aggregation, and
// DllCanUnloadNow refusing while an object lives or a caller holds the server locked.

#include <gtest/gtest.h>

#include "com/com_identity.hpp"
#include "com_test_support.hpp"

namespace fnrk::com::testing {
namespace {

TEST(ServerExportsTest, TheFactoryMakesFnrkRoutinesAndNothingElse) {
    const ServerDll& dll = ServerDll::Loaded();
    void* none = reinterpret_cast<void*>(1);
    EXPECT_EQ(dll.GetClassObject(IID_IDispatch, IID_IClassFactory, &none),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(none, nullptr);

    IClassFactory* factory = nullptr;
    ASSERT_HRESULT_SUCCEEDED(dll.GetClassObject(kFnrkRoutinesClsid, IID_IClassFactory,
                                                reinterpret_cast<void**>(&factory)));
    IUnknown* aggregated = nullptr;
    IUnknown* outer = factory;  // any object stands for an outer one
    EXPECT_EQ(factory->CreateInstance(outer, IID_IUnknown, reinterpret_cast<void**>(&aggregated)),
              CLASS_E_NOAGGREGATION);
    void* unknownInterface = nullptr;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, &unknownInterface),
              E_NOINTERFACE);

    IDispatch* routines = nullptr;
    ASSERT_HRESULT_SUCCEEDED(
        factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&routines)));
    UINT typeInfos = 1;
    EXPECT_HRESULT_SUCCEEDED(routines->GetTypeInfoCount(&typeInfos));
    EXPECT_EQ(typeInfos, 0u) << "callers bind late, by name";
    routines->Release();
    factory->Release();
}

TEST(ServerExportsTest, TheDllStaysWhileObjectsLiveOrTheServerIsLocked) {
    const ServerDll& dll = ServerDll::Loaded();
    ASSERT_EQ(dll.CanUnloadNow(), S_OK);

    IDispatch* routines = dll.NewRoutines();
    ASSERT_NE(routines, nullptr);
    EXPECT_EQ(dll.CanUnloadNow(), S_FALSE);
    routines->Release();
    EXPECT_EQ(dll.CanUnloadNow(), S_OK);

    IClassFactory* factory = nullptr;
    ASSERT_HRESULT_SUCCEEDED(dll.GetClassObject(kFnrkRoutinesClsid, IID_IClassFactory,
                                                reinterpret_cast<void**>(&factory)));
    EXPECT_EQ(dll.CanUnloadNow(), S_FALSE) << "the factory is an object too";
    factory->LockServer(TRUE);
    factory->Release();
    EXPECT_EQ(dll.CanUnloadNow(), S_FALSE) << "locked";
    ASSERT_HRESULT_SUCCEEDED(dll.GetClassObject(kFnrkRoutinesClsid, IID_IClassFactory,
                                                reinterpret_cast<void**>(&factory)));
    factory->LockServer(FALSE);
    factory->Release();
    EXPECT_EQ(dll.CanUnloadNow(), S_OK);
}

}  // namespace
}  // namespace fnrk::com::testing
