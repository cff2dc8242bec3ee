#include "Benchmarks/Component/Synchroniser.hpp"

#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include <utility>

namespace Benchmarks {
namespace {

using RemoteCoding::TimelineUploadService;

class UploadServiceSynchroniser final : public Synchroniser {
public:
    explicit UploadServiceSynchroniser(std::shared_ptr<TimelineUploadService> service)
        : service_(std::move(service)) {}

    void pull(std::function<void(bool)> completion) override {
        service_->syncRemoteTaggingSessionToLocalTimeline(std::move(completion));
    }
    void receive(RemoteCoding::TaggingSessionChangeType type,
                 const RemoteCoding::ChangedTaggingSession& change) override {
        service_->handleTaggingSessionUpdate(type, change);
    }
    void apply(const std::shared_ptr<RemoteCoding::TimelineProtocol>& timeline,
               const std::optional<RemoteCoding::PresentationViewItem>& view) override {
        service_->updatePresentationView(timeline, view);
    }
    void upload() override { service_->updateTaggingSession({}); }
    void uploadInABlock() override {
        TimelineUploadService& service = *service_;
        service.runBlockSerially(
            [&service] { service.updateTaggingSession([&service](bool) { service.runNextBlock(); }); },
            RemoteCoding::SynchronisationBlock::upload);
    }

private:
    std::shared_ptr<TimelineUploadService> service_;
};

}  // namespace

std::unique_ptr<Synchroniser>
makeSynchroniser(RemoteCoding::HostEnvironment& environment, const SynchroniserIds& ids,
                 std::shared_ptr<RemoteCoding::TaggingSessionServiceProtocol> service,
                 std::shared_ptr<RemoteCoding::GraphQLTaggingSessionProtocol> client) {
    return std::make_unique<UploadServiceSynchroniser>(
        TimelineUploadService::make(environment, ids.timeline, ids.team, ids.user, ids.video,
                                    ids.taggingSession, std::move(service), std::move(client)));
}

}  // namespace Benchmarks
