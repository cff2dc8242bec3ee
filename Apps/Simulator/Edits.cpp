#include "Apps/Simulator/Edits.hpp"

#include "Apps/Simulator/Seat.hpp"

#include <array>
#include <iterator>
#include <utility>

namespace Simulator {

using ReferenceHost::TimelineInstance;
using ReferenceHost::TimelineRow;
using ReferenceHost::TraceFields;

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
    return timeline_->findInstanceOf(session->moments[object % session->moments.size()]->id);
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

std::string Edits::commonName(std::uint32_t choice) {
    constexpr std::array<const char*, 4> names{"Corner", "Free kick", "Penalty", "Throw-in"};
    return names[choice % names.size()];
}

}  // namespace Simulator
