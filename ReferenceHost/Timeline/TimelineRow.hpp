#pragma once

#include "Base/Synchronized.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"
#include "ReferenceHost/Timeline/SnapshotList.hpp"
#include "ReferenceHost/Timeline/TimelineInstance.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace ReferenceHost {

class Timeline;

/// One code: a live row of a timeline, or a partial timeline's detached copy of one. Edited on the main
/// thread only, read from any thread, also after it was removed.
///
/// Its clips stand in the order in which they were added; an undone removal puts a clip back to its old
/// place. Adding, retiming and removing a clip takes constant time while nobody holds a snapshot: removed
/// clips stay in the list until the next snapshot asks for a clean one.
class TimelineRow final : public RemoteCoding::TimelineRowProtocol,
                          public std::enable_shared_from_this<TimelineRow> {
public:
    TimelineRow(std::string uniqueId, std::string name, Base::Color color, std::int64_t rowNum,
                std::weak_ptr<Timeline> timeline);

    [[nodiscard]] const std::string& uniqueId() const override { return uniqueId_; }
    [[nodiscard]] std::string name() const override;
    [[nodiscard]] Base::Color color() const override;

    /// The row's index in its timeline's `allRows`, from 0.
    [[nodiscard]] std::int64_t rowNum() const override;
    [[nodiscard]] std::int64_t numberOfInstances() const override;
    [[nodiscard]] RemoteCoding::InstanceList allInstances() const override;

    /// The user's edit that gave the row its name; 0: none did.
    [[nodiscard]] std::uint64_t nameEditNumber() const;

    /// Null for a detached copy, and when the timeline is gone.
    [[nodiscard]] std::shared_ptr<Timeline> timeline() const { return timeline_.lock(); }

    /// A copy of the row as it is, without its clips and without a timeline.
    [[nodiscard]] std::shared_ptr<TimelineRow> detachedCopy() const;

private:
    friend class Timeline;
    friend class TimelineInstance;

    void setName(std::string name);
    void setNameEditNumber(std::uint64_t number);
    void setColor(Base::Color color);
    void setRowNum(std::int64_t rowNum);

    void append(std::shared_ptr<TimelineInstance> instance);
    void remove(TimelineInstance& instance);
    void restore(const std::shared_ptr<TimelineInstance>& instance);

    const std::string uniqueId_;
    const std::weak_ptr<Timeline> timeline_;  // empty for a detached copy

    Base::ObjectLock lock_;  // guards the rest, and `onRow_` of the row's instances
    std::string name_;
    std::uint64_t nameEditNumber_ = 0;
    Base::Color color_;
    std::int64_t rowNum_;
    mutable SnapshotList<RemoteCoding::TimelineInstanceProtocol> instances_;  // sorted by `order`
    mutable std::size_t removedCount_ = 0;  // clips of the list that are not on the row any more
};

}  // namespace ReferenceHost
