#include "Apps/Simulator/Conformance/Conformance.hpp"

namespace Simulator {

const std::vector<ConformanceRule>& conformanceRules() {
    static const std::vector<ConformanceRule> rules{
        // Blocks
        {"blockOverlap", "Two blocks of one synchroniser never run at the same time."},
        {"blockOrder", "Blocks begin in the order in which they were submitted, each once."},
        {"blockEnd", "A block that ends is the one that runs."},
        {"blockUnfinished", "When everybody is idle, no block runs."},

        // Changes that are delivered
        {"eventBlock", "Each delivered change becomes one block, at once when nothing else runs."},
        {"eventOrder", "Delivered changes are applied in the order of their delivery."},
        {"eventApplied", "A delivered change is applied once; after the end of the session, or without a "
                         "timeline, not at all."},
        {"eventComplaint",
         "A change that holds nothing, or is of an unknown kind, is logged as such, and no other one is."},
        {"eventWaits", "The block of a delivered change waits for nothing."},
        {"uploadBeforeApply",
         "A change is applied over unsent edits only after an upload of them has begun."},

        {"applyBlock", "Remote changes are applied in the blocks for them."},
        {"applyOrder",
         "Changes are applied in this order: new moments, updated ones, deleted ones, the list of rows."},
        {"applyKind", "Of a delivered change nothing is applied that its kind does not tell of."},
        {"appendedTwice", "A moment for which a clip is known to stand is not appended."},

        // Uploads
        {"uploadBlock", "An upload begins inside a block."},
        {"uploadRange",
         "An upload reads all changes behind the count up to which everything is sent, and nothing else."},
        {"uploadAwaited", "A block that uploads, or tries to reconnect, ends after its upload."},
        {"uploadEnd", "An upload succeeds when none of its steps has failed, and fails when one has."},
        {"stepOrder", "The calls of an upload are: update, create, remove, save the rows; each at most once, "
                      "in this order."},
        {"stepAwaited",
         "Each call of an upload is answered before the next one is made, and before the upload ends."},
        {"stepAfterFailure", "After a call that has failed an upload makes no other."},
        {"changesSent", "An upload that succeeds has sent every clip that has changed or was deleted, and "
                        "created no other."},
        {"saveAfterRemoval", "An upload that removes moments saves the list of rows."},
        {"createdTwice",
         "A clip is not created again while a moment that is known to its synchroniser stands for it."},
        {"removedTwice", "A moment that was removed is not removed again."},

        // The modify count up to which everything is sent
        {"countAfterUpload", "The count moves right after an upload that has succeeded, to the last change "
                             "that it held; never after one that has failed."},
        {"countAfterApply", "The count moves after remote changes were applied, in a block for them, to the "
                            "timeline's own count."},
        {"countReason", "The count moves for these two reasons only."},
        {"countOld", "The count moves from where it was."},
        {"editsPassedOver", "An edit is not passed over by applied changes before an upload has begun that "
                            "holds it, but for those made before the timeline first met its session."},

        // Uploads of local changes
        {"throttle", "An upload block for local changes begins one second after the first change of a burst, "
                     "never earlier and never without a change, but at the end of a session."},
        {"throttleLate", "It begins then when nothing else runs, and else as soon as it is its turn."},
        {"lastChanges", "What has not been sent is uploaded at the end of a session."},

        // Pulls
        {"pullBlock", "A session is fetched in a block for it, once."},
        {"pullAwaited", "The block ends after the fetch is answered."},
        {"pullOutcome", "A session that was fetched is applied once; a failed fetch, no session, or another "
                        "one changes nothing."},

        // Subscriptions
        {"subscribeReason",
         "A subscription is opened at the start, and after the attempts to reconnect are over."},
        {"subscribeLine", "The opening of a subscription is logged."},
        {"subscribeAfterEnd", "When a session has ended, its subscription is cancelled, and none is opened."},
        {"oneSubscription", "A synchroniser holds one subscription at a time."},
        {"isSubscribed", "When everybody is idle, everybody in a session has an open subscription."},
        {"afterCancel", "A subscription that has failed or was cancelled is told nothing more."},
        {"deliveryOrder", "A subscription delivers the changes of a session in their order, without gaps."},

        // Reconnection
        {"disconnection", "A subscription that fails is cancelled and logged twice, and the first attempt to "
                          "reconnect follows at once."},
        {"attemptOrder", "Attempts are numbered from 1 on; another one follows each that has failed, and "
                         "none one that has succeeded."},
        {"attemptPause",
         "The next attempt is queued two seconds after one has failed, not earlier and not later."},
        {"attemptLimit", "There are at most 300 attempts, and 300 before they are given up."},
        {"attemptSteps", "An attempt uploads, and pulls when this has succeeded."},
        {"attemptAfterEnd", "When the session has ended, no attempt is made."},

        // Calls of the cloud
        {"answerOfCall", "Each answer belongs to a call."},
        {"answerOnce", "A call is answered once."},
        {"answerMissing", "When everybody is idle, all calls are answered."},

        // The log and the threads
        {"knownLine", "The log holds lines that the system has, and no others."},
        {"lineOfFailure", "The answers that tell of a failure are logged, each with its line, and these "
                          "lines tell of nothing else."},
        {"unexpectedFailure", "Nothing fails that is not foreseen."},
        {"wrongThread", "No operation is called on the wrong thread."},
        {"observerFailed", "No observer of a notification throws."},

        // The cloud
        {"cloudFold", "A session holds what the calls that it has accepted come to."},
        {"cloudChanges",
         "A session tells each change that a call makes, once, numbered without gaps, and no other."},

        // Rest
        {"idle", "While nobody does anything, nothing is sent, received or changed."},
    };
    return rules;
}

}  // namespace Simulator
