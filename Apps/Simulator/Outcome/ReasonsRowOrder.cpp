// Why the rows of a timeline stand in another order than those of the shared list.

#include "Apps/Simulator/Outcome/MomentCodes.hpp"
#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>

namespace Simulator {

namespace {

/// The timeline's row of that name got a clip's new one, which the list does not have yet: what has the name now was made since then,
/// for another clip.
Reason whyMadeAnew(const History& history, const StayHistory& stay, std::string_view name) {
    for (const std::size_t at : stay.target) {
        const auto& entry = history.entry(at);
        if (entry.field("name") != "setRowNameWithRowNum" || entry.field("oldName") != name) {
            continue;
        }
        for (const UserEdit& edit : history.edits) {
            if (edit.kind != EditKind::renameRow || edit.at > at || edit.oldName != name ||
                edit.name != entry.field("rowName") || edit.stay == never ||
                history.stays[edit.stay].session != stay.session) {
                continue;
            }
            const Reason reason = whyNotSent(history, edit);
            if (reason || whyNameIsHeldBack(history, edit)) {
                return reason ? reason : whyNameIsHeldBack(history, edit);
            }
        }
    }
    return std::nullopt;
}

}  // namespace

Reason whyInAnotherOrder(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    const auto& rows = stay.stay->picture.rows;
    const auto& view = stay.session->session.presentationView;
    if (!view) {
        return std::nullopt;
    }
    Reason reason;
    const auto isMadeAnew = [&](std::string_view name) {
        const Reason found = whyMadeAnew(history, stay, name);
        reason = found ? found : reason;
        return found.has_value();
    };
    std::vector<std::string_view> here;
    std::vector<std::string_view> there;
    for (const RowPicture& row : rows) {
        if (std::ranges::find(*view, row.name, &ReferenceHost::CodeRecord::name) != view->end() &&
            !isMadeAnew(row.name)) {
            here.push_back(row.name);
        }
    }
    for (const ReferenceHost::CodeRecord& code : *view) {
        if (std::ranges::find(rows, code.name, &RowPicture::name) != rows.end() && !isMadeAnew(code.name)) {
            there.push_back(code.name);
        }
    }
    return here == there ? reason : std::nullopt;  // of the other rows nothing is said
}

}  // namespace Simulator
