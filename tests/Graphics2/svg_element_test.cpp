#include <Graphics2/SVGElement.hpp>

#include <gtest/gtest.h>

using namespace vantel;

namespace {

Vector point(double x, double y) { return {x, y, 1}; }

std::string xml(const Drawable& drawable) { return drawable.svgElement()->xmlString(); }

}  // namespace

TEST(SVGElementTest, ShapesWriteTheirAttributesInOrder) {
    EXPECT_EQ(xml(Circle(10, 20, 5)), R"(<circle cx="10.0" cy="20.0" r="5.0" stroke="#000000" fill="none"/>)");
    EXPECT_EQ(xml(Line(0, 0, 3, 4)), R"(<line x1="0.0" y1="0.0" x2="3.0" y2="4.0" stroke="#000000"/>)");
    EXPECT_EQ(xml(Rectangle(point(50, 40), 20, 10, Angle())),
              R"(<rect x="40.0" y="35.0" width="20.0" height="10.0" stroke="#000000" fill="none"/>)");
    EXPECT_EQ(xml(Rectangle(point(50, 40), 20, 10, Angle::fromDegrees(30))),
              R"x(<rect x="40.0" y="35.0" width="20.0" height="10.0" transform="rotate(30.0,50.0,40.0)" )x"
              R"(stroke="#000000" fill="none"/>)");
    EXPECT_EQ(xml(Path{point(0, 0), point(10, 5)}), R"(<polyline points="0.0,0.0 10.0,5.0" stroke="#000000" fill="none"/>)");
    EXPECT_EQ(Path().svgElement()->attribute("points"), "");
}

TEST(SVGElementTest, BezierDataKeepsTheShortFormsAndSamplesLongCurves) {
    auto data = [](std::vector<Vector> points) { return BezierPath(std::move(points)).svgElement()->attribute("d"); };
    EXPECT_EQ(data({point(0, 0), point(1, 2), point(3, 4), point(5, 6)}), "M 0.0,0.0 C 1.0,2.0 3.0,4.0 5.0,6.0");
    EXPECT_EQ(data({point(0, 0), point(1, 2), point(3, 4)}), "M 0.0,0.0 Q 1.0,2.0 3.0,4.0");
    EXPECT_EQ(data({point(0, 0), point(1, 2)}), "M 0.0,0.0 Q 1.0,2.0");
    EXPECT_EQ(data({point(7, 8)}), "M 7.0,8.0 Q ");

    BezierPath quintic({point(0, 0), point(1, 0), point(2, 0), point(3, 0), point(4, 0)});
    auto sampled = quintic.svgElement();
    EXPECT_EQ(sampled->name(), "polyline");
    std::string points = *sampled->attribute("points");
    EXPECT_EQ(std::count(points.begin(), points.end(), ' '), 100);

    auto debug = Drawable(BezierPath({point(0, 0), point(1, 1)})).debugSVG();
    EXPECT_EQ(debug->xmlString(), R"(<g><polyline points="0.0,0.0 1.0,1.0" stroke="#000000" fill="none"/>)"
                                  R"(<path d="M 0.0,0.0 Q 1.0,1.0" stroke="#000000" fill="none"/></g>)");
    // Shapes without a debug form fall back to their element.
    EXPECT_EQ(Drawable(Circle(1, 1, 1)).debugSVG()->name(), "circle");
}

TEST(SVGElementTest, GroupsUnwrapOneMemberAndSkipOthers) {
    EXPECT_EQ(xml(GroupDrawable({Circle(1, 1, 1)})).substr(0, 7), "<circle");
    GroupDrawable group({Circle(1, 1, 1), EmptyDrawable(), Line(0, 0, 1, 1)});
    auto element = group.svgElement();
    EXPECT_EQ(element->name(), "g");
    EXPECT_EQ(element->childCount(), 2u);
    EXPECT_FALSE(GroupDrawable({EmptyDrawable()}).svgElement());
    EXPECT_EQ(GroupDrawable({EmptyDrawable(), EmptyDrawable()}).svgElement()->xmlString(), "<g/>");
}

TEST(SVGElementTest, StylesAddOnlyWhatTheShapeLeftUnset) {
    Drawable styled = Drawable(Circle(10, 20, 5)).strokeColor(Color(1, 0, 0, 0.5)).strokeWidth(2).fillColor(Color(0, 0, 1, 0.25));
    EXPECT_EQ(xml(styled), R"(<circle cx="10.0" cy="20.0" r="5.0" stroke="#000000" fill="none" )"
                           R"(stroke-opacity="0.5" stroke-width="2.0" fill-opacity="0.25"/>)");
    EXPECT_EQ(xml(Drawable(Line(0, 0, 1, 1)).strokeWidth(1).fillColor(Color(0, 0, 1, 1))),
              R"(<line x1="0.0" y1="0.0" x2="1.0" y2="1.0" stroke="#000000" fill="#0000FF"/>)");

    auto group = Drawable(GroupDrawable({Circle(1, 1, 1), Circle(2, 2, 2)})).strokeWidth(3);
    auto element = group.svgElement();
    EXPECT_FALSE(element->attribute("stroke-width"));
    for (const auto& child : element->children()) EXPECT_EQ(child.attribute("stroke-width"), "3.0");
    EXPECT_FALSE(Drawable(EmptyDrawable()).strokeWidth(3).svgElement());
}

TEST(SVGElementDeathTest, EmptyGroupsAndCurvesStop) {
    EXPECT_DEATH(GroupDrawable().svgElement(), "empty group");
    EXPECT_DEATH(BezierPath().svgElement(), "at least one control point");
    EXPECT_DEATH(BezierPath().debugSVG(), "at least one control point");
}
