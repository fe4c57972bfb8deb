#pragma once

#include <QTextBrowser>

namespace tarvello::qt {

/// A page of Markdown to be read: pictures no wider than the page, links inside the page and to others, and
/// those of the web in the user's own browser.
class DocumentBrowser final : public QTextBrowser {
public:
    explicit DocumentBrowser(QWidget* parent = nullptr);

    /// Shows a file from its top; one that is missing is told of in its place.
    void open(const QString& path);

protected:
    QVariant loadResource(int type, const QUrl& name) override;

private:
    void follow(const QUrl& link);
    /// Goes to the heading that a link names as the web does: "#la-prima-fattura".
    void go_to_heading(const QString& anchor);
};

} // namespace tarvello::qt
