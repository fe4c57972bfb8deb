#include "store/access/catalogue_rows.h"

#include "store/access/index_key.h"
#include "store/access/named_row.h"
#include "store/access/stored_text.h"
#include "text/letter_case.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <ctime>

namespace tarvello::store::access {
namespace {

using namespace format::catalogue;

/// A row to be, its columns by name.
class NewRow {
public:
    explicit NewRow(const TableDefinition& table) : table_(table), values_(table.columns.size()) {}

    void set(const char* column, std::vector<std::uint8_t> stored) {
        values_[place_of(table_, column)] = std::move(stored);
    }
    void set_whole(const char* column, std::int64_t number) {
        set(column, store_value(ValueView(number), table_.columns[place_of(table_, column)]));
    }
    /// A number of 32 bits whose highest is no sign.
    void set_word(const char* column, std::uint32_t word) {
        set_whole(column, static_cast<std::int32_t>(word));
    }

    const StoredValues& values() const { return values_; }

private:
    const TableDefinition& table_;
    StoredValues values_;
};

std::shared_ptr<const TableDefinition> known(const Catalogue& catalogue, const char* name) {
    auto table = catalogue.find(name);
    if (!table) throw damaged(std::string("manca la tabella ") + name);
    for (const IndexDefinition& index : table->indexes) {
        for (const IndexColumn& part : index.columns) {
            const ColumnDefinition& column = table->columns[part.column];
            if (key_is_known(column) && is_proven(column, part.ascending)) continue;
            throw not_writable(
                "Nel file Access non si possono creare tabelle: il suo catalogo ordina i nomi in un "
                "modo sconosciuto.");
        }
    }
    return table;
}

std::uint32_t word_of(const NamedRow& row, const char* column) {
    return static_cast<std::uint32_t>(row.whole(column));
}

} // namespace

CatalogueRows::CatalogueRows(PageStore& store, const Catalogue& catalogue)
    : store_(store), objects_(known(catalogue, "MSysObjects")), rights_(known(catalogue, "MSysACEs")) {}

bool CatalogueRows::has_object(std::uint32_t parent, const std::string& name) const {
    bool found = false;
    for_each_row(store_, *objects_, [&](const NamedRow& row) {
        found = word_of(row, "ParentId") == parent && equal_ignoring_case(row.text("Name"), name);
        return !found;
    });
    return found;
}

Sid CatalogueRows::owner_of(std::uint32_t object) const {
    Sid owner;
    for_each_row(store_, *objects_, [&](const NamedRow& row) {
        if (word_of(row, "Id") == object) owner = row.bytes("Owner");
        return owner.empty();
    });
    if (owner.empty()) throw damaged("il catalogo non dice di chi sono le tabelle");
    return owner;
}

std::vector<CatalogueRows::Right> CatalogueRows::rights_of_new_table(const Sid& owner) const {
    const Sid creator = related_sid(owner_of(tables_id), creator_mark);
    std::vector<Right> rights;
    for_each_row(store_, *rights_, [&](const NamedRow& row) {
        if (word_of(row, "ObjectId") != tables_id || !row.yes("FInheritable")) return true;
        Right right{row.bytes("SID"), word_of(row, "ACM")};
        if (right.sid == creator) right.sid = owner;
        const auto same = std::ranges::find(rights, right.sid, &Right::sid);
        if (same == rights.end()) {
            rights.push_back(std::move(right));
        } else {
            same->mask |= right.mask;
        }
        return true;
    });
    return rights;
}

void CatalogueRows::add_table(PageNumber page, const std::string& name) {
    const Sid owner = owner_of(database_id);
    add_object({page, tables_id, name}, owner);
    for (const Right& right : rights_of_new_table(owner)) add_right(page, right.sid, right.mask, false);
}

void CatalogueRows::add_object(const CatalogueObject& object, const Sid& owner) {
    NewRow row(*objects_);
    row.set_word("Id", object.id);
    row.set_word("ParentId", object.parent);
    row.set("Name", encode_utf16(object.name));
    row.set_whole("Type", object.type);
    std::vector<std::uint8_t> now(sizeof(double));
    store64(now.data(), std::bit_cast<std::uint64_t>(catalogue_time()));
    row.set("DateCreate", now);
    row.set("DateUpdate", now);
    row.set("Owner", owner);
    row.set_word("Flags", object.flags);
    TableWriter(store_, *objects_).insert_stored(row.values());
}

void CatalogueRows::add_right(std::uint32_t object, const Sid& sid, std::uint32_t mask, bool inheritable) {
    NewRow row(*rights_);
    row.set_word("ObjectId", object);
    row.set("SID", sid);
    row.set_word("ACM", mask);
    if (inheritable) row.set("FInheritable", {});
    TableWriter(store_, *rights_).insert_stored(row.values());
}

Sid related_sid(const Sid& engine, std::uint16_t mark) {
    Sid sid = engine;
    if (sid.size() == sizeof mark) store16(sid.data(), load16(sid.data()) ^ mark);
    return sid;
}

double catalogue_time() {
    using namespace std::chrono;
    const auto now = floor<milliseconds>(system_clock::now());
    const std::time_t seconds = system_clock::to_time_t(now);
    std::tm local{};
    if (::localtime_r(&seconds, &local) == nullptr) return 0;
    const sys_days day = year(local.tm_year + 1900) / (local.tm_mon + 1) / local.tm_mday;
    const milliseconds time = hours(local.tm_hour) + minutes(local.tm_min) +
                              std::chrono::seconds(local.tm_sec) + now.time_since_epoch() % 1s;
    constexpr double day_length = milliseconds(days(1)).count();
    return static_cast<double>((day - first_day).count()) + static_cast<double>(time.count()) / day_length;
}

} // namespace tarvello::store::access
