#pragma once

#include "ReferenceHost/Trace.hpp"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Simulator {

using TraceEntries = std::vector<ReferenceHost::TraceEntry>;

/// A block or an upload: its first and last entry.
struct TraceSpan {
    std::size_t start = 0;
    std::optional<std::size_t> end;  ///< absent: it never ended
    bool isUpload = false;

    [[nodiscard]] bool holds(std::size_t entry) const { return start <= entry && (!end || entry <= *end); }
};

/// What belongs together in a trace. The entries outlive it.
class TraceIndex {
public:
    explicit TraceIndex(const TraceEntries& entries);

    /// In the order in which they first appear.
    [[nodiscard]] const std::vector<std::string>& hosts() const { return hosts_; }

    /// The call that an answer or an effect belongs to.
    [[nodiscard]] std::optional<std::size_t> callOf(std::size_t entry) const;
    [[nodiscard]] std::optional<std::size_t> answerOf(std::size_t call) const;

    /// Whose call made that change to that session; empty when it is not known.
    [[nodiscard]] std::string_view authorOf(std::string_view sessionId, std::string_view sequence) const;

    /// In the order of their beginnings.
    [[nodiscard]] const std::vector<TraceSpan>& spans() const { return spans_; }

    /// The span that starts or ends with this entry.
    [[nodiscard]] const TraceSpan* spanAt(std::size_t entry) const;

private:
    using Key = std::pair<std::string_view, std::string_view>;

    void add(std::size_t index, const ReferenceHost::TraceEntry& entry);
    void addEffect(const ReferenceHost::TraceEntry& entry);

    std::vector<std::string> hosts_;
    std::map<Key, std::size_t> openCalls_;             // by host and number
    std::map<std::size_t, std::size_t> callOf_;        // answers and effects
    std::map<std::size_t, std::size_t> answerOf_;      // calls
    std::map<std::string_view, unsigned long> known_;  // by session: the last change with an author
    std::map<std::pair<std::string_view, unsigned long>, std::string_view> authors_;  // by session and change
    std::vector<TraceSpan> spans_;
    std::map<std::pair<Key, std::string_view>, std::size_t> openSpans_;  // by kind and timeline, number
    std::map<std::size_t, std::size_t> spanAt_;
};

}  // namespace Simulator
