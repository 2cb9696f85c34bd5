#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

/// Messages that are sent by name, for the borders of the program where the sender knows no type: menus
/// and toolbars send commands to whatever controller the window shows.
///
/// A selector is a string that ends in one colon for each argument: "save_pressed:". An object has a
/// class record with a name, a superclass and a table of methods; one object may get a method of its
/// own, which makes it an object of a fresh subclass. Main thread only.
namespace trimora::util {

class RuntimeObject;
class RuntimeClass;
using RuntimeClassPtr = std::shared_ptr<RuntimeClass>;

/// What runs for a selector. `argument` holds the sender as the caller gave it, or nothing; it is read
/// with std::any_cast, and a method whose argument is of another type must cope.
using Method = std::function<std::any(RuntimeObject& self, const std::any& argument)>;

/// A class record: what objects of one kind answer to. Shared by them all, so a method that is added
/// later counts for every one of them and for subclasses.
class RuntimeClass {
 public:
    /// A record of this name under `superclass` (which may be null). Names are for people and need
    /// not be unique.
    [[nodiscard]] static RuntimeClassPtr create(std::string name, RuntimeClassPtr superclass = nullptr);

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] const RuntimeClassPtr& superclass() const { return superclass_; }

    /// The method for the selector here or in the nearest superclass that has one; null where none has.
    [[nodiscard]] const Method* method(std::string_view selector) const;

    /// Makes `method` what this class does for the selector, in place of what it did.
    void overrideSelector(std::string_view selector, Method method);

    /// The same for a member function of the C++ class whose objects bear this record, so that a class
    /// lists its selectors in one chain: record->on("back_pressed:", &Editor::back_pressed)...
    template <typename Object>
    RuntimeClass& on(std::string_view selector, void (Object::*member)(const std::any& argument)) {
        overrideSelector(selector, [member](RuntimeObject& self, const std::any& argument) -> std::any {
            (static_cast<Object&>(self).*member)(argument);
            return {};
        });
        return *this;
    }
    template <typename Object>
    RuntimeClass& on(std::string_view selector, void (Object::*member)()) {
        overrideSelector(selector, [member](RuntimeObject& self, const std::any&) -> std::any {
            (static_cast<Object&>(self).*member)();
            return {};
        });
        return *this;
    }

    /// Declares that objects of this class and its subclasses have a variable of this name.
    void addVariable(std::string name) { variables_.insert(std::move(name)); }
    [[nodiscard]] bool hasVariable(std::string_view name) const;

 private:
    RuntimeClass(std::string name, RuntimeClassPtr superclass)
        : name_(std::move(name)), superclass_(std::move(superclass)) {}

    const std::string name_;
    const RuntimeClassPtr superclass_;
    std::map<std::string, Method, std::less<>> methods_;
    std::set<std::string, std::less<>> variables_;
};

/// An object that takes messages by name and carries values that others attach to it. Derive from it
/// (plainly, not virtually) and hand it the record of the deriving class.
class RuntimeObject {
 public:
    explicit RuntimeObject(RuntimeClassPtr record) : class_(std::move(record)) {}
    virtual ~RuntimeObject() = default;
    RuntimeObject(const RuntimeObject&) = delete;
    RuntimeObject& operator=(const RuntimeObject&) = delete;

    /// The record that counts for this object now; a subclass made for it alone after an override.
    [[nodiscard]] const RuntimeClassPtr& runtimeClass() const { return class_; }

    [[nodiscard]] bool respondsToSelector(std::string_view selector) const;

    /// Sends the message and returns its answer. An object that does not respond logs an error and
    /// answers nothing.
    std::any performSelector(std::string_view selector, const std::any& argument = {});

    /// Gives this object, not its class, an implementation of a selector that it responds to, by
    /// making it an object of a new subclass. The first is named after its class with the number 666
    /// ("Editor_$666"), later ones nest in it and count on. An object that does not respond is not
    /// subclassed: the method is added to its own class.
    void overrideSelector(std::string_view selector, Method method);

    /// Makes sure that the object responds to a selector, adding the method to its class where it does
    /// not; returns the selector.
    std::string makeSelector(std::string_view selector, Method method);

    /// A value that somebody attached under a key of his own; empty where nobody did.
    [[nodiscard]] std::any associatedValue(std::string_view key) const;
    /// Attaches a value, or takes it off where it is empty.
    void setAssociatedValue(std::string_view key, std::any value);

    /// The value of a variable that the class declares; empty where it was never set.
    [[nodiscard]] std::any variable(std::string_view name) const;

 private:
    using Values = std::map<std::string, std::any, std::less<>>;

    void becomeSubclass();

    RuntimeClassPtr class_;
    Values variables_;
    Values associated_;
};

}  // namespace trimora::util
