#pragma once

#include <string_view>

/// Rules of RFC 3986, appendix A: whether a whole text is one of the named thing.
namespace Base::URLGrammar {

[[nodiscard]] bool isScheme(std::string_view text);
[[nodiscard]] bool isUserInfo(std::string_view text);
/// A registered name (it may be empty), an IPv4 address, or an address of IPv6 or a later version in brackets.
[[nodiscard]] bool isHost(std::string_view text);
[[nodiscard]] bool isDigits(std::string_view text);
/// Any path; what it may start with is the caller's matter.
[[nodiscard]] bool isPath(std::string_view text);
[[nodiscard]] bool isQueryOrFragment(std::string_view text);

}  // namespace Base::URLGrammar
