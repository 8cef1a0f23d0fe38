// PNG framing of our own around zlib's streaming deflate. Every row uses the
// UP filter: on the flat areas and straight lines of overlays it compresses
// about as well as an adaptive filter choice, at a fraction of the cost.
// Rows are filtered a strip at a time and handed to deflate, so encoding
// holds no copy of the picture: peak memory stays about one bitmap. Runs of
// rows equal to the row above are run-length matched. Large pictures are
// cut into segments of rows deflated on every core at once and joined into
// one stream.

#include <CoreGraphicsRendering/ImageEncoding.hpp>

#include "Encoders.hpp"
#include "ParallelWork.hpp"

#include <zlib.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace vantel {

namespace {

constexpr std::uint8_t filterUp = 2;
// Large images get several IDAT chunks; a chunk length must stay below 2^31.
constexpr std::size_t largestChunk = std::size_t(1) << 30;
// Rows filtered per deflate call: enough to amortise the call, few enough to
// stay in cache.
constexpr int stripRows = 16;

void subtractRow(const std::uint8_t* __restrict current, const std::uint8_t* __restrict previous, std::size_t size,
                 std::uint8_t* __restrict out) {
    for (std::size_t i = 0; i < size; ++i) out[i] = static_cast<std::uint8_t>(current[i] - previous[i]);
}

// Un-premultiplies and UP-filters rows into `out` (filter byte plus
// differences to the row above; the row above row 0 is zero), continuing
// from the row after the last one filtered.
class RowFilter {
public:
    // Ready to filter from row `first` on.
    RowFilter(const ImageView& image, int first)
        : image_(image), current_(static_cast<std::size_t>(image.width)),
          previous_(static_cast<std::size_t>(image.width), 0), next_(first) {
        if (first > 0) pixels::straightRow(image_, first - 1, previous_.data());
    }

    std::size_t rowBytes() const { return 1 + 4 * current_.size(); }

