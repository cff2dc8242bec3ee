#include "Apps/CodingDesk/Person.hpp"

#include "Apps/CodingDesk/Text.hpp"
#include "ReferenceHost/Windowing/WindowText.hpp"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace CodingDesk {

namespace {

constexpr std::chrono::seconds readingTime{3};  // of an alert

}  // namespace

Person::Person(std::string name, ReferenceHost::ReportingExecution& execution,
               ReferenceHost::HeadlessWindowing& toolkit, Transcript& transcript)
    : name_(std::move(name)), execution_(execution), transcript_(transcript), screen_(toolkit) {
    screen_.onAlert([this](const RemoteCoding::Alert& alert) { alertAppears(alert); });
}

Person::~Person() { screen_.onAlert({}); }

void Person::looksAt(const std::string& window) {
    transcript_.tell(name_ + " looks at the window " + quoted(window) + ':', screen_.textOf(window));
}

void Person::looksAtSheet(const std::string& window) {
    if (const auto sheet = screen_.window(window).sheet()) {
        messagesSeen_.push_back(sheet->messageText);
        transcript_.tell(name_ + " is asked:", ReferenceHost::alertText(*sheet, "On " + quoted(window)));
    }
}

void Person::presses(const std::string& window, const std::string& button) {
    tell("presses " + quoted(button) + '.');
    screen_.window(window).click(button);
}

void Person::ticks(const std::string& window, const std::string& table, const std::string& row) {
    tell("ticks " + quoted(row) + '.');
    screen_.window(window).clickCheckBox(table, row);
}

void Person::selects(const std::string& window, const std::string& table, const std::string& row) {
    tell("selects " + quoted(row) + '.');
    screen_.window(window).selectRow(table, row);
}

void Person::chooses(const std::string& window, const std::string& popUp, const std::string& item) {
    tell("chooses " + quoted(item) + '.');
    screen_.window(window).choose(popUp, item);
}

void Person::types(const std::string& window, const std::string& field, const std::string& text) {
    const std::size_t beepsBefore = screen_.numberOfBeeps();
    tell("types " + quoted(text) + '.');
    screen_.window(window).type(field, text);
    if (screen_.numberOfBeeps() > beepsBefore) {
        transcript_.tell(name_ + "'s computer beeps; the field now reads " +
                         quoted(screen_.window(window).textOf(field)) + '.');
    }
}

void Person::signsIn(const std::string& window, const std::string& userId) {
    tell("signs in as " + quoted(userId) + '.');
    screen_.window(window).signIn(userId);
}

void Person::cancelsSignIn(const std::string& window) {
    tell("cancels the sign-in.");
    screen_.window(window).cancelSignIn();
}

void Person::closes(const std::string& window) {
    tell("closes the window " + quoted(window) + '.');
    screen_.window(window).close();
}

void Person::answersSheet(const std::string& window, const std::string& button) {
    tell("presses " + quoted(button) + '.');
    screen_.window(window).answerSheet(button);
}

void Person::willAnswer(std::string message, std::string button, std::function<void()> meanwhile) {
    answers_.emplace_back(std::move(message), std::move(button), std::move(meanwhile));
}

std::vector<std::string> Person::alertsToCome() const {
    std::vector<std::string> messages;
    std::ranges::transform(answers_, std::back_inserter(messages), &PlannedAnswer::message);
    return messages;
}

void Person::alertAppears(const RemoteCoding::Alert& alert) {
    messagesSeen_.push_back(alert.messageText);
    transcript_.tell("An alert appears in front of " + name_ + ':', ReferenceHost::alertText(alert));
    PlannedAnswer answer(alert.messageText, ReferenceHost::buttonTitles(alert).back(), {});
    if (!answers_.empty() && answers_.front().message == alert.messageText) {
        answer = std::move(answers_.front());
        answers_.pop_front();
    } else {
        surprises_.push_back(alert.messageText);
    }
    // The main thread is blocked until then: the answer comes from the background.
    execution_.sleep(readingTime, [this, answer](const Base::Result<void>&) {
        if (answer.meanwhile) {
            answer.meanwhile();
        }
        tell("presses " + quoted(answer.button) + '.');
        screen_.answer(answer.button);
    });
}

}  // namespace CodingDesk
