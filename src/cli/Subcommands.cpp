#include "cli/Subcommands.h"

#include <algorithm>
#include <array>

namespace trimora {
namespace {

constexpr std::array<Subcommand, 0> kSubcommands = {};

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