    // Filters rows up to `end` and returns their number. When `unchanged` is
    // given, it receives for each row whether it equals the row above (its
    // differences are all zero).
    int filterUpTo(int end, std::uint8_t* out, bool* unchanged = nullptr) {
        const int first = next_;
        for (; next_ < end; ++next_, out += rowBytes()) {
            pixels::straightRow(image_, next_, current_.data());
            if (unchanged) *unchanged++ = current_ == previous_;
            out[0] = filterUp;
            subtractRow(reinterpret_cast<const std::uint8_t*>(current_.data()),
                        reinterpret_cast<const std::uint8_t*>(previous_.data()), rowBytes() - 1, out + 1);
            current_.swap(previous_);
        }
        return next_ - first;
    }

private:
    const ImageView& image_;
    std::vector<std::uint32_t> current_, previous_;
    int next_;
};

struct EndDeflate {
    void operator()(z_stream* stream) const {
        deflateEnd(stream);
        delete stream;
    }
};
using Deflater = std::unique_ptr<z_stream, EndDeflate>;

// A raw deflate stream (no zlib header or checksum: the segments of a
// picture share one, see compressedRows).
Deflater startDeflate(int level) {
    if (level < 0 || level > 9) failToEncode();
    Deflater stream(new z_stream{});
    if (deflateInit2(stream.get(), level, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
        stream.release();  // deflateEnd is not to be called after a failed init
        failToEncode();
    }
    return stream;
}

// Runs `stream` over `size` bytes, appending what it produces to `out`.
void deflateInto(z_stream& stream, const std::uint8_t* data, std::size_t size, int flush, Data& out) {
    stream.next_in = const_cast<Bytef*>(data);
    stream.avail_in = static_cast<uInt>(size);
    int status;
    do {
        constexpr std::size_t step = 64 * 1024;
        const std::size_t used = out.size();
        out.resize(used + step);
        stream.next_out = out.data() + used;
        stream.avail_out = static_cast<uInt>(step);
        status = deflate(&stream, flush);
        out.resize(used + step - stream.avail_out);
        if (status == Z_STREAM_ERROR) failToEncode();
    } while (stream.avail_out == 0 || (flush == Z_FINISH && status != Z_STREAM_END));
}

// Rows [first, end) of the picture, deflated. Segments are compressed on
// their own threads and joined into one stream: each but the last ends on a
// byte boundary without closing the stream (a sync flush), and each starts
// with the 32 KiB of filtered rows before it as its dictionary, so that its
// first rows still find their matches in the rows above and the picture
// compresses as well as in one piece.
struct Segment {
    int first, end;
    Data compressed;
    uLong checksum = adler32(0, nullptr, 0);  // of the filtered rows
    std::size_t filteredBytes = 0;
};

void presetDictionary(z_stream& stream, const ImageView& image, int first) {
    constexpr std::size_t window = std::size_t(1) << MAX_WBITS;
    const std::size_t rowBytes = 1 + 4 * static_cast<std::size_t>(image.width);
    const int rows = static_cast<int>(std::min<std::size_t>(first, (window + rowBytes - 1) / rowBytes));
    if (rows == 0) return;
    RowFilter before(image, first - rows);
    std::vector<std::uint8_t> filtered(static_cast<std::size_t>(rows) * before.rowBytes());
    before.filterUpTo(first, filtered.data());
    const std::size_t size = std::min(window, filtered.size());
    if (deflateSetDictionary(&stream, filtered.data() + filtered.size() - size, static_cast<uInt>(size)) != Z_OK) {
        failToEncode();
    }
}

// Rows equal to the row above filter to zeros, which is most of an overlay
// picture; run-length matching finds the same 258-byte matches in them as
// the level's full search, at a fraction of the cost. The stream switches
// between the two at the edges of runs of such rows (each switch closes a
// deflate block).
class RowCompressor {
public:
    RowCompressor(z_stream& stream, int level, Data& out) : stream_(stream), level_(level), out_(out) {}

    void add(const std::uint8_t* rows, std::size_t size, bool unchanged, int flush) {
        if (unchanged != runLength_) switchTo(unchanged);
        deflateInto(stream_, rows, size, flush, out_);
        deflated_ = true;
    }

private:
    // Closes the block so far, whose output is all in `out_` afterwards, so
    // the switch itself has nothing left to write.
    void switchTo(bool runLength) {
        if (deflated_) deflateInto(stream_, nullptr, 0, Z_BLOCK, out_);
        std::uint8_t unused;
        stream_.next_out = &unused;
        stream_.avail_out = 1;
        if (deflateParams(&stream_, level_, runLength ? Z_RLE : Z_DEFAULT_STRATEGY) != Z_OK || stream_.avail_out != 1) {
            failToEncode();
        }
        runLength_ = runLength;
    }

    z_stream& stream_;
    const int level_;
    Data& out_;
    bool runLength_ = false, deflated_ = false;
};

void compressSegment(const ImageView& image, int level, bool last, Segment& segment) {
    Deflater stream = startDeflate(level);
    presetDictionary(*stream, image, segment.first);
    RowFilter rows(image, segment.first);
    RowCompressor compressor(*stream, level, segment.compressed);
    const std::size_t rowBytes = rows.rowBytes();
    std::vector<std::uint8_t> strip(static_cast<std::size_t>(stripRows) * rowBytes);
    bool unchanged[stripRows];
    for (int y = segment.first; y < segment.end; y += stripRows) {
        const int count = rows.filterUpTo(std::min(segment.end, y + stripRows), strip.data(), unchanged);
        segment.checksum = adler32_z(segment.checksum, strip.data(), count * rowBytes);
        segment.filteredBytes += count * rowBytes;
        for (int run = 0, next; run < count; run = next) {
            for (next = run + 1; next < count && unchanged[next] == unchanged[run];) ++next;
            const bool ends = y + next == segment.end;
            const int flush = !ends ? Z_NO_FLUSH : last ? Z_FINISH : Z_SYNC_FLUSH;
            compressor.add(strip.data() + run * rowBytes, (next - run) * rowBytes, unchanged[run], flush);
        }
    }
    // The output step's slack goes back to this thread's next segment.
    segment.compressed.shrink_to_fit();
}

// Pictures below this many pixels compress in one piece on the caller's
// thread: starting threads would cost more than they save.
constexpr std::int64_t smallestParallelPicture = std::int64_t(1) << 19;

std::vector<Segment> segmentsOf(const ImageView& image, unsigned threads) {
    const bool parallel = std::int64_t{image.width} * image.height >= smallestParallelPicture;
    // A few segments per thread, so that one slow segment does not keep the
    // other threads waiting at the end.
    const int wanted = parallel ? static_cast<int>(4 * threads) : 1;
    const int rows = std::max(stripRows, (image.height + wanted - 1) / wanted);
    std::vector<Segment> segments;
    for (int first = 0; first < image.height; first += rows) {
        segments.push_back({first, std::min(image.height, first + rows), {}});
    }
    return segments;
}

// The zlib stream header for a 32 KiB window, with the level's hint.
void zlibHeader(int level, Data& out) {
    const unsigned method = 0x78;
    const unsigned hint = level < 2 ? 0 : level < 6 ? 1 : level == 6 ? 2 : 3;
    unsigned flags = hint << 6;
    flags += 31 - (method * 256 + flags) % 31;
    out.push_back(static_cast<std::uint8_t>(method));
    out.push_back(static_cast<std::uint8_t>(flags));
}

Data compressedRows(const ImageView& image, int level) {
    if (level < 0 || level > 9) failToEncode();
    const unsigned threads = parallel::threadCount();
    std::vector<Segment> segments = segmentsOf(image, threads);
    parallel::forEach(segments.size(), threads, [&](std::size_t i) {
        compressSegment(image, level, i + 1 == segments.size(), segments[i]);
    });
    Data compressed;
    zlibHeader(level, compressed);
    uLong checksum = adler32(0, nullptr, 0);
    for (const Segment& segment : segments) {
        compressed.insert(compressed.end(), segment.compressed.begin(), segment.compressed.end());
        checksum = adler32_combine(checksum, segment.checksum, static_cast<z_off_t>(segment.filteredBytes));
    }
    for (int shift = 24; shift >= 0; shift -= 8) compressed.push_back(static_cast<std::uint8_t>(checksum >> shift));
    return compressed;
}

class PNGWriter {
public:
    Data bytes;

    void signature() {
        static constexpr std::uint8_t magic[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
        bytes.insert(bytes.end(), std::begin(magic), std::end(magic));
    }

    void header(std::uint32_t width, std::uint32_t height) {
        std::uint8_t fields[13];
        put32(fields, width);
        put32(fields + 4, height);
        fields[8] = 8;   // bits per sample
        fields[9] = 6;   // colour type: RGBA
        fields[10] = 0;  // deflate
        fields[11] = 0;  // adaptive filtering (each row names its filter)
        fields[12] = 0;  // not interlaced
        chunk("IHDR", fields, sizeof fields);
    }

    void imageData(const std::uint8_t* compressed, std::size_t size) {
        do {
            std::size_t part = std::min(size, largestChunk);
            chunk("IDAT", compressed, part);
            compressed += part;
            size -= part;
        } while (size > 0);
    }

    void end() { chunk("IEND", nullptr, 0); }

private:
    static void put32(std::uint8_t* at, std::uint32_t value) {
        at[0] = static_cast<std::uint8_t>(value >> 24);
        at[1] = static_cast<std::uint8_t>(value >> 16);
        at[2] = static_cast<std::uint8_t>(value >> 8);
        at[3] = static_cast<std::uint8_t>(value);
    }

    void chunk(const char (&type)[5], const std::uint8_t* data, std::size_t size) {
        std::uint8_t field[4];
        put32(field, static_cast<std::uint32_t>(size));
        bytes.insert(bytes.end(), field, field + 4);
        std::size_t typeStart = bytes.size();
        bytes.insert(bytes.end(), type, type + 4);
        if (size > 0) bytes.insert(bytes.end(), data, data + size);
        uLong crc = crc32(0, bytes.data() + typeStart, static_cast<uInt>(bytes.size() - typeStart));
        put32(field, static_cast<std::uint32_t>(crc));
        bytes.insert(bytes.end(), field, field + 4);
    }
};

}  // namespace

Data encodePNG(const ImageView& image, int compressionLevel) {
    requireNonEmpty(image);
    Data compressed = compressedRows(image, compressionLevel);

    PNGWriter writer;
    writer.bytes.reserve(compressed.size() + 64 + 12 * (compressed.size() / largestChunk));
    writer.signature();
    writer.header(static_cast<std::uint32_t>(image.width), static_cast<std::uint32_t>(image.height));
    writer.imageData(compressed.data(), compressed.size());
    writer.end();
    return std::move(writer.bytes);
}

}  // namespace vantel
