#include "Tests/Services/SynchroniserTest.hpp"

#include <algorithm>
#include <map>
#include <sstream>

namespace RemoteCoding {

namespace {

std::string textOf(Base::Color color) {
    std::ostringstream text;
    text << int{color.red} << ',' << int{color.green} << ',' << int{color.blue};
    return text.str();
}

ReferenceHost::HostOptions signedIn(ReferenceHost::HostOptions options, const std::string& name) {
    options.userId = "user " + name;
    return options;
}

}  // namespace

Analyst::Analyst(std::string name, ReferenceHost::VirtualTime& time, ReferenceHost::CloudService& cloud,
                 ReferenceHost::Trace& trace, ReferenceHost::HostOptions options)
    : execution(time, name, &trace),
      host(name, execution, cloud, trace, signedIn(std::move(options), name)),
      timeline(host.openTimeline(name + "'s timeline")) {}

Analyst::~Analyst() {
    if (service) {
        service->cancelSyncing();
    }
    host.stop();
    service.reset();
}

void Analyst::start(std::optional<std::string> taggingSessionId) {
    auto& environment = host.environment();
    service = TimelineUploadService::make(environment, timeline->uniqueId(), "team", "user", "video",
                                          std::move(taggingSessionId),
                                          environment.syncLibrary.makeTaggingSessionService(),
                                          std::make_shared<HookedClient>(hooks, environment.graphQLClient));
}

std::shared_ptr<ReferenceHost::TimelineInstance> Analyst::tag(const std::string& rowName, double start,
                                                              double end) {
    return timeline->addInstance(row(rowName)->uniqueId(), start, end);
}

std::string pictureOf(const ReferenceHost::Timeline& timeline) {
    std::ostringstream text;
    for (const auto& row : *timeline.allRows()) {
        text << row->name() << '(' << textOf(row->color()) << "):";
        std::vector<std::string> clips;
        for (const auto& instance : *row->allInstances()) {
            const auto clip = timeline.findInstance(instance->uniqueId())->values();
            std::ostringstream line;
            line << ' ' << clip.startTime << '-' << clip.endTime << '/'
                 << instance->externalId().value_or("unsent");
            clips.push_back(line.str());
        }
        std::ranges::sort(clips);
        for (const auto& clip : clips) {
            text << clip;
        }
        text << '\n';
    }
    return text.str();
}

std::string pictureOf(const ReferenceHost::TaggingSessionRecord& record) {
    std::ostringstream text;
    if (!record.presentationView) {
        return "no rows\n";
    }
    for (const auto& code : *record.presentationView) {
        text << code.name << '(' << textOf(code.color) << "):";
        std::vector<std::string> clips;
        for (const auto& moment : record.moments) {
            if (moment->code == code.name) {
                std::ostringstream line;
                line << ' ' << moment->start << '-' << moment->end << '/' << moment->id;
                clips.push_back(line.str());
            }
        }
        std::ranges::sort(clips);
        for (const auto& clip : clips) {
            text << clip;
        }
        text << '\n';
    }
    return text.str();
}

void checkConformance(const ReferenceHost::Trace& trace) {
    struct Blocks {
        std::string open;
        std::uint64_t last = 0;
    };
    std::map<std::string, Blocks> blocksOf;
    for (const auto& entry : trace.entries()) {
        EXPECT_NE(entry.kind, ReferenceHost::TraceKind::wrongThread)
            << entry.field("function") << " at " << entry.host;
        Blocks& blocks = blocksOf[entry.host + std::string(entry.field("timelineId"))];
        const std::string number(entry.field("number"));
        if (entry.kind == ReferenceHost::TraceKind::blockStart) {
            EXPECT_EQ(blocks.open, "") << "two blocks at once at " << entry.host;
            blocks.open = number;
            EXPECT_GT(std::stoull(number), blocks.last) << "out of order at " << entry.host;
            blocks.last = std::stoull(number);
        } else if (entry.kind == ReferenceHost::TraceKind::blockEnd) {
            EXPECT_EQ(std::exchange(blocks.open, ""), number);
        }
    }
}

SynchroniserTest::SynchroniserTest() = default;

SynchroniserTest::~SynchroniserTest() { checkConformance(trace); }

Analyst& SynchroniserTest::add(const std::string& name, ReferenceHost::HostOptions options) {
    analysts.push_back(std::make_unique<Analyst>(name, time, cloud, trace, std::move(options)));
    return *analysts.back();
}

void SynchroniserTest::startTwo(const std::vector<std::string>& rowNames) {
    add("Ann");
    for (const std::string& name : rowNames) {
        ann().timeline->addRow(name, Base::Color(10, 20, 30));
    }
    ann().start();
    settle();
    add("Ben");
    ben().start(sessionId());
    settle();
}

void SynchroniserTest::settle() {
    const bool settled = time.runUntil(
        [this] {
            return std::ranges::all_of(analysts, [](const auto& analyst) {
                return !analyst->service || (analyst->service->status().isSettled() &&
                                             analyst->host.cloudClient().numberOfCallsUnderWay() == 0);
            });
        },
        Base::Seconds(3600));
    ASSERT_TRUE(settled);
    // Events that are still on their way to the others start work again.
    time.runFor(Base::Seconds(5));
}

void SynchroniserTest::inBackground(Analyst& analyst, const std::function<void()>& work) {
    bool done = false;
    analyst.execution.postToBackground([&] {
        work();
        done = true;
    });
    ASSERT_TRUE(time.runUntil([&] { return done; }, Base::Seconds(1)));
}

void SynchroniserTest::holdBackEvents(Analyst& analyst, double seconds) {
    analyst.host.cloudClient().setEventFaultPlan([seconds](const ReferenceHost::CloudEvent&) {
        return ReferenceHost::EventFault(false, 0, Base::Seconds(seconds));
    });
}

void SynchroniserTest::deliver(Analyst& analyst, TaggingSessionChangeType type,
                               TaggingSessionMoments moments) {
    ChangedTaggingSession changed;
    changed.moments = std::move(moments);
    analyst.service->handleTaggingSessionUpdate(type, changed);
}

void SynchroniserTest::deliver(Analyst& analyst, const std::vector<PresentationViewItem>& views) {
    ChangedTaggingSession changed;
    changed.presentationView = PresentationViewItem("", Base::Color(), views);
    analyst.service->handleTaggingSessionUpdate(TaggingSessionChangeType::presentationViewUpdated, changed);
}

std::string SynchroniserTest::addRemoteMoment(const std::string& code, double start, double end) {
    ReferenceHost::MomentDraft draft;
    draft.instanceId = "clip " + std::to_string(cloud.lastSequence(sessionId()));
    draft.code = code;
    draft.codeColor = Base::Color(1, 2, 3);
    draft.start = start;
    draft.end = end;
    return cloud.createMoments(stranger, videoId, sessionId(), "elsewhere", {draft}).value().front();
}

std::string SynchroniserTest::sessionId() const { return cloud.primarySessionOf(videoId).value_or("none"); }

ReferenceHost::TaggingSessionRecord SynchroniserTest::remote() const {
    return cloud.snapshot(sessionId()).value();
}

void SynchroniserTest::expectAllEqual() const {
    for (const auto& analyst : analysts) {
        EXPECT_EQ(pictureOf(*analyst->timeline), remotePicture()) << analyst->host.name();
    }
}

std::vector<std::string> SynchroniserTest::log(const Analyst& analyst) const {
    std::vector<std::string> lines;
    for (const auto& entry : trace.entries()) {
        if (entry.host != analyst.host.name() || !entry.kind.starts_with("log.")) {
            continue;
        }
        std::string line = entry.kind.substr(4);
        line += ' ';
        line += entry.field("message");
        if (entry.kind == ReferenceHost::TraceKind::logError) {
            line += "|" + std::string(entry.field("detail")) + "|" + std::string(entry.field("function"));
        }
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> SynchroniserTest::complaints(const Analyst& analyst) const {
    std::vector<std::string> lines = log(analyst);
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("info "); });
    return lines;
}

bool SynchroniserTest::logHas(const Analyst& analyst, const std::string& line) const {
    return logCount(analyst, line) > 0;
}

long SynchroniserTest::logCount(const Analyst& analyst, const std::string& line) const {
    return std::ranges::count(log(analyst), line);
}

std::vector<std::string> SynchroniserTest::cloudCalls(const Analyst& analyst) const {
    std::vector<std::string> calls;
    for (const auto& entry : trace.entries(analyst.host.name(), ReferenceHost::TraceKind::call)) {
        for (const auto operation :
             {ReferenceHost::CloudOperation::fetchTaggingSessions, ReferenceHost::CloudOperation::subscribe,
              ReferenceHost::CloudOperation::createTaggingSession,
              ReferenceHost::CloudOperation::savePresentationView,
              ReferenceHost::CloudOperation::createMoments, ReferenceHost::CloudOperation::updateMoments,
              ReferenceHost::CloudOperation::removeMoments}) {
            if (entry.field("name") == ReferenceHost::nameOf(operation)) {
                calls.emplace_back(entry.field("name"));
            }
        }
    }
    return calls;
}

std::vector<std::string> SynchroniserTest::blocks(const Analyst& analyst) const {
    std::vector<std::string> kinds;
    for (const auto& entry : trace.entries(analyst.host.name(), ReferenceHost::TraceKind::blockStart)) {
        kinds.emplace_back(entry.field("kind"));
    }
    return kinds;
}

}  // namespace RemoteCoding
