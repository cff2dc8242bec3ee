#include "Apps/Simulator/Program.hpp"

#include "Apps/Simulator/Campaign.hpp"
#include "Apps/Simulator/Drawing/TraceText.hpp"
#include "Apps/Simulator/FailureReport.hpp"
#include "Apps/Simulator/Options.hpp"
#include "Apps/Simulator/Verdict.hpp"
#include "Base/Error.hpp"

#include <exception>
#include <filesystem>
#include <fstream>
#include <ostream>

namespace Simulator {

namespace {

constexpr int successStatus = 0;
constexpr int failureStatus = 1;
constexpr int usageStatus = 2;

/// What the reader makes of the file; a file that cannot be read, or not so, is the user's affair.
template <typename Reader>
auto readFile(const std::string& path, const Reader& reader) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream || std::filesystem::is_directory(path)) {
        throw UsageError("the file \"" + path + "\" cannot be opened");
    }
    try {
        return reader(stream);
    } catch (const std::runtime_error& error) {
        throw UsageError(path + ", " + error.what());
    }
}

void drawTrace(const Options& options, std::ostream& out) {
    const TraceEntries entries = readFile(*options.drawFile, readTrace);
    try {
        draw(out, entries, options.drawing);
    } catch (const std::invalid_argument& error) {
        throw UsageError(error.what());
    }
}

/// A single run, of a plan or of a seed, whose plan or trace is wanted.
bool runOnce(const Options& options, std::ostream& out) {
    const Plan plan =
        options.planFile ? readFile(*options.planFile, readPlan) : makePlan(options.firstSeed, options.plan);
    const Trial trial(plan, true);
    if (options.saveFile) {
        saveFile(*options.saveFile, [&](std::ostream& stream) { write(stream, plan); });
    }
    if (options.traceFile) {
        saveFile(*options.traceFile, [&](std::ostream& stream) { writeTrace(stream, trial.record); });
    }
    const Findings failures = failuresOf(trial.verdict, plan.brokenRules);
    const Findings costs = costsOf(trial.verdict, plan.brokenRules);
    out << plan.analysts << " analysts, " << plan.steps.size() << " steps, seed " << plan.seed << ", "
        << trial.record.trace.size() << " entries in the trace.\n";
    for (const ExplainedLoss& loss : trial.verdict.outcome.explained) {
        out << "  " << loss.lossClass << ": " << loss.what << '\n';
    }
    if (!costs.empty()) {
        out << "What the broken rules cost:\n";
        writeFindings(out, costs, trial.record);
    }
    out << (failures.empty() ? "Nothing failed.\n" : "FAILED:\n");
    writeFindings(out, failures, trial.record);
    if (!failures.empty() && options.tries.value_or(0) > 0) {
        writeShortest(out, plan, failures.front().rule,
                      {*options.tries, folderOrTemporary(options.plansFolder)}, "shortest");
    }
    return failures.empty();
}

bool run(const Options& options, std::ostream& out, std::ostream& errors) {
    if (options.planFile || options.saveFile || options.traceFile) {
        return runOnce(options, out);
    }
    return Campaign(options, out, errors).run();
}

}  // namespace

int runProgram(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& errors) {
    try {
        const Options options = parseOptions(arguments);
        if (options.help) {
            out << helpText() << std::flush;
            return successStatus;
        }
        if (options.drawFile) {
            drawTrace(options, out);
            return successStatus;
        }
        return run(options, out, errors) ? successStatus : failureStatus;
    } catch (const UsageError& error) {
        errors << "Simulator: " << error.what() << "\nTry --help.\n";
        return usageStatus;
    } catch (...) {
        errors << "Simulator: " << Base::describe(std::current_exception()) << '\n';
        return failureStatus;
    }
}

}  // namespace Simulator
