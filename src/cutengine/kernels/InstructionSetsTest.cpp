#include <dlfcn.h>
#include <gtest/gtest.h>
#include <hwy/targets.h>

namespace trimora::cutengine::kernels {
namespace {

TEST(InstructionSets, areThoseThatTheLibraryFindsToo) {
    void* const library = dlopen("libhwy.so.1", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    using Supported = std::int64_t();
    auto* const theirs = reinterpret_cast<Supported*>(dlsym(library, "_ZN3hwy16SupportedTargetsEv"));
    ASSERT_NE(theirs, nullptr) << dlerror();
    ASSERT_NE(theirs, &hwy::SupportedTargets);
    EXPECT_EQ(hwy::SupportedTargets() & HWY_TARGETS, theirs() & HWY_TARGETS);
    dlclose(library);
}

}  // namespace
}  // namespace trimora::cutengine::kernels
