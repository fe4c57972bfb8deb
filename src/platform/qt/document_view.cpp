#include "platform/pages.h"
#include "platform/qt/document_browser.h"
#include "platform/qt/installation.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/views.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QImageReader>
#include <QTextBlock>

#include <algorithm>

namespace tarvello::qt {

DocumentBrowser::DocumentBrowser(QWidget* parent) : QTextBrowser(parent) {
    setOpenLinks(false);
    document()->setDocumentMargin(14);
    QObject::connect(this, &QTextBrowser::anchorClicked, [this](const QUrl& link) { follow(link); });
}

void DocumentBrowser::open(const QString& path) {
    if (!QFileInfo::exists(path)) {
        return setPlainText(QStringLiteral("Il documento non è stato trovato:\n%1").arg(path));
    }
    setSource(QUrl::fromLocalFile(path), QTextDocument::MarkdownResource);
}

QVariant DocumentBrowser::loadResource(int type, const QUrl& name) {
    if (type != QTextDocument::ImageResource) return QTextBrowser::loadResource(type, name);
    QImage picture(source().resolved(name).toLocalFile());
    if (picture.isNull()) return {};
    // Drawn as sharp as the screen can, and never wider than the page at its usual width.
    constexpr int page_width = 700;
    const qreal ratio = devicePixelRatioF();
    const int widest = qRound(page_width * ratio);
    const int wanted = qRound(picture.width() * ratio);
    picture = picture.scaledToWidth(std::min(widest, wanted), Qt::SmoothTransformation);
    picture.setDevicePixelRatio(ratio);
    return picture;
}

void DocumentBrowser::follow(const QUrl& link) {
    const QUrl target = source().resolved(link);
    if (!target.isLocalFile()) {
        QDesktopServices::openUrl(target);
        return;
    }
    if (!link.path().isEmpty()) open(target.toLocalFile());
    if (link.hasFragment()) go_to_heading(link.fragment());
}

namespace {

/// The name by which links call a heading: small letters, a dash for each blank, without other signs.
QString anchor_of(const QString& heading) {
    QString anchor;
    for (const QChar character : heading.toLower()) {
        if (character.isSpace()) anchor += '-';
        if (character.isLetterOrNumber() || character == '-' || character == '_') anchor += character;
    }
    return anchor;
}

} // namespace

void DocumentBrowser::go_to_heading(const QString& anchor) {
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0 || anchor_of(block.text()) != anchor) continue;
        // First to the end, so that the heading comes to the top and not to the bottom.
        moveCursor(QTextCursor::End);
        setTextCursor(QTextCursor(block));
        return;
    }
}

namespace {

class DocumentView final : public WidgetView {
public:
    DocumentView(WindowBinder& binder, Document& control, DocumentBrowser& browser)
        : WidgetView(binder, control, browser, {Aspect::text}), control_(control), browser_(browser) {}

protected:
    void show(Aspect aspect) override {
        if (aspect != Aspect::text) return WidgetView::show(aspect);
        if (control_.document().empty()) return;
        const std::string shipped = shipped_directory(executable_folder());
        browser_.open(to_qt(shipped + "/docs/" + control_.document() + ".md"));
    }

private:
    Document& control_;
    DocumentBrowser& browser_;
};

} // namespace

namespace {

class HtmlTextView final : public WidgetView {
public:
    HtmlTextView(WindowBinder& binder, HtmlText& control, QTextBrowser& browser)
        : WidgetView(binder, control, browser), control_(control), browser_(browser) {
        browser_.setOpenLinks(false);
    }

    void show_all() override {
        WidgetView::show_all();
        show(Aspect::text);
    }

protected:
    void show(Aspect aspect) override {
        if (aspect != Aspect::text) return WidgetView::show(aspect);
        browser_.setHtml(to_qt(control_.html()));
    }

private:
    HtmlText& control_;
    QTextBrowser& browser_;
};

} // namespace

std::unique_ptr<WidgetView> make_document_view(WindowBinder& binder, Control& control, QObject& widget) {
    static constexpr MakeView makers[] = {
        make_if_fits<DocumentView, Document, DocumentBrowser>,
        make_if_fits<HtmlTextView, HtmlText, QTextBrowser>,
    };
    return first_that_fits(makers, binder, control, widget);
}

} // namespace tarvello::qt
