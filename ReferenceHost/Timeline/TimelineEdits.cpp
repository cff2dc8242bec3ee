#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Timeline/TimelineComponentEdit.hpp"

#include <algorithm>
#include <set>
#include <utility>

namespace ReferenceHost {

using Base::synchronized;

// ---- how every edit ends ----

std::int64_t Timeline::nextCount(ChangeKind kind) const {
    const bool counts = kind == ChangeKind::existence || rules_->everyChangeCounts;
    return modifyCount() + (counts ? 1 : 0);
}

void Timeline::finishChange(std::int64_t count) {
    modifyCount_.store(count, std::memory_order_release);
    const bool isAnnounced =
        rules_->changesAreAnnounced && (rules_->componentEditsAreAnnounced || !componentEdits_);
    if (isAnnounced && options_.didChange) {
        options_.didChange(shared_from_this());
    }
}

// ---- rows ----

std::shared_ptr<TimelineRow> Timeline::addRow(const std::string& name, Base::Color color,
                                              std::optional<std::int64_t> index) {
    const auto count = nextCount(ChangeKind::existence);
    auto row = makeRow(name, color, index.value_or(std::ssize(rows_.elements())), count);
    finishChange(count);
    return row;
}

std::shared_ptr<TimelineRow> Timeline::makeRow(const std::string& name, Base::Color color, std::int64_t index,
                                               std::int64_t count) {
    const auto place = std::clamp<std::int64_t>(index, 0, std::ssize(rows_.elements()));
    auto row = std::make_shared<TimelineRow>(options_.makeId(), name, color, place, weak_from_this());
    rowLog_.add(row, count);
    insertIntoRows(row, place, count);
    return row;
}

bool Timeline::renameRow(const std::string& rowId, const std::string& name) {
    auto* entry = rowLog_.findPresent(rowId);
    if (entry == nullptr || (rules_->emptyEditIsNoChange && entry->object->name() == name)) {
        return false;
    }
    const auto count = nextCount(ChangeKind::alteration);
    entry->object->setName(name);
    rowLog_.didChange(*entry, count);
    finishChange(count);
    return true;
}

bool Timeline::recolorRow(const std::string& rowId, Base::Color color) {
    auto* entry = rowLog_.findPresent(rowId);
    if (entry == nullptr || (rules_->emptyEditIsNoChange && entry->object->color() == color)) {
        return false;
    }
    const auto count = nextCount(ChangeKind::alteration);
    entry->object->setColor(color);
    rowLog_.didChange(*entry, count);
    finishChange(count);
    return true;
}

bool Timeline::moveRow(const std::string& rowId, std::int64_t to) {
    const auto row = findRow(rowId);
    return row && rearrangeRows({row->rowNum()}, to);
}

bool Timeline::rearrangeRows(const std::vector<std::int64_t>& from, std::int64_t to) {
    const auto& before = rows_.elements();
    std::set<std::int64_t> indexes;
    std::copy_if(from.begin(), from.end(), std::inserter(indexes, indexes.end()),
                 [&](std::int64_t index) { return index >= 0 && index < std::ssize(before); });
    if (indexes.empty()) {
        return false;
    }

    Rows moved;
    Rows after;
    for (std::int64_t index = 0; index < std::ssize(before); ++index) {
        (indexes.contains(index) ? moved : after).push_back(before[static_cast<std::size_t>(index)]);
    }
    const auto place = std::clamp<std::int64_t>(to, 0, std::ssize(after));
    after.insert(after.begin() + place, moved.begin(), moved.end());
    const bool changesNothing = after == before;
    if (changesNothing && rules_->emptyEditIsNoChange) {
        return false;
    }

    const auto count = nextCount(ChangeKind::alteration);
    auto newIndex = place;
    for (const auto& row : moved) {
        if (row->rowNum() != newIndex || changesNothing) {
            rowLog_.didChange(*rowLog_.find(row->uniqueId()), count);
        }
        ++newIndex;
    }
    setRows(std::move(after), count);
    finishChange(count);
    return true;
}

bool Timeline::removeRow(const std::string& rowId) {
    auto* entry = rowLog_.findPresent(rowId);
    if (entry == nullptr) {
        return false;
    }
    const auto count = nextCount(ChangeKind::existence);
    const auto instances = entry->object->allInstances();
    for (const auto& instance : *instances) {
        instanceLog_.didRemove(*instanceLog_.find(instance->uniqueId()), count);
    }
    rowLog_.didRemove(*entry, count);

    // The row keeps its clips and its last number: whoever still holds it reads its last state.
    Rows after = rows_.elements();
    after.erase(after.begin() + entry->object->rowNum());
    setRows(std::move(after), count);
    finishChange(count);
    return true;
}

bool Timeline::restoreRow(const std::string& rowId) {
    auto* entry = rowLog_.find(rowId);
    if (entry == nullptr || !entry->removed) {
        return false;
    }
    const auto count = nextCount(ChangeKind::existence);
    const auto instances = entry->object->allInstances();
    for (const auto& instance : *instances) {
        instanceLog_.didRestore(*instanceLog_.find(instance->uniqueId()), count);
    }
    rowLog_.didRestore(*entry, count);
    insertIntoRows(entry->object, entry->object->rowNum(), count);
    finishChange(count);
    return true;
}

void Timeline::insertIntoRows(std::shared_ptr<TimelineRow> row, std::int64_t index, std::int64_t count) {
    Rows after = rows_.elements();
    const auto place = std::clamp<std::int64_t>(index, 0, std::ssize(after));
    after.insert(after.begin() + place, std::move(row));
    setRows(std::move(after), count);
}

void Timeline::setRows(Rows rows, std::int64_t count) {
    std::int64_t rowNum = 0;
    for (const auto& element : rows) {
        auto& row = static_cast<TimelineRow&>(*element);
        if (row.rowNum() != rowNum) {
            row.setRowNum(rowNum);
            if (rules_->shiftedRowsChange) {
                rowLog_.didChange(*rowLog_.find(row.uniqueId()), count);
            }
        }
        ++rowNum;
    }
    synchronized(rowsLock_, [&] { rows_.replace(std::move(rows)); });
}

// ---- clips ----

std::shared_ptr<TimelineInstance> Timeline::addInstance(const std::string& rowId, double startTime,
                                                        double endTime, const std::string& notes) {
    const auto row = findRow(rowId);
    if (!row) {
        return nullptr;
    }
    const auto count = nextCount(ChangeKind::existence);
    auto instance = std::make_shared<TimelineInstance>(
        options_.makeId(), row, ClipValues(startTime, endTime, notes), ++lastOrder_, false);
    instanceLog_.add(instance, count);
    row->append(instance);
    finishChange(count);
    return instance;
}

bool Timeline::retimeInstance(const std::string& instanceId, double startTime, double endTime) {
    auto* entry = instanceLog_.findPresent(instanceId);
    return entry != nullptr && setValues(*entry, ClipValues(startTime, endTime, entry->object->notes()));
}

bool Timeline::setInstanceNotes(const std::string& instanceId, const std::string& notes) {
    auto* entry = instanceLog_.findPresent(instanceId);
    return entry != nullptr &&
           setValues(*entry, ClipValues(entry->object->startTime(), entry->object->endTime(), notes));
}

bool Timeline::setValues(InstanceEntry& entry, ClipValues values) {
    if (rules_->emptyEditIsNoChange && entry.object->values() == values) {
        return false;
    }
    const auto count = nextCount(ChangeKind::alteration);
    entry.object->setValues(std::move(values));
    instanceLog_.didChange(entry, count);
    finishChange(count);
    return true;
}

bool Timeline::removeInstance(const std::string& instanceId) {
    auto* entry = instanceLog_.findPresent(instanceId);
    if (entry == nullptr) {
        return false;
    }
    const auto count = nextCount(ChangeKind::existence);
    entry->object->row_.lock()->remove(*entry->object);
    instanceLog_.didRemove(*entry, count);
    finishChange(count);
    return true;
}

bool Timeline::restoreInstance(const std::string& instanceId) {
    auto* entry = instanceLog_.find(instanceId);
    if (entry == nullptr || !entry->removed) {
        return false;
    }
    const auto row = entry->object->row_.lock();
    if (!findRow(row->uniqueId())) {
        return false;
    }
    const auto count = nextCount(ChangeKind::existence);
    row->restore(entry->object);
    instanceLog_.didRestore(*entry, count);
    finishChange(count);
    return true;
}

}  // namespace ReferenceHost
