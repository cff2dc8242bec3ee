#pragma once

#include "ReferenceHost/Windowing/WindowOnScreen.hpp"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ReferenceHost {

/// Whoever sits in front of a headless toolkit: sees what is on the screen, uses the windows and answers alerts.
///
///     auto window = person.window("New Session");
///     window.type("Video Name", "Derby");
///     window.clickCheckBox("Feeds", "Camera 1");
///     person.willAnswer("Retry");
///     window.click("Create");
///
/// Threads: main thread only, except where it says otherwise. What cannot be done now throws `std::logic_error`.
///
/// An alert blocks the main thread inside `runModal`. So it is answered by what is planned beforehand, by the handler
/// as it appears, or by somebody who is not on this host's main thread: another host's job, a service's, another thread.
class Person {
public:
    /// The toolkit outlives the person.
    explicit Person(HeadlessWindowing& toolkit) : toolkit_(toolkit) {}

    // What there is to see.

    /// The titles of the visible windows, the front one first.
    [[nodiscard]] std::vector<std::string> windowTitles() const;
    [[nodiscard]] bool sees(const std::string& windowTitle) const;

    /// The front one of that title.
    [[nodiscard]] WindowOnScreen window(const std::string& title) const;

    /// The alert in front of everything; any thread.
    [[nodiscard]] std::optional<RemoteCoding::Alert> alert() const { return toolkit_.alerts().shown(); }

    [[nodiscard]] std::size_t numberOfBeeps() const { return toolkit_.numberOfBeeps(); }

    /// All of it as plain text, and one window of it; see `WindowText.hpp`.
    [[nodiscard]] std::string screen() const;
    [[nodiscard]] std::string textOf(const std::string& windowTitle) const;

    // Answering alerts; any thread.

    /// Presses that button of the alert in front.
    void answer(const std::string& button) { toolkit_.alerts().answer(button); }

    /// Will press that button of the next alert without a planned answer, so many seconds after it appears. When another
    /// message is expected, `runModal` throws.
    void willAnswer(std::string button, Base::Seconds after = {},
                    std::optional<std::string> expectedMessage = {}) {
        toolkit_.alerts().plan({std::move(button), after, std::move(expectedMessage)});
    }
    [[nodiscard]] std::size_t numberOfPlannedAnswers() const {
        return toolkit_.alerts().numberOfPlannedAnswers();
    }

    /// Called on the main thread as an alert without a planned answer appears. An empty one is none.
    void onAlert(std::function<void(const RemoteCoding::Alert&)> handler) {
        toolkit_.alerts().setHandler(std::move(handler));
    }

private:
    [[nodiscard]] HeadlessWindowing::Window find(const std::string& title) const;

    HeadlessWindowing& toolkit_;
};

}  // namespace ReferenceHost
