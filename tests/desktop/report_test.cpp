#include "desktop/desktop_test.h"
#include "documents/print_reports.h"
#include "documents/report_table.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/report_painter.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace tarvello::testing {
namespace {

/// What another program says of a page made into PDF.
QString read_pdf(const Report& report, const QString& program, const QStringList& arguments = {}) {
    QTemporaryDir folder;
    QFile file(folder.filePath("report.pdf"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(qt::report_pdf(report)) > 0);
    file.close();
    QProcess reader;
    reader.start(program, arguments + QStringList{file.fileName()} +
                              (program == "pdftotext" ? QStringList{"-"} : QStringList{}));
    EXPECT_TRUE(reader.waitForFinished(longest_wait));
    return QString::fromUtf8(reader.readAllStandardOutput());
}

/// A word on paper, in points from the top left corner.
struct Word {
    std::string text;
    double left, top, right, bottom;
};

std::vector<Word> words_of(const Report& report) {
    const QString pages = read_pdf(report, "pdftotext", {"-bbox"});
    EXPECT_EQ(pages.count("<page "), 1);
    static const QRegularExpression word(
        R"re(<word xMin="([\d.]+)" yMin="([\d.]+)" xMax="([\d.]+)" yMax="([\d.]+)">([^<]*)</word>)re");
    std::vector<Word> words;
    for (const auto& found : word.globalMatch(pages)) {
        const auto number = [&](int i) { return found.captured(i).toDouble(); };
        words.push_back({qt::from_qt(found.captured(5)), number(1), number(2), number(3), number(4)});
    }
    return words;
}

/// The box of a text on paper, in points.
Word place_of(const PrintedText& text) {
    const auto points = [](int twips) { return (1000 + twips) / 20.0; };
    return {text.name, points(text.box.left), points(text.box.top), points(text.box.right()),
            points(text.box.bottom())};
}

class Reports : public ::testing::TestWithParam<Report (*)()> {
protected:
    Reports() {
        for (const PrintedText& it : printed_texts) report.label(it.name).text.clear();
    }
    Report report = GetParam()();
};

TEST_P(Reports, EveryTextStandsAtItsPlace) {
    std::map<std::string, const PrintedText*> wanted;
    for (const PrintedText& it : printed_texts) {
        const std::string word = "w" + std::to_string(wanted.size());
        report.label(it.name).text = word;
        wanted[word] = &it;
    }
    const auto words = words_of(report);
    EXPECT_EQ(words.size(), wanted.size());
    for (const Word& word : words) {
        ASSERT_TRUE(wanted.count(word.text)) << word.text;
        SCOPED_TRACE(wanted[word.text]->name);
        const Word box = place_of(*wanted[word.text]);
        const char alignment = wanted[word.text]->alignment;
        if (alignment == 'l') {
            EXPECT_NEAR(word.left, box.left, 0.5);
        } else if (alignment == 'r') {
            EXPECT_NEAR(word.right, box.right, 0.25);
        } else {
            EXPECT_NEAR(word.left + word.right, box.left + box.right, 1.0);
        }
        EXPECT_NEAR(word.top, box.top, 1.0);
    }
}

TEST_P(Reports, ALongTextIsSetSmallerThenBrokenAndOnlyThenCut) {
    std::string service;
    for (int i = 100; i < 140; ++i) service += " p" + std::to_string(i); // 200 signs
    struct Case {
        std::string label, text, printed;
        std::vector<std::string> cut;
    };
    const Case cases[] = {
        {"NomeDitta", "Associazione Professionale Ingegneri e Architetti", "", {}},
        {"IndirizzoCliente", "Via dei Martiri della Libertà e della Resistenza 127/bis int. 4", "", {}},
        {"Descrizione1", std::string(110, 'm'), "", {}},
        {"Descrizione2", service.substr(1), "", {}},
        {"Descrizione3", std::string(300, 'm'), "mmm", {"prestazione 3"}},
        {"Descrizione4", service.substr(1) + "\n\n", "", {}},
        {"Descrizione5", "uno\vdue\fdieci\u2028venti\u2029trenta\u0085mille", "uno due", {"prestazione 5"}},
        {"Pagamento",
         "Banca di Roma, filiale di Milano\nABI: 03002\nCAB: 03200\nC/C: 000123456\ncinque\nsei",
         "",
         {}},
    };
    for (const Case& it : cases) {
        SCOPED_TRACE(it.label);
        report.label(it.label).text = it.text;
        const Word box = place_of(*std::find_if(std::begin(printed_texts), std::end(printed_texts),
                                                [&](const auto& text) { return text.name == it.label; }));
        std::string printed;
        for (const Word& word : words_of(report)) {
            EXPECT_GE(word.top, box.top - 1);
            EXPECT_GE(word.left, box.left - 1);
            printed += (printed.empty() ? "" : " ") + word.text;
            EXPECT_LE(word.bottom, box.bottom + 1.5);
            EXPECT_LE(word.right, box.right + 1);
            EXPECT_GE(word.bottom - word.top, 6 * 0.9) << "nothing is smaller than 6 points";
        }
        EXPECT_EQ(qt::ReportPage(report).cut_texts(), it.cut);
        EXPECT_EQ(printed.ends_with("…"), !it.cut.empty()) << printed;
        if (it.cut.empty()) {
            EXPECT_EQ(qt::to_qt(printed).remove(' '), qt::to_qt(it.text).simplified().remove(' ')) << printed;
        } else {
            EXPECT_TRUE(printed.starts_with(it.printed)) << printed;
        }
        report.label(it.label).text.clear();
    }
}

TEST_P(Reports, WhatFitsKeepsItsSize) {
    const auto height_of = [&](const std::string& text) {
        report.label("Pagamento").text = text;
        const Word word = words_of(report).at(0);
        return word.bottom - word.top;
    };
    // Four lines have room, also where the text has only one that is long.
    const double usual = height_of("a");
    EXPECT_NEAR(height_of("a\nb\nc\nd"), usual, 0.01);
    std::string one_line;
    for (int i = 0; i < 30; ++i) one_line += "trenta ";
    EXPECT_NEAR(height_of(one_line), usual, 0.01);
    EXPECT_LT(height_of("a\nb\nc\nd\ne"), usual);
}

TEST_P(Reports, TheLogoIsFittedOrClippedAndTheHeadingsAreGrey) {
    QTemporaryDir folder;
    const auto drawn = [](const qt::ReportPage& page) { // one dot to 15 twips
        QImage image((qt::report_page() / 15).toSize(), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(1 / 15.0, 1 / 15.0);
        page.draw(painter);
        return image;
    };
    const auto colour_at = [&](const QImage& page, int left, int top) {
        return page.pixelColor((1000 + left) / 15, (1000 + top) / 15).name();
    };
    // A GIF cannot be written here: this is one, of one red dot.
    const QByteArray gif =
        QByteArray::fromBase64("R0lGODlhAQABAIAAAP8AAAAAACH5BAAAAAAALAAAAAABAAEAAAICRAEAOw==");
    QFile gif_file(folder.filePath("logo.gif"));
    ASSERT_TRUE(gif_file.open(QIODevice::WriteOnly) && gif_file.write(gif) > 0);
    gif_file.close();
    QImage jpeg(300, 20, QImage::Format_RGB32); // wider than the box, and lower
    jpeg.fill(Qt::red);
    ASSERT_TRUE(jpeg.save(folder.filePath("logo.jpg")));

    ReportImage& logo = report.image("ImageLogo");
    for (const char* name : {"logo.gif", "logo.jpg"}) {
        logo.path = qt::from_qt(folder.filePath(name));
        logo.size_mode = ReportSizeMode::stretch;
        const QImage page = drawn(qt::ReportPage(report));
        for (const int left : {7000, 9500}) EXPECT_NE(colour_at(page, left, 2000), "#ffffff") << name;
        EXPECT_EQ(colour_at(page, 9700, 1000), "#ffffff") << name;
    }
    logo.size_mode = ReportSizeMode::clip;
    const qt::ReportPage once(report);
    ASSERT_TRUE(QFile::remove(folder.filePath("logo.jpg"))); // it is not read anew at each drawing
    const QImage page = drawn(once);
    EXPECT_NE(colour_at(page, 9500, 200), "#ffffff");
    EXPECT_EQ(colour_at(page, 9700, 200), "#ffffff") << "cut off at the box";
    EXPECT_EQ(colour_at(page, 7500, 600), "#ffffff") << "at its own height";
    EXPECT_EQ(colour_at(drawn(qt::ReportPage(report)), 7500, 200), "#ffffff") << "gone, it leaves a blank";

    EXPECT_EQ(colour_at(page, 5000, section2_top + 600), "#e0e0e0") << "the row of headings";
    for (const int line : {2865, 4470, 5265})
        EXPECT_NE(colour_at(page, 5000, section2_top + line), "#ffffff");
    EXPECT_NE(colour_at(page, 7275, section2_top + 3000), "#ffffff");
}

TEST_P(Reports, HasTheFontsOfItsLayout) {
    for (const PrintedText& it : printed_texts) report.label(it.name).text = "x";
    const QString fonts = read_pdf(report, "pdffonts");
    EXPECT_TRUE(fonts.contains(QRegularExpression("Arial|LiberationSans"))) << qt::from_qt(fonts);
    const bool second = report.name == "DataReport2";
    EXPECT_TRUE(second || (fonts.contains("Bold") && fonts.contains("Italic"))) << qt::from_qt(fonts);
    EXPECT_EQ(fonts.contains("Tahoma"), second) << qt::from_qt(fonts);
}

INSTANTIATE_TEST_SUITE_P(Both, Reports, ::testing::Values(&DataReport1, &DataReport2),
                         [](const auto& info) { return info.param().name; });

} // namespace
} // namespace tarvello::testing
