#pragma once

// clsColor: colours as Windows stores them, one 32-bit value 0x00BBGGRR (red in the low byte).

#include <cstdint>

namespace fnrk::utilities {

class clsColor {
  public:
    // Perceived brightness 0 to 255: (299 R + 587 G + 114 B) / 1000, rounded down, the weighting
    // of television luma that screen designers use to choose black or white text over a colour.
    // The high byte of the value is ignored.
    int BrightnessColorGet(std::uint32_t color) const;

    // True when the brightness is below 128: white text reads better on it than black text.
    bool IsColorDark(std::uint32_t color) const;
};

}  // namespace fnrk::utilities
