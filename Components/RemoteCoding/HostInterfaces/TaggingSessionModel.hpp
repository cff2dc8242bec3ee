#pragma once

#include "Base/Color.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostObject.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The remote model, as the cloud service's client library shows it: a tagging session holds moments (one for each
/// tagged clip) and presentation views (the ordered, coloured list of codes).
namespace RemoteCoding {

/// What travels inside a moment besides its code and its times. Opaque: the component never reads it.
class REMOTE_CODING_EXPORT Attribute : public HostObject {};

/// The raw moment inside a `TaggingSessionItem`. Opaque: only `SyncLibraryProtocol::momentItem` looks into it.
class REMOTE_CODING_EXPORT Moment : public HostObject {};

/// One moment. Immutable; copied freely as `std::shared_ptr<const MomentItem>`.
class REMOTE_CODING_EXPORT MomentItem : public HostObject {
public:
    /// Any thread.
    [[nodiscard]] virtual const std::string& identifier() const = 0;

    /// Any thread. The name of the row that the moment belongs to.
    [[nodiscard]] virtual const std::string& code() const = 0;

    /// Main thread. Adds the clip to the timeline, on the row named by the code, with its `externalId` set; makes the row
    /// when it is missing. A moment that this very timeline has sent, or whose identifier is a clip's `externalId`, is not
    /// added twice: the clip that it stands for is given back, deleted or not, and when that stands for a later moment by now, an instance without a row. The row of the result may
    /// also be absent when the library could not place it. Never null.
    [[nodiscard]] virtual std::shared_ptr<TimelineInstanceProtocol>
    appendToTimeline(const std::shared_ptr<TimelineProtocol>& timeline) const = 0;

    /// Main thread. Brings the instance up to the moment's state, but for what its user has set since, and gives it: the clip
    /// of the timeline itself, with its row as it is. Null when the timeline has no such instance on that row. Takes time
    /// independent of the number of instances.
    [[nodiscard]] virtual std::shared_ptr<TimelineInstanceProtocol>
    updateOnTimeline(const std::shared_ptr<TimelineProtocol>& timeline, const std::string& instanceId,
                     const std::string& rowId) const = 0;
};

/// The raw presentation view inside a `TaggingSessionItem`. Opaque: only `SyncLibraryProtocol::presentationViewItem`
/// looks into it.
class REMOTE_CODING_EXPORT PresentationView : public HostObject {};

/// One node of a presentation view. The top node stands for the whole code list, each of its sub-views for one row, in
/// the order of the rows.
class PresentationViewItem {
public:
    PresentationViewItem(std::string name_, Base::Color color,
                         std::vector<PresentationViewItem> subViews_ = {})
        : name(std::move(name_)), subViews(std::move(subViews_)), color_(color) {}

    [[nodiscard]] Base::Color color() const { return color_; }

    std::string name;
    std::vector<PresentationViewItem> subViews;

private:
    Base::Color color_;
};

/// One tagging session as fetched. Null pointers in the lists are skipped.
struct TaggingSessionItem {
    TaggingSessionItem() = default;
    TaggingSessionItem(std::optional<std::string> identifier_,
                       std::optional<std::vector<std::shared_ptr<const Moment>>> moments_,
                       std::optional<std::vector<std::shared_ptr<const PresentationView>>> presentationViews_)
        : identifier(std::move(identifier_)),
          moments(std::move(moments_)),
          presentationViews(std::move(presentationViews_)) {}

    std::optional<std::string> identifier;
    std::optional<std::vector<std::shared_ptr<const Moment>>> moments;
    std::optional<std::vector<std::shared_ptr<const PresentationView>>>
        presentationViews;  ///< only the first is used
};

/// The kind of one subscription event.
enum class TaggingSessionChangeType : std::uint8_t {
    unknown = 0,
    momentsAdded = 1,
    momentsUpdated = 2,
    momentsDeleted = 3,  ///< only the identifiers of the moments count
    presentationViewUpdated = 4,
};

/// The payload of one subscription event. Null pointers in the list are skipped.
struct ChangedTaggingSession {
    ChangedTaggingSession() = default;
    ChangedTaggingSession(std::optional<std::vector<std::shared_ptr<const MomentItem>>> moments_,
                          std::optional<PresentationViewItem> presentationView_)
        : moments(std::move(moments_)), presentationView(std::move(presentationView_)) {}

    std::optional<std::vector<std::shared_ptr<const MomentItem>>> moments;
    std::optional<PresentationViewItem> presentationView;
};

}  // namespace RemoteCoding
