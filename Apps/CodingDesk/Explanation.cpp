#include "Apps/CodingDesk/Explanation.hpp"

#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <string_view>

namespace CodingDesk {

namespace {

using ReferenceHost::TraceEntry;
namespace TraceKind = ReferenceHost::TraceKind;

/// Whether the entry's list of ids, separated by commas, has this one.
bool isAbout(const TraceEntry& entry, std::string_view id) {
    std::string_view ids = entry.field("ids");
    while (!ids.empty()) {
        const auto comma = std::min(ids.find(','), ids.size());
        if (ids.substr(0, comma) == id) {
            return true;
        }
        ids.remove_prefix(std::min(comma + 1, ids.size()));
    }
    return false;
}

/// What the entry says about a clip; empty when it is nothing that a user would know.
std::string_view inWords(const TraceEntry& entry) {
    if (entry.kind == "delivery") {
        const auto type = entry.field("type");
        return type == "momentsAdded"     ? "it arrived there"
               : type == "momentsUpdated" ? "a change of it arrived there"
               : type == "momentsDeleted" ? "its deletion arrived there"
                                          : "";
    }
    if (entry.kind == TraceKind::call) {
        const auto name = entry.field("name");
        return name == "updateMoments"   ? "a change of it was sent from there"
               : name == "removeMoments" ? "its deletion was sent from there"
                                         : "";
    }
    return "";
}

std::string at(const TraceEntry& entry) { return " at " + decimal(entry.time.count(), 1) + " s"; }

template <typename Predicate>
const TraceEntry* lastWhere(const std::vector<TraceEntry>& trace, Predicate predicate) {
    const auto found = std::find_if(trace.rbegin(), trace.rend(), predicate);
    return found == trace.rend() ? nullptr : &*found;
}

std::string lastOfClip(const std::vector<TraceEntry>& trace, const std::string& analyst,
                       const std::string& momentId) {
    const auto* entry = lastWhere(trace, [&](const TraceEntry& candidate) {
        return candidate.host == analyst && !inWords(candidate).empty() && isAbout(candidate, momentId);
    });
    return entry == nullptr ? "nothing about it ever reached " + analyst
                            : std::string(inWords(*entry)) + at(*entry);
}

std::string lastTrouble(const std::vector<TraceEntry>& trace, const std::string& analyst) {
    const auto* entry = lastWhere(trace, [&](const TraceEntry& candidate) {
        return candidate.host == analyst &&
               (candidate.kind == TraceKind::logWarn || candidate.kind == TraceKind::logError);
    });
    if (entry == nullptr) {
        return "no trouble is logged there";
    }
    return "the last trouble logged there," + at(*entry) + ": " + printable(entry->field("message"));
}

}  // namespace

std::string explanation(const std::vector<TraceEntry>& trace, const std::string& analyst,
                        const Difference& difference) {
    const std::string trouble = lastTrouble(trace, analyst);
    return difference.momentId ? lastOfClip(trace, analyst, *difference.momentId) + "; " + trouble : trouble;
}

}  // namespace CodingDesk
