#pragma once

#include "Components/RemoteCoding/HostInterfaces/GraphQLTaggingSessionProtocol.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace RemoteCoding {

/// What a test puts between a synchroniser and its host's GraphQL client; empty at first, and everything passes unchanged.
struct ClientHooks {
    /// Changes what a fetch has answered; on the thread that brings the answer.
    std::function<void(std::vector<TaggingSessionItem>&)> fetched;
    /// When the synchroniser has let go of its client.
    std::function<void()> released;
};

class HookedClient final : public GraphQLTaggingSessionProtocol {
public:
    HookedClient(ClientHooks& hooks, std::shared_ptr<GraphQLTaggingSessionProtocol> client)
        : hooks_(hooks), client_(std::move(client)) {}
    ~HookedClient() override {
        if (hooks_.released) {
            hooks_.released();
        }
    }

    void fetchTaggingSessions(const std::string& teamId, const std::string& videoId,
                              const std::optional<FetchTaggingSessionsOptions>& options,
                              Base::Completion<std::vector<TaggingSessionItem>> done) override {
        client_->fetchTaggingSessions(
            teamId, videoId, options,
            [&hooks = hooks_, done = std::move(done)](Base::Result<std::vector<TaggingSessionItem>> answer) {
                if (hooks.fetched && answer.succeeded()) {
                    std::vector<TaggingSessionItem> sessions = answer.value();
                    hooks.fetched(sessions);
                    answer = Base::Result<std::vector<TaggingSessionItem>>(std::move(sessions));
                }
                done(std::move(answer));
            });
    }
    std::shared_ptr<SubscriptionHandle> subscribeToTaggingSessionChanges(const std::string& sessionId,
                                                                         const std::string& timelineId,
                                                                         ChangeHandler changed,
                                                                         ErrorHandler failed) override {
        return client_->subscribeToTaggingSessionChanges(sessionId, timelineId, std::move(changed),
                                                         std::move(failed));
    }

private:
    ClientHooks& hooks_;
    std::shared_ptr<GraphQLTaggingSessionProtocol> client_;
};

}  // namespace RemoteCoding
