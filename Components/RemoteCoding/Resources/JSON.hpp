#pragma once

#include "Base/Result.hpp"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace RemoteCoding {

struct JSONMember;

/// A number as it is spelled; nothing is lost by rounding.
struct JSONNumber {
    std::string spelling;
};

using JSONArray = std::vector<struct JSONValue>;
using JSONObject = std::vector<JSONMember>;  // in the order of the text; each name once

/// A value of RFC 8259.
struct JSONValue {
    std::variant<std::nullptr_t, bool, JSONNumber, std::string, JSONArray, JSONObject> content;

    /// Null when the value is of another type.
    template <typename Type>
    [[nodiscard]] const Type* as() const {
        return std::get_if<Type>(&content);
    }
};

struct JSONMember {
    std::string name;
    JSONValue value;
};

/// Reads one value, and refuses what RFC 8259 does not allow, what is no UTF-8, a name that an object has twice, half a
/// surrogate pair, and nesting deeper than 32. The failure is a `Base::DescribedError` that names the line. The time grows
/// with the text, and a little faster where an object has many names.
[[nodiscard]] Base::Result<JSONValue> parseJSON(std::string_view text);

}  // namespace RemoteCoding
