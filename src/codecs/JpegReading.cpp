#include "codecs/JpegReading.h"

#include <array>
#include <climits>

#include <jerror.h>

// The library reports failure by a long jump, so every function that calls it sets the place to return to,
// holds no object with a destructor, and says whether all went well.

namespace trimora::codecs {
namespace {

using foundation::MutableBitmapView;

// Each scan of a progressive file may pass over the whole picture: real ones have about ten.
constexpr int kMostScans = 100;
constexpr int kScansAlwaysAllowed = 20;
constexpr std::uint64_t kMostScannedPixels = 5'000'000'000;
constexpr std::uint64_t kPixelsNeverDoubted = 64'000'000;
constexpr std::uint64_t kPixelsPerByteAtMost = 8 * DCTSIZE2;  // a block takes one bit or more

}  // namespace

JpegReading::JpegReading(Bytes file, Bytes rest) : file_(file), rest_(rest) {
    const auto loaded = JpegLibrary::get();
    if (!loaded) {
        reason_ = loaded.error().message;
        return;
    }
    library_ = *loaded;
    info_.err = library_->std_error(&errors_);
    info_.client_data = this;
    errors_.error_exit = [](j_common_ptr info) { from(info).fail(); };
    errors_.emit_message = [](j_common_ptr info, int level) { from(info).notice(level); };
    errors_.output_message = [](j_common_ptr) {};
    progress_.progress_monitor = [](j_common_ptr info) { from(info).checkScans(); };
}

JpegReading::~JpegReading() {
    if (library_ != nullptr)
        library_->destroy_decompress(&info_);
}

bool JpegReading::readHeader() {
    if (library_ == nullptr || setjmp(back_) != 0)
        return false;
    library_->CreateDecompress(&info_, JPEG_LIB_VERSION, sizeof info_);
    library_->mem_src(&info_, file_.data(), file_.size());
    info_.src->fill_input_buffer = [](j_decompress_ptr info) { return from(info).nextPiece(); };
    info_.src->skip_input_data = [](j_decompress_ptr info, long count) { from(info).skip(count); };
    info_.progress = &progress_;
    library_->read_header(&info_, TRUE);
    nothingFollows_ = info_.src->bytes_in_buffer == 0;
    return true;
}

bool JpegReading::start() {
    if (setjmp(back_) != 0)
        return false;
    remarkable_ = false;
    info_.out_color_space = holdsInks() ? JCS_CMYK : JCS_EXT_BGRA;
    library_->start_decompress(&info_);
    return true;
}

bool JpegReading::readRows(MutableBitmapView to, int top, int end) {
    if (setjmp(back_) != 0)
        return false;
    while (rowsRead() < std::min(end, lastRowWorthReading())) {
        std::array<JSAMPROW, 16> rows;
        const int wanted = std::min(static_cast<int>(rows.size()), end - rowsRead());
        for (int i = 0; i < wanted; ++i)
            rows[static_cast<std::size_t>(i)] = to.row(rowsRead() - top + i);
        library_->read_scanlines(&info_, rows.data(), static_cast<JDIMENSION>(wanted));
    }
    return true;
}

bool JpegReading::dropRows(int count, std::uint8_t* scratch) {
    if (setjmp(back_) != 0)
        return false;
    for (int i = 0; i < count; ++i) {
        JSAMPROW row = scratch;
        library_->read_scanlines(&info_, &row, 1);
    }
    return true;
}

bool JpegReading::skipTo(int row) {
    if (setjmp(back_) != 0)
        return false;
    if (row > rowsRead())
        library_->skip_scanlines(&info_, static_cast<JDIMENSION>(row - rowsRead()));
    return true;
}

bool JpegReading::readEnd() {
    if (setjmp(back_) != 0)
        return false;
    library_->finish_decompress(&info_);
    return true;
}

bool JpegReading::canSkip() {
    return library_->has_multiple_scans(&info_) == 0 && info_.arith_code == 0;
}

int JpegReading::groupsPerRow() const {
    const unsigned width = static_cast<unsigned>(info_.max_h_samp_factor) * DCTSIZE;
    return static_cast<int>((info_.image_width + width - 1) / width);
}

int JpegReading::blocksOfGroup(std::size_t component) const {
    return info_.cur_comp_info[component]->h_samp_factor * info_.cur_comp_info[component]->v_samp_factor;
}

bool JpegReading::isImplausible() {
    const std::uint64_t pixels = width() * height();
    return pixels > kPixelsNeverDoubted && pixels / kPixelsPerByteAtMost > file_.size() &&
           library_->has_multiple_scans(&info_) != 0;
}

ColourModel JpegReading::model() const {
    if (holdsInks())  // files with this marker hold inks the other way round, by long habit
        return info_.saw_Adobe_marker ? ColourModel::invertedCmyk : ColourModel::cmyk;
    return info_.jpeg_color_space == JCS_GRAYSCALE ? ColourModel::grey : ColourModel::rgb;
}

void JpegReading::fail() {
    std::array<char, JMSG_LENGTH_MAX> text{};
    errors_.format_message(reinterpret_cast<j_common_ptr>(&info_), text.data());
    reason_ = text.data();
    longjmp(back_, 1);
}

void JpegReading::fail(const char* reason) {
    reason_ = reason;
    longjmp(back_, 1);
}

/// Level -1 is a warning that the data is not as it should be; most are harmless.
void JpegReading::notice(int level) {
    if (level != -1)
        return;
    remarkable_ = true;
    if (errors_.msg_code == JWRN_HIT_MARKER && info_.unread_marker == JPEG_EOI)
        noMoreData();
    damaged_ |= errors_.msg_code == JWRN_HIT_MARKER || errors_.msg_code == JWRN_HUFF_BAD_CODE;
}

void JpegReading::noMoreData() {
    if (!dataEndsAtRow_)
        dataEndsAtRow_ = rowsRead();
}

boolean JpegReading::nextPiece() {
    if (rest_.empty())
        return endOfFile();
    info_.src->next_input_byte = rest_.data();
    info_.src->bytes_in_buffer = rest_.size();
    rest_ = {};
    return TRUE;
}

/// The file ends before its picture does: hands the library an end marker, as often as it asks.
boolean JpegReading::endOfFile() {
    static constexpr std::array<JOCTET, 2> kEnd = {0xFF, JPEG_EOI};
    cutShort_ = true;
    noMoreData();
    info_.src->next_input_byte = kEnd.data();
    info_.src->bytes_in_buffer = kEnd.size();
    return TRUE;
}

void JpegReading::skip(long count) {
    const auto wanted = static_cast<std::size_t>(std::max(count, 0L));
    if (wanted > info_.src->bytes_in_buffer) {
        endOfFile();
        return;
    }
    info_.src->next_input_byte += wanted;
    info_.src->bytes_in_buffer -= wanted;
}

void JpegReading::checkScans() {
    const std::uint64_t affordable = kMostScannedPixels / std::max<std::uint64_t>(width() * height(), 1);
    const auto most = std::clamp<std::uint64_t>(affordable, kScansAlwaysAllowed, kMostScans);
    if (static_cast<std::uint64_t>(info_.input_scan_number) > most)
        fail("the file has more scans than any picture needs");
}

/// A baseline file is decoded as it is read: once its data has ended, only what the library has in hand
/// (the blocks at this place and the next row of them) can still hold something of the picture.
int JpegReading::lastRowWorthReading() {
    if (!dataEndsAtRow_ || library_->has_multiple_scans(&info_))
        return INT_MAX;
    return (*dataEndsAtRow_ / blockRows() + 2) * blockRows();
}

}  // namespace trimora::codecs
