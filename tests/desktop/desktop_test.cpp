#include "desktop/desktop_test.h"

#include "desktop/look_check.h"
#include "places.h"
#include "platform/qt/qt_text.h"
#include "program/version.h"
#include "shell/session.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProcessEnvironment>
#include <QProgressDialog>
#include <QScrollArea>
#include <QTest>
#include <QTimer>

#include <filesystem>

namespace tarvello::testing {

using qt::from_qt;
using qt::to_qt;

// What comes by itself

DesktopUser::DesktopUser() { qApp->installEventFilter(this); }

DesktopUser::~DesktopUser() {
    qApp->removeEventFilter(this);
    expect_none_left();
}

void DesktopUser::expect_box(std::string text, Answer answer) {
    expected_.push_back({Expected::box, std::move(text), answer, {}, {}});
}

void DesktopUser::expect_file_dialog(std::optional<std::string> path) {
    expected_.push_back({Expected::file_dialog, {}, {}, std::move(path), {}});
}

void DesktopUser::expect_modal(std::string form, std::function<void()> acts) {
    expected_.push_back({Expected::modal, std::move(form), {}, {}, std::move(acts)});
}

void DesktopUser::expect_none_left() {
    settle();
    for (const Expected& expected : expected_) ADD_FAILURE() << "this never came: " << expected.text;
    expected_.clear();
}

bool DesktopUser::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Show || !watched->isWidgetType()) return false;
    QPointer<QWidget> window = static_cast<QWidget*>(watched);
    const bool waits = window->isModal() && window->isWindow();
    if (waits) {
        // Answered when the window's own event loop runs, as by a user.
        QTimer::singleShot(0, this, [this, window] {
            if (window && window->isVisible()) came(window);
        });
    }
    return false;
}

void DesktopUser::came(QWidget* window) {
    if (qobject_cast<QMessageBox*>(window)) return answer_box(*window);
    if (qobject_cast<QFileDialog*>(window)) return answer_file_dialog(*window);
    const bool wanted = !expected_.empty() && expected_.front().kind == Expected::modal;
    if (qobject_cast<QProgressDialog*>(window) && !wanted) return; // comes on a slow machine, goes by itself
    act_in_modal(*window);
}

std::optional<DesktopUser::Expected> DesktopUser::next(Expected::Kind kind, const std::string& what) {
    if (expected_.empty() || expected_.front().kind != kind) {
        ADD_FAILURE() << "nobody expected this: " << what
                      << (expected_.empty() ? "" : "; expected was: " + expected_.front().text);
        return std::nullopt;
    }
    Expected expected = std::move(expected_.front());
    expected_.pop_front();
    return expected;
}

void DesktopUser::answer_box(QWidget& window) {
    auto& box = static_cast<QMessageBox&>(window);
    const std::string text = from_qt(box.text());
    const auto expected = next(Expected::box, text);
    if (!expected) return box.reject();
    EXPECT_EQ(text, expected->text);
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    static const std::map<Answer, QString> captions = {{Answer::ok, "OK"},
                                                       {Answer::cancel, "Annulla"},
                                                       {Answer::yes, QStringLiteral("Sì")},
                                                       {Answer::no, "No"}};
    for (QAbstractButton* button : box.buttons()) {
        if (button->text() == captions.at(expected->answer)) return QTest::mouseClick(button, Qt::LeftButton);
    }
    ADD_FAILURE() << "the box has no such button: " << text;
    box.reject();
}

void DesktopUser::answer_file_dialog(QWidget& window) {
    auto& dialog = static_cast<QFileDialog&>(window);
    const auto expected = next(Expected::file_dialog, from_qt(dialog.windowTitle()));
    if (!expected || !expected->path) return dialog.reject();
    dialog.selectFile(to_qt(*expected->path));
    QMetaObject::invokeMethod(&dialog, "accept");
}

void DesktopUser::act_in_modal(QWidget& window) {
    const QPointer<QWidget> alive(&window);
    const std::string form = from_qt(window.objectName());
    const auto expected = next(Expected::modal, form);
    if (expected) {
        EXPECT_EQ(form, expected->text);
        activate(window);
        if (expected->acts) expected->acts();
    }
    settle();
    if (alive && alive->isVisible()) alive->close();
}

// Finding

bool DesktopUser::is_shown(const std::string& form) {
    settle();
    for (QWidget* widget : QApplication::allWidgets()) {
        if (widget->objectName() == to_qt(form) && widget->isVisible()) return true;
    }
    return false;
}

QWidget* DesktopUser::window(const std::string& form) {
    for (QWidget* widget : QApplication::allWidgets()) {
        if (widget->objectName() == to_qt(form) && widget->isVisible()) return widget;
    }
    ADD_FAILURE() << form << " is not on the screen";
    return &nothing_;
}

