#pragma once

#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <optional>
#include <string>

#include "codecs/Bytes.h"
#include "codecs/ColourProfile.h"
#include "codecs/JpegLibrary.h"
#include "foundation/Bitmap.h"

namespace trimora::codecs {

/// One run of the JPEG library over the bytes of one file, from the top of the picture to its end: first the
/// header, then start(), then rows, each read or passed over. After a call that returned false nothing more
/// may be read; why it did is in reason(), empty where it was a matter of too little data.
///
/// The bytes outlive the reading. One thread at a time; several readings may share the bytes.
class JpegReading {
 public:
    explicit JpegReading(Bytes file) : JpegReading(file, {}) {}
    /// Of a file that lies in memory in two pieces.
    JpegReading(Bytes file, Bytes rest);
    ~JpegReading();
    JpegReading(const JpegReading&) = delete;
    JpegReading& operator=(const JpegReading&) = delete;

    /// Reads up to the first scan.
    [[nodiscard]] bool readHeader();

    /// Begins with the pixels: a progressive file is taken in whole.
    [[nodiscard]] bool start();

    /// Reads the rows from rowsRead() on, row `end` not included, each to its place in a view whose first row
    /// is row `top`: B,G,R,A, or C,M,Y,K where the model says so. Stops early, without being wrong, where the
    /// file holds no more of them. The rows got are rowsRead(), also where this fails.
    [[nodiscard]] bool readRows(foundation::MutableBitmapView to, int top, int end);

    /// Reads as many rows to nowhere: through `scratch`, which has room for one row of the picture.
    [[nodiscard]] bool dropRows(int count, std::uint8_t* scratch);

    /// Passes over rows up to the given one, at a part of what reading them costs. The row after it is only
    /// as it should be once rowsDisturbedBySkipping() have been dropped.
    [[nodiscard]] bool skipTo(int row);

    /// After the last row: reads on to the mark that ends the file. A file without it counts as cut short,
    /// which the rows alone need not show: whether the library asks for more than they take depends on where
    /// it began to read.
    [[nodiscard]] bool readEnd();

    /// Whether rows can be passed over, at a gain: the file holds the picture from top to bottom, once.
    [[nodiscard]] bool canSkip();

    /// After readHeader(): rows of a row of blocks, as the file holds them. A picture's data is groups of
    /// blocks that cover the same pixels, some of each component.
    [[nodiscard]] int blockRows() const { return info_.max_v_samp_factor * DCTSIZE; }
    [[nodiscard]] int groupsPerRow() const;
    [[nodiscard]] int blocksOfGroup(std::size_t component) const;
    [[nodiscard]] int rowsDisturbedBySkipping() const { return 2 * blockRows(); }

    /// Whether the file is so short that it cannot even hold the first scan of a very large picture that is
    /// sent in several, and which the library would fill in whole, at great cost, with nothing.
    [[nodiscard]] bool isImplausible();

    [[nodiscard]] std::uint64_t width() const { return info_.image_width; }
    [[nodiscard]] std::uint64_t height() const { return info_.image_height; }
    [[nodiscard]] int bitsPerSample() const { return info_.data_precision; }
    [[nodiscard]] int rowsRead() const { return static_cast<int>(info_.output_scanline); }
    [[nodiscard]] bool isCutShort() const { return cutShort_; }
    [[nodiscard]] bool isDamaged() const { return damaged_; }
    /// Whether the library found anything at all to remark since start(), most of which is harmless.
    [[nodiscard]] bool isRemarkable() const { return remarkable_; }
    [[nodiscard]] bool holdsNothing() const { return nothingFollows_; }
    [[nodiscard]] const std::string& reason() const { return reason_; }
    [[nodiscard]] ColourModel model() const;

    /// After readHeader(): what the library knows, and where in the file the first scan's data begins.
    [[nodiscard]] const jpeg_decompress_struct& info() const { return info_; }
    [[nodiscard]] std::size_t dataStart() const { return file_.size() - info_.src->bytes_in_buffer; }

 private:
    template <typename Info>
    static JpegReading& from(Info* info) {
        return *static_cast<JpegReading*>(info->client_data);
    }

    [[nodiscard]] bool holdsInks() const {
        return info_.jpeg_color_space == JCS_CMYK || info_.jpeg_color_space == JCS_YCCK;
    }
    [[noreturn]] void fail();
    [[noreturn]] void fail(const char* reason);
    void notice(int level);
    void noMoreData();
    boolean nextPiece();
    boolean endOfFile();
    void skip(long count);
    void checkScans();
    [[nodiscard]] int lastRowWorthReading();

    const JpegLibrary* library_ = nullptr;  // none where it cannot be loaded
    Bytes file_;
    Bytes rest_;  // what of the second piece the library has not been given
    jpeg_decompress_struct info_{};
    jpeg_error_mgr errors_{};
    jpeg_progress_mgr progress_{};
    jmp_buf back_{};
    std::string reason_;
    bool cutShort_ = false;
    bool damaged_ = false;
    bool remarkable_ = false;
    bool nothingFollows_ = false;
    std::optional<int> dataEndsAtRow_;  // what had been read when the data turned out to have ended
};

}  // namespace trimora::codecs
