#include "ReferenceHost/Cloud/PendingCall.hpp"

#include "Base/Error.hpp"

#include <algorithm>
#include <iterator>

namespace ReferenceHost {

namespace {

template <typename Item>
void describeIds(TraceFields& fields, const std::vector<Item>& answer, std::string Item::* id) {
    std::vector<std::string> ids;
    std::ranges::transform(answer, std::back_inserter(ids), id);
    describe(fields, ids);
}

}  // namespace

std::string joined(const std::vector<std::string>& ids) {
    std::string text;
    for (const std::string& id : ids) {
        if (!text.empty()) {
            text += ',';
        }
        text += id;
    }
    return text;
}

void describe(TraceFields& fields, bool answer) { fields.emplace_back("answer", answer ? "true" : "false"); }

void describe(TraceFields& fields, const std::string& answer) { fields.emplace_back("answer", answer); }

void describe(TraceFields& fields, const std::vector<std::string>& answer) {
    fields.emplace_back("count", std::to_string(answer.size()));
    fields.emplace_back("ids", joined(answer));
}

void describe(TraceFields& fields, const std::vector<RemoteCoding::TaggingSessionItem>& answer) {
    std::vector<std::string> ids;
    std::size_t moments = 0;
    for (const RemoteCoding::TaggingSessionItem& session : answer) {
        ids.push_back(session.identifier.value_or(std::string()));
        moments += session.moments ? session.moments->size() : 0;
    }
    describe(fields, ids);
    fields.emplace_back("moments", std::to_string(moments));
}

void describe(TraceFields& fields, const RemoteCoding::VideoItem& answer) {
    fields.emplace_back("status", answer.status.value_or(std::string()));
    fields.emplace_back("streams", answer.streams ? std::to_string(answer.streams->size()) : std::string());
}

void describe(TraceFields& fields, const std::vector<RemoteCoding::LiveStreamingVideoItem>& answer) {
    describeIds(fields, answer, &RemoteCoding::LiveStreamingVideoItem::videoId);
}

void describe(TraceFields& fields, const RemoteCoding::PublishSessionSummary& answer) {
    fields.emplace_back("answer", answer.id);
    fields.emplace_back("videoId", answer.videoId.value_or(std::string()));
}

void describe(TraceFields& fields, const std::vector<RemoteCoding::TeamSummary>& answer) {
    describeIds(fields, answer, &RemoteCoding::TeamSummary::id);
}

void describe(TraceFields& fields, const std::exception_ptr& error) {
    fields.emplace_back("error", Base::describe(error));
}

}  // namespace ReferenceHost
