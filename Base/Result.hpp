#pragma once

#include <exception>
#include <stdexcept>
#include <utility>
#include <variant>

namespace Base {

namespace Detail {

/// A failure that was reported without an error is a failure all the same.
inline std::exception_ptr presentError(std::exception_ptr error) {
    return error ? std::move(error) : std::make_exception_ptr(std::runtime_error("Unknown error"));
}

}  // namespace Detail

/// A value or the error that stands in its place. The error is handed on unchanged, as it was thrown or reported.
///
/// Reading the value of a failure, or the error of a success, is a programming error: `value()` then rethrows the
/// error, `error()` gives a null pointer.
template <typename Value>
class [[nodiscard]] Result {
public:
    // Implicit, so that a value or a failure can be returned as it is.
    Result(Value value) : content_(std::in_place_index<0>, std::move(value)) {}

    [[nodiscard]] static Result failure(std::exception_ptr error) {
        return Result(FailureTag{}, Detail::presentError(std::move(error)));
    }

    [[nodiscard]] bool succeeded() const noexcept { return content_.index() == 0; }

    [[nodiscard]] const Value& value() const& {
        rethrowFailure();
        return std::get<0>(content_);
    }

    [[nodiscard]] Value&& value() && {
        rethrowFailure();
        return std::get<0>(std::move(content_));
    }

    [[nodiscard]] std::exception_ptr error() const noexcept {
        const auto* error = std::get_if<1>(&content_);
        return error != nullptr ? *error : nullptr;
    }

private:
    struct FailureTag {};
    Result(FailureTag, std::exception_ptr error) : content_(std::in_place_index<1>, std::move(error)) {}

    void rethrowFailure() const {
        if (const auto* error = std::get_if<1>(&content_)) {
            std::rethrow_exception(*error);
        }
    }

    std::variant<Value, std::exception_ptr> content_;
};

/// Success without a value, or an error.
template <>
class [[nodiscard]] Result<void> {
public:
    Result() = default;

    [[nodiscard]] static Result failure(std::exception_ptr error) {
        Result result;
        result.error_ = Detail::presentError(std::move(error));
        return result;
    }

    [[nodiscard]] bool succeeded() const noexcept { return !error_; }
    [[nodiscard]] std::exception_ptr error() const noexcept { return error_; }

    /// Rethrows the error of a failure.
    void value() const {
        if (error_) {
            std::rethrow_exception(error_);
        }
    }

private:
    std::exception_ptr error_;
};

/// A failure made from an exception object, for example `failure<bool>(std::runtime_error("No connection"))`.
template <typename Value, typename Exception>
[[nodiscard]] Result<Value> failure(Exception&& exception) {
    return Result<Value>::failure(std::make_exception_ptr(std::forward<Exception>(exception)));
}

}  // namespace Base
