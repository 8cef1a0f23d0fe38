#include <CoreGraphicsRendering/RenderError.hpp>
#include <CoreGraphicsRendering/SVGDocument.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using namespace vantel;

namespace {

std::string svgOf(CGSize size, const std::function<void(CGContext&)>& draw) {
    Data data = drawSVG(size, draw);
    return std::string(data.begin(), data.end());
}

TEST(SVGDocument, RootIsTheCanvasInPixelsWithAViewBox) {
    const std::string svg = svgOf({640, 480}, [](CGContext&) {});
    EXPECT_NE(svg.find(R"x(<svg xmlns="http://www.w3.org/2000/svg" width="640" height="480" viewBox="0 0 640 480")x"),
              std::string::npos)
        << svg;
}

TEST(SVGDocument, ColoursAreClampedAndTranslucentOnesKeepTheirAlpha) {
    const std::string svg = svgOf({10, 10}, [](CGContext& context) {
        context.setFillColor(1.5, -1, 0.5, 0.25);
        context.fillRect({1, 2, 3, 4});
    });
    EXPECT_NE(svg.find(R"x(<path d="M1 2h3v4h-3Z" fill="#FF0080" fill-opacity="0.25"/>)x"), std::string::npos) << svg;
}

// Cairo keeps path points on the page when they are added and strokes with
// the width of the moment: a scale applied after moveTo must not move the
// line, only thicken it.
TEST(SVGDocument, PathsKeepTheTransformationTheyWereBuiltWith) {
    const std::string svg = svgOf({100, 100}, [](CGContext& context) {
        context.translateCTM(10, 0);
        context.moveTo(0, 0);
        context.addLineTo(10, 0);
        context.scaleCTM(2, 2);
        context.setLineWidth(3);
        context.strokePath();
    });
    EXPECT_NE(svg.find(R"x(d="M0 0L5 0" transform="matrix(2 0 0 2 10 0)" fill="none" stroke="#000000" stroke-width="3")x"),
              std::string::npos)
        << svg;
}

TEST(SVGDocument, ClearingMasksWhatWasDrawnBeforeOnly) {
    const std::string svg = svgOf({20, 20}, [](CGContext& context) {
        context.fillRect({0, 0, 20, 20});
        context.clearRect({5, 5, 10, 10});
        context.setFillColor(1, 0, 0, 1);
        context.fillRect({6, 6, 2, 2});
    });
    const auto mask = svg.find(R"x(<path d="M5 5h10v10h-10Z" fill="#000000"/>)x");
    const auto group = svg.find(R"x(<g mask="url(#clear1)">)x");
    const auto after = svg.find(R"x(fill="#FF0000")x");
    ASSERT_NE(mask, std::string::npos) << svg;
    ASSERT_NE(group, std::string::npos) << svg;
    EXPECT_LT(group, after);
    EXPECT_LT(svg.find("</g>"), after) << "the later square must not be masked";
}

TEST(SVGDocument, ShapesWithNumbersThatAreNotFiniteAreLeftOut) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::string svg = svgOf({10, 10}, [nan](CGContext& context) {
        context.fillRect({nan, 0, 1, 1});
        context.saveGState();
        context.rotateCTM(nan);
        context.strokeRect({0, 0, 1, 1});
        context.restoreGState();
        context.setFillColor(0, 0, 1, 1);
        context.fillRect({0, 0, 1, 1});
    });
    EXPECT_EQ(svg.find("nan"), std::string::npos) << svg;
    EXPECT_NE(svg.find("#0000FF"), std::string::npos) << svg;
}

TEST(SVGDocument, EmptyOrNonFiniteSizes) {
    EXPECT_THROW(drawSVG({0, 10}, [](CGContext&) {}), RenderError);
    EXPECT_DEATH(drawSVG({INFINITY, 10}, [](CGContext&) {}), "SVG picture size is not finite");
}

}  // namespace
