#pragma once

#include "Base/Export.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Base {

/// A URL as RFC 3986 writes it: a URI with a scheme. The text stays as it was given; nothing is decoded or normalised.
class REMOTE_CODING_EXPORT URL {
public:
    /// Reads a whole text by the RFC's grammar (`URI`, section 3); absent for anything else, relative references
    /// included. Beyond the grammar, a port is at most 65535, and `http` and `https` name a host (RFC 9110, section
    /// 4.2). Spaces, control characters and letters outside of ASCII must be percent-encoded.
    [[nodiscard]] static std::optional<URL> parse(std::string text);

    [[nodiscard]] const std::string& text() const { return text_; }

    // The components without their delimiters, as views into this object. One that is absent differs from one that is
    // there and empty: "file:///clip" has an empty host, "mailto:desk" none.
    [[nodiscard]] std::string_view scheme() const { return view(scheme_); }
    [[nodiscard]] std::optional<std::string_view> userInfo() const { return view(userInfo_); }
    /// An address of IPv6 stands in its brackets.
    [[nodiscard]] std::optional<std::string_view> host() const { return view(host_); }
    /// Absent also after a colon without digits.
    [[nodiscard]] std::optional<std::uint16_t> port() const { return port_; }
    [[nodiscard]] std::string_view path() const { return view(path_); }
    [[nodiscard]] std::optional<std::string_view> query() const { return view(query_); }
    [[nodiscard]] std::optional<std::string_view> fragment() const { return view(fragment_); }

    friend bool operator==(const URL& left, const URL& right) { return left.text_ == right.text_; }

private:
    /// A place in the text, so that copies and moved objects need no care.
    struct Span {
        std::size_t start = 0;
        std::size_t length = 0;
    };

    explicit URL(std::string text) : text_(std::move(text)) {}

    [[nodiscard]] bool readAuthority(std::string_view authority);
    [[nodiscard]] bool readPort(std::string_view digits);

    /// `part` is a view into the text.
    [[nodiscard]] Span span(std::string_view part) const;
    [[nodiscard]] std::string_view view(Span span) const;
    [[nodiscard]] std::optional<std::string_view> view(const std::optional<Span>& span) const;

    std::string text_;
    Span scheme_;
    std::optional<Span> userInfo_;
    std::optional<Span> host_;
    std::optional<std::uint16_t> port_;
    Span path_;
    std::optional<Span> query_;
    std::optional<Span> fragment_;
};

}  // namespace Base
