#include "ReferenceHost/Windowing/ModalAlerts.hpp"

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <utility>

namespace ReferenceHost {

using RemoteCoding::Alert;
using RemoteCoding::AlertResponse;

namespace {

std::string quotedList(const std::vector<std::string>& titles) {
    std::string list;
    for (const std::string& title : titles) {
        list += (list.empty() ? "\"" : ", \"") + title + '"';
    }
    return list;
}

}  // namespace

std::vector<std::string> buttonTitles(const Alert& alert) {
    std::vector<std::string> titles;
    std::ranges::transform(alert.buttons, std::back_inserter(titles), &RemoteCoding::AlertButton::title);
    return titles.empty() ? std::vector<std::string>{"OK"} : titles;
}

AlertResponse responseFor(const Alert& alert, const std::string& button) {
    const auto titles = buttonTitles(alert);
    const auto found = std::ranges::find(titles, button);
    if (found == titles.end()) {
        throw std::logic_error("The alert \"" + alert.messageText + "\" has no button \"" + button +
                               "\" but " + quotedList(titles));
    }
    return RemoteCoding::alertFirstButton + (found - titles.begin());
}

TraceFields fieldsOf(const Alert& alert) {
    static constexpr const char* styles[] = {"warning", "informational", "critical"};
    return {{"style", styles[static_cast<std::size_t>(alert.style)]},
            {"message", alert.messageText},
            {"text", alert.informativeText},
            {"buttons", quotedList(buttonTitles(alert))}};
}

struct ModalAlerts::Shown {
    explicit Shown(Alert alert_) : alert(std::move(alert_)) {}

    /// A second answer is none.
    void press(const std::string& button) {
        AlertResponse none = 0;
        if (response.compare_exchange_strong(none, responseFor(alert, button))) {
            answered.give();
        }
    }

    const Alert alert;
    std::atomic<AlertResponse> response{0};  // 0: not answered
    Signal answered;
};

AlertResponse ModalAlerts::run(const Alert& alert) {
    const auto shown = std::make_shared<Shown>(alert);
    struct OnScreen {
        OnScreen(ModalAlerts& alerts_, const std::shared_ptr<Shown>& shown_)
            : alerts(alerts_), shown(shown_) {
            const std::lock_guard lock(alerts.mutex_);
            alerts.stack_.push_back(shown);
        }
        ~OnScreen() {
            const std::lock_guard lock(alerts.mutex_);
            std::erase(alerts.stack_, shown);
        }
        OnScreen(const OnScreen&) = delete;
        OnScreen& operator=(const OnScreen&) = delete;
        ModalAlerts& alerts;
        const std::shared_ptr<Shown>& shown;
    };
    const OnScreen onScreen(*this, shown);
    record(TraceKind::alert, fieldsOf(alert));
    settle(shown);
    const Base::Seconds patience = [this] {
        const std::lock_guard lock(mutex_);
        return patience_;
    }();
    if (!execution_.waitModally(shown->answered, patience)) {
        throw std::logic_error("Nobody answers the alert \"" + alert.messageText + "\" with the buttons " +
                               quotedList(buttonTitles(alert)));
    }
    const auto index = static_cast<std::size_t>(shown->response - RemoteCoding::alertFirstButton);
    record(TraceKind::alertAnswer, {{"message", alert.messageText}, {"button", buttonTitles(alert)[index]}});
    return shown->response;
}

/// Uses the next planned answer, or else asks the handler.
void ModalAlerts::settle(const std::shared_ptr<Shown>& shown) {
    std::optional<PlannedAnswer> planned;
    Handler handler;
    {
        const std::lock_guard lock(mutex_);
        if (planned_.empty()) {
            handler = handler_;
        } else {
            planned = std::move(planned_.front());
            planned_.pop_front();
        }
    }
    if (!planned) {
        if (handler) {
            handler(shown->alert);
        }
        return;
    }
    const std::string& message = shown->alert.messageText;
    if (planned->expectedMessage.value_or(message) != message) {
        throw std::logic_error("The alert \"" + message + "\" came where \"" + *planned->expectedMessage +
                               "\" was expected");
    }
    if (planned->after <= Base::Seconds(0)) {
        shown->press(planned->button);
        return;
    }
    (void)responseFor(shown->alert, planned->button);  // says at once that there is no such button
    execution_.sleep(
        std::chrono::duration_cast<std::chrono::duration<std::uint64_t, std::nano>>(planned->after),
        [shown, button = planned->button](const Base::Result<void>&) { shown->press(button); });
}

void ModalAlerts::answer(const std::string& button) {
    std::shared_ptr<Shown> front;
    {
        const std::lock_guard lock(mutex_);
        if (stack_.empty()) {
            throw std::logic_error("No alert is shown whose button \"" + button + "\" could be pressed");
        }
        front = stack_.back();
    }
    front->press(button);
}

void ModalAlerts::plan(PlannedAnswer answer) {
    const std::lock_guard lock(mutex_);
    planned_.push_back(std::move(answer));
}

std::size_t ModalAlerts::numberOfPlannedAnswers() const {
    const std::lock_guard lock(mutex_);
    return planned_.size();
}

void ModalAlerts::setHandler(Handler handler) {
    const std::lock_guard lock(mutex_);
    handler_.swap(handler);
}

std::optional<Alert> ModalAlerts::shown() const {
    const std::lock_guard lock(mutex_);
    return stack_.empty() ? std::nullopt : std::optional(stack_.back()->alert);
}

void ModalAlerts::setPatience(Base::Seconds patience) {
    const std::lock_guard lock(mutex_);
    patience_ = patience;
}

void ModalAlerts::record(const char* kind, TraceFields fields) const {
    if (trace_ != nullptr) {
        trace_->record(host_, kind, std::move(fields));
    }
}

}  // namespace ReferenceHost
