// Makes a new SQLite file by a script of SQL:
//     make_database script.sql new.mdb
// A file that is there already is replaced.

#include <sqlite3.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: make_database script.sql new.mdb\n", stderr);
        return 2;
    }
    const char* const script_path = argv[1];
    const char* const database_path = argv[2];
    std::ifstream file(script_path, std::ios::binary);
    const std::string script(std::istreambuf_iterator<char>(file), {});
    if (!file) {
        std::fprintf(stderr, "%s cannot be read\n", script_path);
        return 1;
    }

    std::filesystem::remove(database_path);
    sqlite3* database = nullptr;
    int code = sqlite3_open(database_path, &database);
    if (code == SQLITE_OK) {
        code = sqlite3_exec(database, ("BEGIN;" + script + ";COMMIT;").c_str(), nullptr, nullptr, nullptr);
    }
    if (code != SQLITE_OK) std::fprintf(stderr, "%s: %s\n", script_path, sqlite3_errmsg(database));
    sqlite3_close(database);
    if (code != SQLITE_OK) std::filesystem::remove(database_path);
    return code == SQLITE_OK ? 0 : 1;
}
