#include "Apps/CodingDesk/ReplayPlan.hpp"

#include "Apps/CodingDesk/Cast.hpp"
#include "Apps/CodingDesk/Palette.hpp"
#include "ReferenceHost/SeededRandom.hpp"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <set>
#include <utility>

namespace CodingDesk {

namespace {

using ReferenceHost::SeededRandom;

// Seconds of the replay. A clip of somebody else is retimed late enough to have arrived in most cases.
constexpr double shortestReplay = 6;
constexpr double longestReplay = 22;
constexpr double secondsPerClip = 0.045;
constexpr double secondsPerRowEdit = 0.9;
constexpr double longestDrop = 3;
constexpr double longestEpilogue = 1;  // what would come later than that after the last tag is left out
constexpr double shortestPlan = 6;

constexpr double firstPause = 0.3;  // of the replay's length, as the two below
constexpr double dropStart = 0.45;
constexpr double secondPause = 0.85;

double toMilliseconds(double seconds) { return std::round(seconds * 1000) / 1000; }

class Planner {
public:
    Planner(const std::vector<CodedEvent>& events, const PlanSettings& settings)
        : events_(events), settings_(settings), random_(SeededRandom::stream(settings.seed, "replay plan")) {}

    ReplayPlan make() {
        setPace();
        dealCodes();
        tagClips();
        editRows();
        pauseAndRename();
        dropLink();
        for (auto& [at, step] : stepsByTime_) {
            plan_.steps.push_back(std::move(step));
        }
        return std::move(plan_);
    }

private:
    void setPace() {
        const auto [first, last] = std::ranges::minmax(events_, {}, &CodedEvent::end);
        plan_.matchStart = first.end;
        const double span = last.end - first.end;
        length_ =
            std::clamp(secondsPerClip * static_cast<double>(events_.size()), shortestReplay, longestReplay);
        if (settings_.speed) {
            plan_.speed = *settings_.speed;
            length_ = span / plan_.speed;
        } else if (span > 0) {
            plan_.speed = span / length_;
        }
    }

    void dealCodes() {
        std::map<std::string, RowKey> rowOfCode;
        for (const CodedEvent& event : events_) {
            const auto [found, isNew] = rowOfCode.emplace(event.code, plan_.rows.size());
            if (isNew) {
                addPlannedRow(event.code);
            }
            rowOfEvent_.push_back(found->second);
        }
        plan_.codes = plan_.rows.size();
        std::vector<std::size_t> cards(plan_.codes);
        std::iota(cards.begin(), cards.end(), std::size_t{0});
        for (std::size_t i = cards.size(); i > 1; --i) {
            std::swap(cards[i - 1], cards[random_.below(i)]);
        }
        for (const std::size_t card : cards) {
            ownerOfCode_.push_back(card % settings_.analysts);
        }
    }

    void tagClips() {
        for (std::size_t i = 0; i < events_.size(); ++i) {
            const CodedEvent& event = events_[i];
            const AnalystIndex maker = ownerOfCode_[rowOfEvent_[i]];
            const double at = (event.end - plan_.matchStart) / plan_.speed;
            const ClipKey clip = tag(rowOfEvent_[i], event.start, event.end, maker, at);
            // One of each in any case, so that even a small match has both.
            if (random_.chance(0.15) || i == events_.size() / 3) {
                retime(clip, at);
            }
            if (random_.chance(0.07) || i == events_.size() / 2) {
                addUnlessTooLate(at + random_.between(0.2, 3.5), maker, DeleteClip{clip});
            }
        }
    }

    void retime(ClipKey clip, double taggedAt) {
        const PlannedClip& planned = plan_.clips[clip];
        const bool byMaker = random_.chance(0.35);
        const AnalystIndex other =
            (planned.maker + 1 + random_.below(settings_.analysts - 1)) % settings_.analysts;
        const double start = toMilliseconds(std::max(0.0, planned.start + random_.between(-1.5, 1.5)));
        const double end = toMilliseconds(std::max(start, planned.end + random_.between(-1.5, 1.5)));
        const double delay = byMaker ? random_.between(0.4, 3.0) : random_.between(2.2, 4.5);
        addUnlessTooLate(taggedAt + delay, byMaker ? planned.maker : other, RetimeClip{clip, start, end});
    }

