#include "platform/qt/report_window.h"

#include "failure.h"
#include "platform/qt/modal_turns.h"
#include "platform/qt/pictures.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/report_painter.h"
#include "platform/qt/scale.h"
#include "platform/qt/window_frames.h"
#include "platform/qt/windows.h"
#include "platform/report_file.h"
#include "platform/twips.h"

#include <QAction>
#include <QBuffer>
#include <QLabel>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QScreen>
#include <QScrollArea>
#include <QTextDocument>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace tarvello::qt {
namespace {

constexpr double smallest_zoom = 0.25;
constexpr double largest_zoom = 4;
constexpr double zoom_step = 1.25;
constexpr int space_around_page = 16; ///< pixels

} // namespace

/// The sheet of paper on the screen.
class ReportWindow::Page final : public QWidget {
public:
    explicit Page(const ReportPage& page) : page_(page) {}

    void set_scale(double pixels_to_twip) {
        scale_ = pixels_to_twip;
        setFixedSize((report_page() * scale_).toSize() + QSize(2, 2) * space_around_page);
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRectF paper(QPointF(space_around_page, space_around_page), report_page() * scale_);
        painter.fillRect(paper.translated(3, 3), QColor(0, 0, 0, 60));
        painter.fillRect(paper, Qt::white);
        painter.setPen(QColor(0, 0, 0, 90));
        painter.drawRect(paper);
        painter.translate(paper.topLeft());
        painter.scale(scale_, scale_);
        page_.draw(painter);
    }

private:
    const ReportPage& page_;
    double scale_ = 1;
};

ReportWindow::ReportWindow(const Report& report, FileDialogs& dialogs, Files& files, CopyDialog& copy_dialog,
                           MessageBoxes& boxes, QWidget* parent)
    : QDialog(parent), report_(report), drawing_(report), dialogs_(dialogs), files_(files),
      copy_dialog_(copy_dialog), boxes_(boxes) {
    setObjectName(to_qt(report.name));
    setWindowTitle(to_qt(report.caption));
    setWindowFlag(Qt::WindowMaximizeButtonHint);

    auto* bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize({20, 20});
    const auto add = [&](const char* name, const QString& text, const char* picture, const QKeySequence& keys,
                         auto act) {
        QAction* action = bar->addAction(picture_icon(picture), text);
        action->setObjectName(QLatin1String(name));
        action->setShortcut(keys);
        action->setToolTip(
            text + (keys.isEmpty() ? QString() : " (" + keys.toString(QKeySequence::NativeText) + ")"));
        QObject::connect(action, &QAction::triggered, this, act);
    };
    add("ui_print", QStringLiteral("Stampa..."), "stampa", QKeySequence::Print, [this] { print(); });
    add("ui_pdf", QStringLiteral("PDF"), "pdf", QKeySequence::Save, [this] { save_pdf(); });
    bar->addSeparator();
    add("ui_smaller", QStringLiteral("Riduci"), "riduci", QKeySequence::ZoomOut,
        [this] { set_zoom(zoom_ / zoom_step); });
    zoom_text_ = new QLabel;
    zoom_text_->setAlignment(Qt::AlignCenter);
    zoom_text_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("  400 %  ")));
    bar->addWidget(zoom_text_);
    add("ui_larger", QStringLiteral("Ingrandisci"), "ingrandisci", QKeySequence::ZoomIn,
        [this] { set_zoom(zoom_ * zoom_step); });
    add("ui_whole_page", QStringLiteral("Pagina intera"), "pagina", Qt::CTRL | Qt::Key_0,
        [this] { fit_page(); });
    bar->addSeparator();
    add("ui_close", QStringLiteral("Chiudi"), "chiudi", QKeySequence::Close, [this] { close(); });

    page_ = new Page(drawing_);
    page_->setObjectName(QStringLiteral("ui_page"));
    page_->setAccessibleName(to_qt(report.document));
    area_ = new QScrollArea;
    area_->setWidget(page_);
    area_->setAlignment(Qt::AlignCenter);
    area_->setBackgroundRole(QPalette::Mid);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    add_notice_of_cut_texts(*layout);
    layout->addWidget(area_);
    set_zoom(1);
    place();
}

