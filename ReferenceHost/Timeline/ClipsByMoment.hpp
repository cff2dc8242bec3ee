#pragma once

#include "Base/IdIndex.hpp"
#include "ReferenceHost/Timeline/ChangeLog.hpp"
#include "ReferenceHost/Timeline/TimelineInstance.hpp"

#include <string>
#include <unordered_map>
#include <vector>

namespace ReferenceHost {

/// Finds a timeline's clips, removed ones included, by the `externalId` that they have: as a rule one for each, several when a clip
/// that was removed has got a successor. Main thread only.
class ClipsByMoment {
public:
    using Log = ChangeLog<TimelineInstance>;

    explicit ClipsByMoment(const Log& log) : log_(log) {}

    /// The clip has got its `externalId`.
    void add(const Log::Entry& entry);

    /// The clip is about to lose it.
    void remove(const Log::Entry& entry);

    /// All are about to.
    void clear();

    /// Of the clips that are there, the one that got this `externalId` first; null when there is none.
    [[nodiscard]] const Log::Entry* findPresent(const std::string& externalId) const;

private:
    [[nodiscard]] auto externalIdAt() const {
        return
            [this](Log::Number number) -> std::string_view { return *log_.at(number).object->externalId_; };
    }

    const Log& log_;
    Base::IdIndex first_;
    std::unordered_map<std::string, std::vector<Log::Number>> further_;  // of several: all but the first
};

}  // namespace ReferenceHost
