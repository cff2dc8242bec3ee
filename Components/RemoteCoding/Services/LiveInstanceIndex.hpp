#pragma once

#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include <cstddef>
#include <string_view>
#include <unordered_map>

namespace RemoteCoding {

/// Finds live instances by row id and instance id while the moment ids of a batch are written back: what a linear search
/// through the timeline would find. Main thread only.
///
/// New clips stand at the end of their row and are asked for in its order, so that they are found there, however long the row is.
/// When that does not hold, the row is indexed: all look-ups together cost no more than a few passes over each touched row.
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
        [[nodiscard]] std::shared_ptr<TimelineInstanceProtocol> find(const std::string& instanceId);
        void look(InstanceList current);

        InstanceList
            instances;  ///< null when there is no such row; also keeps the texts alive that the map refers to
        std::size_t next = 0;   ///< behind the instance that was found last
        std::size_t steps = 0;  ///< of searches so far
        std::unordered_map<std::string_view, const std::shared_ptr<TimelineInstanceProtocol>*> byId;
        bool isCurrent = false;
    };

    RowList rows_;
    std::unordered_map<std::string, IndexedRow> indexedRows_;
};

}  // namespace RemoteCoding
