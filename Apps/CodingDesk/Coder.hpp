#pragma once

#include "Apps/CodingDesk/Arrivals.hpp"
#include "Apps/CodingDesk/ReplayPlan.hpp"
#include "Apps/CodingDesk/World.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"

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

    // Each tells whether it was done. The row's name is the present one, which everybody knows.

    bool tag(ClipKey key, const PlannedClip& clip, const PlannedRow& row);
    /// The clip is one of this analyst's, or else the one that stands where it was tagged.
    bool retime(ClipKey key, const PlannedClip& clip, const std::string& rowName, const RetimeClip& edit);
    /// One of this analyst's clips.
    bool remove(ClipKey key);
    bool addRow(const PlannedRow& row, std::size_t to);
    bool removeRow(const std::string& name);
    bool recolorRow(const std::string& name, Base::Color color);
    bool moveRow(const std::string& name, std::size_t to, Base::Color color);
    bool renameRow(const std::string& name, const std::string& newName);

private:
    std::shared_ptr<ReferenceHost::TimelineInstance> findClip(ClipKey key, const PlannedClip& clip,
                                                              const std::string& rowName) const;
    void willEdit(const std::string& sight);
    void willRemove(const ReferenceHost::TimelineInstance& clip, const std::string& rowName);

    const AnalystIndex analyst_;
    const std::shared_ptr<ReferenceHost::Timeline> timeline_;
    Arrivals& arrivals_;
    const World& world_;
    std::map<ClipKey, std::string> tagged_;  // the instance ids of this analyst's clips
};

}  // namespace CodingDesk
