#pragma once

#include "Apps/Simulator/Outcome/Outcome.hpp"
#include "Apps/Simulator/Record.hpp"

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace Simulator {

/// How often each thing that can happen has happened, over many runs: what users did and what came to pass in sessions, faults
/// that befell something, foreseen failures, and losses.
class Coverage {
public:
    /// Starts with everything at 0.
    Coverage();

    void add(const Record& record, const Outcome& outcome);
    void add(const Coverage& other);

    /// What has never happened, by group and name.
    [[nodiscard]] std::vector<std::string> neverTaken() const;

    /// The counts as a table, by group.
    void write(std::ostream& stream) const;

private:
    void addStep(const ReferenceHost::TraceEntry& entry);
    void addFault(const ReferenceHost::TraceEntry& entry);
    void addStays(const Record& record);

    /// By group ("edit", "fault", "loss", "failure", "session"), then by name.
    std::map<std::string, std::map<std::string, std::uint64_t>> counts_;
};

}  // namespace Simulator