QWidget* DesktopUser::widget(const std::string& form, const std::string& control) {
    if (auto* found = window(form)->findChild<QWidget*>(to_qt(control))) return found;
    ADD_FAILURE() << form << " has no widget " << control;
    return &nothing_;
}

// Doing

void DesktopUser::activate(QWidget& window) {
    if (QApplication::activeWindow() == &window) return;
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; }, longest_wait))
        << from_qt(window.objectName()) << " never became active";
}

void DesktopUser::settle() {
    for (int i = 0; i < 4; ++i) QCoreApplication::processEvents();
}

void DesktopUser::click(const std::string& form, const std::string& control) {
    QWidget* target = widget(form, control);
    ASSERT_TRUE(target->isVisible()) << form << "." << control << " is not in view";
    EXPECT_TRUE(target->isEnabled()) << form << "." << control << " is disabled";
    QPoint place = target->rect().center();
    // A tick box and a radio button are pressed on their mark: behind a short caption there is nothing to
    // press.
    if (qobject_cast<QAbstractButton*>(target)) place.setX(std::min(place.x(), 8));
    if (auto* area = qobject_cast<QAbstractScrollArea*>(target)) target = area->viewport();
    activate(*target->window());
    QTest::mouseClick(target, Qt::LeftButton, {}, place);
    settle();
}

void DesktopUser::click_row(const std::string& form, const std::string& control, int row) {
    auto* view = widget<QAbstractItemView>(form, control);
    settle();
    const auto index = view->model()->index(row, 0);
    view->scrollTo(index);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(index).center());
    settle();
}

void DesktopUser::double_click(const std::string& form, const std::string& control, int row) {
    click_row(form, control, row);
    auto* view = widget<QAbstractItemView>(form, control);
    const auto index = view->model()->index(row, 0);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(index).center());
    settle();
}

void DesktopUser::type(const std::string& form, const std::string& control, const std::string& text) {
    click(form, control);
    press(Qt::Key_A, Qt::ControlModifier);
    if (text.empty()) press(Qt::Key_Delete);
    type(text);
}

void DesktopUser::type(const std::string& text) {
    for (const char32_t character : to_qt(text).toUcs4()) {
        QWidget* target = QApplication::focusWidget();
        if (!target) {
            ADD_FAILURE() << "nothing has the keyboard";
            return;
        }
        const auto key =
            static_cast<Qt::Key>(character < 128 ? QChar(character).toUpper().unicode() : character);
        const QString typed = QString::fromUcs4(&character, 1);
        QTest::sendKeyEvent(QTest::Click, target, key, typed, Qt::NoModifier);
    }
    settle();
}

void DesktopUser::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QWidget* target = QApplication::focusWidget();
    if (!target) target = QApplication::activeWindow();
    if (!target) {
        ADD_FAILURE() << "nothing has the keyboard";
        return;
    }
    QTest::keyClick(target, key, modifiers);
    settle();
}

void DesktopUser::choose(const std::string& form, const std::string& control, int index) {
    auto* combo = widget<QComboBox>(form, control);
    EXPECT_TRUE(combo->isEnabled()) << form << "." << control << " is disabled";
    combo->setFocus(Qt::MouseFocusReason);
    combo->showPopup();
    QAbstractItemView* list = combo->view();
    const auto item = combo->model()->index(index, 0);
    list->scrollTo(item);
    settle();
    list->setCurrentIndex(item);
    QTest::keyClick(list, Qt::Key_Return);
    settle();
}

void DesktopUser::choose_menu(const std::string& form, const std::string& entry) {
    auto* action = window(form)->findChild<QAction*>(to_qt(entry));
    ASSERT_TRUE(action) << form << " has no entry " << entry;
    EXPECT_TRUE(action->isEnabled()) << entry << " is disabled";
    action->trigger();
    settle();
}

