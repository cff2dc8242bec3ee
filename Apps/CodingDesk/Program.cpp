#include "Apps/CodingDesk/Program.hpp"

#include "Apps/CodingDesk/BuiltInMatch.hpp"
#include "Apps/CodingDesk/Cast.hpp"
#include "Apps/CodingDesk/Desk.hpp"
#include "Apps/CodingDesk/Options.hpp"
#include "Apps/CodingDesk/Performance.hpp"
#include "Apps/CodingDesk/Text.hpp"
#include "Base/Error.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <fstream>
#include <ostream>

namespace CodingDesk {

namespace {

constexpr int successStatus = 0;
constexpr int failureStatus = 1;
constexpr int usageStatus = 2;

void openLog(std::ofstream& log, const std::string& path) {
    errno = 0;
    log.open(path, std::ios::trunc);
    if (!log) {
        const int reason = errno;
        throw UsageError("--log: the file \"" + printable(path) +
                         "\" cannot be written: " + (reason != 0 ? std::strerror(reason) : "unknown reason"));
    }
}

std::string introduction(const Options& options, const ReplayPlan& plan,
                         const std::vector<CodedEvent>& events) {
    const double matchEnd = std::ranges::max(events, {}, &CodedEvent::end).end;
    std::string text;
    for (AnalystIndex i = 0; i < options.analysts; ++i) {
        text += (i == 0 ? "" : i + 1 == options.analysts ? " and " : ", ") + std::string(castName(i));
    }
    text += " code a match of " + matchTime(matchEnd) + " together: " + counted(events.size(), "clip") +
            " in " + counted(plan.codes, "code") + ", at " + decimal(plan.speed, plan.speed < 10 ? 1 : 0) +
            " times its speed, seed " + std::to_string(options.seed) + ".\n";
    return text + (options.dropLink
                       ? std::string(castName(*options.dropLink)) + "'s link drops in the middle."
                       : "No link drops.");
}

bool codeMatch(const Options& options, const std::vector<CodedEvent>& events, Console& console,
               std::ostream* log) {
    ReplayPlan plan =
        makeReplayPlan(events, {options.analysts, options.seed, options.speed, options.dropLink});
    console.say(introduction(options, plan, events) + "\n");
    RealWorld world;
    struct LogAtTheEnd {
        ~LogAtTheEnd() {
            if (log != nullptr) {
                trace.write(*log);
            }
        }
        std::ostream* log;
        const ReferenceHost::Trace& trace;
    };
    const LogAtTheEnd logAtTheEnd{log, world.world.trace};
    const double start = world.world.now();
    bool allEqual = false;
    {
        Desk desk(std::move(plan), options.analysts, options.seed, console, world);
        desk.codeTheMatch();
        allEqual = desk.report();
        desk.leave();
        desk.close();
    }
    console.say("\n" + bold(allEqual ? "All timelines are equal to the remote session."
                                     : "The timelines are NOT all equal to the remote session.",
                            console.look().colors));
    console.say("Run time " + decimal(world.world.now() - start, 1) + " s.");
    return allEqual;
}

/// False when something was not as it should be.
bool run(const Options& options, const std::vector<CodedEvent>& events, Console& console, std::ostream* log) {
    const bool runsEverything = options.scenario == Options::everything;
    bool isWell = true;
    for (const Scenario& scenario : scenarios()) {
        if (runsEverything || options.scenario == scenario.name) {
            isWell = perform(scenario, options.seed, console, log) && isWell;
        }
    }
    if (runsEverything) {
        console.say("\n" + bold("Scenario match", console.look().colors) + '\n');
    }
    if (runsEverything || options.scenario == Options::match) {
        isWell = codeMatch(options, events, console, log) && isWell;
    }
    return isWell;
}

int runWith(const Options& options, std::ostream& out, std::ostream& errors) {
    std::vector<CodedEvent> events;
    try {
        events = options.eventFile ? loadEvents(*options.eventFile) : parseEvents(builtInMatch());
    } catch (const FileError& error) {
        errors << "CodingDesk: " << printable(options.eventFile.value_or("the built-in match"));
        if (error.line() > 0) {
            errors << ", line " << error.line();
        }
        errors << ": " << error.what() << '\n';
        return usageStatus;
    }
    std::ofstream log;
    if (options.logFile) {
        openLog(log, *options.logFile);
    }
    int status = failureStatus;
    try {
        Console console(out, lookOfStandardOutput(options.plain));
        status =
            run(options, events, console, options.logFile ? &log : nullptr) ? successStatus : failureStatus;
    } catch (...) {
        errors << "CodingDesk: the run failed: " << printable(Base::describe(std::current_exception()))
               << '\n';
    }
    if (options.logFile) {
        log.close();
        if (!log) {
            errors << "CodingDesk: the log \"" << printable(*options.logFile)
                   << "\" could not be written in full\n";
            return failureStatus;
        }
    }
    return status;
}

}  // namespace

int runProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& errors) {
    try {
        const Options options = parseOptions(arguments);
        if (options.help) {
            out << helpText() << std::flush;
            return successStatus;
        }
        return runWith(options, out, errors);
    } catch (const UsageError& error) {
        errors << "CodingDesk: " << error.what() << "\nTry --help.\n";
        return usageStatus;
    } catch (...) {
        errors << "CodingDesk: " << printable(Base::describe(std::current_exception())) << '\n';
        return failureStatus;
    }
}

}  // namespace CodingDesk
