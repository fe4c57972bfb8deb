// Runs a statement on a database, reads all its rows, and prints the most memory that the process has taken,
// in megabytes.
#include "store/database.h"

#include "failure.h"

#include <cstdio>
#include <sys/resource.h>

int main(int argc, char** argv) {
    using namespace tarvello;
    if (argc != 3) return 2;
    try {
        const RegionalSettings regional;
        Connection connection(regional);
        connection.open(argv[1]);
        const auto rows = connection.execute(argv[2]);
        while (rows && rows->next()) {
        }
    } catch (const Failure& failure) {
        std::fprintf(stderr, "%s\n", failure.description().c_str());
        return 1;
    }
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf("%.3f\n", static_cast<double>(usage.ru_maxrss) * 1024 / 1e6);
}
