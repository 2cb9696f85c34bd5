#include "cli/BatchCommands.h"

#include <algorithm>
#include <iostream>
#include <thread>

#include "batch/CutCommand.h"
#include "batch/InfoCommand.h"
#include "foundation/ThreadQueues.h"

namespace trimora {
namespace {

batch::Surroundings terminal() {
    return {std::cin, std::cout, std::cerr,
            std::max(1, static_cast<int>(std::thread::hardware_concurrency())),
            [](int width) { return std::make_unique<foundation::ThreadWorkers>(width); }};
}

}  // namespace

int runCut(Words words) {
    batch::Surroundings surroundings = terminal();
    return batch::cut(words, surroundings);
}

int runInfo(Words words) {
    batch::Surroundings surroundings = terminal();
    return batch::info(words, surroundings);
}

}  // namespace trimora
