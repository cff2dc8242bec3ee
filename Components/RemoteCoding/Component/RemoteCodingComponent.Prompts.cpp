// What the component asks before it ends a session, and what it tells the user when something stops one.

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"

#include "Base/Await.hpp"
#include "Components/RemoteCoding/Models/MainThreadTask.hpp"
#include "Components/RemoteCoding/Models/RemoteCodingSession.hpp"
#include "Components/RemoteCoding/Resources/LocalizedText.hpp"

#include <utility>

namespace RemoteCoding {

namespace {

constexpr std::string_view endFunction = "promptEndRemoteCodingSession(on:timelineId:)";
constexpr std::string_view exitFunction = "promptExitRemoteCodingSession(on:timelineId:)";
constexpr std::string_view sheetFunction =
    "showFinishSessionAlert(messageText:informativeText:buttonText:alertStyle:window:)";
constexpr std::string_view failedFunction = "showFailedSessionAlert(timelineId:)";
constexpr std::string_view captureFunction = "showCaptureNotStartedAlert()";

/// The response of a prompt's second button. Any other answer, a sheet that could not be shown and one that went with its
/// window leave everything as it is.
constexpr AlertResponse confirmed = alertSecondButton;

/// Without the component: a sheet may stay open for longer than that lives.
Base::Task<AlertResponse> showFinishSessionAlert(HostEnvironment* environment, std::string messageText,
                                                 std::string informativeText, std::string buttonText,
                                                 AlertStyle alertStyle,
                                                 std::shared_ptr<WindowProtocol> window) {
    if (!window) {
        logError(environment->logManager, "Unable to show remote coding finish session alert", "",
                 sheetFunction);
        co_return alertFirstButton;
    }
    std::vector<AlertButton> buttons;
    buttons.emplace_back(localized(*environment, "Cancel", "Cancel button title"));
    buttons.emplace_back(std::move(buttonText), true);
    const Alert alert(std::move(messageText), std::move(informativeText), std::move(buttons), alertStyle);
    Base::CompletionCall<AlertResponse> sheet(
        [environment, alert, window](Base::Completion<AlertResponse> done) {
            guarded(*environment, sheetFunction,
                    [&] { environment->windowing.beginSheet(alert, window, std::move(done)); });
        });
    const Base::Result<AlertResponse> response = co_await sheet;
    co_return response.succeeded() ? response.value() : alertFirstButton;
}

std::shared_ptr<TimelineProtocol> frontTimeline(HostEnvironment& environment, std::string_view function) {
    std::shared_ptr<TimelineProtocol> timeline;
    guarded(environment, function, [&] {
        if (const auto timelines = environment.componentLocator.timelineComponent()) {
            timeline = timelines->frontTimeline();
        }
    });
    return timeline;
}

void stopLiveShare(HostEnvironment& environment, const std::shared_ptr<TimelineProtocol>& timeline,
                   std::string_view function) {
    guarded(environment, function, [&] {
        if (const auto timelines = environment.componentLocator.timelineComponent()) {
            timelines->stopLiveShareWithTimelineId(timeline ? std::optional<std::string>(timeline->uniqueId())
                                                            : std::nullopt);
        }
    });
}

void endCapturing(HostEnvironment& environment, const std::string& timelineId) {
    guarded(environment, endFunction, [&] {
        const auto capture = environment.componentLocator.captureComponent();
        if (!capture || !capture->isCapturing()) {
            return;
        }
        const auto timelines = environment.componentLocator.timelineComponent();
        const auto timeline = timelines ? timelines->capturingTimeline() : nullptr;
        if (timeline && timeline->uniqueId() == timelineId) {
            capture->endCapturing();
        }
    });
}

}  // namespace

/// The question of a prompt and what follows from its answer. Holds the component weakly: it may go while the user
/// thinks.
struct RemoteCodingComponent::Prompt {
    static Base::Task<void> end(HostEnvironment* environment, std::weak_ptr<RemoteCodingComponent> component,
                                std::shared_ptr<WindowProtocol> on, std::string timelineId) {
        if (component.expired()) {
            co_return;
        }
        std::string title = localized(*environment, "Are you sure you want to end the session?",
                                      "Alert title for user trying to end a remote coding session");
        std::string text = endText(*environment, *component.lock(), timelineId);
        std::string button = localized(*environment, "End Session",
                                       "End button for confirming exiting a remote coding session");
        Base::Task<AlertResponse> asking =
            showFinishSessionAlert(environment, std::move(title), std::move(text), std::move(button),
                                   AlertStyle::critical, std::move(on));
        const AlertResponse response = co_await asking;
        const auto self = component.lock();
        if (self && response == confirmed) {
            self->sessionEnded(timelineId);
            endCapturing(*environment, timelineId);
        }
    }

