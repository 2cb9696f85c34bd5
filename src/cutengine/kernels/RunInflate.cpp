#include "cutengine/kernels/RunInflate.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "cutengine/kernels/DeflateBlock.h"
#include "cutengine/kernels/RunDeflate.h"

namespace trimora::cutengine::kernels {
namespace {

constexpr int kLookBits = RunDeflate::kLongestCode;
constexpr std::size_t kLooks = std::size_t{1} << kLookBits;
constexpr std::uint32_t kOneByteBefore = 1;
constexpr std::uint32_t kOnePixelBefore = 4;

// What the bits that come next mean: one symbol.
struct Symbol {
    enum Kind : std::uint8_t { none, byte, length, end };
    std::uint16_t value = 0;  // the byte, or the least of the lengths
    std::uint8_t bits = 0;
    std::uint8_t extraBits = 0;  // that follow a length, before its distance
    Kind kind = none;
};

// What they mean together, as far as a look goes, where that is usual: zeros, and a byte after them.
struct Step {
    static constexpr std::size_t kMuch = 31;

    std::uint16_t zeros = 0;
    std::uint8_t value = 0;   // 0 where there is no byte
    std::uint8_t bits = 0;    // 0 where what comes is not usual
    std::uint8_t onlyIf = 0;  // bit k: the byte k + 1 before must be 0, or with bit k + 4 anything else
    std::uint8_t moved = 0;   // how many bytes these are, kMuch at most
    // Where the zeros end with a match of which the look tells no more than the symbol: how many bits come
    // after it. They are a number of further zeros, and the distance, which must be 0.
    std::uint8_t restBits = 0;
    std::uint8_t pixels = 0;  // not 0: the byte is the one before, and all that comes so many times

    [[nodiscard]] bool suits(std::uint32_t recent) const {
        return ((recent ^ onlyIf >> 4U) & onlyIf & 15U) == 0;
    }
    [[nodiscard]] std::uint64_t restMask() const { return (std::uint64_t{1} << restBits) - 1; }
};

// Ways in which the four bytes before must be for a step.
constexpr std::uint8_t kLastIsZero = 0b0001;
constexpr std::uint8_t kAllButLastAreZero = 0b1110;
constexpr std::uint8_t kOnlyLastIsNot = 0b0001'1111;

class Looks {
 public:
    explicit Looks(HuffmanCode code) : code_(std::move(code)) {
        for (std::size_t symbol = 0; symbol < code_.lengths.size(); ++symbol) {
            if (code_.lengths[symbol] > 0)
                addSymbol(symbol);
        }
        if (code_.lengths[0] > 0)
            addZeros(codeOf(0), {.zeros = 1});
        addZeros({}, {.onlyIf = kLastIsZero});
        for (std::size_t symbol = kEndOfBlock + 1; symbol < code_.lengths.size(); ++symbol) {
            if (code_.lengths[symbol] > 0)
                addPixels(symbol);
        }
    }

    [[nodiscard]] Symbol symbol(std::uint64_t bits) const { return symbols_[bits % kLooks]; }
    [[nodiscard]] const Step& step(std::uint64_t bits) const { return steps_[bits % kLooks]; }

 private:
    [[nodiscard]] BitString codeOf(std::size_t symbol) const {
        return {code_.bits[symbol], code_.lengths[symbol]};
    }
    static BitString joined(BitString first, BitString second) {
        return {first.bits | second.bits << first.count, first.count + second.count};
    }

    // What is meant wherever the look begins so; not where it begins with more than a look.
    template <typename Meaning>
    static void fill(std::array<Meaning, kLooks>& looks, BitString begin, const Meaning& meaning) {
        for (std::size_t look = begin.bits; begin.count <= kLookBits && look < kLooks;
             look += std::size_t{1} << begin.count)
            looks[look] = meaning;
    }
    void addStep(BitString begin, Step step) {
        step.bits = static_cast<std::uint8_t>(begin.count);
        const std::size_t moved = step.zeros + (step.value > 0 || step.pixels > 0 ? 1U : 0U);
        step.moved = static_cast<std::uint8_t>(std::min(moved, Step::kMuch));
        fill(steps_, begin, step);
    }

    void addSymbol(std::size_t symbol) {
        const std::uint8_t bits = code_.lengths[symbol];
        if (symbol > kEndOfBlock) {
            fill(symbols_, codeOf(symbol),
                 {static_cast<std::uint16_t>(MatchPart::leastLength(symbol)), bits,
                  static_cast<std::uint8_t>(MatchPart::extraBitsOf(symbol)), Symbol::length});
        } else if (symbol == kEndOfBlock) {
            fill(symbols_, codeOf(symbol), {0, bits, 0, Symbol::end});
        } else {
            fill(symbols_, codeOf(symbol), {static_cast<std::uint16_t>(symbol), bits, 0, Symbol::byte});
            const auto value = static_cast<std::uint8_t>(symbol);
            addStep(codeOf(symbol), value == 0 ? Step{.zeros = 1} : Step{.value = value});
        }
    }

