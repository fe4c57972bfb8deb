#include "store/stale_journal.h"

#include <ctime>
#include <filesystem>

namespace tarvello::store {

std::string name_put_aside(const std::string& journal) {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    char date[32] = "";
    if (::localtime_r(&now, &parts) != nullptr)
        std::strftime(date, sizeof date, "-%Y-%m-%d-%H.%M.%S", &parts);
    std::string name = journal + date;
    std::error_code ignored; // what cannot be looked at, cannot be in the way
    for (int number = 2; std::filesystem::exists(name, ignored); ++number)
        name = journal + date + "-" + std::to_string(number);
    return name;
}

std::string words_of_stale_journal(const std::string& database, const std::string& put_aside_as) {
    return "Una scrittura nel file \"" + database +
           "\" si era interrotta, e da allora il file è stato cambiato o sostituito. Il diario che serviva "
           "ad annullarla non vale più: è stato messo da parte con il nome \"" +
           put_aside_as +
           "\" e il file è rimasto com'era. Controllare che non vi manchi nulla; se manca qualcosa, "
           "ripristinare l'ultima copia.";
}

} // namespace tarvello::store
