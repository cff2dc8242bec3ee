// What the sync library needs of a timeline.

#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Timeline/TimelineComponentEdit.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ReferenceHost {

std::shared_ptr<TimelineInstance> Timeline::findInstanceOf(const std::string& externalId) const {
    const auto entries = byExternalId_.find(externalId);
    if (entries == byExternalId_.end()) {
        return nullptr;
    }
    for (const InstanceEntry* entry : entries->second) {
        if (!entry->removed && entry->object->externalId() == externalId) {
            return entry->object;
        }
    }
    return nullptr;
}

void Timeline::externalIdWasWritten(const std::string& instanceId,
                                    const std::optional<std::string>& externalId) {
    auto* entry = instanceLog_.find(instanceId);
    if (entry != nullptr && externalId) {
        auto& entries = byExternalId_[*externalId];
        if (std::ranges::find(entries, entry) == entries.end()) {
            entries.push_back(entry);
        }
    }
    if (rules_->externalIdIsNoChange || entry == nullptr || entry->removed) {
        return;
    }
    const auto count = nextCount(ChangeKind::alteration);
    instanceLog_.didChange(*entry, count);
    finishChange(count);
}

std::shared_ptr<TimelineInstance>
Timeline::appendRemoteInstance(const std::string& code, const std::string& externalId, double startTime,
                               double endTime, const std::string& notes, Base::Color colorForNewRow) {
    const TimelineComponentEdit edit(*this);
    const auto count = nextCount(ChangeKind::existence);
    auto row = findRowNamed(code);
    if (!row) {
        row = makeRow(code, colorForNewRow, std::ssize(rows_.elements()), count);
    }
    auto instance = std::make_shared<TimelineInstance>(
        options_.makeId(), row, ClipValues(startTime, endTime, notes), ++lastOrder_, true);
    instance->writeExternalId(externalId);
    byExternalId_[externalId].push_back(&instanceLog_.add(instance, count));
    row->append(instance);
    finishChange(count);
    return instance;
}

std::shared_ptr<TimelineInstance> Timeline::updateRemoteInstance(const std::string& instanceId,
                                                                 const std::string& rowId, double startTime,
                                                                 double endTime, const std::string& notes) {
    auto* entry = instanceLog_.findPresent(instanceId);
    if (entry == nullptr || entry->object->row()->uniqueId() != rowId) {
        return nullptr;
    }
    const TimelineComponentEdit edit(*this);
    auto instance = entry->object;
    setValues(*entry, ClipValues(startTime, endTime, notes));
    return instance;
}

void Timeline::removeRemoteInstance(const std::string& instanceId) {
    const TimelineComponentEdit edit(*this);
    removeInstance(instanceId);
}

void Timeline::recordCall(const char* call, CallArguments arguments) const {
    if (options_.recordCall) {
        arguments.insert(arguments.begin(), {"timelineId", uniqueId()});
        options_.recordCall(call, std::move(arguments));
    }
}

}  // namespace ReferenceHost
