#include "ReferenceHost/Timeline/Timeline.hpp"

#include "ReferenceHost/Timeline/PartialTimeline.hpp"
#include "ReferenceHost/Timeline/TimelineCodingTarget.hpp"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <utility>

namespace ReferenceHost {

using Base::synchronized;

namespace {

/// Makes the detached rows of a partial timeline, each once, and hands them out from top to bottom.
class PartialRows {
public:
    std::shared_ptr<TimelineRow> copyOf(const std::shared_ptr<TimelineRow>& row) {
        auto& copy = copies_[row.get()];
        if (!copy) {
            copy = row->detachedCopy();
        }
        return copy;
    }

    [[nodiscard]] std::vector<std::shared_ptr<RemoteCoding::TimelineRowProtocol>> fromTopToBottom() const {
        std::vector<std::shared_ptr<RemoteCoding::TimelineRowProtocol>> rows;
        rows.reserve(copies_.size());
        for (const auto& [original, copy] : copies_) {
            rows.push_back(copy);
        }
        std::sort(rows.begin(), rows.end(),
                  [](const auto& left, const auto& right) { return left->rowNum() < right->rowNum(); });
        return rows;
    }

private:
    std::unordered_map<const TimelineRow*, std::shared_ptr<TimelineRow>> copies_;
};

void append(std::string& list, const std::string& id) {
    if (!list.empty()) {
        list += ',';
    }
    list += id;
}

constexpr std::int64_t fromTheStart = std::numeric_limits<std::int64_t>::min();

}  // namespace

std::shared_ptr<Timeline> Timeline::make(Options options) {
    const std::shared_ptr<Timeline> timeline(new Timeline(std::move(options)));
    timeline->codingTarget_ = std::make_shared<TimelineCodingTarget>(timeline);
    return timeline;
}

Timeline::Timeline(Options options)
    : options_(std::move(options)),
      rules_(options_.rules ? options_.rules : std::make_shared<const TimelineRules>()) {}

RemoteCoding::RowList Timeline::allRows() const {
    return synchronized(rowsLock_, [this] { return rows_.snapshot(); });
}

std::int64_t Timeline::modifyCount() const { return modifyCount_.load(std::memory_order_acquire); }

std::shared_ptr<RemoteCoding::TimelineProtocol>
Timeline::timelineFromModifyCount(std::int64_t modifyCount, bool excludeSharedInstances) const {
    auto changes = changesSince(modifyCount, excludeSharedInstances);
    if (options_.recordCall) {
        recordChangesSince(modifyCount, *changes);
    }
    return changes;
}

void Timeline::recordChangesSince(std::int64_t modifyCount, const PartialTimeline& changes) const {
    std::string instances;
    const auto rows = changes.allRows();
    for (const auto& row : *rows) {
        const auto changed = row->allInstances();
        for (const auto& instance : *changed) {
            append(instances, instance->uniqueId());
        }
    }
    std::string deleted;
    for (const std::string& id : changes.deletedInstanceIds()) {
        append(deleted, id);
    }
    options_.recordCall("timelineFromModifyCount", {{"timelineId", uniqueId()},
                                                    {"from", std::to_string(modifyCount)},
                                                    {"modifyCount", std::to_string(changes.modifyCount())},
                                                    {"rows", std::to_string(rows->size())},
                                                    {"instances", std::move(instances)},
                                                    {"deleted", std::move(deleted)}});
}

std::shared_ptr<PartialTimeline> Timeline::changesSince(std::int64_t modifyCount,
                                                        bool excludeSharedInstances) const {
    PartialTimeline::Contents contents;
    contents.timelineId = uniqueId();
    contents.modifyCount = rules_->partialTellsItsCount ? this->modifyCount() : modifyCount;

    const auto isAskedFor = [&](std::int64_t stamp) {
        return rules_->partialIncludesHigher ? stamp >= modifyCount : stamp == modifyCount;
    };
    const auto isListedAsDeleted = [&](const auto& entry) {
        const bool isDeleted = entry.removed || !rules_->undoneDeletionsAreNotListed;
        return isDeleted && entry.removalStamp != 0 && isAskedFor(entry.removalStamp);
    };

    PartialRows rows;
    rowLog_.forEachSince(modifyCount, [&](const RowEntry& entry) {
        if (!entry.removed && isAskedFor(entry.stamp)) {
            rows.copyOf(entry.object);
        }
        if (isListedAsDeleted(entry)) {
            contents.deletedRowIds.push_back(entry.object->uniqueId());
        }
    });

    std::vector<std::pair<std::int64_t, const std::shared_ptr<TimelineInstance>*>>
        changed;  // with their order
    instanceLog_.forEachSince(modifyCount, [&](const InstanceEntry& entry) {
        if (excludeSharedInstances && entry.object->isShared()) {
            return;
        }
        if (!entry.removed && isAskedFor(entry.stamp)) {
            changed.emplace_back(entry.object->order(), &entry.object);
        }
        if (isListedAsDeleted(entry) && (rules_->deletedRowsListTheirInstances || !wentWithItsRow(entry))) {
            contents.deletedInstanceIds.push_back(entry.object->uniqueId());
        }
    });
    std::sort(changed.begin(), changed.end());
    for (const auto& [order, place] : changed) {
        const auto& instance = *place;
        const auto row = rows.copyOf(instance->row_.lock());
        const auto knownRow = rules_->partialKnowsRows ? row : nullptr;
        row->append(rules_->partialIsDetached ? instance->detachedCopy(knownRow) : instance);
    }

    contents.rows = rows.fromTopToBottom();
    return std::make_shared<PartialTimeline>(std::move(contents));
}

std::vector<std::string> Timeline::deletedRowIds() const {
    return changesSince(fromTheStart, false)->deletedRowIds();
}

std::vector<std::string> Timeline::deletedInstanceIds() const {
    return changesSince(fromTheStart, false)->deletedInstanceIds();
}

std::shared_ptr<RemoteCoding::CodingTarget> Timeline::codingTarget() {
    return codingTargetAvailable_ ? codingTarget_ : nullptr;
}

std::shared_ptr<TimelineRow> Timeline::findRow(const std::string& rowId) const {
    const auto* entry = rowLog_.findPresent(rowId);
    return entry != nullptr ? entry->object : nullptr;
}

std::shared_ptr<TimelineRow> Timeline::findRowNamed(const std::string& name) const {
    for (const auto& row : rows_.elements()) {
        // Only this thread writes names: it reads them without a lock, and without a copy.
        if (static_cast<const TimelineRow&>(*row).name_ == name) {
            return std::static_pointer_cast<TimelineRow>(row);
        }
    }
    return nullptr;
}

std::shared_ptr<TimelineRow> Timeline::rowAt(std::int64_t index) const {
    const auto& rows = rows_.elements();
    if (index < 0 || index >= std::ssize(rows)) {
        return nullptr;
    }
    return std::static_pointer_cast<TimelineRow>(rows[static_cast<std::size_t>(index)]);
}

std::shared_ptr<TimelineInstance> Timeline::findInstance(const std::string& instanceId) const {
    const auto* entry = instanceLog_.findPresent(instanceId);
    return entry != nullptr ? entry->object : nullptr;
}

std::size_t Timeline::numberOfRows() const { return rows_.elements().size(); }

bool Timeline::wentWithItsRow(const InstanceEntry& entry) const {
    const auto row = entry.object->row_.lock();
    const auto* rowEntry = row ? rowLog_.find(row->uniqueId()) : nullptr;
    return rowEntry != nullptr && rowEntry->removalStamp == entry.removalStamp;
}

}  // namespace ReferenceHost
