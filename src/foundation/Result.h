#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace trimora::foundation {

/// Why an operation could not be done: one sentence for a person, and a number for a program.
struct Error {
    std::string message;  ///< without a full stop, beginning in lower case, naming no file twice
    int code = 0;         ///< meaning is the caller's; 0 where nobody asks
};

/// The value of an operation, or the Error that stood in its way. Nothing throws across a folder:
/// whatever can fail returns one of these. Reading the wrong side is a programming error.
template <typename T>
class [[nodiscard]] Result {
 public:
    // Both conversions are meant: `return value;` and `return Error{...};` read as what they are.
    Result(T value)  // NOLINT(google-explicit-constructor)
        : state_(std::in_place_index<0>, std::move(value)) {}
    Result(Error error)  // NOLINT(google-explicit-constructor)
        : state_(std::in_place_index<1>, std::move(error)) {}

    [[nodiscard]] bool ok() const { return state_.index() == 0; }
    explicit operator bool() const { return ok(); }

    [[nodiscard]] const T& value() const& { return std::get<0>(state_); }
    [[nodiscard]] T& value() & { return std::get<0>(state_); }
    [[nodiscard]] T&& value() && { return std::get<0>(std::move(state_)); }
    [[nodiscard]] const Error& error() const { return std::get<1>(state_); }

    const T& operator*() const& { return value(); }
    T& operator*() & { return value(); }
    T&& operator*() && { return std::move(*this).value(); }
    const T* operator->() const { return &value(); }
    T* operator->() { return &value(); }

 private:
    std::variant<T, Error> state_;
};

/// Done, or the Error that stood in the way.
template <>
class [[nodiscard]] Result<void> {
 public:
    Result() = default;
    Result(Error error) : error_(std::move(error)) {}  // NOLINT(google-explicit-constructor)

    [[nodiscard]] bool ok() const { return !error_.has_value(); }
    explicit operator bool() const { return ok(); }
    [[nodiscard]] const Error& error() const { return *error_; }

 private:
    std::optional<Error> error_;
};

}  // namespace trimora::foundation
