#pragma once

#include "failure.h"
#include "store/failure_source.h"

#include <string>
#include <string_view>

/// What can go wrong with an Access file. Each cause has its own words.
namespace tarvello::store::access {

namespace access_failure {
inline constexpr int damaged = 3343;
inline constexpr int file = 3024;
inline constexpr int in_use = failure_number::in_use;
inline constexpr int not_supported = 3274;
inline constexpr int password = 3031;
inline constexpr int read_only = 3027;
inline constexpr int duplicate = 3022;
inline constexpr int value_missing = 3314;
inline constexpr int too_long = 3163;
inline constexpr int no_table = 3078;
inline constexpr int no_column = 3061;
inline constexpr int too_large = 3183;
} // namespace access_failure

inline Failure damaged(std::string_view what) {
    return Failure(access_failure::damaged, source,
                   "Il file Access è danneggiato: " + std::string(what) + ".");
}

inline Failure not_writable(std::string description) {
    return Failure(access_failure::not_supported, source, std::move(description));
}

} // namespace tarvello::store::access
