#include "Apps/CodingDesk/Lookout.hpp"

#include <algorithm>
#include <chrono>
#include <exception>
#include <iterator>
#include <thread>

namespace CodingDesk {

namespace {

using Activity = RemoteCoding::SynchronisationStatus::Activity;

// Timelines that have stood still for longer than an event is on its way, and than a drop of the link takes to be noticed,
// do not change by themselves any more.
constexpr double settledFor = 0.8;
constexpr double progressInterval = 0.2;
constexpr std::chrono::milliseconds lookoutInterval{50};

}  // namespace

bool Lookout::Presence::isUpToDate() const {
    return status && status->activity == Activity::idle && status->isSettled() && status->receivesChanges;
}

bool Lookout::Presence::isReconnecting() const {
    return status && status->activity == Activity::waitingToReconnect;
}

bool Lookout::askEverybody() {
    presences_.resize(analysts_.size());
    bool allUpToDate = true;
    for (std::size_t i = 0; i < presences_.size(); ++i) {
        Analyst& analyst = *analysts_[i];
        Presence& presence = presences_[i];
        const bool wasReconnecting = presence.isReconnecting();
        analyst.ask<void>([&](Workplace& workplace) {
            presence.status = workplace.status();
            presence.modifyCount = workplace.modifyCount();
        });
        if (const auto failure = analyst.failure()) {
            std::rethrow_exception(failure);
        }
        if (presence.isReconnecting() != wasReconnecting) {
            console_.note(analyst.name() + (wasReconnecting
                                                ? " is connected again."
                                                : " has lost the session and tries to reconnect."));
        }
        allUpToDate = allUpToDate && presence.isUpToDate();
    }
    return allUpToDate;
}

bool Lookout::waitUntilSettled() {
    const double start = world_.now();
    double restingSince = start;
    std::vector<std::int64_t> counts;
    while (world_.now() - start < patience) {
        const bool allUpToDate = askEverybody();
        std::vector<std::int64_t> countsNow;
        std::ranges::transform(presences_, std::back_inserter(countsNow), &Presence::modifyCount);
        if (!allUpToDate || countsNow != counts) {
            restingSince = world_.now();
            counts = std::move(countsNow);
        }
        if (world_.now() - restingSince >= settledFor) {
            return true;
        }
        showProgress(activity_);
        std::this_thread::sleep_for(lookoutInterval);
    }
    return false;
}

void Lookout::showProgress(const std::string& activity) {
    if (world_.now() - lastProgress_ < progressInterval) {
        return;
    }
    lastProgress_ = world_.now();
    std::string line = activity + " |";
    for (std::size_t i = 0; i < presences_.size(); ++i) {
        const Presence& presence = presences_[i];
        line += ' ' + analysts_[i]->name();
        if (presence.isReconnecting()) {
            line += " reconnecting(" + std::to_string(presence.status->reconnectionAttempt) + ')';
        } else {
            line += !presence.status ? " -" : presence.isUpToDate() ? " ok" : " ..";
        }
    }
    console_.progress(line);
}

}  // namespace CodingDesk
