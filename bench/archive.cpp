#include "archive.h"

#include "text/currency.h"
#include "text/letter_case.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

namespace tarvello::bench {
namespace {

constexpr std::array surnames{
    "Rossi",     "Russo",   "Ferrari",   "Esposito",   "Bianchi",    "Romano",     "Colombo",
    "Ricci",     "Marino",  "Greco",     "Bruno",      "Gallo",      "Conti",      "De Luca",
    "Mancini",   "Costa",   "Giordano",  "Rizzo",      "Lombardi",   "Moretti",    "Barbieri",
    "Fontana",   "Santoro", "Mariani",   "Rinaldi",    "Caruso",     "Ferrara",    "Galli",
    "Martini",   "Leone",   "Longo",     "Gentile",    "Martinelli", "Vitale",     "Lombardo",
    "Serra",     "Coppola", "De Santis", "D'Angelo",   "Marchetti",  "Parisi",     "Villa",
    "Conte",     "Ferraro", "Ferri",     "Fabbri",     "Bianco",     "Marini",     "Grasso",
    "Valentini", "Messina", "Sala",      "De Angelis", "Gatti",      "Pellegrini", "Palumbo",
    "Sanna",     "Farina",  "Rizzi",     "Monti",      "Cattaneo",   "Morelli",    "Amato",
    "Silvestri", "Mazza",   "Testa",     "Grassi",     "Pellegrino", "Carbone",    "Giuliani",
    "Benedetti", "Barone",  "Rossetti",  "Caputo",     "Montanari",  "Guerra",     "Palmieri",
    "Bernardi",  "Martino", "Fiore",     "D'Amico",    "Sorrentino", "Nicolò",     "Dalmò",
    "Calò",      "Nicolì",  "Schirò",    "Boè"};
constexpr std::array first_names{"Mario",   "Luca",    "Giuseppe",  "Antonio", "Giovanni",   "Paolo",
                                 "Andrea",  "Marco",   "Francesco", "Anna",    "Maria",      "Giulia",
                                 "Chiara",  "Sara",    "Francesca", "Elena",   "Alessandra", "Niccolò",
                                 "Roberto", "Stefano", "Simone",    "Matteo",  "Davide",     "Nicolò",
                                 "Silvia",  "Laura",   "Valentina", "Giorgia", "Martina",    "Federica"};
constexpr std::array companies{"Officine",         "Studio Tecnico", "Edilizia",   "Cooperativa",
                               "Società Agricola", "Farmacia",       "Tipografia", "Impresa"};
constexpr std::array forms{"S.r.l.", "S.p.A.", "S.n.c.", "& Figli"};
constexpr std::array streets{
    "Via Roma",    "Via Garibaldi",    "Corso Italia",       "Piazza Dell'Unità", "Viale della Libertà",
    "Via Mazzini", "Via XX Settembre", "Largo Sant'Antonio", "Via dei Mille",     "Strada Provinciale"};
struct Town {
    const char* name;
    const char* province;
    const char* postal_code;
};
constexpr std::array<Town, 16> towns{{{"Roma", "RM", "00184"},
                                      {"Milano", "MI", "20121"},
                                      {"Napoli", "NA", "80133"},
                                      {"Torino", "TO", "10122"},
                                      {"Forlì", "FC", "47121"},
                                      {"Cantù", "CO", "22063"},
                                      {"L'Aquila", "AQ", "67100"},
                                      {"Bologna", "BO", "40124"},
                                      {"Firenze", "FI", "50122"},
                                      {"Bari", "BA", "70121"},
                                      {"Reggio Emilia", "RE", "42121"},
                                      {"Venezia", "VE", "30124"},
                                      {"Genova", "GE", "16121"},
                                      {"Palermo", "PA", "90133"},
                                      {"Nardò", "LE", "73048"},
                                      {"Aci Sant'Antonio", "CT", "95025"}}};
constexpr std::array services{"Consulenza professionale",  "Progettazione preliminare dell'impianto",
                              "Sopralluogo e rilievo",     "Redazione della perizia di stima",
                              "Direzione lavori",          "Assistenza in giudizio",
                              "Pratica catastale",         "Formazione del personale",
                              "Dichiarazione dei redditi", "Analisi di laboratorio"};

/// The nth value of the random sequence decides; the same in every run, whatever the library.
class Dice {
public:
    std::size_t below(std::size_t end) { return engine_() % end; }
    template <typename Choices>
    const auto& one_of(const Choices& choices) {
        return choices[below(choices.size())];
    }
    std::string digits(int count) {
        std::string text;
        for (int i = 0; i < count; ++i) text += static_cast<char>('0' + below(10));
        return text;
    }
    std::string letters(int count) {
        std::string text;
        for (int i = 0; i < count; ++i) text += static_cast<char>('A' + below(26));
        return text;
    }

private:
    std::mt19937 engine_{2006};
};

using Texts = std::vector<std::string>;

struct Customer {
    std::string surname, name, fiscal_code, vat_number, address, postal_code, province, town;
};

Customer make_customer(Dice& dice) {
    Customer customer;
    if (dice.below(4) == 0) {
        customer.surname =
            std::string(dice.one_of(companies)) + " " + dice.one_of(surnames) + " " + dice.one_of(forms);
        customer.vat_number = dice.digits(11);
        customer.fiscal_code = customer.vat_number;
    } else {
        customer.surname = dice.one_of(surnames);
        customer.name = dice.one_of(first_names);
        customer.fiscal_code = dice.letters(6) + dice.digits(2) + dice.letters(1) + dice.digits(2) +
                               dice.letters(1) + dice.digits(3) + dice.letters(1);
        if (dice.below(2) == 0) customer.vat_number = dice.digits(11);
    }
    const Town& town = dice.one_of(towns);
    customer.address = std::string(dice.one_of(streets)) + ", " + std::to_string(1 + dice.below(200));
    customer.postal_code = town.postal_code;
    customer.province = town.province;
    customer.town = town.name;
    return customer;
}

/// The 41 values of an invoice, in the order of the columns. Amounts as the form computes them.
Texts make_invoice(Dice& dice, int index, const Customer& customer, std::size_t customer_number) {
    const RegionalSettings regional;
    const auto money = [&](double amount) { return currency_text(amount, regional); };
    constexpr int per_year = invoices / (last_year - first_year + 1);
    const int year = first_year + index / per_year;
    const int number = index % per_year + 1;
    const int day_of_year = (index % per_year) * 364 / per_year;
    char date[16];
    std::snprintf(date, sizeof date, "%04d-%02d-%02d", year, 1 + day_of_year / 31, 1 + day_of_year % 28);

    Texts values{std::to_string(number), date,
                 std::to_string(year),   std::to_string(customer_number),
                 customer.fiscal_code,   customer.vat_number,
                 customer.name,          customer.surname,
                 customer.address,       customer.postal_code,
                 customer.province,      customer.town};
    const std::size_t lines = 1 + dice.below(5);
    double sum = 0;
    for (std::size_t line = 0; line < 5; ++line) {
        const double amount = line < lines ? static_cast<double>(1000 + dice.below(150'000)) / 100 : 0;
        sum += amount;
        values.emplace_back(line < lines ? dice.one_of(services) : "");
        values.push_back(line < lines ? money(amount) : "");
    }
    const bool surcharge = dice.below(2) == 0;
    const bool expenses = dice.below(5) == 0;
    const bool withheld = dice.below(3) != 0;
    const bool paid = dice.below(4) != 0;
    const double surcharge_amount = surcharge ? sum * 0.04 : 0;
    const double taxable = sum + surcharge_amount;
    const double tax = taxable * 0.20;
    const double withholding = withheld ? sum * 0.20 : 0;
    const double total = taxable + tax + (expenses ? 16 : 0);
    const auto yes = [](bool ticked) { return ticked ? "Sì" : ""; };
    for (const std::string& value : Texts{
             yes(surcharge), "Rivalsa INPS 4%", surcharge ? "4" : "", money(surcharge_amount), money(taxable),
             "20", money(tax), yes(expenses), expenses ? "0" : "", expenses ? money(16) : "",
             expenses ? "Operazione esente da IVA ai sensi dell'art. 15 D.P.R. 633/72" : "", money(total),
             yes(withheld), money(withholding), withheld ? "20" : "", withheld ? "100" : "",
             money(total - withholding), yes(paid),
             paid ? "Banca Popolare\r\nABI: 05034\r\nCAB: 11702\r\nC/C: 000000123456" : ""}) {
        values.push_back(value);
    }
    return values;
}

void need(bool done, sqlite3* database) {
    if (done) return;
    std::fprintf(stderr, "the archive cannot be made: %s\n", sqlite3_errmsg(database));
    std::exit(1);
}

class Insert {
public:
    Insert(sqlite3* database, const std::string& table, int columns) : database_(database) {
        std::string sql = "INSERT INTO " + table + " VALUES (NULL";
        for (int i = 0; i < columns; ++i) sql += ",?";
        need(sqlite3_prepare_v2(database, (sql + ")").c_str(), -1, &statement_, nullptr) == SQLITE_OK,
             database);
    }
    ~Insert() { sqlite3_finalize(statement_); }

    void row(const Texts& values) {
        int index = 0;
        for (const std::string& value : values)
            sqlite3_bind_text(statement_, ++index, value.data(), static_cast<int>(value.size()),
                              SQLITE_STATIC);
        need(sqlite3_step(statement_) == SQLITE_DONE, database_);
        sqlite3_reset(statement_);
    }

private:
    sqlite3* database_;
    sqlite3_stmt* statement_ = nullptr;
};

void fill(sqlite3* database) {
    Dice dice;
    std::vector<Customer> known;
    Insert customer_rows(database, "Clienti", 12);
    for (int i = 0; i < customers; ++i) {
        const Customer& customer = known.emplace_back(make_customer(dice));
        customer_rows.row({customer.surname, customer.name, customer.fiscal_code, customer.vat_number,
                           customer.address, customer.postal_code, customer.province, customer.town,
                           "06 " + dice.digits(7), "",
                           lower_case(customer.name) + dice.digits(3) + "@esempio.it", ""});
    }
    Insert invoice_rows(database, "Fatture", 41);
    for (int i = 0; i < invoices; ++i) {
        const std::size_t customer = dice.below(known.size());
        invoice_rows.row(make_invoice(dice, i, known[customer], customer + 1));
    }
}

void make_archive(const std::string& path) {
    std::ifstream file(TARVELLO_SCHEMA, std::ios::binary);
    const std::string schema(std::istreambuf_iterator<char>(file), {});
    const std::string unfinished = path + ".new"; // an interrupted run leaves no half archive
    std::filesystem::remove(unfinished);
    sqlite3* database = nullptr;
    need(sqlite3_open(unfinished.c_str(), &database) == SQLITE_OK, database);
    const auto run = [&](const std::string& sql) {
        need(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, database);
    };
    run(schema);
    run("BEGIN");
    fill(database);
    run("INSERT INTO DatiIntestazione VALUES ('Studio Bianchi', 'Via Roma, 1', '06 1234567', '', "
        "'BNCMRA60A01H501X', '01234567890', 'studio@esempio.it', 'Consulenza', 'Banca Popolare', '05034', "
        "'11702', "
        "'000000123456')");
    run("COMMIT");
    sqlite3_close(database);
    std::filesystem::rename(unfinished, path);
}

} // namespace

const std::string& archive_path() {
    static const std::string path = [] {
        const std::filesystem::path file = std::filesystem::path(TARVELLO_BENCH_FOLDER) / "archive.mdb";
        std::filesystem::create_directories(file.parent_path());
        // An archive older than the schema lacks what the schema has since been given.
        if (!std::filesystem::exists(file) ||
            std::filesystem::last_write_time(file) < std::filesystem::last_write_time(TARVELLO_SCHEMA)) {
            make_archive(file);
        }
        return file.string();
    }();
    return path;
}

std::string archive_copy(const std::string& name) {
    const auto copy = std::filesystem::path(TARVELLO_BENCH_FOLDER) / name;
    std::filesystem::copy_file(archive_path(), copy, std::filesystem::copy_options::overwrite_existing);
    // Written out here, and not by the first thing that is measured on it.
    const int file = ::open(copy.c_str(), O_RDONLY);
    ::fsync(file);
    ::close(file);
    return copy.string();
}

} // namespace tarvello::bench