    // Matches that repeat a zero, after what comes first.
    void addZeros(BitString begin, Step step) {
        const std::uint16_t before = step.zeros;
        for (std::size_t symbol = kEndOfBlock + 1; symbol < code_.lengths.size(); ++symbol) {
            if (code_.lengths[symbol] == 0)
                continue;
            step.zeros = static_cast<std::uint16_t>(before + MatchPart::leastLength(symbol));
            step.restBits = static_cast<std::uint8_t>(MatchPart::extraBitsOf(symbol) + 1);
            addStep(joined(begin, codeOf(symbol)), step);
        }
        constexpr std::size_t kLongest = kLiteralSymbols - 1;
        if (code_.lengths.size() <= kLongest || code_.lengths[kLongest] == 0)
            return;
        const BitString longest = joined(codeOf(kLongest), {0, 1});
        step.zeros = before;
        step.restBits = 0;
        while (begin.count + longest.count <= kLookBits) {
            begin = joined(begin, longest);
            step.zeros = static_cast<std::uint16_t>(step.zeros + kLongestMatch);
            addStep(begin, step);
        }
    }

    // Matches that repeat a pixel, or all of it but for its last byte, which comes then.
    void addPixels(std::size_t symbol) {
        const int extraBits = MatchPart::extraBitsOf(symbol);
        for (std::uint32_t extra = 0; extra >> extraBits == 0; ++extra) {
            const BitString match =
                joined(codeOf(symbol), {extra | std::uint64_t{1} << extraBits, extraBits + 1});
            const std::uint32_t length = MatchPart::leastLength(symbol) + extra;
            if (length % kOnePixelBefore == 0)
                addStep(match, {.zeros = kShortestMatch,
                                .onlyIf = kOnlyLastIsNot,
                                .pixels = static_cast<std::uint8_t>(length / kOnePixelBefore)});
            else if (length == kShortestMatch)
                addStep(match, {.zeros = kShortestMatch, .onlyIf = kAllButLastAreZero});
            else
                fill(steps_, match, Step{});
            for (std::size_t byte = 1; length == kShortestMatch && byte < kEndOfBlock; ++byte) {
                if (code_.lengths[byte] > 0)
                    addStep(joined(match, codeOf(byte)), {.zeros = kShortestMatch,
                                                          .value = static_cast<std::uint8_t>(byte),
                                                          .onlyIf = kAllButLastAreZero});
            }
        }
    }

    HuffmanCode code_;
    std::array<Symbol, kLooks> symbols_{};
    std::array<Step, kLooks> steps_{};
};

class Inflater {
 public:
    Inflater(std::span<const std::uint8_t> piece, std::uint64_t total)
        : bits_(piece), end_(total), bytes_(kFirstRoom) {
        now_.next = bytes_.data();
    }

    // Unpacks up to this place at the least; false where that cannot be.
    bool readTo(std::uint64_t place) {
        while (now_.place < place) {
            if (!looks_ && !beginBlock())
                return false;
            takeSteps(place);
            if (now_.place < place && !takeSymbol())
                return false;
        }
        return true;
    }

    // What has been unpacked from byte `first` of those that are not 0 on, up to a place.
    std::span<const PlacedByte> bytes(std::size_t first, std::uint64_t endPlace) {
        std::size_t end = first;
        while (end < count() && bytes_[end].place() < endPlace)
            ++end;
        return {bytes_.data() + first, end - first};
    }

    // Whether all has been unpacked, and nothing follows.
    bool isComplete() {
        while (looks_) {
            if (now_.place != end_ || !takeSymbol())
                return false;
        }
        return now_.place == end_ && bits_.takeMark() && bits_.isAtEnd();
    }

 private:
    static constexpr std::size_t kFirstRoom = 4096;
    // A look tells of 56 bits, a step takes a look-up's and those of a rest.
    static constexpr int kStepsOfLook = 56 / (kLookBits + 6);
    static constexpr int kRoomForLook = kStepsOfLook * (kLongestMatch / kOnePixelBefore);  // bytes

    // How far the reading has come: copied where nobody else sees it change, so that it stays in registers.
    struct Now {
        PlacedByte* next = nullptr;
        std::uint64_t place = 0;
        std::uint32_t recent = 0;  // bit k: the byte k + 1 before is not 0
        std::uint8_t last = 0;     // of the bytes that are not

