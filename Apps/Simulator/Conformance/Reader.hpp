#pragma once

#include "Apps/Simulator/Conformance/State.hpp"

#include <deque>
#include <map>
#include <string_view>
#include <vector>

namespace Simulator::Conformance {

/// Reads the trace from its beginning to its end, finds out for each entry whose it is, and keeps what it says.
///
/// `read` gives an entry before its effect on the state: a block that starts does not run yet, but a call that is made and a
/// synchroniser that begins are there. `didSee` lets it take effect.
class Reader {
public:
    explicit Reader(const Record& record) : record_(record) {}

    [[nodiscard]] Entry read(std::size_t index);
    void didSee(const Entry& entry);

    [[nodiscard]] const std::deque<Synchroniser>& synchronisers() const { return synchronisers_; }
    [[nodiscard]] const std::deque<HostState>& hosts() const { return hosts_; }

private:
    [[nodiscard]] HostState& hostNamed(std::string_view name);
    void beginNext(std::size_t index, std::string_view analyst);
    void begin(const Stay& stay);

    void findOwner(Entry& entry);
    [[nodiscard]] Synchroniser* ofTimeline(HostState& host, std::string_view timelineId) const;
    [[nodiscard]] static Synchroniser* ofLog(HostState& host);
    [[nodiscard]] static Synchroniser* ofFetch(HostState& host);
    void readCall(Entry& entry);
    void readCloudCall(Entry& entry, std::int64_t number);
    static void readSubscription(Entry& entry);
    static void readAnswer(Entry& entry);
    static void readNotification(const Entry& entry);
    static void startUpload(const Entry& entry);
    static void endUpload(const Entry& entry);

    const Record& record_;
    std::deque<HostState> hosts_;
    std::map<std::string_view, HostState*> hostsByName_;
    std::deque<Synchroniser> synchronisers_;
    std::vector<bool> hasBegun_;  // of the stays
};

}  // namespace Simulator::Conformance
