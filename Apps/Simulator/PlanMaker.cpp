#include "Apps/Simulator/Plan.hpp"
#include "ReferenceHost/SeededRandom.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Simulator {

namespace {

struct Weighted {
    Action action;
    unsigned weight;
};
using Weights = std::vector<Weighted>;

/// What kind of afternoon it is.
struct Profile {
    Weights edits;
    Weights faults;
    Weights sessions;
    double faultShare = 0.2;
    double sessionShare = 0.05;
    double longPause = 0.1;  ///< the share of pauses of many seconds, between bursts
};

const Weights clipEdits{{Action::tag, 30},         {Action::tagNewCode, 10},  {Action::retime, 15},
                        {Action::retimeShared, 8}, {Action::note, 8},         {Action::noteShared, 4},
                        {Action::deleteClip, 8},   {Action::deleteShared, 4}, {Action::undoDelete, 4}};
const Weights rowEdits{{Action::addRow, 4},       {Action::renameRow, 3}, {Action::renameRowToCommon, 2},
                       {Action::recolorRow, 4},   {Action::moveRow, 4},   {Action::removeRow, 2},
                       {Action::undoRemoveRow, 2}};
const Weights wayFaults{{Action::failBefore, 6},  {Action::failAfter, 6},   {Action::hang, 4},
                        {Action::answerFalse, 2}, {Action::answerShort, 2}, {Action::dropSubscription, 4},
                        {Action::linkDown, 4}};
const Weights sessionSteps{
    {Action::closeTimeline, 1}, {Action::leave, 3}, {Action::join, 6}, {Action::host, 3}};

class Maker {
public:
    Maker(std::uint64_t seed, const PlanOptions& options)
        : options_(options), random_(ReferenceHost::SeededRandom::stream(seed, "plan")) {
        plan_.seed = seed;
        plan_.brokenRules = options.brokenRules;
        plan_.analysts = options.analysts != 0 ? options.analysts : 2 + random_.below(4);
    }

    Plan make() {
        profile_.edits = clipEdits;
        profile_.edits.insert(profile_.edits.end(), rowEdits.begin(), rowEdits.end());
        profile_.faults = wayFaults;
        profile_.sessions = sessionSteps;
        double at = 8;
        while (plan_.steps.size() < options_.operations) {
            at += random_.chance(profile_.longPause) ? random_.between(2, 20) : random_.between(0, 1.2);
            Step step;
            step.at = Base::Seconds(std::round(at * 1000) / 1000);
            draw(step);
            plan_.steps.push_back(step);
        }
        return std::move(plan_);
    }

private:
    void draw(Step& step) {
        step.analyst = random_.below(plan_.analysts);
        step.object = static_cast<std::uint32_t>(random_.below(1000));
        step.other = static_cast<std::uint32_t>(random_.below(100'000));
        const double share = random_.unit();
        if (options_.faults && share < profile_.faultShare) {
            step.action = choose(profile_.faults);
            step.amount = std::round(random_.between(0, 20) * 10) / 10;
        } else if (share > 1 - profile_.sessionShare) {
            step.action = choose(profile_.sessions);
        } else {
            step.action = choose(profile_.edits);
        }
    }

    Action choose(const Weights& weights) {
        unsigned total = 0;
        for (const Weighted& weighted : weights) {
            total += weighted.weight;
        }
        std::size_t drawn = random_.below(total);
        for (const Weighted& weighted : weights) {
            if (drawn < weighted.weight) {
                return weighted.action;
            }
            drawn -= weighted.weight;
        }
        return weights.front().action;
    }

    const PlanOptions& options_;
    ReferenceHost::SeededRandom random_;
    Profile profile_;
    Plan plan_;
};

}  // namespace

Plan makePlan(std::uint64_t seed, const PlanOptions& options) { return Maker(seed, options).make(); }

}  // namespace Simulator
