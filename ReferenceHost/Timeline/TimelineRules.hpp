#pragma once

namespace ReferenceHost {

/// What a timeline model keeps to, each rule with a switch: turned off, the timeline breaks just that rule,
/// so that tests and simulation can show what its absence costs. Read at each edit, on the main thread; one
/// object may serve many timelines.
struct TimelineRules {
    /// Every change raises `modifyCount` and stamps what changed. Off: only additions and removals do.
    bool everyChangeCounts = true;

    /// An edit that changes nothing is no change. Off: it counts, stamps and is announced.
    bool emptyEditIsNoChange = true;

    /// Writing an `externalId` is no change. Off: it counts, stamps and is announced.
    bool externalIdIsNoChange = true;

    /// A row whose position shifts because another one came, went or moved has changed. Off: only that other
    /// one has.
    bool shiftedRowsChange = true;

    /// `timelineDidAnyChange` follows each change. Off: none is announced.
    bool changesAreAnnounced = true;

    /// Changes that arrive through the coding target and the sync library are announced too. Off: only the
    /// user's are.
    bool componentEditsAreAnnounced = true;

    /// A partial timeline holds what was stamped with the asked count or a higher one. Off: with exactly that
    /// count.
    bool partialIncludesHigher = true;

    /// A partial timeline's clips are copies. Off: they are the live ones.
    bool partialIsDetached = true;

    /// A partial timeline's clips know their rows. Off: they know none.
    bool partialKnowsRows = true;

    /// A partial timeline tells the count up to which it holds the changes. Off: it tells the count asked
    /// for.
    bool partialTellsItsCount = true;

    /// A deleted row's clips are among the deleted instances. Off: only clips deleted one by one are.
    bool deletedRowsListTheirInstances = true;

    /// A deletion that was undone is not listed. Off: it stays listed.
    bool undoneDeletionsAreNotListed = true;

    /// The user cannot give a row a name that another row of the timeline has. Off: two rows may have the same name.
    bool rowNamesAreUnique = true;
};

}  // namespace ReferenceHost
