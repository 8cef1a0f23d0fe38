#include <Graphics2/Line.hpp>
#include <Graphics2/Rectangle.hpp>

#include <RecordingContext.hpp>
#include <gtest/gtest.h>

using namespace vantel;
using Operations = std::vector<std::string>;
using vantel::testing::RecordingContext;

// The frame itself stays unrotated: the rotation goes to the context, in degrees.
TEST(ShapeDrawingTest, RectangleFillsThenStrokesItsFrameInsideASavedRotatedState) {
    RecordingContext context;
    Rectangle(Vector::point(50, 50), 20, 10, Angle::fromDegrees(90)).draw(context);
    EXPECT_EQ(context.operations,
              (Operations{"save", "rotate 90.0", "fillRect 40.0 45.0 20.0 10.0",
                          "strokeRect 40.0 45.0 20.0 10.0", "restore"}));
}

TEST(ShapeDrawingTest, CGRectCornerIsCentreMinusHalfSize) {
    EXPECT_EQ(Rectangle(Vector(3, 4, 7), 2, 6, Angle()).makeCGRect(), (CGRect{2, 1, 2, 6}));
    EXPECT_EQ(Rectangle(Vector::point(0, 0), -4, 2, Angle()).makeCGRect(), (CGRect{2, -1, -4, 2}));
}

TEST(ShapeDrawingTest, LineStrokesOneSegmentWithoutTouchingState) {
    RecordingContext context;
    Line(1, 2, 3.5, -4).draw(context);
    EXPECT_EQ(context.operations, (Operations{"moveTo 1.0 2.0", "lineTo 3.5 -4.0", "strokePath"}));
}
