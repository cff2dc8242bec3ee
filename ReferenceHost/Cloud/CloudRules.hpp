#pragma once

namespace ReferenceHost {

/// What this cloud and its client library promise. Each promise can be broken on demand, to show what its absence costs
/// and that the suites notice. All are kept unless somebody says otherwise.
struct CloudRules {
    /// Every subscriber gets every change, also the client that made it.
    bool senderIsTold = true;
    /// Each subscription delivers in the order in which the service accepted the changes. Broken: of the events that have
    /// arrived together, the newest comes first.
    bool deliveredInOrder = true;
    /// A subscription begins with what has happened since its client's last fetch, or with the first change when there was none, but not
    /// with what its timeline has been told already. Broken: with the next change.
    bool subscriptionStartsAtLastFetch = true;
    /// What a fetch brings is not older than the writes of the same client that were answered meanwhile. Broken: it is what the
    /// service had when it was asked.
    bool fetchesHoldOwnWrites = true;
    /// A second creation for one (timeline id, instance id) updates the living moment. Broken: it makes another moment.
    bool createIsIdempotent = true;
    /// A video with a tagging session gets no second one. Broken: each request makes one, and the first stays primary.
    bool createSessionGivesPrimary = true;
    /// Updates and removals of moments that are gone are answered true. Broken: false, though the others are done.
    bool unknownIdsAreIgnored = true;
    /// A moment that a timeline itself has sent is appended to it as the instance it stands for. Broken: as a new one.
    bool ownMomentsRecognised = true;
    /// A moment that a clip's `externalId` names is appended as that clip, brought up to date. Broken: as a new one.
    bool knownMomentsRecognised = true;
    /// A moment of a code without a row makes the row. Broken: its instance is placed nowhere.
    bool missingRowIsMade = true;
    /// An update writes what the clip's user has changed, and each edit once; what others have changed meanwhile stays. Broken: it
    /// writes the clip as it is.
    bool onlyEditsAreWritten = true;
    /// Saving a list of rows makes the changes that its user has made. Broken: it replaces the list.
    bool listsAreMerged = true;
    /// A moment of the timeline's own whose clip its user has deleted meanwhile is removed. Broken: it is appended as a new clip.
    bool deletedClipsStayDeleted = true;
    /// A write that the client repeats takes effect once. Broken: each time.
    bool repeatedWritesCountOnce = true;
    /// Writes outlast short drops of the link. Broken: they fail with the first drop.
    bool writesAreRepeatedOverShortDrops = true;
};

}  // namespace ReferenceHost
