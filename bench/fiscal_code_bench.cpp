// The fiscal code.

#include "row.h"

#include "fiscal_code/fiscal_code.h"

#include <array>

namespace tarvello::bench {
namespace {

void fiscal_code(benchmark::State& state) {
    struct Person {
        const char* surname;
        const char* name;
        const char* sex;
    };
    constexpr std::array<Person, 4> people{{{"Rossi", "Mario", "Maschio"},
                                            {"D'Angelo", "Maria Teresa", "Femmina"},
                                            {"Müller", "Jürgen", "Maschio"},
                                            {"Alò", "Noè", "Maschio"}}};
    std::size_t next = 0;
    for (auto _ : state) {
        const Person& person = people[next++ % people.size()];
        benchmark::DoNotOptimize(
            CalcoloCodFis(person.surname, person.name, make_date(1980, 1, 1), person.sex, "H501"));
    }
}

const bool registered = [] {
    row_within("one fiscal code", fiscal_code, 1);
    return true;
}();

} // namespace
} // namespace tarvello::bench
