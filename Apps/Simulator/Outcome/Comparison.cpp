#include "Apps/Simulator/Outcome/Loss.hpp"
#include "Apps/Simulator/Texts.hpp"

#include <algorithm>
#include <unordered_set>

namespace Simulator {

using ReferenceHost::CodeRecord;
using ReferenceHost::MomentRecord;

namespace {

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

std::string valuesOf(double start, double end, const std::string& notes) {
    return textOf(start) + "-" + textOf(end) + (notes.empty() ? "" : " " + quoted(notes));
}

/// Compares the timeline of one stay with its session.
class Comparison {
public:
    Comparison(const History& history, std::size_t stay, Losses& found)
        : stay_(stay),
          analyst_(history.stays[stay].stay->analyst),
          picture_(history.stays[stay].stay->picture),
          session_(history.stays[stay].session->session),
          found_(found) {}

    void make() {
        compareClips();
        compareRows();
    }

private:
    void compareClips() {
        std::unordered_map<std::string_view, const ClipPicture*> here;
        for (const ClipPicture& clip : picture_.clips) {
            if (!clip.momentId) {
                report(LossKind::clipUnsent, clip, described(clip) + " was never sent");
            } else if (!here.emplace(*clip.momentId, &clip).second) {
                report(LossKind::clipTwice, clip, described(clip) + " is there twice");
            }
        }
        for (const auto& moment : session_.moments) {
            const auto found = here.find(moment->id);
            if (found == here.end()) {
                report(LossKind::clipMissing, *moment);
            } else {
                compareClip(*found->second, *moment);
                here.erase(found);
            }
        }
        for (const ClipPicture& clip : picture_.clips) {
            if (clip.momentId && here.contains(*clip.momentId)) {
                report(LossKind::clipExtra, clip, described(clip) + " is there, and not in the cloud");
                here.erase(*clip.momentId);
            }
        }
    }

    void compareClip(const ClipPicture& clip, const MomentRecord& moment) {
        if (clip.row != moment.code) {
            report(LossKind::clipOnWrongRow, clip, described(clip) + " belongs on " + quoted(moment.code));
        }
        if (clip.start != moment.start || clip.end != moment.end || clip.notes != moment.notes) {
            report(LossKind::clipValues, clip,
                   described(clip) + " says " + valuesOf(clip.start, clip.end, clip.notes) +
                       " and should say " + valuesOf(moment.start, moment.end, moment.notes));
        }
    }

    void compareRows() {
        std::unordered_set<std::string_view> rowsWithClips;
        for (const ClipPicture& clip : picture_.clips) {
            rowsWithClips.insert(clip.rowId);
        }
        std::vector<const CodeRecord*> missing;
        if (session_.presentationView) {
            for (const CodeRecord& code : *session_.presentationView) {
                missing.push_back(&code);
            }
        }
        const std::vector<const CodeRecord*> view = missing;
        std::unordered_set<std::string_view> names;
        std::vector<std::string_view> order;
        for (const RowPicture& row : picture_.rows) {
            if (!names.insert(row.name).second) {
                report(LossKind::rowTwice, row.name, "there are two rows " + quoted(row.name));
            }
            const auto code = std::ranges::find(missing, row.name, &CodeRecord::name);
            if (code == missing.end()) {
                if (!rowsWithClips.contains(row.id) &&
                    std::ranges::find(view, row.name, &CodeRecord::name) == view.end()) {
                    report(LossKind::rowExtra, row.name,
                           "the row " + quoted(row.name) + " is not in the shared list");
                }
                continue;
            }
            if (Base::compare((*code)->color, row.color) == Base::ColorComparison::different) {
                report(LossKind::rowColor, row.name,
                       "the row " + quoted(row.name) + " is " + textOf(row.color) + " and should be " +
                           textOf((*code)->color));
            }
            order.push_back(row.name);
            missing.erase(code);
        }
        for (const CodeRecord* code : missing) {
            report(LossKind::rowMissing, code->name, "the row " + quoted(code->name) + " is missing");
        }
        compareOrder(view, order);
    }

    /// Of the rows that are on both sides.
    void compareOrder(const std::vector<const CodeRecord*>& view,
                      const std::vector<std::string_view>& order) {
        std::vector<std::string_view> expected;
        std::vector<std::string_view> left = order;
        for (const CodeRecord* code : view) {
            if (const auto found = std::ranges::find(left, code->name); found != left.end()) {
                expected.push_back(code->name);
                left.erase(found);
            }
        }
        const auto [here, there] = std::ranges::mismatch(order, expected);
        if (here != order.end() && there != expected.end()) {
            report(LossKind::rowOrder, *here,
                   "the row " + quoted(*here) + " stands where " + quoted(*there) + " should");
        }
    }

    static std::string described(const ClipPicture& clip) {
        return "the clip " + clip.instanceId + (clip.momentId ? " (" + *clip.momentId + ")" : "") + " on " +
               quoted(clip.row);
    }

    void report(LossKind kind, const ClipPicture& clip, const std::string& what) {
        Loss loss{kind, stay_, {}, clip.instanceId, clip.row, nullptr, analyst_ + ": " + what};
        if (clip.momentId) {
            loss.moment = *clip.momentId;
        }
        found_.push_back(std::move(loss));
    }
    void report(LossKind kind, const MomentRecord& moment) {
        found_.push_back(
            {kind,
             stay_,
             moment.id,
             {},
             moment.code,
             nullptr,
             analyst_ + ": the clip of " + moment.id + " on " + quoted(moment.code) + " is missing"});
    }
    void report(LossKind kind, std::string_view row, const std::string& what) {
        found_.push_back({kind, stay_, {}, {}, row, nullptr, analyst_ + ": " + what});
    }

    const std::size_t stay_;
    const std::string& analyst_;
    const TimelinePicture& picture_;
    const ReferenceHost::TaggingSessionRecord& session_;
    Losses& found_;
};

}  // namespace

const char* nameOf(LossKind kind) {
    constexpr const char* names[] = {
        "clipMissing",  "clipExtra",   "clipUnsent", "clipTwice",   "clipValues", "clipOnWrongRow",
        "rowMissing",   "rowExtra",    "rowTwice",   "rowColor",    "rowOrder",   "tagLost",
        "deletionLost", "retimeLost",  "noteLost",   "clipDoubled", "newRowLost", "rowRemovalLost",
        "renameLost",   "recolorLost", "moveLost"};
    return names[static_cast<std::size_t>(kind)];
}

Losses compareTimelines(const History& history) {
    Losses found;
    for (std::size_t stay = 0; stay < history.stays.size(); ++stay) {
        const StayHistory& candidate = history.stays[stay];
        if (candidate.stay->lasts && !candidate.stay->isClosed && candidate.session != nullptr) {
            Comparison(history, stay, found).make();
        }
    }
    return found;
}

}  // namespace Simulator
