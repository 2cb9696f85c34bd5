#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "script/Steps.h"

namespace trimora::script {

/// The fields of one line, asked for by name and kind.
///
/// The first question that the line does not answer is kept as the problem; what is returned then, and from
/// there on, counts for nothing. So a step is put together first and looked at afterwards.
class Fields {
 public:
    using Json = nlohmann::json;

    /// `line` is an object and outlives this.
    explicit Fields(const Json& line) : line_(line) {}

    /// What was expected and not found; empty while all is well.
    [[nodiscard]] const std::string& problem() const { return problem_; }

    [[nodiscard]] bool has(const char* name) const { return line_.contains(name); }
    /// The field as it is, null where it is missing.
    [[nodiscard]] const Json& raw(const char* name) const;

    /// Keeps "expected NAME, WHAT" unless an earlier problem is kept. Returns false, for the caller to
    /// return.
    bool expected(const char* name, const std::string& what);

    [[nodiscard]] bool flag(const char* name);
    [[nodiscard]] std::string text(const char* name);
    [[nodiscard]] double number(const char* name, double least, double most);
    [[nodiscard]] int whole(const char* name, int least, int most);
    /// One of the names; returns its place among them.
    [[nodiscard]] std::size_t oneOf(const char* name, std::span<const std::string_view> names);
    [[nodiscard]] Point point(const char* name);
    [[nodiscard]] std::vector<Point> points(const char* name);
    /// At least one.
    [[nodiscard]] std::vector<std::string> paths(const char* name);
    /// Four numbers 0..1, or null for none.
    [[nodiscard]] std::optional<Rgba> colour(const char* name);

 private:
    const Json& line_;
    std::string problem_;
};

/// The names in quotation marks, with commas between.
[[nodiscard]] std::string listOf(std::span<const std::string_view> names);

}  // namespace trimora::script
