#include "Apps/CodingDesk/Explanation.hpp"

#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <string_view>

namespace CodingDesk {

namespace {

using ReferenceHost::TraceEntry;
namespace TraceKind = ReferenceHost::TraceKind;

bool mentions(const TraceEntry& entry, const std::string& id) {
    return std::ranges::any_of(entry.fields,
                               [&](const auto& field) { return field.second.find(id) != std::string::npos; });
}

std::string when(const TraceEntry& entry) { return decimal(entry.time.count(), 2) + " s"; }

std::string inWords(const TraceEntry& entry) {
    std::string words;
    for (const auto& [name, value] : entry.fields) {
        words += (words.empty() ? "" : ", ") + name + " " + value;
    }
    constexpr std::size_t shown = 110;
    words = printable(words);
    return columnsOf(words) > shown ? fitted(words, shown) : words;
}

template <typename Predicate>
const TraceEntry* lastWhere(const std::vector<TraceEntry>& trace, Predicate predicate) {
    const auto found = std::find_if(trace.rbegin(), trace.rend(), predicate);
    return found == trace.rend() ? nullptr : &*found;
}

}  // namespace

std::string explanation(const std::vector<TraceEntry>& trace, const std::string& analyst,
                        const Difference& difference) {
    if (difference.momentId) {
        const auto* entry = lastWhere(trace, [&](const TraceEntry& candidate) {
            return candidate.host == analyst && mentions(candidate, *difference.momentId);
        });
        if (entry == nullptr) {
            return "nothing about it ever reached " + analyst;
        }
        return "the last about it there, at " + when(*entry) + ": " + entry->kind + ", " + inWords(*entry);
    }
    const auto* trouble = lastWhere(trace, [&](const TraceEntry& candidate) {
        return candidate.host == analyst &&
               (candidate.kind == TraceKind::logWarn || candidate.kind == TraceKind::logError);
    });
    if (trouble == nullptr) {
        return analyst + " met no trouble that the log knows of";
    }
    return "the last trouble there, at " + when(*trouble) + ": " + inWords(*trouble);
}

}  // namespace CodingDesk
