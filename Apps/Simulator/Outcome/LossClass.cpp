#include "Apps/Simulator/Outcome/LossClass.hpp"

#include <algorithm>

namespace Simulator {

const std::vector<LossClassText>& lossClassTexts() {
    static const std::vector<LossClassText> texts{
        {LossClass::outsideSession, "edited outside of the session",
         "What was changed on a timeline before its analyst was in the session, or after, is not sent."},
        {LossClass::beforeSession, "edited before the session had arrived",
         "What a guest changes before the session has arrived on the timeline is not sent."},
        {LossClass::left, "left before it was sent",
         "The analyst left, or closed the timeline, before the edit could be sent."},
        {LossClass::passedOver, "passed over",
         "The upload of the edit failed while somebody else's change was coming in; it is not repeated."},
        {LossClass::waiting, "waiting for the next edit",
         "The upload of the edit failed; it is repeated with the next edit, or when the network comes back."},
        {LossClass::answeredFalse, "refused by the cloud", "The cloud refused the edit."},
        {LossClass::takenForKnown, "row not listed",
         "A new or renamed row was sent with a clip while somebody else's change was coming in: its clips "
         "are there for all, and the "
         "list does not name it until it is changed again. Or a new row was renamed while it was being "
         "listed: the "
         "others know it by its first name."},
        {LossClass::broughtBackTwice, "brought back twice",
         "Two analysts deleted the same clip, and both took it back: it is there twice."},
        {LossClass::neverFetched, "never fetched",
         "The first fetch of the session failed; it is fetched when the connection breaks next."},
        {LossClass::deletedOutside, "deleted outside of the session",
         "A clip that was deleted outside of the session comes back on joining; taking the deletion back "
         "gives it a second time."},
        {LossClass::undoneLater, "taken back after joining again",
         "A clip was deleted before its analyst left, and brought back after joining again: it is on that "
         "timeline only."},
        {LossClass::takenAwayAgain, "taken away again",
         "A deletion that was taken back within a second or two comes back from the cloud, and takes the "
         "clip away once more."},
        {LossClass::noCodingTarget, "the timeline could not be edited",
         "The change came in while the timeline could not be edited."},
        {LossClass::noRow, "no row for the clip",
         "A clip came in whose row was missing and could not be made; it is there after the next fetch."},
        {LossClass::unreadable, "unreadable for a while",
         "A clip could not be read when it was fetched, and is taken for deleted; it is back after the next "
         "fetch."},
        {LossClass::wrongRow, "left on its row",
         "A clip was given the name of another row, which is there too, and stays on the row that it is on, "
         "with whatever name that "
         "has."},
        {LossClass::renamedMeanwhile, "row renamed meanwhile",
         "A clip was tagged on a row, and its tagger, or who gave the row another name, had not heard of the "
         "other."},
        {LossClass::formerName, "former name of a row",
         "A row was renamed, and another one got its former name: a clip of that came in one fetch with the "
         "new name of the first, and "
         "is on the first."},
        {LossClass::strayClip, "renamed by a stray clip",
         "A clip stood on a row of another name than its own; when it was renamed, so was that row, though "
         "its other clips were "
         "not."},
        {LossClass::sentWithoutRow, "sent without its row",
         "The application handed out a clip that did not know its row; to the others it is on a row without "
         "a name."},
        {LossClass::deletedWhileAway, "deleted while away",
         "A clip was deleted while its analyst was out of the session, and is still on the old timeline; a "
         "new name of its row is "
         "not listed."},
    };
    return texts;
}

const char* nameOf(LossClass lossClass) {
    return std::ranges::find(lossClassTexts(), lossClass, &LossClassText::lossClass)->name;
}

}  // namespace Simulator
