#pragma once

#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"
#include "ReferenceHost/Host.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace RemoteCoding {

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

    ReferenceHost::VirtualExecution execution;
    ReferenceHost::Host host;
    std::shared_ptr<ReferenceHost::Timeline> timeline;
    std::shared_ptr<TimelineUploadService> service;
};

/// Analysts who share one cloud, one video and one virtual clock. After each test the trace is checked: no call from a wrong
/// thread, one block at a time, blocks in their order.
class SynchroniserTest : public testing::Test {
protected:
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

    [[nodiscard]] std::string sessionId() const;
    [[nodiscard]] ReferenceHost::TaggingSessionRecord remote() const;

    /// Rows and clips as text: what an analyst sees, what the cloud holds.
    [[nodiscard]] static std::string picture(const ReferenceHost::Timeline& timeline);
    [[nodiscard]] std::string remotePicture() const;
    void expectAllEqual() const;

    /// What one analyst's log says, one line an entry ("warn Disconnected …", "error text|detail|function|file").
    [[nodiscard]] std::vector<std::string> log(const Analyst& analyst) const;
    [[nodiscard]] bool logHas(const Analyst& analyst, const std::string& line) const;
    [[nodiscard]] long logCount(const Analyst& analyst, const std::string& line) const;

    /// The names of the analyst's calls of the cloud, in the order in which they were made.
    [[nodiscard]] std::vector<std::string> cloudCalls(const Analyst& analyst) const;
    void forgetTrace() { trace.clear(); }

    ReferenceHost::VirtualTime time{11};
    ReferenceHost::VirtualScheduler scheduler{time};
    ReferenceHost::Trace trace{[this] { return time.now(); }};
    ReferenceHost::CloudService cloud{scheduler};
    std::vector<std::unique_ptr<Analyst>> analysts;
};

}  // namespace RemoteCoding
