#include "engine/expr/text_compare.hpp"

#include <algorithm>
#include <cstring>

namespace fnrk::engine::expr {
namespace {

// Compares the tail of the longer side with blanks.
int CompareTailWithBlanks(std::string_view tail) {
    for (char c : tail) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte != ' ') return byte < ' ' ? -1 : 1;
    }
    return 0;
}

int CompareCommon(std::string_view left, std::string_view right, std::size_t common) {
    if (common == 0) return 0;
    const int result = std::memcmp(left.data(), right.data(), common);
    return result < 0 ? -1 : (result > 0 ? 1 : 0);
}

}  // namespace

int CompareToRightLength(std::string_view left, std::string_view right) {
    const std::size_t common = std::min(left.size(), right.size());
    if (const int result = CompareCommon(left, right, common); result != 0) return result;
    return left.size() >= right.size() ? 0 : -1;
}

int ComparePadded(std::string_view left, std::string_view right) {
    const std::size_t common = std::min(left.size(), right.size());
    if (const int result = CompareCommon(left, right, common); result != 0) return result;
    if (left.size() > right.size()) return CompareTailWithBlanks(left.substr(common));
    return -CompareTailWithBlanks(right.substr(common));
}

}  // namespace fnrk::engine::expr
