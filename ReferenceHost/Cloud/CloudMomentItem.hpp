#pragma once

#include "Components/RemoteCoding/HostInterfaces/TaggingSessionModel.hpp"
#include "ReferenceHost/Cloud/CloudRules.hpp"
#include "ReferenceHost/Cloud/RemoteRecords.hpp"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

class Timeline;
class TimelineInstance;

/// The raw moment as it is fetched.
class FetchedMoment final : public RemoteCoding::Moment {
public:
    explicit FetchedMoment(MomentPointer moment) : moment_(std::move(moment)) {}

    [[nodiscard]] const MomentPointer& moment() const { return moment_; }

private:
    MomentPointer moment_;
};

/// The raw presentation view as it is fetched.
class FetchedPresentationView final : public RemoteCoding::PresentationView {
public:
    explicit FetchedPresentationView(CodeList codes) : codes_(std::move(codes)) {}

    [[nodiscard]] const CodeList& codes() const { return codes_; }

private:
    CodeList codes_;
};

/// One moment, as this library brings it onto a `ReferenceHost::Timeline`.
///
/// A moment that an instance's `externalId` names is appended as that instance, which is brought up to date. A moment that
/// the timeline itself has sent without hearing of it is appended as that instance; what its user has set since then stays.
/// When the user has deleted it meanwhile, it stays deleted, and its deletion counts once more, so that it is sent. A moment whose
/// instance stands for a later one already (news that comes late, of before a deletion and its undoing) has no place. On any
/// other kind of timeline a moment has no place: it is appended as an instance without a row, and updates find nothing.
class CloudMomentItem final : public RemoteCoding::MomentItem {
public:
    CloudMomentItem(MomentPointer moment, CloudRules rules) : moment_(std::move(moment)), rules_(rules) {}

    [[nodiscard]] const std::string& identifier() const override { return moment_->id; }
    [[nodiscard]] const std::string& code() const override { return moment_->code; }
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>
    appendToTimeline(const std::shared_ptr<RemoteCoding::TimelineProtocol>& timeline) const override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>
    updateOnTimeline(const std::shared_ptr<RemoteCoding::TimelineProtocol>& timeline,
                     const std::string& instanceId, const std::string& rowId) const override;

    [[nodiscard]] const MomentRecord& record() const { return *moment_; }

private:
    /// Up to which edits of its user the moment goes.
    [[nodiscard]] EditNumbers takenOf(const Timeline& timeline) const;

    /// `how`: in a word, for the trace.
    [[nodiscard]] std::shared_ptr<TimelineInstance> placeOn(Timeline& timeline, const char*& how) const;

    MomentPointer moment_;
    CloudRules rules_;
};

[[nodiscard]] RemoteCoding::PresentationViewItem presentationViewItemOf(const std::vector<CodeRecord>& codes);

}  // namespace ReferenceHost
