#pragma once

#include <string>
#include <vector>

namespace CodingDesk {

/// What stands in the title bars of the component's windows, on their controls and on the buttons of its alerts.
struct WindowTitles {
    const char* newSession;  ///< a window
    const char* feeds;
    const char* videoName;
    const char* createSession;
    const char* joinSession;  ///< a window
    const char* sessions;
    const char* join;
    const char* team;  ///< in both windows
    const char* cancel;
    const char* endSession;
    const char* exitSession;
    const char* quitSession;
    const char* retry;
    const char* openCapture;
};

/// In the first of these languages that the analysts' applications speak; English when there is none.
[[nodiscard]] const WindowTitles& windowTitles(const std::vector<std::string>& languages);

/// The messages of the component's alerts, in English.
namespace AlertMessages {
inline constexpr const char* endPrompt = "Are you sure you want to end the session?";
inline constexpr const char* exitPrompt = "Are you sure you want to exit the session?";
inline constexpr const char* failedSession = "Unable to Load Session";
inline constexpr const char* captureNotStarted = "Capture Not Started";
inline constexpr const char* noTeams = "Unable to Fetch Teams List";
inline constexpr const char* notCreated = "Unable to Create Session";
}  // namespace AlertMessages

}  // namespace CodingDesk