void DesktopUser::move_mouse_over(const std::string& form, const std::string& control) {
    QWidget* target = widget(form, control);
    // The pointer of the test may not move at all; the event does.
    const QPoint place = target->rect().center();
    QMouseEvent move(QEvent::MouseMove, place, target->mapToGlobal(place), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(target, &move);
    settle();
}

void DesktopUser::close_window(const std::string& form) {
    QWidget* target = window(form);
    if (auto* frame = qobject_cast<QMdiSubWindow*>(target->parentWidget())) target = frame;
    target->close();
    settle();
}

// Seeing

std::string DesktopUser::shown(const std::string& form, const std::string& control) {
    QWidget* target = widget(form, control);
    if (auto* line = qobject_cast<QLineEdit*>(target)) return from_qt(line->text());
    if (auto* area = qobject_cast<QPlainTextEdit*>(target)) return from_qt(area->toPlainText());
    if (auto* combo = qobject_cast<QComboBox*>(target)) return from_qt(combo->currentText());
    if (auto* label = qobject_cast<QLabel*>(target)) return from_qt(label->text());
    if (auto* button = qobject_cast<QAbstractButton*>(target)) {
        return button->isCheckable() ? (button->isChecked() ? "1" : "0") : from_qt(button->text());
    }
    ADD_FAILURE() << form << "." << control << " shows no text";
    return {};
}

std::string DesktopUser::focus() {
    const QWidget* has_it = QApplication::focusWidget();
    return has_it ? from_qt(has_it->objectName()) : std::string();
}

void DesktopUser::take_picture(const std::string& form, const std::string& name) {
    QWidget* target = window(form);
    for (const std::string& fault : look_faults(*target)) ADD_FAILURE() << name << ": " << fault;
    const QString folder = qEnvironmentVariable("TARVELLO_SHOTS");
    if (folder.isEmpty()) return;
    if (auto* frame = qobject_cast<QMdiSubWindow*>(target->parentWidget())) target = frame;
    EXPECT_TRUE(target->grab().save(folder + "/" + to_qt(name) + ".png"));
}

// The program

UserFolders::UserFolders() {
    for (const char* name : {"home", "config", "data", "run", "program"}) QDir(folder_.path()).mkdir(name);
    const QString run = to_qt(path("run"));
    QFile::setPermissions(run, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    const QProcessEnvironment own = environment();
    for (const char* name :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR"}) {
        qputenv(name, own.value(QString::fromLatin1(name)).toUtf8());
    }
}

UserFolders::~UserFolders() = default;

std::string UserFolders::path(const std::string& name) const { return from_qt(folder_.path()) + "/" + name; }

QProcessEnvironment UserFolders::environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", to_qt(path("home")));
    environment.insert("XDG_CONFIG_HOME", to_qt(path("config")));
    environment.insert("XDG_DATA_HOME", to_qt(path("data")));
    environment.insert("XDG_STATE_HOME", to_qt(path("state")));
    environment.insert("XDG_RUNTIME_DIR", to_qt(path("run")));
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("LC_ALL", "C");
    return environment;
}

DesktopTest::DesktopTest() {
    // What a first start fills the folder with.
    std::filesystem::copy(TARVELLO_BIN "/originali", program_folder(),
                          std::filesystem::copy_options::recursive);
}

DesktopTest::~DesktopTest() {
    if (platform_) platform_->windows().clear();
}

void DesktopTest::make_program() {
    platform_ = std::make_unique<qt::QtPlatform>(program_folder());
    program_ = std::make_unique<Program>(platform_->platform());
}

void DesktopTest::start() {
    make_program();
    SettingsStore& settings = program_->platform().settings;
    if (!settings.read(application_name, "txtContatoreAccessi", "text")) {
        settings.write(application_name, "txtContatoreAccessi", "text", "2");
        const std::string today = short_date_text(program_->platform().clock.today(), RegionalSettings());
        settings.write(application_name, "txtDataUltimoAggiornamento", "text", today);
    }
    program_->run([&] {
        load_session(*program_);
        program_->form<MDIForm1>().show();
    });
    DesktopUser::settle();
}

void DesktopTest::start_with_splash() {
    make_program();
    program_->run([&] { start_program(*program_); });
    EXPECT_TRUE(user.is_shown("frmSplash"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return user.is_shown("MDIForm1"); }, longest_wait));
}

void DesktopTest::answer_first_run() {
    user.expect_modal("frmRegister", [this] {
        user.type("frmRegister", "Text1", "Studio Rossi");
        user.expect_box("Se i dati inseriti sono corretti premere 'Si'.\n"
                        "Attenzione! I dati verranno visualizzati nell'intestazione\n"
                        "delle fatture da stampare.\nContinuare?",
                        Answer::yes);
        user.take_picture("frmRegister", "primo-avvio");
        user.click("frmRegister", "Command1");
    });
}

void DesktopTest::finish() {
    bool ended = true;
    QTimer::singleShot(0, qApp, [this] { user.close_window("MDIForm1"); });
    QTimer::singleShot(longest_wait, &user, [&ended] {
        ended = false;
        QCoreApplication::exit(1);
    });
    QCoreApplication::exec();
    EXPECT_TRUE(ended) << "the program did not end";
    platform_->windows().clear();
    program_.reset();
    platform_.reset();
}

} // namespace tarvello::testing
