// Walks one road of the program on the files of a folder, as a process does between two clicks, and says what
// there is after it. tests/faults/faults.py lets its calls to the disk fail.
//
//   fault_roads prepare HOME sqlite|access   a home as it is after some months
//   fault_roads walk ROAD HOME               prints each box that the program shows
//   fault_roads state HOME                   the next start, and what it finds: a line each, name and content
//   fault_roads kills FILE KILLS SEED        kills a process in the midst of its saves into a database, so
//                                            often; what it had saved must be there

#include "customers/customer_form.h"
#include "db_tools/database_form.h"
#include "db_tools/restore_name_form.h"
#include "documents/letterhead_form.h"
#include "e_invoice/desk.h"
#include "failure.h"
#include "invoices/invoice_form.h"
#include "places.h"
#include "platform/posix/first_fill.h"
#include "platform/posix/settings_file.h"
#include "platform/report_file.h"
#include "preferences/tax_preferences.h"
#include "program/session_fields.h"
#include "program/version.h"
#include "shell/issuer_name_form.h"
#include "shell/main_window.h"
#include "shell/session.h"
#include "store/archive_check.h"
#include "support/fake_platform.h"
#include "support/invoice_columns.h"
#include "support/program_test.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <stdexcept>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvello::testing {
namespace {

namespace fs = std::filesystem;

void say(const std::string& what) {
    std::string line = what;
    std::replace(line.begin(), line.end(), '\n', ' ');
    line += '\n';
    // One call, which the log of the calls shows in its place among them.
    [[maybe_unused]] const auto written = ::write(STDOUT_FILENO, line.data(), line.size());
}

/// Answers yes, and tells what was said.
class TellingBoxes final : public MessageBoxes {
public:
    Answer show(const MessageBox& box) override {
        say("box: " + box.text);
        return box.buttons == BoxButtons::yes_no ? Answer::yes : Answer::ok;
    }
};

class TellingCopies final : public CopyDialog {
public:
    bool may_replace(const std::string&) override { return true; }
    void begin(const std::string&) override {}
    bool advance(std::uint64_t, std::uint64_t) override { return true; }
    void end() override {}
    void report_failure(const std::string& description) override { say("failure: " + description); }
};

/// The windows that a road meets by the way, each with its user.
class RoadWindows final : public Windows {
public:
    void show(Form&) override {}
    void show_modal(Form& form) override {
        shown_ = &form;
        if (auto* name = dynamic_cast<frmRegister*>(&form)) {
            name->Text1.set_text("Studio"); // kept with every key, it would grow from start to start
            name->Command1.click();
        } else if (auto* file = dynamic_cast<frmRipristinaBackup*>(&form)) {
            file->Text1.type("tarvello.mdb");
        }
        if (shown_ == &form) form.close_by_user();
    }
    void close(Form& form) override {
        if (shown_ == &form) shown_ = nullptr;
    }
    void set_pointer(Pointer) override {}
    void repaint() override {}
    void stop_waiting() override {}
    bool deserted() const override { return false; }
    void pause(int) override {}
    void quit() override {}
    [[noreturn]] void abort(int exit_status) override { throw ProcessEnded{exit_status}; }

private:
    Form* shown_ = nullptr;
};

/// The program on the files below a home.
struct Home {
    explicit Home(const fs::path& folder)
        : home(folder), settings((folder / "config/impostazioni").string(), (folder / "program").string()) {}

    Platform platform() {
        Platform platform = fake.platform();
        return {boxes,
                fake.dialogs,
                settings,
                fake.clock,
                fake.desktop,
                windows,
                fake.files,
                copies,
                fake.pictures,
                fake.word_processor,
                fake.reports,
                platform.regional,
                (home / "program").string(),
                (home / "originali").string(),
                (home / "state").string(),
                '/'};
    }
    std::string in(const std::string& name) const { return (home / name).string(); }

