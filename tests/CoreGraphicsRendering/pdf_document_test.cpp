#include <CoreGraphicsRendering/PDFDocument.hpp>
#include <CoreGraphicsRendering/RenderError.hpp>

#include <Thrown.hpp>
#include <gtest/gtest.h>
#include <libdeflate.h>

#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <string>

using namespace vantel;
using vantel::testing::thrownBy;

namespace {

std::string text(const Data& data) { return std::string(data.begin(), data.end()); }

std::size_t count(const std::string& haystack, const std::string& needle) {
    std::size_t found = 0;
    for (std::size_t at = haystack.find(needle); at != std::string::npos; at = haystack.find(needle, at + 1)) ++found;
    return found;
}

// Every stream of the file inflated and joined: the page's drawing
// operators, readable.
std::string inflatedStreams(const std::string& pdf) {
    libdeflate_decompressor* inflater = libdeflate_alloc_decompressor();
    std::string joined;
    for (std::size_t at = pdf.find("stream\n"); at != std::string::npos; at = pdf.find("stream\n", at)) {
        at += 7;
        std::size_t end = pdf.find("endstream", at);
        std::string out(1 << 20, '\0');
        std::size_t size = 0;
        if (libdeflate_zlib_decompress(inflater, pdf.data() + at, end - at, out.data(), out.size(), &size) ==
            LIBDEFLATE_SUCCESS) {
            joined += out.substr(0, size);
        }
        at = end;
    }
    libdeflate_free_decompressor(inflater);
    return joined;
}

}  // namespace

TEST(PDFDocumentTest, OnePageOfTheGivenSizeDrawnInVectorsEvenWhereItClears) {
    Data pdf = drawPDF(CGSize{400, 300}, [](CGContext& context) {
        context.setFillColor(1, 0, 0, 1);
        context.fillRect(CGRect{0, 0, 400, 300});
        context.clearRect(CGRect{20, 20, 50, 50});
        context.setStrokeColor(0, 0, 1, 1);
        context.moveTo(0, 0);
        context.addLineTo(400, 300);
        context.strokePath();
    });
    std::string file = text(pdf);
    EXPECT_TRUE(file.starts_with("%PDF-"));
    EXPECT_EQ(count(file, "/Type /Page\n") + count(file, "/Type /Page "), 1u);
    EXPECT_NE(file.find("/MediaBox [ 0 0 400 300 ]"), std::string::npos);
    EXPECT_EQ(file.find("/Image"), std::string::npos) << "the page holds a raster image";

    std::string operators = inflatedStreams(file);
    EXPECT_NE(operators.find("1 0 0 rg"), std::string::npos) << operators;  // the red fill
    EXPECT_NE(operators.find("1 1 1 rg"), std::string::npos) << operators;  // the cleared square: paper
    EXPECT_NE(operators.find("0 0 1 RG"), std::string::npos) << operators;  // the blue line
    // The paper goes down where the clear comes, under the later line.
    EXPECT_LT(operators.find("1 1 1 rg"), operators.find("0 0 1 RG"));
}

TEST(PDFDocumentTest, CreationDateIsAPDFDateOnlyWhenSourceDateEpochIsSet) {
    auto nothing = [](CGContext&) {};
    ::setenv("SOURCE_DATE_EPOCH", "1700000000", 1);
    std::string dated = text(drawPDF(CGSize{10, 10}, nothing));
    ::unsetenv("SOURCE_DATE_EPOCH");
    EXPECT_NE(dated.find("/CreationDate (D:20231114221320Z)"), std::string::npos) << dated;
    EXPECT_EQ(text(drawPDF(CGSize{10, 10}, nothing)).find("/CreationDate"), std::string::npos);
}

TEST(PDFDocumentTest, EmptyPageSizeThrowsAndNonFiniteSizeStops) {
    auto nothing = [](CGContext&) {};
    EXPECT_EQ(thrownBy<RenderError>([&] { return drawPDF(CGSize{0, 300}, nothing); }),
              RenderError::dimensionIsZero(0, 300));
    EXPECT_THROW(drawPDF(CGSize{10, -1}, nothing), RenderError);
    EXPECT_DEATH(drawPDF(CGSize{NAN, 10}, nothing), "not finite");
    EXPECT_DEATH(drawPDF(CGSize{10, INFINITY}, nothing), "not finite");
}

TEST(PDFDocumentTest, ErrorsOfTheDrawingPassThrough) {
    EXPECT_THROW(drawPDF(CGSize{10, 10}, [](CGContext&) { throw std::out_of_range("drawing failed"); }),
                 std::out_of_range);
}
