#include "ReferenceHost/Timeline/PartialTimeline.hpp"

namespace ReferenceHost {

PartialTimeline::PartialTimeline(Contents contents)
    : timelineId_(std::move(contents.timelineId)),
      modifyCount_(contents.modifyCount),
      rows_(std::make_shared<const std::vector<std::shared_ptr<RemoteCoding::TimelineRowProtocol>>>(
          std::move(contents.rows))),
      deletedRowIds_(std::move(contents.deletedRowIds)),
      deletedInstanceIds_(std::move(contents.deletedInstanceIds)) {}

std::shared_ptr<RemoteCoding::TimelineProtocol>
PartialTimeline::timelineFromModifyCount(std::int64_t /*modifyCount*/,
                                         bool /*excludeSharedInstances*/) const {
    return std::make_shared<PartialTimeline>(*this);
}

}  // namespace ReferenceHost
