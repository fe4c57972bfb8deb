#include "platform/qt/browser/browser.h"
#include "platform/qt/installation.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/views.h"

#include <QFileInfo>
#include <QLabel>
#include <QLibrary>
#include <QVBoxLayout>

namespace tarvello::qt {

namespace {

/// Loads the library, once. It is never unloaded: the engine in it cannot start twice.
/// @param why  becomes the reason if there is no browser
std::unique_ptr<Browser> make_browser(QWidget* parent, QString& why) {
    const QString file = to_qt(private_file(executable_folder(), "libtarvello-browser.so"));
    QLibrary library(file);
    const auto make = reinterpret_cast<MakeBrowser>(library.resolve(make_browser_symbol));
    if (!make) {
        why = QFileInfo::exists(file) ? library.errorString() : "Manca la libreria " + file + ".";
        return nullptr;
    }
    std::unique_ptr<Browser> browser(make(parent));
    if (!browser)
        why = QStringLiteral("Il sistema non permette di isolare le pagine dal resto del computer.");
    return browser;
}

/// The browser in its frame. It is made when it gets its first address; where it cannot be made, the frame
/// says why, and where the page is.
class WebBrowserView final : public WidgetView, public BrowserView {
public:
    WebBrowserView(WindowBinder& binder, WebBrowser& control, QWidget& frame)
        : WidgetView(binder, control, frame), control_(control) {
        control_.browser = this;
    }

    void show_all() override {
        WidgetView::show_all();
        if (!control_.address().empty()) navigate(control_.address());
    }
    void part() override { control_.browser = nullptr; }

    void navigate(const std::string& address) override {
        if (!browser_ && !excuse_) make();
        if (browser_) return browser_->navigate(address);
        excuse_->setText(QStringLiteral("<p>Il browser incorporato non è disponibile.</p><p>%1</p>"
                                        "<p>La pagina si può aprire con un altro browser:<br>"
                                        "<a href=\"%2\">%2</a></p>")
                             .arg(why_.toHtmlEscaped(), to_qt(address).toHtmlEscaped()));
    }
    void go_back() override {
        if (browser_) browser_->go_back();
    }
    void go_forward() override {
        if (browser_) browser_->go_forward();
    }
    void refresh() override {
        if (browser_) browser_->refresh();
    }

private:
    void make() {
        QWidget* shown = nullptr;
        browser_ = make_browser(widget(), why_);
        if (browser_) {
            shown = &browser_->widget();
        } else {
            excuse_ = new QLabel(widget());
            excuse_->setTextFormat(Qt::RichText);
            excuse_->setTextInteractionFlags(Qt::TextBrowserInteraction);
            excuse_->setOpenExternalLinks(true);
            excuse_->setWordWrap(true);
            excuse_->setAlignment(Qt::AlignCenter);
            excuse_->setMargin(24);
            shown = excuse_;
        }
        auto* layout = new QVBoxLayout(widget());
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(shown);
        shown->setAccessibleName(widget()->accessibleName());
        widget()->setFocusProxy(shown);
    }

    WebBrowser& control_;
    std::unique_ptr<Browser> browser_;
    QLabel* excuse_ = nullptr;
    QString why_;
};

} // namespace

std::unique_ptr<WidgetView> make_browser_view(WindowBinder& binder, Control& control, QObject& widget) {
    return make_if_fits<WebBrowserView, WebBrowser, QFrame>(binder, control, widget);
}

} // namespace tarvello::qt
