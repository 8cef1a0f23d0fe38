#include <VantelPreview/Thumbnail.hpp>

#include <CoreGraphicsRendering/RenderError.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

using namespace vantel;

namespace {

std::string pixel(const BitmapContext& bitmap, int x, int y) {
    char text[9];
    std::snprintf(text, sizeof text, "%08x", bitmap.image().row(y)[x]);
    return text;
}

// A reply that paints the left half of its context red.
QLPreviewReply leftHalfRed(CGSize size) {
    return QLPreviewReply(size, false, [](CGContext& context, const QLPreviewReply& reply) {
        context.setFillColor(1, 0, 0, 1);
        context.fillRect(CGRect{0, 0, reply.contextSize.width / 2, reply.contextSize.height});
    });
}

}  // namespace

TEST(ThumbnailTest, SizeKeepsTheAspectWithTheLongerSideGiven) {
    EXPECT_EQ(thumbnailSize(CGSize{400, 300}, 256), (ThumbnailSize{256, 192}));
    EXPECT_EQ(thumbnailSize(CGSize{1080, 1920}, 128), (ThumbnailSize{72, 128}));
    EXPECT_EQ(thumbnailSize(CGSize{400, 301}, 256), (ThumbnailSize{256, 193}));  // 192.64 rounds up
    EXPECT_EQ(thumbnailSize(CGSize{3, 3}, 1024), (ThumbnailSize{1024, 1024}));   // small canvases grow
    EXPECT_EQ(thumbnailSize(CGSize{1000, 1}, 128), (ThumbnailSize{128, 1}));    // never below a pixel
    EXPECT_EQ(thumbnailSize(CGSize{1000, 1}, 1), (ThumbnailSize{1, 1}));        // the smallest size there is
}

TEST(ThumbnailTest, EmptyContextThrowsAndNonsenseSizesStop) {
    EXPECT_THROW(thumbnailSize(CGSize{0, 300}, 128), RenderError);
    EXPECT_THROW(thumbnailSize(CGSize{10, -3}, 128), RenderError);
    EXPECT_DEATH(thumbnailSize(CGSize{NAN, 3}, 128), "not finite");
    EXPECT_DEATH(thumbnailSize(CGSize{3, 3}, 0), "below one pixel");
}

TEST(ThumbnailTest, ReplyIsDrawnScaledIntoABitmapOfTheThumbnailSize) {
    BitmapContext bitmap = drawThumbnail(leftHalfRed(CGSize{400, 300}), 256);
    ASSERT_EQ(bitmap.width(), 256);
    ASSERT_EQ(bitmap.height(), 192);
    EXPECT_EQ(pixel(bitmap, 0, 0), "ffff0000");
    EXPECT_EQ(pixel(bitmap, 127, 191), "ffff0000");
    EXPECT_EQ(pixel(bitmap, 128, 0), "00000000");
    EXPECT_EQ(pixel(bitmap, 255, 191), "00000000");

    Data png = thumbnailPNG(leftHalfRed(CGSize{30, 60}), 128);
    ASSERT_GT(png.size(), 24u);
    EXPECT_EQ(std::string(png.begin() + 1, png.begin() + 4), "PNG");
    EXPECT_EQ((png[16] << 24 | png[17] << 16 | png[18] << 8 | png[19]), 64);   // IHDR width
    EXPECT_EQ((png[20] << 24 | png[21] << 16 | png[22] << 8 | png[23]), 128);  // IHDR height
}
