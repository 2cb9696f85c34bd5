#include "util/ObjectRuntime.h"

#include "foundation/Log.h"

namespace trimora::util {

namespace {

// The variables of an object with methods of its own: the class it had at first, and the number that
// its latest subclass bears.
constexpr const char* kRootClass = "RKNimbrel_BlackMagic_rootClass";
constexpr const char* kSubclassCounter = "RKNimbrel_BlackMagic_subclassCounter";
constexpr int kFirstSubclass = 666;

std::string subclassName(const RuntimeClass& root, int counter) {
    return root.name() + "_$" + std::to_string(counter);
}

}  // namespace

RuntimeClassPtr RuntimeClass::create(std::string name, RuntimeClassPtr superclass) {
    return RuntimeClassPtr(new RuntimeClass(std::move(name), std::move(superclass)));
}

const Method* RuntimeClass::method(std::string_view selector) const {
    for (const RuntimeClass* record = this; record != nullptr; record = record->superclass_.get()) {
        const auto found = record->methods_.find(selector);
        if (found != record->methods_.end())
            return &found->second;
    }
    return nullptr;
}

void RuntimeClass::overrideSelector(std::string_view selector, Method method) {
    methods_.insert_or_assign(std::string(selector), std::move(method));
}

bool RuntimeClass::hasVariable(std::string_view name) const {
    return variables_.contains(name) || (superclass_ && superclass_->hasVariable(name));
}

bool RuntimeObject::respondsToSelector(std::string_view selector) const {
    return class_->method(selector) != nullptr;
}

std::any RuntimeObject::performSelector(std::string_view selector, const std::any& argument) {
    const Method* const found = class_->method(selector);
    if (found == nullptr) {
        foundation::log::error("%s does not respond to %s", class_->name().c_str(),
                               std::string(selector).c_str());
        return {};
    }
    const Method method = *found;  // it may replace itself while it runs
    return method(*this, argument);
}

void RuntimeObject::overrideSelector(std::string_view selector, Method method) {
    if (respondsToSelector(selector))
        becomeSubclass();
    class_->overrideSelector(selector, std::move(method));
}

void RuntimeObject::becomeSubclass() {
    if (!class_->hasVariable(kRootClass)) {
        const RuntimeClassPtr root = class_;
        class_ = RuntimeClass::create(subclassName(*root, kFirstSubclass), root);
        class_->addVariable(kRootClass);
        class_->addVariable(kSubclassCounter);
        variables_.insert_or_assign(kRootClass, root);
        variables_.insert_or_assign(kSubclassCounter, kFirstSubclass);
        return;
    }
    const int counter = std::any_cast<int>(variable(kSubclassCounter)) + 1;
    variables_.insert_or_assign(kSubclassCounter, counter);
    const auto root = std::any_cast<RuntimeClassPtr>(variable(kRootClass));
    class_ = RuntimeClass::create(subclassName(*root, counter), class_);
}

std::string RuntimeObject::makeSelector(std::string_view selector, Method method) {
    if (!respondsToSelector(selector))
        class_->overrideSelector(selector, std::move(method));
    return std::string(selector);
}

std::any RuntimeObject::associatedValue(std::string_view key) const {
    const auto found = associated_.find(key);
    return found != associated_.end() ? found->second : std::any();
}

void RuntimeObject::setAssociatedValue(std::string_view key, std::any value) {
    if (value.has_value())
        associated_.insert_or_assign(std::string(key), std::move(value));
    else if (const auto found = associated_.find(key); found != associated_.end())
        associated_.erase(found);
}

std::any RuntimeObject::variable(std::string_view name) const {
    const auto found = variables_.find(name);
    return found != variables_.end() ? found->second : std::any();
}

}  // namespace trimora::util
