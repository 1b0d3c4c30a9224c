// Key storage switches between bytes held inline and a heap block at kInline bytes: every change
// of length across that line, and every copy and move, must keep the bytes exactly.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "engine/cdx/key_bytes.hpp"

namespace fnrk::engine::cdx {
namespace {

std::string Pattern(std::size_t length, char first) {
    std::string bytes(length, '\0');
    for (std::size_t i = 0; i < length; ++i) bytes[i] = static_cast<char>(first + i % 50);
    return bytes;
}

TEST(KeyBytes, LengthChangesAcrossTheInlineLimitKeepTheLeadingBytes) {
    const std::size_t limit = KeyBytes::kInline;
    const std::vector<std::size_t> lengths{0, 1, limit - 1, limit, limit + 1, 240, limit, 3, 240};
    KeyBytes key;
    std::string expected;
    for (const std::size_t length : lengths) {
        key.resize(length);
        const std::size_t kept = std::min(expected.size(), length);
        EXPECT_EQ(std::string_view(key).substr(0, kept), std::string_view(expected).substr(0, kept))
            << "resized to " << length;
        expected = Pattern(length, static_cast<char>('A' + length % 20));
        key.assign(expected);
        ASSERT_EQ(key.size(), length);
        EXPECT_EQ(std::string_view(key), expected);
    }
}

TEST(KeyBytes, CopiesAndMovesAreIndependentOnEitherSideOfTheLimit) {
    for (const std::size_t length : {std::size_t{18}, KeyBytes::kInline + 12}) {
        const std::string bytes = Pattern(length, 'a');
        KeyBytes original(bytes);
        KeyBytes copy(original);
        copy.data()[0] = '#';
        EXPECT_EQ(original, bytes) << length;
        EXPECT_FALSE(copy == original);

        KeyBytes moved(std::move(copy));
        EXPECT_EQ(moved.data()[0], '#');
        EXPECT_EQ(copy.size(), 0u);

        KeyBytes assigned(std::string_view("short"));
        assigned = original;
        EXPECT_EQ(assigned, original);
        assigned = std::move(moved);
        EXPECT_EQ(std::string_view(assigned).substr(1), std::string_view(bytes).substr(1));
        const KeyBytes& same = assigned;
        assigned = same;
        EXPECT_EQ(assigned.size(), length);
        EXPECT_EQ(assigned.data()[0], '#');

        // A vector of keys moves them as it grows; none may lose or share its bytes.
        std::vector<KeyBytes> keys;
        for (int i = 0; i < 40; ++i) keys.emplace_back(Pattern(length, static_cast<char>('a' + i)));
        for (int i = 0; i < 40; ++i)
            EXPECT_EQ(keys[i], Pattern(length, static_cast<char>('a' + i)));
    }
}

}  // namespace
}  // namespace fnrk::engine::cdx
