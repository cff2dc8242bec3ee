#pragma once

#include "Apps/Simulator/Plan.hpp"
#include "Apps/Simulator/Verdict.hpp"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

namespace Simulator {

/// A plan that was shortened, and where it was put.
struct ShortPlan {
    Plan plan;
    std::size_t tries = 0;
    std::string planFile;
    std::string traceFile;
};

/// How plans are shortened, and where the results go.
struct Shortening {
    std::size_t tries = 0;
    std::filesystem::path folder;
    Judge judge = Simulator::judge;
};

/// Shortens the plan for as long as its runs are `stillSo`, and saves it and the trace of its run as `name`.plan and .trace.
/// `about` becomes the file's first comment. Throws `std::runtime_error` when a file cannot be written.
[[nodiscard]] ShortPlan shortenAndSave(const Plan& plan, bool twice,
                                       const std::function<bool(const Trial&)>& stillSo,
                                       const Shortening& shortening, const std::string& name,
                                       const std::string& about);

/// The findings in words, each with the line of the trace that it points at.
void writeFindings(std::ostream& stream, const Findings& findings, const Record& record);

/// Shortens a plan whose run breaks the rule, saves what comes of it, and tells about it.
void writeShortest(std::ostream& stream, const Plan& plan, const std::string& rule,
                   const Shortening& shortening, const std::string& name);

/// The folder, made when it is not there yet; without a name a new temporary one.
[[nodiscard]] std::filesystem::path folderOrTemporary(const std::optional<std::string>& name);

/// Where the shortened plan lies, and how to run it and to look at what `what` tells of. Few steps are shown.
void writeShortPlan(std::ostream& stream, const ShortPlan& shortened, const std::string& what);

/// The command that runs the plan of a seed again.
[[nodiscard]] std::string commandOf(std::uint64_t seed, const PlanOptions& options);

/// Throws `std::runtime_error` when the file cannot be written in full.
void saveFile(const std::filesystem::path& path, const std::function<void(std::ostream&)>& write);

/// One line an entry, as `ReferenceHost::Trace::write` does.
void writeTrace(std::ostream& stream, const Record& record);

}  // namespace Simulator
