// PNG framing of our own around one libdeflate call. Every row uses the UP
// filter: on the flat areas and straight lines of overlays it compresses
// about as well as an adaptive filter choice, at a fraction of the cost.

#include <CoreGraphicsRendering/ImageEncoding.hpp>

#include "Encoders.hpp"

#include <libdeflate.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace vantel {

namespace {

constexpr std::uint8_t filterUp = 2;
// Large images get several IDAT chunks; a chunk length must stay below 2^31.
constexpr std::size_t largestChunk = std::size_t(1) << 30;

// Byte-wise (a - b) mod 256 in each of the four lanes of a word.
inline std::uint32_t subtractBytes(std::uint32_t a, std::uint32_t b) {
    return ((a | 0x80808080u) - (b & 0x7f7f7f7fu)) ^ ((a ^ ~b) & 0x80808080u);
}

// Un-premultiplies and UP-filters the whole image in one pass per row:
// `previous` keeps the last row's straight pixels, `out` gets filter byte
// plus differences.
void filterRows(const ImageView& image, std::uint8_t* out) {
    const auto& table = pixels::unpremultiplyTable();
    std::vector<std::uint32_t> previous(static_cast<std::size_t>(image.width), 0);
    const std::size_t rowBytes = 1 + 4 * static_cast<std::size_t>(image.width);
    for (int y = 0; y < image.height; ++y, out += rowBytes) {
        const std::uint32_t* row = image.row(y);
        out[0] = filterUp;
        std::uint8_t* differences = out + 1;
        for (int x = 0; x < image.width; ++x) {
            std::uint32_t straight = pixels::straightRGBA(row[x], table);
            std::uint32_t difference = subtractBytes(straight, previous[x]);
            previous[x] = straight;
            std::memcpy(differences + 4 * static_cast<std::size_t>(x), &difference, 4);
        }
    }
}

struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

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
        std::uint32_t crc = libdeflate_crc32(0, bytes.data() + typeStart, bytes.size() - typeStart);
        put32(field, crc);
        bytes.insert(bytes.end(), field, field + 4);
    }
};

}  // namespace

Data encodePNG(const ImageView& image, int compressionLevel) {
    requireNonEmpty(image);
    std::unique_ptr<libdeflate_compressor, FreeCompressor> compressor(libdeflate_alloc_compressor(compressionLevel));
    if (!compressor) failToEncode();

    const std::size_t filteredSize = static_cast<std::size_t>(image.height) * (1 + 4 * static_cast<std::size_t>(image.width));
    // Default-initialised (not zeroed) buffers: both are written before being read.
    std::unique_ptr<std::uint8_t[]> filtered(new std::uint8_t[filteredSize]);
    filterRows(image, filtered.get());

    const std::size_t bound = libdeflate_zlib_compress_bound(compressor.get(), filteredSize);
    std::unique_ptr<std::uint8_t[]> compressed(new std::uint8_t[bound]);
    std::size_t compressedSize =
        libdeflate_zlib_compress(compressor.get(), filtered.get(), filteredSize, compressed.get(), bound);
    if (compressedSize == 0) failToEncode();
    filtered.reset();

    PNGWriter writer;
    writer.bytes.reserve(compressedSize + 64 + 12 * (compressedSize / largestChunk));
    writer.signature();
    writer.header(static_cast<std::uint32_t>(image.width), static_cast<std::uint32_t>(image.height));
    writer.imageData(compressed.get(), compressedSize);
    writer.end();
    return std::move(writer.bytes);
}

}  // namespace vantel
