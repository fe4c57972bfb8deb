#include "store/same_archive.h"

#include "failure.h"
#include "store/database.h"

#include <array>
#include <map>

namespace tarvello::store {
namespace {

/// Whom a row is about.
struct Person {
    std::string fiscal_code;
    std::string vat_number;
    std::string surname;
    std::string name;

    /// One who has been renamed or has got another number is still the same.
    bool is(const Person& other) const {
        if (!fiscal_code.empty() && fiscal_code == other.fiscal_code) return true;
        if (!vat_number.empty() && vat_number == other.vat_number) return true;
        return surname == other.surname && name == other.name;
    }
};

/// The customers and the customers on invoices, by their table and key.
struct People {
    std::map<std::pair<int, std::string>, Person> rows;
    bool has_the_tables = true;
};

struct Source {
    const char* query;
    const char* key;
};
constexpr std::array sources{Source{"SELECT * FROM Clienti", "Numero_Cliente"},
                             Source{"SELECT * FROM Fatture", "ID"}};

People people_in(const std::string& path, const RegionalSettings& regional) {
    Connection connection(regional);
    connection.open(path);
    People people;
    try {
        for (std::size_t table = 0; table < sources.size(); ++table) {
            Recordset row;
            for (row.open(sources[table].query, connection); !row.eof(); row.move_next()) {
                people.rows[{static_cast<int>(table), row.text_or_empty(sources[table].key)}] = {
                    row.text_or_empty("Codice_Fiscale"), row.text_or_empty("Partita_IVA"),
                    row.text_or_empty("Cognome_Ragione_Sociale"), row.text_or_empty("Nome")};
            }
        }
    } catch (const Failure&) { // somebody else's tables
        people.has_the_tables = false;
    }
    return people;
}

} // namespace

bool holds_what_was_in(const std::string& now, const std::string& before, const RegionalSettings& regional) {
    const People held = people_in(before, regional);
    const People holds = people_in(now, regional);
    if (held.has_the_tables != holds.has_the_tables) return false;
    std::size_t lost = 0;
    for (const auto& [key, person] : held.rows) {
        const auto found = holds.rows.find(key);
        if (found == holds.rows.end() || !person.is(found->second)) ++lost;
    }
    return lost * 10 <= held.rows.size();
}

} // namespace tarvello::store
