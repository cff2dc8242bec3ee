#pragma once

#include "Base/Completion.hpp"
#include "Components/RemoteCoding/HostInterfaces/PublishSession.hpp"
#include "Components/RemoteCoding/HostInterfaces/SharedVideo.hpp"
#include "Components/RemoteCoding/HostInterfaces/TaggingSessionModel.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuTeamServiceProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/VideoItem.hpp"
#include "ReferenceHost/Cloud/CloudFaults.hpp"
#include "ReferenceHost/Trace.hpp"

#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

class CloudService;

/// How far one fetch has brought a client in one session.
struct FetchedSession {
    FetchedSession(std::string sessionId_, std::uint64_t sequence_, std::optional<std::uint64_t> earlier_)
        : sessionId(std::move(sessionId_)), sequence(sequence_), earlier(earlier_) {}

    std::string sessionId;
    std::uint64_t sequence = 0;            ///< of the last change that the answer holds
    std::optional<std::uint64_t> earlier;  ///< of the fetch before it
};

/// One call on its way to the service and back, whatever it answers.
class PendingCall {
public:
    explicit PendingCall(CloudCall info_) : info(std::move(info_)) {}
    virtual ~PendingCall() = default;
    PendingCall(const PendingCall&) = delete;
    PendingCall& operator=(const PendingCall&) = delete;

    /// Does it at the service and keeps the answer. May be done again when the answer was lost.
    virtual void perform(CloudService& service, const Fault& fault) = 0;

    /// Keeps this as the answer instead.
    virtual void fail(std::exception_ptr error) = 0;

    /// Hands the answer to the caller and lets go of everything.
    virtual void finish() = 0;

    /// What the kept answer says, for the trace.
    virtual void describeAnswer(TraceFields& fields) const = 0;

    CloudCall info;
    Fault fault;

    // Guarded by the connection's lock.
    std::uint64_t attempt = 0;  ///< rises with each; what belongs to an older one is void
    std::uint64_t epoch = 0;    ///< of the link, when the present attempt was sent
    bool isOnTheWay = false;    ///< not while it waits for its repetition
    bool hasMetFault = false;
    bool isPerformed = false;
    bool isNeverAnswered = false;
    std::optional<Base::Seconds> lostSince;
    std::vector<FetchedSession> fetched;
    std::uint64_t lastSequence = 0;  ///< of a write: the last change of its session after its effect
};

void describe(TraceFields& fields, bool answer);
void describe(TraceFields& fields, const std::string& answer);
void describe(TraceFields& fields, const std::vector<std::string>& answer);
void describe(TraceFields& fields, const std::vector<RemoteCoding::TaggingSessionItem>& answer);
void describe(TraceFields& fields, const RemoteCoding::VideoItem& answer);
void describe(TraceFields& fields, const std::vector<RemoteCoding::LiveStreamingVideoItem>& answer);
void describe(TraceFields& fields, const RemoteCoding::PublishSessionSummary& answer);
void describe(TraceFields& fields, const std::vector<RemoteCoding::TeamSummary>& answer);
void describe(TraceFields& fields, const std::exception_ptr& error);
[[nodiscard]] std::string joined(const std::vector<std::string>& ids);

/// An answer that is kept until it is time to hand it over.
template <typename Value>
class Reply {
public:
    explicit Reply(Base::Completion<Value> completion) : completion_(std::move(completion)) {}

    void keep(Base::Result<Value> answer) { answer_.emplace(std::move(answer)); }
    void fail(std::exception_ptr error) { keep(Base::Result<Value>::failure(std::move(error))); }

    void finish() {
        const Base::Completion<Value> completion = std::exchange(completion_, nullptr);
        if (completion) {
            completion(std::move(*answer_));
        }
    }

    void describeAnswer(TraceFields& fields) const {
        if (answer_->succeeded()) {
            describe(fields, answer_->value());
        } else {
            describe(fields, answer_->error());
        }
    }

private:
    Base::Completion<Value> completion_;
    std::optional<Base::Result<Value>> answer_;
};

/// A call that is nothing but its effect at the service.
template <typename Value>
class PendingCallOf final : public PendingCall {
public:
    using Effect = std::function<Base::Result<Value>(CloudService&, const Fault&)>;

    PendingCallOf(CloudCall call, Effect effect, Base::Completion<Value> completion)
        : PendingCall(std::move(call)), effect_(std::move(effect)), reply_(std::move(completion)) {}

    void perform(CloudService& service, const Fault& met) override { reply_.keep(effect_(service, met)); }
    void fail(std::exception_ptr error) override { reply_.fail(std::move(error)); }
    void finish() override {
        effect_ = nullptr;  // and with it what it was to write
        reply_.finish();
    }
    void describeAnswer(TraceFields& fields) const override { reply_.describeAnswer(fields); }

private:
    Effect effect_;
    Reply<Value> reply_;
};

}  // namespace ReferenceHost
