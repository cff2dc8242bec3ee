#include "Components/RemoteCoding/Resources/LayoutReader.hpp"

#include "Base/Error.hpp"
#include "Components/RemoteCoding/Resources/JSON.hpp"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <set>
#include <string>
#include <utility>

namespace RemoteCoding {

namespace {

using Kind = WindowLayoutControl::Kind;
using Cell = WindowLayoutColumn::Cell;

template <typename Value>
using Names = std::initializer_list<std::pair<std::string_view, Value>>;

[[noreturn]] void fail(const std::string& place, std::string_view what) {
    throw Base::DescribedError(place + " " + std::string(what));
}

/// The members of one JSON object, and where it stands.
class Members {
public:
    Members(const JSONValue& value, std::string place, std::initializer_list<std::string_view> known)
        : place_(std::move(place)), members_(value.as<JSONObject>()) {
        if (members_ == nullptr) {
            fail(place_.empty() ? "The layout" : place_, "is no object");
        }
        for (const auto& member : *members_) {
            if (std::find(known.begin(), known.end(), member.name) == known.end()) {
                fail(at(member.name), "is unknown");
            }
        }
    }

    [[nodiscard]] std::string at(std::string_view name) const {
        return place_.empty() ? std::string(name) : place_ + "." + std::string(name);
    }

    /// Null when it is left out.
    template <typename Type>
    [[nodiscard]] const Type* optional(std::string_view name) const {
        const auto* value = find(name);
        const auto* typed = value != nullptr ? value->as<Type>() : nullptr;
        if (value != nullptr && typed == nullptr) {
            fail(at(name), "is of the wrong type");
        }
        return typed;
    }

    template <typename Type>
    [[nodiscard]] const Type& required(std::string_view name) const {
        const auto* value = optional<Type>(name);
        if (value == nullptr) {
            fail(at(name), "is missing");
        }
        return *value;
    }

    template <typename Type>
    [[nodiscard]] Type valueOr(std::string_view name, Type standard) const {
        const auto* value = optional<Type>(name);
        return value != nullptr ? *value : standard;
    }

    /// A text for people: its key.
    [[nodiscard]] std::string text(std::string_view name) const {
        const auto* value = find(name);
        if (value == nullptr) {
            return {};
        }
        const Members members(*value, at(name), {"text", "comment"});
        static_cast<void>(members.required<std::string>("comment"));
        return members.required<std::string>("text");
    }

    template <typename Value>
    [[nodiscard]] Value oneOf(std::string_view name, Names<Value> values) const {
        const auto& spelling = required<std::string>(name);
        const auto found = std::find_if(values.begin(), values.end(),
                                        [&](const auto& each) { return each.first == spelling; });
        if (found == values.end()) {
            fail(at(name), "is none of those known");
        }
        return found->second;
    }

    /// What `read` makes of each element of a list.
    template <typename Read>
    [[nodiscard]] auto list(std::string_view name, Read read) const {
        const auto& elements = required<JSONArray>(name);
        std::vector<decltype(read(elements.front(), std::string()))> result;
        result.reserve(elements.size());
        for (std::size_t i = 0; i < elements.size(); ++i) {
            result.push_back(read(elements[i], at(name) + "[" + std::to_string(i) + "]"));
        }
        return result;
    }

private:
    [[nodiscard]] const JSONValue* find(std::string_view name) const {
        const auto found = std::find_if(members_->begin(), members_->end(),
                                        [name](const JSONMember& each) { return each.name == name; });
        return found != members_->end() ? &found->value : nullptr;
    }

    std::string place_;
    const JSONObject* members_;
};

WindowLayoutColumn readColumn(const JSONValue& value, std::string place) {
    const Members members(value, std::move(place),
                          {"identifier", "title", "cellIdentifier", "cell", "action"});
    WindowLayoutColumn column;
    column.identifier = members.required<std::string>("identifier");
    column.title = members.text("title");
    column.cellIdentifier = members.required<std::string>("cellIdentifier");
    column.cell = members.oneOf<Cell>("cell", {{"checkBox", Cell::checkBox}, {"text", Cell::text}});
    column.action = members.valueOr("action", std::string());
    return column;
}

WindowLayoutControl readControl(const JSONValue& value, std::string place) {
    const Members members(
        value, std::move(place),
        {"kind", "outlet", "title", "action", "isEnabled", "isDefault", "isCancel", "columns"});
    WindowLayoutControl control;
    control.kind = members.oneOf<Kind>("kind", {{"label", Kind::label},
                                                {"textField", Kind::textField},
                                                {"popUpButton", Kind::popUpButton},
                                                {"tableView", Kind::tableView},
                                                {"button", Kind::button}});
    control.outlet = members.valueOr("outlet", std::string());
    control.title = members.text("title");
    control.action = members.valueOr("action", std::string());
    control.isEnabled = members.valueOr("isEnabled", control.isEnabled);
    control.isDefault = members.valueOr("isDefault", control.isDefault);
    control.isCancel = members.valueOr("isCancel", control.isCancel);
    if (control.kind == Kind::tableView) {
        control.columns = members.list("columns", readColumn);
    } else if (members.optional<JSONArray>("columns") != nullptr) {
        fail(members.at("columns"), "belongs to no table");
    }
    return control;
}

WindowLayout readLayout(const JSONValue& value) {
    const Members members(value, {}, {"name", "title", "controls"});
    WindowLayout layout;
    layout.name = members.required<std::string>("name");
    layout.title = members.text("title");
    std::set<std::string> outlets;
    layout.controls = members.list("controls", [&](const JSONValue& each, const std::string& place) {
        WindowLayoutControl control = readControl(each, place);
        if (!control.outlet.empty() && !outlets.insert(control.outlet).second) {
            fail(place + ".outlet", "is taken");
        }
        return control;
    });
    return layout;
}

}  // namespace

Base::Result<WindowLayout> readWindowLayout(std::string_view json) {
    const auto value = parseJSON(json);
    if (!value.succeeded()) {
        return Base::Result<WindowLayout>::failure(value.error());
    }
    try {
        return readLayout(value.value());
    } catch (const Base::DescribedError& error) {
        return Base::failure<WindowLayout>(error);
    }
}

}  // namespace RemoteCoding
