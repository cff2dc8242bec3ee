#include "Apps/CodingDesk/Cast.hpp"

#include "Apps/CodingDesk/Options.hpp"

#include <array>

namespace CodingDesk {

std::string_view castName(std::size_t index) {
    static constexpr std::array<std::string_view, Options::mostAnalysts> names{
        "Ana", "Björn", "Chloé", "Dinesh", "Elif", "Femi", "Gráinne", "Haruto"};
    return names.at(index);
}

}  // namespace CodingDesk
