// The readers and writers of indexes. The pages of the indexes of a sample are patched; then they are walked
// both ways, searched, and written to.
#include "patched_file.h"

#include "failure.h"
#include "store/access/catalogue.h"
#include "store/access/index_cursor.h"
#include "store/access/index_writer.h"

#include <cstdlib>

using namespace tarvello;
using namespace tarvello::store::access;

namespace {

/// Enough to cross from leaf to leaf where the entries are long; more would cost inputs.
constexpr int most_entries = 200;

void use(PageStore& store, const IndexDefinition& index) {
    const auto guarded = [](auto&& work) {
        try {
            work();
        } catch (const Failure& failure) {
            if (failure.description().empty()) std::abort();
        }
    };
    IndexCursor cursor(store, index);
    guarded([&] {
        int left = most_entries;
        for (bool found = cursor.first(); found && left > 0; found = cursor.next()) --left;
    });
    guarded([&] {
        int left = most_entries;
        for (bool found = cursor.last(); found && left > 0; found = cursor.previous()) --left;
    });
    const Key key{0x7F, 0x80, 0x00, 0x01, 0x00};
    guarded([&] { cursor.first_not_below(key); });
    guarded([&] { cursor.last_below(key); });
    guarded([&] {
        store.begin();
        PageAllocator allocator(store);
        IndexWriter writer(store, allocator, index);
        writer.insert(key, {77, 7});
        writer.erase(key, {77, 7});
        if (cursor.first()) writer.erase(Key(cursor.key()), cursor.row());
    });
    store.roll_back();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const PatchedFile file(TARVELLO_TEST_DATA "/data/access/indici.mdb", data, size);
    try {
        PageStore store(file.path(), nullptr);
        for (const char* name : {"Clienti", "Fatture"}) {
            const auto table = Catalogue(store).find(name);
            if (!table) continue;
            for (const IndexDefinition& index : table->indexes) use(store, index);
        }
    } catch (const Failure& failure) {
        if (failure.description().empty()) std::abort();
    }
    return 0;
}
