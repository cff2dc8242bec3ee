#include "Apps/Simulator/Runner.hpp"

#include "Apps/Simulator/Seat.hpp"
#include "Apps/Simulator/Sessions.hpp"
#include "Apps/Simulator/Settling.hpp"
#include "Apps/Simulator/Texts.hpp"
#include "Apps/Simulator/World.hpp"
#include "Base/Error.hpp"

#include <algorithm>
#include <exception>

namespace Simulator {

namespace {

// When the first analyst publishes and the others join; the plan's steps may come before that.
constexpr Base::Seconds publishing{1};
constexpr Base::Seconds joining{2};
constexpr Base::Seconds joiningApart{0.25};

// An upload that failed is repeated by the next reconnection attempt, two seconds after the one before it; a call that was
// under way when the link came back takes at most half a minute. So this is long.
constexpr Base::Seconds patience{15 * 60};
constexpr Base::Seconds quietWhile{120};
// A stream's watch that is under way when its session ends runs out, and asks for the video once more.
constexpr Base::Seconds lastNews{20};
constexpr Base::Seconds leavingPatience{60};

class Run {
public:
    explicit Run(Record& record) : record_(record), world_(record.plan) {}

    void toTheEnd() {
        open();
        takeSteps();
        for (const auto& seat : world_.seats) {
            seat->faults().endAll();
        }
        record_.faultsEnded = world_.reach("faultsEnded");
        record_.neverSettled = settle(world_, patience);
        record_.settled = world_.reach("settled");
        lookAtTheEnd();
        world_.runFor(quietWhile);
        record_.quiet = world_.reach("quiet");
        leave();
        record_.leftovers = leftovers(world_);
        shutDown();
        world_.reach("left");
    }

    /// Whatever has come to pass so far.
    void hand() {
        record_.stays = std::move(world_.stays);
        record_.trace = world_.trace.take();
        findSessionIds();
    }

private:
    void open() {
        // In this order: what the plan does at the same moment comes first.
        for (std::size_t number = 0; number < record_.plan.steps.size(); ++number) {
            const Step& step = record_.plan.steps[number];
            Seat& seat = *world_.seats[step.analyst % world_.seats.size()];
            seat.execution().postToMainAfter(step.at, [this, &seat, number] { take(seat, number); });
        }
        Base::Seconds moment = joining;
        for (const auto& seat : world_.seats) {
            const bool publishes = seat == world_.seats.front();
            seat->execution().postToMainAfter(
                publishes ? publishing : moment, [&seat = *seat, publishes, choice = world_.plan.seed] {
                    Step step;
                    step.other = static_cast<std::uint32_t>(choice);
                    const Deed deed = publishes ? prepareHosting(seat, step) : prepareJoining(seat, step);
                    if (deed.run) {
                        deed.run();
                    }
                });
            moment += joiningApart;
        }
    }

    void take(Seat& seat, std::size_t number) {
        ++taken_;
        const Step& step = record_.plan.steps[number];
        const Deed deed = seat.prepare(step, number);
        ReferenceHost::TraceFields fields{{"number", std::to_string(number)},
                                          {"action", nameOf(step.action)},
                                          {"object", std::to_string(step.object)},
                                          {"other", std::to_string(step.other)},
                                          {"amount", textOf(step.amount)}};
        if (!deed.run) {
            fields.emplace_back("skipped", deed.skipped);
        }
        world_.record(seat.name(), SimulatedKind::step, std::move(fields));
        if (deed.run) {
            deed.run();
        }
    }

    void takeSteps() {
        const auto& steps = record_.plan.steps;
        const Base::Seconds allIn = joining + joiningApart * static_cast<double>(world_.seats.size());
        world_.runUntil(std::max(steps.empty() ? Base::Seconds(0) : steps.back().at, allIn));
        // Who looks at an alert takes the step afterwards.
        while (taken_ < steps.size()) {
            world_.runFor(Base::Seconds(1));
        }
    }

    void lookAtTheEnd() {
        for (const auto& seat : world_.seats) {
            seat->lookAtStay();
        }
        for (Stay& stay : world_.stays) {
            stay.lasts = stay.to == 0;
        }
        for (const Offer& video : world_.videos) {
            for (auto& session : world_.cloud.fetchTaggingSessions(World::teamId, video.videoId)) {
                SessionHistory history;
                history.log = world_.cloud.log(session.id);
                history.changes = world_.cloud.changes(session.id);
                history.session = session;
                record_.sessions.emplace(session.id, std::move(history));
            }
        }
    }

    void leave() {
        for (auto seat = world_.seats.rbegin(); seat != world_.seats.rend(); ++seat) {
            (*seat)->execution().postToMain([&seat = **seat] { seat.leave(); });
        }
        world_.runFor(lastNews);
        (void)settle(world_, leavingPatience);
    }

    void shutDown() {
        for (const auto& seat : world_.seats) {
            if (!seat->shutDown()) {
                record_.leftovers.push_back(seat->name() + ": a component that is still held");
            }
        }
    }

    /// The session of a host that has created one is known from its first call for it, which may come when the stay is over.
    void findSessionIds() {
        for (Stay& stay : record_.stays) {
            const std::size_t end = stay.to == 0 ? record_.trace.size() : stay.to;
            stay.to = end;
            for (std::size_t index = stay.from; index < record_.trace.size() && stay.sessionId.empty();
                 ++index) {
                const auto& entry = record_.trace[index];
                // Writes of the timeline's earlier session may still be under way.
                const bool isOfThis =
                    entry.field("videoId") == stay.videoId ||
                    (index < end && entry.field("name") == "subscribeToTaggingSessionChanges");
                if (entry.host == stay.analyst && entry.kind == ReferenceHost::TraceKind::call &&
                    entry.field("timelineId") == stay.timelineId && isOfThis) {
                    stay.sessionId = entry.field("taggingSessionId");
                }
            }
        }
    }

    Record& record_;
    World world_;
    std::size_t taken_ = 0;
};

}  // namespace

Record run(const Plan& plan) {
    Record record;
    record.plan = plan;
    try {
        Run run(record);
        try {
            run.toTheEnd();
        } catch (...) {
            record.crash = Base::describe(std::current_exception());
        }
        run.hand();
    } catch (...) {
        record.crash = Base::describe(std::current_exception());
    }
    return record;
}

}  // namespace Simulator
