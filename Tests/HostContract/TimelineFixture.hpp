#pragma once

#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

/// What the suites for timelines and coding targets need of a host. A case is a plain function on a fixture,
/// so that a host can also run it on a timeline that breaks a rule on purpose and see it fail.
namespace HostContract {

using RemoteCoding::TimelineInstanceProtocol;
using RemoteCoding::TimelineProtocol;
using RemoteCoding::TimelineRowProtocol;

/// One host with one open, empty timeline that can be edited. Made, used and destroyed on the test's thread,
/// which counts as the main thread. The editing operations do what a user of the host does.
class TimelineFixture {
public:
    virtual ~TimelineFixture() = default;

    [[nodiscard]] virtual std::shared_ptr<TimelineProtocol> timeline() = 0;

    /// How often `timelineDidAnyChange` was posted about the timeline.
    [[nodiscard]] virtual std::size_t announcements() const = 0;

    /// Runs what is posted to the main thread.
    virtual void runMainJobs() = 0;

    virtual std::string addRow(const std::string& name, Base::Color color) = 0;  ///< at the end; gives the id
    virtual void renameRow(const std::string& rowId, const std::string& name) = 0;
    virtual void recolorRow(const std::string& rowId, Base::Color color) = 0;
    virtual void moveRow(const std::string& rowId, std::int64_t to) = 0;
    virtual void removeRow(const std::string& rowId) = 0;
    virtual std::string addInstance(const std::string& rowId, double startTime, double endTime) = 0;
    virtual void retimeInstance(const std::string& instanceId, double startTime, double endTime) = 0;
    virtual void removeInstance(const std::string& instanceId) = 0;

    // Undo of a removal. False from a host that cannot undo: what is said of undone deletions is then not
    // tested.
    virtual bool restoreRow(const std::string& rowId) = 0;
    virtual bool restoreInstance(const std::string& instanceId) = 0;

    /// Makes the timeline one that cannot be edited now. False from a host that has no such state.
    virtual bool lockTimeline() = 0;

    /// Called inside each announcement, after it has been counted.
    std::function<void()> onAnnouncement;
};

struct TimelineHost {
    TimelineHost(std::string name_, std::function<std::unique_ptr<TimelineFixture>()> make_)
        : name(std::move(name_)), make(std::move(make_)) {}
    friend void PrintTo(const TimelineHost& host, std::ostream* out) { *out << host.name; }

    std::string name;
    std::function<std::unique_ptr<TimelineFixture>()> make;
};

struct TimelineCase {
    TimelineCase(std::string name_, void (*run_)(TimelineFixture&)) : name(std::move(name_)), run(run_) {}
    friend void PrintTo(const TimelineCase& timelineCase, std::ostream* out) { *out << timelineCase.name; }

    std::string name;  ///< the rule that it checks
    void (*run)(TimelineFixture&);
};

using HostAndCase = std::tuple<TimelineHost, TimelineCase>;

inline std::string nameOfHostAndCase(const testing::TestParamInfo<HostAndCase>& info) {
    return std::get<0>(info.param).name + "_" + std::get<1>(info.param).name;
}

inline constexpr Base::Color red{200, 0, 0};
inline constexpr Base::Color green{0, 200, 0};

template <typename List>
std::vector<std::string> idsOf(const List& list) {
    std::vector<std::string> ids;
    for (const auto& object : *list) {
        ids.push_back(object->uniqueId());
    }
    return ids;
}

inline std::vector<std::string> rowIds(TimelineFixture& host) { return idsOf(host.timeline()->allRows()); }

inline std::shared_ptr<TimelineRowProtocol> rowWithId(const TimelineProtocol& timeline,
                                                      const std::string& rowId) {
    const auto rows = timeline.allRows();
    for (const auto& row : *rows) {
        if (row->uniqueId() == rowId) {
            return row;
        }
    }
    return nullptr;
}

/// Null also when there is no such row.
inline std::shared_ptr<TimelineInstanceProtocol>
instanceWithId(const TimelineProtocol& timeline, const std::string& rowId, const std::string& instanceId) {
    const auto row = rowWithId(timeline, rowId);
    if (row) {
        const auto instances = row->allInstances();
        for (const auto& instance : *instances) {
            if (instance->uniqueId() == instanceId) {
                return instance;
            }
        }
    }
    return nullptr;
}

inline std::shared_ptr<TimelineProtocol> changesSince(TimelineFixture& host, std::int64_t count) {
    return host.timeline()->timelineFromModifyCount(count + 1, false);
}

/// Whether an edit was a change: the count went up, and an announcement came after it had.
class ChangeWatch {
public:
    explicit ChangeWatch(TimelineFixture& host)
        : host_(host), count_(host.timeline()->modifyCount()), announcements_(host.announcements()) {}

    [[nodiscard]] std::int64_t countBefore() const { return count_; }

    void expectChange(const char* edit) const {
        EXPECT_GT(host_.timeline()->modifyCount(), count_) << edit << " raises the count";
        EXPECT_GT(host_.announcements(), announcements_) << edit << " is announced";
    }
    void expectNoChange(const char* edit) const {
        EXPECT_EQ(host_.timeline()->modifyCount(), count_) << edit << " is no change";
        EXPECT_EQ(host_.announcements(), announcements_) << edit << " is not announced";
        const auto changes = changesSince(host_, count_);
        EXPECT_TRUE(changes->allRows()->empty()) << edit << " stamps nothing";
    }

private:
    TimelineFixture& host_;
    std::int64_t count_;
    std::size_t announcements_;
};

}  // namespace HostContract
