#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/GraphQLTaggingSessionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/SyncLibraryProtocol.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

/// What the contract suites of the cloud's clients share: a fixture that any host can implement, and a way to call
/// asynchronous operations from the thread on which the component calls them.
namespace HostContract {

/// What a clip says.
struct Clip {
    Clip(std::string code_, double start_, double end_, std::string notes_ = {})
        : code(std::move(code_)), start(start_), end(end_), notes(std::move(notes_)) {}

    std::string code;
    double start;  ///< seconds
    double end;    ///< seconds
    std::string notes;

    friend bool operator==(const Clip&, const Clip&) = default;
    friend void PrintTo(const Clip& clip, std::ostream* stream) {
        *stream << clip.code << " " << clip.start << "-" << clip.end << " \"" << clip.notes << "\"";
    }
};

/// One fresh cloud with some analysts, each with a host of their own: client, sync library, execution, and one open
/// timeline without rows. Made, used and destroyed on the test's thread, which is every host's main thread.
class CloudFixture {
public:
    using Timeline = std::shared_ptr<RemoteCoding::TimelineProtocol>;
    using Instance = std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>;

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

    /// What the clip says, with the name of its row as the code, and anything but that when it is on no row.
    [[nodiscard]] virtual Clip clipOf(const Instance& instance) = 0;

    /// Cuts the analyst's network, or mends it.
    virtual void setLinkUp(std::size_t analyst, bool up) = 0;

    /// Runs the main loop on this thread until the predicate holds. False when the host gives up (after long).
    [[nodiscard]] virtual bool runUntil(const std::function<bool()>& predicate) = 0;

    /// Runs the main loop on this thread until whatever was sent, whichever way, has arrived.
    virtual void settle() = 0;
};

struct CloudHost {
    CloudHost(std::string name_, std::function<std::unique_ptr<CloudFixture>(std::size_t)> make_)
        : name(std::move(name_)), make(std::move(make_)) {}
    std::string name;
    std::function<std::unique_ptr<CloudFixture>(std::size_t analysts)> make;

    friend void PrintTo(const CloudHost& host, std::ostream* stream) { *stream << host.name; }
};

/// The base of both suites: analysts 0 (Ann), 1 (Ben) and 2 (Cleo) of one team with one video.
class CloudContractTest : public testing::TestWithParam<CloudHost> {
protected:
    static constexpr std::size_t ann = 0;
    static constexpr std::size_t ben = 1;
    static constexpr std::size_t cleo = 2;
    static constexpr const char* team = "team";
    static constexpr const char* video = "video";

    using Timeline = CloudFixture::Timeline;
    using Instance = CloudFixture::Instance;
    using Ids = std::vector<std::string>;
    using Sessions = std::vector<RemoteCoding::TaggingSessionItem>;

    template <typename Value>
    class Pending {
    public:
        [[nodiscard]] bool isDone() const {
            const std::lock_guard lock(mutex_);
            return answer_.has_value();
        }
        [[nodiscard]] bool hasReturned() const {
            const std::lock_guard lock(mutex_);
            return returned_;
        }
        [[nodiscard]] int answers() const {
            const std::lock_guard lock(mutex_);
            return answers_;
        }
        [[nodiscard]] Base::Result<Value> answer() const {
            const std::lock_guard lock(mutex_);
            return *answer_;
        }
        void keep(Base::Result<Value> answer) {
            const std::lock_guard lock(mutex_);
            answer_.emplace(std::move(answer));
            ++answers_;
        }
        void setReturned() {
            const std::lock_guard lock(mutex_);
            returned_ = true;
        }

    private:
        mutable std::mutex mutex_;
        std::optional<Base::Result<Value>> answer_;
        int answers_ = 0;
        bool returned_ = false;
    };
    template <typename Value>
    using Call = std::shared_ptr<Pending<Value>>;

    CloudContractTest() : fixture_(GetParam().make(3)) {
        for (std::size_t analyst = 0; analyst < 3; ++analyst) {
            services_.push_back(fixture_->syncLibrary(analyst).makeTaggingSessionService());
        }
    }

    CloudFixture& host() { return *fixture_; }
    Timeline timeline(std::size_t analyst) { return fixture_->timeline(analyst); }
    RemoteCoding::TaggingSessionServiceProtocol& service(std::size_t analyst) { return *services_[analyst]; }