    static Base::Task<void> exit(HostEnvironment* environment, std::weak_ptr<RemoteCodingComponent> component,
                                 std::shared_ptr<WindowProtocol> on, std::string timelineId) {
        if (component.expired()) {
            co_return;
        }
        std::string title = localized(*environment, "Are you sure you want to exit the session?",
                                      "Alert title for user trying to exit a remote coding session");
        std::string text = localized(
            *environment,
            "You’ll no longer be able to view the capture or share data with others in the session. You can "
            "continue to use the timeline after exiting the session.",
            "Alert informative text for user trying to exit a remote coding session");
        std::string button = localized(*environment, "Exit Session",
                                       "Exit button for confirming exiting a remote coding session");
        Base::Task<AlertResponse> asking =
            showFinishSessionAlert(environment, std::move(title), std::move(text), std::move(button),
                                   AlertStyle::warning, std::move(on));
        const AlertResponse response = co_await asking;
        const auto self = component.lock();
        if (self && response == confirmed) {
            const auto timeline = frontTimeline(*environment, exitFunction);
            self->sessionEnded(timelineId);
            stopLiveShare(*environment, timeline, exitFunction);
        }
    }

private:
    static std::string endText(const HostEnvironment& environment, const RemoteCodingComponent& component,
                               const std::string& timelineId) {
        const auto session = component.session(timelineId);
        if (session && session->status == RemoteCodingSessionStatus::streamEnded) {
            return localized(
                environment,
                "Collaborators will no longer be able to share data. You can continue to use the "
                "timeline after ending the session.",
                "Alert informative text for user trying to end a remote coding session");
        }
        return localized(
            environment,
            "Collaborators will no longer have access to the capture or new shared data. You can "
            "continue to use the timeline after ending the session.",
            "Alert informative text for user trying to end a remote coding session with capture "
            "still recording");
    }
};

void RemoteCodingComponent::promptEndRemoteCodingSession(std::shared_ptr<WindowProtocol> on,
                                                         const std::string& timelineId) {
    checkIsMainThread(environment_, endFunction);
    if (!hasActiveSession(timelineId)) {
        sessionEnded(timelineId);
        return;
    }
    startOnMainThread(environment_, endFunction,
                      Prompt::end(&environment_, weak_from_this(), std::move(on), timelineId));
}

void RemoteCodingComponent::promptExitRemoteCodingSession(std::shared_ptr<WindowProtocol> on,
                                                          const std::string& timelineId) {
    checkIsMainThread(environment_, exitFunction);
    if (!hasActiveSession(timelineId)) {
        sessionEnded(timelineId);
        return;
    }
    startOnMainThread(environment_, exitFunction,
                      Prompt::exit(&environment_, weak_from_this(), std::move(on), timelineId));
}

void RemoteCodingComponent::showFailedSessionAlert(const std::string& timelineId) {
    checkIsMainThread(environment_, failedFunction);
    guarded(environment_, failedFunction, [&] {
        const Alert alert(localized(environment_, "Unable to Load Session",
                                    "Alert title for a failed remote coding session"),
                          localized(environment_,
                                    "You can rejoin the session if it is still active or join a new session.",
                                    "Alert informative text for a failed remote coding session"),
                          {AlertButton(localized(environment_, "Quit Session",
                                                 "Quit button for exiting a failed remote coding session"))});
        if (environment_.windowing.runModal(alert) == alertFirstButton) {
            stopLiveShare(environment_, frontTimeline(environment_, failedFunction), failedFunction);
            sessionEnded(timelineId);
        }
    });
}

void RemoteCodingComponent::showCaptureNotStartedAlert() {
    const Alert alert(
        localized(environment_, "Capture Not Started", "Alert title for error adding new timeline"),
        localized(environment_, "To create a live streaming session you must start a capture.",
                  "Alert info for missing capture recording when trying to create a live streaming session"),
        {AlertButton(localized(environment_, "Open Capture Window", "Open Capture Window title")),
         AlertButton(localized(environment_, "Cancel", "Cancel button title"))});
    guarded(environment_, captureFunction, [&] {
        if (environment_.windowing.runModal(alert) != alertFirstButton) {
            return;
        }
        if (const auto capture = environment_.componentLocator.captureComponent()) {
            capture->openOrFocusCaptureWindow();
        }
    });
}

}  // namespace RemoteCoding
