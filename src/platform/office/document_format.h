#pragma once

#include <string>
#include <string_view>

namespace tarvello::office {

/// The format of a document by its content, as the extension of a file name: "rtf", "doc", "docx", "odt",
/// "html" or "txt"; empty if it is no document. The name of the file says nothing: a document keeps its
/// format under any name.
/// @param content  the whole file or, of a large one, the first thousands of bytes
std::string document_format(std::string_view content);

} // namespace tarvello::office
