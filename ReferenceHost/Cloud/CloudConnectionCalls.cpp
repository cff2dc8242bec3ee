// The calls of a connection: there, back, and again when they were lost.

#include "ReferenceHost/Cloud/CloudConnection.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Cloud/ConnectionErrors.hpp"
#include "ReferenceHost/Execution/Scheduler.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

namespace {

TraceFields fieldsOf(const CloudCall& call) {
    TraceFields fields;
    fields.emplace_back("name", nameOf(call.operation));
    fields.emplace_back("call", std::to_string(call.number));
    if (!call.videoId.empty()) {
        fields.emplace_back("videoId", call.videoId);
    }
    if (call.videoId.empty() && !call.teamId.empty()) {
        fields.emplace_back("teamId", call.teamId);
    }
    if (!call.sessionId.empty()) {
        fields.emplace_back("taggingSessionId", call.sessionId);
    }
    if (!call.timelineId.empty()) {
        fields.emplace_back("timelineId", call.timelineId);
    }
    if (isWrite(call.operation)) {
        fields.emplace_back("count", std::to_string(call.count));
        fields.emplace_back("ids", joined(call.ids));
    }
    return fields;
}

}  // namespace

std::size_t CloudConnection::numberOfCallsUnderWay() const {
    return Base::synchronized(lock_, [&] { return calls_.size(); });
}

void CloudConnection::send(const std::shared_ptr<PendingCall>& call) {
    const bool taken = Base::synchronized(lock_, [&] {
        if (takesCalls_) {
            call->info.number = ++lastCall_;
        }
        return takesCalls_;
    });
    if (!taken) {
        call->fail(connectionClosed());
        call->finish();
        return;
    }
    call->info.host = host_;
    call->info.time = now();
    call->fault = faultFor(call->info);
    if (trace_.isRecording()) {
        trace_.record(host_, TraceKind::call, fieldsOf(call->info));
    }
    dispatch(call);
}

void CloudConnection::dispatch(const std::shared_ptr<PendingCall>& call) {
    Base::synchronized(lock_, [&] {
        if (!takesCalls_) {
            return;
        }
        calls_[call->info.number] = call;
        call->epoch = epoch_;
        call->isOnTheWay = true;
        const std::uint64_t attempt = ++call->attempt;
        const Base::Seconds there = drawLatency();
        service_.scheduler().postAfter(there, [self = shared_from_this(), call, attempt, up = isLinkUp_] {
            up ? self->arrive(call, attempt) : self->attemptWasLost(call, attempt);
        });
    });
}

void CloudConnection::arrive(const std::shared_ptr<PendingCall>& call, std::uint64_t attempt) {
    const std::lock_guard gate(gate_);
    Fault fault;
    const bool onlyOnce = rules().repeatedWritesCountOnce;
    bool isRepetition = false;
    const bool arrives = !isClosed_ && Base::synchronized(lock_, [&] {
        if (call->attempt != attempt || call->epoch != epoch_) {
            return false;
        }
        if (!std::exchange(call->hasMetFault, true)) {
            fault = call->fault;
        }
        call->isNeverAnswered = fault.kind == Fault::Kind::neverAnswer;
        isRepetition = onlyOnce && call->isPerformed && isWrite(call->info.operation);
        return true;
    });
    if (!arrives) {
        return;
    }
    if (fault.kind == Fault::Kind::failBeforeEffect) {
        call->fail(requestFailed());
    } else if (!isRepetition) {
        call->perform(service_, fault);
        const std::uint64_t sequence =
            isWrite(call->info.operation) ? service_.lastSequence(call->info.sessionId) : 0;
        recordEffect(*call);
        Base::synchronized(lock_, [&] {
            call->isPerformed = true;
            call->lastSequence = sequence;
        });
    }
    if (fault.kind == Fault::Kind::failAfterEffect) {
        Base::synchronized(lock_, [&] { forgetFetches(*call); });
        call->fail(requestFailed());
    }
    if (fault.kind == Fault::Kind::neverAnswer) {
        return;
    }
    const Base::Seconds back = Base::synchronized(lock_, [&] { return drawLatency(); });
    service_.scheduler().postAfter(
        back + fault.hang, [self = shared_from_this(), call, attempt] { self->bringAnswer(call, attempt); });
}

void CloudConnection::recordEffect(const PendingCall& call) {
    if (!trace_.isRecording()) {
        return;
    }
    TraceFields fields;
    fields.emplace_back("name", nameOf(call.info.operation));
    fields.emplace_back("call", std::to_string(call.info.number));
    for (const FetchedSession& fetched : call.fetched) {
        fields.emplace_back("taggingSessionId", fetched.sessionId);
        fields.emplace_back("sequence", std::to_string(fetched.sequence));
    }
    if (!call.info.sessionId.empty()) {
        fields.emplace_back("taggingSessionId", call.info.sessionId);
        fields.emplace_back("sequence", std::to_string(service_.lastSequence(call.info.sessionId)));
    }
    trace_.record(host_, "effect", std::move(fields));
}

