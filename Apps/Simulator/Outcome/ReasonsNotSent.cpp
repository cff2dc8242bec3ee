// Why an edit did not reach the cloud.

#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>
#include <charconv>

namespace Simulator {

namespace {

std::int64_t numberOf(std::string_view text) {
    std::int64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// The moment that the clip stood for; empty: none, or the edit is not of this clip.
std::string_view momentOf(const UserEdit& edit, std::string_view clip) {
    const auto place = std::ranges::find(edit.clips, clip);
    return place != edit.clips.end() ? edit.moments[static_cast<std::size_t>(place - edit.clips.begin())]
                                     : std::string_view();
}

/// The cloud has refused the write of this moment.
bool wasRefused(const History& history, const UserEdit& edit, std::string_view moment) {
    const std::string_view operation = takesAway(edit) ? "removeMoments" : "updateMoments";
    return std::ranges::any_of(history.stays[edit.stay].calls, [&](std::size_t number) {
        const Call& call = history.calls[number];
        return call.at > edit.at && call.isFalse && call.name == operation &&
               std::ranges::find(call.ids, moment) != call.ids.end();
    });
}

/// The synchroniser's count had gone past the edit for changes of others, before this entry.
bool wasCountedAsApplied(const History& history, const StayHistory& stay, const UserEdit& edit,
                         std::size_t before) {
    return std::ranges::any_of(stay.counts, [&](std::size_t at) {
        const auto& entry = history.entry(at);
        return at > edit.at && at < before && entry.field("reason") == "applied" &&
               numberOf(entry.field("old")) < edit.count && numberOf(entry.field("new")) >= edit.count;
    });
}

/// The timeline was published as another session's before the first upload of the edit that succeeded.
bool wasPublishedAnew(const History& history, const UserEdit& edit,
                      const std::vector<const Upload*>& uploads) {
    const bool wasSent = std::ranges::any_of(uploads, [](const Upload* upload) { return upload->succeeded; });
    return wasSent && std::ranges::any_of(history.stays, [&](const StayHistory& next) {
               return next.stay->timelineId == edit.timelineId && next.stay->isHost &&
                      next.stay->from > edit.at && std::ranges::all_of(uploads, [&](const Upload* upload) {
                          return !upload->succeeded || upload->start > next.stay->from;
                      });
           });
}

}  // namespace

Reason whyNotSent(const History& history, const UserEdit& edit, std::string_view clip,
                  std::string_view moment) {
    if (edit.stay == never) {
        return LossClass::outsideSession;
    }
    const StayHistory& stay = history.stays[edit.stay];
    if (stay.session == nullptr) {
        return LossClass::outsideSession;
    }
    if (const std::string_view known = momentOf(edit, clip); !known.empty()) {
        moment = known;  // at that time
    }
    if (!moment.empty() && wasRefused(history, edit, moment)) {
        return LossClass::answeredFalse;
    }
    std::vector<const Upload*> uploads;
    for (const Upload& upload : stay.uploads) {
        if (upload.start > edit.at && upload.covers(edit.count)) {
            uploads.push_back(&upload);
        }
    }
    if (wasPublishedAnew(history, edit, uploads)) {
        return LossClass::left;
    }
    if (std::ranges::any_of(uploads, [](const Upload* upload) { return upload->succeeded; })) {
        return std::nullopt;
    }
    if (uploads.empty() && !stay.stay->isHost && !stay.arrivals.empty() && stay.arrivals.front().isPull &&
        stay.arrivals.front().at > edit.at &&
        wasCountedAsApplied(history, stay, edit, stay.arrivals.front().at + 1)) {
        return LossClass::beforeSession;
    }
    const bool everyUploadFailed = !uploads.empty() && std::ranges::all_of(uploads, [](const Upload* upload) {
        return upload->end != never;
    });
    if (everyUploadFailed && wasCountedAsApplied(history, stay, edit, never)) {
        return LossClass::passedOver;
    }
    if (!stay.stay->lasts || stay.stay->isClosed) {
        return LossClass::left;
    }
    if (everyUploadFailed) {
        return LossClass::waiting;
    }
    return std::nullopt;
}

Reason whyNeverPublished(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    const UserEdit* const edit = lastEditOf(history, stay.stay->timelineId, {loss.clip});
    const bool isOlder = edit == nullptr || edit->at < stay.stay->from;
    // Each of all that the timeline has: nothing counted as sent, or as applied, before it.
    const bool everyUploadFailed =
        !stay.uploads.empty() && std::ranges::all_of(stay.uploads, [](const Upload& upload) {
            return upload.end != never && !upload.succeeded && upload.first == 1;
        });
    return stay.stay->isHost && stay.stay->lasts && !stay.stay->isClosed && isOlder && everyUploadFailed
               ? Reason(LossClass::waiting)
               : std::nullopt;
}

}  // namespace Simulator
