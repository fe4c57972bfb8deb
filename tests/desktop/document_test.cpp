#include "places.h"
#include "platform/qt/document_browser.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextFragment>

namespace tarvello::testing {
namespace {

/// The pictures of a document as they are drawn.
std::vector<QImage> pictures(const QTextDocument& document) {
    std::vector<QImage> found;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextImageFormat format = it.fragment().charFormat().toImageFormat();
            if (!format.isValid()) continue;
            found.push_back(document.resource(QTextDocument::ImageResource, format.name()).value<QImage>());
        }
    }
    return found;
}

TEST(DocumentBrowser, ShowsPicturesNoWiderThanThePageAndFollowsItsLinks) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("guida.md");
    QImage wide(2000, 100, QImage::Format_RGB32);
    wide.fill(Qt::red);
    ASSERT_TRUE(wide.save(folder.filePath("larga.png")));
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("# Guida\n\n[vai](#perché-sì-l-anno-nuovo)\n\n![larga](larga.png)\n\n");
    for (int i = 0; i < 100; ++i) file.write("riga\n\n");
    file.write("## Perché (sì) l anno nuovo\n\nfine\n\n");
    for (int i = 0; i < 100; ++i) file.write("riga\n\n");
    file.close();

    qt::DocumentBrowser browser;
    browser.resize(760, 500);
    browser.show();
    browser.open(path);
    ASSERT_EQ(pictures(*browser.document()).size(), 1u);
    EXPECT_EQ(pictures(*browser.document())[0].width(), 700);
    Q_EMIT browser.anchorClicked(QUrl("#perché-sì-l-anno-nuovo"));
    EXPECT_EQ(browser.textCursor().block().text(), "Perché (sì) l anno nuovo");
    EXPECT_LT(browser.cursorRect().top(), 60) << "the heading is at the top";

    browser.open(folder.filePath("manca.md"));
    EXPECT_EQ(browser.toPlainText(), "Il documento non è stato trovato:\n" + folder.filePath("manca.md"));
}

TEST(DocumentBrowser, EveryLinkOfTheGuideLeadsToItsChapter) {
    qt::DocumentBrowser browser;
    browser.open(TARVELLO_BIN "/docs/guida.md");
    EXPECT_GT(pictures(*browser.document()).size(), 5u);
    for (const QImage& picture : pictures(*browser.document())) EXPECT_FALSE(picture.isNull());
    int links = 0;
    for (QTextBlock block = browser.document()->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment text = it.fragment();
            if (!text.charFormat().isAnchor()) continue;
            ++links;
            Q_EMIT browser.anchorClicked(QUrl(text.charFormat().anchorHref()));
            EXPECT_EQ(browser.textCursor().block().text(), text.text());
        }
    }
    EXPECT_GT(links, 10);
}

} // namespace
} // namespace tarvello::testing
