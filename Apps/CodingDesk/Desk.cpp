#include "Apps/CodingDesk/Desk.hpp"

#include "Apps/CodingDesk/Cast.hpp"
#include "Apps/CodingDesk/Explanation.hpp"
#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <utility>

namespace CodingDesk {

namespace {

using Activity = RemoteCoding::SynchronisationStatus::Activity;
using RemoteCoding::RemoteCodingSessionDetails;
using RemoteCoding::RemoteCodingSessionStatus;

// Seconds. A timeline that stands still for longer than an event is on its way, and than a drop of the link takes to
// be noticed, will not change by itself any more.
constexpr double settledFor = 1.0;
constexpr double patience = 60;
constexpr double lookInterval = 0.1;
constexpr double progressInterval = 0.2;

const char* const sessionName = "Cup match, live";
const char* const teamId = "team 1";
const char* const videoId = "video 1";

void rest(double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }

std::string statusInWords(const RemoteCodingSessionDetails& details) {
    switch (details.status) {
    case RemoteCodingSessionStatus::starting:
        return details.isHost ? "is starting" : "is joined";
    case RemoteCodingSessionStatus::live:
        return "is live";
    case RemoteCodingSessionStatus::interrupted:
        return "is interrupted";
    case RemoteCodingSessionStatus::streamEnded:
        return "has lost its stream, the timeline stays shared";
    case RemoteCodingSessionStatus::ended:
        return details.isHost ? "is over" : "is left";
    case RemoteCodingSessionStatus::unused:
        break;
    }
    return "is in an unknown state";
}

std::string quoted(std::string_view text) { return '"' + printable(text) + '"'; }

/// What one analyst does when a step falls due; false when it was not possible any more.
bool carryOutEdit(Workplace& workplace, const ReplayPlan& plan, const Edit& edit, const PlannedRow& row) {
    Coder& coder = *workplace.coder();
    if (const auto* tag = std::get_if<TagClip>(&edit)) {
        return coder.tag(tag->clip, plan.clips[tag->clip], row);
    }
    if (const auto* retime = std::get_if<RetimeClip>(&edit)) {
        return coder.retime(retime->clip, plan.clips[retime->clip], row.name, *retime);
    }
    if (const auto* deletion = std::get_if<DeleteClip>(&edit)) {
        return coder.remove(deletion->clip);
    }
    if (const auto* addition = std::get_if<AddRow>(&edit)) {
        return coder.addRow(row, addition->to);
    }
    if (std::holds_alternative<RemoveRow>(edit)) {
        return coder.removeRow(row.name);
    }
    if (const auto* recolor = std::get_if<RecolorRow>(&edit)) {
        return coder.recolorRow(row.name, recolor->color);
    }
    const auto& move = std::get<MoveRow>(edit);
    return coder.moveRow(row.name, move.to, move.color);
}

bool isReconnecting(const std::optional<RemoteCoding::SynchronisationStatus>& status) {
    return status && status->activity == Activity::waitingToReconnect;
}

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

bool Desk::Presence::isUpToDate() const {
    return status && status->activity == Activity::idle && status->isSettled() && status->receivesChanges;
}

Desk::Desk(ReplayPlan plan, std::size_t analysts, std::uint64_t seed, Console& console, World& world)
    : plan_(std::move(plan)),
      console_(console),
      world_(world),
      arrivals_(analysts),
      address_{sessionName, videoId, teamId, {}},
      presence_(analysts) {
    for (const PlannedRow& row : plan_.rows) {
        rowNames_.push_back(row.name);
    }
    for (AnalystIndex i = 0; i < analysts; ++i) {
        analysts_.push_back(std::make_unique<Analyst>(
            i, world_, arrivals_, seed,
            [this, i](const RemoteCodingSessionDetails& details) { tellSession(i, details); }));
    }
}

Desk::~Desk() { close(); }

void Desk::codeTheMatch() {
    openSession();
    joinSession();
    replay();
    activity_ = "waiting until all is settled";
    isSettled_ = settle();
    console_.endProgress();
}

void Desk::openSession() {
    activity_ = "opening the session";
    const std::vector<PlannedRow> codes(plan_.rows.begin(),
                                        plan_.rows.begin() + static_cast<std::ptrdiff_t>(plan_.codes));
    analysts_[0]->ask<void>([&](Workplace& workplace) { workplace.publish(address_, codes); });
    const double start = world_.now();
    while (!world_.cloud.primarySessionOf(videoId)) {
        if (world_.now() - start > patience) {
            throw std::runtime_error("the session did not appear in the cloud");
        }
        (void)lookAround();
        rest(lookInterval);
    }
    address_.taggingSessionId = *world_.cloud.primarySessionOf(videoId);
}

void Desk::joinSession() {
    activity_ = "joining the session";
    for (AnalystIndex i = 1; i < analysts_.size(); ++i) {
        analysts_[i]->ask<void>([&](Workplace& workplace) { workplace.join(address_); });
    }
    const double start = world_.now();
    while (!lookAround()) {
        if (world_.now() - start > patience) {
            throw std::runtime_error("not everybody could join the session");
        }
        rest(lookInterval);
    }
    console_.say("Everybody is in; the match begins.");
}

void Desk::replay() {
    activity_.clear();
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
    while (true) {
        replayTime_ = world_.now() - clockStart_;
        if (replayTime_ >= time) {
            return;
        }
        showProgress();
        rest(std::min(lookInterval, time - replayTime_));
    }
}

void Desk::carryOut(const Step& step) {
    analysts_[step.analyst]->tell(
        [this, edit = step.edit, target = row(rowOf(plan_, step.edit))](Workplace& workplace) {
            ++(carryOutEdit(workplace, plan_, edit, target) ? editsMade_ : editsSkipped_);
        });
}

void Desk::pauseAndRename(const Step& step, const RenameRow& rename) {
    const double pausedAt = world_.now();
    const std::string& who = analysts_[step.analyst]->name();
    activity_ = "everybody pauses";
    console_.say(matchTime(matchTimeNow()) + "  Everybody pauses.");
    if (!settle()) {
        throw std::runtime_error("not all timelines came to rest before a pause");
    }
    const std::string oldName = rowNames_[rename.row];
    const bool done = analysts_[step.analyst]->ask<bool>(
        [&](Workplace& workplace) { return workplace.coder()->renameRow(oldName, rename.name); });
    if (done) {
        rowNames_[rename.row] = rename.name;
        ++editsMade_;
        console_.say(matchTime(matchTimeNow()) + "  " + who + " renames " + quoted(oldName) + " to " +
                     quoted(rename.name) + '.');
    } else {
        ++editsSkipped_;
    }
    if (!settle()) {
        throw std::runtime_error("not all timelines came to rest after " + who + " had renamed a row");
    }
    activity_.clear();
    console_.say(matchTime(matchTimeNow()) + "  Everybody goes on.");
    clockStart_ += world_.now() - pausedAt;
}

void Desk::switchLink(AnalystIndex analyst, bool up) {
    analysts_[analyst]->tell([up](Workplace& workplace) { workplace.setLinkUp(up); });
    console_.say(matchTime(matchTimeNow()) + "  " + analysts_[analyst]->name() +
                 (up ? "'s link is back." : "'s link drops."));
}

/// False when patience ended.
bool Desk::settle() {
    const double start = world_.now();
    double restingSince = start;
    std::vector<std::int64_t> counts;
    while (world_.now() - start < patience) {
        const bool allSettled = lookAround();
        std::vector<std::int64_t> countsNow;
        std::ranges::transform(presence_, std::back_inserter(countsNow), &Presence::modifyCount);
        if (!allSettled || countsNow != counts) {
            restingSince = world_.now();
            counts = std::move(countsNow);
        }
        if (world_.now() - restingSince >= settledFor) {
            return true;
        }
        rest(lookInterval / 2);
    }
    return false;
}

/// Asks everybody how far the synchronisation has come. True when all are settled.
bool Desk::lookAround() {
    bool allSettled = true;
    for (AnalystIndex i = 0; i < analysts_.size(); ++i) {
        Presence& presence = presence_[i];
        analysts_[i]->ask<void>([&](Workplace& workplace) {
            presence.status = workplace.status();
            presence.modifyCount = workplace.modifyCount();
        });
        const bool reconnects = isReconnecting(presence.status);
        if (std::exchange(presence.isReconnecting, reconnects) != reconnects) {
            console_.say(
                "         " + analysts_[i]->name() +
                (reconnects ? " has lost the session and tries to reconnect." : " is connected again."));
        }
        allSettled = allSettled && presence.isUpToDate();
    }
    failIfAnalystFailed();
    showProgress();
    return allSettled;
}

void Desk::showProgress() {
    if (world_.now() - lastProgress_ < progressInterval) {
        return;
    }
    lastProgress_ = world_.now();
    if (activity_.empty()) {
        (void)lookAround();
    }
    std::string line = "Match " + matchTime(matchTimeNow()) + ", " + std::to_string(stepsDone_) + " of " +
                       std::to_string(plan_.steps.size()) + " edits";
    line += activity_.empty() ? " |" : ", " + activity_ + " |";
    for (AnalystIndex i = 0; i < analysts_.size(); ++i) {
        const Presence& presence = presence_[i];
        line += ' ' + analysts_[i]->name();
        if (isReconnecting(presence.status)) {
            line += " reconnecting(" + std::to_string(presence.status->reconnectionAttempt) + ')';
        } else {
            line += !presence.status ? " -" : presence.isUpToDate() ? " ok" : " ..";
        }
    }
    console_.progress(line);
}

void Desk::tellSession(AnalystIndex analyst, const RemoteCodingSessionDetails& details) {
    console_.say("         " + std::string(castName(analyst)) + ": the session " + quoted(details.name) +
                 ' ' + statusInWords(details) + '.');
}

void Desk::failIfAnalystFailed() const {
    for (const auto& analyst : analysts_) {
        if (const auto failure = analyst->failure()) {
            std::rethrow_exception(failure);
        }
    }
}

MatchState Desk::remoteState(std::vector<AnalystResult>& results) {
    MatchState remote;
    const auto snapshot = world_.cloud.snapshot(address_.taggingSessionId);
    if (!snapshot) {
        return remote;
    }
    std::vector<std::string> timelineIds;
    for (const auto& analyst : analysts_) {
        timelineIds.push_back(
            analyst->ask<std::string>([](Workplace& workplace) { return workplace.timelineId(); }));
    }
    for (const auto& moment : snapshot->moments) {
        remote.clips.push_back({moment->id, moment->code, moment->start, moment->end});
        const auto maker = std::ranges::find(timelineIds, moment->originTimelineId);
        if (maker != timelineIds.end()) {
            ++results[static_cast<std::size_t>(maker - timelineIds.begin())].tagged[moment->code];
        }
    }
    if (snapshot->presentationView) {
        for (const auto& code : *snapshot->presentationView) {
            remote.rows.push_back({code.name, code.color});
        }
    }
    return remote;
}

bool Desk::report() {
    std::vector<AnalystResult> results;
    for (const auto& analyst : analysts_) {
        results.push_back({analyst->name(),
                           analyst->ask<MatchState>([](Workplace& workplace) { return workplace.state(); }),
                           {}});
    }
    const MatchState remote = remoteState(results);
    double matchEnd = 0;
    for (const ClipState& clip : remote.clips) {
        matchEnd = std::max(matchEnd, clip.end);
    }
    std::ostringstream text;
    for (const AnalystResult& result : results) {
        text << '\n';
        writeStrips(text, result, matchEnd, console_.look());
    }
    text << '\n';
    writeCounts(text, results, remote);
    text << '\n';
    writeArrivals(text, arrivals_.summary(), results);
    if (editsSkipped_ > 0) {
        text << "  " << counted(editsSkipped_, "planned edit")
             << " left out: the clip or row was not there any more, or not yet\n";
    }
    console_.say(text.str());
    bool allEqual = true;
    sayDifferences(results, remote, allEqual);
    return allEqual;
}

void Desk::sayDifferences(const std::vector<AnalystResult>& results, const MatchState& remote,
                          bool& allEqual) {
    std::vector<ReferenceHost::TraceEntry> trace;
    for (AnalystIndex i = 0; i < results.size(); ++i) {
        const auto found = differences(results[i].state, remote);
        if (!found.empty() && trace.empty()) {
            trace = world_.trace.entries();
        }
        for (const Difference& difference : found) {
            console_.say(results[i].name + ": " + difference.what + " (" +
                         explanation(trace, results[i].name, difference) + ").");
        }
        allEqual = allEqual && found.empty();
        if (!isSettled_ && !presence_[i].isUpToDate()) {
            console_.say(results[i].name + ": the timeline did not come to rest within " +
                         decimal(patience, 0) + " s (" +
                         (isReconnecting(presence_[i].status) ? "it still tries to reconnect"
                                                              : "edits wait to be sent") +
                         ").");
        }
    }
}

void Desk::close() {
    activity_ = "closing";
    while (!analysts_.empty()) {
        analysts_.pop_back();  // the host of the session is the first, and leaves last
    }
}

}  // namespace CodingDesk
