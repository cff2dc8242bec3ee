#pragma once

#include "Base/Export.hpp"

#include <exception>
#include <optional>
#include <stdexcept>
#include <string>

namespace Base {

/// An error with texts of its own for people. A host derives from it, or throws it, when `what()` is not what a
/// reader of the log or a user should see; any other exception type serves as well.
class REMOTE_CODING_EXPORT DescribedError : public std::runtime_error {
public:
    explicit DescribedError(const std::string& description,
                            std::optional<std::string> recoverySuggestion = std::nullopt);
    ~DescribedError() override;

    /// One sentence: what went wrong. Shown in log lines, some of which put a full stop behind it, and as the message of an
    /// error alert.
    [[nodiscard]] virtual std::string description() const;

    /// What the user can do about it, when there is something to say.
    [[nodiscard]] virtual std::optional<std::string> recoverySuggestion() const;

private:
    std::optional<std::string> recoverySuggestion_;
};

/// The text of an error for a log line: the description of a `DescribedError`, the `what()` of any other exception,
/// "Unknown error" for what is no exception, and the empty text for a null pointer. Never throws for what the
/// error itself does; callable from any thread.
[[nodiscard]] REMOTE_CODING_EXPORT std::string describe(const std::exception_ptr& error) noexcept;

/// What the user can do about the error; absent when it is no `DescribedError`, is null, or says nothing. Never throws for what
/// the error itself does; callable from any thread.
[[nodiscard]] REMOTE_CODING_EXPORT std::optional<std::string>
recoverySuggestion(const std::exception_ptr& error) noexcept;

}  // namespace Base
