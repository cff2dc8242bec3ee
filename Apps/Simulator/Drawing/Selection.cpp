#include "Apps/Simulator/Drawing/Selection.hpp"

#include "Apps/Simulator/Record.hpp"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace Simulator {

namespace TraceKind = ReferenceHost::TraceKind;

namespace {

/// The elements of a list whose separators are commas.
std::vector<std::string_view> elementsOf(std::string_view list) {
    std::vector<std::string_view> elements;
    while (!list.empty()) {
        const std::size_t length = std::min(list.find(','), list.size());
        elements.push_back(list.substr(0, length));
        list.remove_prefix(std::min(length + 1, list.size()));
    }
    return elements;
}

bool isLog(std::string_view kind) { return kind.starts_with("log."); }

/// What happens all the time and explains little.
bool isNoise(const ReferenceHost::TraceEntry& entry) {
    constexpr std::array<std::string_view, 2> calls{"user", "boolForKey"};
    return entry.kind == TraceKind::logInfo || entry.kind == TraceKind::notification ||
           (entry.kind == TraceKind::call && std::ranges::find(calls, entry.field("name")) != calls.end());
}

/// What concerns everything that an analyst does, so that it is shown whatever a drawing is about.
bool isWeather(const ReferenceHost::TraceEntry& entry) {
    return entry.host.empty() || entry.kind == "link" || entry.kind == "subscription" ||
           entry.kind == SimulatedKind::stay ||
           (entry.kind == SimulatedKind::fault && entry.field("operation").empty());
}

}  // namespace

Selection::Selection(const TraceEntries& entries, const TraceIndex& index, const ShortIds& ids,
                     const DrawingOptions& options)
    : entries_(entries),
      index_(index),
      isAbout_(options.about.has_value()),
      shown_(entries.size(), !options.about) {
    if (options.about) {
        findSubjects(ids, *options.about);
        keepWhatConcernsSubjects();
        addSurroundings();
    }
    applyFilters(options);
}

void Selection::findSubjects(const ShortIds& ids, std::string_view about) {
    for (const Entry& entry : entries_) {
        for (const auto& [name, value] : entry.fields) {
            if (isLog(entry.kind)) {
                continue;
            }
            for (const std::string_view element : elementsOf(value)) {
                if (ids.means(about, element)) {
                    subjects_.insert(element);
                }
            }
        }
    }
    if (subjects_.empty()) {
        throw std::invalid_argument("nothing in the trace has the identifier \"" + std::string(about) + '"');
    }
    pairMomentsAndClips();
    // A moment stands for a clip at each analyst, and a clip may have had several moments.
    std::vector<std::string_view> added(subjects_.begin(), subjects_.end());
    while (!added.empty()) {
        const auto [begin, end] = standsFor_.equal_range(added.back());
        added.pop_back();
        for (auto other = begin; other != end; ++other) {
            if (subjects_.insert(other->second).second) {
                added.push_back(other->second);
            }
        }
    }
}

void Selection::pair(std::string_view one, std::string_view other) {
    if (!one.empty() && !other.empty()) {
        standsFor_.emplace(one, other);
        standsFor_.emplace(other, one);
    }
}

void Selection::pairMomentsAndClips() {
    for (std::size_t at = 0; at < entries_.size(); ++at) {
        const Entry& entry = entries_[at];
        pair(entry.field("moment"), entry.field("clip"));
        pair(entry.field("momentId"), entry.field("instanceId"));
        const auto answer = index_.answerOf(at);
        if (answer && entry.field("name") == "createMoments") {
            const auto clips = elementsOf(entry.field("ids"));
            const auto moments = elementsOf(entries_[*answer].field("ids"));
            for (std::size_t i = 0; i < std::min(clips.size(), moments.size()); ++i) {
                pair(moments[i], clips[i]);
            }
        }
    }
}

bool Selection::mentionsSubject(const Entry& entry) const {
    for (const auto& [name, value] : entry.fields) {
        if (isLog(entry.kind)) {
            for (const std::string_view subject : subjects_) {
                if (value.find(subject) != std::string::npos) {
                    return true;
                }
            }
        }
        for (const std::string_view element : elementsOf(value)) {
            if (subjects_.contains(element)) {
                return true;
            }
        }
    }
    return false;
}

void Selection::keepWhatConcernsSubjects() {
    for (std::size_t at = 0; at < entries_.size(); ++at) {
        shown_[at] = mentionsSubject(entries_[at]) && !isNoise(entries_[at]);
    }
}

/// The rest of the calls, the blocks and uploads around, the step that an edit came from.
void Selection::addSurroundings() {
    for (std::size_t at = 0; at < entries_.size(); ++at) {
        if (const auto call = index_.callOf(at); call && shown_[at]) {
            shown_[*call] = true;
        }
    }
    for (std::size_t at = 0; at < entries_.size(); ++at) {
        if (const auto call = index_.callOf(at); call && shown_[*call]) {
            shown_[at] = true;  // its effect, its answer, the fault that befell it
        }
        if (shown_[at] && entries_[at].kind == SimulatedKind::edit) {
            std::size_t step = at;
            while (step > 0 && entries_[step].kind != SimulatedKind::step) {
                --step;
            }
            shown_[step] = shown_[step] || entries_[step].host == entries_[at].host;
        }
    }
    for (const TraceSpan& span : index_.spans()) {
        const std::string& host = entries_[span.start].host;
        const std::size_t last = span.end.value_or(entries_.size() - 1);
        bool isAround = false;
        for (std::size_t at = span.start; at <= last && !isAround; ++at) {
            isAround = shown_[at] && entries_[at].host == host;
        }
        for (std::size_t at = span.start; at <= last && isAround; ++at) {
            const std::string& kind = entries_[at].kind;
            const bool tells =
                kind == TraceKind::count || kind == TraceKind::logWarn || kind == TraceKind::logError;
            shown_[at] =
                shown_[at] || (entries_[at].host == host && (tells || at == span.start || at == span.end));
        }
    }
    for (std::size_t at = 0; at < entries_.size(); ++at) {
        shown_[at] = shown_[at] || isWeather(entries_[at]);
    }
}

void Selection::applyFilters(const DrawingOptions& options) {
    for (const std::string& analyst : options.analysts) {
        if (std::ranges::find(index_.hosts(), analyst) == index_.hosts().end()) {
            throw std::invalid_argument("nobody in the trace is called \"" + analyst + '"');
        }
    }
    for (std::size_t at = 0; at < entries_.size(); ++at) {
        const Entry& entry = entries_[at];
        const bool isOfAnalyst = options.analysts.empty() || entry.host.empty() ||
                                 std::ranges::find(options.analysts, entry.host) != options.analysts.end();
        const double time = entry.time.count();
        shown_[at] = shown_[at] && isOfAnalyst && (!options.from || time >= *options.from) &&
                     (!options.to || time <= *options.to) && (options.everything || !isNoise(entry));
    }
}

}  // namespace Simulator
