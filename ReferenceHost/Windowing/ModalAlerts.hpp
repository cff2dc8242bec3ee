#pragma once

#include "Components/RemoteCoding/HostInterfaces/Alert.hpp"
#include "ReferenceHost/Execution/ReportingExecution.hpp"
#include "ReferenceHost/Trace.hpp"

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace ReferenceHost {

/// An answer that is settled before its alert appears.
struct PlannedAnswer {
    std::string button;                            ///< its title
    Base::Seconds after{0};                        ///< from the alert's appearance
    std::optional<std::string> expectedMessage{};  ///< another alert's is an error
};

/// The titles under which an alert's buttons can be pressed: without any it has one, "OK".
[[nodiscard]] std::vector<std::string> buttonTitles(const RemoteCoding::Alert& alert);

/// The response for that button; `std::logic_error` when the alert has none of that title.
[[nodiscard]] RemoteCoding::AlertResponse responseFor(const RemoteCoding::Alert& alert,
                                                      const std::string& button);

/// The trace's fields of an alert.
[[nodiscard]] TraceFields fieldsOf(const RemoteCoding::Alert& alert);

/// The application-modal alerts of one host and whoever answers them. Any thread, except for `run`. Answers that were
/// planned are used first, in their order; then the handler is asked; else somebody must call `answer` meanwhile, from
/// another thread or (in virtual time) a lane that is not this host's main thread.
class ModalAlerts {
public:
    using Handler = std::function<void(const RemoteCoding::Alert&)>;

    ModalAlerts(ReportingExecution& execution, std::string host, Trace* trace)
        : execution_(execution), host_(std::move(host)), trace_(trace) {}

    /// Main thread. Blocks it until somebody answers. `std::logic_error` when nobody does before patience ends or, in virtual
    /// time, everything else has come to rest; and when a planned answer does not fit.
    [[nodiscard]] RemoteCoding::AlertResponse run(const RemoteCoding::Alert& alert);

    /// Presses that button of the front alert. `std::logic_error` when none is shown or it has no such button.
    void answer(const std::string& button);

    void plan(PlannedAnswer answer);
    [[nodiscard]] std::size_t numberOfPlannedAnswers() const;

    /// Called on the main thread as an alert appears; it may answer at once, or see to it that somebody does later.
    void setHandler(Handler handler);

    /// The front one.
    [[nodiscard]] std::optional<RemoteCoding::Alert> shown() const;

    /// How long an alert waits for its answer. An hour at first.
    void setPatience(Base::Seconds patience);

private:
    struct Shown;

    void settle(const std::shared_ptr<Shown>& shown);
    void record(const char* kind, TraceFields fields) const;

    ReportingExecution& execution_;
    const std::string host_;
    Trace* const trace_;

    mutable std::mutex mutex_;                   // guards what follows
    std::vector<std::shared_ptr<Shown>> stack_;  // the front one last
    std::deque<PlannedAnswer> planned_;
    Handler handler_;
    Base::Seconds patience_ = std::chrono::hours(1);
};

}  // namespace ReferenceHost
