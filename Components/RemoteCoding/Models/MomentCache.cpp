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

/// The value that a map holds under the key, or a part of it.
template <typename Map, typename Part>
auto find(const Map& map, const std::string& key, Part part)
    -> std::optional<std::decay_t<decltype(part(map.begin()->second))>> {
    const auto found = map.find(key);
    if (found == map.end()) {
        return std::nullopt;
    }
    return part(found->second);
}

}  // namespace

MomentCache::MomentCache(LogManagerProtocol& log) : log_(log) {}

void MomentCache::cacheInstances(Instances instances) {
    PendingErrors errors(log_, "cacheInstances(instances:)");
    Base::synchronized(lock_, [&] {
        for (const auto& instance : instances) {
            try {
                auto momentId = instance ? instance->externalId() : std::nullopt;
                if (!momentId) {
                    errors.add(incompleteInstance);
                    continue;
                }
                const auto row = instance->row();
                if (!row) {
                    errors.add(incompleteInstance);
                    continue;
                }
                cacheInstance(*instance, std::move(*momentId), row->uniqueId());
            } catch (...) {
                errors.add(incompleteInstance, Base::describe(std::current_exception()));
            }
        }
    });
    errors.write();
}

void MomentCache::cacheInstance(const TimelineInstanceProtocol& instance, std::string momentId,
                                std::string rowId) {
    // Everything of the host's is read before the first map is written: an instance is cached whole or not at all.
    UploadedMoment moment(momentId, instance.uniqueId(), std::move(rowId));
    const std::string instanceId = moment.instanceId;
    uploadedMoments_.insert_or_assign(momentId, std::move(moment));
    uploadedMomentIdForInstanceId_.insert_or_assign(instanceId, std::move(momentId));
    deletedMomentIdForInstanceId_.erase(instanceId);
}

void MomentCache::deleteMoments(std::span<const std::string> momentIds) {
    PendingErrors errors(log_, "deleteMoments(momentIds:)");
    Base::synchronized(lock_, [&] {
        for (const auto& momentId : momentIds) {
            const auto found = uploadedMoments_.find(momentId);
            if (found == uploadedMoments_.end()) {
                errors.add("No uploaded moment found to delete");
                continue;
            }
            const std::string instanceId = std::move(found->second.instanceId);
            uploadedMoments_.erase(found);
            uploadedMomentIdForInstanceId_.erase(instanceId);
            deletedMomentIdForInstanceId_.insert_or_assign(instanceId, momentId);
        }
    });
    errors.write();
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
                UploadedRow uploaded(row->uniqueId(), row->name(), row->color(), row->rowNum());
                std::string rowId = uploaded.rowId;
                uploadedRows_.insert_or_assign(std::move(rowId), std::move(uploaded));
            } catch (...) {
                errors.add(incompleteRow, Base::describe(std::current_exception()));
            }
        }
    });
    errors.write();
}

std::optional<UploadedRow> MomentCache::uploadedRow(const std::string& rowId) const {
    return Base::synchronized(
        lock_, [&] { return find(uploadedRows_, rowId, [](const UploadedRow& row) { return row; }); });
}

void MomentCache::removeUploadedRow(const std::string& rowId) {
    Base::synchronized(lock_, [&] { uploadedRows_.erase(rowId); });
}

std::optional<std::string> MomentCache::instanceId(const std::string& momentId) const {
    return Base::synchronized(lock_, [&] {
        return find(uploadedMoments_, momentId,
                    [](const UploadedMoment& moment) { return moment.instanceId; });
    });
}

std::optional<std::string> MomentCache::rowId(const std::string& momentId) const {
    return Base::synchronized(lock_, [&] {
        return find(uploadedMoments_, momentId, [](const UploadedMoment& moment) { return moment.rowId; });
    });
}

std::optional<std::string> MomentCache::momentId(const std::string& instanceId) const {
    return Base::synchronized(lock_, [&] {
        return find(uploadedMomentIdForInstanceId_, instanceId, [](const std::string& id) { return id; });
    });
}

bool MomentCache::hasDeletedMoment(const std::string& instanceId) const {
    return Base::synchronized(lock_, [&] { return deletedMomentIdForInstanceId_.contains(instanceId); });
}

}  // namespace RemoteCoding
