#pragma once

#include "Components/RemoteCoding/HostInterfaces/GraphQLTaggingSessionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TaggingSessionServiceProtocol.hpp"
#include "ReferenceHost/Cloud/RemoteRecords.hpp"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace RemoteCoding {

/// What a test puts between a synchroniser and its host's clients, for what even a faulty network does not do. All are empty
/// at first, and everything passes unchanged.
struct CloudHooks {
    using Operation = ReferenceHost::CloudOperation;

    /// Before each call, on its thread; may throw. False: the call is dropped without an answer.
    std::function<bool(Operation)> before;
    /// Changes what a fetch has answered; on the thread that brings the answer.
    std::function<void(std::vector<TaggingSessionItem>&)> fetched;
    /// When the synchroniser has let go of its client.
    std::function<void()> released;

    [[nodiscard]] bool passes(Operation operation) const { return !before || before(operation); }
};

class HookedService final : public TaggingSessionServiceProtocol {
public:
    HookedService(CloudHooks& hooks, std::shared_ptr<TaggingSessionServiceProtocol> service)
        : hooks_(hooks), service_(std::move(service)) {}

    void createTaggingSession(const std::string& teamId, const std::string& videoId,
                              const std::string& userId, Base::Completion<std::string> done) override {
        if (hooks_.passes(CloudHooks::Operation::createTaggingSession)) {
            service_->createTaggingSession(teamId, videoId, userId, std::move(done));
        }
    }
    void savePresentationView(const std::string& teamId, const std::string& videoId,
                              const std::string& sessionId, const std::string& timelineId,
                              const std::string& name, RowList rows,
                              Base::Completion<std::string> done) override {
        if (hooks_.passes(CloudHooks::Operation::savePresentationView)) {
            service_->savePresentationView(teamId, videoId, sessionId, timelineId, name, std::move(rows),
                                           std::move(done));
        }
    }
    void createMoments(const std::string& teamId, const std::string& videoId, const std::string& sessionId,
                       const std::string& timelineId, InstanceList instances,
                       Base::Completion<std::vector<std::string>> done) override {
        if (hooks_.passes(CloudHooks::Operation::createMoments)) {
            service_->createMoments(teamId, videoId, sessionId, timelineId, std::move(instances),
                                    std::move(done));
        }
    }
    void updateMoments(const std::string& teamId, const std::string& videoId, const std::string& sessionId,
                       const std::string& timelineId, InstanceList instances,
                       Base::Completion<bool> done) override {
        if (hooks_.passes(CloudHooks::Operation::updateMoments)) {
            service_->updateMoments(teamId, videoId, sessionId, timelineId, std::move(instances),
                                    std::move(done));
        }
    }
    void removeMoments(const std::string& teamId, const std::string& videoId, const std::string& sessionId,
                       const std::string& timelineId, std::vector<std::string> momentIds,
                       Base::Completion<bool> done) override {
        if (hooks_.passes(CloudHooks::Operation::removeMoments)) {
            service_->removeMoments(teamId, videoId, sessionId, timelineId, std::move(momentIds),
                                    std::move(done));
        }
    }

private:
    CloudHooks& hooks_;
    std::shared_ptr<TaggingSessionServiceProtocol> service_;
};

class HookedClient final : public GraphQLTaggingSessionProtocol {
public:
    HookedClient(CloudHooks& hooks, std::shared_ptr<GraphQLTaggingSessionProtocol> client)
        : hooks_(hooks), client_(std::move(client)) {}
    ~HookedClient() override {
        if (hooks_.released) {
            hooks_.released();
        }
    }

    void fetchTaggingSessions(const std::string& teamId, const std::string& videoId,
                              const std::optional<FetchTaggingSessionsOptions>& options,
                              Base::Completion<std::vector<TaggingSessionItem>> done) override {
        if (!hooks_.passes(CloudHooks::Operation::fetchTaggingSessions)) {
            return;
        }
        client_->fetchTaggingSessions(
            teamId, videoId, options,
            [this, done = std::move(done)](Base::Result<std::vector<TaggingSessionItem>> answer) {
                if (hooks_.fetched && answer.succeeded()) {
                    std::vector<TaggingSessionItem> sessions = answer.value();
                    hooks_.fetched(sessions);
                    answer = Base::Result<std::vector<TaggingSessionItem>>(std::move(sessions));
                }
                done(std::move(answer));
            });
    }
    std::shared_ptr<SubscriptionHandle> subscribeToTaggingSessionChanges(const std::string& sessionId,
                                                                         const std::string& timelineId,
                                                                         ChangeHandler changed,
                                                                         ErrorHandler failed) override {
        static_cast<void>(hooks_.passes(CloudHooks::Operation::subscribe));
        return client_->subscribeToTaggingSessionChanges(sessionId, timelineId, std::move(changed),
                                                         std::move(failed));
    }

private:
    CloudHooks& hooks_;
    std::shared_ptr<GraphQLTaggingSessionProtocol> client_;
};

}  // namespace RemoteCoding
