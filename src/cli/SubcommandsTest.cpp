#include "cli/Subcommands.h"

#include <gtest/gtest.h>

#include <vector>

namespace trimora {
namespace {

using List = std::vector<const char*>;

TEST(Subcommands, TheFirstWordNamesOne) {
    for (const Subcommand& subcommand : subcommands())
        EXPECT_EQ(subcommandOf(List{subcommand.name.data(), "a", "b"}), &subcommand) << subcommand.name;
}

TEST(Subcommands, AnythingElseIsForTheEditor) {
    EXPECT_EQ(subcommandOf({}), nullptr);
    for (const List& words : {List{"a.png"}, List{"./run"}, List{"--new"}, List{"a.png", "run"}})
        EXPECT_EQ(subcommandOf(words), nullptr) << words.front();
}

}  // namespace
}  // namespace trimora
