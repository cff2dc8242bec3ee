#include "Apps/CodingDesk/WindowTitles.hpp"

#include <algorithm>

namespace CodingDesk {

namespace {

constexpr WindowTitles english{.newSession = "New Video Sharing Session",
                               .feeds = "Feed to Share",
                               .videoName = "Video Name",
                               .createSession = "Create Session",
                               .joinSession = "Join Video Sharing Session",
                               .sessions = "Active Sessions",
                               .join = "Join Session",
                               .team = "Team",
                               .cancel = "Cancel",
                               .endSession = "End Session",
                               .exitSession = "Exit Session",
                               .quitSession = "Quit Session",
                               .retry = "Retry",
                               .openCapture = "Open Capture Window"};

constexpr WindowTitles french{.newSession = "Nouvelle session de partage vidéo",
                              .feeds = "Flux à partager",
                              .videoName = "Nom de la vidéo",
                              .createSession = "Créer la session",
                              .joinSession = "Rejoindre une session de partage vidéo",
                              .sessions = "Sessions actives",
                              .join = "Rejoindre la session",
                              .team = "Équipe",
                              .cancel = "Annuler",
                              .endSession = "Terminer la session",
                              .exitSession = "Quitter la session",
                              .quitSession = "Quitter la session",
                              .retry = "Réessayer",
                              .openCapture = "Ouvrir la fenêtre de capture"};

}  // namespace

const WindowTitles& windowTitles(const std::vector<std::string>& languages) {
    const auto spoken = std::ranges::find_if(
        languages, [](const std::string& language) { return language == "en" || language == "fr"; });
    return spoken != languages.end() && *spoken == "fr" ? french : english;
}

}  // namespace CodingDesk
