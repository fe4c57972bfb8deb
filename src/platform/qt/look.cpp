#include "platform/qt/look.h"

#include "platform/qt/qt_text.h"

#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QPalette>
#include <QStyleFactory>
#include <QTextDocument>

namespace tarvello::qt {

namespace {

bool is_dark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

struct Tones {
    QRgb window, base, other_rows, button, text, disabled_text, highlight, disabled_highlight, link, hint,
        tip;
};

constexpr Tones light = {0xF3F4F6, 0xFFFFFF, 0xF5F8FC, 0xE9ECF1, 0x1F2933, 0x6F7B87,
                         0x2C6DA4, 0xB8C4D0, 0x1B5E97, 0x7B8794, 0xFFFDF2};
constexpr Tones dark = {0x2B2F36, 0x1A1D21, 0x22262B, 0x2A2E35, 0xE6E9ED, 0x8A939D,
                        0x2F6FA8, 0x4A525C, 0x7DB9EC, 0x8A939D, 0x363B43};

QPalette palette_of(const Tones& tones) {
    QPalette palette{QColor(tones.window)};
    palette.setColor(QPalette::Window, tones.window);
    palette.setColor(QPalette::Base, tones.base);
    palette.setColor(QPalette::AlternateBase, tones.other_rows);
    palette.setColor(QPalette::Button, tones.button);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, tones.text);
        palette.setColor(QPalette::Disabled, role, tones.disabled_text);
    }
    palette.setColor(QPalette::Highlight, tones.highlight);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, tones.disabled_highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, tones.link);
    palette.setColor(QPalette::PlaceholderText, tones.hint);
    palette.setColor(QPalette::ToolTipBase, tones.tip);
    palette.setColor(QPalette::ToolTipText, tones.text);
    return palette;
}

/// The ground that a form gives to a control, on this desktop.
QColor ground_of(const Color& color, const QPalette& desktop) {
    if (color.button_face) return desktop.color(QPalette::Button);
    const QColor ground(color.red, color.green, color.blue);
    // A dark ground is meant for a light text, which it has on every desktop.
    if (!is_dark(desktop) || ground.lightness() < 128) return ground;
    if (color == colors::white) return desktop.color(QPalette::Base);
    return QColor::fromHsl(ground.hslHue(), ground.hslSaturation(), 255 - ground.lightness() + 20);
}

QColor ink_of(const Color& color, const QPalette& desktop) {
    const QColor ink(color.red, color.green, color.blue);
    if (!is_dark(desktop) || ink.lightness() >= 140) return ink;
    return QColor::fromHsl(ink.hslHue(), ink.hslSaturation() * 2 / 3, 255 - ink.lightness() / 2);
}

bool is_proportional(const QFont& font) {
    const QFontMetrics metrics(font);
    return metrics.horizontalAdvance('i') != metrics.horizontalAdvance('W');
}

/// A system with few fonts gives whatever it has, a typewriter's for one, to all who ask for a usual font. It
/// stays if the user chose it where there are others.
void apply_font() {
    QFont font = QApplication::font();
    if (is_proportional(font) || is_proportional(QFont(QStringLiteral("Sans Serif")))) return;
    font.setFamily(QStringLiteral("Liberation Sans"));
    QApplication::setFont(font);
}

} // namespace

void apply_look(QApplication& application) {
    const Tones& tones = is_dark(QApplication::palette()) ? dark : light;
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    application.setPalette(palette_of(tones));
    apply_font();
}

bool has_dark_desktop() { return is_dark(QApplication::palette()); }

void paint_with(QWidget& widget, std::optional<Color> back, std::optional<Color> fore) {
    const QPalette desktop = QApplication::palette(&widget);
    QPalette palette; // roles that are not set here stay those of the desktop
    if (back) {
        const QColor ground = ground_of(*back, desktop);
        for (const auto role : {QPalette::Base, QPalette::Window, QPalette::Button})
            palette.setColor(role, ground);
    }
    if (fore) {
        const QColor ink = ink_of(*fore, desktop);
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
            palette.setColor(QPalette::Active, role, ink);
            palette.setColor(QPalette::Inactive, role, ink);
        }
    }
    if (qobject_cast<QLabel*>(&widget)) widget.setAutoFillBackground(back.has_value());
    widget.setPalette(palette);
}

QString plain_tool_tip(const std::string& text) {
    const QString plain = to_qt(text);
    return Qt::mightBeRichText(plain) ? Qt::convertFromPlainText(plain) : plain;
}

} // namespace tarvello::qt
