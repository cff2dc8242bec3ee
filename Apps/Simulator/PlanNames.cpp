#include "Apps/Simulator/Plan.hpp"

namespace Simulator {

const char* nameOf(Action action) {
    switch (action) {
    case Action::tag:
        return "tag";
    case Action::tagNewCode:
        return "tagNewCode";
    case Action::retime:
        return "retime";
    case Action::retimeShared:
        return "retimeShared";
    case Action::note:
        return "note";
    case Action::noteShared:
        return "noteShared";
    case Action::deleteClip:
        return "deleteClip";
    case Action::deleteShared:
        return "deleteShared";
    case Action::undoDelete:
        return "undoDelete";
    case Action::addRow:
        return "addRow";
    case Action::renameRow:
        return "renameRow";
    case Action::renameRowToCommon:
        return "renameRowToCommon";
    case Action::recolorRow:
        return "recolorRow";
    case Action::moveRow:
        return "moveRow";
    case Action::removeRow:
        return "removeRow";
    case Action::undoRemoveRow:
        return "undoRemoveRow";
    case Action::closeTimeline:
        return "closeTimeline";
    case Action::leave:
        return "leave";
    case Action::join:
        return "join";
    case Action::host:
        return "host";
    case Action::failBefore:
        return "failBefore";
    case Action::failAfter:
        return "failAfter";
    case Action::hang:
        return "hang";
    case Action::answerFalse:
        return "answerFalse";
    case Action::answerShort:
        return "answerShort";
    case Action::dropSubscription:
        return "dropSubscription";
    case Action::repeatEvents:
        return "repeatEvents";
    case Action::delayEvents:
        return "delayEvents";
    case Action::linkDown:
        return "linkDown";
    case Action::restartService:
        return "restartService";
    case Action::withdrawCodingTarget:
        return "withdrawCodingTarget";
    case Action::insertionsComeLater:
        return "insertionsComeLater";
    case Action::streamBreaks:
        return "streamBreaks";
    case Action::streamFails:
        return "streamFails";
    case Action::downloadPauses:
        return "downloadPauses";
    case Action::downloadPausesFailing:
        return "downloadPausesFailing";
    case Action::downloadFails:
        return "downloadFails";
    }
    return "?";
}

const std::vector<Action>& allActions() {
    static const std::vector<Action> actions = [] {
        std::vector<Action> all;
        for (auto action = Action::tag; action <= lastAction;
             action = static_cast<Action>(static_cast<int>(action) + 1)) {
            all.push_back(action);
        }
        return all;
    }();
    return actions;
}

}  // namespace Simulator
