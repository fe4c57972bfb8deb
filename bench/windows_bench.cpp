#include "archive.h"
#include "probe.h"
#include "row.h"

#include "fiscal_code/calculator_form.h"
#include "invoices/invoice_form.h"
#include "invoices/invoice_list.h"
#include "invoices/invoice_results.h"
#include "platform/qt/application.h"
#include "platform/qt/installation.h"
#include "platform/qt/qt_platform.h"
#include "program/program.h"
#include "program/version.h"
#include "shell/main_window.h"
#include "shell/session.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvello::bench {
namespace {

/// Settings and lock of the measured program are its own.
constexpr const char* user_folder = TARVELLO_BENCH_FOLDER "/user";

void run_process(benchmark::State& state, const char* path) {
    for (auto _ : state) {
        char* arguments[] = {const_cast<char*>(path), nullptr};
        pid_t process = 0;
        int status = -1;
        if (posix_spawn(&process, path, nullptr, nullptr, arguments, environ) != 0 ||
            waitpid(process, &status, 0) != process || status != 0) {
            state.SkipWithError("the process did not come to its first picture");
        }
    }
}

void start(benchmark::State& state) { run_process(state, TARVELLO_PROBES "/splash_probe"); }
void start_floor(benchmark::State& state) { run_process(state, TARVELLO_PROBES "/label_probe"); }

/// The folder of the program's data, with what its first start puts there.
std::string filled_directory() {
    const std::string directory = qt::program_directory(TARVELLO_PROBES, user_folder);
    qt::fill_program_directory(TARVELLO_PROBES, directory);
    return directory;
}

/// The program on the archive, with its main window on the screen.
struct Session {
    Session() : platform(filled_directory()), program(platform.platform()) {
        SettingsStore& settings = program.platform().settings;
        settings.write(application_name, "txtContatoreAccessi", "text", "2");
        settings.write(application_name, "txtDatabaseRoute", "text", archive_path());
        settings.write(application_name, "txtDataUltimoAggiornamento", "text",
                       short_date_text(program.platform().clock.today(), program.regional()));
        load_session(program);
        program.form<MDIForm1>().show();
        QCoreApplication::processEvents();
    }
    ~Session() { platform.windows().clear(); }

    qt::QtPlatform platform;
    Program program;
};

/// Resident memory of this process in megabytes.
double resident_megabytes() {
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

/// Made by the first work that needs it; main() ends it before the application object goes.
std::unique_ptr<Session> session_of_all;

Session& the_session() {
    if (!session_of_all) session_of_all = std::make_unique<Session>();
    return *session_of_all;
}

void open_invoices(benchmark::State& state) {
    Session& session = the_session();
    for (auto _ : state) {
        session.program.form<frmTarvello>().show();
        QCoreApplication::processEvents();
        state.PauseTiming();
        if (state.iterations() == 0) state.counters["resident_MB"] = resident_megabytes();
        session.program.form<frmTarvello>().unload();
        QCoreApplication::processEvents();
        state.ResumeTiming();
    }
}

/// A key on its way through the window, with what it changes drawn.
void municipality_key(benchmark::State& state) {
    Session& session = the_session();
    auto& calculator = session.program.form<frmCalcolaCF>();
    calculator.show();
    QCoreApplication::processEvents(); // until the window is active, it gives the focus to its first box
    auto* box = session.platform.windows().window(calculator)->findChild<QLineEdit*>("txtComune");
    box->setFocus();
    QCoreApplication::processEvents();
    const std::string name = "sant'angelo limosano";
    std::size_t keys = 0;
    for (auto _ : state) {
        const std::size_t place = keys++ % name.size();
        if (place == 0) box->selectAll();
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, name[place], Qt::NoModifier, QString(QLatin1Char(name[place])));
            QCoreApplication::sendEvent(box, &event);
        }
        QCoreApplication::processEvents();
        if (place + 1 == name.size() && calculator.txtCodice.text() != "I289")
            state.SkipWithError("not found");
    }
    calculator.unload();
    QCoreApplication::processEvents();
}

/// From the filled list of all invoices to the end of its window, which looks for the selected invoice again
/// and shows it.
void open_and_close_results(benchmark::State& state) {
    Session& session = the_session();
    Database& database = session.program.database();
    auto& invoices = session.program.form<frmTarvello>();
    for (auto _ : state) {
        state.PauseTiming();
        auto& results = session.program.form<frmRisultatiRicercaFatture>();
        database.rsFatture.open("SELECT * FROM Fatture ORDER BY ID DESC", database.dbConnection);
        const InvoiceRowWriter writer(database.rsFatture, {"Importo_Rivalsa", "Importo_Ritenuta"});
        for (; !database.rsFatture.eof(); database.rsFatture.move_next()) {
            writer.add(results.ListView1.fill());
        }
        database.rsFatture.close();
        results.return_to(invoices.share<InvoiceView>(invoices));
        state.ResumeTiming();

        results.ListView1.rows_added();
        results.ListView1.set_selected(0); // the newest, which the walk from the oldest reaches last
        results.txtAnnoDiRicerca.set_text(std::to_string(last_year));
        QTimer::singleShot(0, &session.platform.windows(), [&] {
            QCoreApplication::processEvents(); // it has been drawn
            results.close_by_user();
        });
        results.show_modal();
        QCoreApplication::processEvents();
    }
    invoices.unload();
}

} // namespace
} // namespace tarvello::bench

int main(int argc, char** argv) {
    using namespace tarvello::bench;
    const std::filesystem::path user = user_folder;
    std::filesystem::remove_all(user);
    std::filesystem::create_directories(user);
    std::filesystem::permissions(user, std::filesystem::perms::owner_all);
    for (const char* folder : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
        setenv(folder, user.c_str(), 1);
    }
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    tarvello::qt::Application application(argc, argv);
    EndOnBox end_on_box;
    application.installEventFilter(&end_on_box);
    row("process start to splash on screen, offscreen", start, start_floor, 2, Clock::wall);
    row_within("opening the invoice form, offscreen", open_invoices, 60000);
    row_within("one key in the municipality box, drawn", municipality_key, 1000);
    row_within("result window of all invoices, opened and closed", open_and_close_results, 150000);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    session_of_all.reset();
}
