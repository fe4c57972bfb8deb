#pragma once

#include "text/regional_settings.h"

class QLocale;

namespace tarvello::qt {

/// The regional settings of the user, from LC_MONETARY and LC_TIME with LC_ALL before and LANG behind them.
/// With no locale, or the locale of programmers, they are Italian.
RegionalSettings user_regional_settings();

/// The settings of a locale. Dates keep the order of the locale, in digits and with four of them for the
/// year.
RegionalSettings regional_settings_of(const QLocale& money, const QLocale& time);

} // namespace tarvello::qt