    void editRows() {
        const auto edits = static_cast<std::size_t>(std::max(4.0, length_ / secondsPerRowEdit));
        for (std::size_t i = 0; i < edits; ++i) {
            // The first three are one of each kind, and early, so that even a short replay has them all.
            const double at = length_ * random_.between(0.03, i < 3 ? 0.4 : 0.97);
            const AnalystIndex analyst = random_.below(settings_.analysts);
            const RowKey row = random_.below(plan_.codes);
            const double kind = random_.unit();
            if (i == 0 || (i > 2 && kind < 0.4)) {
                add(at, analyst, RecolorRow{row, freshColor()});
            } else if (i == 1 || (i > 2 && kind < 0.7)) {
                add(at, analyst, MoveRow{row, random_.below(plan_.codes), freshColor()});
            } else {
                addRowWithClips(at, analyst, i == 2 || random_.chance(0.6));
            }
        }
    }

    void addRowWithClips(double at, AnalystIndex analyst, bool isRemovedLater) {
        std::size_t number = 1;
        std::string name;
        do {
            name = std::string(castName(analyst)) + ": look again " + std::to_string(number++);
        } while (names_.contains(name));
        const RowKey row = addPlannedRow(name);
        add(at, analyst, AddRow{row, random_.below(plan_.codes + 1)});
        const std::size_t clips = 1 + random_.below(2);
        double last = at;
        for (std::size_t i = 0; i < clips; ++i) {
            last += random_.between(0.2, 1.2);
            const double start = toMilliseconds(plan_.matchTimeAt(last));
            tag(row, start, start + 4, analyst, last);
        }
        if (isRemovedLater) {
            addUnlessTooLate(last + random_.between(1.0, 3.5), analyst, RemoveRow{row});
        }
    }

    void pauseAndRename() {
        const RowKey first = random_.below(plan_.codes);
        const RowKey second =
            plan_.codes == 1 ? first : (first + 1 + random_.below(plan_.codes - 1)) % plan_.codes;
        rename(first, firstPause, " (checked)");
        rename(second, secondPause, " (final)");
    }

    void rename(RowKey row, double fraction, const std::string& suffix) {
        std::string name = plan_.rows[row].name + suffix;
        while (!names_.insert(name).second) {
            name += suffix;
        }
        add(length_ * fraction, random_.below(settings_.analysts), RenameRow{row, std::move(name)});
    }

    void dropLink() {
        if (!settings_.dropLink) {
            return;
        }
        const double start = length_ * dropStart;
        add(start, *settings_.dropLink, SwitchLink{false});
        add(start + std::min(longestDrop, length_ * (secondPause - dropStart) * 0.8), *settings_.dropLink,
            SwitchLink{true});
    }

    ClipKey tag(RowKey row, double start, double end, AnalystIndex maker, double at) {
        plan_.clips.push_back({row, start, end, maker});
        const ClipKey clip = plan_.clips.size() - 1;
        add(at, maker, TagClip{clip});
        return clip;
    }

    RowKey addPlannedRow(const std::string& name) {
        names_.insert(name);
        plan_.rows.push_back({name, freshColor()});
        return plan_.rows.size() - 1;
    }

    Base::Color freshColor() { return paletteColor(colors_++); }

    void add(double at, AnalystIndex analyst, Edit edit) {
        stepsByTime_.emplace(at, Step{at, analyst, std::move(edit)});
    }

    void addUnlessTooLate(double at, AnalystIndex analyst, Edit edit) {
        if (at <= std::max(length_ + longestEpilogue, shortestPlan)) {
            add(at, analyst, std::move(edit));
        }
    }

    const std::vector<CodedEvent>& events_;
    const PlanSettings& settings_;
    SeededRandom random_;
    ReplayPlan plan_;
    std::multimap<double, Step> stepsByTime_;  // steps of the same moment in the order of their making
    double length_ = 0;                        // seconds of the replay from the first tag to the last
    std::vector<RowKey> rowOfEvent_;
    std::vector<AnalystIndex> ownerOfCode_;
    std::set<std::string> names_;
    std::size_t colors_ = 0;
};

}  // namespace

ReplayPlan makeReplayPlan(const std::vector<CodedEvent>& events, const PlanSettings& settings) {
    return Planner(events, settings).make();
}

}  // namespace CodingDesk
