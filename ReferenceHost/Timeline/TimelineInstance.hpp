#pragma once

#include "Base/Synchronized.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"
#include "ReferenceHost/Timeline/UserEdits.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

class TimelineRow;

/// What an analyst notes with a clip. Times are seconds from the start of the video; a clip may have no
/// length.
struct ClipValues {
    ClipValues() = default;
    ClipValues(double startTime_, double endTime_, std::string notes_ = {})
        : startTime(startTime_), endTime(endTime_), notes(std::move(notes_)) {}

    double startTime = 0;
    double endTime = 0;
    std::string notes;
};

/// Whether both say the same. Two times that are no numbers are the same time.
[[nodiscard]] bool operator==(const ClipValues& left, const ClipValues& right);

/// One tagged clip: a live one of a timeline, or a partial timeline's detached copy of one. Written on the
/// main thread only, read from any thread, also after it was removed.
class TimelineInstance final : public RemoteCoding::TimelineInstanceProtocol,
                               public std::enable_shared_from_this<TimelineInstance> {
public:
    TimelineInstance(std::string uniqueId, std::weak_ptr<TimelineRow> row, ClipValues values,
                     std::int64_t order, bool isShared);

    [[nodiscard]] const std::string& uniqueId() const override { return uniqueId_; }
    [[nodiscard]] std::optional<std::string> externalId() const override;
    void setExternalId(std::optional<std::string> externalId) override;

    /// The row the clip is or was on. A detached copy gives the partial timeline's row while that is held.
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineRowProtocol> row() const override;

    [[nodiscard]] double startTime() const;
    [[nodiscard]] double endTime() const;
    [[nodiscard]] std::string notes() const;

    /// All of them at one moment: never one edit's start with another's end.
    [[nodiscard]] ClipValues values() const;

    /// Which edits of the timeline's user have set its parts; for the code, the names count that the row has got with the clip on it.
    [[nodiscard]] EditNumbers editNumbers() const;

    /// Of a detached copy: the clip that it shows, if that still is anywhere. Else the clip itself.
    [[nodiscard]] std::shared_ptr<TimelineInstance> original();

    /// The clip was written to the cloud with what these edits have set. Of a detached copy: the clip that it shows was.
    void didWrite(const EditNumbers& numbers);

    /// Up to which edits the clip was written.
    [[nodiscard]] EditNumbers written() const;

    /// The cloud is being told of the clip, or has told of it, with this name of its row; absent: with one that is not read yet.
    /// `number`: the edit that has set it. Of a detached copy: of the clip that it shows.
    void tellCode(std::optional<std::string> code, std::uint64_t number);

    /// Whether the cloud may know of the clip.
    [[nodiscard]] bool isTold() const;

    /// The edit that has set this name of its row, when it is the one that the cloud was told last.
    [[nodiscard]] std::optional<std::uint64_t> toldWith(const std::string& code) const;

    /// The clip stands for this moment of the session: false when it stands for a later one already. Of a detached copy: the clip
    /// that it shows does.
    bool standFor(const std::string& sessionId, std::uint64_t momentNumber);

    /// Whether it came from elsewhere, by the sync library.
    [[nodiscard]] bool isShared() const { return isShared_; }

    /// The clip's place among those of its timeline: a clip that was added later has a higher one.
    [[nodiscard]] std::int64_t order() const { return order_; }

    /// A copy with the present values that nobody edits, on another row.
    [[nodiscard]] std::shared_ptr<TimelineInstance> detachedCopy(std::weak_ptr<TimelineRow> row);

private:
    friend class ClipsByMoment;
    friend class Timeline;
    friend class TimelineRow;

    void setValues(ClipValues values);
    void setEditNumber(std::uint64_t EditNumbers::* part, std::uint64_t number);
    /// Writes the id without telling the timeline.
    void writeExternalId(std::optional<std::string> externalId);

    /// One of some that all clips share: its own would be a sixth of the object. Whoever holds it asks no other clip, which may
    /// have the same. The main thread alone writes the numbers, the values and the `externalId`, and reads these without it.
    [[nodiscard]] const Base::ObjectLock& lock() const;

    /// `ofName`: the edit that gave the clip's row its name.
    [[nodiscard]] EditNumbers withName(EditNumbers numbers, std::uint64_t ofName) const;

    // A timeline has many of these, and an edit finds its clip in no cache: what edits need stands together.
    const std::weak_ptr<TimelineRow> row_;
    /// Of one from elsewhere: the user's last edit before. Not written once others see the clip.
    std::uint64_t arrivedAfter_ = 0;
    EditNumbers numbers_;                    // guarded by `lock()`
    ClipValues values_;                      // guarded by `lock()`
    std::optional<std::string> externalId_;  // guarded by `lock()`
    const bool isShared_;
    bool onRow_ = true;           // guarded by the row's lock
    bool deletedByUser_ = false;  // while it is removed; main thread only
    const std::int64_t order_;
    const std::string uniqueId_;

    // `lock()` guards the rest as well, but `original_`.
    EditNumbers written_;
    bool isTold_ = false;
    std::optional<std::string> toldCode_;
    std::uint64_t toldNumber_ = 0;
    /// By session: the number of the latest that it has stood for. Hardly ever of more than one.
    std::vector<std::pair<std::string, std::uint64_t>> lastMoment_;

    std::weak_ptr<TimelineInstance> original_;  // of a detached copy
};

}  // namespace ReferenceHost
