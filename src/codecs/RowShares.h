#pragma once

#include <cstddef>
#include <mutex>
#include <optional>
#include <vector>

namespace trimora::codecs {

/// Shares the rows of one picture out among decoders that must all come from its top, as the data of a row
/// can only be found by passing over the rows above it, at a part of what it costs to read them.
///
/// Part 0 reads from row 0 on. Every other part passes on to its place(), which moves on as the parts above
/// read and pass on, until it is near enough to it to begin() there. So all parts end at about the same
/// time, at whatever speed each of them gets on, and a part that came late or not at all takes no rows.
/// Wherever the seams come to lie, all rows are claimed exactly once. Any thread.
class RowShares {
 public:
    /// Shares begin at multiples of `step` rows.
    RowShares(int rows, int parts, int step);

    /// The row at which a part that passes over rows had best begin to read, as far as is known now, not
    /// above `earliest`, the first row that it can still read. None where the others leave nothing for it,
    /// and after stop().
    [[nodiscard]] std::optional<int> place(int part, int earliest);

    /// The part reads from this row on, a multiple of the step. False where a part above has come further
    /// already, or one below has begun there or above: it is to ask for another place.
    [[nodiscard]] bool begin(int part, int row);

    /// How many of the next rows the part is to read now, `most` of them or fewer; 0 at the end of its share,
    /// and for a part that has none.
    [[nodiscard]] int claim(int part, int most);

    /// Ends all shares: something is wrong, and what was read will be thrown away.
    void stop();
    [[nodiscard]] bool isStopped() const;

 private:
    struct Part {
        int first = 0;     // the row where it began to read
        int position = 0;  // the next row to read, or the first that could still be
        bool reads = false;
    };
    /// The first part below that reads; the number of parts where there is none.
    [[nodiscard]] std::size_t nextReader(std::size_t part) const;
    [[nodiscard]] int endOf(std::size_t part) const;

    mutable std::mutex mutex_;
    const int rows_;
    const int step_;
    std::vector<Part> parts_;
    bool stopped_ = false;
};

}  // namespace trimora::codecs
