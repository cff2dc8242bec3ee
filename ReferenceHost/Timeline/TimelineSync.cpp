// What the sync library needs of a timeline.

#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Timeline/TimelineComponentEdit.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ReferenceHost {

std::shared_ptr<TimelineInstance> Timeline::findInstanceOf(const std::string& externalId) const {
    const auto* entry = clipsByMoment_.findPresent(externalId);
    return entry != nullptr ? entry->object : nullptr;
}

void Timeline::setExternalId(TimelineInstance& instance, std::optional<std::string> externalId) {
    const bool isSame = instance.externalId_ == externalId;
    if (isSame && rules_->externalIdIsNoChange) {
        return;
    }
    auto* entry = instanceLog_.find(instance.uniqueId());
    if (entry != nullptr && !isSame && instance.externalId_) {
        clipsByMoment_.remove(*entry);
    }
    instance.writeExternalId(std::move(externalId));
    if (entry != nullptr && !isSame && instance.externalId_) {
        clipsByMoment_.add(*entry);
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
    instance->externalId_ = externalId;
    instance->arrivedAfter_ = lastEditNumber_;
    instance->tellCode(code, 0);
    clipsByMoment_.add(instanceLog_.add(instance, count));
    row->append(instance);
    finishChange(count);
    return instance;
}

std::shared_ptr<TimelineInstance> Timeline::updateRemoteInstance(const std::string& instanceId,
                                                                 const std::string& rowId, ClipValues values,
                                                                 const EditNumbers& taken) {
    auto* entry = instanceLog_.find(instanceId);
    if (entry == nullptr) {
        return nullptr;
    }
    auto instance = entry->object;
    const auto row = instance->row_.lock();
    if (row->uniqueId() != rowId) {
        return nullptr;
    }
    const EditNumbers numbers = instance->withName(instance->numbers_, row->nameEditNumber_);
    keepsItsName_ = numbers.code > taken.code ? rowId : std::string();  // with a deleted clip on it, too
    if (entry->removed) {
        return nullptr;
    }
    const TimelineComponentEdit edit(*this);
    const ClipValues& mine = instance->values_;
    if (numbers.times > taken.times) {
        values.startTime = mine.startTime;
        values.endTime = mine.endTime;
    }
    if (numbers.notes > taken.notes) {
        values.notes = mine.notes;
    }
    setValues(*entry, std::move(values), nullptr);
    return instance;
}

void Timeline::forgetEdits(const std::string& instanceId, const EditNumbers& taken) {
    if (const auto instance = findInstance(instanceId)) {
        const EditNumbers numbers = instance->editNumbers();
        instance->setEditNumber(&EditNumbers::times, std::min(numbers.times, taken.times));
        instance->setEditNumber(&EditNumbers::notes, std::min(numbers.notes, taken.notes));
    }
}

void Timeline::leaveSession() { rowEdits_.leaveSession(lastEditNumber_); }

void Timeline::beginPublishing(std::uint64_t lastWriter) {
    timesPublished_.fetch_add(1, std::memory_order_acq_rel);
    forgetMoments();
    rowEdits_.publish(lastWriter, lastEditNumber_);
}

void Timeline::forgetMoments() {
    clipsByMoment_.clear();
    instanceLog_.forEachSince(0, [](const InstanceEntry& entry) {
        entry.object->writeExternalId(std::nullopt);
        entry.object->tellCode(std::nullopt, 0);
    });
}

std::shared_ptr<TimelineInstance> Timeline::findDeletedInstance(const std::string& instanceId) const {
    const auto* entry = instanceLog_.find(instanceId);
    return entry != nullptr && entry->removed && entry->object->deletedByUser_ ? entry->object : nullptr;
}

void Timeline::deleteAgainLater(const std::string& instanceId) {
    if (!options_.runLater) {
        return;
    }
    options_.runLater([weakSelf = weak_from_this(), instanceId] {
        const auto self = weakSelf.lock();
        auto* entry = self ? self->instanceLog_.find(instanceId) : nullptr;
        if (entry != nullptr && entry->removed) {
            const auto count = self->nextCount(ChangeKind::existence);
            self->instanceLog_.didRemove(*entry, count);
            self->finishChange(count);
        }
    });
}

void Timeline::removeRemoteInstance(const std::string& instanceId) {
    const TimelineComponentEdit edit(*this);
    removeInstance(instanceId);
    if (auto* const entry = instanceLog_.find(instanceId)) {
        entry->removalStamp = 0;  // nobody has deleted it: told so, the cloud would delete what it stands for
    }
}

void Timeline::recordCall(const char* call, CallArguments arguments) const {
    if (options_.recordCall) {
        arguments.insert(arguments.begin(), {"timelineId", uniqueId()});
        options_.recordCall(call, std::move(arguments));
    }
}

}  // namespace ReferenceHost