    fs::path home;
    FakePlatform fake;
    SettingsFile settings;
    TellingBoxes boxes;
    TellingCopies copies;
    RoadWindows windows;
};

// A home as it is after some months

void put(const fs::path& path, const std::string& content) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

std::string insert_text(const std::string& table, const std::vector<std::string>& columns,
                        const std::string& suffix) {
    std::string names;
    std::string values;
    for (const std::string& column : columns) {
        const bool plain = column == "Numero_Fattura" || column == "Numero_Cliente";
        const std::string value = plain                      ? "1"
                                  : column == "Anno"         ? "2005"
                                  : column == "Data_Fattura" ? "05/03/2005"
                                                             : column + suffix;
        names += (names.empty() ? "" : ",") + column;
        values += (values.empty() ? "'" : ",'") + value + "'";
    }
    return "INSERT INTO " + table + " (" + names + ") VALUES (" + values + ")";
}

void fill_database(const std::string& path, int invoices, const std::string& suffix) {
    const RegionalSettings regional;
    Connection connection(regional);
    connection.open(path);
    connection.execute("INSERT INTO Clienti (Cognome_Ragione_Sociale,Nome,Codice_Fiscale,Indirizzo,CAP,"
                       "Provincia,Città) VALUES ('Rossi','Anna','RSSNNA80A41H501X','Via Roma 1','00100','RM',"
                       "'Roma')");
    connection.execute(
        insert_text("DatiIntestazione",
                    {"Nome_Azienda", "Indirizzo", "Telefono", "Fax", "Codice_Fiscale", "Partita_IVA", "email",
                     "Descrizione_Attività", "Banca", "ABI", "CAB", "CC"},
                    suffix));
    for (int i = 0; i < invoices; ++i) connection.execute(insert_text("Fatture", invoice_columns, suffix));
}

constexpr int electronic_invoice = 501; ///< its key, after those that fill the database

/// An invoice of which an electronic one can be made, and what that needs to be told once.
void add_electronic_invoice(const std::string& path) {
    const RegionalSettings regional;
    Connection connection(regional);
    connection.open(path);
    connection.execute("UPDATE DatiIntestazione SET Codice_Fiscale='DNGNCL75E14F205Y',"
                       "Partita_IVA='01234560157',email=''");
    e_invoice::Records records(connection);
    e_invoice::Issuer issuer = records.issuer();
    issuer.Nome = "Niccolò";
    issuer.Cognome = "D'Angelo";
    issuer.CAP = "20122";
    issuer.Comune = "Milano";
    issuer.RegimeFiscale = "RF01";
    records.save_issuer(issuer);
    records.save_customer(1, {});
    connection.execute(
        "INSERT INTO Fatture (Numero_Fattura,Data_Fattura,Anno,Numero_Cliente,Partita_IVA,"
        "Cognome_Ragione_Sociale,Indirizzo,CAP,Provincia,Città,Prestazione1,Importo1,Imponibile,Aliquota_IVA,"
        "Imposta_IVA,Totale_Fattura,Importo_Netto) VALUES ('2','05/03/2005','2005',1,'05432100963','Rossi',"
        "'Via Roma 1','00100','RM','Roma','Parere','€ 100,00','€ 100,00','20','€ 20,00','€ 120,00','€ "
        "120,00')");
}

void prepare(const fs::path& home, bool access) {
    const auto database = [&](const fs::path& path, int invoices, const std::string& suffix) {
        fs::create_directories(path.parent_path());
        if (access) {
            fs::copy_file(TARVELLO_TEST_DATA "/data/access/vuoto.mdb", path);
            fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
        } else {
            make_database(path.string());
        }
        fill_database(path.string(), invoices, suffix);
    };
    database(home / "originali/tarvello.mdb", 0, " nuovo");
    put(home / "originali/Comuni.mdb", std::string(60, '-') + "0001....TvCo");
    put(home / "originali/modelli/Standard.rtf", "%Anno%");
    database(home / "program/tarvello.mdb", electronic_invoice - 1, "");
    add_electronic_invoice((home / "program/tarvello.mdb").string());
    put(home / "fatture/altro.txt", "");
    put(home / "program/Comuni.mdb", std::string(60, '-') + "0001....TvCo");
    put(home / "program/modelli/Standard.rtf", "%Anno%");
    put(home / "program/modelli/mio.rtf", "vecchio");
    put(home / "program/modelli/print.conf", (home / "program/modelli/Standard.rtf").string() + "\r\n");
    put(home / "program/.tarvello-completa", "");
    database(home / "stick/altro.mdb", 20, " altro");
    fs::copy_file(home / "program/tarvello.mdb", home / "stick/copia.bak");
    fs::copy_file(home / "stick/altro.mdb", home / "stick/esportato.mdb");
    put(home / "stick/mio.rtf", "nuovo");
    put(home / "stick/fattura.rtf", "vecchia");
    put(home / "stick/fattura.pdf", "vecchia");
    put(home / "stick/logo.jpg", "");
    Home made(home);
    const std::pair<const char*, const char*> values[] = {{"txtContatoreAccessi", "5"},
                                                          {"txtDataUltimoAggiornamento", "04/03/2006"},
                                                          {"txtGiorniTraCuiAvvisare", "0"},
                                                          {"txtProfessione", "Rivalsa"},
                                                          {"Text1", "Studio"}};
    for (const auto& [section, value] : values) made.settings.write(application_name, section, "text", value);
    made.settings.write(application_name, "TxtDestinazioneBackup", "text",
                        (home / "stick/copia.bak").string());
}

// The roads

using Road = std::function<void(Program&, Home&)>;

void save_customer(Program& program, Home&) {
    auto& form = program.form<frmClienti>();
    form.Toolbar1.press("Nuovo Cliente");
    const std::pair<std::size_t, const char*> texts[] = {
        {customer_box::cognome, "Verdi"},   {customer_box::codice_fiscale, "VRDGPP80A01H501U"},
        {customer_box::indirizzo, "Via 2"}, {customer_box::cap, "20100"},
        {customer_box::provincia, "MI"},    {customer_box::citta, "Milano"}};
    for (const auto& [box, text] : texts) form.txtfields[box].type(text);
    form.Toolbar1.press("Nuovo Cliente");
}

void change_customer(Program& program, Home&) {
    auto& form = program.form<frmClienti>();
    form.Toolbar1.press("Modifica Dati");
    form.txtfields[customer_box::nome].type("bella");
    form.Toolbar1.press("Modifica Dati");
}

void save_invoice(Program& program, Home&) {
    auto& form = program.form<frmTarvello>();
    form.Toolbar1.press("Nuova Fattura");
    form.customer.ComboNumeroCliente.set_text("1");
    const char* const person[] = {"RSSNNA80A41H501X", "Via Roma 1", "00100", "RM", "Roma", "Rossi"};
    for (std::size_t i = 0; i < std::size(person); ++i) form.customer.txtAnagrafica[i].set_text(person[i]);
    form.SbloccaAnagrafica();
    form.ComboIVAApplicata.set_text("20");
    form.PrestazioneSingola[0].set_text("Parere");
    form.txtImportoPrestazioni[0].set_text("€ 100,00");
    form.Toolbar1.press("Nuova Fattura");
}

void create_electronic_invoice(Program& program, Home& home) {
    e_invoice::telling_failures(program, [&] {
        e_invoice::Desk desk(program);
        desk.settle();
        const e_invoice::Source source = desk.source(desk.invoice(electronic_invoice).value());
        e_invoice::FileCreator creator = desk.creator(home.in("fatture"), source.issuer);
        desk.create(creator, source);
    });
}

void change_preferences(Program& program, Home&) {
    auto& form = program.form<frmImpostazioni>();
    form.ComboRivalsa.choose(1);
    form.Command1.click();
    form.ComboIVAApplicata.choose(2);
    form.Command3.click();
}

void save_letterhead(Program& program, Home& home) {
    home.fake.pictures.sizes[home.in("stick/logo.jpg")] = {100, 100};
    auto& form = program.form<frmIntestazioneFatture>();
    form.txtDescrizione.type("Consulenza");
    home.fake.dialogs.answer_next(home.in("stick/logo.jpg"));
    form.logo.Command7.click();
    form.Command1[0].click();
}

void import_template(Program& program, Home& home) {
    home.fake.dialogs.answer_next(home.in("stick/mio.rtf"));
    program.form<frmIntestazioneFatture>().templates.ImportaModello.click();
}

void choose_template(Program& program, Home&) {
    auto& form = program.form<frmIntestazioneFatture>();
    form.templates.File1.choose(0);
    form.templates.Command5.click();
}

void make_document(Program& program, Home& home) {
    home.fake.dialogs.answer_next(home.in("stick/fattura.rtf"));
    program.form<frmTarvello>().StampaWord.click();
}

void make_pdf(Program& program, Home& home) {
    home.fake.dialogs.answer_next(home.in("stick/fattura.pdf"));
    home.fake.reports.user = [&](const Report& report) {
        save_as_pdf({home.fake.dialogs, home.fake.files, home.copies, home.boxes},
                    [&] { return report.document; });
    };
    program.form<frmTarvello>().cmdStampaFattura.click();
}

void back_up_at_exit(Program& program, Home& home) {
    program.session().CheckBoxBackup.set_checked(true);
    change_customer(program, home);
}

void restore(Program& program, Home& home) {
    auto& form = program.form<frmGestioneDatabase>();
    form.CheckBoxRipristinaBackup.click();
    form.txtSelectedFile.set_text(home.in("stick/altro.mdb"));
    form.Command5.click();
}

void choose_database(Program& program, Home& home) {
    auto& form = program.form<frmGestioneDatabase>();
    form.Option1[1].click();
    form.Text1.set_text(home.in("stick/altro.mdb"));
    form.cmdApriDB.click();
}

void copy_database(Program& program, const std::string& from, const std::string& to) {
    auto& form = program.form<frmGestioneDatabase>();
    form.CheckBoxImportaEsporta.click();
    form.txtOrigine.set_text(from);
    form.txtDest.set_text(to);
    form.cmdImpExp.click();
}

const std::map<std::string, Road>& roads() {
    static const std::map<std::string, Road> all{
        {"first-start", [](Program&, Home&) {}},
        {"settings", change_preferences},
        {"customer", save_customer},
        {"carried-change", change_customer},
        {"invoice", save_invoice},
        {"e-invoice", create_electronic_invoice},
        {"letterhead", save_letterhead},
        {"template", import_template},
        {"print-conf", choose_template},
        {"document", make_document},
        {"pdf", make_pdf},
        {"backup", back_up_at_exit},
        {"restore", restore},
        {"choice", choose_database},
        {"import",
         [](Program& program, Home& home) {
             copy_database(program, home.in("stick/altro.mdb"), home.in("program/tarvello.mdb"));
         }},
        {"export",
         [](Program& program, Home& home) {
             copy_database(program, home.in("program/tarvello.mdb"), home.in("stick/esportato.mdb"));
         }},
    };
    return all;
}

/// @return whether the program ended as it should
bool walk(const std::string& road, const fs::path& folder) {
    Home home(folder);
    try {
        fill_program_directory(home.in("originali"), home.in("program"));
        Program program(home.platform());
        bool whole = false;
        program.run([&] {
            load_session(program);
            roads().at(road)(program, home);
            say("done");
            program.form<MDIForm1>().close_by_user();
            whole = true;
        });
        say("end");
        return whole;
    } catch (const ProcessEnded&) {
        return false;
    }
}

// What there is

std::string sum(const std::string& content) { return std::to_string(std::hash<std::string>()(content)); }

void tell_database(const std::string& name, const std::string& path) {
    const RegionalSettings regional;
    say(name + ":sound\t" + store::why_unsound(path, regional));
    for (const std::string table : {"Clienti", "Fatture", "DatiIntestazione"}) {
        std::string content;
        skip_failures([&] {
            Connection connection(regional);
            connection.open(path);
            const auto rows = connection.execute("SELECT * FROM " + table);
            while (rows->next()) {
                for (std::size_t i = 0; i < rows->columns().size(); ++i)
                    content += store::value_text(rows->value(i), regional) + "\x1f";
            }
        });
        say(name + ":" + table + "\t" + (content.empty() ? "empty" : sum(content)));
    }
}

/// The files of electronic invoices against their entries in the archive, once settle() has had its turn.
void tell_electronic_invoices(Program& program, const fs::path& folder) {
    std::size_t entries = 0;
    bool agree = true;
    skip_failures([&] {
        e_invoice::Desk desk(program);
        desk.settle();
        for (const e_invoice::InvoiceFile& file : desk.records().files()) {
            ++entries;
            agree = agree && file.state == e_invoice::DeliveryState::created &&
                    program.platform().files.read(path_of(file)) == desk.records().xml(file.id);
        }
    });
    const auto files = fs::exists(folder) ? std::distance(fs::directory_iterator(folder), {}) - 1 : 0;
    agree = agree && files == static_cast<std::ptrdiff_t>(entries);
    say("e-invoices\t" + std::string(agree ? "agree" : "differ"));
}

void tell_state(const fs::path& folder) {
    {
        Home home(folder);
        fill_program_directory(home.in("originali"), home.in("program"));
        Program program(home.platform());
        load_session(program);
        say(std::string("connected\t") + (program.session().mnuChiudiDatabase.enabled() ? "yes" : "no"));
        for (const auto* field :
             {&program.session().txtDatabaseRoute, &program.session().txtProfessione,
              &program.session().txt_IVA_default, &program.session().txt_RIVALSA_default,
              &program.session().txtPercorsoLogo, &program.session().TxtDestinazioneBackup}) {
            say("setting:" + field->name() + "\t" + field->text());
        }
        say("setting:name\t" + program.NomeIntestatario);
        tell_electronic_invoices(program, folder / "fatture");
    }
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files) {
        const std::string name = fs::relative(file, folder).string();
        if (name.starts_with("originali") || name.starts_with("config")) continue;
        const bool database =
            name.ends_with(".bak") || (name.ends_with(".mdb") && !name.ends_with("Comuni.mdb"));
        if (database) {
            tell_database(name, file.string());
        } else {
            std::ifstream content(file, std::ios::binary);
            say(name + "\t" + sum({std::istreambuf_iterator<char>(content), {}}));
        }
    }
}

