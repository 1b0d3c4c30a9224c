#include "utilities/cls_color.hpp"

namespace fnrk::utilities {

int clsColor::BrightnessColorGet(std::uint32_t color) const {
    const int red = static_cast<int>(color & 0xFF);
    const int green = static_cast<int>((color >> 8) & 0xFF);
    const int blue = static_cast<int>((color >> 16) & 0xFF);
    return (299 * red + 587 * green + 114 * blue) / 1000;
}

bool clsColor::IsColorDark(std::uint32_t color) const {
    return BrightnessColorGet(color) < 128;
}

}  // namespace fnrk::utilities
