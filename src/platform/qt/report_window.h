#pragma once

#include "platform/platform.h"
#include "platform/qt/report_painter.h"

#include <QDialog>

class QLabel;
class QScrollArea;
class QVBoxLayout;

namespace tarvello::qt {

class QtWindows;

/// The print preview: one page, which can be enlarged, printed and made a PDF file.
class ReportWindow final : public QDialog {
public:
    ReportWindow(const Report& report, FileDialogs& dialogs, Files& files, CopyDialog& copy_dialog,
                 MessageBoxes& boxes, QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    class Page;

    void print();
    void save_pdf();
    void set_zoom(double zoom);
    void fit_page();
    /// Says above the page which texts are printed in part.
    void add_notice_of_cut_texts(QVBoxLayout& layout);
    void place();

    const Report& report_;
    ReportPage drawing_;
    FileDialogs& dialogs_;
    Files& files_;
    CopyDialog& copy_dialog_;
    MessageBoxes& boxes_;
    QScrollArea* area_ = nullptr;
    Page* page_ = nullptr;
    QLabel* zoom_text_ = nullptr;
    double zoom_ = 1;
    bool whole_page_ = false; ///< the page follows the size of the window
};

class QtReports final : public ReportViewer {
public:
    QtReports(const QtWindows& windows, FileDialogs& dialogs, Files& files, CopyDialog& copy_dialog,
              MessageBoxes& boxes)
        : windows_(windows), dialogs_(dialogs), files_(files), copy_dialog_(copy_dialog), boxes_(boxes) {}
    void show_modal(const Report& report) override;
    std::string pdf_of(const std::string& html, const std::string& title) override;

private:
    const QtWindows& windows_;
    FileDialogs& dialogs_;
    Files& files_;
    CopyDialog& copy_dialog_;
    MessageBoxes& boxes_;
};

} // namespace tarvello::qt
