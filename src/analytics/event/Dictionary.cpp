#include "analytics/event/Dictionary.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

namespace trimora::analytics {

using foundation::Error;
using foundation::Result;

namespace {

/// Whether the writer may copy the text between quotes as it is.
bool isPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return c >= ' ' && c < '\x7F' && c != '"' && c != '\\'; });
}

/// Where the name is, or would be.
std::size_t placeOf(std::string_view name, const std::vector<std::string>& names) {
    return static_cast<std::size_t>(std::lower_bound(names.begin(), names.end(), name) - names.begin());
}

bool isAt(std::size_t place, std::string_view name, const std::vector<std::string>& names) {
    return place < names.size() && names[place] == name;
}

std::ptrdiff_t offset(std::size_t place) {
    return static_cast<std::ptrdiff_t>(place);
}

/// Puts a value together as the library's parser goes through the text.
class Builder final : public nlohmann::json_sax<nlohmann::json> {
 public:
    bool null() override { return add(nullptr); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(std::int64_t value) override { return add(value); }
    bool number_unsigned(std::uint64_t value) override { return add(value); }
    bool number_float(double value, const std::string& /*text*/) override { return add(value); }
    bool string(std::string& text) override { return add(std::move(text)); }
    bool binary(nlohmann::json::binary_t& /*bytes*/) override { return false; }
    bool start_object(std::size_t /*count*/) override { return begin(Dictionary::object()); }
    bool start_array(std::size_t /*count*/) override { return begin(Dictionary::array()); }
    bool key(std::string& name) override {
        open_.back().name = std::move(name);
        return true;
    }
    bool end_object() override { return end(); }
    bool end_array() override { return end(); }
    bool parse_error(std::size_t /*at*/, const std::string& /*token*/,
                     const nlohmann::json::exception& /*why*/) override {
        return false;
    }

    Dictionary result;

 private:
    /// A value that is not yet whole, and the name that its next member gets.
    struct Open {
        Dictionary value;
        std::string name;
    };
    bool begin(Dictionary value) {
        if (open_.size() >= Dictionary::kMostNested)
            return false;
        open_.push_back({std::move(value), {}});
        return true;
    }
    bool add(Dictionary value) {
        if (open_.empty()) {
            result = std::move(value);
        } else if (Open& within = open_.back(); within.value.isObject()) {
            within.value.set(within.name, std::move(value));
        } else {
            within.value.append(std::move(value));
        }
        return true;
    }
    bool end() {
        Dictionary whole = std::move(open_.back().value);
        open_.pop_back();
        return add(std::move(whole));
    }

    std::vector<Open> open_;
};

}  // namespace

/// What the library writes of a text or number by itself holds no tree, so it lets go of it without needing
/// memory.
class Dictionary::Writer {
 public:
    explicit Writer(nlohmann::json::error_handler_t handler) : handler_(handler) {}

    void write(const Dictionary& value) {
        std::visit([this](const auto& one) { write(one); }, value.value_);
    }

    std::string written;
    bool isWhole = true;  ///< no number was met that is not finite

 private:
    void write(std::monostate /*null*/) { written += "null"; }
    void write(bool value) { written += value ? "true" : "false"; }
    void write(std::int64_t value) { written += std::to_string(value); }
    void write(std::uint64_t value) { written += std::to_string(value); }
    void write(double value) {
        isWhole = isWhole && std::isfinite(value);
        written += nlohmann::json(value).dump();
    }
    void write(const std::string& text) {
        if (isPlain(text))
            written.append("\"").append(text).append("\"");
        else
            written += nlohmann::json(text).dump(-1, ' ', false, handler_);
    }
    void write(const Array& array) {
        writeAll("[]", array.values.size(), [&](std::size_t i) { write(array.values[i]); });
    }
    void write(const Object& object) {
        writeAll("{}", object.names.size(), [&](std::size_t i) {
            write(object.names[i]);
            written += ':';
            write(object.values[i]);
        });
    }
    template <typename One>
    void writeAll(const char* brackets, std::size_t count, const One& one) {
        written += brackets[0];
        for (std::size_t i = 0; i < count; ++i) {
            if (i > 0)
                written += ',';
            one(i);
        }
        written += brackets[1];
    }

