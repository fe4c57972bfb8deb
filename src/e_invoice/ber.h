#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarvello::e_invoice {

/// Tags of ASN.1 as they stand in a file, one byte each.
namespace ber_tag {
inline constexpr std::uint8_t object_identifier = 0x06;
inline constexpr std::uint8_t octet_string = 0x04;
inline constexpr std::uint8_t constructed = 0x20; // the bit that says: made of elements
inline constexpr std::uint8_t sequence = 0x30;
inline constexpr std::uint8_t context_0 = 0xA0;
} // namespace ber_tag

/// Reads the nested elements of a file in BER (ITU-T X.690), of which DER is a part, one after the other.
/// Bounds: 30 levels, lengths of four bytes, tags of one byte; and no element reaches out of the one around
/// it.
class BerReader {
public:
    struct Element {
        std::uint8_t tag = 0;
        bool indefinite = false; ///< ends at a mark, not after a length
        std::size_t end = 0;     ///< where it ends; if indefinite, at the latest
    };

    explicit BerReader(std::string_view bytes) : bytes_(bytes) {}

    /// Everything there is.
    Element whole() const { return {ber_tag::sequence, false, bytes_.size()}; }

    /// Enters the next element inside of `around`. @throws Failure if there is none, or it is damaged
    Element enter(const Element& around);
    /// Enters the next element and fails if it has another tag.
    Element enter(const Element& around, std::uint8_t tag);
    /// True if the element, in which the reader is, has more to read.
    bool more(const Element& element) const;
    /// Passes what is left of the element.
    void leave(const Element& element);

    /// The content of an element that is not made of elements. It is left with that.
    std::string_view content(const Element& element);
    /// Appends what an octet string holds, also one in pieces, and leaves it.
    void append_octets(const Element& element, std::string& octets);

private:
    std::uint8_t byte(const Element& around);

    std::string_view bytes_;
    std::size_t at_ = 0;
    int depth_ = 0;
};

} // namespace tarvello::e_invoice
