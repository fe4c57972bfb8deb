#pragma once

#include "failure.h"

namespace tarvello::store {

/// Who speaks in a Failure of the store, whichever engine it comes from.
inline constexpr const char* source = "Archivio";

inline Failure no_current_row() {
    return {failure_number::no_current_record, source, "Nessuna riga corrente."};
}

/// Of a result whose engine has gone.
inline Failure database_closed() {
    return {failure_number::object_closed, source, "Il database è stato chiuso."};
}

} // namespace tarvello::store
