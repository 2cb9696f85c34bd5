#pragma once

#include <any>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "foundation/Result.h"
#include "util/ThreadFlow.h"

/// Stored objects as a controller sees them: counted and fetched by the name of their kind, saved
/// together. Main thread only.
namespace trimora::util {

/// A part of a list: skip `location` elements, then take up to `length`.
struct Range {
    std::size_t location = 0;
    std::size_t length = 0;
};

/// The store behind them, which whoever owns the data implements.
class ObjectContext {
 public:
    virtual ~ObjectContext() = default;

    [[nodiscard]] virtual std::size_t count(std::string_view entity) const = 0;

    /// The objects of the entity in the store's order; all of them, or those in the range.
    [[nodiscard]] virtual std::vector<std::any> fetch(std::string_view entity,
                                                      std::optional<Range> range) const = 0;

    /// Writes what changed. Returns an error where it cannot; nothing is lost from memory.
    virtual foundation::Result<void> save() = 0;
};

[[nodiscard]] std::size_t countOfDataArray(const ObjectContext& context, std::string_view entity);
[[nodiscard]] std::vector<std::any> getDataArray(const ObjectContext& context, std::string_view entity);
[[nodiscard]] std::vector<std::any> getDataArray(const ObjectContext& context, std::string_view entity,
                                                 Range inRange);

/// Saves at once; a failure is an error line in the log.
void saveContextForce(ObjectContext& context);

/// Saves once, a second after the last call of a burst. All callers share the runner
/// "CoreDataContextSave" of the registry, which saves the context of the first call: a program has
/// one, and it lives as long as the registry.
void saveContext(ObjectContext& context, ThreadFlowRegistry& flows);

}  // namespace trimora::util
