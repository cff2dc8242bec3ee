#pragma once

#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

/// What changed in a timeline from some count on, as it was when it was asked for. Immutable.
class PartialTimeline final : public RemoteCoding::TimelineProtocol {
public:
    struct Contents {
        std::string timelineId;
        std::int64_t modifyCount = 0;
        std::vector<std::shared_ptr<RemoteCoding::TimelineRowProtocol>> rows;
        std::vector<std::string> deletedRowIds;       ///< in the order of their deletion
        std::vector<std::string> deletedInstanceIds;  ///< in the order of their deletion
    };

    explicit PartialTimeline(Contents contents);

    [[nodiscard]] const std::string& uniqueId() const override { return timelineId_; }
    [[nodiscard]] RemoteCoding::RowList allRows() const override { return rows_; }
    [[nodiscard]] std::int64_t modifyCount() const override { return modifyCount_; }

    /// The same contents again: a partial timeline knows no counts of its own.
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineProtocol>
    timelineFromModifyCount(std::int64_t modifyCount, bool excludeSharedInstances) const override;

    [[nodiscard]] std::vector<std::string> deletedRowIds() const override { return deletedRowIds_; }
    [[nodiscard]] std::vector<std::string> deletedInstanceIds() const override { return deletedInstanceIds_; }
    [[nodiscard]] std::shared_ptr<RemoteCoding::CodingTarget> codingTarget() override { return nullptr; }

private:
    std::string timelineId_;
    std::int64_t modifyCount_;
    RemoteCoding::RowList rows_;
    std::vector<std::string> deletedRowIds_;
    std::vector<std::string> deletedInstanceIds_;
};

}  // namespace ReferenceHost
