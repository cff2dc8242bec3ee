#include "ReferenceHost/Timeline/TimelineInstance.hpp"

#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Timeline/TimelineRow.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace ReferenceHost {

using Base::synchronized;

namespace {

bool isSameTime(double left, double right) {
    return left == right || (std::isnan(left) && std::isnan(right));
}

}  // namespace

bool operator==(const ClipValues& left, const ClipValues& right) {
    return isSameTime(left.startTime, right.startTime) && isSameTime(left.endTime, right.endTime) &&
           left.notes == right.notes;
}

TimelineInstance::TimelineInstance(std::string uniqueId, std::weak_ptr<TimelineRow> row, ClipValues values,
                                   std::int64_t order, bool isShared)
    : row_(std::move(row)),
      values_(std::move(values)),
      isShared_(isShared),
      order_(order),
      uniqueId_(std::move(uniqueId)) {}

const Base::ObjectLock& TimelineInstance::lock() const {
    static const std::array<Base::ObjectLock, 64> locks;
    return locks[reinterpret_cast<std::uintptr_t>(this) / sizeof(TimelineInstance) % locks.size()];
}

std::optional<std::string> TimelineInstance::externalId() const {
    return synchronized(lock(), [this] { return externalId_; });
}

void TimelineInstance::setExternalId(std::optional<std::string> externalId) {
    const auto row = row_.lock();
    if (const auto timeline = row ? row->timeline() : nullptr) {
        timeline->setExternalId(*this, std::move(externalId));
    } else {
        writeExternalId(std::move(externalId));
    }
}

std::shared_ptr<RemoteCoding::TimelineRowProtocol> TimelineInstance::row() const { return row_.lock(); }

double TimelineInstance::startTime() const {
    return synchronized(lock(), [this] { return values_.startTime; });
}

double TimelineInstance::endTime() const {
    return synchronized(lock(), [this] { return values_.endTime; });
}

std::string TimelineInstance::notes() const {
    return synchronized(lock(), [this] { return values_.notes; });
}

ClipValues TimelineInstance::values() const {
    return synchronized(lock(), [this] { return values_; });
}

std::shared_ptr<TimelineInstance> TimelineInstance::detachedCopy(std::weak_ptr<TimelineRow> row) {
    auto copy = std::make_shared<TimelineInstance>(uniqueId_, std::move(row), values(), order_, isShared_);
    copy->externalId_ = externalId();
    copy->numbers_ = editNumbers();
    copy->original_ = weak_from_this();
    return copy;
}

EditNumbers TimelineInstance::editNumbers() const {
    const EditNumbers numbers = synchronized(lock(), [this] { return numbers_; });
    const auto row = row_.lock();
    return withName(numbers, row ? row->nameEditNumber() : 0);
}

EditNumbers TimelineInstance::withName(EditNumbers numbers, std::uint64_t ofName) const {
    if (ofName > arrivedAfter_) {
        numbers.code = std::max(numbers.code, ofName);
    }
    return numbers;
}

std::shared_ptr<TimelineInstance> TimelineInstance::original() {
    const auto original = original_.lock();
    return original ? original : shared_from_this();
}

void TimelineInstance::didWrite(const EditNumbers& numbers) {
    if (const auto original = original_.lock()) {
        original->didWrite(numbers);
        return;
    }
    synchronized(lock(), [&] {
        written_.code = std::max(written_.code, numbers.code);
        written_.times = std::max(written_.times, numbers.times);
        written_.notes = std::max(written_.notes, numbers.notes);
    });
}

EditNumbers TimelineInstance::written() const {
    return synchronized(lock(), [this] { return written_; });
}

void TimelineInstance::tellCode(std::optional<std::string> code, std::uint64_t number) {
    if (const auto original = original_.lock()) {
        original->tellCode(std::move(code), number);
        return;
    }
    synchronized(lock(), [&] {
        isTold_ = true;
        std::swap(toldCode_, code);
        toldNumber_ = number;
    });
}

bool TimelineInstance::isTold() const {
    return synchronized(lock(), [this] { return isTold_ || externalId_; });
}

std::optional<std::uint64_t> TimelineInstance::toldWith(const std::string& code) const {
    return synchronized(lock(),
                        [&] { return toldCode_ == code ? std::optional(toldNumber_) : std::nullopt; });
}

bool TimelineInstance::standFor(const std::string& sessionId, std::uint64_t momentNumber) {
    if (const auto original = original_.lock()) {
        return original->standFor(sessionId, momentNumber);
    }
    return synchronized(lock(), [&] {
        auto last = std::ranges::find(lastMoment_, sessionId, &std::pair<std::string, std::uint64_t>::first);
        if (last == lastMoment_.end()) {
            last = lastMoment_.insert(last, {sessionId, 0});
        }
        const bool isLatest = momentNumber >= last->second;
        last->second = std::max(last->second, momentNumber);
        return isLatest;
    });
}

void TimelineInstance::setEditNumber(std::uint64_t EditNumbers::* part, std::uint64_t number) {
    synchronized(lock(), [&] { numbers_.*part = number; });
}

void TimelineInstance::setValues(ClipValues values) {
    synchronized(lock(), [&] { std::swap(values_, values); });
}

void TimelineInstance::writeExternalId(std::optional<std::string> externalId) {
    synchronized(lock(), [&] { std::swap(externalId_, externalId); });
}

}  // namespace ReferenceHost
