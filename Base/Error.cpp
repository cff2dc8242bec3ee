#include "Base/Error.hpp"

#include <utility>

namespace Base {

DescribedError::DescribedError(const std::string& description, std::optional<std::string> recoverySuggestion)
    : std::runtime_error(description), recoverySuggestion_(std::move(recoverySuggestion)) {}

DescribedError::~DescribedError() = default;

std::string DescribedError::description() const { return what(); }

std::optional<std::string> DescribedError::recoverySuggestion() const { return recoverySuggestion_; }

std::string describe(const std::exception_ptr& error) noexcept {
    if (!error) {
        return {};
    }
    // A host's own description may throw in turn, so it is asked inside a second guard.
    try {
        try {
            std::rethrow_exception(error);
        } catch (const DescribedError& described) {
            return described.description();
        } catch (const std::exception& exception) {
            return exception.what();
        }
    } catch (...) {
        return "Unknown error";
    }
}

std::optional<std::string> recoverySuggestion(const std::exception_ptr& error) noexcept {
    if (!error) {
        return std::nullopt;
    }
    try {
        try {
            std::rethrow_exception(error);
        } catch (const DescribedError& described) {
            return described.recoverySuggestion();
        }
    } catch (...) {
        return std::nullopt;
    }
}

}  // namespace Base
