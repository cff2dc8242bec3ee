#include "ReferenceHost/Timeline/TimelineCodingTarget.hpp"

#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Timeline/TimelineComponentEdit.hpp"

#include <utility>

namespace ReferenceHost {

namespace {

std::string text(Base::Color color) {
    return std::to_string(color.red) + "," + std::to_string(color.green) + "," + std::to_string(color.blue) +
           "," + std::to_string(color.alpha);
}

std::string text(const std::vector<std::int64_t>& indexes) {
    std::string joined;
    for (const auto index : indexes) {
        joined += (joined.empty() ? "" : ",") + std::to_string(index);
    }
    return joined;
}

}  // namespace

TimelineCodingTarget::TimelineCodingTarget(std::weak_ptr<Timeline> timeline)
    : timeline_(std::move(timeline)) {}

void TimelineCodingTarget::setRowNameWithRowNum(std::int64_t rowNum, const std::string& name) {
    const auto ours = timeline_.lock();
    const auto before = ours ? ours->rowAt(rowNum) : nullptr;
    edit("setRowNameWithRowNum",
         {{"rowNum", std::to_string(rowNum)}, {"rowName", name}, {"oldName", before ? before->name() : ""}},
         [&](Timeline& timeline) {
             if (const auto row = timeline.rowAt(rowNum)) {
                 timeline.renameRow(row->uniqueId(), name);
             }
         });
}

void TimelineCodingTarget::setRowColorWithRowId(const std::string& rowId, Base::Color color) {
    edit("setRowColorWithRowId", {{"rowId", rowId}, {"color", text(color)}},
         [&](Timeline& timeline) { timeline.recolorRow(rowId, color); });
}

void TimelineCodingTarget::insertRowWithName(
    const std::string& name, Base::Color color, std::int64_t at,
    std::function<void(std::shared_ptr<RemoteCoding::TimelineRowProtocol>)> added) {
    edit("insertRowWithName", {{"rowName", name}, {"color", text(color)}, {"at", std::to_string(at)}},
         [&](Timeline& timeline) {
             const std::shared_ptr<TimelineRow> row = timeline.addRow(name, color, at);
             if (!added) {
                 return;
             }
             if (const auto& run = timeline.options_.runInsertionCallback) {
                 run([added = std::move(added), row] { added(row); });
             } else {
                 added(row);
             }
         });
}

void TimelineCodingTarget::rearrangeRowsFrom(const std::vector<std::int64_t>& from, std::int64_t to) {
    edit("rearrangeRowsFrom", {{"from", text(from)}, {"to", std::to_string(to)}},
         [&](Timeline& timeline) { timeline.rearrangeRows(from, to); });
}

void TimelineCodingTarget::removeRowWithRowId(const std::string& rowId) {
    edit("removeRowWithRowId", {{"rowId", rowId}}, [&](Timeline& timeline) { timeline.removeRow(rowId); });
}

void TimelineCodingTarget::removeInstanceWithRowId(const std::string& rowId, const std::string& instanceId) {
    edit("removeInstanceWithRowId", {{"rowId", rowId}, {"instanceId", instanceId}}, [&](Timeline& timeline) {
        const auto instance = timeline.findInstance(instanceId);
        const auto row = instance ? instance->row() : nullptr;
        if (row && row->uniqueId() == rowId) {
            timeline.removeInstance(instanceId);
        }
    });
}

template <typename Edit>
void TimelineCodingTarget::edit(const char* call, CallArguments arguments, const Edit& edit) {
    const auto timeline = timeline_.lock();
    if (!timeline || !timeline->isCodingTargetAvailable()) {
        return;
    }
    timeline->recordCall(call, std::move(arguments));
    const TimelineComponentEdit scope(*timeline);
    edit(*timeline);
}

}  // namespace ReferenceHost
