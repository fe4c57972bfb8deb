#pragma once

#include <cstdint>

namespace tarvello {

/// A colour as red, green and blue from 0 to 255 each.
struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    /// The colour that the desktop gives its buttons, whatever that is, instead of the three numbers.
    bool button_face = false;
    bool operator==(const Color&) const = default;

    /// From a number with blue, green and red from high to low: 0x800000 is dark blue.
    static constexpr Color from_bgr(std::uint32_t bgr) {
        return {static_cast<std::uint8_t>(bgr & 0xFF), static_cast<std::uint8_t>(bgr >> 8 & 0xFF),
                static_cast<std::uint8_t>(bgr >> 16 & 0xFF)};
    }
};

namespace colors {
inline constexpr Color white{255, 255, 255};
inline constexpr Color grey{0xE0, 0xE0, 0xE0};
inline constexpr Color button_face{0xF0, 0xF0, 0xF0, true};
} // namespace colors

} // namespace tarvello
