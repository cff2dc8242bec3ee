#include "Apps/Simulator/Edits.hpp"

#include "Apps/Simulator/Seat.hpp"
#include "Apps/Simulator/Texts.hpp"

#include <array>

namespace Simulator {

using ReferenceHost::TimelineInstance;
using ReferenceHost::TimelineRow;
using ReferenceHost::TraceFields;

namespace {

// Names that several analysts may hit upon.
constexpr std::array<const char*, 4> commonNames{"Corner", "Free kick", "Penalty", "Throw-in"};

std::string commonName(std::uint32_t choice) { return commonNames[choice % commonNames.size()]; }

Base::Color paletteColor(std::uint32_t choice) {
    constexpr std::array<Base::Color, 6> palette{Base::Color(196, 60, 54),  Base::Color(52, 120, 190),
                                                 Base::Color(70, 150, 90),  Base::Color(230, 170, 40),
                                                 Base::Color(130, 90, 170), Base::Color(90, 90, 90)};
    return palette[choice % palette.size()];
}

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
Deed noRow() { return nothingToDo("there is no such row"); }

}  // namespace

std::optional<Deed> Edits::prepare(const Step& step, std::size_t number) {
    if (step.action > Action::undoRemoveRow) {
        return std::nullopt;
    }
    timeline_ = seat_.timeline();
    if (!timeline_) {
        return nothingToDo("no timeline is open");
    }
    auto edit = prepareClip(step, number);
    return edit ? edit : prepareRow(step, number);
}

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

std::optional<Deed> Edits::prepareRow(const Step& step, std::size_t number) {
    switch (step.action) {
    case Action::addRow:
        return addRow(step, number);
    case Action::renameRow:
        return renameRow(step, "Code " + std::to_string(number));
    case Action::renameRowToCommon:
        return renameRow(step, commonName(step.other));
    case Action::recolorRow:
        return recolorRow(step);
    case Action::moveRow:
        return moveRow(step);
    case Action::removeRow:
        return removeRow(step);
    case Action::undoRemoveRow:
        return undoRemoveRow(step);
    default:
        return std::nullopt;
    }
}

// ---- clips ----

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

// ---- rows ----

Edits::RowPointer Edits::makeRow(const std::string& name, const Step& step, Action what,
                                 std::optional<std::int64_t> to) {
    const Base::Color color = paletteColor(step.other);
    auto row = timeline_->addRow(name, color, to);
    record(what, {{"row", row->uniqueId()},
                  {"name", name},
                  {"color", textOf(color)},
                  {"to", std::to_string(row->rowNum())}});
    return row;
}

Deed Edits::addRow(const Step& step, std::size_t number) {
    return doing([this, step, number] {
        const auto to = static_cast<std::int64_t>(step.object % (timeline_->numberOfRows() + 1));
        (void)makeRow("Code " + std::to_string(number), step, step.action, to);
    });
}

Deed Edits::renameRow(const Step& step, const std::string& name) {
    const auto row = rowNumber(step.object);
    if (!row) {
        return noRow();
    }
    return doing([this, row, step, name] {
        const std::string oldName = row->name();
        if (timeline_->renameRow(row->uniqueId(), name)) {
            record(step.action, {{"row", row->uniqueId()}, {"name", name}, {"oldName", oldName}});
        }
    });
}

Deed Edits::recolorRow(const Step& step) {
    const auto row = rowNumber(step.object);
    if (!row) {
        return noRow();
    }
    return doing([this, row, step] {
        const Base::Color color = paletteColor(step.other);
        if (timeline_->recolorRow(row->uniqueId(), color)) {
            record(step.action, {{"row", row->uniqueId()}, {"name", row->name()}, {"color", textOf(color)}});
        }
    });
}

Deed Edits::moveRow(const Step& step) {
    const auto row = rowNumber(step.object);
    if (!row) {
        return noRow();
    }
    return doing([this, row, step] {
        const auto to = static_cast<std::int64_t>(step.other % timeline_->numberOfRows());
        if (timeline_->moveRow(row->uniqueId(), to)) {
            record(step.action,
                   {{"row", row->uniqueId()}, {"name", row->name()}, {"to", std::to_string(to)}});
        }
    });
}

Deed Edits::removeRow(const Step& step) {
    const auto row = rowNumber(step.object);
    if (!row || timeline_->numberOfRows() < 2) {
        return noRow();
    }
    return doing([this, row, step] {
        if (timeline_->removeRow(row->uniqueId())) {
            removedRows_.push_back({timeline_->uniqueId(), row->uniqueId()});
            record(step.action, {{"row", row->uniqueId()},
                                 {"name", row->name()},
                                 {"clips", clipsOf(*row)},
                                 {"moments", momentsOf(*row)}});
        }
    });
}

Deed Edits::undoRemoveRow(const Step& step) {
    if (removedRows_.empty() || removedRows_.back().timelineId != timeline_->uniqueId()) {
        return nothingToDo("no row was removed");
    }
    return doing([this, step] {
        const std::string rowId = removedRows_.back().id;
        removedRows_.pop_back();
        if (timeline_->restoreRow(rowId)) {
            const auto row = timeline_->findRow(rowId);
            record(step.action, {{"row", rowId},
                                 {"name", row->name()},
                                 {"clips", clipsOf(*row)},
                                 {"moments", momentsOf(*row)},
                                 {"to", std::to_string(row->rowNum())}});
        }
    });
}

// ---- what a step means ----

Edits::RowPointer Edits::rowNumber(std::uint32_t object) const {
    const std::size_t rows = timeline_->numberOfRows();
    return rows == 0 ? nullptr : timeline_->rowAt(static_cast<std::int64_t>(object % rows));
}

Edits::ClipPointer Edits::clipNumber(std::uint32_t object) const {
    const auto rows = timeline_->allRows();
    std::int64_t clips = 0;
    for (const auto& row : *rows) {
        clips += row->numberOfInstances();
    }
    std::int64_t wanted = clips == 0 ? 0 : object % clips;
    for (const auto& row : *rows) {
        if (wanted < row->numberOfInstances()) {
            const auto instances = row->allInstances();
            return std::dynamic_pointer_cast<TimelineInstance>(
                (*instances)[static_cast<std::size_t>(wanted)]);
        }
        wanted -= row->numberOfInstances();
    }
    return nullptr;
}

/// The clip for the moment of that number among those that the cloud holds: so everybody means the same one.
Edits::ClipPointer Edits::clipOfMoment(std::uint32_t object) const {
    const Stay* stay = seat_.stay();
    const auto sessionId =
        stay != nullptr ? seat_.world().cloud.primarySessionOf(stay->videoId) : std::nullopt;
    const auto session = sessionId ? seat_.world().cloud.snapshot(*sessionId) : std::nullopt;
    if (!session || session->moments.empty()) {
        return nullptr;
    }
    const std::string& momentId = session->moments[object % session->moments.size()]->id;
    const auto rows = timeline_->allRows();
    for (const auto& row : *rows) {
        const auto instances = row->allInstances();
        for (const auto& instance : *instances) {
            if (instance->externalId() == momentId) {
                return std::dynamic_pointer_cast<TimelineInstance>(instance);
            }
        }
    }
    return nullptr;
}

std::string Edits::clipsOf(const TimelineRow& row) {
    std::string ids;
    const auto instances = row.allInstances();
    for (const auto& instance : *instances) {
        ids += (ids.empty() ? "" : ",") + instance->uniqueId();
    }
    return ids;
}

/// As many as clips; an empty one where a clip stands for no moment.
std::string Edits::momentsOf(const TimelineRow& row) {
    std::string ids;
    const auto instances = row.allInstances();
    for (const auto& instance : *instances) {
        ids += (instance == instances->front() ? "" : ",") + instance->externalId().value_or(std::string());
    }
    return ids;
}

void Edits::record(Action what, TraceFields fields) {
    TraceFields all{{"timelineId", timeline_->uniqueId()},
                    {"what", nameOf(what)},
                    {"count", std::to_string(timeline_->modifyCount())}};
    all.insert(all.end(), std::make_move_iterator(fields.begin()), std::make_move_iterator(fields.end()));
    seat_.world().record(seat_.name(), SimulatedKind::edit, std::move(all));
}

}  // namespace Simulator
