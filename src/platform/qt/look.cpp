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

QPalette light_palette() {
    QPalette palette(QColor(0xF3F4F6));
    palette.setColor(QPalette::Window, QColor(0xF3F4F6));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xF5F8FC));
    palette.setColor(QPalette::Button, QColor(0xE9ECF1));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, QColor(0x1F2933));
        palette.setColor(QPalette::Disabled, role, QColor(0x6F7B87));
    }
    palette.setColor(QPalette::Highlight, QColor(0x2C6DA4));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0xB8C4D0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x1B5E97));
    palette.setColor(QPalette::PlaceholderText, QColor(0x7B8794));
    palette.setColor(QPalette::ToolTipBase, QColor(0xFFFDF2));
    palette.setColor(QPalette::ToolTipText, QColor(0x1F2933));
    return palette;
}

QPalette dark_palette() {
    QPalette palette(QColor(0x2B2F36));
    palette.setColor(QPalette::Window, QColor(0x2B2F36));
    palette.setColor(QPalette::Base, QColor(0x1A1D21));
    palette.setColor(QPalette::AlternateBase, QColor(0x22262B));
    palette.setColor(QPalette::Button, QColor(0x2A2E35));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, QColor(0xE6E9ED));
        palette.setColor(QPalette::Disabled, role, QColor(0x8A939D));
    }
    palette.setColor(QPalette::Highlight, QColor(0x2F6FA8));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4A525C));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x7DB9EC));
    palette.setColor(QPalette::PlaceholderText, QColor(0x8A939D));
    palette.setColor(QPalette::ToolTipBase, QColor(0x363B43));
    palette.setColor(QPalette::ToolTipText, QColor(0xE6E9ED));
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
    const bool dark = is_dark(QApplication::palette());
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    application.setPalette(dark ? dark_palette() : light_palette());
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
