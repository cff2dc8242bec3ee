#include "Apps/Simulator/Shrinker.hpp"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace Simulator {

namespace {

using Steps = std::vector<Step>;

// Below all times that matter, above what decimal fractions are off by.
constexpr double tiny = 1e-6;

/// Down to a whole number of such parts of a second.
Base::Seconds rounded(Base::Seconds time, double partsOfASecond) {
    return Base::Seconds(std::floor(time.count() * partsOfASecond + tiny) / partsOfASecond);
}

class Shrinking {
public:
    Shrinking(Plan plan, const std::function<bool(const Plan&)>& stillFails, std::size_t tries)
        : best_(std::move(plan)), stillFails_(stillFails), triesLeft_(tries) {}

    Plan shrink() {
        for (bool gained = true; gained && triesLeft_ > 0;) {
            const Plan before = best_;
            dropSteps();
            dropAnalysts();
            simplifySteps();
            shortenPauses();
            gained = !(best_ == before);
        }
        return std::move(best_);
    }

private:
    /// True when this plan fails as well, and so takes the place of the best.
    bool accept(Plan plan) {
        if (triesLeft_ == 0 || plan == best_) {
            return false;
        }
        --triesLeft_;
        if (!stillFails_(plan)) {
            return false;
        }
        best_ = std::move(plan);
        return true;
    }

    bool acceptSteps(Steps steps) {
        Plan plan = best_;
        plan.steps = std::move(steps);
        return accept(std::move(plan));
    }

    /// Ever smaller pieces are left out, from the end on: what comes late matters least for what came before it.
    void dropSteps() {
        for (std::size_t length = std::max<std::size_t>(best_.steps.size() / 2, 1); triesLeft_ > 0;) {
            bool dropped = false;
            for (std::size_t end = best_.steps.size(); end > 0 && triesLeft_ > 0;) {
                const std::size_t begin = end > length ? end - length : 0;
                dropped = acceptSteps(without(begin, end)) || dropped;
                end = begin;
            }
            if (length == 1 && !dropped) {
                return;
            }
            length = std::max<std::size_t>(length / 2, 1);
        }
    }

    [[nodiscard]] Steps without(std::size_t begin, std::size_t end) const {
        Steps steps = best_.steps;
        steps.erase(steps.begin() + static_cast<std::ptrdiff_t>(begin),
                    steps.begin() + static_cast<std::ptrdiff_t>(end));
        return steps;
    }

    void dropAnalysts() {
        for (std::size_t analyst = best_.analysts; analyst-- > 0 && best_.analysts > fewestAnalysts;) {
            Plan plan = best_;
            --plan.analysts;
            // First as if this one had done nothing, with the names of the others kept as far as they go.
            std::erase_if(plan.steps,
                          [&](const Step& step) { return step.analyst % best_.analysts == analyst; });
            for (Step& step : plan.steps) {
                step.analyst %= best_.analysts;
                step.analyst -= step.analyst > analyst ? 1 : 0;
            }
            if (!accept(plan)) {
                plan.steps = best_.steps;
                accept(plan);  // else by handing the steps to somebody else
            }
        }
    }

    void simplifySteps() {
        for (std::size_t index = 0; index < best_.steps.size() && triesLeft_ > 0; ++index) {
            trySome(index, {0, 1, 2, 3}, &Step::object);
            trySome(index, {0, 1, 2, 3}, &Step::other);
            const double amount = best_.steps[index].amount;
            trySome(index, {0.0, 1.0, std::floor(amount / 2), std::round(amount)}, &Step::amount);
            trySome(index, {std::size_t{0}, best_.steps[index].analyst % best_.analysts}, &Step::analyst);
        }
    }

    /// Takes the first of the values that still fails. They get no simpler from one to the next.
    template <typename Value>
    void trySome(std::size_t index, const std::vector<Value>& values, Value Step::* member) {
        for (const Value value : values) {
            if (best_.steps[index].*member <= value) {
                return;
            }
            Steps steps = best_.steps;
            steps[index].*member = value;
            if (acceptSteps(std::move(steps))) {
                return;
            }
        }
    }

    /// All times at once where that works, else each pause for itself: none, a second, a round number of seconds. No time gets later,
    /// so that this comes to an end.
    void shortenPauses() {
        for (const double parts : {1.0, 10.0, 100.0}) {
            Steps steps = best_.steps;
            for (Step& step : steps) {
                step.at = rounded(step.at, parts);
            }
            if (acceptSteps(std::move(steps))) {
                break;
            }
        }
        for (std::size_t index = 0; index < best_.steps.size() && triesLeft_ > 0; ++index) {
            const Base::Seconds from = index == 0 ? Base::Seconds(0) : best_.steps[index - 1].at;
            const Base::Seconds at = best_.steps[index].at;
            const Base::Seconds second(1);
            for (const Base::Seconds earlier :
                 {from, from + second, from + 5 * second, from + 10 * second,
                  rounded(from + (at - from) / 2, 10), rounded(at, 1), rounded(at, 10), rounded(at, 100)}) {
                if (from <= earlier && earlier < best_.steps[index].at &&
                    acceptSteps(withStepAt(index, earlier))) {
                    break;
                }
            }
        }
    }

    /// The step at an earlier time, and those behind it at their distances from it.
    [[nodiscard]] Steps withStepAt(std::size_t index, Base::Seconds at) const {
        Steps steps = best_.steps;
        const Base::Seconds shift = steps[index].at - at;
        for (std::size_t later = index; later < steps.size(); ++later) {
            // To the microsecond: differences of decimal fractions are none.
            steps[later].at =
                std::max(at, Base::Seconds(std::round((steps[later].at - shift).count() * 1e6) / 1e6));
        }
        return steps;
    }

    Plan best_;
    const std::function<bool(const Plan&)>& stillFails_;
    std::size_t triesLeft_;
};

}  // namespace

Plan shrink(Plan plan, const std::function<bool(const Plan&)>& stillFails, std::size_t tries) {
    return Shrinking(std::move(plan), stillFails, tries).shrink();
}

}  // namespace Simulator
