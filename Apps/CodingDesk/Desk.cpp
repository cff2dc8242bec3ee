#include "Apps/CodingDesk/Desk.hpp"

#include "Apps/CodingDesk/Scenery.hpp"
#include "Apps/CodingDesk/SessionWindows.hpp"
#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>
#include <variant>

namespace CodingDesk {

namespace {

constexpr double secondsBetweenLooks = 0.1;

void rest(double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }

/// The row that the edit is about; any row when it is about none.
RowKey rowOf(const ReplayPlan& plan, const Edit& edit) {
    return std::visit(
        [&](const auto& kind) -> RowKey {
            if constexpr (requires { kind.row; }) {
                return kind.row;
            } else if constexpr (requires { kind.clip; }) {
                return plan.clips[kind.clip].row;
            } else {
                return 0;
            }
        },
        edit);
}

}  // namespace

Desk::Desk(ReplayPlan plan, std::size_t analysts, std::uint64_t seed, Console& console, RealWorld& world)
    : plan_(std::move(plan)),
      console_(console),
      world_(world.world),
      transcript_(console),
      arrivals_(analysts),
      lookout_(analysts_, console, world.world) {
    for (const PlannedRow& row : plan_.rows) {
        rowNames_.push_back(row.name);
    }
    Scenery::furnish(world_.cloud);
    const Surroundings surroundings{world_, arrivals_, transcript_, seed};
    for (AnalystIndex i = 0; i < analysts; ++i) {
        analysts_.push_back(std::make_unique<Analyst>(i, world, surroundings));
    }
}

Desk::~Desk() { close(); }

void Desk::codeTheMatch() {
    startSession();
    joinSession();
    replay();
    lookout_.setActivity(progress() + ", waiting until all is settled");
    isSettled_ = lookout_.waitUntilSettled();
    console_.endProgress();
    expectNoSurprises();
}

void Desk::startSession() {
    const std::vector<PlannedRow> codes(plan_.rows.begin(),
                                        plan_.rows.begin() + static_cast<std::ptrdiff_t>(plan_.codes));
    Analyst& host = *analysts_[0];
    host.at([&](Workplace& workplace) { workplace.startCapture(Scenery::timeline, codes); });
    SessionWindows::createSession(host);
    SessionWindows::waitForSharing(host);
    std::string videoId;
    host.at([&](Workplace& workplace) { videoId = workplace.session().value().tevuVideoId; });
    taggingSessionId_ = world_.cloud.primarySessionOf(videoId).value();
}

void Desk::joinSession() {
    for (AnalystIndex i = 1; i < analysts_.size(); ++i) {
        SessionWindows::joinSession(*analysts_[i]);
    }
    const double start = world_.now();
    while (!lookout_.askEverybody()) {
        if (world_.now() - start > Lookout::patience) {
            throw std::runtime_error("not everybody could join the session");
        }
        lookout_.showProgress("Joining the session");
        rest(secondsBetweenLooks);
    }
    console_.note("Everybody is in; the match begins.");
}

void Desk::replay() {
    clockStart_ = world_.now();
    for (const Step& step : plan_.steps) {
        waitForReplayTime(step.at);
        if (const auto* rename = std::get_if<RenameRow>(&step.edit)) {
            pauseAndRename(step, *rename);
        } else if (const auto* link = std::get_if<SwitchLink>(&step.edit)) {
            switchLink(step.analyst, link->up);
        } else {
            carryOut(step);
        }
        ++stepsDone_;
    }
}

void Desk::waitForReplayTime(double time) {
    double nextLook = 0;
    while (true) {
        replayTime_ = world_.now() - clockStart_;
        if (replayTime_ >= time) {
            return;
        }
        if (replayTime_ >= nextLook) {
            nextLook = replayTime_ + secondsBetweenLooks;
            (void)lookout_.askEverybody();
            lookout_.showProgress(progress());
        } else {
            rest(std::min(nextLook, time) - replayTime_);
        }
    }
}

void Desk::carryOut(const Step& step) {
    const RowKey key = rowOf(plan_, step.edit);
    analysts_[step.analyst]->tell(
        [this, edit = step.edit,
         row = PlannedRow{rowNames_[key], plan_.rows[key].color}](Workplace& workplace) {
            if (!workplace.coder()->carryOut(plan_, edit, row)) {
                ++editsLeftOut_;
            }
        });
}

void Desk::pauseAndRename(const Step& step, const RenameRow& rename) {
    const double pausedAt = world_.now();
    sayAtMatchTime("Everybody pauses.");
    if (settleInPause()) {
        renameRow(*analysts_[step.analyst], rename);
        (void)settleInPause();
    } else {
        ++editsLeftOut_;
    }
    sayAtMatchTime("Everybody goes on.");
    clockStart_ += world_.now() - pausedAt;
}

void Desk::renameRow(Analyst& analyst, const RenameRow& rename) {
    const std::string oldName = rowNames_[rename.row];
    if (!analyst.ask<bool>(
            [&](Workplace& workplace) { return workplace.coder()->renameRow(oldName, rename.name); })) {
        ++editsLeftOut_;
        return;
    }
    rowNames_[rename.row] = rename.name;
    sayAtMatchTime(analyst.name() + " renames " + quoted(oldName) + " to " + quoted(rename.name) + '.');
}

bool Desk::settleInPause() {
    lookout_.setActivity(progress() + ", everybody pauses");
    const bool isSettled = lookout_.waitUntilSettled();
    if (!isSettled) {
        sayAtMatchTime("Not everybody's timeline has come to rest; the pause is over all the same.");
    }
    return isSettled;
}

void Desk::switchLink(AnalystIndex analyst, bool up) {
    analysts_[analyst]->tell([up](Workplace& workplace) { workplace.setLinkUp(up); });
    sayAtMatchTime(analysts_[analyst]->name() + (up ? "'s link is back." : "'s link drops."));
}

void Desk::sayAtMatchTime(const std::string& text) {
    const std::string time = matchTime(plan_.matchTimeAt(replayTime_));
    console_.say(time + std::string(time.size() < 9 ? 9 - time.size() : 1, ' ') + text);
}

std::string Desk::progress() const {
    return "Match " + matchTime(plan_.matchTimeAt(replayTime_)) + ", " + std::to_string(stepsDone_) + " of " +
           counted(plan_.steps.size(), "step");
}

void Desk::leave() {
    console_.say("");
    SessionWindows::endSession(*analysts_[0]);
    for (AnalystIndex i = 1; i < analysts_.size(); ++i) {
        SessionWindows::leaveSession(*analysts_[i]);
    }
    expectNoSurprises();
}

void Desk::expectNoSurprises() {
    for (const auto& analyst : analysts_) {
        analyst->at([](Workplace& workplace) {
            if (!workplace.person().surprises().empty()) {
                throw std::runtime_error(workplace.person().name() + " got an unexpected alert: " +
                                         quoted(workplace.person().surprises().front()));
            }
        });
    }
}

void Desk::close() {
    while (!analysts_.empty()) {
        analysts_.pop_back();  // the host of the session is the first, and leaves last
    }
}

}  // namespace CodingDesk
