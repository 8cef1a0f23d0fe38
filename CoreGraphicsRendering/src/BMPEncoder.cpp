// BMP of our own: 32-bit BGRA with a BITMAPV4HEADER whose bit-field masks
// include alpha, so transparency survives (a 24-bit file would drop it).
// Rows are stored bottom-up, the orientation every BMP reader accepts.

#include "Encoders.hpp"

#include <limits>
#include <vector>

namespace vantel {

namespace {

constexpr std::size_t fileHeaderSize = 14;
constexpr std::size_t infoHeaderSize = 108;  // BITMAPV4HEADER
constexpr std::size_t pixelOffset = fileHeaderSize + infoHeaderSize;

class LittleEndianWriter {
public:
    explicit LittleEndianWriter(std::uint8_t* at) : at_(at) {}
    LittleEndianWriter& u16(std::uint32_t value) { return bytes(value, 2); }
    LittleEndianWriter& u32(std::uint32_t value) { return bytes(value, 4); }
    LittleEndianWriter& zeros(std::size_t count) {
        at_ += count;  // the buffer starts zeroed
        return *this;
    }

private:
    LittleEndianWriter& bytes(std::uint32_t value, int count) {
        for (int i = 0; i < count; ++i) *at_++ = static_cast<std::uint8_t>(value >> (8 * i));
        return *this;
    }
    std::uint8_t* at_;
};

void writeHeaders(std::uint8_t* at, const ImageView& image, std::uint32_t fileSize, std::uint32_t pixelBytes) {
    LittleEndianWriter(at)
        .u16('B' | 'M' << 8).u32(fileSize).u32(0).u32(pixelOffset)
        .u32(infoHeaderSize)
        .u32(static_cast<std::uint32_t>(image.width))
        .u32(static_cast<std::uint32_t>(image.height))  // positive: bottom-up rows
        .u16(1)                                          // planes
        .u16(32)                                         // bits per pixel
        .u32(3)                                          // BI_BITFIELDS
        .u32(pixelBytes)
        .u32(2835).u32(2835)  // 72 dpi in pixels per metre
        .u32(0).u32(0)        // palette: none
        .u32(0x00ff0000).u32(0x0000ff00).u32(0x000000ff).u32(0xff000000)  // R, G, B, A masks
        .u32(0x73524742)  // colour space 'sRGB'
        .zeros(36 + 12);  // end points and gamma, unused for sRGB
}

}  // namespace

Data encodeBMP(const ImageView& image) {
    const std::uint64_t rowBytes = 4 * static_cast<std::uint64_t>(image.width);
    const std::uint64_t pixelBytes = rowBytes * static_cast<std::uint64_t>(image.height);
    if (pixelOffset + pixelBytes > std::numeric_limits<std::uint32_t>::max()) failToEncode();

    Data bytes(pixelOffset + pixelBytes);
    writeHeaders(bytes.data(), image, static_cast<std::uint32_t>(bytes.size()), static_cast<std::uint32_t>(pixelBytes));
    std::vector<std::uint32_t> words(static_cast<std::size_t>(image.width));
    const auto* rgba = reinterpret_cast<const std::uint8_t*>(words.data());
    for (int y = 0; y < image.height; ++y) {
        pixels::straightRow(image, y, words.data());
        std::uint8_t* out = bytes.data() + pixelOffset + rowBytes * static_cast<std::uint64_t>(image.height - 1 - y);
        for (std::size_t i = 0; i < rowBytes; i += 4) {
            out[i] = rgba[i + 2];
            out[i + 1] = rgba[i + 1];
            out[i + 2] = rgba[i];
            out[i + 3] = rgba[i + 3];
        }
    }
    return bytes;
}

}  // namespace vantel
