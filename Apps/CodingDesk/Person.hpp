#pragma once

#include "Apps/CodingDesk/Transcript.hpp"
#include "ReferenceHost/Execution/ReportingExecution.hpp"
#include "ReferenceHost/Windowing/Person.hpp"

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace CodingDesk {

/// An analyst in front of the windows: each thing seen or done is told. Main thread of that analyst only.
///
/// What cannot be done now - a button that is disabled, a window that is not there - throws `std::logic_error`, as at the
/// toolkit itself.
class Person {
public:
    /// The execution's main thread is the toolkit's. All of these outlive the person.
    Person(std::string name, ReferenceHost::ReportingExecution& execution,
           ReferenceHost::HeadlessWindowing& toolkit, Transcript& transcript);
    ~Person();
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }

    // What there is to see.

    [[nodiscard]] bool sees(const std::string& window) const { return screen_.sees(window); }
    [[nodiscard]] ReferenceHost::WindowOnScreen window(const std::string& title) const {
        return screen_.window(title);
    }

    // Draws the window, or the sheet on it, into the transcript.

    void looksAt(const std::string& window);
    void looksAtSheet(const std::string& window);

    /// Says why the person uses a menu: "wants to join a session".
    void wants(const std::string& what) { tell("wants " + what + '.'); }

    // What the person does at the window of that title. The controls are called by what stands on them or beside them.

    void presses(const std::string& window, const std::string& button);
    void ticks(const std::string& window, const std::string& table, const std::string& row);
    void selects(const std::string& window, const std::string& table, const std::string& row);
    void chooses(const std::string& window, const std::string& popUp, const std::string& item);
    void types(const std::string& window, const std::string& field, const std::string& text);
    void signsIn(const std::string& window, const std::string& userId);
    void cancelsSignIn(const std::string& window);
    void closes(const std::string& window);

    void answersSheet(const std::string& window, const std::string& button);

    // Alerts, which come when they come.

    /// Will look at the next alert and, after a while, press that button. Each alert takes the earliest such answer.
    /// `meanwhile`: what happens elsewhere before the button is pressed; in the background.
    void willAnswer(std::string message, std::string button, std::function<void()> meanwhile = {});

    /// The alerts that this person was told to expect and that have not come.
    [[nodiscard]] std::vector<std::string> alertsToCome() const;

    /// The alerts that came unexpectedly; each was answered with its last button.
    [[nodiscard]] const std::vector<std::string>& surprises() const { return surprises_; }

    /// The messages of all alerts and sheets that this person has seen.
    [[nodiscard]] const std::vector<std::string>& messagesSeen() const { return messagesSeen_; }

private:
    struct PlannedAnswer {
        PlannedAnswer(std::string message_, std::string button_, std::function<void()> meanwhile_)
            : message(std::move(message_)), button(std::move(button_)), meanwhile(std::move(meanwhile_)) {}
        std::string message;
        std::string button;
        std::function<void()> meanwhile;
    };

    void alertAppears(const RemoteCoding::Alert& alert);
    void tell(const std::string& whatIDo) { transcript_.tell(name_ + ' ' + whatIDo); }

    const std::string name_;
    ReferenceHost::ReportingExecution& execution_;
    Transcript& transcript_;
    ReferenceHost::Person screen_;
    std::deque<PlannedAnswer> answers_;
    std::vector<std::string> surprises_;
    std::vector<std::string> messagesSeen_;
};

}  // namespace CodingDesk
