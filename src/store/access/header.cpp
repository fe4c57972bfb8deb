#include "store/access/header.h"

#include "store/access/format.h"

#include <array>
#include <cmath>
#include <numeric>
#include <vector>

namespace tarvello::store::access {
namespace {

constexpr std::size_t name_at = 4;
constexpr std::size_t version_at = 0x14;
constexpr std::size_t masked_at = 0x18;
constexpr std::size_t masked_size = 128;
constexpr std::size_t page_key_at = 0x3E;
constexpr std::size_t password_at = 0x42;
constexpr std::size_t password_size = 40;
constexpr std::size_t created_at = 0x72;

constexpr std::string_view name{"Standard Jet DB\0", 16};
constexpr std::string_view later_name{"Standard ACE DB\0", 16};

/// The header in clear: part of it is masked with a fixed RC4 stream.
std::vector<std::uint8_t> unmasked(Bytes header) {
    constexpr std::array<std::uint8_t, 4> key{0xC7, 0xDA, 0x39, 0x6B};
    std::array<std::uint8_t, 256> state{};
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    std::uint8_t swapped = 0;
    for (std::size_t i = 0; i < state.size(); ++i) {
        swapped = static_cast<std::uint8_t>(swapped + state[i] + key[i % key.size()]);
        std::swap(state[i], state[swapped]);
    }
    std::vector<std::uint8_t> clear(header.begin(), header.end());
    std::uint8_t left = 0;
    std::uint8_t right = 0;
    for (std::size_t i = 0; i < masked_size; ++i) {
        right = static_cast<std::uint8_t>(right + state[++left]);
        std::swap(state[left], state[right]);
        clear[masked_at + i] ^= state[static_cast<std::uint8_t>(state[left] + state[right])];
    }
    return clear;
}

bool has_password(Bytes clear) {
    // The password is masked once more, with the low bytes of the day of creation.
    const double created = load_double(clear.data() + created_at);
    const double day = std::isfinite(created) && std::abs(created) < 1e9 ? std::trunc(created) : 0;
    std::uint8_t mask[4];
    store32(mask, static_cast<std::uint32_t>(static_cast<std::int32_t>(day)));
    for (std::size_t i = 0; i < password_size; ++i) {
        if ((clear[password_at + i] ^ mask[i % 4]) != 0) return true;
    }
    return false;
}

} // namespace

bool is_access_file(std::string_view first_bytes) {
    const std::string_view found = first_bytes.substr(std::min(name_at, first_bytes.size()), name.size());
    return found == name || found == later_name;
}

void check_header(Bytes header, const std::string& path) {
    const auto refuse = [&path](int number, const char* why) {
        throw Failure(number, source, "Impossibile aprire il file Access \"" + path + "\": " + why + ".");
    };
    const std::string_view text(reinterpret_cast<const char*>(header.data()), header.size());
    if (!is_access_file(text)) refuse(access_failure::damaged, "non è un file Access");
    if (header.size() <= version_at)
        refuse(access_failure::damaged, "è danneggiato, manca la sua prima pagina");
    const std::uint8_t version = header[version_at];
    if (version > 1 || text.substr(name_at, later_name.size()) == later_name) {
        refuse(access_failure::not_supported, "è di Access 2007 o di una versione successiva (.accdb); va "
                                              "salvato da Access nel formato 2000-2003");
    }
    if (version == 0) {
        refuse(access_failure::not_supported,
               "è di Access 97 o di una versione precedente; va convertito da Access nel formato 2000-2003");
    }
    if (header.size() < page_size)
        refuse(access_failure::damaged, "è danneggiato, manca la sua prima pagina");
    const std::vector<std::uint8_t> clear = unmasked(header);
    if (load32(clear.data() + page_key_at) != 0) {
        refuse(access_failure::not_supported, "è cifrato; la cifratura va tolta da Access");
    }
    if (has_password(clear)) {
        refuse(access_failure::password, "è protetto da una password; la password va tolta da Access");
    }
}

} // namespace tarvello::store::access
