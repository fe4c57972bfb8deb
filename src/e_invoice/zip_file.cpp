#include "e_invoice/zip_file.h"

#include "e_invoice/failures.h"
#include "e_invoice/xml_reading.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <zlib.h>

namespace tarvello::e_invoice {
namespace {

using namespace std::string_view_literals;

// The records of an archive (PKWARE, APPNOTE.TXT): where they start, and the places of their fields.
constexpr auto local_mark = "PK\x03\x04"sv;
constexpr auto directory_mark = "PK\x01\x02"sv;
constexpr auto end_mark = "PK\x05\x06"sv;
constexpr std::size_t local_size = 30;
constexpr std::size_t directory_size = 46;
constexpr std::size_t end_size = 22;

constexpr int most_files = 1000;
constexpr std::size_t small = std::size_t{64} << 10;
constexpr std::size_t most_unpacking = 10;

Failure damaged_archive() {
    return unreadable(
        "L'archivio zip è danneggiato o di un tipo che non si può leggere: aprirlo con un altro programma "
        "e trascinare qui i file che contiene.");
}

std::string_view part(std::string_view bytes, std::size_t at, std::size_t size) {
    if (at > bytes.size() || size > bytes.size() - at) throw damaged_archive();
    return bytes.substr(at, size);
}

std::size_t number(std::string_view record, std::size_t at, int bytes) {
    std::size_t value = 0;
    for (int i = bytes - 1; i >= 0; --i) {
        value = value << 8 | static_cast<unsigned char>(record[at + static_cast<std::size_t>(i)]);
    }
    return value;
}

/// @return nothing if it is larger than `size` says
std::optional<std::string> inflated(std::string_view packed, std::size_t size) {
    std::string content(size + 1, '\0');
    z_stream stream{};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) throw damaged_archive();
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data())); // only read
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = reinterpret_cast<Bytef*>(content.data());
    stream.avail_out = static_cast<uInt>(content.size());
    const int result = inflate(&stream, Z_FINISH);
    inflateEnd(&stream);
    if (result != Z_STREAM_END || stream.total_out != size) return std::nullopt;
    content.resize(size);
    return content;
}

} // namespace

bool looks_like_zip(std::string_view bytes) { return bytes.starts_with(local_mark); }

void read_zip(std::string_view bytes,
              const std::function<void(const std::string& name, std::string_view content)>& on_file) {
    const auto end = bytes.rfind(end_mark);
    if (end == std::string_view::npos) throw damaged_archive();
    const std::string_view end_record = part(bytes, end, end_size);
    const std::size_t files = number(end_record, 10, 2);
    if (files > most_files) throw damaged_archive();
    std::size_t at = number(end_record, 16, 4);
    for (std::size_t i = 0; i < files; ++i) {
        const std::string_view record = part(bytes, at, directory_size);
        const std::size_t name_size = number(record, 28, 2);
        const std::string name(part(bytes, at + directory_size, name_size));
        at += directory_size + name_size + number(record, 30, 2) + number(record, 32, 2);

        const std::size_t method = number(record, 10, 2);
        const std::size_t packed_size = number(record, 20, 4);
        const std::size_t size = number(record, 24, 4);
        const std::size_t place = number(record, 42, 4);
        const std::string_view local = part(bytes, place, local_size);
        constexpr std::size_t encrypted = 1;
        if (!record.starts_with(directory_mark) || !local.starts_with(local_mark) ||
            (number(record, 8, 2) & encrypted)) {
            throw damaged_archive();
        }
        if (name.ends_with('/') || size > std::min(largest_xml, most_unpacking * packed_size + small))
            continue;

        const std::string_view packed =
            part(bytes, place + local_size + number(local, 26, 2) + number(local, 28, 2), packed_size);
        constexpr std::size_t stored = 0;
        constexpr std::size_t deflated = 8;
        if (method == stored && size == packed_size) {
            on_file(name, packed);
        } else if (method == deflated) {
            const std::optional<std::string> content = inflated(packed, size);
            if (!content) throw damaged_archive();
            on_file(name, *content);
        } else {
            throw damaged_archive();
        }
    }
}

} // namespace tarvello::e_invoice
