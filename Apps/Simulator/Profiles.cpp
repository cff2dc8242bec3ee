#include "Apps/Simulator/Profiles.hpp"

#include <array>
#include <iterator>

namespace Simulator {

namespace {

const Weights& clipEdits() {
    static const Weights weights{
        {Action::tag, 30},         {Action::tagNewCode, 10},  {Action::retime, 14},
        {Action::retimeShared, 8}, {Action::note, 7},         {Action::noteShared, 4},
        {Action::deleteClip, 8},   {Action::deleteShared, 4}, {Action::undoDelete, 5}};
    return weights;
}

const Weights& rowEdits() {
    static const Weights weights{
        {Action::addRow, 5},  {Action::renameRow, 4}, {Action::renameRowToCommon, 2}, {Action::recolorRow, 5},
        {Action::moveRow, 5}, {Action::removeRow, 2}, {Action::undoRemoveRow, 2}};
    return weights;
}

const Weights& callFaults() {
    static const Weights weights{{Action::failBefore, 10}, {Action::failAfter, 10},  {Action::hang, 8},
                                 {Action::answerFalse, 4}, {Action::answerShort, 4}, {Action::answerNone, 1},
                                 {Action::answerOther, 1}};
    return weights;
}

const Weights& wayFaults() {
    static const Weights weights{
        {Action::dropSubscription, 8}, {Action::repeatEvents, 4},   {Action::delayEvents, 5},
        {Action::strangeEvents, 2},    {Action::linkDown, 10},      {Action::fetchesFail, 2},
        {Action::restartService, 2},   {Action::rowsAreNotMade, 1}, {Action::hideMoments, 1}};
    return weights;
}

const Weights& hostFaults() {
    static const Weights weights{
        {Action::withdrawCodingTarget, 3}, {Action::insertionsComeLater, 3}, {Action::cancelSleeps, 2}};
    return weights;
}

const Weights& streamFaults() {
    static const Weights weights{{Action::streamBreaks, 4},   {Action::streamFails, 1},
                                 {Action::downloadPauses, 4}, {Action::downloadPausesFailing, 1},
                                 {Action::downloadFails, 1},  {Action::statusFails, 3}};
    return weights;
}

const Weights& sessions() {
    static const Weights weights{{Action::closeTimeline, 2}, {Action::leave, 6}, {Action::leaveByPrompt, 4},
                                 {Action::streamEnds, 1},    {Action::join, 14}, {Action::host, 6}};
    return weights;
}

const Weights& failingSessions() {
    static const Weights weights{
        {Action::hostWithoutCapture, 1},  {Action::hostSignedOut, 1},     {Action::hostRefused, 1},
        {Action::joinRefused, 1},         {Action::joinWithoutId, 1},     {Action::joinSignedOut, 1},
        {Action::joinWithoutTimeline, 1}, {Action::joinLate, 2},          {Action::joinOtherSession, 1},
        {Action::endUnknown, 1},          {Action::strayNotifications, 1}};
    return weights;
}

Weights operator*(const Weights& weights, unsigned factor) {
    Weights product = weights;
    for (WeightedAction& weighted : product) {
        weighted.weight *= factor;
    }
    return product;
}

Weights operator+(Weights left, const Weights& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Profile mixed() {
    Profile profile;
    profile.edits = clipEdits() + rowEdits();
    profile.faults = callFaults() + wayFaults() + hostFaults() + streamFaults();
    profile.sessions = sessions() * 2 + failingSessions();
    return profile;
}

/// Nobody is in anybody's way: in the end all timelines are equal. So no two rows have one name, which a row that comes back could
/// get where others make rows of common names.
Profile calmWithout(Action action) {
    Profile profile = mixed();
    std::erase_if(profile.edits, [action](const WeightedAction& edit) {
        return edit.action == action || edit.action == Action::renameRowToCommon;
    });
    profile.faultShare = profile.sessionShare = profile.twinShare = profile.earlyStartShare = 0;
    profile.takesTurns = true;
    return profile;
}

Profile calmWithCommonNames() { return calmWithout(Action::undoRemoveRow); }
Profile calmWithRestoredRows() { return calmWithout(Action::tagNewCode); }

Profile withoutFaults() {
    Profile profile = mixed();
    profile.faultShare = 0;
    profile.sessions = sessions();
    profile.sessionShare = 0.02;
    return profile;
}

Profile mostlyClips() {
    Profile profile = mixed();
    profile.edits = clipEdits();
    profile.faults = callFaults() + wayFaults();
    profile.twinShare = 0.4;
    return profile;
}

Profile mostlyRows() {
    Profile profile = mixed();
    profile.edits = clipEdits() + rowEdits() * 8;
    profile.twinShare = 0.3;
    return profile;
}

Profile busyNetwork() {
    Profile profile = mixed();
    profile.faults = callFaults() * 2 + wayFaults() +
                     Weights{{Action::hang, 20}, {Action::delayEvents, 20}, {Action::repeatEvents, 10}};
    profile.faultShare = 0.3;
    profile.burstShare = 0.7;
    return profile;
}

Profile manyFaults() {
    Profile profile = mixed();
    profile.faultShare = 0.5;
    return profile;
}

Profile onlyFaults() {
    Profile profile = mixed();
    profile.faultShare = 0.85;
    profile.earlyStartShare = 0.5;
    return profile;
}

Profile longOutages() {
    Profile profile = mixed();
    profile.faults = wayFaults() + hostFaults() + callFaults() +
                     Weights{{Action::linkDown, 20}, {Action::fetchesFail, 20}};
    profile.faultShare = 0.1;
    profile.longOutageShare = 0.5;
    profile.pauseShare = 0.03;
    profile.leastPause = 20;
    profile.mostPause = 800;
    return profile;
}

Profile rejoins() {
    Profile profile = mixed();
    profile.sessions = sessions() * 4 + failingSessions();
    profile.sessionShare = 0.25;
    profile.republishShare = 0.01;
    profile.faultShare = 0.1;
    return profile;
}

Profile brittleHosts() {
    Profile profile = mixed();
    profile.faults = hostFaults() * 8 + wayFaults() + callFaults() + Weights{{Action::copiesLoseRows, 4}};
    return profile;
}

Profile brittleStream() {
    Profile profile = mixed();
    profile.faults = streamFaults();
    profile.sessionShare = 0.12;
    return profile;
}

}  // namespace

Action choose(const Weights& weights, ReferenceHost::SeededRandom& random) {
    std::size_t total = 0;
    for (const WeightedAction& weighted : weights) {
        total += weighted.weight;
    }
    std::size_t drawn = random.below(total);
    for (const WeightedAction& weighted : weights) {
        if (drawn < weighted.weight) {
            return weighted.action;
        }
        drawn -= weighted.weight;
    }
    return weights.front().action;
}

Profile drawProfile(ReferenceHost::SeededRandom& random, bool faults) {
    using Make = Profile (*)();
    // The first few can do without faults.
    static constexpr std::array<Make, 14> profiles{
        calmWithCommonNames, calmWithRestoredRows, withoutFaults, withoutFaults,
        mostlyClips,         mostlyRows,           mixed,         busyNetwork,
        manyFaults,          onlyFaults,           longOutages,   rejoins,
        brittleHosts,        brittleStream};
    constexpr std::size_t faultless = 4;
    return profiles[random.below(faults ? profiles.size() : faultless)]();
}

}  // namespace Simulator
