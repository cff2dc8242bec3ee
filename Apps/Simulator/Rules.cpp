#include "Apps/Simulator/Rules.hpp"

#include "Apps/Simulator/Plan.hpp"
#include "ReferenceHost/Cloud/CloudRules.hpp"
#include "ReferenceHost/Timeline/TimelineRules.hpp"

#include <array>
#include <stdexcept>
#include <utility>

namespace Simulator {

using ReferenceHost::CloudRules;
using ReferenceHost::TimelineRules;

namespace {

template <typename Rules>
using NamedRule = std::pair<const char*, bool Rules::*>;

constexpr std::array cloudRules{
    NamedRule<CloudRules>("senderIsTold", &CloudRules::senderIsTold),
    NamedRule<CloudRules>("deliveredInOrder", &CloudRules::deliveredInOrder),
    NamedRule<CloudRules>("subscriptionStartsAtLastFetch", &CloudRules::subscriptionStartsAtLastFetch),
    NamedRule<CloudRules>("fetchesHoldOwnWrites", &CloudRules::fetchesHoldOwnWrites),
    NamedRule<CloudRules>("createIsIdempotent", &CloudRules::createIsIdempotent),
    NamedRule<CloudRules>("createSessionGivesPrimary", &CloudRules::createSessionGivesPrimary),
    NamedRule<CloudRules>("unknownIdsAreIgnored", &CloudRules::unknownIdsAreIgnored),
    NamedRule<CloudRules>("ownMomentsRecognised", &CloudRules::ownMomentsRecognised),
    NamedRule<CloudRules>("knownMomentsRecognised", &CloudRules::knownMomentsRecognised),
    NamedRule<CloudRules>("deletedClipsStayDeleted", &CloudRules::deletedClipsStayDeleted),
    NamedRule<CloudRules>("onlyEditsAreWritten", &CloudRules::onlyEditsAreWritten),
    NamedRule<CloudRules>("listsAreMerged", &CloudRules::listsAreMerged),
    NamedRule<CloudRules>("repeatedWritesCountOnce", &CloudRules::repeatedWritesCountOnce),
    NamedRule<CloudRules>("missingRowIsMade", &CloudRules::missingRowIsMade),
    NamedRule<CloudRules>("writesAreRepeatedOverShortDrops", &CloudRules::writesAreRepeatedOverShortDrops),
};

constexpr std::array timelineRules{
    NamedRule<TimelineRules>("rowNamesAreUnique", &TimelineRules::rowNamesAreUnique),
    NamedRule<TimelineRules>("everyChangeCounts", &TimelineRules::everyChangeCounts),
    NamedRule<TimelineRules>("emptyEditIsNoChange", &TimelineRules::emptyEditIsNoChange),
    NamedRule<TimelineRules>("externalIdIsNoChange", &TimelineRules::externalIdIsNoChange),
    NamedRule<TimelineRules>("shiftedRowsChange", &TimelineRules::shiftedRowsChange),
    NamedRule<TimelineRules>("changesAreAnnounced", &TimelineRules::changesAreAnnounced),
    NamedRule<TimelineRules>("componentEditsAreAnnounced", &TimelineRules::componentEditsAreAnnounced),
    NamedRule<TimelineRules>("partialIncludesHigher", &TimelineRules::partialIncludesHigher),
    NamedRule<TimelineRules>("partialIsDetached", &TimelineRules::partialIsDetached),
    NamedRule<TimelineRules>("partialKnowsRows", &TimelineRules::partialKnowsRows),
    NamedRule<TimelineRules>("partialTellsItsCount", &TimelineRules::partialTellsItsCount),
    NamedRule<TimelineRules>("deletedRowsListTheirInstances", &TimelineRules::deletedRowsListTheirInstances),
    NamedRule<TimelineRules>("undoneDeletionsAreNotListed", &TimelineRules::undoneDeletionsAreNotListed),
};

template <typename Table, typename Rules>
bool switchOff(const Table& table, const std::string& name, Rules& rules) {
    for (const auto& [ruleName, rule] : table) {
        if (name == ruleName) {
            rules.*rule = false;
            return true;
        }
    }
    return false;
}

}  // namespace

std::vector<std::string> allRules() {
    std::vector<std::string> names;
    names.reserve(cloudRules.size() + timelineRules.size());
    for (const auto& [name, rule] : cloudRules) {
        names.emplace_back(name);
    }
    for (const auto& [name, rule] : timelineRules) {
        names.emplace_back(name);
    }
    return names;
}

void breakRule(const std::string& name, CloudRules& cloud, TimelineRules& timelines) {
    if (!switchOff(cloudRules, name, cloud) && !switchOff(timelineRules, name, timelines)) {
        throw std::invalid_argument("There is no rule \"" + name + '"');
    }
}

}  // namespace Simulator
