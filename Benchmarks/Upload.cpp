// One upload pass: everything new, a tenth changed, one row renamed.

#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/Desk.hpp"

namespace Benchmarks {
namespace {

void retimeRows(Desk& desk, std::int64_t rows) {
    for (std::int64_t row = 0; row < rows; ++row) {
        desk.retimeRow(row);
    }
}

using Clips = std::vector<std::shared_ptr<ReferenceHost::TimelineInstance>>;

Trial uploadOf(const std::shared_ptr<Desk>& desk, std::int64_t clips) {
    return Trial(clips, [desk] { desk->upload(); }, executionOf(desk));
}

Trial newClips(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->join(makeSession({}));
    desk->upload();
    desk->addClips(clips);
    return uploadOf(desk, clips);
}

/// The host says what has changed, row after row, and takes the moments' ids.
Trial newClipsFloor(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->addRows();
    const auto before = desk->timeline().modifyCount();
    desk->addClips(clips);
    desk->makeRoom(clips);
    Clips live;
    const auto rows = desk->timeline().allRows();
    for (const auto& row : *rows) {
        const auto instances = row->allInstances();
        for (const auto& instance : *instances) {
            live.push_back(desk->timeline().findInstance(instance->uniqueId()));
        }
    }
    return Trial(clips, [desk, before, live] {
        ReferenceHost::UUIDSource ids(17);
        const auto changes = desk->timeline().timelineFromModifyCount(before + 1, false);
        const auto changedRows = changes->allRows();
        auto clip = live.begin();
        for (const auto& row : *changedRows) {
            const auto instances = row->allInstances();
            for (std::size_t index = 0; index < instances->size(); ++index, ++clip) {
                const std::string momentId = ids.makeUUID();
                (*clip)->setExternalId(momentId);
                desk->remember(momentId, (*clip)->uniqueId());
            }
        }
    });
}

constexpr std::int64_t passes = 100;

/// One clip after the other, each in a pass of its own, on a timeline that already holds so many.
Trial singleClipsOn(const std::shared_ptr<Desk>& desk) {
    return Trial(passes, [desk] {
        for (std::int64_t pass = 0; pass < passes; ++pass) {
            desk->addClips(1);
            desk->upload();
        }
    });
}

Trial singleClips(std::int64_t clips) { return singleClipsOn(joinedDesk(firstMoments(clips))); }

/// A case of its own: the jobs are so small that looking at the clock takes a part of their time.
Trial jobsOfSingleClips(std::int64_t clips) {
    auto desk = joinedDesk(firstMoments(clips));
    Trial trial = singleClipsOn(desk);
    trial.watched = executionOf(desk);
    return trial;
}

Trial singleClipsFloor(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->appendAll(firstMoments(clips));
    desk->makeRoom(clips);
    return Trial(passes, [desk] {
        ReferenceHost::UUIDSource ids(17);
        for (std::int64_t pass = 0; pass < passes; ++pass) {
            const auto before = desk->timeline().modifyCount();
            desk->addClips(1);
            const auto changes = desk->timeline().timelineFromModifyCount(before + 1, false);
            const auto clip = changes->allRows()->front()->allInstances()->front();
            const std::string momentId = ids.makeUUID();
            desk->timeline().findInstance(clip->uniqueId())->setExternalId(momentId);
            desk->remember(momentId, clip->uniqueId());
        }
    });
}

constexpr std::int64_t retimedRows = rowsOfATimeline / 10;

Trial aTenthUpdated(std::int64_t clips) {
    auto desk = joinedDesk(firstMoments(clips));
    retimeRows(*desk, retimedRows);
    return uploadOf(desk, clips / 10);
}

/// Nothing is edited: the host says what has changed.
Trial changedClipsFloor(const std::shared_ptr<Desk>& desk, std::int64_t before, std::int64_t clips) {
    desk->makeRoom(clips);
    return Trial(clips, [desk, before] {
        const auto changes = desk->timeline().timelineFromModifyCount(before + 1, false);
        const auto rows = changes->allRows();
        for (const auto& row : *rows) {
            const auto instances = row->allInstances();
            for (const auto& instance : *instances) {
                desk->remember(*instance->externalId(), instance->uniqueId());
            }
        }
    });
}

Trial aTenthUpdatedFloor(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->appendAll(firstMoments(clips));
    const auto before = desk->timeline().modifyCount();
    retimeRows(*desk, retimedRows);
    return changedClipsFloor(desk, before, clips / 10);
}

/// All on one row.
Moments onOneRow(std::int64_t clips) {
    Moments moments;
    const Moments& many = firstMoments(clips * rowsOfATimeline);
    for (std::size_t index = 0; index < many.size(); index += rowsOfATimeline) {
        moments.push_back(many[index]);
    }
    return moments;
}

Trial rowRenamed(std::int64_t clips) {
    auto desk = joinedDesk(onOneRow(clips));
    desk->timeline().renameRow(desk->timeline().rowAt(0)->uniqueId(), "Another name");
    return uploadOf(desk, clips);
}

/// The row has changed and its clips have not: they are read from the whole timeline.
Trial rowRenamedFloor(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->appendAll(onOneRow(clips));
    const auto before = desk->timeline().modifyCount();
    desk->timeline().renameRow(desk->timeline().rowAt(0)->uniqueId(), "Another name");
    desk->makeRoom(clips);
    return Trial(clips, [desk, before] {
        const auto changes = desk->timeline().timelineFromModifyCount(before + 1, false);
        const auto instances = desk->timeline().rowAt(0)->allInstances();
        for (const auto& instance : *instances) {
            desk->remember(*instance->externalId(), instance->uniqueId());
        }
    });
}

Trial rowUpdated(std::int64_t clips) {
    auto desk = joinedDesk(onOneRow(clips));
    desk->retimeRow(0);
    return uploadOf(desk, clips);
}

Trial rowUpdatedFloor(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->appendAll(onOneRow(clips));
    const auto before = desk->timeline().modifyCount();
    desk->retimeRow(0);
    return changedClipsFloor(desk, before, clips);
}

const CaseGroup group({
    {"upload, all new/component", usualSizes(), newClips, Counted::wholeAndJobs},
    {"upload, all new/floor", usualSizes(), newClipsFloor},
    {"upload, a tenth updated/component", usualSizes(), aTenthUpdated, Counted::wholeAndJobs},
    {"upload, a tenth updated/floor", usualSizes(), aTenthUpdatedFloor},
    {"upload, one row renamed/component", {1'000, 10'000}, rowRenamed, Counted::wholeAndJobs},
    {"upload, one row renamed/floor", {1'000, 10'000}, rowRenamedFloor},
    {"upload, one row updated/component", {1'000, 10'000}, rowUpdated, Counted::wholeAndJobs},
    {"upload, one row updated/floor", {1'000, 10'000}, rowUpdatedFloor},
    {"upload, one new/component", usualSizes(), singleClips},
    {"upload, one new, as jobs/component", usualSizes(), jobsOfSingleClips, Counted::growingJobs},
    {"upload, one new/floor", usualSizes(), singleClipsFloor},
});

}  // namespace
}  // namespace Benchmarks