// Kills

/// Saves invoices for ever, and says so by a byte for each.
[[noreturn]] void save_for_ever(const std::string& path, int report) {
    const RegionalSettings regional;
    Connection connection(regional);
    connection.open(path);
    const std::string insert = insert_text("Fatture", invoice_columns, " salvata");
    for (;;) {
        connection.execute(insert);
        if (::write(report, "", 1) != 1) ::_exit(1);
        connection.execute("UPDATE Fatture SET Pagamento='' WHERE ID<5");
    }
}

/// @return bytes that a process killed after so many microseconds has written
std::size_t saves_until_kill(const std::string& path, unsigned microseconds) {
    int report[2];
    if (::pipe(report) != 0) throw std::runtime_error("no pipe");
    const pid_t child = ::fork();
    if (child == 0) save_for_ever(path, report[1]);
    ::close(report[1]);
    ::usleep(microseconds);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    std::size_t saves = 0;
    for (char byte = 0; ::read(report[0], &byte, 1) == 1;) ++saves;
    ::close(report[0]);
    return saves;
}

std::size_t invoices_in(const std::string& path) {
    const RegionalSettings regional;
    Connection connection(regional);
    connection.open(path);
    const auto rows = connection.execute("SELECT * FROM Fatture");
    std::size_t count = 0;
    while (rows->next()) ++count;
    return count;
}

