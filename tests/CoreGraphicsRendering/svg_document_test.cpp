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

// The whole text, so that every element and attribute of the mask structure
// counts: each run of shapes is masked by every hole cut after it, a repeated
// or covered hole is dropped, masks share blocks of holes, and a shape drawn
// after the last clear is not masked at all. Cairo keeps path points on the
// page when they are added and strokes with the width of the moment: the
// scale after moveTo must not move the line, only thicken it.
TEST(SVGDocument, ClearsBecomeMasksOverWhatWasDrawnBefore) {
    const std::string svg = svgOf({20, 20}, [](CGContext& context) {
        context.fillRect({0, 0, 20, 20});
        context.clearRect({1, 1, 2, 2});
        context.setFillColor(1.5, -1, 0.5, 0.25);  // clamped as cairo clamps, alpha kept
        context.clearRect({1, 1, 2, 2});
        context.fillRect({0, 0, 10, 10});
        context.clearRect({5, 5, 2, 2});
        context.clearRect({4, 4, 4, 4});
        context.clearRect({12, 12, 3, 3});
        context.setStrokeColor(0, 0, 1, 0.5);
        context.setLineWidth(2);
        const double dash[] = {2, 1};
        context.setLineDash(dash);
        context.translateCTM(1, 2);
        context.concatCTM({2, 1, 1, 1.5, 3, 4});
        context.moveTo(1, 1);
        context.addLineTo(2, 3);
        context.scaleCTM(2, 2);
        context.strokePath();
        context.setLineDash({});
        context.strokeRect({1, 1, 2, 2});
    });
    // The line's points were placed before the scale: (7, 8.5) and (11, 12.5) on the page.
    EXPECT_EQ(svg, R"svg(<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="http://www.w3.org/2000/svg" width="20" height="20" viewBox="0 0 20 20" xmlns:xlink="http://www.w3.org/1999/xlink">
  <defs>
    <mask id="clear1" maskUnits="userSpaceOnUse" x="0" y="0" width="20" height="20">
      <path d="M0 0h20v20h-20Z" fill="#FFFFFF"/>
      <use xlink:href="#holes1-2"/>
      <path d="M12 12h3v3h-3Z" fill="#000000"/>
    </mask>
    <mask id="clear2" maskUnits="userSpaceOnUse" x="0" y="0" width="20" height="20">
      <path d="M0 0h20v20h-20Z" fill="#FFFFFF"/>
      <path d="M4 4h4v4h-4Z" fill="#000000"/>
      <path d="M12 12h3v3h-3Z" fill="#000000"/>
    </mask>
    <g id="holes1-2">
      <path d="M1 1h2v2h-2Z" fill="#000000"/>
      <path d="M4 4h4v4h-4Z" fill="#000000"/>
    </g>
  </defs>
  <g mask="url(#clear1)">
    <path d="M0 0h20v20h-20Z" fill="#000000"/>
  </g>
  <g mask="url(#clear2)">
    <path d="M0 0h10v10h-10Z" fill="#FF0080" fill-opacity="0.25"/>
  </g>
  <path d="M0.5 0.5L1 1.5" transform="matrix(4 2 2 3 4 6)" fill="none" stroke="#0000FF" stroke-opacity="0.5" stroke-width="2" stroke-miterlimit="10" stroke-dasharray="2 1"/>
  <path d="M1 1h2v2h-2Z" transform="matrix(4 2 2 3 4 6)" fill="none" stroke="#0000FF" stroke-opacity="0.5" stroke-width="2" stroke-miterlimit="10"/>
</svg>
)svg");
}

TEST(SVGDocument, NumbersThatAreNotFiniteLeaveShapesOutAndStopPages) {
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
    EXPECT_THROW(drawSVG({0, 10}, [](CGContext&) {}), RenderError);
    EXPECT_DEATH(drawSVG({INFINITY, 10}, [](CGContext&) {}), "SVG picture size is not finite");
}

}  // namespace
