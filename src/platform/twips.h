#pragma once

/// The unit in which forms and reports measure.
namespace tarvello {

inline constexpr int twips_per_inch = 1440;
inline constexpr int twips_per_point = 20;
/// Of a screen of 96 dots to the inch, the usual one.
inline constexpr int twips_per_dot = 15;

} // namespace tarvello
