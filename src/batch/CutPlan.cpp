#include "batch/CutPlan.h"

#include <map>
#include <utility>

#include "batch/Surroundings.h"

namespace trimora::batch {
namespace {

using foundation::Error;
using foundation::Result;
using std::filesystem::path;

path resultIn(const path& folder, const std::string& input) {
    const path name = input == kStandardStream ? path("stdin") : path(input).stem();
    return folder / (name.string() + ".png");
}

path maskBeside(const path& result) {
    return result.parent_path() / (result.stem().string() + ".mask.png");
}

CutTask taskOf(const CutOrder& order, const std::string& input) {
    CutTask task{input, order.output ? path(*order.output) : resultIn(*order.outFolder, input), {}};
    if (order.writeMask)
        task.mask = maskBeside(task.result);
    return task;
}

/// Notes who writes which file, and says no to the second.
class Targets {
 public:
    Result<void> claim(const path& target, const std::string& input) {
        const auto [holder, free] = holders_.try_emplace(target.lexically_normal(), input);
        if (!free)
            return Error{holder->second + " and " + input + " would both be written to " + target.string()};
        return {};
    }

 private:
    std::map<path, std::string> holders_;
};

}  // namespace

Result<std::vector<CutTask>> planOf(const CutOrder& order) {
    std::vector<CutTask> tasks;
    Targets targets;
    for (const std::string& input : order.inputs) {
        CutTask task = taskOf(order, input);
        for (const path& target : {task.result, task.mask}) {
            if (target.empty())
                continue;
            if (Result<void> claimed = targets.claim(target, input); !claimed)
                return claimed.error();
        }
        tasks.push_back(std::move(task));
    }
    return tasks;
}

}  // namespace trimora::batch
