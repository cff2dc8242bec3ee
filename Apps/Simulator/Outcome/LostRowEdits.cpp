#include "Apps/Simulator/Outcome/Loss.hpp"
#include "Apps/Simulator/Texts.hpp"

#include <algorithm>

namespace Simulator {

using ReferenceHost::CloudOperation;
using ReferenceHost::CodeRecord;

namespace {

bool isRowEdit(const UserEdit& edit) { return edit.kind >= EditKind::addRow; }

/// Whether the edit brings a row of that name, or makes one of it.
bool brings(const UserEdit& edit, std::string_view name) {
    return edit.kind != EditKind::removeRow && edit.kind != EditKind::removeClip && edit.name == name;
}

bool takesAway(const UserEdit& edit, std::string_view name) {
    return (edit.kind == EditKind::removeRow && edit.name == name) ||
           (edit.kind == EditKind::renameRow && edit.oldName == name);
}

bool colors(const UserEdit& edit, std::string_view name) {
    return edit.name == name && (edit.kind == EditKind::recolorRow || edit.kind == EditKind::addRow ||
                                 edit.kind == EditKind::restoreRow || edit.kind == EditKind::renameRow);
}

/// What users did to the rows of one session, and what has become of it.
class RowJudge {
public:
    RowJudge(const History& history, const SessionHistory& session, Losses& found)
        : history_(history), session_(session), found_(found) {
        for (const UserEdit& edit : history.edits) {
            if (edit.stay != never && history.stays[edit.stay].session == &session) {
                edits_.push_back(&edit);
            } else if (wasStillSent(edit) || wasDoneWhileJoining(edit)) {
                outside_.push_back(&edit);
            }
        }
    }

    void judge() {
        for (const UserEdit* edit : edits_) {
            if (isRowEdit(*edit)) {
                judge(*edit);
            }
        }
    }

private:
    void judge(const UserEdit& edit) {
        switch (edit.kind) {
        case EditKind::addRow:
        case EditKind::restoreRow:
            mustBeThere(edit, edit.name, LossKind::newRowLost);
            break;
        case EditKind::removeRow:
            mustBeGone(edit, edit.name, LossKind::rowRemovalLost);
            break;
        case EditKind::renameRow:
            // Of two names that one row gets at the same time, either is right.
            if (!isDisputed(edit, [&](const UserEdit& other) { return takesAway(other, edit.oldName); })) {
                mustBeThere(edit, edit.name, LossKind::renameLost);
            }
            mustBeGone(edit, edit.oldName, LossKind::renameLost);
            break;
        case EditKind::recolorRow:
            mustHaveColor(edit);
            break;
        case EditKind::moveRow:
            mustStandThere(edit);
            break;
        default:
            break;
        }
    }

    /// What its user did after leaving, while the last upload had not read the timeline.
    [[nodiscard]] bool wasStillSent(const UserEdit& edit) const {
        return std::ranges::any_of(history_.stays, [&](const StayHistory& stay) {
            return stay.session == &session_ && stay.stay->timelineId == edit.timelineId &&
                   std::ranges::any_of(stay.uploads, [&](const Upload& upload) {
                       return (upload.start > edit.at && upload.covers(edit.count)) ||
                              (upload.start < edit.at && edit.at < upload.end);
                   });
        });
    }

    /// What its user did while the video was opening, before the session was there: it goes with the next list.
    [[nodiscard]] bool wasDoneWhileJoining(const UserEdit& edit) const {
        return std::ranges::any_of(history_.stays, [&](const StayHistory& stay) {
            return stay.session == &session_ && stay.stay->timelineId == edit.timelineId &&
                   stay.joining < edit.at && edit.at < stay.stay->from;
        });
    }

    [[nodiscard]] const CodeRecord* code(std::string_view name) const {
        if (!session_.session.presentationView) {
            return nullptr;
        }
        const auto& codes = *session_.session.presentationView;
        const auto found = std::ranges::find(codes, name, &CodeRecord::name);
        return found != codes.end() ? &*found : nullptr;
    }

    /// An edit that says otherwise and was not known to this one's author.
    template <typename SaysOtherwise>
    [[nodiscard]] bool isDisputed(const UserEdit& edit, const SaysOtherwise& saysOtherwise) const {
        const auto overtakes = [&](const UserEdit* other) {
            return other != &edit && saysOtherwise(*other) && !wasKnown(*other, edit);
        };
        return std::ranges::any_of(edits_, overtakes) || std::ranges::any_of(outside_, overtakes);
    }

    void mustBeThere(const UserEdit& edit, std::string_view name, LossKind kind) {
        if (code(name) == nullptr &&
            !isDisputed(edit, [&](const UserEdit& other) { return takesAway(other, name); })) {
            report(kind, edit, name, "is not in the shared list");
        }
    }

