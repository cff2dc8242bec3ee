#include "Components/RemoteCoding/Services/LiveInstanceIndex.hpp"

#include <algorithm>
#include <utility>

namespace RemoteCoding {

void TimelineUploadService::LiveInstanceIndex::refresh(const std::shared_ptr<TimelineProtocol>& timeline) {
    rows_ = timeline ? timeline->allRows() : nullptr;
    for (auto& [rowId, indexedRow] : indexedRows_) {
        indexedRow.isCurrent = false;
    }
}

std::shared_ptr<TimelineInstanceProtocol>
TimelineUploadService::LiveInstanceIndex::find(const std::string& rowId, const std::string& instanceId) {
    if (!rows_) {
        return nullptr;
    }
    IndexedRow& indexed = indexedRows_[rowId];
    if (!indexed.isCurrent) {
        const auto row = std::ranges::find_if(
            *rows_, [&](const auto& candidate) { return candidate->uniqueId() == rowId; });
        indexed.look(row != rows_->end() ? (*row)->allInstances() : nullptr);
        indexed.isCurrent = true;
    }
    return indexed.instances ? indexed.find(instanceId) : nullptr;
}

void TimelineUploadService::LiveInstanceIndex::IndexedRow::look(InstanceList current) {
    if (current != instances) {
        byId.clear();
        instances = std::move(current);
        next = instances ? instances->size() : 0;
        steps = 0;
    }
}

std::shared_ptr<TimelineInstanceProtocol>
TimelineUploadService::LiveInstanceIndex::IndexedRow::find(const std::string& instanceId) {
    const auto& list = *instances;
    if (next < list.size() && list[next]->uniqueId() == instanceId) {
        return list[next++];
    }
    for (std::size_t place = list.size(); place > 0 && steps < list.size(); --place, ++steps) {
        if (list[place - 1]->uniqueId() == instanceId) {
            next = place;
            return list[place - 1];
        }
    }
    if (byId.empty()) {
        byId.reserve(list.size());
        for (const auto& instance : list) {
            byId.try_emplace(instance->uniqueId(), &instance);
        }
    }
    const auto found = byId.find(instanceId);
    return found != byId.end() ? *found->second : nullptr;
}

}  // namespace RemoteCoding