void ReportWindow::add_notice_of_cut_texts(QVBoxLayout& layout) {
    QStringList cut;
    for (const std::string& text : drawing_.cut_texts()) cut << to_qt(text);
    if (cut.isEmpty()) return;
    auto* notice = new QLabel(QStringLiteral("Troppo lungo per il suo spazio, stampato solo in parte: ") +
                              cut.join(QStringLiteral(", ")) + QStringLiteral(". Accorciare il testo."));
    notice->setObjectName(QStringLiteral("ui_cut"));
    notice->setTextFormat(Qt::PlainText);
    notice->setWordWrap(true);
    notice->setMargin(6);
    notice->setAutoFillBackground(true);
    notice->setBackgroundRole(QPalette::ToolTipBase);
    notice->setForegroundRole(QPalette::ToolTipText);
    layout.addWidget(notice);
}

void ReportWindow::place() {
    const auto scaled = [this](int twips) { return pixels(*this, twips); };
    QRect wanted(scaled(report_.window.left), scaled(report_.window.top), scaled(report_.window.width),
                 scaled(report_.window.height));
    if (const QScreen* on = screen()) {
        QRect room = on->availableGeometry();
        wanted.translate(room.topLeft());
        room.setTop(room.bottom() + 1 - most_of(*this).height()); // its title bar comes above it
        wanted.setSize(wanted.size().boundedTo(room.size()));
        wanted.moveRight(std::min(wanted.right(), room.right()));
        wanted.moveBottom(std::min(wanted.bottom(), room.bottom()));
    }
    setGeometry(wanted);
}

void ReportWindow::set_zoom(double zoom) {
    whole_page_ = false;
    zoom_ = std::clamp(zoom, smallest_zoom, largest_zoom);
    page_->set_scale(zoom_ * logicalDpiX() / double(twips_per_inch));
    zoom_text_->setText(QString::number(qRound(zoom_ * 100)) + QStringLiteral(" %"));
}

void ReportWindow::fit_page() {
    const QSizeF room = area_->maximumViewportSize() - QSize(2, 2) * space_around_page;
    const QSizeF paper = report_page() * logicalDpiX() / double(twips_per_inch);
    set_zoom(std::min(room.width() / paper.width(), room.height() / paper.height()));
    whole_page_ = true;
}

void ReportWindow::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    if (whole_page_) fit_page();
}

void ReportWindow::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    area_->setFocus(Qt::OtherFocusReason); // the arrow keys move the page
}

void ReportWindow::print() {
    if (QPrinterInfo::availablePrinterNames().isEmpty()) { // the dialog would have nothing to choose from
        boxes_.show({"Nessuna stampante è installata su questo computer.\nLa fattura si può salvare in PDF.",
                     program_title, BoxIcon::exclamation});
        return;
    }
    const ModalTurn turn;
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(to_qt(report_.document));
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setFullPage(true);
    QPrintDialog dialog(&printer, this);
    dialog.setWindowTitle(QStringLiteral("Stampa"));
    dialog.setOptions({}); // one page: nothing to choose from
    if (dialog.exec() != QDialog::Accepted) return;
    QPainter painter;
    if (!painter.begin(&printer)) {
        boxes_.show({cannot_print, program_title, BoxIcon::critical});
        return;
    }
    const double dots_to_twip = printer.resolution() / double(twips_per_inch);
    painter.scale(dots_to_twip, dots_to_twip);
    drawing_.draw(painter);
}

void ReportWindow::save_pdf() {
    save_as_pdf({dialogs_, files_, copy_dialog_, boxes_},
                [this] { return report_pdf(report_).toStdString(); });
}

void QtReports::show_modal(const Report& report) {
    const ModalTurn turn;
    ReportWindow window(report, dialogs_, files_, copy_dialog_, boxes_, windows_.parent_of_dialogs());
    window.exec();
}

std::string QtReports::pdf_of(const std::string& html, const std::string& title) {
    constexpr double margin = 15; // millimetres
    constexpr int points = 9;
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    QPdfWriter writer(&bytes);
    writer.setTitle(to_qt(title));
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(margin, margin, margin, margin), QPageLayout::Millimeter);
    QTextDocument document;
    QFont font = document.defaultFont();
    font.setPointSize(points);
    document.setDefaultFont(font);
    document.setHtml(to_qt(html));
    document.print(&writer);
    return bytes.data().toStdString();
}

} // namespace tarvello::qt
