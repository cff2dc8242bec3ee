#include "Apps/CodingDesk/Report.hpp"

#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <ostream>

namespace CodingDesk {

namespace {

constexpr std::size_t longestLabel = 30;

std::size_t labelColumns(const std::vector<RowState>& rows) {
    std::size_t columns = 4;
    for (const RowState& row : rows) {
        columns = std::max(columns, columnsOf(printable(row.name)));
    }
    return std::min(columns, longestLabel);
}

enum class Cell : std::uint8_t { empty, moment, clip };

/// Which cells of a strip the row's clips touch; a clip without a length is a moment.
std::vector<Cell> cellsOf(const MatchState& state, const std::string& row, double matchEnd,
                          std::size_t columns) {
    std::vector<Cell> cells(columns, Cell::empty);
    const auto cellAt = [&](double seconds) {
        const double share = matchEnd > 0 ? seconds / matchEnd : 0;
        return std::min(columns - 1, static_cast<std::size_t>(share * static_cast<double>(columns)));
    };
    for (const ClipState& clip : state.clips) {
        if (clip.row != row) {
            continue;
        }
        if (clip.start == clip.end) {
            cells[cellAt(clip.start)] = std::max(cells[cellAt(clip.start)], Cell::moment);
            continue;
        }
        std::fill(cells.begin() + static_cast<std::ptrdiff_t>(cellAt(clip.start)),
                  cells.begin() + static_cast<std::ptrdiff_t>(cellAt(clip.end)) + 1, Cell::clip);
    }
    return cells;
}

std::string strip(const std::vector<Cell>& cells, Base::Color color, ConsoleLook::Colors colors) {
    std::string result;
    for (auto cell = cells.begin(); cell != cells.end();) {
        const auto end = std::find_if(cell, cells.end(), [&](Cell other) { return other != *cell; });
        const auto length = static_cast<std::size_t>(end - cell);
        if (*cell == Cell::empty) {
            result += dimmed(std::string(length, '.'), colors);
        } else {
            const bool hasColor = colors != ConsoleLook::Colors::none;
            const char sign = *cell == Cell::moment ? '|' : hasColor ? ' ' : '#';
            result += onColor(std::string(length, sign), color, colors);
        }
        cell = end;
    }
    return result;
}

std::size_t clipsOn(const MatchState& state, const std::string& row) {
    return static_cast<std::size_t>(std::ranges::count(state.clips, row, &ClipState::row));
}

std::string rightAligned(const std::string& text, std::size_t columns) {
    const std::size_t taken = columnsOf(text);
    return std::string(columns > taken ? columns - taken : 0, ' ') + text;
}

/// The cloud's rows, then whatever else carries clips anywhere, each name once.
std::vector<RowState> allRows(const std::vector<AnalystResult>& analysts, const MatchState& remote) {
    std::vector<RowState> rows;
    const auto addName = [&](const std::string& name) {
        if (std::ranges::find(rows, name, &RowState::name) == rows.end()) {
            rows.push_back({name, {}});
        }
    };
    const auto addState = [&](const MatchState& state) {
        std::ranges::for_each(state.rows, addName, &RowState::name);
        std::ranges::for_each(state.clips, addName, &ClipState::row);
    };
    addState(remote);
    for (const AnalystResult& analyst : analysts) {
        addState(analyst.state);
    }
    return rows;
}

}  // namespace

void writeStrips(std::ostream& out, const AnalystResult& analyst, double matchEnd, const ConsoleLook& look) {
    const std::size_t label = labelColumns(analyst.state.rows);
    const std::size_t columns = std::max<std::size_t>(10, look.columns - std::min(look.columns, label + 10));
    out << bold(analyst.name, look.colors) << '\n';
    for (const RowState& row : analyst.state.rows) {
        const auto cells = cellsOf(analyst.state, row.name, matchEnd, columns);
        out << "  " << fitted(row.name, label) << ' ' << strip(cells, row.color, look.colors)
            << rightAligned(std::to_string(clipsOn(analyst.state, row.name)), 5) << '\n';
    }
}

void writeCounts(std::ostream& out, const std::vector<AnalystResult>& analysts, const MatchState& remote) {
    const std::vector<RowState> rows = allRows(analysts, remote);
    const std::size_t label = labelColumns(rows);
    constexpr std::size_t column = 11;
    out << "Clips on each timeline (tagged by that analyst)\n  " << std::string(label, ' ');
    for (const AnalystResult& analyst : analysts) {
        out << rightAligned(analyst.name, column);
    }
    out << rightAligned("cloud", column) << '\n';
    const auto line = [&](const std::string& name, const auto& countIn, const auto& taggedBy,
                          std::size_t inCloud) {
        out << "  " << fitted(name, label);
        for (const AnalystResult& analyst : analysts) {
            out << rightAligned(
                std::to_string(countIn(analyst)) + " (" + std::to_string(taggedBy(analyst)) + ")", column);
        }
        out << rightAligned(std::to_string(inCloud), column) << '\n';
    };
    for (const RowState& row : rows) {
        line(
            row.name, [&](const AnalystResult& analyst) { return clipsOn(analyst.state, row.name); },
            [&](const AnalystResult& analyst) {
                const auto found = analyst.tagged.find(row.name);
                return found == analyst.tagged.end() ? 0 : found->second;
            },
            clipsOn(remote, row.name));
    }
    line(
        "all", [](const AnalystResult& analyst) { return analyst.state.clips.size(); },
        [](const AnalystResult& analyst) {
            std::size_t sum = 0;
            for (const auto& [row, count] : analyst.tagged) {
                sum += count;
            }
            return sum;
        },
        remote.clips.size());
}

void writeArrivals(std::ostream& out, const ArrivalSummary& summary,
                   const std::vector<AnalystResult>& analysts) {
    if (summary.arrivals == 0) {
        out << "No edit arrived anywhere.\n";
        return;
    }
    out << "From edit to arrival at the others: median " << decimal(summary.median, 2)
        << " s, 95th percentile " << decimal(summary.percentile95, 2) << " s, largest "
        << decimal(summary.largest, 2) << " s (" << analysts[summary.largestBy].name << " to "
        << analysts[summary.largestAt].name << ").\n"
        << "  " << counted(summary.edits, "edit") << ", " << counted(summary.arrivals, "arrival");
    if (summary.missing > 0) {
        out << "; " << summary.missing
            << " never seen: a later edit of the same clip or row came first, or it was lost";
    }
    out << '\n';
}

}  // namespace CodingDesk
