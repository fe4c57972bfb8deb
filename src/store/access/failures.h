#pragma once

#include "failure.h"
#include "store/failure_source.h"

#include <string>
#include <string_view>

/// What can go wrong with an Access file. Each cause has its own words.
namespace tarvello::store::access {

namespace access_failure {
inline constexpr int damaged = 3343;
inline constexpr int file = 3024;
inline constexpr int in_use = failure_number::in_use;
inline constexpr int not_supported = 3274;
inline constexpr int password = 3031;
inline constexpr int read_only = 3027;
inline constexpr int duplicate = 3022;
inline constexpr int value_missing = 3314;
inline constexpr int too_long = 3163;
inline constexpr int too_large = 3183;
} // namespace access_failure

inline Failure damaged(std::string_view what) {
    return Failure(access_failure::damaged, source,
                   "Il file Access è danneggiato: " + std::string(what) + ".");
}

/// What more than one place finds damaged.
namespace damage {
inline constexpr const char* definition_invalid = "la definizione di una tabella non è valida";
inline constexpr const char* empty_index_page = "una pagina di un indice è vuota";
inline constexpr const char* index_too_deep = "un indice è troppo profondo";
} // namespace damage

inline Failure not_writable(std::string description) {
    return Failure(access_failure::not_supported, source, std::move(description));
}

/// A write has failed, and the disk does not tell whether it is done all the same.
struct OutcomeUnknown : Failure {
    OutcomeUnknown()
        : Failure(access_failure::file, store::source,
                  "Il disco non conferma l'ultima scrittura nell'archivio: non si sa se è riuscita. Chiudere "
                  "l'archivio, riaprirlo e guardare che cosa contiene prima di ripetere l'operazione.") {}
};

} // namespace tarvello::store::access
