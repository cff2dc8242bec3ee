#pragma once

#include "ReferenceHost/Cloud/RemoteRecords.hpp"
#include "ReferenceHost/Timeline/UserEdits.hpp"

#include <vector>

namespace ReferenceHost {

/// The list with these edits made to it, in their order. A row that was edited and is not in the list is added; one that is there
/// already is not added again.
[[nodiscard]] std::vector<CodeRecord> withEdits(std::vector<CodeRecord> codes, const RowEdits& edits);

}  // namespace ReferenceHost
