// PNG framing of our own around zlib's streaming deflate. Every row uses the
// UP filter: on the flat areas and straight lines of overlays it compresses
// about as well as an adaptive filter choice, at a fraction of the cost.
// Rows are filtered a strip at a time and handed to deflate, so encoding
// holds no copy of the picture: peak memory stays about one bitmap.

#include <CoreGraphicsRendering/ImageEncoding.hpp>

#include "Encoders.hpp"

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

// Un-premultiplies and UP-filters rows [first, end) into `out` (filter byte
// plus differences to the row above; the row above the first is zero).
// `previous` holds the straight row above `first` and is left holding the
// last row filtered.
class RowFilter {
public:
    explicit RowFilter(const ImageView& image)
        : image_(image), current_(static_cast<std::size_t>(image.width)),
          previous_(static_cast<std::size_t>(image.width), 0) {}

    std::size_t rowBytes() const { return 1 + 4 * current_.size(); }

    void filter(int first, int end, std::uint8_t* out) {
        for (int y = first; y < end; ++y, out += rowBytes()) {
            pixels::straightRow(image_, y, current_.data());
            out[0] = filterUp;
            subtractRow(reinterpret_cast<const std::uint8_t*>(current_.data()),
                        reinterpret_cast<const std::uint8_t*>(previous_.data()), rowBytes() - 1, out + 1);
            current_.swap(previous_);
        }
    }

private:
    const ImageView& image_;
    std::vector<std::uint32_t> current_, previous_;
};

struct EndDeflate {
    void operator()(z_stream* stream) const {
        deflateEnd(stream);
        delete stream;
    }
};
using Deflater = std::unique_ptr<z_stream, EndDeflate>;

Deflater startDeflate(int level) {
    if (level < 0 || level > 9) failToEncode();
    Deflater stream(new z_stream{});
    if (deflateInit(stream.get(), level) != Z_OK) {
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

Data compressedRows(const ImageView& image, int level) {
    Deflater stream = startDeflate(level);
    RowFilter rows(image);
    std::vector<std::uint8_t> strip(static_cast<std::size_t>(stripRows) * rows.rowBytes());
    Data compressed;
    for (int y = 0; y < image.height; y += stripRows) {
        const int end = std::min(image.height, y + stripRows);
        rows.filter(y, end, strip.data());
        deflateInto(*stream, strip.data(), static_cast<std::size_t>(end - y) * rows.rowBytes(),
                    end == image.height ? Z_FINISH : Z_NO_FLUSH, compressed);
    }
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
