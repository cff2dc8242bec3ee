#pragma once

#include "Base/Error.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace RemoteCoding {

/// A failure of the cloud service's interface. A host's clients report theirs so; the component throws some of them itself.
class REMOTE_CODING_EXPORT TevuAPIError : public Base::DescribedError {
public:
    /// The order is fixed. Those that carry a value come first.
    enum class Case : std::uint8_t {
        service = 0,       ///< the service refused; carries its number for it
        transport = 1,     ///< the network failed; carries the system's error number
        video = 2,         ///< the video cannot be used; carries the index of a `Video::Case`
        noConnection = 3,  ///< the service cannot be reached
        notSignedIn = 4,   ///< nobody is signed in, or not any more: the user must sign in
    };

    /// What is wrong with a video.
    class REMOTE_CODING_EXPORT Video : public Base::DescribedError {
    public:
        /// The order is fixed.
        enum class Case : std::uint8_t {
            notFound = 0,
            noStreams = 1,      ///< the video has no list of streams
            unknownStream = 2,  ///< a stream was asked for that the video does not have
            noPlaybackURL = 3,  ///< a stream that was asked for cannot be played
            inError = 4,        ///< the service has given the video up
        };

        Video(Case which, const std::string& description,
              std::optional<std::string> recoverySuggestion = std::nullopt)
            : DescribedError(description, std::move(recoverySuggestion)), case_(which) {}

        [[nodiscard]] Case errorCase() const { return case_; }

    private:
        Case case_;
    };

    TevuAPIError(Case which, const std::string& description, std::optional<std::int64_t> value = std::nullopt,
                 std::optional<std::string> recoverySuggestion = std::nullopt)
        : DescribedError(description, std::move(recoverySuggestion)), case_(which), value_(value) {}

    [[nodiscard]] Case errorCase() const { return case_; }

    /// What the case carries; absent for one that carries nothing.
    [[nodiscard]] std::optional<std::int64_t> value() const { return value_; }

private:
    Case case_;
    std::optional<std::int64_t> value_;
};

}  // namespace RemoteCoding
