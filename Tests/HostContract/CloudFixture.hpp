#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/SyncLibraryProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuAPIError.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuGraphQLClientProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuTeamServiceProtocol.hpp"
#include "Tests/HostContract/NamedHost.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

/// What the contract suites of the cloud's clients share: a fixture that any host can implement, and a way to call
/// asynchronous operations from the thread on which the component calls them.
namespace HostContract {

/// A clip's code, its start and end in seconds, and its notes.
using Clip = std::tuple<std::string, double, double, std::string>;

using Timeline = std::shared_ptr<RemoteCoding::TimelineProtocol>;
using Instance = std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>;

/// One fresh cloud with some analysts, each with a host of their own: client, sync library, execution, and one open
/// timeline without rows. Made, used and destroyed on the test's thread, which is every host's main thread.
class CloudFixture {
public:
    virtual ~CloudFixture() = default;

    [[nodiscard]] virtual RemoteCoding::TevuGraphQLClientProtocol& graphQLClient(std::size_t analyst) = 0;
    [[nodiscard]] virtual RemoteCoding::SyncLibraryProtocol& syncLibrary(std::size_t analyst) = 0;
    [[nodiscard]] virtual Base::ExecutionProtocol& execution(std::size_t analyst) = 0;
    [[nodiscard]] virtual Timeline timeline(std::size_t analyst) = 0;

    /// One more timeline without rows.
    [[nodiscard]] virtual Timeline makeTimeline() = 0;

    // What users do. A clip goes to the first row of its code; the row is made when it is missing.
    virtual Instance tag(const Timeline& timeline, const Clip& clip) = 0;
    virtual void retime(const Timeline& timeline, const Instance& instance, double start, double end) = 0;
    virtual void remove(const Timeline& timeline, const Instance& instance) = 0;
    virtual void addRow(const Timeline& timeline, const std::string& name, Base::Color color) = 0;
    virtual void renameRow(const Timeline& timeline, const std::string& name, const std::string& newName) = 0;

    /// What the clip says, with the name of its row as the code, and anything but that when it is on no row.
    [[nodiscard]] virtual Clip clipOf(const Instance& instance) = 0;

    [[nodiscard]] virtual RemoteCoding::TevuTeamServiceProtocol& teamService(std::size_t analyst) = 0;

    /// Nobody is signed in at first, and there is no team. False: the service accepts the earlier sign-ins no more.
    virtual void setSignedIn(std::size_t analyst, bool signedIn) = 0;
    virtual void addTeam(const std::string& teamId, std::size_t member,
                         const std::vector<RemoteCoding::TevuFeaturePrivilege>& privileges) = 0;

    /// Cuts the analyst's network, or mends it.
    virtual void setLinkUp(std::size_t analyst, bool up) = 0;

    /// Runs the main loop on this thread until the predicate holds. False when the host gives up (after long).
    [[nodiscard]] virtual bool runUntil(const std::function<bool()>& predicate) = 0;

    /// Runs the main loop on this thread until whatever was sent, whichever way, has arrived.
    virtual void settle() = 0;
};

using CloudHost = NamedHost<CloudFixture, std::size_t>;  // made for so many analysts

/// The base of the suites: three analysts of one team with one video.
class CloudContractTest : public testing::TestWithParam<CloudHost> {
protected:
    enum Analyst : std::size_t { ann, ben, cleo };
    static constexpr const char* team = "team";
    static constexpr const char* video = "video";

    using Instances = std::vector<Instance>;
    using Ids = std::vector<std::string>;
    using Service = RemoteCoding::TaggingSessionServiceProtocol;
    using Sessions = std::vector<RemoteCoding::TaggingSessionItem>;

    /// A call under way: how often it has been answered, and its first answer, which is to be its only one.
    template <typename Value>
    struct Pending {
        void keep(Base::Result<Value> result) {
            if (answers == 0) {
                answer.emplace(std::move(result));
            }
            ++answers;
        }
        std::optional<Base::Result<Value>> answer;
        std::atomic<int> answers = 0;
        std::atomic<bool> hasReturned = false;
    };
    template <typename Value>
    using Call = std::shared_ptr<Pending<Value>>;

    CloudFixture& host() { return *fixture_; }
    Timeline timeline(std::size_t analyst) { return fixture_->timeline(analyst); }
    Instance tag(std::size_t analyst, const Clip& clip) { return fixture_->tag(timeline(analyst), clip); }

