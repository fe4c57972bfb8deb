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

TEST_P(Reports, LongTextsStayInTheirBoxes) {
    const std::string long_name = "Associazione Professionale degli Ingegneri e degli Architetti";
    std::string description;
    while (description.size() < 200) description += "Consulenza tecnica ";
    for (const Placed& place : labels_of(report)) {
        place.label->text = place.name == "Pagamento"      ? "uno\ndue\ntre\nquattro\ncinque\nsei"
                            : place.name == "Cognome"      ? long_name
                            : place.name == "Descrizione1" ? description
                            : place.name == "Descrizione2" ? std::string(300, 'm')
                                                           : "";
    }
    const auto labels = labels_of(report);
    const auto place = [&](const std::string& name) {
        return *std::find_if(labels.begin(), labels.end(), [&](const Placed& it) { return it.name == name; });
    };
    QStringList payment;
    QStringList name;
    for (const Word& word : words_of(qt::report_pdf(report))) {
        bool inside = false;
        for (const char* label : {"Pagamento", "Cognome", "Descrizione1", "Descrizione2"}) {
            const Placed box = place(label);
            if (word.top < box.top - 1 || word.left < box.left - 1 || word.right > box.right + 1) continue;
            if (word.bottom > box.bottom + 1) continue;
            inside = true;
            if (box.name == "Pagamento") payment << word.text;
            if (box.name == "Cognome") name << word.text;
        }
        EXPECT_TRUE(inside) << qt::from_qt(word.text) << " at " << word.left << " " << word.top;
    }
    EXPECT_GE(payment.size(), 4) << "a payment of four lines fits whole";
    EXPECT_EQ(payment.mid(0, 3), (QStringList{"uno", "due", "tre"}));
    EXPECT_TRUE(name.join(' ').startsWith("Associazione Professionale degli")) << qt::from_qt(name.join(' '));
    EXPECT_TRUE(name.join(' ').endsWith(QStringLiteral("…"))) << "what is cut off shows that it is";
}

TEST_P(Reports, WhatFitsIsWhole) {
    const std::string bank = "Banca di Roma, filiale di Milano\nABI: 03002\nCAB: 03200\nC/C: 000123456";
    const std::string service = "Progetto esecutivo delle strutture e direzione dei lavori, febbraio 2006";
    for (const Placed& place : labels_of(report)) {
        place.label->text = place.name == "Pagamento" ? bank : place.name == "Descrizione3" ? service : "";
    }
    QStringList all;
    for (const Word& word : words_of(qt::report_pdf(report))) all << word.text;
    EXPECT_EQ(qt::from_qt(all.join(' ')), qt::from_qt(qt::to_qt(service + " " + bank).replace('\n', ' ')));
}

/// The page as it is drawn on the screen, one dot to 15 twips.
QImage drawn(const Report& report) {
    QImage image((qt::report_page() / 15).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(1 / 15.0, 1 / 15.0);
    qt::paint_report(report, painter);
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
        const QImage page = drawn(report);
        EXPECT_EQ(page.pixelColor((1000 + 6945) / 15 + 2, (1000 + 45) / 15 + 2).red(),
                  254 + (*name && name[5] == 'g'));
        EXPECT_NE(colour_at(page, 9500, 2000), "#ffffff") << name << " fills the box";
        EXPECT_EQ(colour_at(page, 9700, 1000), "#ffffff") << name;
    }
    logo.size_mode = ReportSizeMode::clip;
    const QImage page = drawn(report);
    EXPECT_NE(colour_at(page, 9500, 200), "#ffffff");
    EXPECT_EQ(colour_at(page, 9700, 200), "#ffffff") << "cut off at the box";
    EXPECT_EQ(colour_at(page, 7500, 600), "#ffffff") << "at its own height";
    // A picture that has gone since the report was made leaves the place blank.
    logo.path = "/nessuno.jpg";
    EXPECT_EQ(colour_at(drawn(report), 7500, 200), "#ffffff");
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
