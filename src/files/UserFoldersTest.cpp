#include "files/UserFolders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace trimora::files {
namespace {

/// An environment variable with another value (or none) until the object goes.
class Variable {
 public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* const now = std::getenv(name))
            before_ = now;
        set(value);
    }
    ~Variable() { set(before_ ? before_->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

 private:
    void set(const char* value) const {
        if (value != nullptr)
            ::setenv(name_, value, 1);
        else
            ::unsetenv(name_);
    }

    const char* name_;
    std::optional<std::string> before_;
};

TEST(UserFolders, AreWhereTheEnvironmentSays) {
    const Variable data("XDG_DATA_HOME", "/d");
    const Variable config("XDG_CONFIG_HOME", "/c");
    const Variable cache("XDG_CACHE_HOME", "/k");
    EXPECT_EQ(dataHome(), "/d");
    EXPECT_EQ(configHome(), "/c");
    EXPECT_EQ(cacheHome(), "/k");
}

TEST(UserFolders, AreBelowTheHomeFolderOtherwise) {
    const Variable home("HOME", "/people/ann");
    const Variable data("XDG_DATA_HOME", nullptr);
    const Variable config("XDG_CONFIG_HOME", "");
    const Variable cache("XDG_CACHE_HOME", "relative/path");
    EXPECT_EQ(dataHome(), "/people/ann/.local/share");
    EXPECT_EQ(configHome(), "/people/ann/.config");
    EXPECT_EQ(cacheHome(), "/people/ann/.cache");
}

TEST(UserFolders, AreFoundWithoutAHomeInTheEnvironment) {
    const Variable home("HOME", nullptr);
    const Variable data("XDG_DATA_HOME", nullptr);
    EXPECT_TRUE(dataHome().is_absolute());
}

}  // namespace
}  // namespace trimora::files
