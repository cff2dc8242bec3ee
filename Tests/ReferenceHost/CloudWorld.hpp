#pragma once

#include "ReferenceHost/Cloud/CloudClient.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/Trace.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

/// One cloud on virtual time with a few analysts, each with a timeline, and one tagging session of the video "video".
class CloudWorld {
public:
    using Ids = std::vector<std::string>;
    using Sessions = std::vector<RemoteCoding::TaggingSessionItem>;
    template <typename Value>
    using Answer = std::shared_ptr<std::optional<Base::Result<Value>>>;

    struct Subscriber {
        std::vector<std::string> events;  ///< type and identifiers
        int errors = 0;
        std::shared_ptr<RemoteCoding::SubscriptionHandle> handle;
    };

    struct Analyst {
        Analyst(CloudWorld& world, const std::string& name, std::uint64_t seed)
            : execution(world.time, name, &world.trace) {
            CloudClientSettings settings;
            settings.seed = seed;
            client = std::make_unique<CloudClient>(world.service, execution, world.trace, name, settings);
            service = client->syncLibrary().makeTaggingSessionService();
            Timeline::Options options;
            options.uniqueId = "timeline of " + name;
            options.makeId = [name, last = std::make_shared<int>(0)] {
                return name + "-" + std::to_string(++*last);
            };
            timeline = Timeline::make(std::move(options));
        }

        std::shared_ptr<TimelineInstance> tag(const std::string& code, double start, double end) {
            const auto row = timeline->findRowNamed(code);
            return timeline->addInstance((row ? row : timeline->addRow(code, Base::Color()))->uniqueId(),
                                         start, end);
        }

        VirtualExecution execution;
        std::unique_ptr<CloudClient> client;
        std::shared_ptr<RemoteCoding::TaggingSessionServiceProtocol> service;
        std::shared_ptr<Timeline> timeline;
    };

    explicit CloudWorld(std::uint64_t seed = 1) : time(seed) {
        for (const char* name : {"Ann", "Ben", "Cleo"}) {
            analysts.push_back(std::make_unique<Analyst>(*this, name, seed + analysts.size()));
        }
        session = service.createTaggingSession("team", "video", "Ann");
    }

    Analyst& ann() { return *analysts[0]; }
    Analyst& ben() { return *analysts[1]; }

    Answer<Ids> create(Analyst& analyst,
                       std::vector<std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>> instances) {
        const auto answer = std::make_shared<std::optional<Base::Result<Ids>>>();
        analyst.service->createMoments(
            "team", "video", session, analyst.timeline->uniqueId(),
            std::make_shared<const std::vector<std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>>>(
                std::move(instances)),
            keep(answer));
        return answer;
    }

    Answer<bool> update(Analyst& analyst,
                        std::vector<std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>> instances) {
        const auto answer = std::make_shared<std::optional<Base::Result<bool>>>();
        analyst.service->updateMoments(
            "team", "video", session, analyst.timeline->uniqueId(),
            std::make_shared<const std::vector<std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>>>(
                std::move(instances)),
            keep(answer));
        return answer;
    }

    Answer<bool> remove(Analyst& analyst, Ids ids) {
        const auto answer = std::make_shared<std::optional<Base::Result<bool>>>();
        analyst.service->removeMoments("team", "video", session, analyst.timeline->uniqueId(), std::move(ids),
                                       keep(answer));
        return answer;
    }

    Answer<std::string> saveRows(Analyst& analyst) {
        const auto answer = std::make_shared<std::optional<Base::Result<std::string>>>();
        analyst.service->savePresentationView("team", "video", session, analyst.timeline->uniqueId(), "",
                                              analyst.timeline->allRows(), keep(answer));
        return answer;
    }

    Answer<Sessions> fetch(Analyst& analyst) {
        const auto answer = std::make_shared<std::optional<Base::Result<Sessions>>>();
        analyst.client->graphQLClient()->fetchTaggingSessions("team", "video", std::nullopt, keep(answer));
        return answer;
    }

    std::shared_ptr<Subscriber> subscribe(Analyst& analyst) {
        auto subscriber = std::make_shared<Subscriber>();
        subscriber->handle = analyst.client->graphQLClient()->subscribeToTaggingSessionChanges(
            session, analyst.timeline->uniqueId(),
            [told = subscriber.get()](RemoteCoding::TaggingSessionChangeType type,
                                      const RemoteCoding::ChangedTaggingSession& change) {
                std::string text = nameOf(type);
                for (std::size_t i = 0; change.moments && i < change.moments->size(); ++i) {
                    text += " " + (*change.moments)[i]->identifier();
                }
                told->events.push_back(text);
            },
            [told = subscriber.get()](const std::exception_ptr&) { ++told->errors; });
        subscribers_.push_back(subscriber);
        return subscriber;
    }

    void wait(double seconds = 60) { time.runFor(Base::Seconds(seconds)); }
    [[nodiscard]] std::size_t momentCount() const { return service.snapshot(session)->moments.size(); }

    VirtualTime time;
    VirtualScheduler scheduler{time};
    Trace trace{[this] { return time.now(); }};
    CloudService service{scheduler};
    std::vector<std::unique_ptr<Analyst>> analysts;
    std::string session;

private:
    template <typename Value>
    static Base::Completion<Value> keep(const Answer<Value>& answer) {
        return [answer](Base::Result<Value> result) {
            EXPECT_FALSE(answer->has_value()) << "An answer comes once.";
            answer->emplace(std::move(result));
        };
    }

    std::vector<std::shared_ptr<Subscriber>> subscribers_;
};

}  // namespace ReferenceHost
