// One upload pass: everything new, a tenth changed, one row renamed.

#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/Desk.hpp"

namespace Benchmarks {
namespace {

Trial uploadOf(const std::shared_ptr<Desk>& desk, std::int64_t clips) {
    desk->execution().beginTiming();
    return Trial(clips, [desk] { desk->upload(); }, [desk] { return desk->execution().mainJobs(); });
}

Trial newClips(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->join(makeSession({}));
    desk->upload();
    desk->addClips(clips);
    return uploadOf(desk, clips);
}

/// What the host itself has to do for an upload: it says what has changed, and takes the moments' ids. Saying what has changed is
/// its share of the first job.
Trial newClipsFloor(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->addRows();
    const auto before = desk->timeline().modifyCount();
    desk->addClips(clips);
    auto firstJob = std::make_shared<double>(0);
    const auto run = [desk, before, firstJob] {
        ReferenceHost::UUIDSource ids(17);
        const double start = cpuSeconds();
        const auto changes = desk->timeline().timelineFromModifyCount(before + 1, false);
        const auto rows = changes->allRows();
        *firstJob = cpuSeconds() - start;
        for (const auto& row : *rows) {
            const auto instances = row->allInstances();
            for (const auto& instance : *instances) {
                const std::string momentId = ids.makeUUID();
                desk->timeline().findInstance(instance->uniqueId())->setExternalId(momentId);
                desk->table().try_emplace(momentId, instance->uniqueId());
            }
        }
    };
    return Trial(clips, run, [firstJob] { return std::vector<double>{*firstJob}; });
}

/// One clip after the other, each in a pass of its own, on a timeline that already holds so many.
Trial singleClips(std::int64_t clips) {
    constexpr std::int64_t passes = 100;
    auto desk = std::make_shared<Desk>();
    desk->join(makeSession(firstMoments(clips)));
    desk->upload();
    return Trial(passes, [desk] {
        for (std::int64_t pass = 0; pass < passes; ++pass) {
            desk->addClips(1);
            desk->upload();
        }
    });
}

Trial singleClipsFloor(std::int64_t clips) {
    constexpr std::int64_t passes = 100;
    auto desk = std::make_shared<Desk>();
    desk->appendDirectly(firstMoments(clips));
    return Trial(passes, [desk] {
        ReferenceHost::UUIDSource ids(17);
        for (std::int64_t pass = 0; pass < passes; ++pass) {
            const auto before = desk->timeline().modifyCount();
            desk->addClips(1);
            const auto changes = desk->timeline().timelineFromModifyCount(before + 1, false);
            const auto clip = changes->allRows()->front()->allInstances()->front();
            const std::string momentId = ids.makeUUID();
            desk->timeline().findInstance(clip->uniqueId())->setExternalId(momentId);
            desk->table().try_emplace(momentId, clip->uniqueId());
        }
    });
}

std::shared_ptr<Desk> joined(const Moments& moments) {
    auto desk = std::make_shared<Desk>();
    desk->join(makeSession(moments));
    desk->upload();
    return desk;
}

constexpr std::int64_t retimedRows = rowsOfATimeline / 10;

Trial aTenthUpdated(std::int64_t clips) {
    auto desk = joined(firstMoments(clips));
    for (std::int64_t row = 0; row < retimedRows; ++row) {
        desk->retimeRow(row);
    }
    return uploadOf(desk, clips / 10);
}

Trial aTenthUpdatedFloor(std::int64_t clips) {
    auto desk = std::make_shared<Desk>();
    desk->appendDirectly(firstMoments(clips));
    const auto before = desk->timeline().modifyCount();
    for (std::int64_t row = 0; row < retimedRows; ++row) {
        desk->retimeRow(row);
    }
    return Trial(clips / 10, [desk, before] {
        std::unordered_map<std::string, std::string> sent;
        const auto changes = desk->timeline().timelineFromModifyCount(before + 1, false);
        const auto rows = changes->allRows();
        for (const auto& row : *rows) {
            const auto instances = row->allInstances();
            for (const auto& instance : *instances) {
                sent.try_emplace(*instance->externalId(), instance->uniqueId());
            }
        }
    });
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
    auto desk = joined(onOneRow(clips));
    desk->timeline().renameRow(desk->timeline().rowAt(0)->uniqueId(), "Another name");
    return uploadOf(desk, clips);
}

Trial rowUpdated(std::int64_t clips) {
    auto desk = joined(onOneRow(clips));
    desk->retimeRow(0);
    return uploadOf(desk, clips);
}

const CaseGroup group({
    {"upload, all new/component", usualSizes(), newClips},
    {"upload, all new/floor", usualSizes(), newClipsFloor},
    {"upload, one new/component", usualSizes(), singleClips},
    {"upload, one new/floor", usualSizes(), singleClipsFloor},
    {"upload, a tenth updated/component", usualSizes(), aTenthUpdated},
    {"upload, a tenth updated/floor", usualSizes(), aTenthUpdatedFloor},
    {"upload, one row renamed/component", {1'000, 10'000}, rowRenamed},
    {"upload, one row updated/component", {1'000, 10'000}, rowUpdated},
});

}  // namespace
}  // namespace Benchmarks
