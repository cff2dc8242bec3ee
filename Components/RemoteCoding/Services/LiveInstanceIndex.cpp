#include "Components/RemoteCoding/Services/LiveInstanceIndex.hpp"

#include <algorithm>

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
        const InstanceList instances = row != rows_->end() ? (*row)->allInstances() : nullptr;
        if (instances != indexed.instances) {
            indexed.byId.clear();
            indexed.instances = instances;
            if (instances) {
                indexed.byId.reserve(instances->size());
                for (const auto& instance : *instances) {
                    indexed.byId.try_emplace(instance->uniqueId(), &instance);
                }
            }
        }
        indexed.isCurrent = true;
    }
    const auto found = indexed.byId.find(instanceId);
    return found != indexed.byId.end() ? *found->second : nullptr;
}

}  // namespace RemoteCoding
