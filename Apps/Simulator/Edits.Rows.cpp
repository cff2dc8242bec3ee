// What an analyst does with rows.

#include "Apps/Simulator/Edits.hpp"

#include "Apps/Simulator/Texts.hpp"

#include <array>

namespace Simulator {

namespace {

Base::Color paletteColor(std::uint32_t choice) {
    constexpr std::array<Base::Color, 6> palette{Base::Color(196, 60, 54),  Base::Color(52, 120, 190),
                                                 Base::Color(70, 150, 90),  Base::Color(230, 170, 40),
                                                 Base::Color(130, 90, 170), Base::Color(90, 90, 90)};
    return palette[choice % palette.size()];
}

}  // namespace

std::optional<Deed> Edits::prepareRow(const Step& step, std::size_t number) {
    switch (step.action) {
    case Action::addRow:
        return addRow(step, number);
    case Action::renameRow:
        return renameRow(step, "Code " + std::to_string(number));
    case Action::renameRowToCommon:
        return renameRow(step, commonName(step.other));
    case Action::recolorRow:
        return recolorRow(step);
    case Action::moveRow:
        return moveRow(step);
    case Action::removeRow:
        return removeRow(step);
    case Action::undoRemoveRow:
        return undoRemoveRow(step);
    default:
        return std::nullopt;
    }
}

Edits::RowPointer Edits::makeRow(const std::string& name, const Step& step, Action what,
                                 std::optional<std::int64_t> to) {
    const Base::Color color = paletteColor(step.other);
    auto row = timeline_->addRow(name, color, to);
    record(what, {{"row", row->uniqueId()},
                  {"name", name},
                  {"color", textOf(color)},
                  {"to", std::to_string(row->rowNum())}});
    return row;
}

Deed Edits::addRow(const Step& step, std::size_t number) {
    return doing([this, step, number] {
        const auto to = static_cast<std::int64_t>(step.object % (timeline_->numberOfRows() + 1));
        (void)makeRow("Code " + std::to_string(number), step, step.action, to);
    });
}

Deed Edits::renameRow(const Step& step, const std::string& name) {
    const auto row = rowNumber(step.object);
    if (!row) {
        return noRow();
    }
    return doing([this, row, step, name] {
        const std::string oldName = row->name();
        if (timeline_->renameRow(row->uniqueId(), name)) {
            record(step.action, {{"row", row->uniqueId()}, {"name", name}, {"oldName", oldName}});
        }
    });
}

Deed Edits::recolorRow(const Step& step) {
    const auto row = rowNumber(step.object);
    if (!row) {
        return noRow();
    }
    return doing([this, row, step] {
        const Base::Color color = paletteColor(step.other);
        if (timeline_->recolorRow(row->uniqueId(), color)) {
            record(step.action, {{"row", row->uniqueId()}, {"name", row->name()}, {"color", textOf(color)}});
        }
    });
}

Deed Edits::moveRow(const Step& step) {
    const auto row = rowNumber(step.object);
    if (!row) {
        return noRow();
    }
    return doing([this, row, step] {
        const auto to = static_cast<std::int64_t>(step.other % timeline_->numberOfRows());
        if (timeline_->moveRow(row->uniqueId(), to)) {
            const auto above = timeline_->rowAt(row->rowNum() - 1);
            record(step.action, {{"row", row->uniqueId()},
                                 {"name", row->name()},
                                 {"to", std::to_string(row->rowNum())},
                                 {"above", above ? above->name() : std::string()}});
        }
    });
}

Deed Edits::removeRow(const Step& step) {
    const auto row = rowNumber(step.object);
    if (!row || timeline_->numberOfRows() < 2) {
        return noRow();
    }
    return doing([this, row, step] {
        if (timeline_->removeRow(row->uniqueId())) {
            removedRows_.push_back({timeline_->uniqueId(), row->uniqueId()});
            record(step.action, {{"row", row->uniqueId()},
                                 {"name", row->name()},
                                 {"clips", clipsOf(*row)},
                                 {"moments", momentsOf(*row)}});
        }
    });
}

Deed Edits::undoRemoveRow(const Step& step) {
    if (removedRows_.empty() || removedRows_.back().timelineId != timeline_->uniqueId()) {
        return nothingToDo("no row was removed");
    }
    return doing([this, step] {
        const std::string rowId = removedRows_.back().id;
        removedRows_.pop_back();
        if (timeline_->restoreRow(rowId)) {
            const auto row = timeline_->findRow(rowId);
            record(step.action, {{"row", rowId},
                                 {"name", row->name()},
                                 {"clips", clipsOf(*row)},
                                 {"moments", momentsOf(*row)},
                                 {"to", std::to_string(row->rowNum())}});
        }
    });
}

}  // namespace Simulator
