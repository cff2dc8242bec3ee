#include "ReferenceHost/Trace.hpp"

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <sstream>
#include <utility>

namespace ReferenceHost {

namespace {

void writeQuoted(std::ostream& stream, std::string_view text) {
    stream << '"';
    for (const char character : text) {
        switch (character) {
        case '"':
        case '\\':
            stream << '\\' << character;
            break;
        case '\n':
            stream << "\\n";
            break;
        case '\r':
            stream << "\\r";
            break;
        default:
            stream << character;
        }
    }
    stream << '"';
}

}  // namespace

std::string_view TraceEntry::field(std::string_view name) const {
    const auto found =
        std::find_if(fields.begin(), fields.end(), [&](const auto& field) { return field.first == name; });
    return found == fields.end() ? std::string_view() : std::string_view(found->second);
}

Trace::Trace(Clock clock) : clock_(std::move(clock)) {}

void Trace::record(std::string_view host, std::string_view kind, TraceFields fields) {
    if (!isRecording()) {
        return;
    }
    const std::lock_guard lock(mutex_);
    // Under the lock, so that times never go back from one entry to the next.
    entries_.emplace_back(clock_(), std::string(host), std::string(kind), std::move(fields));
}

std::size_t Trace::size() const {
    const std::lock_guard lock(mutex_);
    return entries_.size();
}

std::vector<TraceEntry> Trace::entries(std::size_t from) const {
    const std::lock_guard lock(mutex_);
    const auto first = entries_.begin() + static_cast<std::ptrdiff_t>(std::min(from, entries_.size()));
    return {first, entries_.end()};
}

std::vector<TraceEntry> Trace::entries(std::string_view host, std::string_view kind) const {
    std::vector<TraceEntry> chosen;
    const std::lock_guard lock(mutex_);
    std::copy_if(entries_.begin(), entries_.end(), std::back_inserter(chosen), [&](const TraceEntry& entry) {
        return entry.kind == kind && (host.empty() || entry.host == host);
    });
    return chosen;
}

void Trace::clear() {
    const std::lock_guard lock(mutex_);
    entries_.clear();
}

std::vector<TraceEntry> Trace::take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(entries_, {});
}

void Trace::write(std::ostream& stream) const {
    for (const TraceEntry& entry : entries()) {
        stream << entry << '\n';
    }
}

std::string Trace::text() const {
    std::ostringstream stream;
    write(stream);
    return stream.str();
}

std::ostream& operator<<(std::ostream& stream, const TraceEntry& entry) {
    char time[32] = {};
    std::snprintf(time, sizeof time, "%14.6f", entry.time.count());
    stream << time << ' ' << (entry.host.empty() ? "-" : entry.host) << ' ' << entry.kind;
    for (const auto& [name, value] : entry.fields) {
        stream << ' ' << name << '=';
        writeQuoted(stream, value);
    }
    return stream;
}

}  // namespace ReferenceHost
