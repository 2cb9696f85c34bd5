#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace trimora::benchmarks {

/// One job done by several contestants, timed in turns so that a busy machine slows all alike.
///
/// The first contestant added is ours: the others are printed with the ratio of their median to its.
class Comparison {
 public:
    explicit Comparison(std::string job, int rounds = 9) : job_(std::move(job)), rounds_(rounds) {}

    Comparison& add(std::string name, std::function<void()> run) {
        contestants_.push_back({std::move(name), std::move(run), {}});
        return *this;
    }

    /// Warms every contestant up once, runs all of them in every round, and prints the medians.
    void print() {
        for (Contestant& contestant : contestants_)
            contestant.run();
        for (int round = 0; round < rounds_; ++round) {
            for (Contestant& contestant : contestants_)
                contestant.milliseconds.push_back(timeOf(contestant.run));
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

    static double timeOf(const std::function<void()>& run) {
        const auto start = std::chrono::steady_clock::now();
        run();
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }

    static double median(Contestant& contestant) {
        auto& times = contestant.milliseconds;
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    }

    std::string job_;
    int rounds_;
    std::vector<Contestant> contestants_;
};

}  // namespace trimora::benchmarks
