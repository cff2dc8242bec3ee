#include "Apps/Simulator/Conformance/LogCheck.hpp"

#include "Apps/Simulator/Conformance/Ids.hpp"
#include "Apps/Simulator/Conformance/KnownLines.hpp"

#include <algorithm>
#include <array>
#include <string>

namespace Simulator::Conformance {

namespace {

constexpr std::string_view someFailed = "Some upload operations are unsuccessful";

struct FailureLine {
    Operation operation;
    std::string_view beginning;
    std::string_view end;
};

// What a call's error is followed by.
constexpr std::array failureLines{
    FailureLine{Operation::update, "Unable to update moments. Error=", ""},
    FailureLine{Operation::create, "Unable to upload new moments. Error=", "."},
    FailureLine{Operation::remove, "Unable to delete moments. Error=", "."},
    FailureLine{Operation::save, "Unable to upload presentation view. Error=", ""},
    FailureLine{Operation::fetch, "Unable to get remote tagging session. Error=", ""},
    FailureLine{Operation::getVideo, "Failed to fetch video status. Error=", ""},
};

}  // namespace

void LogCheck::see(const Entry& entry) {
    switch (entry.kind) {
    case Kind::info:
    case Kind::warning:
    case Kind::error:
        readLine(entry);
        break;
    case Kind::usage:
        readLine(entry);
        readEnd(entry);
        break;
    case Kind::answer:
        if (answersCall(entry)) {
            readAnswer(entry);
        }
        break;
    case Kind::wrongThread:
        report_.add("wrongThread", entry,
                    std::string(entry.field("function")) + " was called on the wrong thread");
        break;
    case Kind::observerFailed:
        report_.add("observerFailed", entry,
                    "an observer of " + std::string(entry.field("name")) +
                        " has thrown: " + std::string(entry.field("error")));
        break;
    default:
        break;
    }
}

void LogCheck::readLine(const Entry& entry) {
    const KnownLine* const line = knownLine(entry.kind, entry.message());
    if (line == nullptr) {
        report_.add("knownLine", entry, "the system has no such line: " + std::string(entry.message()));
    } else if (line->reason == KnownLine::Reason::failure && !wasExpected(entry)) {
        report_.add("lineOfFailure", entry, "nothing has failed: " + std::string(entry.message()));
    } else if (entry.message() == "The host failed unexpectedly") {
        report_.add("unexpectedFailure", entry,
                    std::string(entry.field("detail")) + " in " + std::string(entry.field("function")));
    }
}

/// Whether a failure calls for this line; it does so once.
bool LogCheck::wasExpected(const Entry& entry) {
    auto& all = expected_[entry.host];
    const std::string_view message = entry.message();
    const auto fits = [&](const Expected& line) {
        return message.size() == line.beginning.size() + line.error.size() + line.end.size() &&
               message.starts_with(line.beginning) && message.ends_with(line.end) &&
               message.substr(line.beginning.size(), line.error.size()) == line.error;
    };
    auto found =
        std::ranges::find_if(all, [&](const Expected& line) { return line.isCertain && fits(line); });
    if (found == all.end()) {
        found = std::ranges::find_if(all, fits);
    }
    if (found == all.end()) {
        return false;
    }
    all.erase(found);
    return true;
}

void LogCheck::readAnswer(const Entry& entry) {
    auto& all = expected_[entry.host];
    const Operation operation = entry.call->operation;
    const std::string_view error = entry.field("error");
    const auto expect = [&](std::string_view beginning, std::string_view end = {}) {
        all.push_back(Expected{entry.synchroniser, entry.call, beginning, error, end});
    };
    if (!error.empty()) {
        const auto* const line = std::ranges::find(failureLines, operation, &FailureLine::operation);
        const bool isOfCancelled =
            operation == Operation::fetch && entry.synchroniser != nullptr && entry.synchroniser->isCancelled;
        // A fetch does not name its timeline: it may be of the synchroniser that took this one's place there.
        if (line != failureLines.end() && (!isOfCancelled || entry.synchroniser->sharesTimeline)) {
            expect(line->beginning, line->end);
            // Others may ask for a video, too.
            all.back().isCertain = operation != Operation::getVideo && !isOfCancelled;
        }
        if (isStep(operation)) {
            all.push_back(Expected{entry.synchroniser, entry.call, someFailed, {}, {}});
        }
        if (operation == Operation::createSession) {
            all.push_back(
                Expected{entry.synchroniser, entry.call, "Unable to create tagging session", {}, {}});
        }
    } else if (entry.field("answer") == "false") {
        expect(operation == Operation::update ? "Updating moments was unsuccessful."
                                              : "Deleting moments was unsuccessful.");
    } else if (operation == Operation::fetch && entry.synchroniser != nullptr &&
               !entry.synchroniser->isCancelled) {
        const std::string_view sessionId = entry.synchroniser->stay.sessionId;
        const Ids found(entry.field("ids"));
        if (found.begin() == found.end()) {
            expect("Expected a tagging session on Tevu, but none found.");
        } else if (!sessionId.empty() && *found.begin() != sessionId) {
            expect("TaggingSessionId does not match the primary tagging session for the Tevu video.");
        }
    }
}

/// What a fetch has brought is of no interest once the session has ended.
void LogCheck::readEnd(const Entry& entry) {
    if (entry.synchroniser != nullptr) {
        std::erase_if(expected_[entry.host], [&](const Expected& line) {
            return line.synchroniser == entry.synchroniser && line.call->operation == Operation::fetch;
        });
    }
}

void LogCheck::settled(const Entry& entry) {
    for (const auto& [host, lines] : expected_) {
        for (const Expected& line : lines) {
            if (line.isCertain) {
                report_.add("lineOfFailure", entry,
                            std::string(host->name) + "'s log does not tell: " + std::string(line.beginning) +
                                std::string(line.error) + std::string(line.end));
            }
        }
    }
}

}  // namespace Simulator::Conformance
