#pragma once

#include "Base/Completion.hpp"
#include "Base/Synchronized.hpp"
#include "Components/RemoteCoding/HostInterfaces/TaggingSessionServiceProtocol.hpp"

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace ReferenceHost {

class Timeline;

/// What one client makes of the answers to its creations and removals. Any thread.
class CreatedMoments : public std::enable_shared_from_this<CreatedMoments> {
public:
    using Ids = std::vector<std::string>;
    using Numbers = std::vector<std::uint64_t>;

    /// The completion, which first tells the clips for which moments they stand. When the timeline was published as a new one since this
    /// client wrote it first, they stand for none, and it is given no identifiers. `numbers`: the moments', filled before the
    /// answer comes.
    [[nodiscard]] Base::Completion<Ids> naming(const RemoteCoding::InstanceList& instances,
                                               const std::string& sessionId,
                                               const std::shared_ptr<const Numbers>& numbers,
                                               Base::Completion<Ids> completion);

    /// The completion, which first notes that these are removed.
    [[nodiscard]] Base::Completion<bool> notingRemoval(const Ids& moments, Base::Completion<bool> completion);

    /// This client has removed the moment. A clip that was brought back since bears its name until it is written anew.
    [[nodiscard]] bool isRemoved(const std::string& moment) const;

private:
    /// The timeline is another one to the cloud by now.
    [[nodiscard]] bool isOver(const std::shared_ptr<Timeline>& timeline);

    Base::ObjectLock lock_;
    std::map<std::string, std::uint64_t> timesPublished_;  // by timeline, when it was written first
    std::set<std::string> removed_;
};

}  // namespace ReferenceHost
