#pragma once

#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include <string_view>
#include <unordered_map>

namespace RemoteCoding {

/// Finds live instances by row id and instance id while the moment ids of a batch are written back: what a linear search
/// through the timeline would find, at the cost of one pass over each touched row. Main thread only.
class TimelineUploadService::LiveInstanceIndex {
public:
    /// Looks at the timeline anew; to be called whenever others may have edited it since the last look-up. A row whose list of
    /// instances is still the same object is not read again.
    void refresh(const std::shared_ptr<TimelineProtocol>& timeline);

    /// Null when the timeline has no such row, or the row no such instance.
    [[nodiscard]] std::shared_ptr<TimelineInstanceProtocol> find(const std::string& rowId,
                                                                 const std::string& instanceId);

private:
    struct IndexedRow {
        InstanceList instances;  ///< also keeps the texts alive that the map refers to
        std::unordered_map<std::string_view, const std::shared_ptr<TimelineInstanceProtocol>*> byId;
        bool isCurrent = false;
    };

    RowList rows_;
    std::unordered_map<std::string, IndexedRow> indexedRows_;
};

}  // namespace RemoteCoding
