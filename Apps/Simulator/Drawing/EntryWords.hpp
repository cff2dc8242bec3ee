#pragma once

#include "Apps/Simulator/Drawing/ShortIds.hpp"
#include "Apps/Simulator/Drawing/TraceIndex.hpp"

#include <string>

namespace Simulator {

/// What an entry tells, in one line for people. What it is given outlives it.
class EntryWords {
public:
    EntryWords(const TraceEntries& entries, const TraceIndex& index, const ShortIds& ids)
        : entries_(entries), index_(index), ids_(ids) {}

    [[nodiscard]] std::string of(std::size_t entry) const;

private:
    using Entry = ReferenceHost::TraceEntry;

    [[nodiscard]] std::string ofCall(std::size_t at) const;
    [[nodiscard]] static std::string ofHostCall(const Entry& entry);
    [[nodiscard]] std::string ofAnswer(std::size_t at) const;
    [[nodiscard]] std::string ofDelivery(const Entry& entry) const;
    [[nodiscard]] static std::string ofSynchroniser(const Entry& entry);
    [[nodiscard]] static std::string ofSimulator(const Entry& entry);
    [[nodiscard]] static std::string ofEdit(const Entry& entry);
    [[nodiscard]] static std::string ofAnythingElse(const Entry& entry);

    const TraceEntries& entries_;
    const TraceIndex& index_;
    const ShortIds& ids_;
};

}  // namespace Simulator
