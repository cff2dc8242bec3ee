#include "Apps/Simulator/Plan.hpp"
#include "Apps/Simulator/Profiles.hpp"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace Simulator {

namespace {

constexpr double everybodyHasJoined = 9;
constexpr double returnShare = 0.7;
constexpr double turn = 6;  // in which an edit is gathered, sent and received

/// To the millisecond, as plans are written.
double rounded(double seconds) { return std::round(seconds * 1000) / 1000; }

class Maker {
public:
    Maker(std::uint64_t seed, const PlanOptions& options)
        : options_(options),
          random_(ReferenceHost::SeededRandom::stream(seed, "plan")),
          profile_(drawProfile(random_, options.faults)) {
        plan_.seed = seed;
        plan_.brokenRules = options.brokenRules;
        // Most matches are coded by a few.
        plan_.analysts =
            options.analysts != 0 ? options.analysts : 2 + random_.below(random_.chance(0.2) ? 7 : 3);
    }

    Plan make() {
        at_ = random_.chance(profile_.earlyStartShare) ? 0 : everybodyHasJoined;
        while (plan_.steps.size() < options_.operations) {
            if (profile_.republishShare > 0 && random_.chance(profile_.republishShare)) {
                republish();
                continue;
            }
            const bool isTwin = last_ && random_.chance(profile_.twinShare);
            Step step = isTwin ? twin(*last_) : draw();
            at_ += isTwin ? random_.between(0, 1.3) : gap();
            step.at = Base::Seconds(rounded(at_));
            last_ = !isTwin && step.action <= Action::undoRemoveRow ? std::optional(step) : std::nullopt;
            takeReturnsBefore(step.at);
            plan_.steps.push_back(step);
            if (isDeparture(step.action) && random_.chance(returnShare)) {
                const Step back = returnAfter(step);
                returns_.insert(std::ranges::upper_bound(returns_, back.at, {}, &Step::at), back);
            }
        }
        plan_.steps.resize(options_.operations);
        return std::move(plan_);
    }

private:
    double gap() {
        if (profile_.takesTurns) {
            return turn;
        }
        if (random_.chance(profile_.burstShare)) {
            return random_.between(0, 0.3);
        }
        return random_.chance(profile_.pauseShare / (1 - profile_.burstShare))
                   ? random_.between(profile_.leastPause, profile_.mostPause)
                   : random_.between(0.3, 4);
    }

    Step draw() {
        Step step;
        step.analyst = random_.below(plan_.analysts);
        step.object = static_cast<std::uint32_t>(random_.below(1000));
        step.other = static_cast<std::uint32_t>(random_.below(100'000));
        const double share = random_.unit();
        if (share < profile_.faultShare) {
            step.action = choose(profile_.faults, random_);
            step.amount = rounded(secondsOf(step.action));
        } else if (share < profile_.faultShare + profile_.sessionShare) {
            step.action = choose(profile_.sessions, random_);
            step.amount = rounded(random_.between(0, 6));
        } else {
            step.action = choose(profile_.edits, random_);
        }
        return step;
    }

    double secondsOf(Action fault) {
        const bool isOutage = fault == Action::linkDown || fault == Action::fetchesFail;
        if (isOutage && random_.chance(profile_.longOutageShare)) {
            return random_.between(60, 900);
        }
        // Most of what goes wrong is over soon.
        const double share = random_.unit();
        return share < 0.6   ? random_.between(0.1, 4)
               : share < 0.9 ? random_.between(4, 15)
                             : random_.between(15, 40);
    }

    /// The same by somebody else.
    Step twin(Step step) {
        step.analyst = (step.analyst + 1 + random_.below(plan_.analysts - 1)) % plan_.analysts;
        step.other = static_cast<std::uint32_t>(random_.below(100'000));
        return step;
    }

    [[nodiscard]] static bool isDeparture(Action action) {
        return action == Action::closeTimeline || action == Action::leave ||
               action == Action::leaveByPrompt || action == Action::downloadFails ||
               action == Action::downloadPausesFailing || action == Action::streamEnds;
    }

    /// Who has left comes back after a while, or tries to. After the end of a stream it is the end of the session that follows.
    Step returnAfter(const Step& departure) {
        Step step = draw();
        step.analyst = departure.analyst;
        step.action = departure.action == Action::streamEnds ? Action::leave
                      : random_.chance(0.3)                  ? choose(profile_.sessions, random_)
                      : random_.chance(0.3)                  ? Action::host
                                                             : Action::join;
        step.amount = rounded(random_.between(0, 6));
        const double pause = random_.chance(0.2) ? random_.between(0, 0.1) : random_.between(1, 12);
        step.at = departure.at + Base::Seconds(rounded(pause));
        return step;
    }

    /// The one who publishes begins another session on the same timeline while a creation of the one before hangs.
    void republish() {
        at_ += gap();
        const double hang = random_.between(2, 6);
        add(Action::hang, 0, 0, hang);  // of the next creation of moments
        add(Action::tag, 0.01, random_.below(1000), 0);
        add(Action::leave, 0.01, 1, 0);
        add(Action::host, 0.01, 1, 0);
        for (double passed = 0; passed < hang; passed += 0.4) {
            add(choose(profile_.edits, random_), 0.4, random_.below(1000), 0);
        }
        last_.reset();
    }

    void add(Action action, double later, std::size_t object, double amount) {
        Step step = draw();
        step.analyst = 0;
        step.action = action;
        step.object = static_cast<std::uint32_t>(object);
        step.amount = rounded(amount);
        at_ += later;
        step.at = Base::Seconds(rounded(at_));
        takeReturnsBefore(step.at);
        plan_.steps.push_back(step);
    }

    void takeReturnsBefore(Base::Seconds moment) {
        while (!returns_.empty() && returns_.front().at <= moment) {
            plan_.steps.push_back(returns_.front());
            returns_.erase(returns_.begin());
        }
    }

    const PlanOptions& options_;
    ReferenceHost::SeededRandom random_;
    const Profile profile_;
    Plan plan_;
    double at_ = 0;
    std::vector<Step> returns_;  // that are still to come, in their order
    std::optional<Step> last_;   // an edit that may have a twin
};

}  // namespace

Plan makePlan(std::uint64_t seed, const PlanOptions& options) { return Maker(seed, options).make(); }

}  // namespace Simulator
