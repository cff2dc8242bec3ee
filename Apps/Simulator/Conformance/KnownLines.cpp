#include "Apps/Simulator/Conformance/KnownLines.hpp"

#include <algorithm>
#include <array>

namespace Simulator::Conformance {

namespace {

using Ending = KnownLine::Ending;
using Reason = KnownLine::Reason;

// Those that are frequent stand first.
constexpr std::array lines{
    KnownLine{Kind::info, "Received timeline update. ChangeType=", Ending::follows},
    KnownLine{Kind::info, "Uploading all local timeline updates"},
    KnownLine{Kind::info,
              "Uploading local timeline updates before applying timeline update from subscription"},
    KnownLine{Kind::info, "Updating Tevu presentation view."},
    KnownLine{Kind::info, "Updating Tevu moments. MomentIds=[", Ending::follows},
    KnownLine{Kind::info, "Deleting Tevu moments. MomentIds=[", Ending::follows},
    KnownLine{Kind::info, "Moving row from position ", Ending::follows},
    KnownLine{Kind::info, "Adding a new row from presentation view update"},
    KnownLine{Kind::info, "Updated row color from presentation view update"},
    KnownLine{Kind::info, "Removing empty row not found in presentation view update"},
    KnownLine{Kind::info, "Moment has a different code, renaming row"},
    KnownLine{Kind::info, "Syncing remote tagging session to the local timeline"},
    KnownLine{Kind::info, "Subscribing to tagging session updates. TeamId=", Ending::follows},
    KnownLine{Kind::info, "Attempting to reconnect to the remote tagging session. Attempt=", Ending::follows},

    KnownLine{Kind::warning, "Some upload operations are unsuccessful", Ending::none, Reason::failure},
    KnownLine{Kind::warning, "Unable to update moments. Error=", Ending::follows, Reason::failure},
    KnownLine{Kind::warning, "Unable to upload new moments. Error=", Ending::follows, Reason::failure},
    KnownLine{Kind::warning, "Unable to delete moments. Error=", Ending::follows, Reason::failure},
    KnownLine{Kind::warning, "Unable to upload presentation view. Error=", Ending::follows, Reason::failure},
    KnownLine{Kind::warning, "Updating moments was unsuccessful.", Ending::none, Reason::failure},
    KnownLine{Kind::warning, "Deleting moments was unsuccessful.", Ending::none, Reason::failure},
    KnownLine{Kind::warning, "Unable to get remote tagging session. Error=", Ending::follows,
              Reason::failure},
    KnownLine{Kind::warning, "Failed to fetch video status. Error=", Ending::follows, Reason::failure},
    KnownLine{Kind::warning, "Error while listening for tagging session changes. Error=", Ending::follows},
    KnownLine{Kind::warning, "Disconnected from tagging session updates. Attempting to reconnect."},
    KnownLine{Kind::warning, "No moments found for update to tagging session moments."},
    KnownLine{Kind::warning, "No presentation view found for update to tagging session presentation view."},
    KnownLine{Kind::warning,
              "Local timeline updates are not uploaded: the session ended before it was received."},

    KnownLine{Kind::error, "Unable to create tagging session", Ending::none, Reason::failure},
    KnownLine{Kind::error, "Expected a tagging session on Tevu, but none found.", Ending::none,
              Reason::failure},
    KnownLine{Kind::error, "TaggingSessionId does not match the primary tagging session for the Tevu video.",
              Ending::none, Reason::failure},
    KnownLine{Kind::error, "No TaggingSessionId found, cannot subscribe to updates"},
    KnownLine{Kind::error, "Unable to get timeline"},
    KnownLine{Kind::error, "Unable to find the timeline"},
    KnownLine{Kind::error, "Hit maximum reconnection attempts"},
    KnownLine{Kind::error, "Unable to wait between tagging session sync attempts"},
    KnownLine{Kind::error, "Instance for moment is on the wrong row"},
    KnownLine{Kind::error, "No row found"},
    KnownLine{Kind::error, "Unknown change type for tagging session update"},
    KnownLine{Kind::error, "No uploaded moment found to delete"},
    KnownLine{Kind::error, "Trying to cache an instance without a row."},
    KnownLine{Kind::error, "Unable to find all required fields on instance"},
    KnownLine{Kind::error, "Unable to find all required fields on row"},
    KnownLine{Kind::error, "Failed to open a remote coding session."},
    KnownLine{Kind::error, "Tried to end live streaming session when session does not exist"},
    KnownLine{Kind::error, "Fragment Download Paused with Error"},
    KnownLine{Kind::error, "Fragment Download Error"},
    KnownLine{Kind::error, "The video has an error status"},
    KnownLine{Kind::error, "Unable to show remote coding finish session alert"},
    KnownLine{Kind::error, "The host failed unexpectedly"},

    KnownLine{Kind::usage, "SessionStarted"},
    KnownLine{Kind::usage, "SessionJoined"},
    KnownLine{Kind::usage, "SessionEnded"}};

}  // namespace

const KnownLine* knownLine(Kind kind, std::string_view message) {
    const auto* const found = std::ranges::find_if(lines, [&](const KnownLine& line) {
        return line.kind == kind && message.starts_with(line.text) &&
               (line.ending == Ending::follows || message.size() == line.text.size());
    });
    return found == lines.end() ? nullptr : found;
}

}  // namespace Simulator::Conformance
