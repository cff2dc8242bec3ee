#include "Apps/Simulator/Outcome/RowNames.hpp"

#include <algorithm>

namespace Simulator {

namespace TraceKind = ReferenceHost::TraceKind;

namespace {

/// The timeline kept the name that its user had given the row since if not.
bool hasChanged(const History& history, std::size_t naming) {
    const std::string& host = history.entry(naming).host;
    for (std::size_t at = naming + 1; at < history.record.trace.size(); ++at) {
        if (history.entry(at).host == host) {
            return history.entry(at).kind == TraceKind::notification;
        }
    }
    return false;
}

/// The entry with which a moment was brought onto the timeline just before; never: there is none.
std::size_t followedAt(const History& history, std::size_t naming) {
    for (std::size_t at = naming; at-- > 0;) {
        const auto& entry = history.entry(at);
        if (entry.kind == TraceKind::call && entry.field("name") == "updateOnTimeline") {
            return at;
        }
    }
    return never;
}

/// The row followed the moment of a clip that stands on another one.
bool isOfAnotherRow(const History& history, const StayHistory& stay, std::size_t naming,
                    std::string_view rowId) {
    const std::size_t followed = followedAt(history, naming);
    if (followed == never) {
        return false;
    }
    const auto& clips = stay.stay->picture.clips;
    const auto clip =
        std::ranges::find(clips, history.entry(followed).field("instanceId"), &ClipPicture::instanceId);
    return clip != clips.end() && clip->rowId != rowId;
}

}  // namespace

std::vector<std::string_view> namesOf(const History& history, std::string_view row) {
    std::vector<std::string_view> names{row};
    for (const UserEdit& edit : history.edits) {
        if (edit.kind == EditKind::renameRow && edit.name == row) {
            names.push_back(edit.oldName);
        }
    }
    return names;
}

bool isOfRow(const History& history, std::string_view clip, const UserEdit& ofRow) {
    const auto& clips = history.stays[ofRow.stay].stay->picture.clips;
    const auto shown = std::ranges::find(clips, clip, &ClipPicture::instanceId);
    if (shown != clips.end()) {
        return shown->rowId == ofRow.row;
    }
    return std::ranges::any_of(history.edits, [&](const UserEdit& edit) {
        return edit.timelineId == ofRow.timelineId && edit.row == ofRow.row &&
               std::ranges::find(edit.clips, clip) != edit.clips.end();
    });
}

Naming lastNaming(const History& history, std::string_view timelineId, std::string_view rowId,
                  std::string_view name, std::size_t before) {
    Naming last;
    for (const UserEdit& edit : history.edits) {
        if (edit.kind == EditKind::renameRow && edit.timelineId == timelineId && edit.row == rowId &&
            edit.name == name && edit.at < before) {
            last = {edit.at, &edit, nullptr};
        }
    }
    for (const StayHistory& stay : history.stays) {
        for (const std::size_t at : stay.target) {
            const auto& entry = history.entry(at);
            if (stay.stay->timelineId == timelineId && at < before && (last.at == never || at > last.at) &&
                entry.field("name") == "setRowNameWithRowNum" && entry.field("rowName") == name &&
                hasChanged(history, at) && !isOfAnotherRow(history, stay, at, rowId)) {
                const std::size_t followed = followedAt(history, at);
                last = {at, nullptr,
                        followed != never ? history.moment(history.entry(followed).field("momentId"))
                                          : nullptr};
            }
        }
    }
    return last;
}

}  // namespace Simulator
