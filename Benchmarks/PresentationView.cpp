// A presentation view that turns the rows' order round, and one that changes nothing.

#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/Desk.hpp"

#include <algorithm>

namespace Benchmarks {
namespace {

std::shared_ptr<Desk> deskWithRows(std::int64_t rows) {
    auto desk = std::make_shared<Desk>();
    desk->addRows(rows);
    desk->addClips(10 * rows, rows);
    return desk;
}

RemoteCoding::PresentationViewItem viewOf(std::int64_t rows, bool isReversed) {
    auto view = makeView(rows);
    if (isReversed) {
        std::ranges::reverse(view.subViews);
    }
    return view;
}

Trial applied(std::int64_t rows, bool isReversed) {
    auto desk = deskWithRows(rows);
    desk->join(makeSession({}));
    desk->upload();
    return Trial(rows, [desk, view = std::optional(viewOf(rows, isReversed))] {
        desk->synchroniser().apply(desk->timelinePointer(), view);
    });
}

/// The edits that turn the order round, each as the component makes it, and a table of the rows.
Trial reversedFloor(std::int64_t rows) {
    auto desk = deskWithRows(rows);
    desk->makeRoom(rows);
    return Trial(rows, [desk, rows] {
        const auto target = desk->timeline().codingTarget();
        for (std::int64_t place = 0; place + 1 < rows; ++place) {
            target->rearrangeRowsFrom({rows - 1}, place);
        }
        const auto list = desk->timeline().allRows();
        for (const auto& row : *list) {
            desk->remember(row->uniqueId(), row->name());
        }
    });
}

/// Nothing is to be edited: the rows are compared, and written into a table.
Trial unchangedFloor(std::int64_t rows) {
    auto desk = deskWithRows(rows);
    desk->makeRoom(rows);
    return Trial(rows, [desk, view = viewOf(rows, false)] {
        const auto list = desk->timeline().allRows();
        for (std::size_t index = 0; index < list->size(); ++index) {
            const auto& row = list->at(index);
            if (row->name() == view.subViews[index].name && row->color() == view.subViews[index].color()) {
                desk->remember(row->uniqueId(), row->name());
            }
        }
    });
}

const CaseGroup group({
    {"presentation view, reversed/component",
     {40, 200},
     [](std::int64_t rows) { return applied(rows, true); }},
    {"presentation view, reversed/floor", {40, 200}, reversedFloor},
    {"presentation view, unchanged/component",
     {40, 200},
     [](std::int64_t rows) { return applied(rows, false); }},
    {"presentation view, unchanged/floor", {40, 200}, unchangedFloor},
});

}  // namespace
}  // namespace Benchmarks
