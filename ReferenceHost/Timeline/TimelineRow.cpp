#include "ReferenceHost/Timeline/TimelineRow.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

using Base::synchronized;
using RemoteCoding::InstanceList;
using RemoteCoding::TimelineInstanceProtocol;

namespace {

// The lists of a row hold nothing else.
TimelineInstance& ours(const std::shared_ptr<TimelineInstanceProtocol>& instance) {
    return static_cast<TimelineInstance&>(*instance);
}

}  // namespace

TimelineRow::TimelineRow(std::string uniqueId, std::string name, Base::Color color, std::int64_t rowNum,
                         std::weak_ptr<Timeline> timeline)
    : uniqueId_(std::move(uniqueId)),
      timeline_(std::move(timeline)),
      name_(std::move(name)),
      color_(color),
      rowNum_(rowNum) {}

std::string TimelineRow::name() const {
    return synchronized(lock_, [this] { return name_; });
}

Base::Color TimelineRow::color() const {
    return synchronized(lock_, [this] { return color_; });
}

std::int64_t TimelineRow::rowNum() const {
    return synchronized(lock_, [this] { return rowNum_; });
}

std::int64_t TimelineRow::numberOfInstances() const {
    return synchronized(
        lock_, [this] { return static_cast<std::int64_t>(instances_.elements().size() - removedCount_); });
}

InstanceList TimelineRow::allInstances() const {
    return synchronized(lock_, [this] {
        if (removedCount_ != 0) {
            std::vector<std::shared_ptr<TimelineInstanceProtocol>> present;
            present.reserve(instances_.elements().size());
            std::copy_if(instances_.elements().begin(), instances_.elements().end(),
                         std::back_inserter(present),
                         [](const auto& instance) { return ours(instance).onRow_; });
            instances_.replace(std::move(present));
            removedCount_ = 0;
        }
        return instances_.snapshot();
    });
}

std::shared_ptr<TimelineRow> TimelineRow::detachedCopy() const {
    return synchronized(lock_, [this] {
        return std::make_shared<TimelineRow>(uniqueId_, name_, color_, rowNum_, std::weak_ptr<Timeline>());
    });
}

void TimelineRow::setName(std::string name) {
    synchronized(lock_, [&] { std::swap(name_, name); });
}

std::uint64_t TimelineRow::nameEditNumber() const {
    return synchronized(lock_, [this] { return nameEditNumber_; });
}

void TimelineRow::setNameEditNumber(std::uint64_t number) {
    synchronized(lock_, [&] { nameEditNumber_ = number; });
}

void TimelineRow::setColor(Base::Color color) {
    synchronized(lock_, [&] { color_ = color; });
}

void TimelineRow::setRowNum(std::int64_t rowNum) {
    synchronized(lock_, [&] { rowNum_ = rowNum; });
}

void TimelineRow::append(std::shared_ptr<TimelineInstance> instance) {
    synchronized(lock_, [&] { instances_.edit().push_back(std::move(instance)); });
}

void TimelineRow::remove(TimelineInstance& instance) {
    synchronized(lock_, [&] {
        instance.onRow_ = false;
        ++removedCount_;
    });
}

void TimelineRow::restore(const std::shared_ptr<TimelineInstance>& instance) {
    synchronized(lock_, [&] {
        const auto comesBefore = [](const auto& other, std::int64_t order) {
            return ours(other).order() < order;
        };
        const auto& present = instances_.elements();
        const auto place = std::lower_bound(present.begin(), present.end(), instance->order(), comesBefore);
        instance->onRow_ = true;
        if (place != present.end() && *place == instance) {
            --removedCount_;  // no snapshot was asked for since the removal
            return;
        }
        const auto index = place - present.begin();
        auto& edited = instances_.edit();
        edited.insert(edited.begin() + index, instance);
    });
}

}  // namespace ReferenceHost
