#pragma once

#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"
#include "ReferenceHost/Host.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace RemoteCoding {

using Strings = std::vector<std::string>;
using Activity = SynchronisationStatus::Activity;
using Operation = ReferenceHost::CloudOperation;
using Kind = ReferenceHost::Fault::Kind;
using Type = TaggingSessionChangeType;
using TaggingSessionMoments = std::vector<std::shared_ptr<const MomentItem>>;

inline const std::string requestFailed = "The cloud service could not carry out the request";

/// One analyst with one timeline and, once started, its synchroniser.
struct Analyst {
    Analyst(const std::string& name, ReferenceHost::VirtualTime& time, ReferenceHost::CloudService& cloud,
            ReferenceHost::Trace& trace);
    ~Analyst();

    /// Starts synchronising with the session, or with one that it creates.
    void start(std::optional<std::string> taggingSessionId = std::nullopt, std::string video = "video");

    std::shared_ptr<ReferenceHost::TimelineInstance> tag(const std::string& rowName, double from, double to) {
        return timeline->addInstance(row(rowName)->uniqueId(), from, to);
    }
    [[nodiscard]] std::shared_ptr<ReferenceHost::TimelineRow> row(const std::string& name) const {
        return timeline->findRowNamed(name);
    }
    [[nodiscard]] SynchronisationStatus status() const { return service->status(); }
    [[nodiscard]] ReferenceHost::CloudClient& client() { return host.cloudClient(); }

    /// The next call of this operation fails like this and takes so many seconds longer.
    void faultNext(Operation operation, Kind kind, double seconds = 0) {
        client().faultNext(operation, ReferenceHost::Fault(kind, Base::Seconds(seconds)));
    }
    /// From now on what the cloud tells arrives so many seconds late.
    void holdBackEvents(double seconds);

    /// A subscription event, as if it had just arrived.
    void deliver(Type type, const TaggingSessionMoments& moments) const {
        service->handleTaggingSessionUpdate(type, ChangedTaggingSession(moments, {}));
    }
    void deliver(const std::vector<PresentationViewItem>& views) const {
        service->handleTaggingSessionUpdate(
            Type::presentationViewUpdated,
            ChangedTaggingSession({}, PresentationViewItem("", Base::Color(), views)));
    }

    ReferenceHost::VirtualExecution execution;
    ReferenceHost::Host host;
    std::shared_ptr<GraphQLTaggingSessionProtocol> graphQLClient = host.environment().graphQLClient;
    std::shared_ptr<ReferenceHost::Timeline> timeline;
    std::shared_ptr<TimelineUploadService> service;
};

/// Rows and clips as text: what an analyst sees, what the cloud holds.
[[nodiscard]] std::string pictureOf(const ReferenceHost::Timeline& timeline);
[[nodiscard]] std::string pictureOf(const ReferenceHost::TaggingSessionRecord& session);

/// No call from a wrong thread, one block at a time, blocks in their order.
void checkConformance(const ReferenceHost::Trace& trace);

/// Analysts who share one cloud, one video and one virtual clock. After each test the trace is checked.
class SynchroniserTest : public testing::Test {
protected:
    static constexpr const char* videoId = "video";

    ~SynchroniserTest() override { checkConformance(trace); }

    Analyst& add(const std::string& name);
    [[nodiscard]] Analyst& ann() { return *analysts.at(0); }
    [[nodiscard]] Analyst& ben() { return *analysts.at(1); }

    /// Ann, whose session has these rows; settled, and the trace is empty.
    void startAnn(const Strings& rowNames);
    /// The same, and Ben, who has joined her session.
    void startTwo(const Strings& rowNames);

    void settle();
    void runFor(double seconds) { time.runFor(Base::Seconds(seconds)); }

    // What somebody else does, who is no analyst here.
    std::string addRemoteMoment(const std::string& code, double start, double end);
    void retimeRemoteMoment(const std::string& momentId, double start, double end);
    void removeRemoteMoment(const std::string& momentId) {
        EXPECT_TRUE(cloud.removeMoments(stranger, videoId, sessionId(), "elsewhere", {momentId}).value());
    }

    [[nodiscard]] std::string sessionId() const { return cloud.primarySessionOf(videoId).value_or("none"); }
    [[nodiscard]] ReferenceHost::TaggingSessionRecord remote() const {
        return cloud.snapshot(sessionId()).value();
    }
    void expectAllEqual() const;

    /// What one analyst's log says, one line an entry ("warn Disconnected …", "error text|detail|function").
    [[nodiscard]] Strings log(const Analyst& analyst) const;
    /// The same without information lines.
    [[nodiscard]] Strings complaints(const Analyst& analyst) const;
    [[nodiscard]] long logCount(const Analyst& analyst, const std::string& line) const {
        return std::ranges::count(log(analyst), line);
    }

    /// The names of the analyst's calls of the cloud, and the kinds of their blocks, as they began.
    [[nodiscard]] Strings cloudCalls(const Analyst& analyst) const {
        return texts(analyst, ReferenceHost::TraceKind::call, "name", "call");
    }
    [[nodiscard]] Strings blocks(const Analyst& analyst) const {
        return texts(analyst, ReferenceHost::TraceKind::blockStart, "kind", "number");
    }
    /// One field of those of the analyst's entries of a kind that have another field, too.
    [[nodiscard]] Strings texts(const Analyst& analyst, std::string_view kind, std::string_view field,
                                std::string_view otherField) const;

    ReferenceHost::VirtualTime time{11};
    ReferenceHost::VirtualScheduler scheduler{time};
    ReferenceHost::Trace trace{[this] { return time.now(); }};
    ReferenceHost::CloudService cloud{scheduler};
    const ReferenceHost::CloudService::ClientId stranger = cloud.addClient();
    std::vector<std::unique_ptr<Analyst>> analysts;
};

}  // namespace RemoteCoding
