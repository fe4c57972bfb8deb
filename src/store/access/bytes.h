#pragma once

#include "store/access/failures.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

/// Reading and writing the numbers of the file, which are little-endian unless a name says otherwise. The
/// checked readers fail on what lies outside: every offset that a file holds may be wrong.
namespace tarvello::store::access {

using Bytes = std::span<const std::uint8_t>;

inline void store16(std::uint8_t* at, std::uint32_t value) {
    at[0] = static_cast<std::uint8_t>(value);
    at[1] = static_cast<std::uint8_t>(value >> 8);
}

inline void store32(std::uint8_t* at, std::uint32_t value) {
    store16(at, value);
    store16(at + 2, value >> 16);
}

inline void store64(std::uint8_t* at, std::uint64_t value) {
    store32(at, static_cast<std::uint32_t>(value));
    store32(at + 4, static_cast<std::uint32_t>(value >> 32));
}

inline std::uint32_t load16(const std::uint8_t* at) { return at[0] | (std::uint32_t{at[1]} << 8); }
inline std::uint32_t load32(const std::uint8_t* at) { return load16(at) | (load16(at + 2) << 16); }
inline std::uint64_t load64(const std::uint8_t* at) {
    return load32(at) | (static_cast<std::uint64_t>(load32(at + 4)) << 32);
}
inline double load_double(const std::uint8_t* at) { return std::bit_cast<double>(load64(at)); }
inline float load_float(const std::uint8_t* at) { return std::bit_cast<float>(load32(at)); }

/// A part of the bytes. @throws Failure if it does not lie inside
inline Bytes part(Bytes bytes, std::size_t at, std::size_t size) {
    if (at > bytes.size() || size > bytes.size() - at) throw damaged("un valore esce dalla sua pagina");
    return bytes.subspan(at, size);
}
inline std::uint8_t checked8(Bytes bytes, std::size_t at) { return part(bytes, at, 1)[0]; }
inline std::uint32_t checked16(Bytes bytes, std::size_t at) { return load16(part(bytes, at, 2).data()); }
inline std::uint32_t checked32(Bytes bytes, std::size_t at) { return load32(part(bytes, at, 4).data()); }

} // namespace tarvello::store::access
