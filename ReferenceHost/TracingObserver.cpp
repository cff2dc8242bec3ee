#include "ReferenceHost/TracingObserver.hpp"

namespace ReferenceHost {

using RemoteCoding::ModifyCountReason;
using RemoteCoding::SynchronisationBlock;

namespace {

const char* nameOf(SynchronisationBlock kind) {
    switch (kind) {
    case SynchronisationBlock::upload:
        return "upload";
    case SynchronisationBlock::pull:
        return "pull";
    case SynchronisationBlock::event:
        return "event";
    case SynchronisationBlock::reconnection:
        return "reconnection";
    }
    return "?";
}

}  // namespace

void TracingObserver::blockDidStart(const std::string& timelineId, std::uint64_t number,
                                    SynchronisationBlock kind) {
    trace_.record(host_, TraceKind::blockStart,
                  {{"timelineId", timelineId}, {"number", std::to_string(number)}, {"kind", nameOf(kind)}});
}

void TracingObserver::blockDidEnd(const std::string& timelineId, std::uint64_t number) {
    trace_.record(host_, TraceKind::blockEnd,
                  {{"timelineId", timelineId}, {"number", std::to_string(number)}});
}

void TracingObserver::lastModifyCountDidChange(const std::string& timelineId, std::int64_t oldCount,
                                               std::int64_t newCount, ModifyCountReason reason) {
    trace_.record(host_, TraceKind::count,
                  {{"timelineId", timelineId},
                   {"old", std::to_string(oldCount)},
                   {"new", std::to_string(newCount)},
                   {"reason", reason == ModifyCountReason::uploaded ? "uploaded" : "applied"}});
}

void TracingObserver::uploadDidStart(const std::string& timelineId, std::uint64_t number,
                                     std::int64_t firstModifyCount, std::int64_t lastModifyCount) {
    trace_.record(host_, TraceKind::uploadStart,
                  {{"timelineId", timelineId},
                   {"number", std::to_string(number)},
                   {"first", std::to_string(firstModifyCount)},
                   {"last", std::to_string(lastModifyCount)}});
}

void TracingObserver::uploadDidEnd(const std::string& timelineId, std::uint64_t number, bool succeeded) {
    trace_.record(host_, TraceKind::uploadEnd,
                  {{"timelineId", timelineId},
                   {"number", std::to_string(number)},
                   {"succeeded", succeeded ? "true" : "false"}});
}

}  // namespace ReferenceHost
