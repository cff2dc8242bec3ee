#include "Tests/Services/SynchroniserTest.hpp"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

namespace RemoteCoding {

namespace {

const std::vector<ReferenceHost::CodeRecord> noCodes;

std::string clipText(const ReferenceHost::ClipValues& clip, const std::string& momentId) {
    std::ostringstream text;
    text << ' ' << clip.startTime << '-' << clip.endTime << '/' << momentId << clip.notes;
    return text.str();
}

std::string rowText(const std::string& name, Base::Color color, const std::multiset<std::string>& clips) {
    std::ostringstream text;
    text << name << '(' << int{color.red} << ',' << int{color.green} << ',' << int{color.blue} << "):";
    std::ranges::copy(clips, std::ostream_iterator<std::string>(text));
    return text.str() + '\n';
}

}  // namespace

Analyst::Analyst(const std::string& name, ReferenceHost::VirtualTime& time,
                 ReferenceHost::CloudService& cloud, ReferenceHost::Trace& trace)
    : execution(time, name, &trace),
      host(name, execution, cloud, trace),
      timeline(host.openTimeline(name + "'s timeline")) {}

Analyst::~Analyst() {
    if (service) {
        service->cancelSyncing();
    }
    host.stop();
    service.reset();
}

void Analyst::start(std::optional<std::string> taggingSessionId, std::string video) {
    auto& environment = host.environment();
    service = TimelineUploadService::make(environment, timeline->uniqueId(), "team", "user", std::move(video),
                                          std::move(taggingSessionId),
                                          environment.syncLibrary.makeTaggingSessionService(), graphQLClient);
}

void Analyst::holdBackEvents(double seconds) {
    client().setEventFaultPlan([seconds](const ReferenceHost::CloudEvent&) {
        return ReferenceHost::EventFault(false, 0, Base::Seconds(seconds));
    });
}

std::string pictureOf(const ReferenceHost::Timeline& timeline) {
    std::string text;
    const RowList rows = timeline.allRows();
    for (const auto& row : *rows) {
        std::multiset<std::string> clips;
        const InstanceList instances = row->allInstances();
        for (const auto& instance : *instances) {
            clips.insert(clipText(timeline.findInstance(instance->uniqueId())->values(),
                                  instance->externalId().value_or("unsent")));
        }
        text += rowText(row->name(), row->color(), clips);
    }
    return text;
}

std::string pictureOf(const ReferenceHost::TaggingSessionRecord& session) {
    std::string text;
    for (const auto& code : session.presentationView ? *session.presentationView : noCodes) {
        std::multiset<std::string> clips;
        for (const auto& moment : session.moments) {
            if (moment->code == code.name) {
                clips.insert(clipText({moment->start, moment->end, moment->notes}, moment->id));
            }
        }
        text += rowText(code.name, code.color, clips);
    }
    return text;
}

void checkConformance(const ReferenceHost::Trace& trace) {
    std::map<std::string, std::pair<std::string, std::uint64_t>> blocks;  // the open one, and the last one
    for (const auto& entry : trace.entries()) {
        EXPECT_NE(entry.kind, ReferenceHost::TraceKind::wrongThread) << entry;
        auto& [open, last] = blocks[entry.host + std::string(entry.field("timelineId"))];
        const std::string number(entry.field("number"));
        if (entry.kind == ReferenceHost::TraceKind::blockStart) {
            EXPECT_EQ(open, "") << "two blocks at once: " << entry;
            EXPECT_GT(std::stoull(number), last) << "out of order: " << entry;
            open = number;
            last = std::stoull(number);
        } else if (entry.kind == ReferenceHost::TraceKind::blockEnd) {
            EXPECT_EQ(std::exchange(open, ""), number) << entry;
        }
    }
}

Analyst& SynchroniserTest::add(const std::string& name) {
    analysts.push_back(std::make_unique<Analyst>(name, time, cloud, trace));
    return *analysts.back();
}

void SynchroniserTest::startAnn(const Strings& rowNames) {
    add("Ann");
    for (const std::string& name : rowNames) {
        ann().timeline->addRow(name, Base::Color(10, 20, 30));
    }
    ann().start();
    settle();
    trace.clear();
}

void SynchroniserTest::startTwo(const Strings& rowNames) {
    startAnn(rowNames);
    add("Ben").start(sessionId());
    settle();
    trace.clear();
}

void SynchroniserTest::settle() {
    const auto isSettled = [](const auto& analyst) {
        return !analyst->service ||
               (analyst->status().isSettled() && analyst->client().numberOfCallsUnderWay() == 0);
    };
    ASSERT_TRUE(time.runUntil([&] { return std::ranges::all_of(analysts, isSettled); }, Base::Seconds(3600)));
    runFor(5);  // events that are still on their way to the others start work again
}

std::string SynchroniserTest::addRemoteMoment(const std::string& code, double start, double end) {
    const std::string clip = "clip " + std::to_string(cloud.lastSequence(sessionId()));
    const ReferenceHost::MomentDraft draft{clip, {}, code, Base::Color(1, 2, 3), start, end, {}};
    return cloud.createMoments(stranger, videoId, sessionId(), "elsewhere", {draft}).value().front();
}

void SynchroniserTest::retimeRemoteMoment(const std::string& momentId, double start, double end) {
    const ReferenceHost::MomentDraft draft{{}, momentId, {}, {}, start, end, {}};
    EXPECT_TRUE(cloud.updateMoments(stranger, videoId, sessionId(), "elsewhere", {draft}).value());
}

void SynchroniserTest::expectAllEqual() const {
    for (const auto& analyst : analysts) {
        EXPECT_EQ(pictureOf(*analyst->timeline), pictureOf(remote())) << analyst->host.name();
    }
}

Strings SynchroniserTest::log(const Analyst& analyst) const {
    Strings lines;
    for (const auto& entry : trace.entries()) {
        if (entry.host == analyst.host.name() && entry.kind.starts_with("log.")) {
            lines.push_back(entry.kind.substr(4) + " " + std::string(entry.field("message")));
            if (entry.kind == ReferenceHost::TraceKind::logError) {
                lines.back().append("|").append(entry.field("detail"));
                lines.back().append("|").append(entry.field("function"));
            }
        }
    }
    return lines;
}

Strings SynchroniserTest::complaints(const Analyst& analyst) const {
    Strings lines = log(analyst);
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("info "); });
    return lines;
}

Strings SynchroniserTest::texts(const Analyst& analyst, std::string_view kind, std::string_view field,
                                std::string_view otherField) const {
    Strings result;
    for (const auto& entry : trace.entries(analyst.host.name(), kind)) {
        if (!entry.field(otherField).empty()) {
            result.emplace_back(entry.field(field));
        }
    }
    return result;
}

}  // namespace RemoteCoding
