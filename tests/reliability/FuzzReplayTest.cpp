#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "Seeds.h"
#include "Targets.h"
#include "files/FilesForTests.h"
#include "foundation/Log.h"
#include "testing/Depth.h"
#include "testing/Seed.h"

// What the fuzzers drive, in every run: their seeds, what they have found, and changed copies of both. A
// target that finds a broken promise aborts, which leaves a file with what it was reading.
namespace trimora::reliability {
namespace {

using Buffer = std::vector<std::uint8_t>;

/// Files that a fuzzer has found: each broke a promise once.
std::vector<Buffer> findsOf(const std::string& target) {
    std::vector<Buffer> found;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(TRIMORA_FUZZ_FINDS "/" + target, none)) {
        const std::string bytes = files::contents(entry.path());
        found.emplace_back(bytes.begin(), bytes.end());
    }
    return found;
}

/// One change as fuzzers make them: bits, bytes, numbers, pieces removed, repeated, or taken from elsewhere.
void change(Buffer& bytes, const Buffer& other, std::mt19937_64& random) {
    const auto place = [&](std::size_t size) {
        return static_cast<std::ptrdiff_t>(size == 0 ? 0 : random() % size);
    };
    const std::ptrdiff_t at = place(bytes.size());
    const std::ptrdiff_t length =
        std::min<std::ptrdiff_t>(1 + place(32), static_cast<std::ptrdiff_t>(bytes.size()) - at);
    const auto begin = bytes.begin() + at;
    switch (random() % 6) {
        case 0:
            if (!bytes.empty())
                *begin ^= static_cast<std::uint8_t>(1U << random() % 8);
            break;
        case 1:
            bytes.erase(begin, begin + length);
            break;
        case 2:
            bytes.insert(begin, static_cast<std::uint8_t>(random()));
            break;
        case 3: {
            const Buffer piece(begin, begin + length);
            bytes.insert(bytes.begin() + place(bytes.size()), piece.begin(), piece.end());
            break;
        }
        case 4:
            std::fill(begin, begin + length, static_cast<std::uint8_t>(random() % 2 == 0 ? 0 : 255));
            break;
        default: {
            const std::ptrdiff_t from = place(other.size());
            const std::ptrdiff_t count =
                std::min<std::ptrdiff_t>(1 + place(64), static_cast<std::ptrdiff_t>(other.size()) - from);
            bytes.insert(begin, other.begin() + from, other.begin() + from + count);
        }
    }
}

/// Has its target read bytes. Where that ends in an abort they are left in the file `fuzz-find`.
class Keeper {
 public:
    explicit Keeper(const fuzz::Target& target) : target_(target), before_(std::signal(SIGABRT, &keep)) {}
    ~Keeper() { std::signal(SIGABRT, before_); }
    Keeper(const Keeper&) = delete;
    Keeper& operator=(const Keeper&) = delete;

    void read(const Buffer& bytes) const {
        tried = bytes;
        (void)target_.read(bytes.data(), bytes.size());
    }

 private:
    static void keep(int /*signal*/) {
        const int file = ::open("fuzz-find", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (::write(file, tried.data(), tried.size()) == static_cast<ssize_t>(tried.size()))
            (void)::dprintf(STDERR_FILENO, "what was read is kept as fuzz-find\n");
        ::close(file);
    }
    static inline std::span<const std::uint8_t> tried;

    const fuzz::Target& target_;
    void (*before_)(int);
};

class FuzzReplay : public ::testing::TestWithParam<fuzz::Target> {
 protected:
    FuzzReplay() : threshold_(foundation::log::setThreshold(foundation::log::Level::error)) {}
    ~FuzzReplay() override { foundation::log::setThreshold(threshold_); }

 private:
    foundation::log::Level threshold_;
};

TEST_P(FuzzReplay, KeepsItsPromisesForSeedsFindsAndWhatIsLikeThem) {
    std::mt19937_64 random = testing::seededGenerator();
    std::vector<Buffer> known = fuzz::seedsOf(GetParam().name);
    ASSERT_FALSE(known.empty());
    for (Buffer& find : findsOf(GetParam().name))
        known.push_back(std::move(find));
    const Keeper keeper(GetParam());
    for (const Buffer& bytes : known)
        keeper.read(bytes);
    const int count = testing::byDepth(3'000, 100'000, 1'000'000);
    for (int i = 0; i < count; ++i) {
        Buffer bytes = known[random() % known.size()];
        for (std::uint64_t changes = 1 + random() % 6; changes > 0; --changes)
            change(bytes, known[random() % known.size()], random);
        keeper.read(bytes);
    }
    std::printf("%zu known, %d like them\n", known.size(), count);
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzReplay, ::testing::ValuesIn(fuzz::kTargets),
                         [](const auto& target) { return target.param.name; });

}  // namespace
}  // namespace trimora::reliability