/// @return what is wrong, if anything
std::string kill_saves(const std::string& path, int kills, unsigned seed) {
    constexpr unsigned longest = 30'000; // microseconds: some saves
    const std::string fresh = path + ".fresh";
    fs::copy_file(path, fresh);
    std::minstd_rand chance(seed);
    std::size_t known = invoices_in(path);
    const std::size_t at_first = known;
    std::size_t saves = 0;
    for (int kill = 1; kill <= kills; ++kill) {
        const std::size_t said = saves_until_kill(path, static_cast<unsigned>(chance() % longest));
        saves += said;
        const std::size_t there = invoices_in(path);
        if (there < known + said || there > known + said + 1)
            return "kill " + std::to_string(kill) + ": " + std::to_string(there) + " rows, " +
                   std::to_string(known + said) + " were saved";
        const std::string unsound = store::why_unsound(path, RegionalSettings());
        if (!unsound.empty()) return "kill " + std::to_string(kill) + ": " + unsound;
        known = there;
        if (kill % 100 != 0 || kill == kills) continue;
        fs::copy_file(fresh, path, fs::copy_options::overwrite_existing); // it has become long
        known = at_first;
    }
    fs::remove(fresh);
    say(std::to_string(kills) + " kills, " + std::to_string(saves) + " saves");
    return {};
}

int run(const std::vector<std::string>& arguments) {
    if (arguments.size() == 4 && arguments[0] == "kills") {
        const std::string wrong =
            kill_saves(arguments[1], std::stoi(arguments[2]), static_cast<unsigned>(std::stoi(arguments[3])));
        if (!wrong.empty()) say(wrong);
        return wrong.empty() ? 0 : 1;
    }
    if (arguments.size() == 3 && arguments[0] == "prepare") {
        prepare(arguments[1], arguments[2] == "access");
        return 0;
    }
    if (arguments.size() == 3 && arguments[0] == "walk") return walk(arguments[1], arguments[2]) ? 0 : 1;
    if (arguments.size() == 2 && arguments[0] == "state") {
        tell_state(arguments[1]);
        return 0;
    }
    if (arguments.size() == 1 && arguments[0] == "roads") {
        for (const auto& [name, road] : roads()) say(name);
        return 0;
    }
    return 2;
}

} // namespace
} // namespace tarvello::testing

int main(int argc, char** argv) {
    return tarvello::testing::run(std::vector<std::string>(argv + 1, argv + argc));
}
