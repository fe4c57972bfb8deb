#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tarvello::e_invoice {

/// True if the bytes start as a zip archive does.
bool looks_like_zip(std::string_view bytes);

/// Gives every file of a zip archive, stored or deflated, to `on_file`; the content lasts as long as the
/// call. Read within bounds: 1,000 files, none unpacked that is larger than 5 MB or unpacks to more than ten
/// times its packed size (beyond a little): no receipt does.
/// @throws Failure if the archive is damaged, encrypted, or has a file that is none of this
void read_zip(std::string_view bytes,
              const std::function<void(const std::string& name, std::string_view content)>& on_file);

} // namespace tarvello::e_invoice
