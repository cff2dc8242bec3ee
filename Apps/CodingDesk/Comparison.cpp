#include "Apps/CodingDesk/Comparison.hpp"

#include "Apps/CodingDesk/Palette.hpp"
#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <map>
#include <set>

namespace CodingDesk {

MatchState stateOf(const ReferenceHost::TaggingSessionRecord& session) {
    MatchState state;
    for (const auto& moment : session.moments) {
        state.clips.push_back({moment->id, moment->code, moment->start, moment->end});
    }
    if (session.presentationView) {
        for (const auto& code : *session.presentationView) {
            state.rows.push_back({code.name, code.color});
        }
    }
    return state;
}

namespace {

std::string described(const ClipState& clip) {
    return "the clip " + matchTime(clip.start) + "–" + matchTime(clip.end) + " on " + quoted(clip.row);
}

class Comparison {
public:
    Comparison(const MatchState& timeline, const MatchState& remote) : timeline_(timeline), remote_(remote) {}

    std::vector<Difference> make() {
        compareClips();
        compareRows();
        return std::move(found_);
    }

private:
    void compareClips() {
        std::map<std::string, const ClipState*> here;
        for (const ClipState& clip : timeline_.clips) {
            if (!clip.momentId) {
                report(described(clip) + " was never sent");
            } else if (!here.emplace(*clip.momentId, &clip).second) {
                report(described(clip) + " is there twice", clip.momentId);
            }
        }
        for (const ClipState& moment : remote_.clips) {
            const auto found = here.find(moment.momentId.value_or(std::string{}));
            if (found == here.end()) {
                report(described(moment) + " is missing", moment.momentId);
            } else {
                compareClip(*found->second, moment);
                here.erase(found);
            }
        }
        for (const auto& [momentId, clip] : here) {
            report(described(*clip) + " is still there, though it was deleted", momentId);
        }
    }

    void compareClip(const ClipState& clip, const ClipState& moment) {
        if (clip.row != moment.row) {
            report(described(clip) + " belongs on " + quoted(moment.row), clip.momentId);
        }
        if (clip.start != moment.start || clip.end != moment.end) {
            report(described(clip) + " should be " + exactTimes(moment) + " and is " + exactTimes(clip),
                   clip.momentId);
        }
    }

    // All the digits that tell two times apart, which minutes and tenths would not.
    static std::string exactTimes(const ClipState& clip) {
        return decimal(clip.start, 3) + "–" + decimal(clip.end, 3) + " s";
    }

    void compareRows() {
        std::multiset<std::string> expected;
        for (const RowState& row : remote_.rows) {
            expected.insert(row.name);
        }
        std::set<std::string> rowsWithClips;
        for (const ClipState& clip : timeline_.clips) {
            rowsWithClips.insert(clip.row);
        }
        std::vector<const RowState*> rows;  // those that the remote list has, too
        for (const RowState& row : timeline_.rows) {
            if (const auto found = expected.find(row.name); found != expected.end()) {
                expected.erase(found);
                rows.push_back(&row);
            } else if (!rowsWithClips.contains(row.name)) {
                report("the empty row " + quoted(row.name) +
                       " is there, which the shared list does not have");
            }
        }
        for (const std::string& name : expected) {
            report("the row " + quoted(name) + " is missing");
        }
        compareColors(rows);
        if (expected.empty()) {
            compareOrder(rows);
        }
    }

    void compareColors(const std::vector<const RowState*>& rows) {
        for (const RowState* row : rows) {
            const auto remote = std::ranges::find(remote_.rows, row->name, &RowState::name);
            if (Base::compare(row->color, remote->color) == Base::ColorComparison::different) {
                report("the row " + quoted(row->name) + " should be " + hexOf(remote->color) + " and is " +
                       hexOf(row->color));
            }
        }
    }

    void compareOrder(const std::vector<const RowState*>& rows) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            if (rows[i]->name != remote_.rows[i].name) {
                report("the row in place " + std::to_string(i + 1) + " should be " +
                       quoted(remote_.rows[i].name) + " and is " + quoted(rows[i]->name));
            }
        }
    }

    void report(std::string what, std::optional<std::string> momentId = std::nullopt) {
        found_.push_back({std::move(what), std::move(momentId)});
    }

    const MatchState& timeline_;
    const MatchState& remote_;
    std::vector<Difference> found_;
};

}  // namespace

std::vector<Difference> differences(const MatchState& timeline, const MatchState& remote) {
    return Comparison(timeline, remote).make();
}

}  // namespace CodingDesk
