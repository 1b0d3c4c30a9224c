#include <gtest/gtest.h>

#include "conformance/implementations.hpp"

namespace fnrk::conformance {
namespace {

using namespace engine;  // option and status numbers

// The global settings take what the engine knows and refuse the rest the same way everywhere:
// a server-type mask with an unknown bit is refused even beside a known one.
TEST_P(Conformance, GlobalSettingsRefuseWhatTheyDoNotKnow) {
    for (std::uint16_t types : {1, 2, 4, 3, 7}) {
        EXPECT_EQ(ops->SetServerType(types), AE_SUCCESS) << types;
    }
    for (std::uint16_t types : {0, 8, 9, 15, 0xFFFF}) {
        EXPECT_EQ(ops->SetServerType(types), AE_INVALID_OPTION) << types;
    }
    Status code = AE_SUCCESS;
    std::string text;
    ASSERT_EQ(ops->GetLastError(code, text), AE_SUCCESS);
    EXPECT_EQ(code, AE_INVALID_OPTION);

    EXPECT_EQ(ops->SetDateFormat("YYYY"), AE_INVALID_DATEFORMAT);
    EXPECT_EQ(ops->SetEpoch(99), AE_INVALID_CENTURY);
    bool shown = true;
    ASSERT_EQ(ops->ShowDeleted(false), AE_SUCCESS);
    ASSERT_EQ(ops->GetDeleted(shown), AE_SUCCESS);
    EXPECT_FALSE(shown);

    // A refused setting leaves the one in force: dates still read "DD/MM/YYYY".
    Handle table = CreateItems();
    AddItem(table, "A", "first", 1);
    ASSERT_EQ(ops->SetDate(table, "DAY", "31/12/2024"), AE_SUCCESS);
    std::string date;
    ASSERT_EQ(ops->GetDate(table, "DAY", date), AE_SUCCESS);
    EXPECT_EQ(date, "31/12/2024");
}

}  // namespace
}  // namespace fnrk::conformance
