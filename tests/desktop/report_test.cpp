#include "documents/print_reports.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/report_painter.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <map>

namespace tarvello {
namespace {

/// A word on paper, in points from the top left corner.
struct Word {
    QString text;
    double left, top, right, bottom;
};

/// The words of a PDF file in their order, as another program reads them.
std::vector<Word> words_of(const QByteArray& pdf) {
    QTemporaryDir folder;
    QFile file(folder.filePath("report.pdf"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(pdf) == pdf.size());
    file.close();
    QProcess reader;
    reader.start("pdftotext", {"-bbox", file.fileName(), "-"});
    EXPECT_TRUE(reader.waitForFinished());
    const QString pages = QString::fromUtf8(reader.readAllStandardOutput());
    EXPECT_EQ(pages.count("<page "), 1);
    static const QRegularExpression word(
        R"re(<word xMin="([\d.]+)" yMin="([\d.]+)" xMax="([\d.]+)" yMax="([\d.]+)">([^<]*)</word>)re");
    std::vector<Word> words;
    for (const auto& found : word.globalMatch(pages)) {
        words.push_back({found.captured(5), found.captured(1).toDouble(), found.captured(2).toDouble(),
                         found.captured(3).toDouble(), found.captured(4).toDouble()});
    }
    return words;
}

struct Placed {
    std::string name;
    ReportLabel* label;
    double left, top, right, bottom; ///< points
};

/// All labels with their places on paper.
std::vector<Placed> labels_of(Report& report) {
    std::vector<Placed> labels;
    int top = report.margin;
    for (ReportSection& section : report.sections) {
        for (ReportControl& control : section.controls) {
            auto* label = std::get_if<ReportLabel>(&control.look);
            if (!label) continue;
            const ReportBox& box = control.box;
            labels.push_back({control.name, label, (report.margin + box.left) / 20.0, (top + box.top) / 20.0,
                              (report.margin + box.right()) / 20.0, (top + box.bottom()) / 20.0});
        }
        top += section.height;
    }
    return labels;
}

class Reports : public ::testing::TestWithParam<Report (*)()> {
protected:
    Report report = GetParam()();
};

TEST_P(Reports, EveryTextStandsAtItsPlace) {
    auto labels = labels_of(report);
    ASSERT_EQ(labels.size(), 54u);
    std::map<QString, const Placed*> wanted;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        labels[i].label->text = "w" + std::to_string(i);
        wanted[qt::to_qt(labels[i].label->text)] = &labels[i];
    }
    const auto words = words_of(qt::report_pdf(report));
    EXPECT_EQ(words.size(), labels.size());
    for (const Word& word : words) {
        ASSERT_TRUE(wanted.count(word.text)) << qt::from_qt(word.text);
        const Placed& place = *wanted[word.text];
        SCOPED_TRACE(place.name);
        switch (place.label->alignment) {
        case ReportAlignment::left:
            EXPECT_NEAR(word.left, place.left, 0.5);
            break;
        case ReportAlignment::right:
            EXPECT_NEAR(word.right, place.right, 0.5);
            break;
        case ReportAlignment::centre:
            EXPECT_NEAR(word.left + word.right, place.left + place.right, 1.0);
            break;
        }
        EXPECT_NEAR(word.top, place.top, 1.0);
    }
}

TEST_P(Reports, AmountsEndOnOneEdge) {
    int amounts = 0;
    for (const Placed& place : labels_of(report)) {
        place.label->text.clear();
        if (place.label->alignment != ReportAlignment::right || place.name.starts_with("Label")) continue;
        place.label->text = "€ " + std::string(static_cast<std::size_t>(1 + amounts % 6), '8') + ".000,00";
        ++amounts;
    }
    const auto words = words_of(qt::report_pdf(report));
    ASSERT_EQ(words.size(), 2u * 12);
    for (const Word& word : words) {
        if (word.text != "€") {
            EXPECT_NEAR(word.right, (1000 + 9570) / 20.0, 0.25);
        }
    }
}

TEST_P(Reports, ALongTextIsSetSmallerThenBrokenAndOnlyThenCut) {
    std::string service;
    for (int i = 100; i < 140; ++i) service += " p" + std::to_string(i); // 200 signs
    const std::string m_300(300, 'm');
    struct Case {
        std::string label, text, printed;
        bool cut;
    };
    const Case cases[] = {
        {"NomeDitta", "Associazione Professionale Ingegneri e Architetti", "", false},
        {"IndirizzoCliente", "Via dei Martiri della Libertà e della Resistenza 127/bis int. 4", "", false},
        {"Descrizione1", service.substr(1, 120), "", false},
        {"Descrizione2", service.substr(1), "", false},
        {"Descrizione3", m_300, "", true},
        {"Descrizione4", "Consulenza tecnica, febbraio 2006\n", "", false},
        {"Descrizione5", "uno\vdue\fdieci\u2028venti\u2029trenta\u0085mille", "uno due", true},
        {"Pagamento", "Banca di Roma, filiale di Milano\nABI: 03002\nCAB: 03200\nC/C: 000123456\ncinque\nsei",
         "", false},
    };
    const auto labels = labels_of(report);
    for (const Case& it : cases) {
        SCOPED_TRACE(it.label);
        for (const Placed& place : labels) place.label->text.clear();
        const Placed& box = *std::find_if(labels.begin(), labels.end(),
                                          [&](const Placed& place) { return place.name == it.label; });
        box.label->text = it.text;
        QStringList all;
        for (const Word& word : words_of(qt::report_pdf(report))) {
            all << word.text;
            EXPECT_GE(word.top, box.top - 1);
            EXPECT_LE(word.bottom, box.bottom + 1.5);
            EXPECT_GE(word.left, box.left - 1);
            EXPECT_LE(word.right, box.right + 1);
            EXPECT_GE(word.bottom - word.top, 6 * 0.9) << "nothing is smaller than 6 points";
        }
        const std::string printed = qt::from_qt(all.join(' '));
        const auto cut = qt::ReportPage(report).cut_texts();
        EXPECT_EQ(cut.size(), it.cut ? 1u : 0u);
        EXPECT_EQ(printed.ends_with("…"), it.cut) << printed;
        EXPECT_TRUE(printed.starts_with(it.printed)) << printed;
        if (!it.cut) {
            EXPECT_EQ(printed, qt::from_qt(qt::to_qt(it.text).simplified()));
        }
        if (it.label == "Descrizione3") {
            EXPECT_EQ(cut, std::vector<std::string>{"prestazione 3"});
        }
    }
}

TEST_P(Reports, WhatFitsKeepsItsSize) {
    const auto height_of = [&](const std::string& text) {
        for (const Placed& place : labels_of(report))
            place.label->text = place.name == "Pagamento" ? text : "";
        const auto words = words_of(qt::report_pdf(report));
        return words.at(0).bottom - words.at(0).top;
    };
    // Four lines have room, also where the text has only one that is long.
    EXPECT_NEAR(height_of("a\nb\nc\nd"), height_of("a"), 0.01);
    EXPECT_NEAR(
        height_of("Bonifico sul conto presso la Banca di Roma, filiale di Milano, ABI 03002, CAB 03200, "
                  "C/C 000123456, entro trenta giorni dalla data della fattura"),
        height_of("a"), 0.01);
    EXPECT_LT(height_of("a\nb\nc\nd\ne"), height_of("a"));
}

/// The page as it is drawn on the screen, one dot to 15 twips.
QImage drawn(const qt::ReportPage& page) {
    QImage image((qt::report_page() / 15).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(1 / 15.0, 1 / 15.0);
    page.draw(painter);
    return image;
}

TEST_P(Reports, TheLogoIsFittedOrClipped) {
    QTemporaryDir folder;
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
        EXPECT_EQ(page.pixelColor((1000 + 6945) / 15 + 2, (1000 + 45) / 15 + 2).red(),
                  254 + (*name && name[5] == 'g'));
        EXPECT_NE(colour_at(page, 9500, 2000), "#ffffff") << name << " fills the box";
        EXPECT_EQ(colour_at(page, 9700, 1000), "#ffffff") << name;
    }
    logo.size_mode = ReportSizeMode::clip;
    const QImage page = drawn(qt::ReportPage(report));
    EXPECT_NE(colour_at(page, 9500, 200), "#ffffff");
    EXPECT_EQ(colour_at(page, 9700, 200), "#ffffff") << "cut off at the box";
    EXPECT_EQ(colour_at(page, 7500, 600), "#ffffff") << "at its own height";
    const qt::ReportPage once(report);
    ASSERT_TRUE(QFile::remove(folder.filePath("logo.jpg")));
    EXPECT_NE(colour_at(drawn(once), 9500, 200), "#ffffff") << "it is not read anew at each drawing";
    // A picture that has gone since the report was made leaves the place blank.
    logo.path = "/nessuno.jpg";
    EXPECT_EQ(colour_at(drawn(qt::ReportPage(report)), 7500, 200), "#ffffff");
}

INSTANTIATE_TEST_SUITE_P(Both, Reports, ::testing::Values(&DataReport1, &DataReport2),
                         [](const auto& info) { return info.param().name; });

TEST(ReportFonts, AreThoseOfTheLayouts) {
    const auto fonts_of = [](const QByteArray& pdf) {
        QTemporaryDir folder;
        QFile file(folder.filePath("report.pdf"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(pdf) == pdf.size());
        file.close();
        QProcess reader;
        reader.start("pdffonts", {file.fileName()});
        EXPECT_TRUE(reader.waitForFinished());
        return QString::fromUtf8(reader.readAllStandardOutput());
    };
    const auto filled = [](Report report) {
        for (const Placed& place : labels_of(report)) place.label->text = "x";
        return report;
    };
    const QString first = fonts_of(qt::report_pdf(filled(DataReport1())));
    EXPECT_TRUE(first.contains(QRegularExpression("Arial|LiberationSans"))) << qt::from_qt(first);
    EXPECT_TRUE(first.contains("Bold"));
    EXPECT_TRUE(first.contains("Italic"));
    EXPECT_FALSE(first.contains("Tahoma"));
    const QString second = fonts_of(qt::report_pdf(filled(DataReport2())));
    EXPECT_TRUE(second.contains("Tahoma")) << qt::from_qt(second);
    EXPECT_TRUE(second.contains(QRegularExpression("Arial|LiberationSans"))) << "three texts keep theirs";
}

} // namespace
} // namespace tarvello
