#pragma once

#include "Apps/Simulator/Drawing/Drawing.hpp"
#include "Apps/Simulator/Drawing/ShortIds.hpp"

#include <set>
#include <string_view>
#include <vector>

namespace Simulator {

/// Which entries of a trace are shown. What it is given outlives it.
class Selection {
public:
    Selection(const TraceEntries& entries, const TraceIndex& index, const ShortIds& ids,
              const DrawingOptions& options);

    [[nodiscard]] bool shows(std::size_t entry) const { return shown_[entry]; }

    /// Whether the bar of the block or upload is drawn.
    [[nodiscard]] bool shows(const TraceSpan& span) const { return !isAbout_ || shown_[span.start]; }

    /// The identifiers that the drawing is about, the one that was asked for and those that stand for the same.
    [[nodiscard]] const std::set<std::string_view>& subjects() const { return subjects_; }

private:
    using Entry = ReferenceHost::TraceEntry;

    void findSubjects(const ShortIds& ids, std::string_view about);
    void pair(std::string_view one, std::string_view other);
    void pairMomentsAndClips();
    [[nodiscard]] bool mentionsSubject(const Entry& entry) const;
    void keepWhatConcernsSubjects();
    void addSurroundings();
    void applyFilters(const DrawingOptions& options);

    const TraceEntries& entries_;
    const TraceIndex& index_;
    bool isAbout_;
    std::vector<bool> shown_;
    std::set<std::string_view> subjects_;
    std::multimap<std::string_view, std::string_view> standsFor_;  // moments and clips, both ways
};

}  // namespace Simulator
