#include "store/access/header.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <vector>

namespace tarvello::store::access {
namespace {

using namespace format::header;

constexpr std::string_view name{"Standard Jet DB\0", 16};
constexpr std::string_view later_name{"Standard ACE DB\0", 16};

/// Masks part of the header with a fixed RC4 stream, or takes the mask off.
void turn_mask(std::span<std::uint8_t> header) {
    const auto& key = mask_key;
    std::array<std::uint8_t, 256> state{};
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    std::uint8_t swapped = 0;
    for (std::size_t i = 0; i < state.size(); ++i) {
        swapped = static_cast<std::uint8_t>(swapped + state[i] + key[i % key.size()]);
        std::swap(state[i], state[swapped]);
    }
    std::uint8_t left = 0;
    std::uint8_t right = 0;
    for (std::size_t i = 0; i < masked_size; ++i) {
        right = static_cast<std::uint8_t>(right + state[++left]);
        std::swap(state[left], state[right]);
        header[masked_at + i] ^= state[static_cast<std::uint8_t>(state[left] + state[right])];
    }
}

std::vector<std::uint8_t> unmasked(Bytes header) {
    std::vector<std::uint8_t> clear(header.begin(), header.end());
    turn_mask(clear);
    return clear;
}

/// What the password is masked with once more: the day of creation.
std::array<std::uint8_t, 4> day_mask(double created) {
    const double day = std::isfinite(created) && std::abs(created) < 1e9 ? std::trunc(created) : 0;
    std::array<std::uint8_t, 4> mask{};
    store32(mask.data(), static_cast<std::uint32_t>(static_cast<std::int32_t>(day)));
    return mask;
}

bool has_password(Bytes clear) {
    const auto mask = day_mask(load_double(clear.data() + created_at));
    for (std::size_t i = 0; i < password_size; ++i) {
        if ((clear[password_at + i] ^ mask[i % mask.size()]) != 0) return true;
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
    const std::uint8_t found = header[version_at];
    if (found > version || text.substr(name_at, later_name.size()) == later_name) {
        refuse(access_failure::not_supported, "è di Access 2007 o di una versione successiva (.accdb); va "
                                              "salvato da Access nel formato 2000-2003");
    }
    if (found < version) {
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

std::uint32_t sort_order(Bytes header) { return load32(unmasked(header).data() + sort_order_at); }

Page new_header(double created) {
    // The words in front of the code page and the build of the engine are those of every new file.
    constexpr std::uint32_t words[] = {0x100, 0x101, 2, 3, 4, 5};
    constexpr std::uint32_t code_page = 1252;
    constexpr std::uint32_t engine_build = 0x261C;
    constexpr std::uint32_t revision = 1620;
    constexpr std::string_view revision_text = "4.0";
    constexpr std::uint32_t no_write_under_way = 0x0100;
    Page page{};
    page[format::page::mark_at] = format::page::mark;
    std::copy(name.begin(), name.end(), page.begin() + name_at);
    page[version_at] = version;
    for (std::size_t i = 0; i < std::size(words); ++i) store32(page.data() + masked_at + 4 * i, words[i]);
    store16(page.data() + code_page_at, code_page);
    const auto no_password = day_mask(created);
    for (std::size_t i = 0; i < password_size; ++i)
        page[password_at + i] = no_password[i % no_password.size()];
    store16(page.data() + engine_build_at, engine_build);
    store32(page.data() + sort_order_at, format::general_order);
    store64(page.data() + created_at, std::bit_cast<std::uint64_t>(created));
    turn_mask(page);
    store32(page.data() + revision_at, revision);
    std::copy(revision_text.begin(), revision_text.end(), page.begin() + revision_text_at);
    for (std::size_t user = 0; user < users; ++user)
        store16(page.data() + user_counters_at + 2 * user,
                user == 0 ? no_write_under_way + 1 : no_write_under_way);
    return page;
}

} // namespace tarvello::store::access
