#pragma once

#include "platform/pages.h"

class QWidget;

namespace tarvello::qt {

/// A browser of web pages as a widget. The program knows this much of the library that makes it, and links
/// nothing of it.
class Browser : public BrowserView {
public:
    virtual ~Browser() = default;
    /// What is put on the screen; it goes with the browser.
    virtual QWidget& widget() = 0;
};

/// The one function of the library: makes a browser inside `parent`, which must outlive it.
/// @return null if the pages cannot be shut off from the user's files here: then there is no safe browser
using MakeBrowser = Browser* (*)(QWidget* parent);
inline constexpr const char* make_browser_symbol = "tarvello_make_browser";

} // namespace tarvello::qt
