#include "Apps/Simulator/Drawing/ShortIds.hpp"

#include <algorithm>
#include <iterator>
#include <set>

namespace Simulator {

namespace {

constexpr std::size_t uuidLength = 36;
constexpr std::size_t fewestDigits = 4;
constexpr std::string_view sessionWord = "session-";
constexpr std::string_view momentWord = ".moment-";
constexpr std::string_view digits = "0123456789";

bool isUuid(std::string_view text) {
    if (text.size() != uuidLength) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isDash = i == 8 || i == 13 || i == 18 || i == 23;
        if (isDash ? text[i] != '-'
                   : std::string_view("0123456789abcdefABCDEF").find(text[i]) == std::string_view::npos) {
            return false;
        }
    }
    return true;
}

std::size_t numberLength(std::string_view text) {
    return std::min(text.find_first_not_of(digits), text.size());
}

/// The length of the moment's id that the text begins with; 0 when it begins with none.
std::size_t momentLength(std::string_view text) {
    if (!text.starts_with(sessionWord)) {
        return 0;
    }
    std::size_t length = sessionWord.size();
    length += numberLength(text.substr(length));
    if (!text.substr(length).starts_with(momentWord)) {
        return 0;
    }
    length += momentWord.size();
    const std::size_t number = numberLength(text.substr(length));
    return number > 0 ? length + number : 0;
}

/// The length of the long id that the text begins with; 0 when it begins with none.
std::size_t idLength(std::string_view text) {
    return isUuid(text.substr(0, uuidLength)) ? uuidLength : momentLength(text);
}

}  // namespace

std::string_view firstLongId(std::string_view text) {
    while (!text.empty()) {
        if (const std::size_t length = idLength(text); length > 0) {
            return text.substr(0, length);
        }
        text.remove_prefix(1);
    }
    return {};
}

ShortIds::ShortIds(const TraceEntries& entries) {
    for (const auto& entry : entries) {
        for (const auto& [name, value] : entry.fields) {
            collect(value);
        }
    }
    std::size_t length = fewestDigits;
    std::set<std::string_view> sessions;
    for (auto previous = shortNames_.begin(); previous != shortNames_.end(); ++previous) {
        const auto next = std::next(previous);
        if (previous->first.starts_with(sessionWord)) {
            sessions.insert(std::string_view(previous->first).substr(0, previous->first.find('.')));
        } else if (next != shortNames_.end()) {
            // They are sorted: neighbours have the longest beginnings in common.
            const auto [end, nextEnd] = std::ranges::mismatch(previous->first, next->first);
            length = std::max(length, static_cast<std::size_t>(end - previous->first.begin()) + 1);
        }
    }
    for (auto& [id, shortName] : shortNames_) {
        if (id.starts_with(sessionWord)) {
            const std::size_t dot = id.find('.');
            shortName =
                sessions.size() > 1 ? id.substr(sessionWord.size(), dot + 1 - sessionWord.size()) : "";
            shortName += 'm' + id.substr(dot + momentWord.size());
        } else {
            shortName = id.substr(0, length);
        }
    }
}

void ShortIds::collect(std::string_view text) {
    for (auto id = firstLongId(text); !id.empty(); id = firstLongId(text)) {
        shortNames_.try_emplace(std::string(id));
        text = text.substr(static_cast<std::size_t>(id.data() + id.size() - text.data()));
    }
}

std::string ShortIds::shorten(std::string_view text) const {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = idLength(text);
        const auto found = length > 0 ? shortNames_.find(text.substr(0, length)) : shortNames_.end();
        if (found != shortNames_.end()) {
            result += found->second;
            text.remove_prefix(length);
        } else {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

bool ShortIds::means(std::string_view name, std::string_view id) const {
    if (name == id) {
        return true;
    }
    const auto found = shortNames_.find(id);
    return found != shortNames_.end() &&
           (name == found->second ||
            (name.size() >= fewestDigits && !id.starts_with(sessionWord) && id.starts_with(name)));
}

}  // namespace Simulator
