#pragma once

namespace tarvello::store {

/// Who speaks in a Failure of the store, whichever engine it comes from.
inline constexpr const char* source = "Archivio";

} // namespace tarvello::store
