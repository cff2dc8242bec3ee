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
    case Action::leaveByPrompt:
        return "leaveByPrompt";
    case Action::streamEnds:
        return "streamEnds";
    case Action::join:
        return "join";
    case Action::host:
        return "host";
    case Action::hostWithoutCapture:
        return "hostWithoutCapture";
    case Action::hostSignedOut:
        return "hostSignedOut";
    case Action::hostRefused:
        return "hostRefused";
    case Action::joinRefused:
        return "joinRefused";
    case Action::joinWithoutId:
        return "joinWithoutId";
    case Action::joinSignedOut:
        return "joinSignedOut";
    case Action::joinWithoutTimeline:
        return "joinWithoutTimeline";
    case Action::joinLate:
        return "joinLate";
    case Action::joinOtherSession:
        return "joinOtherSession";
    case Action::endUnknown:
        return "endUnknown";
    case Action::strayNotifications:
        return "strayNotifications";
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
    case Action::answerNone:
        return "answerNone";
    case Action::answerOther:
        return "answerOther";
    case Action::dropSubscription:
        return "dropSubscription";
    case Action::repeatEvents:
        return "repeatEvents";
    case Action::delayEvents:
        return "delayEvents";
    case Action::strangeEvents:
        return "strangeEvents";
    case Action::linkDown:
        return "linkDown";
    case Action::fetchesFail:
        return "fetchesFail";
    case Action::restartService:
        return "restartService";
    case Action::rowsAreNotMade:
        return "rowsAreNotMade";
    case Action::hideMoments:
        return "hideMoments";
    case Action::withdrawCodingTarget:
        return "withdrawCodingTarget";
    case Action::insertionsComeLater:
        return "insertionsComeLater";
    case Action::copiesLoseRows:
        return "copiesLoseRows";
    case Action::cancelSleeps:
        return "cancelSleeps";
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
    case Action::statusFails:
        return "statusFails";
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
