// The faults of an analyst's host, of the published stream, and of the player that shows it to others.

#include "Apps/Simulator/Faults.hpp"
#include "Apps/Simulator/Seat.hpp"
#include "Base/Error.hpp"

#include <algorithm>
#include <memory>

namespace Simulator {

using ReferenceHost::CloudOperation;
using ReferenceHost::Fault;

namespace {

// A pause that is shorter is not looked into.
constexpr double noticedPause = 7;

Seat* hostOf(World& world) {
    const auto host = std::ranges::find_if(world.seats, [](const auto& seat) { return seat->isHosting(); });
    return host != world.seats.end() ? host->get() : nullptr;
}

void breakStream(Seat& host, const Step& step, bool fails, const std::string& videoId) {
    auto& videos = host.world().cloud.videos();
    auto& capture = host.host().capture();
    const auto setStatus = [&videos, videoId, fails](const char* status) {
        if (fails && videos.find(videoId)->status != ReferenceHost::VideoStatus::ended) {
            videos.setStatus(videoId, status);
        }
    };
    host.faults().begin(
        step.action, step.amount,
        [&] {
            capture.interruptStream();
            setStatus(ReferenceHost::VideoStatus::error);
        },
        [&capture, setStatus] {
            setStatus(ReferenceHost::VideoStatus::live);
            capture.resumeStream();
        },
        {{"videoId", videoId}});
}

std::exception_ptr downloadError() {
    return std::make_exception_ptr(Base::DescribedError("The fragment could not be downloaded"));
}

}  // namespace

std::optional<Deed> Faults::prepareHost(const Step& step) {
    switch (step.action) {
    case Action::withdrawCodingTarget: {
        const auto timeline = seat_.timeline();
        if (!timeline) {
            return nothingToDo("no timeline is open");
        }
        return doing([this, step, timeline] {
            begin(
                step.action, step.amount, [&] { timeline->setCodingTargetAvailable(false); },
                [timeline] { timeline->setCodingTargetAvailable(true); },
                {{"timelineId", timeline->uniqueId()}});
        });
    }
    case Action::insertionsComeLater:
        return doing([this, step] {
            bool& comeLater = seat_.host().timelines().insertionCallbacksComeLater;
            begin(step.action, step.amount, [&] { comeLater = true; }, [&comeLater] { comeLater = false; });
        });
    case Action::copiesLoseRows:
        return doing([this, step] {
            bool& knowRows = seat_.host().timelines().rules().partialKnowsRows;
            begin(
                step.action, step.amount, [&] { knowRows = false; },
                [&knowRows, usual = knowRows] { knowRows = usual; });
        });
    case Action::cancelSleeps:
        return cancelSleeps(step);
    default:
        return std::nullopt;
    }
}

Deed Faults::cancelSleeps(const Step& step) {
    return doing([this, step] {
        auto& execution = seat_.execution();
        begin(
            step.action, step.amount, [&] { execution.setSleepsAreCancelled(true); },
            [&execution] { execution.setSleepsAreCancelled(false); });
        arm(step.action, CloudOperation::fetchTaggingSessions, Fault(Fault::Kind::failBeforeEffect));
        dropSubscriptions(step.action);
    });
}

std::optional<Deed> Faults::prepareStream(const Step& step) {
    if (step.action != Action::streamBreaks && step.action != Action::streamFails) {
        return std::nullopt;
    }
    Seat* host = hostOf(seat_.world());
    if (host == nullptr) {
        return nothingToDo("nobody publishes");
    }
    const bool fails = step.action == Action::streamFails;
    return doing([host, step, fails, videoId = host->stay()->videoId] {
        host->execution().postToMain(
            [host, step, fails, videoId] { breakStream(*host, step, fails, videoId); });
    });
}

std::optional<Deed> Faults::prepareDownload(const Step& step) {
    if (step.action < Action::downloadPauses || step.action > Action::statusFails) {
        return std::nullopt;
    }
    const auto player = seat_.player();
    if (!player || !player->isPlaying()) {
        return nothingToDo("no stream is shown");
    }
    return doing([this, step, player] {
        const auto resume = [player] { player->resume(); };
        switch (step.action) {
        case Action::downloadPauses:
            begin(step.action, step.amount, [&] { player->pause(); }, resume);
            break;
        case Action::downloadPausesFailing:
            begin(step.action, step.amount, [&] { player->pause(downloadError()); }, resume);
            break;
        case Action::statusFails:
            arm(step.action, CloudOperation::getVideo, Fault(Fault::Kind::failBeforeEffect));
            begin(step.action, std::max(step.amount, noticedPause), [&] { player->pause(); }, resume);
            break;
        default:
            begin(step.action, 0, [&] { player->failDownload(downloadError()); }, [] {});
        }
    });
}

}  // namespace Simulator
