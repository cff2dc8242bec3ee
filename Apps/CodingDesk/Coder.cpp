#include "Apps/CodingDesk/Coder.hpp"

#include "Apps/CodingDesk/Cast.hpp"

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <variant>

namespace CodingDesk {

namespace {

using ReferenceHost::TimelineInstance;

}  // namespace

Coder::Coder(AnalystIndex analyst, std::shared_ptr<ReferenceHost::Timeline> timeline, Arrivals& arrivals,
             const World& world)
    : analyst_(analyst), timeline_(std::move(timeline)), arrivals_(arrivals), world_(world) {
    work_.analyst = castName(analyst);
}

bool Coder::carryOut(const ReplayPlan& plan, const Edit& edit, const PlannedRow& row) {
    return std::visit(
        [&](const auto& kind) {
            using Kind = std::decay_t<decltype(kind)>;
            if constexpr (std::is_same_v<Kind, TagClip>) {
                return tag(plan, kind, row);
            } else if constexpr (std::is_same_v<Kind, RetimeClip>) {
                return retime(plan, kind, row);
            } else if constexpr (std::is_same_v<Kind, DeleteClip>) {
                return remove(kind);
            } else if constexpr (std::is_same_v<Kind, AddRow>) {
                return addRow(kind, row);
            } else if constexpr (std::is_same_v<Kind, RemoveRow>) {
                return removeRow(row.name);
            } else if constexpr (std::is_same_v<Kind, RecolorRow>) {
                return recolorRow(row.name, kind.color);
            } else if constexpr (std::is_same_v<Kind, MoveRow>) {
                return moveRow(kind, row.name);
            } else {
                return false;
            }
        },
        edit);
}

bool Coder::tag(const ReplayPlan& plan, const TagClip& edit, const PlannedRow& row) {
    const PlannedClip& clip = plan.clips[edit.clip];
    auto target = timeline_->findRowNamed(row.name);
    if (!target) {
        willEdit(Sight::row(row.name));
        target = timeline_->addRow(row.name, row.color);
    }
    willEdit(Sight::clip(row.name, clip.start, clip.end));
    const auto instance = timeline_->addInstance(target->uniqueId(), clip.start, clip.end);
    tagged_[edit.clip] = work_.clips.size();
    work_.clips.push_back({instance->uniqueId(), row.name, clip.start, clip.end});
    return true;
}

bool Coder::retime(const ReplayPlan& plan, const RetimeClip& edit, const PlannedRow& row) {
    const auto instance = findClip(edit.clip, plan.clips[edit.clip], row.name);
    if (!instance) {
        return false;
    }
    willEdit(Sight::clip(instance->row()->name(), edit.start, edit.end));
    return timeline_->retimeInstance(instance->uniqueId(), edit.start, edit.end);
}

bool Coder::remove(const DeleteClip& edit) {
    const auto mine = tagged_.find(edit.clip);
    const auto instance =
        mine != tagged_.end() ? timeline_->findInstance(work_.clips[mine->second].instanceId) : nullptr;
    if (!instance) {
        return false;
    }
    willRemove(*instance, instance->row()->name());
    work_.clips[mine->second].isDeleted = true;
    return timeline_->removeInstance(instance->uniqueId());
}

bool Coder::addRow(const AddRow& edit, const PlannedRow& row) {
    if (timeline_->findRowNamed(row.name)) {
        return false;
    }
    willEdit(Sight::row(row.name));
    return timeline_->addRow(row.name, row.color, static_cast<std::int64_t>(edit.to)) != nullptr;
}

bool Coder::removeRow(const std::string& name) {
    const auto row = timeline_->findRowNamed(name);
    if (!row) {
        return false;
    }
    const auto instances = row->allInstances();
    for (const auto& instance : *instances) {
        willRemove(dynamic_cast<const TimelineInstance&>(*instance), name);
        noteDeleted(instance->uniqueId());
    }
    work_.removedRows.insert(name);
    return timeline_->removeRow(row->uniqueId());
}

bool Coder::recolorRow(const std::string& name, Base::Color color) {
    const auto row = timeline_->findRowNamed(name);
    if (!row) {
        return false;
    }
    willEdit(Sight::rowColor(name, color));
    return timeline_->recolorRow(row->uniqueId(), color);
}

bool Coder::moveRow(const MoveRow& edit, const std::string& name) {
    const auto row = timeline_->findRowNamed(name);
    if (!row || timeline_->numberOfRows() == 0) {
        return false;
    }
    const std::size_t last = timeline_->numberOfRows() - 1;
    timeline_->moveRow(row->uniqueId(), static_cast<std::int64_t>(std::min(edit.to, last)));
    return recolorRow(name, edit.color);
}

bool Coder::renameRow(const std::string& name, const std::string& newName) {
    const auto row = timeline_->findRowNamed(name);
    if (!row) {
        return false;
    }
    willEdit(Sight::row(newName));
    return timeline_->renameRow(row->uniqueId(), newName);
}

std::shared_ptr<TimelineInstance> Coder::findClip(ClipKey key, const PlannedClip& clip,
                                                  const std::string& rowName) const {
    if (const auto mine = tagged_.find(key); mine != tagged_.end()) {
        return timeline_->findInstance(work_.clips[mine->second].instanceId);
    }
    const auto row = timeline_->findRowNamed(rowName);
    if (!row) {
        return nullptr;
    }
    const auto instances = row->allInstances();
    for (const auto& instance : *instances) {
        auto candidate = std::dynamic_pointer_cast<TimelineInstance>(instance);
        const auto values = candidate->values();
        if (values.startTime == clip.start && values.endTime == clip.end) {
            return candidate;
        }
    }
    return nullptr;
}

void Coder::noteDeleted(const std::string& instanceId) {
    const auto clip = std::ranges::find(work_.clips, instanceId, &Work::Clip::instanceId);
    if (clip != work_.clips.end()) {
        clip->isDeleted = true;
    }
}

void Coder::willEdit(const std::string& sight) { arrivals_.edited(analyst_, sight, world_.now()); }

void Coder::willRemove(const TimelineInstance& clip, const std::string& rowName) {
    const auto values = clip.values();
    willEdit(Sight::clipGone(rowName, values.startTime, values.endTime));
}

}  // namespace CodingDesk
