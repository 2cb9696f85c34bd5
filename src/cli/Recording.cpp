#include "cli/Recording.h"

#include <cmath>

#include "script/Writer.h"

namespace trimora {

foundation::Result<Recording> Recording::create(const std::filesystem::path& file) {
    std::ofstream stream(file, std::ios::trunc);
    if (!stream.is_open())
        return foundation::Error{"the script " + file.string() + " cannot be written"};
    return Recording(std::move(stream));
}

void Recording::write(const script::Step& step) {
    stream_ << script::writeStep(step) << '\n' << std::flush;
}

void Recording::add(const script::Step& step) {
    constexpr double kThousand = 1000;  // milliseconds are as exact as anybody's hand
    const Instant now = std::chrono::steady_clock::now();
    const double seconds =
        std::floor(std::chrono::duration<double>(now - last_).count() * kThousand) / kThousand;
    if (holds_ == 0 && seconds > 0) {
        write(script::AdvanceStep{seconds});
        last_ = now;
    }
    write(step);
}

}  // namespace trimora
