#include "cli/Subcommands.h"

#include <algorithm>

#include "cli/BatchCommands.h"
#include "cli/RunCommand.h"

namespace trimora {
namespace {

constexpr Subcommand kSubcommands[] = {
    {"run", runScripts},
    {"cut", runCut},
    {"info", runInfo},
};

}  // namespace

std::span<const Subcommand> subcommands() {
    return kSubcommands;
}

const Subcommand* subcommandOf(Words words) {
    if (words.empty())
        return nullptr;
    const auto* const found = std::ranges::find(kSubcommands, words.front(), &Subcommand::name);
    return found != std::end(kSubcommands) ? found : nullptr;
}

}  // namespace trimora
