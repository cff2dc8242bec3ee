// What users do to rows, and what the component does to them through the coding target.

#include "ReferenceHost/Timeline/Timeline.hpp"

#include <algorithm>
#include <set>
#include <utility>

namespace ReferenceHost {

using Base::synchronized;

bool Timeline::isNameRefused(const std::string& name) const {
    return rules_->rowNamesAreUnique && !componentEdits_ && findRowNamed(name) != nullptr;
}

void Timeline::rememberEdit(RowEdit::Kind kind, const TimelineRow& row, const std::string& oldName) {
    RowEdit edit;
    edit.kind = kind;
    edit.number = nextEditNumber();
    if (edit.number == 0) {
        return;
    }
    edit.name = row.name();
    edit.oldName = oldName;
    edit.color = row.color();
    const auto above = rowAt(row.rowNum() - 1);
    if (above) {
        edit.above = above->name();
    }
    rowEdits_.add(std::move(edit), row.shared_from_this(), above);
}

std::shared_ptr<TimelineRow> Timeline::addRow(const std::string& name, Base::Color color,
                                              std::optional<std::int64_t> index) {
    if (isNameRefused(name)) {
        return nullptr;
    }
    const auto count = nextCount(ChangeKind::existence);
    auto row = makeRow(name, color, index.value_or(std::ssize(rows_.elements())), count);
    rememberEdit(RowEdit::Kind::add, *row);
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
    if (entry == nullptr) {
        return false;
    }
    const std::string oldName = entry->object->name();
    if (name == oldName ? rules_->emptyEditIsNoChange : isNameRefused(name)) {
        return false;
    }
    if (componentEdits_ && rowId == keepsItsName_) {
        return false;
    }
    const auto count = nextCount(ChangeKind::alteration);
    entry->object->setName(name);
    if (!componentEdits_) {
        rememberEdit(RowEdit::Kind::rename, *entry->object, oldName);
        entry->object->setNameEditNumber(editOfToldName(*entry->object).value_or(lastEditNumber_));
    } else {
        rowEdits_.follow(*entry->object, oldName, name);
        const auto clips = entry->object->allInstances();
        for (const auto& clip : *clips) {
            auto& ours = static_cast<TimelineInstance&>(*clip);
            ours.tellCode(name, ours.editNumbers().code);
        }
    }
    rowLog_.didChange(*entry, count);
    finishChange(count);
    return true;
}

std::optional<std::uint64_t> Timeline::editOfToldName(const TimelineRow& row) {
    const auto clips = row.allInstances();
    const std::string name = row.name();
    std::optional<std::uint64_t> last;
    for (const auto& clip : *clips) {
        const auto& ours = static_cast<const TimelineInstance&>(*clip);
        if (!ours.isTold()) {
            continue;
        }
        const auto number = ours.toldWith(name);
        if (!number) {
            return std::nullopt;
        }
        last = std::max(last, number);
    }
    return last;
}

bool Timeline::recolorRow(const std::string& rowId, Base::Color color) {
    auto* entry = rowLog_.findPresent(rowId);
    if (entry == nullptr || (rules_->emptyEditIsNoChange && entry->object->color() == color)) {
        return false;
    }
    const auto count = nextCount(ChangeKind::alteration);
    entry->object->setColor(color);
    rememberEdit(RowEdit::Kind::recolor, *entry->object);
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
    for (const auto& row : moved) {
        rememberEdit(RowEdit::Kind::move, static_cast<const TimelineRow&>(*row));
    }
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
        didRemove(*instanceLog_.find(instance->uniqueId()), count);
    }
    rowLog_.didRemove(*entry, count);
    rememberEdit(RowEdit::Kind::remove, *entry->object);

    // The row keeps its clips and its last number: whoever still holds it reads its last state.
    Rows after = rows_.elements();
    after.erase(after.begin() + entry->object->rowNum());
    setRows(std::move(after), count);
    finishChange(count);
    return true;
}

bool Timeline::restoreRow(const std::string& rowId) {
    auto* entry = rowLog_.find(rowId);
    if (entry == nullptr || !entry->removed || isNameRefused(entry->object->name())) {
        return false;
    }
    const auto count = nextCount(ChangeKind::existence);
    const auto instances = entry->object->allInstances();
    for (const auto& instance : *instances) {
        didRestore(*instanceLog_.find(instance->uniqueId()), count);
    }
    rowLog_.didRestore(*entry, count);
    insertIntoRows(entry->object, entry->object->rowNum(), count);
    rememberEdit(RowEdit::Kind::add, *entry->object);
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

}  // namespace ReferenceHost
