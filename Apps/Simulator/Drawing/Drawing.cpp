#include "Apps/Simulator/Drawing/Drawing.hpp"

#include "Apps/Simulator/Drawing/Bars.hpp"
#include "Apps/Simulator/Drawing/Columns.hpp"
#include "Apps/Simulator/Drawing/EntryWords.hpp"
#include "Apps/Simulator/Drawing/Selection.hpp"

#include <algorithm>
#include <cstdio>
#include <ostream>

namespace Simulator {

namespace TraceKind = ReferenceHost::TraceKind;

namespace {

constexpr std::size_t timeColumns = 18;  // the line of the trace, and the time
constexpr std::size_t fewestColumns = 32;
constexpr std::size_t linesPerHeading = 60;
constexpr Base::Seconds shortestIdleness{2};

/// An analyst, with the bars that are open now.
struct Lane {
    std::string name;
    Bars bars;
    std::size_t barColumns = 0;
};

class Chart {
public:
    Chart(std::ostream& stream, const TraceEntries& entries, const DrawingOptions& options)
        : stream_(stream),
          entries_(entries),
          index_(entries),
          ids_(entries),
          selection_(entries, index_, ids_, options),
          words_(entries, index_, ids_) {
        for (const std::string& host : index_.hosts()) {
            if (options.analysts.empty() ||
                std::ranges::find(options.analysts, host) != options.analysts.end()) {
                lanes_.push_back({host, {}, 0});
            }
        }
        measureBars();
        const std::size_t width = std::max(options.width, timeColumns) - timeColumns;
        columns_ = std::max(fewestColumns, width / std::max<std::size_t>(lanes_.size(), 1) - 2);
    }

    void draw() {
        if (!selection_.subjects().empty()) {
            stream_ << "About";
            for (const std::string_view id : selection_.subjects()) {
                stream_ << ' ' << ids_.shorten(id) << " (" << id << ')';
            }
            stream_ << '\n';
        }
        for (std::size_t at = 0; at < entries_.size(); ++at) {
            at = drawEntry(at);
        }
    }

private:
    [[nodiscard]] Lane* laneOf(std::size_t at) {
        const auto lane = std::ranges::find(lanes_, entries_[at].host, &Lane::name);
        return lane != lanes_.end() ? &*lane : nullptr;
    }

    /// How many bars stand side by side in each column.
    void measureBars() {
        for (std::size_t at = 0; at < entries_.size(); ++at) {
            if (Lane* const lane = laneOf(at)) {
                openBar(*lane, at);
                closeBar(*lane, at);
                lane->barColumns = lane->bars.places();
            }
        }
        for (Lane& lane : lanes_) {
            lane.bars = {};
        }
    }

    void openBar(Lane& lane, std::size_t at) {
        const TraceSpan* const span = index_.spanAt(at);
        if (span != nullptr && span->start == at && selection_.shows(*span)) {
            lane.bars.open(*span);
        }
    }

    void closeBar(Lane& lane, std::size_t at) {
        const TraceSpan* const span = index_.spanAt(at);
        if (span != nullptr && span->end == at) {
            lane.bars.close(*span);
        }
    }

    /// Gives the last entry that the lines drawn tell of.
    std::size_t drawEntry(std::size_t at) {
        if (selection_.shows(at)) {
            drawIdleness(at);  // before a bar begins here
        }
        Lane* const lane = laneOf(at);
        if (lane == nullptr) {
            if (selection_.shows(at)) {
                drawAcross(at);
            }
            return at;
        }
        openBar(*lane, at);
        std::size_t last = at;
        if (selection_.shows(at)) {
            const TraceSpan* const span = index_.spanAt(at);
            std::string text = words_.of(at);
            auto part = span == nullptr     ? Bars::Part::middle
                        : span->start == at ? Bars::Part::start
                                            : Bars::Part::end;
            if (const auto end = wholeSpan(at)) {
                last = *end;
                part = Bars::Part::whole;
                for (std::size_t inside = at + 1; inside < last; ++inside) {
                    text += selection_.shows(inside) ? " · " + words_.of(inside) : "";
                }
            }
            drawLines(*lane, at, span, part, text);
        }
        closeBar(*lane, last);
        return last;
    }

