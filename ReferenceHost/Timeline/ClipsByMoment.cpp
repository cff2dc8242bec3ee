#include "ReferenceHost/Timeline/ClipsByMoment.hpp"

namespace ReferenceHost {

void ClipsByMoment::add(const Log::Entry& entry) {
    const std::string& externalId = *entry.object->externalId_;
    if (first_.find(externalId, externalIdAt())) {
        further_[externalId].push_back(entry.number);
    } else {
        first_.put(externalId, entry.number, externalIdAt());
    }
}

void ClipsByMoment::remove(const Log::Entry& entry) {
    const std::string& externalId = *entry.object->externalId_;
    const auto further = further_.find(externalId);
    if (further == further_.end()) {
        first_.erase(externalId, externalIdAt());
        return;
    }
    auto& others = further->second;
    if (first_.find(externalId, externalIdAt()) == entry.number) {
        first_.put(externalId, others.front(), externalIdAt());
        others.erase(others.begin());
    } else {
        std::erase(others, entry.number);
    }
    if (others.empty()) {
        further_.erase(further);
    }
}

void ClipsByMoment::clear() {
    first_ = Base::IdIndex();
    further_.clear();
}

const ClipsByMoment::Log::Entry* ClipsByMoment::findPresent(const std::string& externalId) const {
    const auto first = first_.find(externalId, externalIdAt());
    if (!first) {
        return nullptr;
    }
    if (const auto& entry = log_.at(*first); !entry.removed) {
        return &entry;
    }
    if (const auto further = further_.find(externalId); further != further_.end()) {
        for (const auto number : further->second) {
            if (const auto& entry = log_.at(number); !entry.removed) {
                return &entry;
            }
        }
    }
    return nullptr;
}

}  // namespace ReferenceHost
