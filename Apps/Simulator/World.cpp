#include "Apps/Simulator/World.hpp"

#include "Apps/Simulator/Rules.hpp"
#include "Apps/Simulator/Seat.hpp"

#include <algorithm>

namespace Simulator {

namespace {

constexpr std::size_t mostJobsPerInstant = 100'000;  // far more than any plan needs: an endless loop

}  // namespace

World::World(const Plan& plan_) : plan(plan_), time(plan_.seed) {
    time.setMaximumJobsPerInstant(mostJobsPerInstant);
    const std::size_t analysts = std::clamp(plan.analysts, fewestAnalysts, mostAnalysts);
    for (std::size_t index = 0; index < analysts; ++index) {
        seats.push_back(std::make_unique<Seat>(*this, index));
    }
    ReferenceHost::CloudRules cloudRules;
    for (const std::string& rule : plan.brokenRules) {
        for (const auto& seat : seats) {
            breakRule(rule, cloudRules, seat->host().timelines().rules());
        }
    }
    cloud.setRules(cloudRules);
}

World::~World() = default;

void World::runUntil(Base::Seconds moment) {
    // Asked between two jobs; a stay that begins or ends is noticed right behind the job that did it.
    const auto lookAround = [this] {
        for (const auto& seat : seats) {
            if (seat->wantsToLook()) {
                seat->look();
            }
        }
        return false;
    };
    const Base::Seconds duration = moment - time.now();
    if (duration > Base::Seconds(0) && !time.runUntil(lookAround, duration) && time.now() < moment) {
        time.runFor(moment - time.now());
    }
}

void World::setRowsAreMade(bool areMade) {
    ReferenceHost::CloudRules rules = cloud.rules();
    rules.missingRowIsMade = areMade && !std::ranges::count(plan.brokenRules, "missingRowIsMade");
    cloud.setRules(rules);
}

std::size_t World::reach(const char* stage) {
    record({}, SimulatedKind::stage, {{"name", stage}});
    return trace.size();
}

Offer World::addVideo() {
    Offer video;
    video.videoId = "video-" + std::to_string(videos.size() + 1);
    video.title = "Match " + std::to_string(videos.size() + 1);
    cloud.videos().add(ReferenceHost::liveVideo(video.videoId, teamId, video.title));
    videos.push_back(video);
    return video;
}

}  // namespace Simulator