    /// The end of a block that starts here and in which nothing is shown but counts: it takes one line.
    [[nodiscard]] std::optional<std::size_t> wholeSpan(std::size_t at) const {
        const TraceSpan* const span = index_.spanAt(at);
        if (span == nullptr || span->start != at || !span->end || !selection_.shows(*span->end)) {
            return std::nullopt;
        }
        for (std::size_t inside = at + 1; inside < *span->end; ++inside) {
            const auto& entry = entries_[inside];
            if (entry.host != entries_[at].host ||
                (selection_.shows(inside) && entry.kind != TraceKind::count)) {
                return std::nullopt;
            }
        }
        return span->end;
    }

    void drawLines(const Lane& lane, std::size_t at, const TraceSpan* span, Bars::Part part,
                   const std::string& text) {
        const std::size_t room = columns_ - lane.barColumns - 1;
        Bars own = lane.bars;  // as they stand in the line that is being drawn
        bool isFirst = true;
        for (const std::string& line : brokenInLines(text, room)) {
            startLine(at, isFirst);
            std::string drawn;
            for (const Lane& other : lanes_) {
                const bool isOwn = &other == &lane;
                std::string bars = isOwn ? own.line(isFirst ? span : nullptr, part) : other.bars.line();
                bars = filled(std::move(bars), other.barColumns);
                drawn += "│ " + filled(isOwn ? bars + ' ' + line : bars, columns_);
            }
            endLine(drawn);
            if (span != nullptr && part != Bars::Part::start) {
                own.close(*span);
            }
            isFirst = false;
        }
    }

    /// What concerns everybody.
    void drawAcross(std::size_t at) {
        startLine(at, true);
        const std::size_t width = lanes_.size() * (columns_ + 2);
        std::string line = "├── " + words_.of(at) + ' ';
        for (std::size_t column = columnsOf(line); column < width; ++column) {
            line += "─";
        }
        endLine(line);
    }

    void drawIdleness(std::size_t at) {
        const Base::Seconds time = entries_[at].time;
        if (lastTime_ && time - *lastTime_ >= shortestIdleness) {
            char text[2 * timeColumns] = {};
            std::snprintf(text, sizeof text, "   ··· %9.1f s", (time - *lastTime_).count());
            stream_ << filled(text, timeColumns);
            std::string drawn;
            for (const Lane& lane : lanes_) {
                drawn += "│ " + filled(lane.bars.idleLine(), columns_);
            }
            endLine(drawn);
        }
    }

    void startLine(std::size_t at, bool isFirst) {
        ++linesSinceHeading_;
        if (!isFirst) {
            stream_ << std::string(timeColumns, ' ');
            return;
        }
        if (linesSinceHeading_ > linesPerHeading) {
            drawHeading();
            linesSinceHeading_ = 1;
        }
        char text[2 * timeColumns] = {};
        const double time = entries_[at].time.count();
        if (lastTime_ == entries_[at].time) {
            std::snprintf(text, sizeof text, "%6zu", at + 1);
        } else {
            std::snprintf(text, sizeof text, "%6zu %10.3f", at + 1, time);
        }
        stream_ << filled(text, timeColumns);
        lastTime_ = entries_[at].time;
    }

    void drawHeading() {
        stream_ << filled("  line       time", timeColumns);
        std::string drawn;
        for (const Lane& lane : lanes_) {
            drawn += "│ " + filled(std::string(lane.barColumns, ' ') + ' ' + lane.name, columns_);
        }
        endLine(drawn);
    }

    void endLine(std::string line) {
        line.erase(line.find_last_not_of(' ') + 1);
        stream_ << line << '\n';
    }

    std::ostream& stream_;
    const TraceEntries& entries_;
    TraceIndex index_;
    ShortIds ids_;
    Selection selection_;
    EntryWords words_;
    std::vector<Lane> lanes_;
    std::size_t columns_ = 0;
    std::size_t linesSinceHeading_ = linesPerHeading;
    std::optional<Base::Seconds> lastTime_;
};

}  // namespace

void draw(std::ostream& stream, const TraceEntries& entries, const DrawingOptions& options) {
    Chart(stream, entries, options).draw();
}

}  // namespace Simulator
