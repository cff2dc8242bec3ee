#include "Components/RemoteCoding/Models/MomentCache.hpp"

#include "Base/Error.hpp"
#include "Components/RemoteCoding/Models/ErrorLog.hpp"

#include <exception>
#include <source_location>
#include <string_view>

namespace RemoteCoding {

namespace {

/// The error lines of one operation, written once it holds the lock no longer.
class PendingErrors {
public:
    PendingErrors(LogManagerProtocol& log, std::string_view function) : log_(log), function_(function) {}

    void add(std::string_view message, std::string detail = {},
             const std::source_location& location = std::source_location::current()) {
        lines_.push_back({message, std::move(detail), location});
    }

    void write() const {
        for (const auto& line : lines_) {
            logError(log_, line.message, line.detail, function_, line.location);
        }
    }

private:
    struct Line {
        std::string_view message;
        std::string detail;
        std::source_location location;
    };

    LogManagerProtocol& log_;
    std::string_view function_;
    std::vector<Line> lines_;
};

constexpr std::string_view incompleteInstance = "Unable to find all required fields on instance";
constexpr std::string_view incompleteRow = "Unable to find all required fields on row";

}  // namespace

MomentCache::MomentCache(LogManagerProtocol& log) : log_(log) {}

void MomentCache::cacheInstances(Instances instances) {
    PendingErrors errors(log_, "cacheInstances(instances:)");
    Base::synchronized(lock_, [&] {
        for (const auto& instance : instances) {
            try {
                const auto momentId = instance ? instance->externalId() : std::nullopt;
                if (!momentId) {
                    errors.add(incompleteInstance);
                    continue;
                }
                const auto row = instance->row();
                if (!row) {
                    errors.add(incompleteInstance);
                    continue;
                }
                cacheInstance(instance->uniqueId(), *momentId, row->uniqueId());
            } catch (...) {
                errors.add(incompleteInstance, Base::describe(std::current_exception()));
            }
        }
    });
    errors.write();
}

void MomentCache::cacheInstance(const std::string& instanceId, const std::string& momentId,
                                const std::string& rowId) {
    // All memory is taken before anything is written: an instance is cached whole or not at all.
    const std::string* const row = &*rowIds_.insert(rowId).first;
    uploadedMoments_.makeRoomForOne();
    uploadedMomentIdForInstanceId_.makeRoomForOne();

    const auto known = uploadedMoments_.find(momentId, momentIdAt());
    const bool isKnown = known && records_[*known].instanceId() == instanceId;
    const Position position = isKnown ? *known : add(momentId, instanceId);
    UploadedMoment& record = records_[position];
    record.rowId = row;
    if (!isKnown) {
        record.isOfMoment = true;
        end(uploadedMoments_.put(record.momentId(), position, momentIdAt()), &UploadedMoment::isOfMoment);
    }
    if (!record.isOfInstance) {
        record.isOfInstance = true;
        end(uploadedMomentIdForInstanceId_.put(record.instanceId(), position, instanceIdAt()),
            &UploadedMoment::isOfInstance);
    }
    end(deletedMomentIdForInstanceId_.erase(record.instanceId(), instanceIdAt()),
        &UploadedMoment::isDeletion);
}

MomentCache::Position MomentCache::add(const std::string& momentId, const std::string& instanceId) {
    IdPair ids(momentId, instanceId);
    if (firstFree_ == nowhere) {
        firstFree_ = records_.add();
    }
    const Position position = firstFree_;
    UploadedMoment& record = records_[position];
    record.ids = std::move(ids);
    firstFree_ = std::exchange(record.nextFree, nowhere);
    return position;
}

void MomentCache::end(std::optional<Position> position, bool UploadedMoment::* what) {
    if (!position) {
        return;
    }
    UploadedMoment& record = records_[*position];
    record.*what = false;
    if (!record.isOfMoment && !record.isOfInstance && !record.isDeletion) {
        record = UploadedMoment();
        record.nextFree = std::exchange(firstFree_, *position);
    }
}

void MomentCache::deleteMoments(std::span<const std::string> momentIds) {
    PendingErrors errors(log_, "deleteMoments(momentIds:)");
    Base::synchronized(lock_, [&] {
        for (const auto& momentId : momentIds) {
            if (const auto found = uploadedMoments_.find(momentId, momentIdAt())) {
                deleteMoment(*found);
            } else {
                errors.add("No uploaded moment found to delete");
            }
        }
    });
    errors.write();
}

void MomentCache::deleteMoment(Position position) {
    deletedMomentIdForInstanceId_.makeRoomForOne();
    UploadedMoment& record = records_[position];
    // First of all, so that the record lasts.
    record.isDeletion = true;
    end(deletedMomentIdForInstanceId_.put(record.instanceId(), position, instanceIdAt()),
        &UploadedMoment::isDeletion);
    end(uploadedMomentIdForInstanceId_.erase(record.instanceId(), instanceIdAt()),
        &UploadedMoment::isOfInstance);
    end(uploadedMoments_.erase(record.momentId(), momentIdAt()), &UploadedMoment::isOfMoment);
}

void MomentCache::cacheRows(Rows rows) {
    PendingErrors errors(log_, "cacheRows(rows:)");
    Base::synchronized(lock_, [&] {
        for (const auto& row : rows) {
            try {
                if (!row) {
                    errors.add(incompleteRow);
                    continue;
                }
                const std::string& rowId = row->uniqueId();
                std::string name = row->name();
                const Base::Color color = row->color();
                const std::int64_t rowNum = row->rowNum();
                const auto [place, isNew] = uploadedRows_.try_emplace(rowId, rowId, name, color, rowNum);
                if (!isNew) {
                    UploadedRow& uploaded = place->second;
                    uploaded.name = std::move(name);
                    uploaded.color = color;
                    uploaded.rowNum = rowNum;
                }
            } catch (...) {
                errors.add(incompleteRow, Base::describe(std::current_exception()));
            }
        }
    });
    errors.write();
}

std::optional<UploadedRow> MomentCache::uploadedRow(const std::string& rowId) const {
    return Base::synchronized(lock_, [&]() -> std::optional<UploadedRow> {
        const auto found = uploadedRows_.find(rowId);
        return found != uploadedRows_.end() ? std::optional(found->second) : std::nullopt;
    });
}

bool MomentCache::hasUploadedRow(const std::string& rowId) const {
    return Base::synchronized(lock_, [&] { return uploadedRows_.contains(rowId); });
}

void MomentCache::removeUploadedRow(const std::string& rowId) {
    Base::synchronized(lock_, [&] { uploadedRows_.erase(rowId); });
}

const MomentCache::UploadedMoment* MomentCache::uploadedMoment(const std::string& momentId) const {
    const auto found = uploadedMoments_.find(momentId, momentIdAt());
    return found ? &records_[*found] : nullptr;
}

std::optional<std::string> MomentCache::instanceId(const std::string& momentId) const {
    return Base::synchronized(lock_, [&] {
        const UploadedMoment* const record = uploadedMoment(momentId);
        return record != nullptr ? std::optional(std::string(record->instanceId())) : std::nullopt;
    });
}

std::optional<std::string> MomentCache::rowId(const std::string& momentId) const {
    return Base::synchronized(lock_, [&] {
        const UploadedMoment* const record = uploadedMoment(momentId);
        return record != nullptr ? std::optional(*record->rowId) : std::nullopt;
    });
}

bool MomentCache::knowsMoment(const std::string& momentId) const {
    return Base::synchronized(lock_, [&] { return uploadedMoment(momentId) != nullptr; });
}

bool MomentCache::findPlace(const std::string& momentId, ClipPlace& place) const {
    return Base::synchronized(lock_, [&] {
        const UploadedMoment* const record = uploadedMoment(momentId);
        if (record != nullptr) {
            place.instanceId = record->instanceId();
            place.rowId = *record->rowId;
        }
        return record != nullptr;
    });
}

std::optional<std::string> MomentCache::momentId(const std::string& instanceId) const {
    return Base::synchronized(lock_, [&] {
        const auto found = uploadedMomentIdForInstanceId_.find(instanceId, instanceIdAt());
        return found ? std::optional(std::string(records_[*found].momentId())) : std::nullopt;
    });
}

bool MomentCache::hasDeletedMoment(const std::string& instanceId) const {
    return Base::synchronized(
        lock_, [&] { return deletedMomentIdForInstanceId_.find(instanceId, instanceIdAt()).has_value(); });
}

}  // namespace RemoteCoding
