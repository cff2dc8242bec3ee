#include "ReferenceHost/Cloud/CloudMomentItem.hpp"

#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Timeline/TimelineInstance.hpp"

namespace ReferenceHost {

namespace {

// What stands for a moment that could not be placed: on no row, and on no timeline.
std::shared_ptr<TimelineInstance> unplaced(const MomentRecord& moment) {
    auto instance = std::make_shared<TimelineInstance>(
        moment.id, std::weak_ptr<TimelineRow>(), ClipValues(moment.start, moment.end, moment.notes), 0, true);
    instance->setExternalId(moment.id);
    return instance;
}

}  // namespace

std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>
CloudMomentItem::appendToTimeline(const std::shared_ptr<RemoteCoding::TimelineProtocol>& timeline) const {
    const auto ours = std::dynamic_pointer_cast<Timeline>(timeline);
    if (!ours) {
        return unplaced(*moment_);
    }
    if (rules_.ownMomentsRecognised && moment_->originTimelineId == ours->uniqueId()) {
        if (const auto instance = ours->findInstance(moment_->originInstanceId)) {
            instance->setExternalId(moment_->id);
            return instance;
        }
    }
    if (!rules_.missingRowIsMade && !ours->findRowNamed(moment_->code)) {
        return unplaced(*moment_);
    }
    return ours->appendRemoteInstance(moment_->code, moment_->id, moment_->start, moment_->end,
                                      moment_->notes, moment_->codeColor);
}

std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>
CloudMomentItem::updateOnTimeline(const std::shared_ptr<RemoteCoding::TimelineProtocol>& timeline,
                                  const std::string& instanceId, const std::string& rowId) const {
    const auto ours = std::dynamic_pointer_cast<Timeline>(timeline);
    return ours ? ours->updateRemoteInstance(instanceId, rowId, moment_->start, moment_->end, moment_->notes)
                : nullptr;
}

RemoteCoding::PresentationViewItem presentationViewItemOf(const std::vector<CodeRecord>& codes) {
    std::vector<RemoteCoding::PresentationViewItem> rows;
    rows.reserve(codes.size());
    for (const CodeRecord& code : codes) {
        rows.emplace_back(code.name, code.color);
    }
    return RemoteCoding::PresentationViewItem(std::string(), Base::Color(), std::move(rows));
}

}  // namespace ReferenceHost