    void runUntil(const std::function<bool()>& predicate) {
        ASSERT_TRUE(fixture_->runUntil(predicate)) << "The host did not get there.";
    }

    template <typename Value>
    Base::Result<Value> wait(const Call<Value>& call) {
        runUntil([&] { return call->answers != 0; });
        return *call->answer;
    }

    /// Calls the analyst's service in its background and does not wait.
    template <typename Value, typename... Parameters, typename... Arguments>
    Call<Value> start(std::size_t analyst, void (Service::*operation)(Parameters...),
                      Arguments... arguments) {
        auto pending = std::make_shared<Pending<Value>>();
        fixture_->execution(analyst).postToBackground(
            [=, service = fixture_->syncLibrary(analyst).makeTaggingSessionService()] {
                ((*service).*operation)(arguments..., [pending](Base::Result<Value> answer) {
                    pending->keep(std::move(answer));
                });
                pending->hasReturned = true;
            });
        return pending;
    }

    Call<std::string> startCreateSession(std::size_t analyst, const std::string& videoId = video) {
        return start<std::string>(analyst, &Service::createTaggingSession, team, videoId, "user");
    }
    Call<Ids> startCreate(std::size_t analyst, const std::string& session, const Timeline& timeline,
                          const Instances& instances) {
        return start<Ids>(analyst, &Service::createMoments, team, video, session, timeline->uniqueId(),
                          std::make_shared<const Instances>(instances));
    }
    Call<bool> startUpdate(std::size_t analyst, const std::string& session, const Instances& instances) {
        return start<bool>(analyst, &Service::updateMoments, team, video, session,
                           timeline(analyst)->uniqueId(), std::make_shared<const Instances>(instances));
    }
    Call<bool> startRemove(std::size_t analyst, const std::string& session, const Ids& ids) {
        return start<bool>(analyst, &Service::removeMoments, team, video, session,
                           timeline(analyst)->uniqueId(), ids);
    }
    Call<std::string> startSaveRows(std::size_t analyst, const std::string& session) {
        return start<std::string>(analyst, &Service::savePresentationView, team, video, session,
                                  timeline(analyst)->uniqueId(), "", timeline(analyst)->allRows());
    }
    Call<Sessions> startFetch(std::size_t analyst) {
        const auto pending = std::make_shared<Pending<Sessions>>();
        fixture_->graphQLClient(analyst).fetchTaggingSessions(
            team, video, std::nullopt,
            [pending](Base::Result<Sessions> answer) { pending->keep(std::move(answer)); });
        return pending;
    }

    std::string createSession(std::size_t analyst) { return wait(startCreateSession(analyst)).value(); }

    /// Creates moments of the analyst's own timeline and notes their ids on the clips.
    Ids create(std::size_t analyst, const std::string& session, const Instances& instances) {
        const Ids ids = wait(startCreate(analyst, session, timeline(analyst), instances)).value();
        EXPECT_EQ(ids.size(), instances.size());
        for (std::size_t i = 0; i < ids.size(); ++i) {
            instances[i]->setExternalId(ids[i]);
        }
        return ids;
    }

    /// The moments of the video's primary session, in the order of the fetch.
    std::vector<std::shared_ptr<const RemoteCoding::MomentItem>> fetchMoments(std::size_t analyst) {
        std::vector<std::shared_ptr<const RemoteCoding::MomentItem>> items;
        const Sessions sessions = wait(startFetch(analyst)).value();
        for (const auto& moment : *sessions.front().moments) {
            items.push_back(fixture_->syncLibrary(analyst).momentItem(*moment));
        }
        return items;
    }

    Ids fetchIds(std::size_t analyst) {
        Ids ids;
        for (const auto& item : fetchMoments(analyst)) {
            ids.push_back(item->identifier());
        }
        return ids;
    }

    /// What the moments say, by what becomes of them on an empty timeline.
    std::vector<Clip> fetchClips(std::size_t analyst) {
        std::vector<Clip> clips;
        const Timeline scratch = fixture_->makeTimeline();
        for (const auto& item : fetchMoments(analyst)) {
            clips.push_back(fixture_->clipOf(item->appendToTimeline(scratch)));
        }
        return clips;
    }

private:
    std::shared_ptr<CloudFixture> fixture_ = GetParam().make(3);
};

}  // namespace HostContract
