#pragma once

#include "Apps/CodingDesk/Arrivals.hpp"
#include "Apps/CodingDesk/Fates.hpp"
#include "Apps/CodingDesk/ReplayPlan.hpp"
#include "Apps/CodingDesk/World.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"

#include <cstddef>
#include <map>
#include <memory>
#include <string>

namespace CodingDesk {

/// One analyst's hands: carries out planned edits on that analyst's timeline, as it is at that moment. Main thread of that
/// analyst only.
///
/// The others edit at the same time. A row that has gone is added again where a clip needs it; what cannot be done any
/// more, or not yet, because the clip or row is not there is left alone.
class Coder {
public:
    /// All of these outlive the coder.
    Coder(AnalystIndex analyst, std::shared_ptr<ReferenceHost::Timeline> timeline, Arrivals& arrivals,
          const World& world);

    /// False when it could not be done. `row`: the row that the edit is about, with its present name, which everybody
    /// knows. Pauses and links are none of the coder's business: such an edit cannot be done.
    bool carryOut(const ReplayPlan& plan, const Edit& edit, const PlannedRow& row);

    bool renameRow(const std::string& name, const std::string& newName);

    /// What was done up to now.
    [[nodiscard]] const Work& work() const { return work_; }

private:
    bool tag(const ReplayPlan& plan, const TagClip& edit, const PlannedRow& row);
    /// The clip is one of this analyst's, or else the one that stands where it was tagged.
    bool retime(const ReplayPlan& plan, const RetimeClip& edit, const PlannedRow& row);
    bool remove(const DeleteClip& edit);
    bool addRow(const AddRow& edit, const PlannedRow& row);
    bool removeRow(const std::string& name);
    bool recolorRow(const std::string& name, Base::Color color);
    bool moveRow(const MoveRow& edit, const std::string& name);
    std::shared_ptr<ReferenceHost::TimelineInstance> findClip(ClipKey key, const PlannedClip& clip,
                                                              const std::string& rowName) const;
    void willEdit(const std::string& sight);
    void willRemove(const ReferenceHost::TimelineInstance& clip, const std::string& rowName);
    void noteDeleted(const std::string& instanceId);

    const AnalystIndex analyst_;
    const std::shared_ptr<ReferenceHost::Timeline> timeline_;
    Arrivals& arrivals_;
    const World& world_;
    Work work_;
    std::map<ClipKey, std::size_t> tagged_;  // index into the work's clips
};

}  // namespace CodingDesk
