#include "Apps/CodingDesk/Coder.hpp"

#include <utility>

namespace CodingDesk {

namespace {

using ReferenceHost::TimelineInstance;

}  // namespace

Coder::Coder(AnalystIndex analyst, std::shared_ptr<ReferenceHost::Timeline> timeline, Arrivals& arrivals,
             const World& world)
    : analyst_(analyst), timeline_(std::move(timeline)), arrivals_(arrivals), world_(world) {}

bool Coder::tag(ClipKey key, const PlannedClip& clip, const PlannedRow& row) {
    auto target = timeline_->findRowNamed(row.name);
    if (!target) {
        willEdit(Sight::row(row.name));
        target = timeline_->addRow(row.name, row.color);
    }
    willEdit(Sight::clip(row.name, clip.start, clip.end));
    tagged_[key] = timeline_->addInstance(target->uniqueId(), clip.start, clip.end)->uniqueId();
    return true;
}

bool Coder::retime(ClipKey key, const PlannedClip& clip, const std::string& rowName, const RetimeClip& edit) {
    const auto instance = findClip(key, clip, rowName);
    if (!instance) {
        return false;
    }
    willEdit(Sight::clip(instance->row()->name(), edit.start, edit.end));
    return timeline_->retimeInstance(instance->uniqueId(), edit.start, edit.end);
}

bool Coder::remove(ClipKey key) {
    const auto mine = tagged_.find(key);
    const auto instance = mine != tagged_.end() ? timeline_->findInstance(mine->second) : nullptr;
    if (!instance) {
        return false;
    }
    willRemove(*instance, instance->row()->name());
    return timeline_->removeInstance(instance->uniqueId());
}

bool Coder::addRow(const PlannedRow& row, std::size_t to) {
    if (timeline_->findRowNamed(row.name)) {
        return false;
    }
    willEdit(Sight::row(row.name));
    return timeline_->addRow(row.name, row.color, static_cast<std::int64_t>(to)) != nullptr;
}

bool Coder::removeRow(const std::string& name) {
    const auto row = timeline_->findRowNamed(name);
    if (!row) {
        return false;
    }
    for (const auto& instance : *row->allInstances()) {
        willRemove(dynamic_cast<const TimelineInstance&>(*instance), name);
    }
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

bool Coder::moveRow(const std::string& name, std::size_t to, Base::Color color) {
    const auto row = timeline_->findRowNamed(name);
    if (!row || timeline_->numberOfRows() == 0) {
        return false;
    }
    const std::size_t last = timeline_->numberOfRows() - 1;
    timeline_->moveRow(row->uniqueId(), static_cast<std::int64_t>(to < last ? to : last));
    return recolorRow(name, color);
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
        return timeline_->findInstance(mine->second);
    }
    const auto row = timeline_->findRowNamed(rowName);
    if (!row) {
        return nullptr;
    }
    for (const auto& instance : *row->allInstances()) {
        auto candidate = std::dynamic_pointer_cast<TimelineInstance>(instance);
        const auto values = candidate->values();
        if (values.startTime == clip.start && values.endTime == clip.end) {
            return candidate;
        }
    }
    return nullptr;
}

void Coder::willEdit(const std::string& sight) { arrivals_.edited(analyst_, sight, world_.now()); }

void Coder::willRemove(const TimelineInstance& clip, const std::string& rowName) {
    const auto values = clip.values();
    willEdit(Sight::clipGone(rowName, values.startTime, values.endTime));
}

}  // namespace CodingDesk
