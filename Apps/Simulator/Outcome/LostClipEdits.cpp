#include "Apps/Simulator/Outcome/ClipEdits.hpp"
#include "Apps/Simulator/Outcome/Loss.hpp"
#include "Apps/Simulator/Texts.hpp"

#include <algorithm>
#include <iterator>

namespace Simulator {

namespace {

using Edits = std::vector<const UserEdit*>;

bool isBirth(const UserEdit& edit) {
    return edit.kind == EditKind::tag || edit.kind == EditKind::restoreClip ||
           edit.kind == EditKind::restoreRow;
}

bool setsTimes(const UserEdit& edit) { return edit.kind == EditKind::retime || isBirth(edit); }

bool setsNotes(const UserEdit& edit) { return edit.kind == EditKind::note || isBirth(edit); }

/// What users did to one clip, and what has become of it.
class ClipJudge {
public:
    ClipJudge(const History& history, const SharedClip& clip, Losses& found)
        : history_(history), clip_(clip), found_(found) {
        // A timeline that is published again brings its clips into one session after the other.
        const SessionHistory* session = history.stays[clip.edits.front()->stay].session;
        std::ranges::copy_if(clip.livingMoments, std::back_inserter(living_),
                             [&](std::string_view id) { return history.moment(id)->session == session; });
    }

    void judge() {
        judgeExistence();
        if (living_.size() == 1) {
            moment_ = history_.moment(living_.front())->last;
            judgeValues(LossKind::retimeLost, setsTimes, [this](const UserEdit& edit) {
                return edit.start == moment_->start && edit.end == moment_->end;
            });
            judgeValues(LossKind::noteLost, setsNotes,
                        [this](const UserEdit& edit) { return edit.notes == moment_->notes; });
        }
    }

private:
    /// The edits of one sort that no other of that sort was made in the knowledge of.
    template <typename IsOfSort>
    Edits lastWords(const IsOfSort& isOfSort) const {
        Edits last;
        for (const UserEdit* edit : clip_.edits) {
            const bool isLast =
                isOfSort(*edit) && std::ranges::none_of(clip_.edits, [&](const UserEdit* other) {
                    return other != edit && isOfSort(*other) && wasKnown(history_, clip_, *edit, *other);
                });
            if (isLast) {
                last.push_back(edit);
            }
        }
        return last;
    }

    void judgeExistence() {
        const Edits last = lastWords([](const UserEdit& edit) { return isBirth(edit) || takesAway(edit); });
        if (living_.size() > 1) {
            report(LossKind::clipDoubled, clip_.edits.empty() ? nullptr : clip_.edits.back(),
                   "is there more than once");
        }
        if (last.empty()) {
            return;
        }
        const bool lives = !living_.empty();
        const bool shouldLive =
            std::ranges::all_of(last, [](const UserEdit* edit) { return isBirth(*edit); });
        const bool shouldBeGone =
            std::ranges::all_of(last, [](const UserEdit* edit) { return takesAway(*edit); });
        if (shouldLive && !lives) {
            report(LossKind::tagLost, last.back(), "is not in the cloud");
        }
        if (shouldBeGone && lives) {
            report(LossKind::deletionLost, last.back(), "was deleted and is in the cloud");
        }
    }

    template <typename Sets, typename IsSo>
    void judgeValues(LossKind kind, const Sets& sets, const IsSo& isSo) {
        const Edits last = lastWords(sets);
        // Who brings a clip back brings it as it was, and sets nothing that others have set meanwhile: whatever some user has
        // said of it is right.
        const bool wasBroughtBack = std::ranges::any_of(clip_.edits, [](const UserEdit* edit) {
            return edit->kind == EditKind::restoreClip || edit->kind == EditKind::restoreRow;
        });
        const bool isRight = last.empty() ||
                             std::ranges::any_of(last,
                                                 [&](const UserEdit* edit) {
                                                     return edit->kind == EditKind::restoreRow || isSo(*edit);
                                                 }) ||
                             (wasBroughtBack && std::ranges::any_of(clip_.edits, [&](const UserEdit* edit) {
                                  return sets(*edit) && isSo(*edit);
                              }));
        if (!isRight) {
            const UserEdit& edit = *last.back();
            report(kind, &edit,
                   "was to say " + textOf(edit.start) + "-" + textOf(edit.end) + " \"" +
                       std::string(edit.notes) + "\" and says " + textOf(moment_->start) + "-" +
                       textOf(moment_->end) + " \"" + moment_->notes + '"');
        }
    }

    void report(LossKind kind, const UserEdit* edit, const std::string& what) {
        const std::string_view moment = !living_.empty()         ? living_.back()
                                        : !clip_.moments.empty() ? clip_.moments.back()
                                                                 : std::string_view();
        Loss loss{kind, never, moment, {}, {}, edit, {}};
        if (edit != nullptr) {
            loss.stay = edit->stay;
            loss.clip = *std::ranges::find_first_of(edit->clips, clip_.clips);
            loss.row = edit->name;
            loss.what = std::string(edit->analyst) + ": ";
        }
        loss.what += "the clip " + std::string(loss.clip) + " (" + std::string(moment) + ") " + what;
        found_.push_back(std::move(loss));
    }

    const History& history_;
    const SharedClip& clip_;
    std::vector<std::string_view> living_;
    Losses& found_;
    const ReferenceHost::MomentRecord* moment_ = nullptr;
};

}  // namespace

Losses findLostClipEdits(const History& history) {
    Losses found;
    for (const SharedClip& clip : findSharedClips(history)) {
        const bool isJudged = !clip.isFromElsewhere && !clip.edits.empty() &&
                              history.stays[clip.edits.front()->stay].session != nullptr;
        if (isJudged) {
            ClipJudge(history, clip, found).judge();
        }
    }
    return found;
}

}  // namespace Simulator
