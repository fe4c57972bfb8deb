#pragma once

#include "platform/control.h"

#include <string>

/// The controls in which the user reads: pages of the web, documents of the program.
namespace tarvello {

/// What carries out the commands of a browser on the screen.
class BrowserView {
public:
    virtual void navigate(const std::string& address) = 0;
    virtual void go_back() = 0;
    virtual void go_forward() = 0;
    virtual void refresh() = 0;

protected:
    ~BrowserView() = default;
};

/// A browser of web pages. Without a view it remembers the address alone: a view that comes later starts
/// there.
class WebBrowser : public Control {
public:
    using Control::Control;

    /// The address that the program has asked for last; empty for none.
    const std::string& address() const { return address_; }
    void navigate(std::string address);
    void go_back();
    void go_forward();
    void refresh();
    /// Errors in the scripts of a page show no boxes.
    bool silent() const { return silent_; }
    void set_silent(bool silent) { silent_ = silent; }
    bool takes_focus() const override { return true; }

    BrowserView* browser = nullptr;

private:
    std::string address_;
    bool silent_ = false;
};

/// A document that was shipped with the program, which the user reads: headings, pictures, tables, links.
class Document : public Control {
public:
    using Control::Control;

    /// Its name, such as "guida"; empty for none.
    const std::string& document() const { return document_; }
    void set_document(std::string document);
    bool takes_focus() const override { return true; }

private:
    std::string document_;
};

/// A text of the program's own making, in simple HTML without colours, which the user reads and copies.
class HtmlText : public Control {
public:
    using Control::Control;

    const std::string& html() const { return html_; }
    void set_html(std::string html);
    bool takes_focus() const override { return true; }

private:
    std::string html_;
};

} // namespace tarvello