        // Once, however many times it comes.
        void take(const Step& step, std::uint64_t moreZeros) {
            const std::uint8_t value = step.pixels > 0 ? last : step.value;
            const std::uint32_t isByte = value > 0 ? 1 : 0;
            place += step.zeros + moreZeros;
            *next = {place, value};
            next += isByte;
            place += isByte;
            recent = recent << step.moved | isByte;
            last = isByte != 0 ? value : last;
        }
        void skip(std::uint64_t zeros) {
            place += zeros;
            recent = zeros < Step::kMuch ? recent << zeros : 0;
        }
    };
    bool beginBlock() {
        auto code = takeBlockHeader(bits_);
        // Distances 1 and 4, a bit each.
        if (!code || code->distances.lengths != std::vector<std::uint8_t>{1, 0, 0, 1} ||
            *std::max_element(code->literals.lengths.begin(), code->literals.lengths.end()) > kLookBits)
            return false;
        looks_.emplace(std::move(code->literals));
        return true;
    }

    // Up to a place, what is no usual step, or what needs a closer look.
    void takeSteps(std::uint64_t place) {
        const Looks& looks = *looks_;
        BitReader bits = bits_;
        Now now = now_;
        const PlacedByte* const limit = bytes_.data() + bytes_.size();
        while (now.place < place && limit - now.next >= kRoomForLook) {
            std::uint64_t look = bits.look();
            int lookBits = 0;
            int taken = 0;
            for (; taken < kStepsOfLook; ++taken) {
                const Step step = looks.step(look);
                const std::uint64_t rest = look >> step.bits & step.restMask();
                if (step.bits == 0 || !step.suits(now.recent) || rest > step.restMask() / 2)
                    break;
                const int bitsOfStep = step.bits + step.restBits;
                lookBits += bitsOfStep;
                look >>= bitsOfStep;
                now.take(step, rest);
                for (int k = 1; k < step.pixels; ++k)
                    now.take(step, 0);
            }
            bits.skip(lookBits);
            if (taken < kStepsOfLook)
                break;
        }
        bits_ = bits;
        now_ = now;
    }

    // False where the piece is damaged.
    bool takeSymbol() {
        makeRoom();
        const Symbol symbol = looks_->symbol(bits_.look());
        bits_.skip(symbol.bits);
        if (symbol.kind == Symbol::none || bits_.isBeyondEnd())
            return false;
        if (symbol.kind == Symbol::end) {
            looks_.reset();
            return true;
        }
        if (symbol.kind == Symbol::byte)
            return put(static_cast<std::uint8_t>(symbol.value));
        const std::uint64_t length = symbol.value + bits_.take(symbol.extraBits);
        return repeat(bits_.take(1) == 0 ? kOneByteBefore : kOnePixelBefore, length);
    }

    // False where there is no such place in the piece.
    bool put(std::uint8_t value) {
        if (now_.place >= end_)
            return false;
        if (value == 0) {
            now_.skip(1);
            return true;
        }
        makeRoom();
        now_.take({0, value, 0, 0, 1}, 0);
        return true;
    }

    // For what a look tells at the most.
    void makeRoom() {
        const std::size_t size = count();
        if (bytes_.size() - size >= std::size_t{kRoomForLook})
            return;
        bytes_.resize(2 * bytes_.size());
        now_.next = bytes_.data() + size;
    }

    bool repeat(std::uint32_t distance, std::uint64_t length) {
        if ((now_.recent & ((1U << distance) - 1)) == 0) {
            now_.skip(length);
            return now_.place <= end_;
        }
        std::array<std::uint8_t, kOnePixelBefore> bytes{};
        for (std::uint32_t i = 0; i < distance; ++i)
            bytes[i] = valueBefore(distance - i);
        for (std::uint32_t i = 0; length > 0; --length, i = i + 1 < distance ? i + 1 : 0) {
            if (!put(bytes[i]))
                return false;
        }
        return true;
    }

    [[nodiscard]] std::uint8_t valueBefore(std::uint32_t distance) const {
        const PlacedByte* byte = now_.next;
        while (byte != bytes_.data() && (byte - 1)->place() + distance >= now_.place) {
            if ((--byte)->place() + distance == now_.place)
                return byte->value();
        }
        return 0;
    }

    [[nodiscard]] std::size_t count() const { return static_cast<std::size_t>(now_.next - bytes_.data()); }

    BitReader bits_;
    std::optional<Looks> looks_;  // while in a block
    std::uint64_t end_;
    std::vector<PlacedByte> bytes_;  // and room for more
    Now now_;
};

}  // namespace

bool inflateRuns(std::span<const std::uint8_t> piece, std::uint64_t rowSize, int rows, const TakeRow& take) {
    Inflater inflater(piece, static_cast<std::uint64_t>(rows) * rowSize);
    std::size_t done = 0;
    for (int row = 0; row < rows; ++row) {
        const std::uint64_t end = static_cast<std::uint64_t>(row + 1) * rowSize;
        if (!inflater.readTo(end))
            return false;
        const auto bytes = inflater.bytes(done, end);
        if (!take(row, bytes))
            return false;
        done += bytes.size();
    }
    return inflater.isComplete();
}

}  // namespace trimora::cutengine::kernels
