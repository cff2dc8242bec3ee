#include "Apps/Simulator/FailureReport.hpp"

#include "Apps/Simulator/Drawing/ShortIds.hpp"
#include "Apps/Simulator/Options.hpp"
#include "Apps/Simulator/Runner.hpp"
#include "Apps/Simulator/Shrinker.hpp"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <ostream>
#include <sstream>
#include <stdexcept>

namespace Simulator {

namespace {

constexpr std::size_t mostFindingsOfARule = 3;
constexpr std::size_t mostStepsShown = 30;
constexpr std::size_t longestTraceLine = 400;

std::string lineOf(const Record& record, std::size_t entry) {
    std::ostringstream stream;
    stream << record.trace[entry];
    std::string line = stream.str();
    line.erase(0, line.find_first_not_of(' '));
    if (line.size() > longestTraceLine) {
        line = line.substr(0, longestTraceLine) + "...";
    }
    return "trace line " + std::to_string(entry + 1) + ": " + line;
}

std::string inShell(const std::string& path) {
    const bool isPlain =
        path.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                               "/._-+,:@%=") == std::string::npos;
    if (isPlain) {
        return path;
    }
    std::string quoted = "'";
    for (const char character : path) {
        quoted += character == '\'' ? "'\\''" : std::string(1, character);
    }
    return quoted + '\'';
}

}  // namespace

ShortPlan shortenAndSave(const Plan& plan, bool twice, const std::function<bool(const Trial&)>& stillSo,
                         const Shortening& shortening, const std::string& name, const std::string& about) {
    ShortPlan shortened;
    shortened.plan = shrink(
        plan,
        [&](const Plan& candidate) {
            ++shortened.tries;
            return stillSo(Trial(candidate, twice, shortening.judge));
        },
        shortening.tries);
    shortened.planFile = shortening.folder / (name + ".plan");
    shortened.traceFile = shortening.folder / (name + ".trace");
    const Record record = run(shortened.plan);
    saveFile(shortened.planFile, [&](std::ostream& stream) {
        stream << "# " << about << '\n';
        write(stream, shortened.plan);
    });
    saveFile(shortened.traceFile, [&](std::ostream& stream) { writeTrace(stream, record); });
    return shortened;
}

void writeFindings(std::ostream& stream, const Findings& findings, const Record& record) {
    std::map<std::string, std::size_t> numbers;
    for (const Finding& finding : findings) {
        if (++numbers[finding.rule] > mostFindingsOfARule) {
            continue;
        }
        stream << "  " << finding.rule << ": " << finding.what << '\n';
        if (finding.entry && *finding.entry < record.trace.size()) {
            stream << "    " << lineOf(record, *finding.entry) << '\n';
        }
    }
    for (const auto& [rule, number] : numbers) {
        if (number > mostFindingsOfARule) {
            stream << "  " << rule << ": and " << number - mostFindingsOfARule << " more\n";
        }
    }
}

void writeShortest(std::ostream& stream, const Plan& plan, const std::string& rule,
                   const Shortening& shortening, const std::string& name) {
    const bool twice = rule == "repeats";
    const ShortPlan shortened = shortenAndSave(
        plan, twice,
        [&](const Trial& run) { return hasRule(failuresOf(run.verdict, plan.brokenRules), rule); },
        shortening, name, "breaks \"" + rule + "\"; from seed " + std::to_string(plan.seed));
    const Trial last(shortened.plan, twice, shortening.judge);
    const Findings findings = failuresOf(last.verdict, plan.brokenRules);
    if (shortening.tries > 0) {
        stream << "The shortest plan found that still breaks \"" << rule << "\", after " << shortened.tries
               << " tries: " << shortened.plan.analysts << " analysts, " << shortened.plan.steps.size()
               << " steps:\n";
        writeFindings(stream, findings, last.record);
    }
    const auto shown = std::ranges::find(findings, rule, &Finding::rule);
    writeShortPlan(stream, shortened, shown != findings.end() ? shown->what : std::string());
}

std::filesystem::path folderOrTemporary(const std::optional<std::string>& name) {
    if (name) {
        std::filesystem::create_directories(*name);
        return *name;
    }
    std::string pattern = (std::filesystem::temp_directory_path() / "simulate-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder can be made beside \"" + pattern + '"');
    }
    return pattern;
}

void writeShortPlan(std::ostream& stream, const ShortPlan& shortened, const std::string& what) {
    if (shortened.plan.steps.size() <= mostStepsShown) {
        std::stringstream text;
        write(text, shortened.plan);
        for (std::string line; std::getline(text, line);) {
            stream << "    " << line << '\n';
        }
    }
    const std::string subject(firstLongId(what));
    stream << "  plan:    " << shortened.planFile << "\n  replay:  tools/simulate --plan "
           << inShell(shortened.planFile) << "\n  draw:    tools/trace " << inShell(shortened.traceFile)
           << (subject.empty() ? "" : " --about " + subject) << '\n';
}

std::string commandOf(std::uint64_t seed, const PlanOptions& options) {
    return "tools/simulate --first-seed " + std::to_string(seed) + " --seeds 1" + planArguments(options);
}

void saveFile(const std::filesystem::path& path, const std::function<void(std::ostream&)>& write) {
    std::ofstream stream(path, std::ios::trunc | std::ios::binary);
    if (stream) {
        write(stream);
        stream.close();
    }
    if (!stream) {
        throw std::runtime_error("the file \"" + path.string() + "\" cannot be written");
    }
}

void writeTrace(std::ostream& stream, const Record& record) {
    for (const auto& entry : record.trace) {
        stream << entry << '\n';
    }
}

}  // namespace Simulator
