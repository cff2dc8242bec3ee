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
    service = TimelineUploadService::make(
        environment, timeline->uniqueId(), "team", "user", "video", std::move(taggingSessionId),
        environment.syncLibrary.makeTaggingSessionService(), environment.graphQLClient);
}

std::shared_ptr<ReferenceHost::TimelineInstance> Analyst::tag(const std::string& rowName, double start,
                                                              double end) {
    return timeline->addInstance(row(rowName)->uniqueId(), start, end);
}

SynchroniserTest::SynchroniserTest() = default;

SynchroniserTest::~SynchroniserTest() {
    std::map<std::string, std::string> openBlocks;
    for (const auto& entry : trace.entries()) {
        EXPECT_NE(entry.kind, ReferenceHost::TraceKind::wrongThread)
            << entry.field("function") << " at " << entry.host;
        const std::string owner = entry.host + std::string(entry.field("timelineId"));
        if (entry.kind == ReferenceHost::TraceKind::blockStart) {
            EXPECT_EQ(openBlocks[owner], "") << "two blocks at once at " << entry.host;
            openBlocks[owner] = entry.field("number");
        } else if (entry.kind == ReferenceHost::TraceKind::blockEnd) {
            EXPECT_EQ(std::exchange(openBlocks[owner], ""), entry.field("number"));
        }
    }
}

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

std::string SynchroniserTest::sessionId() const { return cloud.primarySessionOf(videoId).value_or("none"); }

ReferenceHost::TaggingSessionRecord SynchroniserTest::remote() const {
    return cloud.snapshot(sessionId()).value();
}

std::string SynchroniserTest::picture(const ReferenceHost::Timeline& timeline) {
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

std::string SynchroniserTest::remotePicture() const {
    const auto record = remote();
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

void SynchroniserTest::expectAllEqual() const {
    for (const auto& analyst : analysts) {
        EXPECT_EQ(picture(*analyst->timeline), remotePicture()) << analyst->host.name();
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

}  // namespace RemoteCoding
