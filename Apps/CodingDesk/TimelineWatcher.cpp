#include "Apps/CodingDesk/TimelineWatcher.hpp"

#include <utility>

namespace CodingDesk {

TimelineWatcher::TimelineWatcher(AnalystIndex analyst, std::shared_ptr<ReferenceHost::Timeline> timeline,
                                 ReferenceHost::NotificationCenter& notifications, Arrivals& arrivals,
                                 const World& world)
    : analyst_(analyst),
      timeline_(std::move(timeline)),
      notifications_(notifications),
      arrivals_(arrivals),
      world_(world) {
    lookAtChanges();
    observer_ =
        notifications_.addObserver(RemoteCoding::TimelineNotifications::timelineDidAnyChange, timeline_,
                                   [this](const RemoteCoding::Notification&) { lookAtChanges(); });
}

TimelineWatcher::~TimelineWatcher() { notifications_.removeObserver(observer_); }

void TimelineWatcher::lookAtChanges() {
    const double now = world_.now();
    const auto changes = timeline_->timelineFromModifyCount(seenCount_ + 1, false);
    seenCount_ = changes->modifyCount();
    const auto rows = changes->allRows();
    for (const auto& row : *rows) {
        const std::string name = row->name();
        arrivals_.seen(analyst_, Sight::row(name), now);
        arrivals_.seen(analyst_, Sight::rowColor(name, row->color()), now);
        const auto instances = row->allInstances();
        for (const auto& instance : *instances) {
            const auto clip = std::dynamic_pointer_cast<ReferenceHost::TimelineInstance>(instance);
            const auto values = clip->values();
            clips_[clip->uniqueId()] = {timeline_->findRow(row->uniqueId()), values.startTime,
                                        values.endTime};
            arrivals_.seen(analyst_, Sight::clip(name, values.startTime, values.endTime), now);
        }
    }
    for (const std::string& instanceId : changes->deletedInstanceIds()) {
        const auto known = clips_.find(instanceId);
        if (known != clips_.end() && known->second.row) {
            const KnownClip& clip = known->second;
            arrivals_.seen(analyst_, Sight::clipGone(clip.row->name(), clip.start, clip.end), now);
            clips_.erase(known);
        }
    }
}

}  // namespace CodingDesk
