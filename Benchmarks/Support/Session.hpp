#pragma once

#include "Components/RemoteCoding/HostInterfaces/SyncLibraryProtocol.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Benchmarks {

inline constexpr std::int64_t rowsOfATimeline = 40;

[[nodiscard]] std::string rowName(std::int64_t row);
[[nodiscard]] Base::Color rowColor(std::int64_t row);

/// A moment that does to a timeline just what has to be done: one edit, and nothing around it.
class PlainMoment final : public RemoteCoding::MomentItem {
public:
    PlainMoment(std::string identifier, std::string code, double start, std::string label, std::string notes)
        : identifier_(std::move(identifier)),
          code_(std::move(code)),
          start_(start),
          label_(std::move(label)),
          notes_(std::move(notes)) {}

    [[nodiscard]] const std::string& identifier() const override { return identifier_; }
    [[nodiscard]] const std::string& code() const override { return code_; }
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>
    appendToTimeline(const std::shared_ptr<RemoteCoding::TimelineProtocol>& timeline) const override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>
    updateOnTimeline(const std::shared_ptr<RemoteCoding::TimelineProtocol>& timeline,
                     const std::string& instanceId, const std::string& rowId) const override;

    /// The same moment at another time.
    [[nodiscard]] std::shared_ptr<PlainMoment> shifted() const;

private:
    std::string identifier_;
    std::string code_;
    double start_;
    std::string label_;  ///< the reference host's clips have none
    std::string notes_;
};

using Moments = std::vector<std::shared_ptr<const RemoteCoding::MomentItem>>;

/// The moment as it is fetched.
class FetchedMoment final : public RemoteCoding::Moment {
public:
    explicit FetchedMoment(std::shared_ptr<const RemoteCoding::MomentItem> item) : item_(std::move(item)) {}
    [[nodiscard]] const std::shared_ptr<const RemoteCoding::MomentItem>& item() const { return item_; }

private:
    std::shared_ptr<const RemoteCoding::MomentItem> item_;
};

class FetchedView final : public RemoteCoding::PresentationView {
public:
    explicit FetchedView(RemoteCoding::PresentationViewItem item) : item_(std::move(item)) {}
    [[nodiscard]] const RemoteCoding::PresentationViewItem& item() const { return item_; }

private:
    RemoteCoding::PresentationViewItem item_;
};

/// Unwraps the two above.
class PlainLibrary final : public RemoteCoding::SyncLibraryProtocol {
public:
    /// Its services answer each write inside the call.
    [[nodiscard]] std::shared_ptr<RemoteCoding::TaggingSessionServiceProtocol>
    makeTaggingSessionService() override;
    [[nodiscard]] std::shared_ptr<const RemoteCoding::MomentItem>
    momentItem(const RemoteCoding::Moment& moment) const override;
    [[nodiscard]] std::optional<RemoteCoding::PresentationViewItem>
    presentationViewItem(const RemoteCoding::PresentationView& presentationView) const override;
};

/// Moments with ids of 36 characters, one on each row in turn, from the number `first` on. Other numbers make other moments.
[[nodiscard]] Moments makeMoments(std::int64_t first, std::int64_t count);

/// The moments from 0 on; made once for each count.
[[nodiscard]] const Moments& firstMoments(std::int64_t count);

/// So many rows, named and coloured as on the timelines here.
[[nodiscard]] RemoteCoding::PresentationViewItem makeView(std::int64_t rows);

[[nodiscard]] RemoteCoding::TaggingSessionItem makeSession(const Moments& moments);

/// The one tagging session.
inline constexpr const char* sessionId = "3f0c8b52-66a1-4e0e-9c1d-7c2f6b1f9a10";

}  // namespace Benchmarks
