#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Names of the files of electronic invoices: IT, the sender's fiscal code, a progressive of five characters.
/// The exchange system takes a name once and never again, not even after a rejection.
namespace tarvello::e_invoice {

/// The last progressive there is: five characters, figures and capitals. Small letters are not used, since
/// names that differ in case alone collide on many disks.
inline constexpr std::int32_t last_progressive = 36 * 36 * 36 * 36 * 36 - 1;

/// As it stands in the name: 00001, 0000A. @throws Failure if it is outside 1 to last_progressive
std::string progressive_text(std::int32_t number);

/// ITDNGNCL75E14F205Y_00001.xml
std::string file_name(std::string_view sender_code, std::string_view progressive);

/// The progressive in the name of a file of this sender, an invoice's or a receipt's, with whatever ending.
/// @return nothing if the name is none of this sender's
std::optional<std::int32_t> progressive_in(std::string_view name, std::string_view sender_code);

/// The highest progressive among names; 0 if there is none of this sender's. A restored archive knows less
/// than the folder with the files.
std::int32_t last_progressive_in(const std::vector<std::string>& names, std::string_view sender_code);

} // namespace tarvello::e_invoice
