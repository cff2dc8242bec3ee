#include "Apps/Simulator/Pictures.hpp"

#include "ReferenceHost/Timeline/Timeline.hpp"

#include <utility>

namespace Simulator {

TimelinePicture pictureOf(const ReferenceHost::Timeline& timeline) {
    TimelinePicture picture;
    picture.modifyCount = timeline.modifyCount();
    const auto rows = timeline.allRows();
    for (const auto& row : *rows) {
        picture.rows.push_back({row->uniqueId(), row->name(), row->color()});
        const auto instances = row->allInstances();
        for (const auto& instance : *instances) {
            auto values = dynamic_cast<const ReferenceHost::TimelineInstance&>(*instance).values();
            ClipPicture clip;
            clip.instanceId = instance->uniqueId();
            clip.momentId = instance->externalId();
            clip.rowId = row->uniqueId();
            clip.row = row->name();
            clip.start = values.startTime;
            clip.end = values.endTime;
            clip.notes = std::move(values.notes);
            picture.clips.push_back(std::move(clip));
        }
    }
    return picture;
}

}  // namespace Simulator