    nlohmann::json::error_handler_t handler_;
};

Dictionary::Dictionary(std::initializer_list<Entry> entries) : value_(Object()) {
    for (const Entry& entry : entries)
        set(entry.first, entry.second);
}

Dictionary::Dictionary(std::uint64_t value, Whole /*number*/) {
    if (value <= std::uint64_t{std::numeric_limits<std::int64_t>::max()})
        value_ = static_cast<std::int64_t>(value);
    else
        value_ = value;
}

std::optional<Dictionary> Dictionary::parse(std::string_view json) {
    Builder builder;
    if (!nlohmann::json::sax_parse(json, &builder))
        return std::nullopt;
    return std::move(builder.result);
}

Result<std::string> Dictionary::json() const {
    Writer writer(nlohmann::json::error_handler_t::strict);
    try {
        writer.write(*this);
    } catch (const nlohmann::json::exception& failure) {
        return Error{failure.what()};
    }
    if (!writer.isWhole)
        return Error{"it holds a number that is not finite"};
    return std::move(writer.written);
}

std::string Dictionary::jsonOrMarks() const {
    Writer writer(nlohmann::json::error_handler_t::replace);
    writer.write(*this);
    return std::move(writer.written);
}

bool Dictionary::isEmpty() const {
    if (const auto* const members = std::get_if<Object>(&value_))
        return members->names.empty();
    const auto* const array = std::get_if<Array>(&value_);
    return isNull() || (array != nullptr && array->values.empty());
}

std::optional<bool> Dictionary::boolean() const {
    const auto* const value = std::get_if<bool>(&value_);
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::optional<std::int64_t> Dictionary::integer() const {
    const auto* const value = std::get_if<std::int64_t>(&value_);
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

std::optional<double> Dictionary::number() const {
    if (const auto* const real = std::get_if<double>(&value_))
        return *real;
    if (const auto* const large = std::get_if<std::uint64_t>(&value_))
        return static_cast<double>(*large);
    const auto whole = integer();
    return whole ? std::optional(static_cast<double>(*whole)) : std::nullopt;
}

const Dictionary* Dictionary::find(std::string_view name) const {
    const auto* const members = std::get_if<Object>(&value_);
    if (members == nullptr)
        return nullptr;
    const std::size_t place = placeOf(name, members->names);
    return isAt(place, name, members->names) ? &members->values[place] : nullptr;
}

void Dictionary::set(std::string_view name, Dictionary value) {
    auto* const members = std::get_if<Object>(&value_);
    if (members == nullptr)
        return;
    const std::size_t place = placeOf(name, members->names);
    if (isAt(place, name, members->names)) {
        members->values[place] = std::move(value);
        return;
    }
    // The columns stay equally long whatever throws.
    if (members->values.size() == members->values.capacity())
        members->values.reserve(std::max<std::size_t>(8, 2 * members->values.size()));
    members->names.emplace(members->names.begin() + offset(place), name);
    members->values.insert(members->values.begin() + offset(place), std::move(value));
}

std::optional<Dictionary> Dictionary::take(std::string_view name) {
    auto* const members = std::get_if<Object>(&value_);
    if (members == nullptr)
        return std::nullopt;
    const std::size_t place = placeOf(name, members->names);
    if (!isAt(place, name, members->names))
        return std::nullopt;
    std::optional<Dictionary> taken = std::move(members->values[place]);
    members->names.erase(members->names.begin() + offset(place));
    members->values.erase(members->values.begin() + offset(place));
    return taken;
}

void Dictionary::append(Dictionary value) {
    if (auto* const array = std::get_if<Array>(&value_))
        array->values.push_back(std::move(value));
}

}  // namespace trimora::analytics
