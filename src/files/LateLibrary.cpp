#include "files/LateLibrary.h"

#include <dlfcn.h>

namespace trimora::files {

using foundation::Error;
using foundation::Result;

Result<LateLibrary> LateLibrary::open(const char* name) {
    void* const handle = ::dlopen(name, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
        return Error{::dlerror()};
    return LateLibrary(handle);
}

Result<void*> LateLibrary::address(const char* name) const {
    void* const found = ::dlsym(handle_, name);
    if (found == nullptr)
        return Error{::dlerror()};
    return found;
}

}  // namespace trimora::files
