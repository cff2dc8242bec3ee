#pragma once

#include "ReferenceHost/Cloud/RemoteRecords.hpp"
#include "ReferenceHost/Timeline/UserEdits.hpp"

#include <cstdint>
#include <map>
#include <vector>

namespace ReferenceHost {

using NumberedRowEdits = std::map<std::uint64_t, RowEdit>;

/// The list with these edits made to it, in their order. A row that was edited and is not in the list is added; one that is there
/// already is not added again. `taken`: what the same timeline has made to it before. Some of that may be later, where an earlier
/// session of the timeline saves its last edits only now.
[[nodiscard]] std::vector<CodeRecord> withEdits(std::vector<CodeRecord> codes, const RowEdits& edits,
                                                const NumberedRowEdits& taken = {});

}  // namespace ReferenceHost
