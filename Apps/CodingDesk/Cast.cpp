#include "Apps/CodingDesk/Cast.hpp"

#include "Apps/CodingDesk/Options.hpp"

#include <array>

namespace CodingDesk {

std::string_view castName(std::size_t index) {
    static constexpr std::array<std::string_view, Options::mostAnalysts> names{
        "Ana", "Björn", "Chloé", "Dinesh", "Elif", "Femi", "Gráinne", "Haruto"};
    return names.at(index);
}

std::string_view castUser(std::size_t index) {
    static constexpr std::array<std::string_view, Options::mostAnalysts> users{
        "ana@club.example",  "bjorn@club.example", "chloe@club.example",   "dinesh@club.example",
        "elif@club.example", "femi@club.example",  "grainne@club.example", "haruto@club.example"};
    return users.at(index);
}

std::vector<std::string> castLanguages(std::size_t index) {
    return {castName(index) == "Chloé" ? "fr" : "en"};
}

}  // namespace CodingDesk
