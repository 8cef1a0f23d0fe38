#include <CoreGraphicsRendering/BitmapContext.hpp>
#include <CoreGraphicsRendering/ImageEncoding.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>

#include "ImageReaders.hpp"

#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <vector>

using namespace vantel;
namespace readers = vantel::testing;
using readers::DecodedImage;
using Pixel = std::array<int, 4>;
using vantel::testing::thrownBy;

namespace {

// Premultiplied ARGB32 pixels with padding at the end of each row, so that
// encoders must honour the stride.
struct Picture {
    int width, height, stride;
    std::vector<std::uint32_t> words;

    Picture(int width, int height) : width(width), height(height), stride(4 * width + 12),
                                     words(static_cast<std::size_t>(stride / 4) * height, 0xdeadbeef) {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) set(x, y, 0);
    }
    void set(int x, int y, std::uint32_t argb) { words[static_cast<std::size_t>(y) * (stride / 4) + x] = argb; }
    void fill(int x0, int y0, int x1, int y1, std::uint32_t argb) {
        for (int y = y0; y < y1; ++y)
            for (int x = x0; x < x1; ++x) set(x, y, argb);
    }
    ImageView view() const {
        return ImageView{width, height, stride, reinterpret_cast<const std::uint8_t*>(words.data())};
    }
};

std::uint32_t opaque(int r, int g, int b) { return 0xff000000u | r << 16 | g << 8 | b; }

// Opaque colours that differ along both axes (exercising the row filters),
// a transparent block, and translucent pixels whose straight colour is known.
Picture detailedPicture() {
    Picture picture(37, 23);
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) picture.set(x, y, opaque(x * 7, y * 11, (x * y) % 256));
    picture.fill(20, 5, 30, 15, 0);
    picture.set(1, 1, 0x80800000);  // straight (255, 0, 0, 128)
    picture.set(2, 1, 0x40204010);  // straight (128, 255, 64, 64)
    picture.set(3, 1, 0x01010000);  // straight (255, 0, 0, 1)
    return picture;
}

Pixel straightOfDetailed(int x, int y) {
    if (x >= 20 && x < 30 && y >= 5 && y < 15) return {0, 0, 0, 0};
    if (y == 1 && x == 1) return {255, 0, 0, 128};
    if (y == 1 && x == 2) return {128, 255, 64, 64};
    if (y == 1 && x == 3) return {255, 0, 0, 1};
    return {x * 7, y * 11, (x * y) % 256, 255};
}

void expectEveryPixel(const DecodedImage& decoded, const std::function<Pixel(int, int)>& expected) {
    int mismatches = 0;
    for (int y = 0; y < decoded.height; ++y) {
        for (int x = 0; x < decoded.width; ++x) {
            if (decoded.at(x, y) == expected(x, y)) continue;
            if (++mismatches <= 5) ADD_FAILURE() << "pixel (" << x << ", " << y << ") differs";
        }
    }
    EXPECT_EQ(mismatches, 0);
}

// Opaque pixels of a fixed pseudo-random sequence, which barely compress.
struct Noise {
    std::uint32_t state;
    std::uint32_t opaquePixel() { return 0xff000000u | ((state = state * 1664525u + 1013904223u) >> 8); }
};

constexpr std::uint32_t halfRed = 0x80800000;  // straight (255, 0, 0, 128)

// The straight pixels expected of a picture holding only opaque and half red pixels.
std::function<Pixel(int, int)> opaqueOrHalfRed(const Picture& picture) {
    return [words = picture.words, stride = picture.stride](int x, int y) -> Pixel {
        std::uint32_t p = words[static_cast<std::size_t>(y) * (stride / 4) + x];
        if (p == halfRed) return {255, 0, 0, 128};
        return {int(p >> 16 & 0xff), int(p >> 8 & 0xff), int(p & 0xff), 255};
    };
}

struct LosslessFormat {
    NSBitmapImageFileType type;
    DecodedImage (*read)(const Data&);
};

const LosslessFormat losslessFormats[] = {
    {NSBitmapImageFileType::png, readers::readPNG},
    {NSBitmapImageFileType::tiff, readers::readTIFF},
    {NSBitmapImageFileType::bmp, readers::readBMP},
    {NSBitmapImageFileType::jpeg2000, readers::readJPEG2000},
};

}  // namespace

TEST(ImageFileTypeDeathTest, UnknownRawValueStops) {
    EXPECT_DEATH(fileExtension(static_cast<NSBitmapImageFileType>(6)), "Unknown file format: .*6");
}

TEST(ImageEncodingTest, LosslessFormatsReadBackExactlyWithStraightAlpha) {
    Picture picture = detailedPicture();
    for (const auto& format : losslessFormats) {
        SCOPED_TRACE(fileExtension(format.type));
        DecodedImage decoded = format.read(encodeImage(picture.view(), format.type));
        ASSERT_EQ(decoded.width, 37);
        ASSERT_EQ(decoded.height, 23);
        expectEveryPixel(decoded, straightOfDetailed);
    }
}

TEST(ImageEncodingTest, PNGIsEightBitRGBAAtEveryCompressionLevel) {
    Picture picture = detailedPicture();
    for (int level : {0, 1, 6, 9}) {
        Data png = encodePNG(picture.view(), level);
        EXPECT_EQ(png[24], 8);  // IHDR bit depth
        EXPECT_EQ(png[25], 6);  // IHDR colour type RGBA
        expectEveryPixel(readers::readPNG(png), straightOfDetailed);
    }
}

