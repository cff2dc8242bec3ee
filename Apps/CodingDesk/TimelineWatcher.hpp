#pragma once

#include "Apps/CodingDesk/Arrivals.hpp"
#include "Apps/CodingDesk/World.hpp"
#include "ReferenceHost/NotificationCenter.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace CodingDesk {

/// Follows one timeline as its analyst sees it, change by change, and reports what has become visible. Main thread of that
/// analyst only.
class TimelineWatcher {
public:
    /// All of these outlive the watcher.
    TimelineWatcher(AnalystIndex analyst, std::shared_ptr<ReferenceHost::Timeline> timeline,
                    ReferenceHost::NotificationCenter& notifications, Arrivals& arrivals, const World& world);
    ~TimelineWatcher();
    TimelineWatcher(const TimelineWatcher&) = delete;
    TimelineWatcher& operator=(const TimelineWatcher&) = delete;

private:
    struct KnownClip {
        std::shared_ptr<ReferenceHost::TimelineRow> row;  ///< gives its last name also when it is gone
        double start = 0;
        double end = 0;
    };

    void lookAtChanges();

    const AnalystIndex analyst_;
    const std::shared_ptr<ReferenceHost::Timeline> timeline_;
    ReferenceHost::NotificationCenter& notifications_;
    Arrivals& arrivals_;
    const World& world_;
    ReferenceHost::NotificationCenter::ObserverId observer_ = 0;
    std::int64_t seenCount_ = 0;  // the timeline's `modifyCount` up to which everything has been looked at
    std::map<std::string, KnownClip> clips_;  // by instance id
};

}  // namespace CodingDesk
