#pragma once

#include "Apps/CodingDesk/Cast.hpp"
#include "Apps/CodingDesk/WindowTitles.hpp"
#include "Base/ExecutionProtocol.hpp"

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

namespace CodingDesk {

class Workplace;

/// An analyst's place as a script uses it, in real or in virtual time. On the script's thread only, outside all jobs of the
/// analysts.
class Seat {
public:
    using Deed = std::function<void(Workplace&)>;
    using Question = std::function<bool(Workplace&)>;

    virtual ~Seat() = default;
    Seat(const Seat&) = delete;
    Seat& operator=(const Seat&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }

    /// In the language of this analyst's computer.
    [[nodiscard]] const WindowTitles& titles() const { return titles_; }

    /// Does it on the analyst's main thread and returns when it is done. What it throws is thrown here.
    virtual void at(const Deed& deed) = 0;

    /// Lets a moment pass, as long as it takes to look at something.
    virtual void lookAround() = 0;

    /// Lets the time go on until the question, asked on the analyst's main thread, is answered with yes. Throws when that
    /// takes longer than `patience`; `what` then says what did not come, as in "the session was live".
    void waitUntil(const std::string& what, const Question& question,
                   Base::Seconds patience = Base::Seconds(30)) {
        if (!comesTrue(question, patience)) {
            throw std::runtime_error(name() + " waited in vain until " + what);
        }
    }

protected:
    explicit Seat(std::size_t analyst)
        : name_(castName(analyst)), titles_(windowTitles(castLanguages(analyst))) {}

    /// False when that takes longer.
    [[nodiscard]] virtual bool comesTrue(const Question& question, Base::Seconds patience) = 0;

private:
    const std::string name_;
    const WindowTitles& titles_;
};

}  // namespace CodingDesk
