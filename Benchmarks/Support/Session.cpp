#include "Benchmarks/Support/Session.hpp"

#include "ReferenceHost/Timeline/Timeline.hpp"
#include "ReferenceHost/UUIDSource.hpp"

#include <limits>
#include <map>
#include <optional>

namespace Benchmarks {

using RemoteCoding::InstanceList;
using RemoteCoding::PresentationViewItem;
using RemoteCoding::RowList;

namespace {

constexpr double clipLength = 5;  // seconds
constexpr auto highest = std::numeric_limits<std::uint64_t>::max();
constexpr ReferenceHost::EditNumbers everyEdit{highest, highest, highest};

/// Takes every write and answers at once.
class PlainService final : public RemoteCoding::TaggingSessionServiceProtocol {
public:
    void createTaggingSession(const std::string&, const std::string&, const std::string&,
                              Base::Completion<std::string> completion) override {
        completion(std::string(sessionId));
    }
    void savePresentationView(const std::string&, const std::string&, const std::string&, const std::string&,
                              const std::string&, RowList,
                              Base::Completion<std::string> completion) override {
        completion(std::string());
    }
    void createMoments(const std::string&, const std::string&, const std::string&, const std::string&,
                       InstanceList instances,
                       Base::Completion<std::vector<std::string>> completion) override {
        std::vector<std::string> ids;
        ids.reserve(instances->size());
        for (std::size_t index = 0; index < instances->size(); ++index) {
            ids.push_back(ids_.makeUUID());
        }
        completion(std::move(ids));
    }
    void updateMoments(const std::string&, const std::string&, const std::string&, const std::string&,
                       InstanceList, Base::Completion<bool> completion) override {
        completion(true);
    }
    void removeMoments(const std::string&, const std::string&, const std::string&, const std::string&,
                       std::vector<std::string>, Base::Completion<bool> completion) override {
        completion(true);
    }

private:
    ReferenceHost::UUIDSource ids_{17};
};

}  // namespace

std::string rowName(std::int64_t row) { return "Code " + std::to_string(row); }

Base::Color rowColor(std::int64_t row) { return Base::Color(static_cast<std::uint8_t>(row), 20, 30); }

std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>
PlainMoment::appendToTimeline(const std::shared_ptr<RemoteCoding::TimelineProtocol>& timeline) const {
    return static_cast<ReferenceHost::Timeline&>(*timeline).appendRemoteInstance(
        code_, identifier_, start_, start_ + clipLength, notes_, Base::Color(1, 2, 3));
}

std::shared_ptr<RemoteCoding::TimelineInstanceProtocol>
PlainMoment::updateOnTimeline(const std::shared_ptr<RemoteCoding::TimelineProtocol>& timeline,
                              const std::string& instanceId, const std::string& rowId) const {
    return static_cast<ReferenceHost::Timeline&>(*timeline).updateRemoteInstance(
        instanceId, rowId, ReferenceHost::ClipValues(start_, start_ + clipLength, notes_), everyEdit);
}

std::shared_ptr<PlainMoment> PlainMoment::shifted() const {
    return std::make_shared<PlainMoment>(identifier_, code_, start_ + 1, label_, notes_);
}

std::shared_ptr<RemoteCoding::TaggingSessionServiceProtocol> PlainLibrary::makeTaggingSessionService() {
    return std::make_shared<PlainService>();
}

std::shared_ptr<const RemoteCoding::MomentItem>
PlainLibrary::momentItem(const RemoteCoding::Moment& moment) const {
    return static_cast<const FetchedMoment&>(moment).item();
}

std::optional<PresentationViewItem>
PlainLibrary::presentationViewItem(const RemoteCoding::PresentationView& presentationView) const {
    return static_cast<const FetchedView&>(presentationView).item();
}

Moments makeMoments(std::int64_t first, std::int64_t count) {
    Moments moments;
    moments.reserve(static_cast<std::size_t>(count));
    for (std::int64_t number = first; number < first + count; ++number) {
        ReferenceHost::UUIDSource ids(static_cast<std::uint64_t>(number) + 1);
        moments.push_back(std::make_shared<PlainMoment>(ids.makeUUID(), rowName(number % rowsOfATimeline),
                                                        static_cast<double>(number), "attack",
                                                        "left wing, second half"));
    }
    return moments;
}

const Moments& firstMoments(std::int64_t count) {
    static std::map<std::int64_t, Moments> made;
    const auto [place, isNew] = made.try_emplace(count);
    if (isNew) {
        place->second = makeMoments(0, count);
    }
    return place->second;
}

PresentationViewItem makeView(std::int64_t rows) {
    std::vector<PresentationViewItem> views;
    views.reserve(static_cast<std::size_t>(rows));
    for (std::int64_t row = 0; row < rows; ++row) {
        views.emplace_back(rowName(row), rowColor(row));
    }
    return PresentationViewItem("", Base::Color(), std::move(views));
}

RemoteCoding::TaggingSessionItem makeSession(const Moments& moments) {
    std::vector<std::shared_ptr<const RemoteCoding::Moment>> fetched;
    fetched.reserve(moments.size());
    for (const auto& moment : moments) {
        fetched.push_back(std::make_shared<FetchedMoment>(moment));
    }
    std::vector<std::shared_ptr<const RemoteCoding::PresentationView>> views{
        std::make_shared<FetchedView>(makeView(rowsOfATimeline))};
    return RemoteCoding::TaggingSessionItem(sessionId, std::move(fetched), std::move(views));
}

}  // namespace Benchmarks
