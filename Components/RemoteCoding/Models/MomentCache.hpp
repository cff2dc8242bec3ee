#pragma once

#include "Base/Color.hpp"
#include "Base/Synchronized.hpp"
#include "Components/RemoteCoding/HostInterfaces/LogManagerProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace RemoteCoding {

/// A moment that the tagging session holds, and the clip it stands for.
struct UploadedMoment {
    UploadedMoment(std::string momentId_, std::string instanceId_, std::string rowId_)
        : momentId(std::move(momentId_)), instanceId(std::move(instanceId_)), rowId(std::move(rowId_)) {}

    std::string momentId;
    std::string instanceId;
    std::string rowId;  ///< the instance's row at the time it was cached
};

/// A row as it was last sent to, or received from, the tagging session's presentation view.
struct UploadedRow {
    UploadedRow(std::string rowId_, std::string name_, Base::Color color_, std::int64_t rowNum_)
        : rowId(std::move(rowId_)), name(std::move(name_)), color(color_), rowNum(rowNum_) {}

    std::string rowId;
    std::string name;
    Base::Color color;
    std::int64_t rowNum;
};

/// What the remote tagging session holds of one timeline: which moments and which clip each stands for, which rows, and which
/// moments were deleted while their clip was still known. Kept in memory only.
///
/// Threads: any, several at a time; each operation is one step under the cache's own lock, and gives copies. Two answers in a
/// row may therefore see a change between them.
///
/// Ownership: it keeps ids, names, a colour and numbers, never a host object. It refers to the log, which must outlive it.
///
/// Failure: what cannot be cached or deleted is logged, after the lock has been let go, and passed over; this holds for
/// host objects that throw while they are read as well.
class MomentCache {
public:
    using Instances = std::span<const std::shared_ptr<TimelineInstanceProtocol>>;
    using Rows = std::span<const std::shared_ptr<TimelineRowProtocol>>;

    explicit MomentCache(LogManagerProtocol& log);
    MomentCache(const MomentCache&) = delete;
    MomentCache& operator=(const MomentCache&) = delete;

    /// Records the moment (`externalId`) and the row of each instance. The latest record wins.
    void cacheInstances(Instances instances);
    void cacheInstances(const InstanceList& instances) { cacheInstances(Instances(*instances)); }
    void cacheInstances(const std::shared_ptr<TimelineInstanceProtocol>& instance) {
        cacheInstances(Instances(&instance, 1));
    }

    /// Forgets the moments, and remembers for their clips that they had one.
    void deleteMoments(std::span<const std::string> momentIds);
    void deleteMoments(const std::string& momentId) { deleteMoments(std::span(&momentId, 1)); }

    /// Records each row as it is now. The latest record wins.
    void cacheRows(Rows rows);
    void cacheRows(const RowList& rows) { cacheRows(Rows(*rows)); }
    void cacheRows(const std::shared_ptr<TimelineRowProtocol>& row) { cacheRows(Rows(&row, 1)); }

    [[nodiscard]] std::optional<UploadedRow> uploadedRow(const std::string& rowId) const;
    void removeUploadedRow(const std::string& rowId);

    /// The instance and the row that the moment was last cached with.
    [[nodiscard]] std::optional<std::string> instanceId(const std::string& momentId) const;
    [[nodiscard]] std::optional<std::string> rowId(const std::string& momentId) const;

    /// The instance's current moment.
    [[nodiscard]] std::optional<std::string> momentId(const std::string& instanceId) const;

    /// Whether the instance's moment was deleted and the instance has not been cached since.
    [[nodiscard]] bool hasDeletedMoment(const std::string& instanceId) const;

private:
    template <typename Value>
    using MapById = std::unordered_map<std::string, Value>;

    void cacheInstance(const TimelineInstanceProtocol& instance, std::string momentId, std::string rowId);

    LogManagerProtocol& log_;
    Base::ObjectLock lock_;
    MapById<UploadedMoment> uploadedMoments_;
    MapById<UploadedRow> uploadedRows_;
    MapById<std::string> deletedMomentIdForInstanceId_;
    MapById<std::string> uploadedMomentIdForInstanceId_;
};

}  // namespace RemoteCoding