    void mustBeGone(const UserEdit& edit, std::string_view name, LossKind kind) {
        if (code(name) != nullptr &&
            !isDisputed(edit, [&](const UserEdit& other) { return brings(other, name); })) {
            report(kind, edit, name, "is still in the shared list");
        }
    }

    void mustHaveColor(const UserEdit& edit) {
        const CodeRecord* row = code(edit.name);
        if (row != nullptr && edit.color != textOf(row->color) &&
            !isDisputed(edit, [&](const UserEdit& other) {
                return colors(other, edit.name) || takesAway(other, edit.name) ||
                       colorsByItsFormerName(other, edit.name);
            })) {
            report(LossKind::recolorLost, edit, edit.name,
                   "is " + textOf(row->color) + " and was to be " + std::string(edit.color));
        }
    }

    /// The row was being given that name, and the edit's author did not know.
    [[nodiscard]] bool colorsByItsFormerName(const UserEdit& edit, std::string_view name) const {
        return edit.kind == EditKind::recolorRow &&
               std::ranges::any_of(edits_, [&](const UserEdit* renaming) {
                   return renaming->kind == EditKind::renameRow && renaming->name == name &&
                          renaming->oldName == edit.name && !wasKnown(*renaming, edit);
               });
    }

    void mustStandThere(const UserEdit& edit) {
        const CodeRecord* row = code(edit.name);
        const auto isBefore = [&](const UserEdit* other) {
            return other == &edit || !isRowEdit(*other) || wasKnown(*other, edit);
        };
        const bool isLast = std::ranges::all_of(edits_, isBefore) && std::ranges::all_of(outside_, isBefore);
        if (row == nullptr || !isLast) {
            return;
        }
        const auto& codes = *session_.session.presentationView;
        const std::string above = row == codes.data() ? std::string() : (row - 1)->name;
        const bool isComparable = edit.isFirst || code(edit.above) != nullptr;
        if (isComparable && edit.above != above) {
            report(LossKind::moveLost, edit, edit.name,
                   "stands below \"" + above + "\" and was to stand below \"" + std::string(edit.above) +
                       '"');
        }
    }

    [[nodiscard]] bool wasKnown(const UserEdit& earlier, const UserEdit& later) const {
        if (earlier.at >= later.at || earlier.timelineId == later.timelineId) {
            return earlier.at < later.at;
        }
        if (earlier.stay == never || history_.stays[earlier.stay].session != &session_) {
            return false;
        }
        const std::uint64_t brought = sequenceThatBrought(earlier);
        return brought != 0 && history_.stays[later.stay].receivedBefore(later.at) >= brought;
    }

    /// The change that has told the others of the edit; 0: none has.
    [[nodiscard]] std::uint64_t sequenceThatBrought(const UserEdit& edit) const {
        for (const std::size_t number : history_.stays[edit.stay].calls) {
            const Call& call = history_.calls[number];
            if (call.accepted != nullptr && call.effect > edit.at && tells(*call.accepted, edit)) {
                return call.accepted->sequenceAfter;
            }
        }
        return 0;
    }

    static bool tells(const ReferenceHost::AcceptedCall& accepted, const UserEdit& edit) {
        if (accepted.operation != CloudOperation::savePresentationView) {
            return edit.kind == EditKind::tag && std::ranges::any_of(accepted.drafts, [&](const auto& draft) {
                       return draft.instanceId == edit.clips.front();
                   });
        }
        const auto& codes = *accepted.presentationView;
        const auto row = std::ranges::find(codes, edit.name, &CodeRecord::name);
        switch (edit.kind) {
        case EditKind::removeRow:
            return row == codes.end();
        case EditKind::recolorRow:
            return row != codes.end() && textOf(row->color) == edit.color;
        default:
            return row != codes.end();
        }
    }

    void report(LossKind kind, const UserEdit& edit, std::string_view row, const std::string& what) {
        found_.push_back({kind,
                          edit.stay,
                          {},
                          {},
                          row,
                          &edit,
                          std::string(edit.analyst) + ": the row \"" + std::string(row) + "\" " + what});
    }

    const History& history_;
    const SessionHistory& session_;
    Losses& found_;
    std::vector<const UserEdit*> edits_;
    std::vector<const UserEdit*> outside_;  // of the session, and they reached it
};

}  // namespace

Losses findLostRowEdits(const History& history) {
    Losses found;
    for (const auto& [id, session] : history.record.sessions) {
        RowJudge(history, session, found).judge();
    }
    return found;
}

}  // namespace Simulator
