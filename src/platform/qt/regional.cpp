#include "platform/qt/regional.h"

#include "platform/qt/qt_text.h"

#include <QLocale>
#include <QRegularExpression>

namespace tarvello::qt {

namespace {

QLocale locale_for(const char* category) {
    for (const char* variable : {"LC_ALL", category, "LANG"}) {
        const QString name = qEnvironmentVariable(variable);
        if (name.isEmpty()) continue;
        const QString plain = name.section('.', 0, 0).section('@', 0, 0);
        if (plain == QLatin1String("C") || plain == QLatin1String("POSIX")) break;
        const QLocale locale(plain);
        if (locale.language() != QLocale::C) return locale;
        break;
    }
    return QLocale(QLocale::Italian, QLocale::Italy);
}

bool is_italian(const QLocale& locale) {
    return locale.language() == QLocale::Italian && locale.territory() == QLocale::Italy;
}

/// The short form of the locale's dates with a year of four digits; Italian if it is not made of digits.
std::string short_date_of(const QLocale& locale) {
    QString format = locale.dateFormat(QLocale::ShortFormat);
    static const QRegularExpression year(QStringLiteral("y+"));
    format.replace(year, QStringLiteral("yyyy"));
    static const QRegularExpression digits(QStringLiteral("^[dMy /.-]+$"));
    static const QRegularExpression names(QStringLiteral("ddd|MMM"));
    const bool whole = format.contains('d') && format.contains('M') && format.contains('y');
    if (!whole || !digits.match(format).hasMatch() || format.contains(names))
        return RegionalSettings().short_date;
    return from_qt(format);
}

} // namespace

RegionalSettings user_regional_settings() {
    return regional_settings_of(locale_for("LC_MONETARY"), locale_for("LC_TIME"));
}

RegionalSettings regional_settings_of(const QLocale& money, const QLocale& time) {
    RegionalSettings settings;
    if (!is_italian(money)) {
        QString symbol = money.currencySymbol(QLocale::CurrencySymbol);
        if (symbol.isEmpty())
            symbol = money.currencySymbol(QLocale::CurrencyIsoCode); // as of francs in Italian
        settings.currency_symbol = from_qt(symbol);
        settings.decimal_separator = from_qt(money.decimalPoint());
        settings.thousands_separator = from_qt(money.groupSeparator());
        const QString sample = money.toCurrencyString(1.5);
        const auto place = sample.indexOf(symbol);
        settings.symbol_before = place <= 0;
        const auto beside = settings.symbol_before ? place + symbol.size() : place - 1;
        settings.blank_beside_symbol = beside >= 0 && beside < sample.size() && sample.at(beside).isSpace();
        const QString negative = money.toCurrencyString(-1.5);
        if (const auto amount = negative.indexOf(sample); amount >= 0) {
            settings.negative_before = from_qt(negative.left(amount));
            settings.negative_behind = from_qt(negative.mid(amount + sample.size()));
        }
    }
    if (!is_italian(time)) settings.short_date = short_date_of(time);
    return settings;
}

} // namespace tarvello::qt
