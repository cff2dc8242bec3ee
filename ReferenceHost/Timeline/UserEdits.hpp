#pragma once

#include "Base/Color.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What a timeline remembers of its user's edits, so that just these are written to the cloud. The edits of one timeline are
/// numbered from 1 on.
namespace ReferenceHost {

/// Which edit has set each part of a clip last; 0: none of this timeline's user.
struct EditNumbers {
    std::uint64_t code = 0;
    std::uint64_t times = 0;
    std::uint64_t notes = 0;

    friend bool operator==(const EditNumbers&, const EditNumbers&) = default;
};

/// One edit of the list of rows. Rows are named, because a name is all that another timeline knows of them.
struct RowEdit {
    enum class Kind : std::uint8_t { add, remove, rename, recolor, move };

    Kind kind = Kind::add;
    std::uint64_t number = 0;
    std::string name;
    std::string oldName;               ///< before it was renamed
    Base::Color color;                 ///< afterwards
    std::optional<std::string> above;  ///< the row above it afterwards; absent: it is the first
    std::string newAbove{};            ///< another name of that one, which the list may have already
    bool waits = false;  ///< it cannot be saved yet; a session's first list holds it all the same
};
using RowEdits = std::vector<RowEdit>;

}  // namespace ReferenceHost
