#pragma once

#include <QString>

#include <string>
#include <string_view>

/// Between the texts of the program (UTF-8, counted in characters) and those of the toolkit (UTF-16, counted
/// in units, of which an emoji has two).
namespace tarvello::qt {

inline QString to_qt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string from_qt(const QString& text) { return text.toStdString(); }

/// The place in units of the character at `characters`; the end of the text if it has fewer.
inline int units_of(const QString& text, std::size_t characters) {
    int unit = 0;
    const int end = static_cast<int>(text.size());
    for (; characters > 0 && unit < end; --characters) {
        unit +=
            text.at(unit).isHighSurrogate() && unit + 1 < end && text.at(unit + 1).isLowSurrogate() ? 2 : 1;
    }
    return unit;
}

/// The number of characters before the place `units`.
inline std::size_t characters_of(const QString& text, int units) {
    std::size_t characters = 0;
    for (int unit = 0; unit < units && unit < text.size(); ++characters) {
        unit +=
            text.at(unit).isHighSurrogate() && unit + 1 < text.size() && text.at(unit + 1).isLowSurrogate()
                ? 2
                : 1;
    }
    return characters;
}

} // namespace tarvello::qt
