#pragma once

#include "Apps/Simulator/Outcome/History.hpp"

#include <string_view>
#include <vector>

namespace Simulator {

/// A row got its name.
struct Naming {
    std::size_t at = never;                 ///< its entry, which has the former name, too; never: it did not
    const UserEdit* edit = nullptr;         ///< the user's
    const MomentHistory* moment = nullptr;  ///< or the moment whose code the row followed
};

/// The last one before that entry that gave the row this name. Two rows of a timeline never have one name.
[[nodiscard]] Naming lastNaming(const History& history, std::string_view timelineId, std::string_view rowId,
                                std::string_view name, std::size_t before);

/// Every name that the row had, or was given by somebody.
[[nodiscard]] std::vector<std::string_view> namesOf(const History& history, std::string_view row);

/// A clip of the edited row, also one of somebody else's.
[[nodiscard]] bool isOfRow(const History& history, std::string_view clip, const UserEdit& ofRow);

}  // namespace Simulator
