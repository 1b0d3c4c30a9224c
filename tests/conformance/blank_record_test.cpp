// A record appended and left unwritten reads as empty in every field: numbers stored as binary
// (integer, double) are zero, not the bytes of blanks read as a number.

#include <gtest/gtest.h>

#include "conformance/implementations.hpp"

namespace fnrk::conformance {
namespace {

using namespace engine;  // option and status numbers

TEST_P(Conformance, AFieldNeverWrittenReadsAsEmpty) {
    Handle t = CreateItems();
    ASSERT_EQ(ops->AppendRecord(t), AE_SUCCESS);
    ASSERT_EQ(ops->SetString(t, "CODE", "A1"), AE_SUCCESS);
    ASSERT_EQ(ops->AppendRecord(t), AE_SUCCESS);
    ASSERT_EQ(ops->FlushFileBuffers(t), AE_SUCCESS);
    for (std::uint32_t record : {1u, 2u}) {
        SCOPED_TRACE(record);
        ASSERT_EQ(ops->GotoRecord(t, record), AE_SUCCESS);
        std::int32_t quantity = -1;
        ASSERT_EQ(ops->GetLong(t, "QTY", quantity), AE_SUCCESS);
        EXPECT_EQ(quantity, 0);
        double rate = -1;
        ASSERT_EQ(ops->GetDouble(t, "RATE", rate), AE_SUCCESS);
        EXPECT_EQ(rate, 0);
        std::uint32_t memoLength = 1;
        ASSERT_EQ(ops->GetMemoLength(t, "NOTE", memoLength), AE_SUCCESS);
        EXPECT_EQ(memoLength, 0u);
    }
    // The binary fields hold zero bytes, as other programs write them.
    std::string bytes;
    ASSERT_EQ(ops->GotoRecord(t, 2), AE_SUCCESS);
    ASSERT_EQ(ops->GetRecord(t, bytes), AE_SUCCESS);
    std::uint32_t offset = 0;
    ASSERT_EQ(ops->GetFieldOffset(t, "QTY", offset), AE_SUCCESS);
    EXPECT_EQ(bytes.substr(offset, 4), std::string(4, '\0'));
}

}  // namespace
}  // namespace fnrk::conformance
