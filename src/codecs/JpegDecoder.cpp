#include "codecs/JpegDecoder.h"

#include <algorithm>
#include <array>
#include <climits>
#include <csetjmp>
#include <cstdio>  // jpeglib.h needs FILE
#include <optional>
#include <string>
#include <utility>

#include <jerror.h>
#include <jpeglib.h>

#include "codecs/JpegMetadata.h"
#include "codecs/RawPicture.h"

namespace trimora::codecs {
namespace {

using cutengine::DecodedPicture;
using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::Error;
using foundation::MutableBitmapView;
using foundation::Result;

// Each scan of a progressive file may pass over the whole picture: real ones have about ten.
constexpr int kMostScans = 100;
constexpr int kScansAlwaysAllowed = 20;
constexpr std::uint64_t kMostScannedPixels = 5'000'000'000;
constexpr std::uint64_t kPixelsNeverDoubted = 64'000'000;
constexpr std::uint64_t kPixelsPerByteAtMost = 8 * DCTSIZE2;  // a block takes one bit or more

/// One run of the library over one file. The library reports failure by a long jump, so every function
/// that calls it sets the place to return to, holds no object with a destructor, and says whether all
/// went well.
class Reading {
 public:
    explicit Reading(Bytes file) : file_(file) {
        info_.err = jpeg_std_error(&errors_);
        info_.client_data = this;
        errors_.error_exit = [](j_common_ptr info) { from(info).fail(); };
        errors_.emit_message = [](j_common_ptr info, int level) { from(info).notice(level); };
        errors_.output_message = [](j_common_ptr) {};
        progress_.progress_monitor = [](j_common_ptr info) { from(info).checkScans(); };
    }
    ~Reading() { jpeg_destroy_decompress(&info_); }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    /// Reads up to the first scan.
    bool readHeader() {
        if (setjmp(back_) != 0)
            return false;
        jpeg_create_decompress(&info_);
        jpeg_mem_src(&info_, file_.data(), file_.size());
        info_.src->fill_input_buffer = [](j_decompress_ptr info) { return from(info).endOfFile(); };
        info_.src->skip_input_data = [](j_decompress_ptr info, long count) { from(info).skip(count); };
        info_.progress = &progress_;
        jpeg_read_header(&info_, TRUE);
        nothingFollows_ = info_.src->bytes_in_buffer == 0;
        return true;
    }

    /// Reads the picture; the rows got are rowsRead(), also where this fails.
    bool readPixels(MutableBitmapView to) {
        if (setjmp(back_) != 0)
            return false;
        info_.out_color_space = holdsInks() ? JCS_CMYK : JCS_EXT_BGRA;
        jpeg_start_decompress(&info_);
        while (rowsRead() < std::min(to.height, lastRowWorthReading())) {
            std::array<JSAMPROW, 16> rows;
            const int wanted = std::min(static_cast<int>(rows.size()), to.height - rowsRead());
            for (int i = 0; i < wanted; ++i)
                rows[static_cast<std::size_t>(i)] = to.row(rowsRead() + i);
            jpeg_read_scanlines(&info_, rows.data(), static_cast<JDIMENSION>(wanted));
        }
        return true;
    }

    /// Whether the file is so short that it cannot even hold the first scan of a very large picture that is
    /// sent in several, and which the library would fill in whole, at great cost, with nothing.
    [[nodiscard]] bool isImplausible() {
        const std::uint64_t pixels = width() * height();
        return pixels > kPixelsNeverDoubted && pixels / kPixelsPerByteAtMost > file_.size() &&
               jpeg_has_multiple_scans(&info_) != 0;
    }

    [[nodiscard]] std::uint64_t width() const { return info_.image_width; }
    [[nodiscard]] std::uint64_t height() const { return info_.image_height; }
    [[nodiscard]] int bitsPerSample() const { return info_.data_precision; }
    [[nodiscard]] int rowsRead() const { return static_cast<int>(info_.output_scanline); }
    [[nodiscard]] bool isCutShort() const { return cutShort_; }
    [[nodiscard]] bool isDamaged() const { return damaged_; }
    [[nodiscard]] bool holdsNothing() const { return nothingFollows_; }
    [[nodiscard]] const std::string& reason() const { return reason_; }

    [[nodiscard]] ColourModel model() const {
        if (holdsInks())  // files with this marker hold inks the other way round, by long habit
            return info_.saw_Adobe_marker ? ColourModel::invertedCmyk : ColourModel::cmyk;
        return info_.jpeg_color_space == JCS_GRAYSCALE ? ColourModel::grey : ColourModel::rgb;
    }

 private:
    template <typename Info>
    static Reading& from(Info* info) {
        return *static_cast<Reading*>(info->client_data);
    }

    [[nodiscard]] bool holdsInks() const {
        return info_.jpeg_color_space == JCS_CMYK || info_.jpeg_color_space == JCS_YCCK;
    }

    [[noreturn]] void fail() {
        std::array<char, JMSG_LENGTH_MAX> text{};
        errors_.format_message(reinterpret_cast<j_common_ptr>(&info_), text.data());
        reason_ = text.data();
        longjmp(back_, 1);
    }

