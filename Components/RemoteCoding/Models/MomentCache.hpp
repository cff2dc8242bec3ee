#pragma once

#include "Base/Color.hpp"
#include "Base/IdIndex.hpp"
#include "Base/Synchronized.hpp"
#include "Components/RemoteCoding/HostInterfaces/LogManagerProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"
#include "Components/RemoteCoding/Models/IdPair.hpp"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace RemoteCoding {

/// Where on the timeline the clip is that a moment stands for.
struct ClipPlace {
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
    [[nodiscard]] bool hasUploadedRow(const std::string& rowId) const;
    void removeUploadedRow(const std::string& rowId);

    /// The instance and the row that the moment was last cached with.
    [[nodiscard]] std::optional<std::string> instanceId(const std::string& momentId) const;
    [[nodiscard]] std::optional<std::string> rowId(const std::string& momentId) const;

    [[nodiscard]] bool knowsMoment(const std::string& momentId) const;
    /// Both at once, into texts that may have room for them already. False, and `place` as it was, for an unknown moment.
    [[nodiscard]] bool findPlace(const std::string& momentId, ClipPlace& place) const;

    /// The instance's current moment.
    [[nodiscard]] std::optional<std::string> momentId(const std::string& instanceId) const;

    /// Whether the instance's moment was deleted and the instance has not been cached since.
    [[nodiscard]] bool hasDeletedMoment(const std::string& instanceId) const;

private:
    using Position = Base::IdIndex::Position;
    static constexpr Position nowhere = UINT32_MAX;

    /// A moment and an instance that were cached together. Kept while one of its three flags is set. In
    /// two cache lines, never three.
    struct alignas(32) UploadedMoment {
        [[nodiscard]] std::string_view momentId() const { return ids.first(); }
        [[nodiscard]] std::string_view instanceId() const { return ids.second(); }

        IdPair ids;
        const std::string* rowId = nullptr;  ///< the instance's row at the time it was cached
        Position nextFree = nowhere;
        bool isOfMoment = false;    ///< the moment stands for this instance
        bool isOfInstance = false;  ///< this is the instance's current moment
        bool isDeletion = false;    ///< the moment was the instance's, and was deleted
    };

    /// In pieces: no single moment has to wait until all before it are copied into a larger one.
    class UploadedMoments {
    public:
        [[nodiscard]] UploadedMoment& operator[](Position position) {
            return (*pieces_[position / perPiece])[position % perPiece];
        }
        [[nodiscard]] const UploadedMoment& operator[](Position position) const {
            return (*pieces_[position / perPiece])[position % perPiece];
        }

        /// The position of a new one.
        Position add() {
            if (count_ == pieces_.size() * perPiece) {
                pieces_.push_back(std::make_unique<Piece>());
            }
            return count_++;
        }

    private:
        static constexpr Position perPiece = 256;
        using Piece = std::array<UploadedMoment, perPiece>;

        std::vector<std::unique_ptr<Piece>> pieces_;
        Position count_ = 0;
    };

    void cacheInstance(const std::string& instanceId, const std::string& momentId, const std::string& rowId);
    void deleteMoment(Position position);
    [[nodiscard]] Position add(const std::string& momentId, const std::string& instanceId);
    /// The record does not say that any more.
    void end(std::optional<Position> position, bool UploadedMoment::* what);

    [[nodiscard]] const UploadedMoment* uploadedMoment(const std::string& momentId) const;
    [[nodiscard]] auto momentIdAt() const {
        return [this](Position position) -> std::string_view { return records_[position].momentId(); };
    }
    [[nodiscard]] auto instanceIdAt() const {
        return [this](Position position) -> std::string_view { return records_[position].instanceId(); };
    }

    LogManagerProtocol& log_;
    Base::ObjectLock lock_;
    UploadedMoments records_;
    Position firstFree_ = nowhere;
    Base::IdIndex uploadedMoments_;                ///< by moment: the records that are its
    Base::IdIndex uploadedMomentIdForInstanceId_;  ///< by instance: the records that are its current ones
    Base::IdIndex deletedMomentIdForInstanceId_;   ///< by instance
    std::unordered_set<std::string> rowIds_;       ///< every row that ever had an instance here
    std::unordered_map<std::string, UploadedRow> uploadedRows_;
};

}  // namespace RemoteCoding
