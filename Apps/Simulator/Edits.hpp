#pragma once

#include "Apps/Simulator/Deed.hpp"
#include "Apps/Simulator/Plan.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Trace.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Simulator {

class Seat;

/// One analyst's hands: edits the timeline that the analyst codes, in a session or not, and writes into the trace what was done.
class Edits {
public:
    /// The seat outlives it.
    explicit Edits(Seat& seat) : seat_(seat) {}

    /// Absent when the step is no edit. `number`: of the step; it makes what is written distinct.
    [[nodiscard]] std::optional<Deed> prepare(const Step& step, std::size_t number);

private:
    using TimelinePointer = std::shared_ptr<ReferenceHost::Timeline>;
    using RowPointer = std::shared_ptr<ReferenceHost::TimelineRow>;
    using ClipPointer = std::shared_ptr<ReferenceHost::TimelineInstance>;

    /// Something that this analyst removed and has not brought back.
    struct Removed {
        std::string timelineId;
        std::string id;
    };

    [[nodiscard]] std::optional<Deed> prepareClip(const Step& step, std::size_t number);
    [[nodiscard]] std::optional<Deed> prepareRow(const Step& step, std::size_t number);
    [[nodiscard]] Deed tag(const Step& step, std::size_t number);
    [[nodiscard]] Deed tagNewCode(const Step& step, std::size_t number);
    [[nodiscard]] Deed retime(const ClipPointer& clip, const Step& step, std::size_t number);
    [[nodiscard]] Deed note(const ClipPointer& clip, const Step& step, std::size_t number);
    [[nodiscard]] Deed deleteClip(const ClipPointer& clip, const Step& step);
    [[nodiscard]] Deed undoDelete(const Step& step);
    [[nodiscard]] Deed addRow(const Step& step, std::size_t number);
    [[nodiscard]] Deed renameRow(const Step& step, const std::string& name);
    [[nodiscard]] Deed recolorRow(const Step& step);
    [[nodiscard]] Deed moveRow(const Step& step);
    [[nodiscard]] Deed removeRow(const Step& step);
    [[nodiscard]] Deed undoRemoveRow(const Step& step);

    void addClip(const RowPointer& row, const Step& step, std::size_t number);
    [[nodiscard]] RowPointer makeRow(const std::string& name, const Step& step, Action what,
                                     std::optional<std::int64_t> to);

    [[nodiscard]] RowPointer rowNumber(std::uint32_t object) const;
    [[nodiscard]] ClipPointer clipNumber(std::uint32_t object) const;
    [[nodiscard]] ClipPointer clipOfMoment(std::uint32_t object) const;
    [[nodiscard]] static std::string clipsOf(const ReferenceHost::TimelineRow& row);
    [[nodiscard]] static std::string momentsOf(const ReferenceHost::TimelineRow& row);

    /// Names that several analysts may hit upon.
    [[nodiscard]] static std::string commonName(std::uint32_t choice);
    [[nodiscard]] static Deed noRow() { return nothingToDo("there is no such row"); }

    void record(Action what, ReferenceHost::TraceFields fields);

    Seat& seat_;
    TimelinePointer timeline_;  // while a step is prepared and done
    std::vector<Removed> removedClips_;
    std::vector<Removed> removedRows_;
};

}  // namespace Simulator
