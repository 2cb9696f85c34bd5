#pragma once

#include <cstddef>
#include <mutex>
#include <string>

#include "batch/CutPlan.h"
#include "batch/Surroundings.h"
#include "foundation/Geometry.h"
#include "foundation/Result.h"

namespace trimora::batch {

/// What became of one picture.
struct CutOutcome {
    foundation::IntRect box;  ///< the part of the picture that the result shows; pixels, top row first
    std::string notice;       ///< what is missing of the picture; mostly empty
};

/// Tells what becomes of the pictures while they are worked on: a line each for a person and, where that
/// is wanted, one of JSON for a program; and a sum in the end. Any thread.
class CutReport {
 public:
    enum class Form { forPeople, jsonToo };

    CutReport(Surroundings& surroundings, Form form, std::size_t pictures)
        : surroundings_(surroundings), form_(form), pictures_(pictures) {}

    void tell(const CutTask& task, const foundation::Result<CutOutcome>& outcome);

    /// The line that ends the run, where there was more than one picture.
    void sumUp();

    /// Whether every picture was cut, and everything could be told.
    [[nodiscard]] bool allWell() const;

 private:
    void tellPerson(const CutTask& task, const foundation::Result<CutOutcome>& outcome);
    void tellProgram(const CutTask& task, const foundation::Result<CutOutcome>& outcome);

    Surroundings& surroundings_;
    const Form form_;
    const std::size_t pictures_;
    mutable std::mutex mutex_;
    std::size_t told_ = 0;
    std::size_t failed_ = 0;
};

}  // namespace trimora::batch
