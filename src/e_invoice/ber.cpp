#include "e_invoice/ber.h"

#include "e_invoice/failures.h"

namespace tarvello::e_invoice {
namespace {

constexpr int deepest_element = 30;
constexpr unsigned longest_length = 4;

Failure damaged_signature() {
    return unreadable("Il file firmato è danneggiato o incompleto: scaricarlo o farselo mandare di nuovo.");
}

} // namespace

std::uint8_t BerReader::byte(const Element& around) {
    if (at_ >= around.end) throw damaged_signature();
    return static_cast<std::uint8_t>(bytes_[at_++]);
}

BerReader::Element BerReader::enter(const Element& around) {
    Element element;
    element.tag = byte(around);
    constexpr std::uint8_t long_tag = 0x1F;
    if ((element.tag & long_tag) == long_tag) throw damaged_signature();

    std::size_t length = byte(around);
    constexpr std::uint8_t in_bytes = 0x80; // the length follows in so many bytes
    if (length == in_bytes) {
        element.indefinite = true;
        element.end = around.end;
    } else {
        if (length & in_bytes) {
            unsigned count = length & ~in_bytes;
            if (count > longest_length) throw damaged_signature();
            for (length = 0; count > 0; --count) length = length << 8 | byte(around);
        }
        if (length > around.end - at_) throw damaged_signature();
        element.end = at_ + length;
    }
    if (element.indefinite && !(element.tag & ber_tag::constructed)) throw damaged_signature();
    if (++depth_ > deepest_element) throw damaged_signature();
    return element;
}

BerReader::Element BerReader::enter(const Element& around, std::uint8_t tag) {
    const Element element = enter(around);
    if (element.tag != tag) throw damaged_signature();
    return element;
}

bool BerReader::more(const Element& element) const {
    if (!element.indefinite) return at_ < element.end;
    if (element.end - at_ < 2) throw damaged_signature();
    return bytes_[at_] != 0 || bytes_[at_ + 1] != 0;
}

void BerReader::leave(const Element& element) {
    if (element.indefinite) {
        while (more(element)) leave(enter(element));
        at_ += 2; // the mark
    } else {
        at_ = element.end;
    }
    --depth_;
}

std::string_view BerReader::content(const Element& element) {
    if (element.tag & ber_tag::constructed) throw damaged_signature();
    const std::string_view bytes = bytes_.substr(at_, element.end - at_);
    leave(element);
    return bytes;
}

void BerReader::append_octets(const Element& element, std::string& octets) {
    if ((element.tag & ~ber_tag::constructed) != ber_tag::octet_string) throw damaged_signature();
    if (element.tag & ber_tag::constructed) {
        while (more(element)) append_octets(enter(element), octets);
        leave(element);
    } else {
        octets += content(element);
    }
}

} // namespace tarvello::e_invoice
