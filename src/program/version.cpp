#include "program/version.h"

namespace tarvello {

std::string version_text() {
    return std::to_string(TARVELLO_VERSION_MAJOR) + "." + std::to_string(TARVELLO_VERSION_MINOR) + "." +
           std::to_string(TARVELLO_VERSION_REVISION);
}

} // namespace tarvello
