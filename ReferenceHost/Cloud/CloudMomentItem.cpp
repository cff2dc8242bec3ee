#include "ReferenceHost/Cloud/CloudMomentItem.hpp"

#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Timeline/TimelineInstance.hpp"

#include <limits>

namespace ReferenceHost {

namespace {

constexpr auto highest = std::numeric_limits<std::uint64_t>::max();
constexpr EditNumbers everyEdit{highest, highest, highest};

// What stands for a moment that has no place: on no row, and on no timeline.
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
    const char* how = "new";
    const auto instance = placeOn(*ours, how);
    ours->recordCall("appendToTimeline",
                     {{"momentId", moment_->id}, {"instanceId", instance->uniqueId()}, {"how", how}});
    return instance;
}

EditNumbers CloudMomentItem::takenOf(const Timeline& timeline) const {
    if (!rules_.onlyEditsAreWritten) {
        return everyEdit;
    }
    const auto found = moment_->taken.find(timeline.uniqueId());
    return found != moment_->taken.end() ? found->second : EditNumbers();
}

std::shared_ptr<TimelineInstance> CloudMomentItem::placeOn(Timeline& timeline, const char*& how) const {
    const ClipValues values(moment_->start, moment_->end, moment_->notes);
    if (const auto known = rules_.knownMomentsRecognised ? timeline.findInstanceOf(moment_->id) : nullptr) {
        const auto row = known->row();
        if (row->name() == moment_->code) {
            how = "known";
            timeline.forgetEdits(known->uniqueId(), takenOf(timeline));
            return timeline.updateRemoteInstance(known->uniqueId(), row->uniqueId(), values, everyEdit);
        }
        timeline.removeRemoteInstance(known->uniqueId());  // a clip stays on its row for life
        how = "moved";
    } else if (rules_.ownMomentsRecognised && moment_->originTimelineId == timeline.uniqueId()) {
        const std::string& origin = moment_->originInstanceId;
        const auto instance = timeline.findInstance(origin);
        const auto deleted = rules_.deletedClipsStayDeleted ? timeline.findDeletedInstance(origin) : nullptr;
        const auto clip = instance ? instance : deleted;
        if (clip && !clip->standFor(moment_->sessionId, moment_->number)) {
            how = "former";
            return unplaced(*moment_);
        }
        if (instance) {
            how = "own";
            instance->setExternalId(moment_->id);
            if (rules_.onlyEditsAreWritten) {
                timeline.updateRemoteInstance(origin, instance->row()->uniqueId(), values, takenOf(timeline));
                instance->didWrite(takenOf(timeline));
            }
            return instance;
        }
        if (deleted) {
            how = "deleted";
            deleted->setExternalId(moment_->id);
            timeline.deleteAgainLater(origin);
            return deleted;
        }
    }
    if (!rules_.missingRowIsMade && !timeline.findRowNamed(moment_->code)) {
        how = "unplaced";
        return unplaced(*moment_);
    }
    return timeline.appendRemoteInstance(moment_->code, moment_->id, moment_->start, moment_->end,
                                         moment_->notes, moment_->codeColor);
}

std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>
CloudMomentItem::updateOnTimeline(const std::shared_ptr<RemoteCoding::TimelineProtocol>& timeline,
                                  const std::string& instanceId, const std::string& rowId) const {
    const auto ours = std::dynamic_pointer_cast<Timeline>(timeline);
    if (!ours) {
        return nullptr;
    }
    auto instance = ours->updateRemoteInstance(
        instanceId, rowId, ClipValues(moment_->start, moment_->end, moment_->notes), takenOf(*ours));
    if (instance && rules_.onlyEditsAreWritten) {
        instance->didWrite(takenOf(*ours));  // the answer to that may have been lost
    }
    ours->recordCall(
        "updateOnTimeline",
        {{"momentId", moment_->id}, {"instanceId", instanceId}, {"found", instance ? "true" : "false"}});
    return instance;
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
