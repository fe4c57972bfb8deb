#include "program/maker_site.h"

#include <algorithm>

namespace tarvello {

std::string maker_host() { return TARVELLO_MAKER_HOST; }

std::string maker_address(std::string_view path) {
    std::string address = "https://" + maker_host() + std::string(path);
    std::replace(address.begin(), address.end(), '\\', '/');
    return address;
}

} // namespace tarvello
