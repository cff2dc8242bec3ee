#pragma once

#include "Base/ExecutionProtocol.hpp"

#include <atomic>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ReferenceHost {

using TraceFields = std::vector<std::pair<std::string, std::string>>;

/// One thing that happened at one host.
struct TraceEntry {
    TraceEntry(Base::Seconds time_, std::string host_, std::string kind_, TraceFields fields_)
        : time(time_), host(std::move(host_)), kind(std::move(kind_)), fields(std::move(fields_)) {}

    Base::Seconds time;
    std::string host;
    std::string kind;  ///< one of `TraceKind`, or a host's own word
    TraceFields fields;

    /// The field's value; empty when the entry has none of that name.
    [[nodiscard]] std::string_view field(std::string_view name) const;

    friend bool operator==(const TraceEntry&, const TraceEntry&) = default;
};

/// The kinds of entries that the reference host writes.
namespace TraceKind {
inline constexpr const char* call = "call";  ///< a host operation was called; field "name" and its arguments
inline constexpr const char* answer = "answer";  ///< an asynchronous host operation ended
inline constexpr const char* logInfo = "log.info";
inline constexpr const char* logWarn = "log.warn";
inline constexpr const char* logError = "log.error";
inline constexpr const char* logUsage = "log.usage";
inline constexpr const char* blockStart = "block.start";  ///< fields "timelineId", "number", "kind"
inline constexpr const char* blockEnd = "block.end";      ///< fields "timelineId", "number"
inline constexpr const char* count = "count";             ///< fields "timelineId", "old", "new", "reason"
inline constexpr const char* uploadStart =
    "upload.start";  ///< fields "timelineId", "number", "first", "last": modify counts
inline constexpr const char* uploadEnd = "upload.end";     ///< fields "timelineId", "number", "succeeded"
inline constexpr const char* wrongThread = "wrongThread";  ///< fields "file", "function", "line", "expected"
inline constexpr const char* notification = "notification";  ///< field "name", and what it is about
inline constexpr const char* alert = "alert";  ///< is shown: "style", "message", "text", "buttons"
inline constexpr const char* alertAnswer = "alertAnswer";  ///< fields "message", "button"
inline constexpr const char* sheet = "sheet";              ///< as an alert, and "window"
inline constexpr const char* sheetAnswer = "sheetAnswer";  ///< fields "window", "message", "button"
inline constexpr const char* beep = "beep";
inline constexpr const char* observerFailed = "observerFailed";  ///< fields "name", "error"
}  // namespace TraceKind

/// What happened, in the order in which it happened, at every host that writes into it. Any thread. With virtual time the
/// same seed gives the same trace to the letter.
class Trace {
public:
    using Clock = std::function<Base::Seconds()>;

    /// `clock`: called for each entry, from any thread.
    explicit Trace(Clock clock);

    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    void record(std::string_view host, std::string_view kind, TraceFields fields = {});

    /// While off, nothing is recorded and `record` costs next to nothing. On at first. A caller whose fields are dear to
    /// build asks `isRecording` first.
    void setRecording(bool recording) { recording_.store(recording, std::memory_order_relaxed); }
    [[nodiscard]] bool isRecording() const { return recording_.load(std::memory_order_relaxed); }

    [[nodiscard]] std::size_t size() const;

    /// A copy of all entries, or of those from index `from` on.
    [[nodiscard]] std::vector<TraceEntry> entries(std::size_t from = 0) const;

    /// The entries of one kind, of one host or (with an empty host) of all.
    [[nodiscard]] std::vector<TraceEntry> entries(std::string_view host, std::string_view kind) const;

    void clear();

    /// All entries, which are not in the trace any more.
    [[nodiscard]] std::vector<TraceEntry> take();

    /// One line an entry; a line feed, quote or backslash within a value is written as an escape.
    void write(std::ostream& stream) const;
    [[nodiscard]] std::string text() const;

private:
    Clock clock_;
    std::atomic<bool> recording_{true};
    mutable std::mutex mutex_;
    std::vector<TraceEntry> entries_;
};

/// One entry as `Trace::write` writes it, without the line's end.
std::ostream& operator<<(std::ostream& stream, const TraceEntry& entry);

}  // namespace ReferenceHost
