// PNG framing of our own around one libdeflate call. Every row uses the UP
// filter: on the flat areas and straight lines of overlays it compresses
// about as well as an adaptive filter choice, at a fraction of the cost.

#include <CoreGraphicsRendering/ImageEncoding.hpp>

#include "Encoders.hpp"
#include "PictureMemory.hpp"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace vantel {

namespace {

constexpr std::uint8_t filterUp = 2;
// Large images get several IDAT chunks; a chunk length must stay below 2^31.
constexpr std::size_t largestChunk = std::size_t(1) << 30;

void subtractRow(const std::uint8_t* __restrict current, const std::uint8_t* __restrict previous, std::size_t size,
                 std::uint8_t* __restrict out) {
    for (std::size_t i = 0; i < size; ++i) out[i] = static_cast<std::uint8_t>(current[i] - previous[i]);
}

// Un-premultiplies and UP-filters the image row by row into `out` (filter
// byte plus differences to the row above; the row above the first is zero).
// The two row buffers stay in cache: the image is read once, `out` written once.
void filterRows(const ImageView& image, std::uint8_t* out) {
    const std::size_t width = static_cast<std::size_t>(image.width);
    std::vector<std::uint32_t> current(width), previous(width, 0);
    const std::size_t rowBytes = 4 * width;
    for (int y = 0; y < image.height; ++y, out += 1 + rowBytes) {
        pixels::straightRow(image, y, current.data());
        out[0] = filterUp;
        subtractRow(reinterpret_cast<const std::uint8_t*>(current.data()),
                    reinterpret_cast<const std::uint8_t*>(previous.data()), rowBytes, out + 1);
        current.swap(previous);
    }
}

struct FreeCompressor {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

// Working memory kept per thread between encodes: a fresh multi-megabyte
// buffer costs a page fault every 4 KiB, about a fifth of the encoding time
// when a thread renders one picture after another. Peak memory is the same;
// buffers above keptBufferLimit (larger than 4K pictures) are not kept.
constexpr std::size_t keptBufferLimit = std::size_t(64) << 20;

struct ThreadScratch {
    pictureMemory::Buffer filtered;
    std::size_t filteredCapacity = 0;
    std::array<std::unique_ptr<libdeflate_compressor, FreeCompressor>, 13> compressors;  // by level
};

ThreadScratch& threadScratch() {
    thread_local ThreadScratch scratch;
    return scratch;
}

libdeflate_compressor* compressor(int level) {
    auto& compressors = threadScratch().compressors;
    if (level < 0 || level >= static_cast<int>(compressors.size())) failToEncode();
    auto& kept = compressors[static_cast<std::size_t>(level)];
    if (!kept) kept.reset(libdeflate_alloc_compressor(level));
    if (!kept) failToEncode();
    return kept.get();
}

// Never cleared between encodes: every byte is written before it is read.
std::uint8_t* filteredBuffer(std::size_t size, pictureMemory::Buffer& notKept) {
    if (size > keptBufferLimit) {
        notKept = pictureMemory::allocate(size);
        return notKept.get();
    }
    ThreadScratch& scratch = threadScratch();
    if (scratch.filteredCapacity < size) {
        scratch.filtered.reset();
        scratch.filtered = pictureMemory::allocate(size);
        scratch.filteredCapacity = size;
    }
    return scratch.filtered.get();
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
        std::uint32_t crc = libdeflate_crc32(0, bytes.data() + typeStart, bytes.size() - typeStart);
        put32(field, crc);
        bytes.insert(bytes.end(), field, field + 4);
    }
};

}  // namespace

Data encodePNG(const ImageView& image, int compressionLevel) {
    requireNonEmpty(image);
    libdeflate_compressor* deflate = compressor(compressionLevel);
    const std::size_t filteredSize =
        static_cast<std::size_t>(image.height) * (1 + 4 * static_cast<std::size_t>(image.width));
    pictureMemory::Buffer notKept;
    std::uint8_t* filtered = filteredBuffer(filteredSize, notKept);
    filterRows(image, filtered);

    // Only the pages the compressed stream reaches are ever touched.
    const std::size_t bound = libdeflate_zlib_compress_bound(deflate, filteredSize);
    std::unique_ptr<std::uint8_t[]> compressed(new std::uint8_t[bound]);
    std::size_t compressedSize = libdeflate_zlib_compress(deflate, filtered, filteredSize, compressed.get(), bound);
    if (compressedSize == 0) failToEncode();
    notKept.reset();

    PNGWriter writer;
    writer.bytes.reserve(compressedSize + 64 + 12 * (compressedSize / largestChunk));
    writer.signature();
    writer.header(static_cast<std::uint32_t>(image.width), static_cast<std::uint32_t>(image.height));
    writer.imageData(compressed.get(), compressedSize);
    writer.end();
    return std::move(writer.bytes);
}

}  // namespace vantel
