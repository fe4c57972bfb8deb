// Makes Comuni.mdb, the table of the places of birth, from comuni.csv:
//     make_municipalities comuni.csv Comuni.mdb

#include "store/sqlite/sqlite_functions.h"
#include "text/letter_case.h"

#include <sqlite3.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

struct Place {
    std::string name;
    std::string province;
    std::string code;
    std::string last_day; // year-month-day; empty for what exists today

    bool exists_today() const { return last_day.empty(); }
};

std::vector<Place> read_places(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    if (line != "nome;provincia;codice;dal;al") throw std::runtime_error(path + ": not the columns expected");
    std::vector<Place> places;
    while (std::getline(file, line)) {
        std::vector<std::string> fields;
        std::stringstream rest(line + ';');
        for (std::string field; std::getline(rest, field, ';');) fields.push_back(field);
        if (fields.size() != 5) throw std::runtime_error(path + ": not five fields: " + line);
        places.push_back({fields[0], fields[1], fields[2], fields[4]});
    }
    return places;
}

/// Makes the names unique, so that typing can reach each: who shares a name gets in brackets the province,
/// and a past one the year of its end. What exists today gives way only to what exists today.
void name_apart(std::vector<Place>& places) {
    struct Sharing {
        int today = 0;
        int past = 0;
    };
    std::map<std::string, Sharing> sharing;
    for (const Place& place : places) {
        Sharing& same_name = sharing[tarvello::fold_case(place.name)];
        ++(place.exists_today() ? same_name.today : same_name.past);
    }
    for (Place& place : places) {
        const Sharing& same_name = sharing.at(tarvello::fold_case(place.name));
        if (place.exists_today() && same_name.today > 1) {
            place.name += " (" + place.province + ")";
        } else if (!place.exists_today() && same_name.today + same_name.past > 1) {
            place.name += " (" + place.province + ", fino al " + place.last_day.substr(0, 4) + ")";
        }
    }
}

constexpr int application_id = 0x5476436F; // "TvCo"

/// A number that tells one list from another (FNV-1a).
std::int32_t digest(const std::vector<Place>& places) {
    std::uint32_t sum = 2166136261U;
    for (const Place& place : places) {
        for (const unsigned char byte : place.name + ';' + place.province + ';' + place.code + ';') {
            sum = (sum ^ byte) * 16777619U;
        }
    }
    return static_cast<std::int32_t>(sum);
}

class Writer {
public:
    explicit Writer(const std::string& path) {
        std::filesystem::remove(path);
        need(sqlite3_open(path.c_str(), &database_));
        tarvello::store::register_sqlite_functions(database_);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { sqlite3_close(database_); }

    void run(const std::string& sql) {
        need(sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr));
    }

    void add(const std::vector<Place>& places) {
        sqlite3_stmt* insert = nullptr;
        need(sqlite3_prepare_v2(database_, "INSERT INTO Comuni VALUES (?,?,?)", -1, &insert, nullptr));
        for (const Place& place : places) {
            int column = 0;
            for (const std::string* text : {&place.name, &place.province, &place.code}) {
                need(sqlite3_bind_text(insert, ++column, text->c_str(), -1, SQLITE_STATIC));
            }
            if (sqlite3_step(insert) != SQLITE_DONE) need(sqlite3_reset(insert));
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
    }

private:
    void need(int result) {
        if (result != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(database_));
    }

    sqlite3* database_ = nullptr;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("make_municipalities comuni.csv Comuni.mdb\n", stderr);
        return 2;
    }
    try {
        std::vector<Place> places = read_places(argv[1]);
        name_apart(places);
        Writer writer(argv[2]);
        writer.run("BEGIN");
        writer.run("CREATE TABLE Comuni (COMU_DESCR TEXT NOT NULL, COMU_PROV TEXT NOT NULL, "
                   "COMU_COD TEXT NOT NULL)");
        writer.add(places);
        // Unique: two places of one name would stop the build. The collation is the index's alone, so that
        // other programs can read the table.
        writer.run("CREATE UNIQUE INDEX COMUNI2L ON Comuni (COMU_DESCR COLLATE ignoring_case)");
        writer.run("COMMIT");
        // A start of the program tells by these that this is a list of its own, and whether it is another
        // one.
        writer.run("PRAGMA application_id=" + std::to_string(application_id));
        writer.run("PRAGMA user_version=" + std::to_string(digest(places)));
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "make_municipalities: %s\n", failure.what());
        return 1;
    }
}
