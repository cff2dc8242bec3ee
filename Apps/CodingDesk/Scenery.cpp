#include "Apps/CodingDesk/Scenery.hpp"

#include "Apps/CodingDesk/Cast.hpp"
#include "Apps/CodingDesk/Options.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"

#include <set>
#include <string>

namespace CodingDesk::Scenery {

void furnish(ReferenceHost::CloudService& cloud) {
    std::set<std::string> everybody;
    for (std::size_t i = 0; i < Options::mostAnalysts; ++i) {
        everybody.emplace(castUser(i));
    }
    cloud.teams().add({.id = "team 1", .name = otherTeam, .members = everybody});
    cloud.teams().add({.id = "team 2", .name = team, .members = everybody});
}

}  // namespace CodingDesk::Scenery