void CloudConnection::bringAnswer(const std::shared_ptr<PendingCall>& call, std::uint64_t attempt) {
    const bool holdsOwnWrites = rules().fetchesHoldOwnWrites;
    bool isStale = false;
    const bool arrives = Base::synchronized(lock_, [&] {
        isStale = holdsOwnWrites && std::ranges::any_of(call->fetched, [&](const FetchedSession& fetched) {
                      const auto written = answeredWrites_.find(fetched.sessionId);
                      return written != answeredWrites_.end() && written->second > fetched.sequence;
                  });
        const bool isAwaited = call->attempt == attempt && call->epoch == epoch_;
        if (isAwaited && isStale) {
            forgetFetches(*call);
        }
        return isAwaited;
    });
    if (arrives && isStale) {
        dispatch(call);
    } else if (arrives) {
        complete(call);
    }
}

void CloudConnection::attemptWasLost(const std::shared_ptr<PendingCall>& call, std::uint64_t attempt) {
    const std::lock_guard gate(gate_);
    if (isClosed_) {
        return;
    }
    const bool mayRepeat = isWrite(call->info.operation) && rules().writesAreRepeatedOverShortDrops;
    const Base::Seconds time = now();
    bool isOver = false;
    Base::synchronized(lock_, [&] {
        if (call->attempt != attempt) {
            return;
        }
        forgetFetches(*call);
        call->isOnTheWay = false;
        const std::uint64_t next = ++call->attempt;
        call->lostSince = call->lostSince.value_or(time);
        const Base::Seconds patience = *call->lostSince + settings_.shortDropLimit - time;
        // Half a microsecond: what is left of the limit may be the rounding of the clock.
        isOver = !mayRepeat || patience.count() < 5e-7;
        if (!isOver) {
            service_.scheduler().postAfter(
                std::min(settings_.retryInterval, patience),
                [self = shared_from_this(), call, next] { self->repeat(call, next); });
        }
    });
    if (isOver) {
        call->fail(connectionLost());
        complete(call);
    }
}

void CloudConnection::repeat(const std::shared_ptr<PendingCall>& call, std::uint64_t attempt) {
    const bool canSend = Base::synchronized(lock_, [&] {
        if (isLinkUp_) {
            call->lostSince.reset();
        }
        return isLinkUp_;
    });
    if (canSend) {
        dispatch(call);
    } else {
        attemptWasLost(call, attempt);
    }
}

void CloudConnection::didFetch(PendingCall& call, const std::string& sessionId, std::uint64_t sequence) {
    Base::synchronized(lock_, [&] {
        const auto known = lastFetches_.find(sessionId);
        call.fetched.emplace_back(sessionId, sequence,
                                  known == lastFetches_.end() ? std::nullopt : std::optional(known->second));
        // One that was asked for earlier, and took longer, is of somebody who has left since, and tells nobody anything.
        std::uint64_t& latest = latestFetchCalls_[sessionId];
        if (latest <= call.info.number) {
            latest = call.info.number;
            lastFetches_[sessionId] = sequence;
        }
    });
}

// A fetch whose answer was lost is none: what it had marked as told was not.
void CloudConnection::forgetFetches(PendingCall& call) {
    for (const FetchedSession& fetched : std::exchange(call.fetched, {})) {
        const auto known = lastFetches_.find(fetched.sessionId);
        if (known == lastFetches_.end() || known->second != fetched.sequence) {
            continue;  // another fetch has gone further
        }
        if (fetched.earlier) {
            known->second = *fetched.earlier;
        } else {
            lastFetches_.erase(known);
        }
    }
}

void CloudConnection::complete(const std::shared_ptr<PendingCall>& call) {
    const std::lock_guard gate(gate_);
    const bool isFirst = Base::synchronized(lock_, [&] {
        ++call->attempt;
        if (isWrite(call->info.operation)) {
            std::uint64_t& known = answeredWrites_[call->info.sessionId];
            known = std::max(known, call->lastSequence);
        }
        return calls_.erase(call->info.number) != 0;
    });
    if (isClosed_ || !isFirst) {
        return;
    }
    if (call->info.operation == CloudOperation::fetchTaggingSessions) {
        openAfterFetch();
    }
    if (trace_.isRecording()) {
        TraceFields fields;
        fields.emplace_back("name", nameOf(call->info.operation));
        fields.emplace_back("call", std::to_string(call->info.number));
        call->describeAnswer(fields);
        trace_.record(host_, TraceKind::answer, std::move(fields));
    }
    try {
        execution_.postToBackground([call] { call->finish(); });
    } catch (...) {
        // A host that is shutting down takes no jobs any more; its completion is dropped, which tells whoever waits.
    }
}

}  // namespace ReferenceHost