    void runUntil(const std::function<bool()>& predicate) {
        ASSERT_TRUE(fixture_->runUntil(predicate)) << "The host did not get there.";
    }

    /// Makes the call in the analyst's background and does not wait.
    template <typename Value>
    Call<Value> start(std::size_t analyst, std::function<void(Base::Completion<Value>)> call) {
        auto pending = std::make_shared<Pending<Value>>();
        fixture_->execution(analyst).postToBackground([pending, call = std::move(call)] {
            call([pending](Base::Result<Value> answer) { pending->keep(std::move(answer)); });
            pending->setReturned();
        });
        return pending;
    }

    template <typename Value>
    Base::Result<Value> wait(const Call<Value>& call) {
        runUntil([&] { return call->isDone(); });
        return call->answer();
    }

    Call<std::string> startCreateSession(std::size_t analyst, const std::string& videoId = video) {
        return start<std::string>(analyst, [=, this](auto completion) {
            service(analyst).createTaggingSession(team, videoId, "user", completion);
        });
    }

    Call<Ids> startCreate(std::size_t analyst, const std::string& session, const Timeline& timeline,
                          std::vector<Instance> instances) {
        const auto list = std::make_shared<const std::vector<Instance>>(std::move(instances));
        return start<Ids>(analyst, [=, this](auto completion) {
            service(analyst).createMoments(team, video, session, timeline->uniqueId(), list, completion);
        });
    }

    Call<bool> startUpdate(std::size_t analyst, const std::string& session, std::vector<Instance> instances) {
        const auto list = std::make_shared<const std::vector<Instance>>(std::move(instances));
        return start<bool>(analyst, [=, this](auto completion) {
            service(analyst).updateMoments(team, video, session, timeline(analyst)->uniqueId(), list,
                                           completion);
        });
    }

    Call<bool> startRemove(std::size_t analyst, const std::string& session, Ids ids) {
        return start<bool>(analyst, [=, this](auto completion) {
            service(analyst).removeMoments(team, video, session, timeline(analyst)->uniqueId(), ids,
                                           completion);
        });
    }

    Call<std::string> startSaveRows(std::size_t analyst, const std::string& session) {
        return start<std::string>(analyst, [=, this](auto completion) {
            service(analyst).savePresentationView(team, video, session, timeline(analyst)->uniqueId(), "",
                                                  timeline(analyst)->allRows(), completion);
        });
    }

    Call<Sessions> startFetch(std::size_t analyst, const std::string& videoId = video) {
        const auto pending = std::make_shared<Pending<Sessions>>();
        fixture_->graphQLClient(analyst).fetchTaggingSessions(
            team, videoId, std::nullopt,
            [pending](Base::Result<Sessions> answer) { pending->keep(std::move(answer)); });
        return pending;
    }

    std::string createSession(std::size_t analyst) { return wait(startCreateSession(analyst)).value(); }

    /// Creates moments of the analyst's own timeline and notes their ids on the clips.
    Ids create(std::size_t analyst, const std::string& session, const std::vector<Instance>& instances) {
        const Ids ids = wait(startCreate(analyst, session, timeline(analyst), instances)).value();
        for (std::size_t i = 0; i < std::min(ids.size(), instances.size()); ++i) {
            instances[i]->setExternalId(ids[i]);
        }
        return ids;
    }

    Instance tag(std::size_t analyst, const Clip& clip) { return fixture_->tag(timeline(analyst), clip); }

    /// The moments of the video's primary session, in the order of the fetch.
    std::vector<std::shared_ptr<const RemoteCoding::MomentItem>> fetchMoments(std::size_t analyst) {
        std::vector<std::shared_ptr<const RemoteCoding::MomentItem>> items;
        const Sessions sessions = wait(startFetch(analyst)).value();
        if (!sessions.empty() && sessions.front().moments) {
            for (const auto& moment : *sessions.front().moments) {
                items.push_back(fixture_->syncLibrary(analyst).momentItem(*moment));
            }
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
        const Timeline scratch = fixture_->makeTimeline();
        std::vector<Clip> clips;
        for (const auto& item : fetchMoments(analyst)) {
            clips.push_back(fixture_->clipOf(item->appendToTimeline(scratch)));
        }
        return clips;
    }

private:
    std::unique_ptr<CloudFixture> fixture_;
    std::vector<std::shared_ptr<RemoteCoding::TaggingSessionServiceProtocol>> services_;
};

}  // namespace HostContract
