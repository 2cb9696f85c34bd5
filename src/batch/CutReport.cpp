#include "batch/CutReport.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "batch/JsonLine.h"

namespace trimora::batch {

using foundation::Result;

void CutReport::tell(const CutTask& task, const Result<CutOutcome>& outcome) {
    const std::scoped_lock lock(mutex_);
    ++told_;
    failed_ += outcome ? 0 : 1;
    tellPerson(task, outcome);
    if (form_ == Form::jsonToo)
        tellProgram(task, outcome);
}

void CutReport::tellPerson(const CutTask& task, const Result<CutOutcome>& outcome) {
    std::ostream& err = surroundings_.err;
    if (pictures_ > 1)
        err << '[' << told_ << '/' << pictures_ << "] ";
    err << task.input << ": ";
    if (!outcome)
        err << "not cut: " << outcome.error().message;
    else if (task.result == kStandardStream)
        err << "cut";
    else
        err << "cut, " << task.result.string();
    if (outcome && !outcome->notice.empty())
        err << " (" << outcome->notice << ')';
    err << std::endl;
}

void CutReport::tellProgram(const CutTask& task, const Result<CutOutcome>& outcome) {
    nlohmann::ordered_json line = {{"input", task.input}, {"ok", outcome.ok()}};
    if (outcome) {
        const foundation::IntRect& box = outcome->box;
        line["output"] = task.result.string();
        line["size"] = {box.width, box.height};
        line["box"] = {box.x, box.y, box.width, box.height};
        line["mask"] = nullptr;
        if (!task.mask.empty())
            line["mask"] = task.mask.string();
        line["notice"] = outcome->notice;
    } else {
        line["error"] = outcome.error().message;
    }
    writeJsonLine(surroundings_.out, line);
}

void CutReport::sumUp() {
    const std::scoped_lock lock(mutex_);
    if (pictures_ > 1)
        surroundings_.err << told_ - failed_ << " cut, " << failed_ << " failed" << std::endl;
}

bool CutReport::allWell() const {
    const std::scoped_lock lock(mutex_);
    return failed_ == 0 && surroundings_.out.good();
}

}  // namespace trimora::batch
