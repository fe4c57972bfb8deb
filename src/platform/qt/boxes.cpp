#include "platform/qt/boxes.h"

#include "platform/qt/modal_turns.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/windows.h"

#include <QApplication>
#include <QFileDialog>
#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QTreeView>

#include <iterator>
#include <span>

namespace tarvello::qt {

// Message boxes

namespace {

QMessageBox::Icon icon_of(BoxIcon icon) {
    switch (icon) {
    case BoxIcon::information:
        return QMessageBox::Information;
    case BoxIcon::exclamation:
        return QMessageBox::Warning;
    case BoxIcon::critical:
        return QMessageBox::Critical;
    case BoxIcon::question:
        return QMessageBox::Question;
    case BoxIcon::none:
        break;
    }
    return QMessageBox::NoIcon;
}

/// Closes a box on Escape and on its close box without pressing any of its buttons.
class GoingBack final : public QObject {
public:
    bool gone = false;

    bool eventFilter(QObject* box, QEvent* event) override {
        const bool escape =
            event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
        if (gone || (!escape && event->type() != QEvent::Close)) return false;
        gone = true;
        static_cast<QMessageBox*>(box)->done(QDialog::Rejected);
        return true;
    }
};

struct Choice {
    Answer answer;
    const char* caption;
    QMessageBox::ButtonRole role;
};

} // namespace

Answer QtBoxes::show(const MessageBox& box) {
    static constexpr Choice ok[] = {{Answer::ok, "OK", QMessageBox::AcceptRole}};
    static constexpr Choice ok_cancel[] = {{Answer::ok, "OK", QMessageBox::AcceptRole},
                                           {Answer::cancel, "Annulla", QMessageBox::RejectRole}};
    static constexpr Choice yes_no[] = {{Answer::yes, "Sì", QMessageBox::YesRole},
                                        {Answer::no, "No", QMessageBox::NoRole}};
    const auto choices = [&]() -> std::span<const Choice> {
        switch (box.buttons) {
        case BoxButtons::ok_cancel:
            return ok_cancel;
        case BoxButtons::yes_no:
            return yes_no;
        case BoxButtons::ok:
            break;
        }
        return ok;
    }();

    if (windows_.deserted()) return choices.back().answer;
    const ModalTurn turn;
    const ActiveAgain active_again;
    QMessageBox window(icon_of(box.icon), to_qt(box.caption), {}, QMessageBox::NoButton,
                       windows_.parent_of_dialogs());
    window.setTextFormat(Qt::PlainText);
    window.setText(to_qt(box.text));
    std::vector<QPushButton*> buttons;
    for (const Choice& choice : choices) {
        buttons.push_back(window.addButton(QString::fromUtf8(choice.caption), choice.role));
    }
    window.setDefaultButton(buttons.at(box.default_button == 2 && buttons.size() > 1 ? 1 : 0));
    window.setEscapeButton(buttons.back());
    GoingBack going_back;
    if (box.may_go_back) window.installEventFilter(&going_back);
    window.exec();
    if (going_back.gone) return Answer::cancel;
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        if (window.clickedButton() == buttons[i]) return choices[i].answer;
    }
    return choices.back().answer; // closed without a button
}

// File dialogs

namespace {

QString filters_of(const FileDialog& dialog) {
    QStringList filters;
    for (const FileFilter& filter : dialog.filters) {
        // The label names the pattern already, in brackets of its own.
        QString label = to_qt(filter.label);
        label.truncate(label.indexOf('(') < 0 ? label.size() : label.indexOf('('));
        filters << label.trimmed() + " (" + to_qt(filter.pattern).replace(';', ' ') + ")";
    }
    return filters.join(QStringLiteral(";;"));
}

/// Of the toolkit's own dialog, which shows where the desktop has none: wide enough for its columns.
constexpr QSize room{760, 460};

std::optional<std::string> path_of(QFileDialog& window) {
    const ModalTurn turn;
    const ActiveAgain active_again;
    window.resize(room);
    if (const auto* files = window.findChild<QTreeView*>(QStringLiteral("treeView"))) {
        files->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        files->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    }
    if (window.exec() != QDialog::Accepted || window.selectedFiles().isEmpty()) return std::nullopt;
    return from_qt(window.selectedFiles().first());
}

} // namespace

std::optional<std::string> QtFileDialogs::open_file(const FileDialog& dialog) {
    if (windows_.deserted()) return std::nullopt;
    QFileDialog window(windows_.parent_of_dialogs(), to_qt(dialog.title), {}, filters_of(dialog));
    window.setFileMode(dialog.folder ? QFileDialog::Directory : QFileDialog::ExistingFile);
    window.setOption(QFileDialog::ShowDirsOnly, dialog.folder);
    return path_of(window);
}

std::optional<std::string> QtFileDialogs::save_file(const FileDialog& dialog) {
    if (windows_.deserted()) return std::nullopt;
    QFileDialog window(windows_.parent_of_dialogs(), to_qt(dialog.title), {}, filters_of(dialog));
    window.setAcceptMode(QFileDialog::AcceptSave);
    window.setFileMode(QFileDialog::AnyFile);
    window.setOption(QFileDialog::DontConfirmOverwrite, !dialog.confirm_replace);
    return path_of(window);
}

// Copies

namespace {

/// A line that ends in a path: one too long for the window loses its middle, and is told whole by the tool
/// tip.
QLabel* path_label(const QString& line) {
    constexpr int width_in_characters = 60;
    auto* label = new QLabel;
    const QFontMetrics metrics = label->fontMetrics();
    const int width = width_in_characters * metrics.averageCharWidth();
    label->setTextFormat(Qt::PlainText);
    label->setText(metrics.elidedText(line, Qt::ElideMiddle, width));
    label->setToolTip(line);
    label->setMinimumWidth(width);
    return label;
}

} // namespace

QtCopyDialog::~QtCopyDialog() { end(); }

bool QtCopyDialog::may_replace(const std::string& destination) {
    return boxes_.show({"Il file esiste già:\n" + destination + "\n\nSostituirlo?", program_title,
                        BoxIcon::question, BoxButtons::yes_no, 2}) == Answer::yes;
}

void QtCopyDialog::begin(const std::string& title) {
    end();
    progress_ = new QProgressDialog({}, QStringLiteral("Annulla"), 0, 1000, windows_.parent_of_dialogs());
    progress_->setWindowTitle(to_qt(title));
    progress_->setLabel(path_label(to_qt(title)));
    progress_->setWindowModality(Qt::ApplicationModal);
    progress_->setMinimumDuration(400); // a copy that is done at once needs no window
    progress_->setValue(0);
}

bool QtCopyDialog::advance(std::uint64_t done, std::uint64_t total) {
    if (!progress_) return true;
    const ModalTurn turn; // setting the value lets the user press the button
    const double part = total == 0 ? 1.0 : static_cast<double>(done) / static_cast<double>(total);
    progress_->setValue(static_cast<int>(part * 999)); // the last step would close it
    return !progress_->wasCanceled() && !windows_.ending();
}

void QtCopyDialog::end() { delete progress_.data(); }

void QtCopyDialog::report_failure(const std::string& description) {
    boxes_.show({description, program_title, BoxIcon::critical, BoxButtons::ok, 1});
}

} // namespace tarvello::qt