    [[noreturn]] void fail(const char* reason) {
        reason_ = reason;
        longjmp(back_, 1);
    }

    /// Level -1 is a warning that the data is not as it should be; most are harmless.
    void notice(int level) {
        if (level != -1)
            return;
        if (errors_.msg_code == JWRN_HIT_MARKER && info_.unread_marker == JPEG_EOI)
            noMoreData();
        damaged_ |= errors_.msg_code == JWRN_HIT_MARKER || errors_.msg_code == JWRN_HUFF_BAD_CODE;
    }

    void noMoreData() {
        if (!dataEndsAtRow_)
            dataEndsAtRow_ = rowsRead();
    }

    /// The file ends before its picture does: hands the library an end marker, as often as it asks.
    boolean endOfFile() {
        static constexpr std::array<JOCTET, 2> kEnd = {0xFF, JPEG_EOI};
        cutShort_ = true;
        noMoreData();
        info_.src->next_input_byte = kEnd.data();
        info_.src->bytes_in_buffer = kEnd.size();
        return TRUE;
    }

    void skip(long count) {
        const auto wanted = static_cast<std::size_t>(std::max(count, 0L));
        if (wanted > info_.src->bytes_in_buffer) {
            endOfFile();
            return;
        }
        info_.src->next_input_byte += wanted;
        info_.src->bytes_in_buffer -= wanted;
    }

    void checkScans() {
        const std::uint64_t affordable = kMostScannedPixels / std::max<std::uint64_t>(width() * height(), 1);
        const auto most = std::clamp<std::uint64_t>(affordable, kScansAlwaysAllowed, kMostScans);
        if (static_cast<std::uint64_t>(info_.input_scan_number) > most)
            fail("the file has more scans than any picture needs");
    }

    /// A baseline file is decoded as it is read: once its data has ended, only what the library has in hand
    /// (the blocks at this place and the next row of them) can still hold something of the picture.
    [[nodiscard]] int lastRowWorthReading() {
        if (!dataEndsAtRow_ || jpeg_has_multiple_scans(&info_))
            return INT_MAX;
        const int blockHeight = info_.max_v_samp_factor * DCTSIZE;
        return (*dataEndsAtRow_ / blockHeight + 2) * blockHeight;
    }

    Bytes file_;
    jpeg_decompress_struct info_{};
    jpeg_error_mgr errors_{};
    jpeg_progress_mgr progress_{};
    jmp_buf back_{};
    std::string reason_;
    bool cutShort_ = false;
    bool damaged_ = false;
    bool nothingFollows_ = false;
    std::optional<int> dataEndsAtRow_;  // what had been read when the data turned out to have ended
};

Error unreadable(const Reading& reading) {
    return Error{"the JPEG file cannot be read: " + reading.reason()};
}

Error headless(const Reading& reading) {
    return reading.isCutShort() ? Error{"the file ends before its picture begins"} : unreadable(reading);
}

}  // namespace

Result<DecodedPicture> JpegDecoder::decode(Bytes file) const {
    Reading reading(file);
    if (!reading.readHeader())
        return headless(reading);
    if (std::optional<Error> refusal = budget().refusal(reading.width(), reading.height()))
        return *std::move(refusal);
    if (reading.isImplausible())
        return Error{"the file is far too short for a picture of its size"};
    if (reading.holdsNothing())
        return Error{"the file ends before its picture begins"};
    Result<Bitmap> pixels = Bitmap::create(static_cast<int>(reading.width()),
                                           static_cast<int>(reading.height()), AlphaMode::opaque);
    if (!pixels)
        return pixels.error();
    const bool whole = reading.readPixels(pixels->view());
    if (!whole && reading.rowsRead() == 0)
        return unreadable(reading);

    const JpegMetadata metadata = readJpegMetadata(file);
    const auto profile = ColourProfile::fromIcc(metadata.icc, reading.model(), SampleDepth::eight);
    Result<Bitmap> bitmap =
        finished({std::move(*pixels), reading.rowsRead(), reading.model(), metadata.orientation},
                 profile.get(), workers());
    if (!bitmap)
        return bitmap.error();
    DecodedPicture picture;
    picture.representations.push_back(std::move(*bitmap));
    if (reading.isCutShort())
        picture.notice = kCutShort;
    else if (!whole || reading.isDamaged())
        picture.notice = kDamaged;
    return picture;
}

Result<PictureFacts> JpegDecoder::facts(Bytes file) const {
    Reading reading(file);
    if (!reading.readHeader())
        return headless(reading);
    const JpegMetadata metadata = readJpegMetadata(file);
    PictureFacts facts;
    facts.format = PictureFormat::jpeg;
    facts.width = reading.width();
    facts.height = reading.height();
    facts.pixels = facts.width * facts.height;
    facts.orientation = metadata.orientation;
    facts.bitsPerSample = reading.bitsPerSample();
    facts.profile = profileName(metadata.icc);
    return facts;
}

}  // namespace trimora::codecs
