#include "Base/URL.hpp"

#include "Base/URLGrammar.hpp"

namespace Base {

namespace {

/// Cuts off `rest` what stands from the first `delimiter` on; gives what stands behind the delimiter, if there is one.
std::optional<std::string_view> cutFrom(std::string_view& rest, char delimiter) {
    const auto place = rest.find(delimiter);
    if (place == std::string_view::npos) {
        return std::nullopt;
    }
    const auto part = rest.substr(place + 1);
    rest = rest.substr(0, place);
    return part;
}

/// Schemes are written in either case.
bool needsHost(std::string_view scheme) {
    std::string lower(scheme);
    for (char& character : lower) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return lower == "http" || lower == "https";
}

}  // namespace

std::optional<URL> URL::parse(std::string text) {
    URL url(std::move(text));
    std::string_view rest = url.text_;
    const auto fragment = cutFrom(rest, '#');
    const auto query = cutFrom(rest, '?');
    std::string_view scheme = rest;
    const auto afterScheme = cutFrom(scheme, ':');
    if (!afterScheme || !URLGrammar::isScheme(scheme)) {
        return std::nullopt;
    }
    auto path = *afterScheme;
    if (path.starts_with("//")) {
        auto authority = path.substr(2);
        authority = authority.substr(0, authority.find('/'));
        path.remove_prefix(2 + authority.size());
        if (!url.readAuthority(authority)) {
            return std::nullopt;
        }
    }
    if (!URLGrammar::isPath(path) || (query && !URLGrammar::isQueryOrFragment(*query)) ||
        (fragment && !URLGrammar::isQueryOrFragment(*fragment))) {
        return std::nullopt;
    }
    if (needsHost(scheme) && url.host().value_or("").empty()) {
        return std::nullopt;
    }
    url.scheme_ = url.span(scheme);
    url.path_ = url.span(path);
    if (query) {
        url.query_ = url.span(*query);
    }
    if (fragment) {
        url.fragment_ = url.span(*fragment);
    }
    return url;
}

bool URL::readAuthority(std::string_view authority) {
    std::string_view hostAndPort = authority;
    std::string_view userInfo = authority;
    if (const auto afterSign = cutFrom(userInfo, '@')) {
        if (!URLGrammar::isUserInfo(userInfo)) {
            return false;
        }
        userInfo_ = span(userInfo);
        hostAndPort = *afterSign;
    }
    // Within brackets a colon starts no port.
    const auto bracket = hostAndPort.rfind(']');
    const auto colon = hostAndPort.find(':', bracket == std::string_view::npos ? 0 : bracket);
    const auto host = hostAndPort.substr(0, colon);
    if (!URLGrammar::isHost(host)) {
        return false;
    }
    host_ = span(host);
    return colon == std::string_view::npos || readPort(hostAndPort.substr(colon + 1));
}

bool URL::readPort(std::string_view digits) {
    if (!URLGrammar::isDigits(digits)) {
        return false;
    }
    std::uint32_t port = 0;
    for (const char digit : digits) {
        port = port * 10 + static_cast<std::uint32_t>(digit - '0');
        if (port > 65'535) {
            return false;
        }
    }
    if (!digits.empty()) {
        port_ = static_cast<std::uint16_t>(port);
    }
    return true;
}

URL::Span URL::span(std::string_view part) const {
    return {static_cast<std::size_t>(part.data() - text_.data()), part.size()};
}

std::string_view URL::view(Span span) const {
    return std::string_view(text_).substr(span.start, span.length);
}

std::optional<std::string_view> URL::view(const std::optional<Span>& span) const {
    return span ? std::optional(view(*span)) : std::nullopt;
}

}  // namespace Base
