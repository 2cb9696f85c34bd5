#include "cli/Subcommands.h"

#include <algorithm>
#include <array>

#include "cli/BatchCommands.h"

namespace trimora {
namespace {

constexpr std::array kSubcommands = {
    Subcommand{"cut", &runCut},
    Subcommand{"info", &runInfo},
};

}  // namespace

std::span<const Subcommand> subcommands() {
    return kSubcommands;
}

const Subcommand* subcommandOf(Words words) {
    if (words.empty())
        return nullptr;
    const auto found = std::ranges::find(kSubcommands, words.front(), &Subcommand::name);
    return found != std::end(kSubcommands) ? &*found : nullptr;
}

}  // namespace trimora
