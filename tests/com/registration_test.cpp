// The server's registry keys, written under a key of the current user that stands in for
// HKEY_CLASSES_ROOT, and removed again without touching their neighbours.

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

#include "com/com_identity.hpp"
#include "com/registration.hpp"

namespace fnrk::com {
namespace {

class RegistrationTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, kRoot.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                  nullptr, &classes, nullptr),
                  ERROR_SUCCESS);
    }
    void TearDown() override {
        RegCloseKey(classes);
        RegDeleteTreeW(HKEY_CURRENT_USER, kRoot.c_str());
    }

    // The text of value `name` (the default value for nullptr); "(missing)" when absent.
    std::wstring Read(const std::wstring& subkey, const wchar_t* name = nullptr) {
        wchar_t buffer[512];
        DWORD size = sizeof buffer;
        if (RegGetValueW(classes, subkey.c_str(), name, RRF_RT_REG_SZ, nullptr, buffer, &size) !=
            ERROR_SUCCESS) {
            return L"(missing)";
        }
        return buffer;
    }

    bool Exists(const std::wstring& subkey) {
        HKEY key = nullptr;
        if (RegOpenKeyExW(classes, subkey.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
            return false;
        RegCloseKey(key);
        return true;
    }

    const std::wstring kRoot =
        L"Software\\FennrickComTest" + std::to_wstring(GetCurrentProcessId());
    const std::wstring kClsid = std::wstring(L"CLSID\\") + kFnrkRoutinesClsidText;
    HKEY classes = nullptr;
};

TEST_F(RegistrationTest, WritesTheProgIdsAndTheClassAndRemovesExactlyThose) {
    const std::wstring dll = L"C:\\Program Files\\Fennrick\\Fennrickfct.dll";
    ASSERT_EQ(RegisterServer(classes, dll), S_OK);

    EXPECT_EQ(Read(L"Fennrickfct.FnrkRoutines\\CLSID"), kFnrkRoutinesClsidText);
    EXPECT_EQ(Read(L"Fennrickfct.FnrkRoutines\\CurVer"), L"Fennrickfct.FnrkRoutines.1");
    EXPECT_EQ(Read(L"Fennrickfct.FnrkRoutines.1\\CLSID"), kFnrkRoutinesClsidText);
    EXPECT_EQ(Read(kClsid + L"\\ProgID"), L"Fennrickfct.FnrkRoutines.1");
    EXPECT_EQ(Read(kClsid + L"\\VersionIndependentProgID"), L"Fennrickfct.FnrkRoutines");
    EXPECT_EQ(Read(kClsid + L"\\InprocServer32"), dll);
    EXPECT_EQ(Read(kClsid + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");

    // Registering again (a new path after an update) overwrites in place.
    ASSERT_EQ(RegisterServer(classes, L"D:\\Fennrickfct.dll"), S_OK);
    EXPECT_EQ(Read(kClsid + L"\\InprocServer32"), L"D:\\Fennrickfct.dll");

    // Another class's keys beside ours stay.
    HKEY other = nullptr;
    ASSERT_EQ(RegCreateKeyExW(classes, L"CLSID\\{00000000-0000-0000-0000-000000000001}", 0, nullptr,
                              0, KEY_ALL_ACCESS, nullptr, &other, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(other);

    ASSERT_EQ(UnregisterServer(classes), S_OK);
    EXPECT_FALSE(Exists(L"Fennrickfct.FnrkRoutines"));
    EXPECT_FALSE(Exists(L"Fennrickfct.FnrkRoutines.1"));
    EXPECT_FALSE(Exists(kClsid));
    EXPECT_TRUE(Exists(L"CLSID\\{00000000-0000-0000-0000-000000000001}"));

    EXPECT_EQ(UnregisterServer(classes), S_OK) << "keys already gone are no failure";
}

}  // namespace
}  // namespace fnrk::com
