#include "store/engine.h"

#include "store/access/access_engine.h"
#include "store/file_kind.h"
#include "store/sqlite/sqlite_engine.h"

namespace tarvello::store {

std::unique_ptr<Engine> open_engine(const std::string& path, const RegionalSettings& regional) {
    switch (kind_of_file(path)) {
    case FileKind::sqlite:
        return open_sqlite_engine(path, regional);
    case FileKind::access:
        return open_access_engine(path, regional);
    case FileKind::other:
        break;
    }
    throw cannot_open(failure_number::database, path, "il file non è un database");
}

} // namespace tarvello::store
