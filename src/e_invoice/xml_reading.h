#pragma once

#include <pugixml.hpp>

#include <cstddef>
#include <string>
#include <string_view>

/// How every XML file that comes from outside is opened: invoices, receipts of the exchange system, what lies
/// in a signed file. Nothing in such a file can make the program read another one or grow without bound.
namespace tarvello::e_invoice {

/// The exchange system takes no file beyond 5 MB, and sends none.
inline constexpr std::size_t largest_xml = std::size_t{5} << 20;

/// Reads XML into `document`. In UTF-8, in UTF-16 with a mark, or in the encoding that its declaration
/// names, see to_utf8; the document holds UTF-8 in any case.
/// @throws Failure, in Italian, if the text is no XML, is larger than largest_xml, has a document type (which
///         could name other files), so many small elements that they would take more than five times its size
///         in memory, or lies more than 30 elements deep
void read_xml(pugi::xml_document& document, std::string_view bytes);

/// True if the bytes start as an XML text does: with a '<', behind a mark and blanks at most.
bool looks_like_xml(std::string_view bytes);

/// The name of an element without its prefix.
std::string_view local_name(const pugi::xml_node& node);

/// The namespace of an element, by the declarations of it and those above; empty for none.
std::string_view namespace_of(const pugi::xml_node& node);

/// The first child of that local name, whatever its prefix and place; an empty node if there is none.
pugi::xml_node child_named(const pugi::xml_node& parent, std::string_view name);

/// The text of the child of that local name, without blanks at its ends; empty if there is none.
std::string text_of_child(const pugi::xml_node& parent, std::string_view name);

} // namespace tarvello::e_invoice
