#include "ReferenceHost/Cloud/CloudGraphQLClient.hpp"

#include "ReferenceHost/Cloud/CloudConnection.hpp"
#include "ReferenceHost/Cloud/CloudMomentItem.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Cloud/CloudSubscription.hpp"

namespace ReferenceHost {

using RemoteCoding::TaggingSessionItem;

namespace {

TaggingSessionItem itemOf(const TaggingSessionRecord& record) {
    std::vector<std::shared_ptr<const RemoteCoding::Moment>> moments;
    moments.reserve(record.moments.size());
    for (const MomentPointer& moment : record.moments) {
        moments.push_back(std::make_shared<FetchedMoment>(moment));
    }
    std::vector<std::shared_ptr<const RemoteCoding::PresentationView>> views;
    if (record.presentationView) {
        views.push_back(std::make_shared<FetchedPresentationView>(record.presentationView));
    }
    return TaggingSessionItem(record.id, std::move(moments), std::move(views));
}

// The connection keeps it while it is under way, and it keeps nothing of the connection.
class Fetch final : public PendingCall {
public:
    Fetch(CloudCall call, std::optional<std::string> createdByUserId,
          std::weak_ptr<CloudConnection> connection, Base::Completion<std::vector<TaggingSessionItem>> done)
        : PendingCall(std::move(call)),
          createdByUserId_(std::move(createdByUserId)),
          connection_(std::move(connection)),
          reply_(std::move(done)) {}

    void perform(CloudService& service, const Fault& met) override {
        std::vector<TaggingSessionItem> answer;
        if (met.kind == Fault::Kind::answerNone || met.kind == Fault::Kind::answerOther) {
            if (met.kind == Fault::Kind::answerOther) {
                answer.emplace_back("another session", std::nullopt, std::nullopt);
            }
            reply_.keep(std::move(answer));
            return;
        }
        const auto connection = connection_.lock();
        for (const TaggingSessionRecord& record :
             service.fetchTaggingSessions(info.teamId, info.videoId, createdByUserId_)) {
            if (connection) {
                connection->didFetch(*this, record.id, record.sequence);
            }
            answer.push_back(itemOf(record));
        }
        reply_.keep(std::move(answer));
    }

    void fail(std::exception_ptr error) override { reply_.fail(std::move(error)); }
    void finish() override { reply_.finish(); }
    void describeAnswer(TraceFields& fields) const override { reply_.describeAnswer(fields); }

private:
    std::optional<std::string> createdByUserId_;
    std::weak_ptr<CloudConnection> connection_;
    Reply<std::vector<TaggingSessionItem>> reply_;
};

}  // namespace

void CloudGraphQLClient::fetchTaggingSessions(
    const std::string& teamId, const std::string& videoId,
    const std::optional<RemoteCoding::FetchTaggingSessionsOptions>& options,
    Base::Completion<std::vector<TaggingSessionItem>> completion) {
    CloudCall call;
    call.operation = CloudOperation::fetchTaggingSessions;
    call.teamId = teamId;
    call.videoId = videoId;
    connection_->send(std::make_shared<Fetch>(std::move(call),
                                              options ? options->createdByUserId : std::nullopt, connection_,
                                              std::move(completion)));
}

std::shared_ptr<RemoteCoding::SubscriptionHandle>
CloudGraphQLClient::subscribeToTaggingSessionChanges(const std::string& taggingSessionId,
                                                     const std::string& timelineId,
                                                     ChangeHandler changeHandler, ErrorHandler errorHandler) {
    return connection_->subscribe(taggingSessionId, timelineId, std::move(changeHandler),
                                  std::move(errorHandler));
}

}  // namespace ReferenceHost