// Noise barely compresses: the deflate stream outgrows every output step
// within one strip of rows, and across strips.
TEST(ImageEncodingTest, PNGOfNoiseLargerThanItsBuffersReadsBackExactly) {
    Picture picture(2200, 40);
    Noise noise{12345};
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) picture.set(x, y, noise.opaquePixel());
    Data png = encodePNG(picture.view());
    EXPECT_GT(png.size(), std::size_t(200000));
    expectEveryPixel(readers::readPNG(png), opaqueOrHalfRed(picture));
}

TEST(ImageEncodingTest, GIFWithFewColoursIsExactAndHalfTransparencyDecides) {
    Picture picture(16, 8);
    picture.fill(0, 0, 8, 8, opaque(10, 20, 30));
    picture.fill(8, 0, 16, 4, opaque(200, 100, 0));
    picture.set(1, 1, 0x40400000);  // a quarter opaque: transparent
    picture.set(2, 1, 0xc0c00000);  // three quarters: opaque straight red
    DecodedImage decoded = readers::readGIF(encodeImage(picture.view(), NSBitmapImageFileType::gif));
    ASSERT_EQ(decoded.width, 16);
    ASSERT_EQ(decoded.height, 8);
    expectEveryPixel(decoded, [](int x, int y) -> Pixel {
        if (x == 1 && y == 1) return {0, 0, 0, 0};
        if (x == 2 && y == 1) return {255, 0, 0, 255};
        if (x < 8) return {10, 20, 30, 255};
        return y < 4 ? Pixel{200, 100, 0, 255} : Pixel{0, 0, 0, 0};
    });
}

TEST(ImageEncodingTest, GIFWithManyColoursKeepsTheCommonOnesAndApproximatesTheRest) {
    Picture picture(300, 100);
    picture.fill(0, 0, 150, 100, opaque(0, 0, 128));
    picture.fill(150, 0, 300, 100, opaque(255, 255, 255));
    for (int x = 0; x < 300; ++x)  // 600 rarer colours, all on one grey-ish ramp
        for (int y = 40; y < 42; ++y) picture.set(x, y, opaque(x * 255 / 299, (x + y) % 256 / 2 + 64, 100));
    DecodedImage decoded = readers::readGIF(encodeImage(picture.view(), NSBitmapImageFileType::gif));
    EXPECT_EQ(decoded.at(10, 10), (Pixel{0, 0, 128, 255}));
    EXPECT_EQ(decoded.at(290, 90), (Pixel{255, 255, 255, 255}));
    for (int x = 0; x < 300; x += 13) {
        Pixel got = decoded.at(x, 40);
        EXPECT_LE(std::abs(got[0] - x * 255 / 299) + std::abs(got[2] - 100), 24) << "x " << x;
    }
}

TEST(ImageEncodingTest, JPEGIsCompositedOverWhite) {
    Picture picture(64, 32);
    picture.fill(0, 0, 32, 32, opaque(200, 30, 30));
    picture.fill(32, 0, 48, 32, 0);           // transparent: white
    picture.fill(48, 0, 64, 32, 0x80000000);  // half-transparent black: mid grey
    DecodedImage decoded = readers::readJPEG(encodeImage(picture.view(), NSBitmapImageFileType::jpeg));
    ASSERT_EQ(decoded.width, 64);
    ASSERT_EQ(decoded.height, 32);
    auto near = [](Pixel got, Pixel want) {
        for (int c = 0; c < 4; ++c)
            if (std::abs(got[c] - want[c]) > 6) return false;
        return true;
    };
    EXPECT_TRUE(near(decoded.at(16, 16), {200, 30, 30, 255}));
    EXPECT_TRUE(near(decoded.at(40, 16), {255, 255, 255, 255}));
    EXPECT_TRUE(near(decoded.at(56, 16), {127, 127, 127, 255}));
}

TEST(ImageEncodingTest, DrawnPixelsReachTheFileAtTheirPlace) {
    BitmapContext bitmap(1000, 700);
    bitmap.context().setFillColor(0, 0.5, 1, 1);
    bitmap.context().fillRect(CGRect{0, 0, 1, 1});
    bitmap.context().fillRect(CGRect{500, 300, 200, 100});
    DecodedImage decoded = readers::readPNG(encodeImage(bitmap.image(), NSBitmapImageFileType::png));
    EXPECT_EQ(decoded.at(0, 0), (Pixel{0, 128, 255, 255}));
    EXPECT_EQ(decoded.at(1, 0), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(decoded.at(699, 399), (Pixel{0, 128, 255, 255}));
    EXPECT_EQ(decoded.at(700, 399), (Pixel{0, 0, 0, 0}));
}

TEST(ImageEncodingTest, AnEmptyViewIsAZeroDimensionError) {
    Picture picture(1, 1);
    ImageView empty = picture.view();
    empty.height = 0;
    EXPECT_EQ(thrownBy<RenderError>([&] { return encodeImage(empty, NSBitmapImageFileType::tiff); }),
              RenderError::dimensionIsZero(1, 0));
}

// Large pictures are deflated in segments of rows on several threads and
// joined into one stream: rows of noise (long compressed runs) and flat rows
// (matches reaching back into the segment before), in runs that start and
// end inside strips and across segment edges, must both survive the joins,
// and the one checksum must cover every segment.
TEST(ImageEncodingTest, PNGOfALargePictureInSegmentsReadsBackExactly) {
    Picture picture(1100, 700);
    Noise noise{99};
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            picture.set(x, y, (y / 50) % 3 == 0 ? noise.opaquePixel() : opaque(x % 256, (y / 7) % 256, 40));
    picture.fill(100, 300, 900, 420, halfRed);
    expectEveryPixel(readers::readPNG(encodePNG(picture.view())), opaqueOrHalfRed(picture));
}
