#pragma once

#include <map>
#include <string>
#include <string_view>

namespace tarvello::e_invoice {

/// The headers of a mail or of a part of one, as far as they say what it holds: names in lower case, of a
/// name that comes twice the first. Values as they stand, in one line, cut off at 2 KB.
class MailHeaders {
public:
    /// Reads the lines at the start of `text` up to the empty one, and takes them off with it.
    explicit MailHeaders(std::string_view& text);

    bool empty() const { return values_.empty(); }
    bool has(const std::string& name) const { return values_.contains(name); }
    /// Empty if there is none.
    std::string_view value(const std::string& name) const;
    /// What stands before the first semicolon, in lower case: "multipart/mixed".
    std::string word(const std::string& name) const;
    /// A parameter such as the file name, with the pieces put together and the charset decoded (RFC 2231;
    /// also RFC 2047, which many mail programs use in its place). Empty if there is none.
    std::string parameter(const std::string& name, std::string_view parameter) const;

private:
    std::map<std::string, std::string> values_;
};

/// The text of a header in UTF-8: its encoded words (RFC 2047) decoded. One that cannot be read stays as it
/// is.
std::string decode_words(std::string_view value);

/// Quoted-printable (RFC 2045) decoded. What is no such code stays as it is.
std::string decode_quoted_printable(std::string_view text);

} // namespace tarvello::e_invoice
