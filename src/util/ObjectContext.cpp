#include "util/ObjectContext.h"

#include "foundation/Log.h"

namespace trimora::util {

std::size_t countOfDataArray(const ObjectContext& context, std::string_view entity) {
    return context.count(entity);
}

std::vector<std::any> getDataArray(const ObjectContext& context, std::string_view entity) {
    return context.fetch(entity, std::nullopt);
}

std::vector<std::any> getDataArray(const ObjectContext& context, std::string_view entity, Range inRange) {
    return context.fetch(entity, inRange);
}

void saveContextForce(ObjectContext& context) {
    const foundation::Result<void> saved = context.save();
    if (!saved)
        foundation::log::error("Unresolved error %s, %d", saved.error().message.c_str(), saved.error().code);
}

void saveContext(ObjectContext& context, ThreadFlowRegistry& flows) {
    constexpr float kDelay = 1;  // seconds
    flows.flowNamed("CoreDataContextSave", kDelay, [&context] { saveContextForce(context); }).execute();
}

}  // namespace trimora::util
