#pragma once

namespace ReferenceHost {
class CloudService;
}

/// What things are called in the analysts' world.
namespace CodingDesk::Scenery {

inline constexpr const char* mainStand = "Camera 1, main stand";
inline constexpr const char* behindTheGoal = "Camera 2, behind the goal";

// The window's title is the path of the timeline's file, as in many applications.
inline constexpr const char* timeline = "/Matches/Cup semi-final.timeline";
inline constexpr const char* session = "Cup semi-final, live";

inline constexpr const char* team = "Handball Women";
inline constexpr const char* otherTeam = "Handball Under 19";

/// Makes the teams, with everybody in both.
void furnish(ReferenceHost::CloudService& cloud);

}  // namespace CodingDesk::Scenery
