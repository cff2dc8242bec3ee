#pragma once

#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"
#include "ReferenceHost/Timeline/CallRecorder.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ReferenceHost {

class Timeline;

/// The component's way to edit a timeline. Does nothing once the timeline is gone or its coding target is not
/// available.
class TimelineCodingTarget final : public RemoteCoding::CodingTarget {
public:
    explicit TimelineCodingTarget(std::weak_ptr<Timeline> timeline);

    void setRowNameWithRowNum(std::int64_t rowNum, const std::string& name) override;
    void setRowColorWithRowId(const std::string& rowId, Base::Color color) override;
    void
    insertRowWithName(const std::string& name, Base::Color color, std::int64_t at,
                      std::function<void(std::shared_ptr<RemoteCoding::TimelineRowProtocol>)> added) override;
    void rearrangeRowsFrom(const std::vector<std::int64_t>& from, std::int64_t to) override;
    void removeRowWithRowId(const std::string& rowId) override;
    void removeInstanceWithRowId(const std::string& rowId, const std::string& instanceId) override;

private:
    template <typename Edit>
    void edit(const char* call, CallArguments arguments, const Edit& edit);

    std::weak_ptr<Timeline> timeline_;
};

}  // namespace ReferenceHost
