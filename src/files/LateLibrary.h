#pragma once

#include <mutex>
#include <optional>

#include "foundation/Result.h"

namespace trimora::files {

/// A shared library that is loaded when something of it is needed, for those of which a start
/// needs nothing: loading libcurl, and the two dozen libraries that it stands on, with the program
/// took a third of the time until the window came.
///
/// A library that was opened stays until the process ends, so its functions may be kept. Any thread.
class LateLibrary {
 public:
    /// `name` is that of the file that programs are linked with at run time, with the number of its interface
    /// ("libcurl.so.4"). Returns an error where it is not installed.
    [[nodiscard]] static foundation::Result<LateLibrary> open(const char* name);

    /// Points `function` at the library's own of this name. `Function` is its type as the library's header
    /// declares it.
    template <typename Function>
    foundation::Result<void> find(const char* name, Function*& function) const {
        const auto found = address(name);
        if (!found)
            return found.error();
        function = reinterpret_cast<Function*>(*found);
        return {};
    }

 private:
    explicit LateLibrary(void* handle) : handle_(handle) {}
    [[nodiscard]] foundation::Result<void*> address(const char* name) const;

    void* handle_;
};

/// Finds one function of a library after another, until one is missing.
class LateFunctions {
 public:
    /// `library` outlives this.
    explicit LateFunctions(const LateLibrary& library) : library_(library) {}

    template <typename Function>
    void operator()(const char* name, Function*& function) {
        if (found_)
            found_ = library_.find(name, function);
    }

    /// An error that names the first one missing, if any is.
    [[nodiscard]] const foundation::Result<void>& found() const { return found_; }

 private:
    const LateLibrary& library_;
    foundation::Result<void> found_;
};

/// Loads the library of that name and has `findAll(find, functions)` find what is used of it. An error where
/// it is not installed or a function is missing.
template <typename Functions, typename FindAll>
[[nodiscard]] foundation::Result<Functions> loadFunctions(const char* name, const FindAll& findAll) {
    const auto library = LateLibrary::open(name);
    if (!library)
        return library.error();
    Functions functions{};
    LateFunctions find(*library);
    findAll(find, functions);
    if (!find.found())
        return find.found().error();
    return functions;
}

/// What the process uses of a library, loaded for the first who asks and kept once that went well. Until then
/// whoever asks tries again, as it may have been memory that was missing. Any thread.
template <typename Functions>
class LoadedOnce {
 public:
    [[nodiscard]] foundation::Result<const Functions*> get(foundation::Result<Functions> (*load)()) {
        const std::scoped_lock lock(mutex_);
        if (!kept_) {
            const foundation::Result<Functions> loaded = load();
            if (!loaded)
                return loaded.error();
            kept_ = *loaded;
        }
        return &*kept_;
    }

 private:
    std::mutex mutex_;
    std::optional<Functions> kept_;
};

}  // namespace trimora::files
