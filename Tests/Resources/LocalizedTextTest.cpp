#include "Components/RemoteCoding/Resources/LocalizedText.hpp"

#include "Components/RemoteCoding/Resources/EmbeddedResources.hpp"
#include "Components/RemoteCoding/Resources/StringTable.hpp"
#include "Components/RemoteCoding/Resources/WindowLayouts.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Host.hpp"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using namespace RemoteCoding;

struct LocalizedText : testing::Test {
    ReferenceHost::VirtualTime time{1};
    ReferenceHost::VirtualScheduler scheduler{time};
    ReferenceHost::Trace trace{[this] { return time.now(); }};
    ReferenceHost::CloudService cloud{scheduler};
    ReferenceHost::VirtualExecution execution{time, "Ann", &trace};
    ReferenceHost::Host host{"Ann", execution, cloud, trace};
    HostEnvironment& environment = host.environment();
};

/// What a controller looks up and is told of, "outlet>action" for each control and "column>cell>action" for each column.
std::string connections(const WindowLayout& layout) {
    std::string text;
    for (const auto& control : layout.controls) {
        if (control.kind != WindowLayoutControl::Kind::label) {
            text += control.outlet + ">" + control.action + " ";
        }
        for (const auto& column : control.columns) {
            text += column.identifier + ">" + column.cellIdentifier + ">" + column.action + " ";
        }
    }
    return text;
}

TEST_F(LocalizedText, TakesTheFirstLanguageThatIsThereAndFallsBackToShorterTags) {
    const std::pair<std::vector<std::string>, std::string> table[] = {
        {{"FR-latn-ch-x-club"}, "Annuler"},
        {{"de", "fr-CA", "en"}, "Annuler"},
        {{"de-AT", "EN-gb", "fr"}, "Cancel"},
        {{"", "-", "fra", "f", "-fr", "x-fr", "fr_CH"}, "Cancel"},
    };
    for (const auto& [languages, expected] : table) {
        environment.languages = languages;
        EXPECT_EQ(localized(environment, "Cancel", ""), expected) << testing::PrintToString(languages);
    }
}

TEST_F(LocalizedText, IsTheKeyWhereThereIsNoTranslation) {
    constexpr auto key =
        "You’ll no longer be able to view the capture or share data with others in the session. "
        "You can continue to use the timeline after exiting the session.";
    environment.languages = {"fr"};
    EXPECT_TRUE(localized(environment, key, "").ends_with("utiliser la timeline après l’avoir quittée."));
    EXPECT_EQ(localized(environment, "cancel", ""), "cancel");
    for (const auto& file : embeddedResources()) {
        EXPECT_TRUE(!file.name.ends_with(".po") || StringTable::parse(file.contents).succeeded())
            << file.name;
    }
}

TEST_F(LocalizedText, LayoutsConnectWhatTheirControllersNeedInTheUsersLanguage) {
    const auto create = windowLayout(environment, "VideoSharingNewSessionWindowController").value();
    EXPECT_EQ(connections(create),
              "feedsToShareTableView> SelectFeedColumn>SelectFeedCell>checkSelectFeedCheckbox "
              "FeedNameColumn>FeedNameCell> videoNameTextField> selectedTeamPopUpButton> >cancel "
              "createNewSessionButton>createNewSession ");
    EXPECT_TRUE(create.controls.back().isDefault && !create.controls.back().isEnabled);

    environment.languages = {"fr-FR"};
    const auto join = windowLayout(environment, "VideoSharingJoinSessionWindowController").value();
    EXPECT_EQ(connections(join),
              "selectedTeamPopUpButton>teamSelected sessionsTableView> VideoTitleColumn>VideoTitleCell> "
              "VideoDateColumn>VideoDateCell> >cancel joinSessionButton>joinSession ");
    EXPECT_EQ(join.title + "; " + join.controls.at(3).columns.at(0).title + "; " + join.controls.back().title,
              "Rejoindre une session de partage vidéo; Vidéo; Rejoindre la session");
    EXPECT_FALSE(windowLayout(environment, "videosharingnewsessionwindowcontroller"));
}

}  // namespace
