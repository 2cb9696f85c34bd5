#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace trimora::benchmarks {

/// Which time counts: the one on the wall, for jobs of several threads; or the processor's for this program
/// alone, which other programs disturb less.
enum class Timed : std::uint8_t { byWall, byProcessor };

/// One job done by several contestants, timed in turns so that a busy machine slows all alike.
///
/// The first contestant added is ours: the others are printed with the ratio of their median to its.
class Comparison {
 public:
    explicit Comparison(std::string job, int rounds = 9, Timed timed = Timed::byWall)
        : job_(std::move(job)), rounds_(rounds), timed_(timed) {}

    Comparison& add(std::string name, std::function<void()> run) {
        contestants_.push_back({std::move(name), std::move(run), {}});
        return *this;
    }

    /// Lets each contestant run some times more before every run that is timed: it finds the caches as it
    /// left them itself, as a job does that comes again and again, and not as its neighbour did.
    Comparison& warm() {
        untimedRuns_ = 4;
        return *this;
    }

    /// Warms every contestant up once, runs all of them in every round, and prints the medians.
    void print() {
        for (Contestant& contestant : contestants_)
            contestant.run();
        for (int round = 0; round < rounds_; ++round) {
            for (Contestant& contestant : contestants_) {
                for (int run = 0; run < untimedRuns_; ++run)
                    contestant.run();
                contestant.milliseconds.push_back(timeOf(contestant.run));
            }
        }
        std::printf("%s, median of %d\n", job_.c_str(), rounds_);
        const double ours = median(contestants_.front());
        for (Contestant& contestant : contestants_)
            std::printf("  %-36s %10.3f ms  %7.2fx\n", contestant.name.c_str(), median(contestant),
                        median(contestant) / ours);
        std::fflush(stdout);
    }

 private:
    struct Contestant {
        std::string name;
        std::function<void()> run;
        std::vector<double> milliseconds;
    };

    [[nodiscard]] double now() const {
        if (timed_ == Timed::byWall)
            return std::chrono::duration<double, std::milli>(
                       std::chrono::steady_clock::now().time_since_epoch())
                .count();
        std::timespec time{};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }

    [[nodiscard]] double timeOf(const std::function<void()>& run) const {
        const double start = now();
        run();
        return now() - start;
    }

    static double median(Contestant& contestant) {
        auto& times = contestant.milliseconds;
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    }

    std::string job_;
    int rounds_;
    Timed timed_;
    int untimedRuns_ = 0;
    std::vector<Contestant> contestants_;
};

}  // namespace trimora::benchmarks
