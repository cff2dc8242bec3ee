#pragma once

#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"
#include "ReferenceHost/Host.hpp"
#include "Tests/Services/HookedClient.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace RemoteCoding {

using TaggingSessionMoments = std::vector<std::shared_ptr<const MomentItem>>;

/// One analyst with one timeline and, once started, its synchroniser.
class Analyst {
public:
    Analyst(std::string name, ReferenceHost::VirtualTime& time, ReferenceHost::CloudService& cloud,
            ReferenceHost::Trace& trace, ReferenceHost::HostOptions options);
    ~Analyst();

    /// Starts synchronising with the session, or with one that it creates.
    void start(std::optional<std::string> taggingSessionId = std::nullopt);

    /// Stands for the component, which drops an ended session's synchroniser.
    void release() { service.reset(); }

    [[nodiscard]] std::shared_ptr<ReferenceHost::TimelineRow> row(const std::string& name) const {
        return timeline->findRowNamed(name);
    }
    std::shared_ptr<ReferenceHost::TimelineInstance> tag(const std::string& rowName, double start,
                                                         double end);

    ClientHooks hooks;
    ReferenceHost::VirtualExecution execution;
    ReferenceHost::Host host;
    std::shared_ptr<ReferenceHost::Timeline> timeline;
    std::shared_ptr<TimelineUploadService> service;
};

/// Rows and clips as text: what an analyst sees, what the cloud holds.
[[nodiscard]] std::string pictureOf(const ReferenceHost::Timeline& timeline);
[[nodiscard]] std::string pictureOf(const ReferenceHost::TaggingSessionRecord& session);

/// No call from a wrong thread, one block at a time, blocks in their order.
void checkConformance(const ReferenceHost::Trace& trace);

/// Analysts who share one cloud, one video and one virtual clock. After each test the trace is checked: no call from a wrong
/// thread, one block at a time, blocks in their order.
class SynchroniserTest : public testing::Test {
protected:
    using Operation = ReferenceHost::CloudOperation;
    using Fault = ReferenceHost::Fault;

    static constexpr const char* videoId = "video";

    SynchroniserTest();
    ~SynchroniserTest() override;

    Analyst& add(const std::string& name, ReferenceHost::HostOptions options = {});

    /// The first analyst's session with these rows, and a second analyst who has joined it; both settled.
    void startTwo(const std::vector<std::string>& rowNames);
    [[nodiscard]] Analyst& ann() { return *analysts.at(0); }
    [[nodiscard]] Analyst& ben() { return *analysts.at(1); }

    void settle();
    void runFor(double seconds) { time.runFor(Base::Seconds(seconds)); }

    /// Runs it in a background job of the analyst's host.
    void inBackground(Analyst& analyst, const std::function<void()>& work);

    /// What the cloud does not tell for a while does not start work either: the analyst's events wait this long.
    static void holdBackEvents(Analyst& analyst, double seconds);

    /// A subscription event, as if it had just arrived.
    static void deliver(Analyst& analyst, TaggingSessionChangeType type, TaggingSessionMoments moments);
    static void deliver(Analyst& analyst, const std::vector<PresentationViewItem>& views);

    /// Somebody else's moment, who is no analyst here.
    std::string addRemoteMoment(const std::string& code, double start, double end);

    [[nodiscard]] std::string sessionId() const;
    [[nodiscard]] ReferenceHost::TaggingSessionRecord remote() const;

    [[nodiscard]] std::string remotePicture() const { return pictureOf(remote()); }
    void expectAllEqual() const;

    /// What one analyst's log says, one line an entry ("warn Disconnected …", "error text|detail|function").
    [[nodiscard]] std::vector<std::string> log(const Analyst& analyst) const;
    [[nodiscard]] bool logHas(const Analyst& analyst, const std::string& line) const;
    /// The same without information lines.
    [[nodiscard]] std::vector<std::string> complaints(const Analyst& analyst) const;
    [[nodiscard]] long logCount(const Analyst& analyst, const std::string& line) const;

    /// The names of the analyst's calls of the cloud, in the order in which they were made.
    [[nodiscard]] std::vector<std::string> cloudCalls(const Analyst& analyst) const;
    /// The kinds of the analyst's blocks in the order in which they started.
    [[nodiscard]] std::vector<std::string> blocks(const Analyst& analyst) const;
    void forgetTrace() { trace.clear(); }

    ReferenceHost::VirtualTime time{11};
    ReferenceHost::VirtualScheduler scheduler{time};
    ReferenceHost::Trace trace{[this] { return time.now(); }};
    ReferenceHost::CloudService cloud{scheduler};
    const ReferenceHost::CloudService::ClientId stranger = cloud.addClient();
    std::vector<std::unique_ptr<Analyst>> analysts;
};

}  // namespace RemoteCoding
