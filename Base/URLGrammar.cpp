#include "Base/URLGrammar.hpp"

#include <algorithm>
#include <cstddef>

namespace Base::URLGrammar {

namespace {

// ASCII only, whatever the locale.
constexpr bool isDigit(char character) { return character >= '0' && character <= '9'; }
constexpr bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}
constexpr bool isHexadecimal(char character) {
    return isDigit(character) || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

constexpr bool contains(std::string_view characters, char character) {
    return characters.find(character) != std::string_view::npos;
}

constexpr bool isUnreservedOrDelimiter(char character) {
    return isLetter(character) || isDigit(character) || contains("-._~!$&'()*+,;=", character);
}

/// Unreserved characters, sub-delimiters, percent-encodings and the ones in `also`.
bool isEncodedText(std::string_view text, std::string_view also) {
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] == '%') {
            if (text.size() - index < 3 || !isHexadecimal(text[index + 1]) ||
                !isHexadecimal(text[index + 2])) {
                return false;
            }
            index += 2;
        } else if (!isUnreservedOrDelimiter(text[index]) && !contains(also, text[index])) {
            return false;
        }
    }
    return true;
}

/// Takes what stands before the first `delimiter` from `rest`, and the delimiter with it; all when there is none.
std::string_view takeUntil(std::string_view& rest, char delimiter) {
    const auto end = rest.find(delimiter);
    const auto part = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return part;
}

/// A number up to 255 without leading zeros.
bool isDecimalOctet(std::string_view text) {
    if (text.empty() || text.size() > 3 || !isDigits(text) || (text.size() > 1 && text.front() == '0')) {
        return false;
    }
    return text.size() < 3 ||
           text <= "255";  // of the same length, so the order of the texts is that of the numbers
}

bool isIPv4Address(std::string_view text) {
    if (std::count(text.begin(), text.end(), '.') != 3) {
        return false;
    }
    for (int octet = 0; octet < 4; ++octet) {
        if (!isDecimalOctet(takeUntil(text, '.'))) {
            return false;
        }
    }
    return true;
}

/// How many groups of 16 bits a list with colons in between holds; 0 for an empty one, more than 8 for a wrong one.
std::size_t countGroups(std::string_view list, bool mayEndInIPv4) {
    constexpr std::size_t wrong = 9;
    if (list.empty()) {
        return 0;
    }
    if (list.back() == ':') {
        return wrong;
    }
    std::size_t groups = 0;
    while (!list.empty()) {
        const auto group = takeUntil(list, ':');
        if (list.empty() && mayEndInIPv4 && isIPv4Address(group)) {
            return groups + 2;
        }
        ++groups;
        if (group.empty() || group.size() > 4 || groups > 8 ||
            !std::all_of(group.begin(), group.end(), isHexadecimal)) {
            return wrong;
        }
    }
    return groups;
}

bool isIPv6Address(std::string_view text) {
    const auto gap = text.find("::");
    if (gap == std::string_view::npos) {
        return countGroups(text, true) == 8;
    }
    // The gap stands for one group or more. A second one leaves an empty group behind.
    return countGroups(text.substr(0, gap), false) + countGroups(text.substr(gap + 2), true) <= 7;
}

/// "v", a version, a point and an address.
bool isLaterIPAddress(std::string_view text) {
    if (text.empty() || (text.front() != 'v' && text.front() != 'V')) {
        return false;
    }
    text.remove_prefix(1);
    const auto version = takeUntil(text, '.');
    return !version.empty() && std::all_of(version.begin(), version.end(), isHexadecimal) && !text.empty() &&
           !contains(text, '%') && isEncodedText(text, ":");
}

}  // namespace

bool isScheme(std::string_view text) {
    return !text.empty() && isLetter(text.front()) &&
           std::all_of(text.begin(), text.end(), [](char character) {
               return isLetter(character) || isDigit(character) || contains("+-.", character);
           });
}

bool isUserInfo(std::string_view text) { return isEncodedText(text, ":"); }

bool isHost(std::string_view text) {
    if (text.empty() || text.front() != '[') {
        return isEncodedText(text, "");  // an IPv4 address is written with the characters of a name
    }
    if (text.back() != ']') {
        return false;
    }
    const auto address = text.substr(1, text.size() - 2);
    return isIPv6Address(address) || isLaterIPAddress(address);
}

bool isDigits(std::string_view text) { return std::all_of(text.begin(), text.end(), isDigit); }

bool isPath(std::string_view text) { return isEncodedText(text, ":@/"); }

bool isQueryOrFragment(std::string_view text) { return isEncodedText(text, ":@/?"); }

}  // namespace Base::URLGrammar
