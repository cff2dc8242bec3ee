#include "ReferenceHost/Cloud/CreatedMoments.hpp"

#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Timeline/TimelineInstance.hpp"
#include "ReferenceHost/Timeline/TimelineRow.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

namespace {

// The service has read them as such.
TimelineInstance& ours(const std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>& instance) {
    return static_cast<TimelineInstance&>(*instance);
}

std::shared_ptr<Timeline> timelineOf(const RemoteCoding::InstanceList& instances) {
    const auto row = instances->empty() ? nullptr : ours(instances->front()).original()->row();
    const auto ourRow = std::dynamic_pointer_cast<TimelineRow>(row);
    return ourRow ? ourRow->timeline() : nullptr;
}

}  // namespace

Base::Completion<CreatedMoments::Ids> CreatedMoments::naming(const RemoteCoding::InstanceList& instances,
                                                             const std::string& sessionId,
                                                             const std::shared_ptr<const Numbers>& numbers,
                                                             Base::Completion<Ids> completion) {
    const auto timeline = timelineOf(instances);
    (void)isOver(timeline);  // from here on it is known
    return [instances, sessionId, numbers, self = shared_from_this(), weakTimeline = std::weak_ptr(timeline),
            completion = std::move(completion)](Base::Result<Ids> answer) {
        if (!answer.succeeded()) {
            completion(std::move(answer));
            return;
        }
        if (self->isOver(weakTimeline.lock())) {
            completion(Base::Result<Ids>(Ids()));
            return;
        }
        const std::size_t count = std::min(answer.value().size(), numbers->size());
        for (std::size_t index = 0; index < count; ++index) {
            ours((*instances)[index]).standFor(sessionId, (*numbers)[index]);
        }
        completion(std::move(answer));
    };
}

Base::Completion<bool> CreatedMoments::notingRemoval(const Ids& moments, Base::Completion<bool> completion) {
    return [moments, self = shared_from_this(),
            completion = std::move(completion)](Base::Result<bool> answer) {
        if (answer.succeeded() && answer.value()) {
            Base::synchronized(self->lock_, [&] { self->removed_.insert(moments.begin(), moments.end()); });
        }
        completion(std::move(answer));
    };
}

bool CreatedMoments::isRemoved(const std::string& moment) const {
    return Base::synchronized(lock_, [&] { return removed_.contains(moment); });
}

bool CreatedMoments::isOver(const std::shared_ptr<Timeline>& timeline) {
    if (!timeline) {
        return false;
    }
    const std::uint64_t now = timeline->timesPublished();
    return Base::synchronized(
        lock_, [&] { return timesPublished_.emplace(timeline->uniqueId(), now).first->second != now; });
}

}  // namespace ReferenceHost
