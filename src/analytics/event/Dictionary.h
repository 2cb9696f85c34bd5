#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "foundation/Result.h"

namespace trimora::analytics {

/// The data of an event: a JSON value, mostly an object whose values are strings, numbers, booleans, arrays,
/// objects and null. The null stands for no data at all.
///
/// A value like any other, of its own so that letting go of one never needs memory: the tree of the JSON
/// library allocates in its destructor, and ends the program where it cannot. Copying and changing may throw
/// std::bad_alloc; nothing else is thrown. Any thread, as for a string.
class Dictionary {
 public:
    using Entry = std::pair<std::string_view, Dictionary>;

    Dictionary() = default;
    // The conversions are meant: {{"name", "open"}, {"count", 1}} reads as what it is.
    // NOLINTBEGIN(google-explicit-constructor)
    Dictionary(std::nullptr_t) {}
    Dictionary(bool value) : value_(value) {}
    Dictionary(double value) : value_(value) {}
    template <std::signed_integral Integer>
    Dictionary(Integer value) : value_(std::int64_t{value}) {}
    template <std::unsigned_integral Integer>
    Dictionary(Integer value) : Dictionary(std::uint64_t{value}, Whole{}) {}
    Dictionary(const char* text) : value_(std::string(text)) {}
    Dictionary(std::string_view text) : value_(std::string(text)) {}
    Dictionary(std::string text) : value_(std::move(text)) {}
    /// An object. Of two entries with one name the last counts.
    Dictionary(std::initializer_list<Entry> entries);
    // NOLINTEND(google-explicit-constructor)

    [[nodiscard]] static Dictionary object() { return Dictionary(Object()); }
    [[nodiscard]] static Dictionary array(std::vector<Dictionary> values = {}) {
        return Dictionary(Array{std::move(values)});
    }

    /// The value in a JSON text; nothing where the text is none, is no UTF-8 or is nested deeper than
    /// kMostNested.
    [[nodiscard]] static std::optional<Dictionary> parse(std::string_view json);
    static constexpr std::size_t kMostNested = 100;

    /// As compact JSON, the members of objects in the order of their names. A value that JSON cannot carry
    /// (a number that is not finite, text that is not UTF-8) is an error.
    [[nodiscard]] foundation::Result<std::string> json() const;

    /// As json(), with a mark in place of each byte that is not UTF-8 and null for numbers that are not
    /// finite.
    [[nodiscard]] std::string jsonOrMarks() const;

    [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(value_); }
    [[nodiscard]] bool isObject() const { return std::holds_alternative<Object>(value_); }
    /// Whether it is a null, or an object or array without anything in it.
    [[nodiscard]] bool isEmpty() const;

    /// What it is, where it is that; null or nothing otherwise. An integer is a number too.
    [[nodiscard]] const std::string* text() const { return std::get_if<std::string>(&value_); }
    [[nodiscard]] std::optional<bool> boolean() const;
    [[nodiscard]] std::optional<std::int64_t> integer() const;
    [[nodiscard]] std::optional<double> number() const;

    /// The member of that name; null where there is none, or this is no object.
    [[nodiscard]] const Dictionary* find(std::string_view name) const;
    /// Adds or replaces the member. Does nothing where this is no object.
    void set(std::string_view name, Dictionary value);
    /// Takes the member out and returns it; nothing where there is none.
    std::optional<Dictionary> take(std::string_view name);
    /// Adds to an array. Does nothing where this is none.
    void append(Dictionary value);

    /// Calls visit(name, value) for each member of an object, in the order of their names.
    template <typename Visit>
    void forEach(const Visit& visit) const {
        if (const auto* const members = std::get_if<Object>(&value_)) {
            for (std::size_t i = 0; i < members->names.size(); ++i)
                visit(members->names[i], members->values[i]);
        }
    }

    bool operator==(const Dictionary& other) const { return value_ == other.value_; }

 private:
    class Writer;
    struct Whole {};
    struct Array {
        std::vector<Dictionary> values;
        bool operator==(const Array& other) const { return values == other.values; }
    };
    /// Two columns, in the order of the names.
    struct Object {
        std::vector<std::string> names;
        std::vector<Dictionary> values;
        bool operator==(const Object& other) const { return names == other.names && values == other.values; }
    };

    explicit Dictionary(Array array) : value_(std::move(array)) {}
    explicit Dictionary(Object object) : value_(std::move(object)) {}
    Dictionary(std::uint64_t value, Whole);

    /// Of whole numbers only those that no std::int64_t holds are std::uint64_t.
    std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::string, Array, Object>
        value_;
};

}  // namespace trimora::analytics
