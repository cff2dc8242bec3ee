// What an analyst does with clips.

#include "Apps/Simulator/Edits.hpp"

#include "Apps/Simulator/Texts.hpp"

namespace Simulator {

using ReferenceHost::TimelineInstance;
using ReferenceHost::TraceFields;

namespace {

/// Within two hours. The thousandths are the step's number, so that no two edits say the same.
double startOf(const Step& step, std::size_t number) {
    return static_cast<double>(step.other % 7200) + static_cast<double>(number % 1000) / 1000;
}

double lengthOf(const Step& step) { return 1.0 + step.object % 9; }

TraceFields clipFields(const TimelineInstance& clip) {
    const auto values = clip.values();
    const auto row = clip.row();
    return {{"row", row ? row->uniqueId() : std::string()},
            {"name", row ? row->name() : std::string()},
            {"clip", clip.uniqueId()},
            {"moment", clip.externalId().value_or(std::string())},
            {"start", textOf(values.startTime)},
            {"end", textOf(values.endTime)},
            {"notes", values.notes}};
}

Deed noClip() { return nothingToDo("there is no such clip"); }

}  // namespace

std::optional<Deed> Edits::prepareClip(const Step& step, std::size_t number) {
    switch (step.action) {
    case Action::tag:
        return tag(step, number);
    case Action::tagNewCode:
        return tagNewCode(step, number);
    case Action::retime:
        return retime(clipNumber(step.object), step, number);
    case Action::retimeShared:
        return retime(clipOfMoment(step.object), step, number);
    case Action::note:
        return note(clipNumber(step.object), step, number);
    case Action::noteShared:
        return note(clipOfMoment(step.object), step, number);
    case Action::deleteClip:
        return deleteClip(clipNumber(step.object), step);
    case Action::deleteShared:
        return deleteClip(clipOfMoment(step.object), step);
    case Action::undoDelete:
        return undoDelete(step);
    default:
        return std::nullopt;
    }
}

Deed Edits::tag(const Step& step, std::size_t number) {
    const auto row = rowNumber(step.object);
    return row ? doing([this, row, step, number] { addClip(row, step, number); }) : noRow();
}

Deed Edits::tagNewCode(const Step& step, std::size_t number) {
    return doing([this, step, number] {
        const std::string name = commonName(step.object);
        auto row = timeline_->findRowNamed(name);
        if (!row) {
            row = makeRow(name, step, Action::addRow, std::nullopt);
        }
        addClip(row, step, number);
    });
}

void Edits::addClip(const RowPointer& row, const Step& step, std::size_t number) {
    const double start = startOf(step, number);
    const auto clip = timeline_->addInstance(row->uniqueId(), start, start + lengthOf(step));
    if (clip) {
        record(step.action, clipFields(*clip));
    }
}

Deed Edits::retime(const ClipPointer& clip, const Step& step, std::size_t number) {
    if (!clip) {
        return noClip();
    }
    return doing([this, clip, step, number] {
        const double start = startOf(step, number);
        if (timeline_->retimeInstance(clip->uniqueId(), start, start + lengthOf(step))) {
            record(step.action, clipFields(*clip));
        }
    });
}

Deed Edits::note(const ClipPointer& clip, const Step& step, std::size_t number) {
    if (!clip) {
        return noClip();
    }
    return doing([this, clip, step, number] {
        if (timeline_->setInstanceNotes(clip->uniqueId(), "note " + std::to_string(number))) {
            record(step.action, clipFields(*clip));
        }
    });
}

Deed Edits::deleteClip(const ClipPointer& clip, const Step& step) {
    if (!clip) {
        return noClip();
    }
    return doing([this, clip, step] {
        if (timeline_->removeInstance(clip->uniqueId())) {
            removedClips_.push_back({timeline_->uniqueId(), clip->uniqueId()});
            record(step.action, clipFields(*clip));
        }
    });
}

Deed Edits::undoDelete(const Step& step) {
    if (removedClips_.empty() || removedClips_.back().timelineId != timeline_->uniqueId()) {
        return nothingToDo("no clip was deleted");
    }
    return doing([this, step] {
        const std::string clipId = removedClips_.back().id;
        removedClips_.pop_back();
        if (timeline_->restoreInstance(clipId)) {
            record(step.action, clipFields(*timeline_->findInstance(clipId)));
        }
    });
}

}  // namespace Simulator
