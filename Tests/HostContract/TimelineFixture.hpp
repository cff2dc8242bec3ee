#pragma once

#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"
#include "Tests/HostContract/NamedHost.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

/// What the suites for timelines and coding targets need of a host. A case is a function on a fixture, so that a
/// host can also run it on a timeline that breaks a rule on purpose and see it fail.
namespace HostContract {

using RemoteCoding::TimelineProtocol;
using RemoteCoding::TimelineRowProtocol;

/// One host with one open, empty timeline that can be edited. Made, used and destroyed on the test's thread,
/// which counts as the main thread. The editing operations do what a user of the host does.
class TimelineFixture {
public:
    virtual ~TimelineFixture() = default;

    [[nodiscard]] virtual std::shared_ptr<TimelineProtocol> timeline() = 0;

    /// Runs what is posted to the main thread.
    virtual void runMainJobs() = 0;

    virtual std::string
    addRow(const std::string& name,
           Base::Color color) = 0;  ///< at the end; gives the id, or nothing when it was refused
    virtual void renameRow(const std::string& rowId, const std::string& name) = 0;
    virtual void recolorRow(const std::string& rowId, Base::Color color) = 0;
    virtual void moveRow(const std::string& rowId, std::int64_t to) = 0;
    virtual void removeRow(const std::string& rowId) = 0;
    virtual std::string addInstance(const std::string& rowId, double startTime, double endTime) = 0;
    virtual void retimeInstance(const std::string& instanceId, double startTime, double endTime) = 0;
    virtual void removeInstance(const std::string& instanceId) = 0;

    /// Undo of a removal. False from a host that cannot undo: what is said of undone deletions is then not tested.
    virtual bool restoreRow(const std::string& rowId) = 0;
    virtual bool restoreInstance(const std::string& instanceId) = 0;

    /// Called inside each `timelineDidAnyChange` about the timeline.
    std::function<void()> onAnnouncement;
};

using TimelineHost = NamedHost<TimelineFixture>;

/// A rule and its check. Each is an object in a header, and listed from there on.
struct TimelineCase {
    TimelineCase(const char* name_, void (*run_)(TimelineFixture&)) : name(name_), run(run_) {
        all().push_back(this);
    }
    static std::vector<const TimelineCase*>& all() {
        static std::vector<const TimelineCase*> cases;
        return cases;
    }

    const char* name;
    void (*run)(TimelineFixture&);
};

/// Each case on a fresh host.
class TimelineContract : public testing::TestWithParam<std::tuple<TimelineHost, const TimelineCase*>> {};

inline std::string nameOfHostAndCase(const testing::TestParamInfo<TimelineContract::ParamType>& info) {
    return std::get<0>(info.param).name + "_" + std::get<1>(info.param)->name;
}

using Ids = std::vector<std::string>;
inline constexpr Base::Color red{200, 0, 0};
inline constexpr Base::Color green{0, 200, 0};

template <typename List>
Ids idsOf(const List& list) {
    Ids ids;
    for (const auto& object : *list) {
        ids.push_back(object->uniqueId());
    }
    return ids;
}

inline Ids rowIds(TimelineFixture& host) { return idsOf(host.timeline()->allRows()); }

template <typename List>
auto withId(const List& list, const std::string& id) {
    const auto found = std::ranges::find_if(*list, [&](const auto& item) { return item->uniqueId() == id; });
    return found == list->end() ? nullptr : *found;
}

inline auto rowWithId(const TimelineProtocol& timeline, const std::string& rowId) {
    return withId(timeline.allRows(), rowId);
}

/// None when there is no such row.
inline Ids clipsOf(const TimelineProtocol& timeline, const std::string& rowId) {
    const auto row = rowWithId(timeline, rowId);
    return row ? idsOf(row->allInstances()) : Ids();
}

inline auto instanceWithId(const TimelineProtocol& timeline, const std::string& row, const std::string& id) {
    return withId(rowWithId(timeline, row)->allInstances(), id);
}

inline std::shared_ptr<TimelineProtocol> changesSince(TimelineFixture& host, std::int64_t count) {
    return host.timeline()->timelineFromModifyCount(count + 1, false);
}

/// The announcements that an edit makes, each of a count above the one before.
template <typename Edit>
int announcementsOf(TimelineFixture& host, const Edit& edit) {
    int announcements = 0;
    auto count = host.timeline()->modifyCount();
    host.onAnnouncement = [&] {
        ++announcements;
        EXPECT_GT(host.timeline()->modifyCount(), count) << "announced before it was complete";
        count = host.timeline()->modifyCount();
    };
    edit();
    host.onAnnouncement = nullptr;
    return announcements;
}

/// Gives what changed.
template <typename Edit>
std::shared_ptr<TimelineProtocol> expectChange(TimelineFixture& host, const char* name, const Edit& edit) {
    const auto count = host.timeline()->modifyCount();
    EXPECT_GT(announcementsOf(host, edit), 0) << name << " is announced";
    EXPECT_GT(host.timeline()->modifyCount(), count) << name << " raises the count";
    return changesSince(host, count);
}

template <typename Edit>
void expectNoChange(TimelineFixture& host, const char* name, const Edit& edit) {
    const auto count = host.timeline()->modifyCount();
    EXPECT_EQ(announcementsOf(host, edit), 0) << name << " is not announced";
    EXPECT_EQ(host.timeline()->modifyCount(), count) << name << " is no change";
    EXPECT_TRUE(changesSince(host, count)->allRows()->empty()) << name << " stamps nothing";
}

}  // namespace HostContract
