#include "Apps/Simulator/Coverage/LineRows.hpp"

#include <algorithm>
#include <array>

namespace Simulator {

namespace {

using Conformance::Kind;

struct Line {
    Kind kind;
    std::string_view beginning;
    std::string_view name;
};

constexpr std::array lines{
    // Sessions
    Line{Kind::error, "Failed to open a remote coding session.", "a live share that cannot be opened"},
    Line{Kind::error, "Tried to end live streaming session when session does not exist",
         "the end of a session that there is not"},
    Line{Kind::error, "Unable to show remote coding finish session alert",
         "the question whether to end a session that there is not"},
    Line{Kind::warning, "Local timeline updates are not uploaded: the session ended before it was received.",
         "edits of a session that ended before it was received"},

    // Uploads
    Line{Kind::error, "Unable to create tagging session", "a tagging session that cannot be created"},
    Line{Kind::warning, "Unable to update moments. Error=", "updates that fail"},
    Line{Kind::warning, "Unable to upload new moments. Error=", "creations that fail"},
    Line{Kind::warning, "Unable to delete moments. Error=", "removals that fail"},
    Line{Kind::warning, "Unable to upload presentation view. Error=", "a list of rows that cannot be saved"},
    Line{Kind::warning, "Some upload operations are unsuccessful", "an upload that fails"},
    Line{Kind::warning, "Updating moments was unsuccessful.", "updates that are answered false"},
    Line{Kind::warning, "Deleting moments was unsuccessful.", "removals that are answered false"},
    Line{Kind::error, "Trying to cache an instance without a row.", "a created clip that knows no row"},
    Line{Kind::error, "Unable to find all required fields on instance", "a clip that cannot be recorded"},
    Line{Kind::error, "No uploaded moment found to delete", "a removed moment that is recorded no more"},

    // Remote changes
    Line{Kind::error, "Unable to find the timeline", "a change for a timeline that is closed"},
    Line{Kind::warning, "No moments found for update to tagging session moments.",
         "a change of moments that holds none"},
    Line{Kind::warning, "No presentation view found for update to tagging session presentation view.",
         "a change of the rows that holds none"},
    Line{Kind::error, "Unknown change type for tagging session update", "a change of an unknown kind"},
    Line{Kind::info, "Uploading local timeline updates before applying timeline update from subscription",
         "a change that meets unsent edits"},
    Line{Kind::error, "No row found", "a moment that is placed on no row"},
    Line{Kind::error, "Instance for moment is on the wrong row", "a moment on the wrong row"},
    Line{Kind::info, "Moment has a different code, renaming row", "a changed code that renames a row"},

    // Subscriptions
    Line{Kind::error, "No TaggingSessionId found, cannot subscribe to updates",
         "a subscription without a tagging session"},
    Line{Kind::warning, "Disconnected from tagging session updates. Attempting to reconnect.",
         "a subscription that fails"},
    Line{Kind::error, "Hit maximum reconnection attempts", "attempts to reconnect that are given up"},
    Line{Kind::error, "Unable to wait between tagging session sync attempts",
         "a pause between attempts that the host cancels"},

    // Pulls
    Line{Kind::error, "Unable to get timeline", "a pull for a timeline that is closed"},

    // The stream
    Line{Kind::error, "Fragment Download Paused with Error", "a player's pause with an error"},
    Line{Kind::error, "Fragment Download Error", "a download that fails"},
    Line{Kind::warning, "Failed to fetch video status. Error=", "a video's status that cannot be had"},
    Line{Kind::error, "The video has an error status", "a video with an error status"},
};

}  // namespace

std::span<const std::string_view> LineRows::names() {
    static const auto names = [] {
        std::array<std::string_view, lines.size()> all;
        std::ranges::transform(lines, all.begin(), &Line::name);
        return all;
    }();
    return names;
}

void LineRows::see(const Conformance::Entry& entry) {
    if (entry.kind != Kind::info && entry.kind != Kind::warning && entry.kind != Kind::error) {
        return;
    }
    const auto* const line = std::ranges::find_if(lines, [&](const Line& one) {
        return one.kind == entry.kind && entry.message().starts_with(one.beginning);
    });
    if (line != lines.end()) {
        rows_.meet(line->name);
    }
}

}  // namespace Simulator
