#include <Graphics2/Size.hpp>

#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

using namespace vantel;
using vantel::testing::thrownBy;

namespace {
CodingValue sizeTree(CodingValue width, CodingValue height, std::optional<CodingValue> margin) {
    CodingValue::Dictionary entries{{"width", std::move(width)}, {"height", std::move(height)}};
    if (margin) entries.emplace_back("margin", std::move(*margin));
    return CodingValue::dictionary(std::move(entries));
}

Size decodeSize(const CodingValue& tree) { return decodeValue<Size>(Decoder(tree, {})); }
}  // namespace

TEST(SizeTest, UnitFactoriesConvertEachValueAtTheResolution) {
    const Size a4 = Size::mm(210, 297, 10, 72);
    EXPECT_EQ(a4.width, 595.2755905511812);
    EXPECT_EQ(a4.height, 841.8897637795276);  // a precomputed 72 / 25.4 gives ...277
    EXPECT_EQ(a4.margin, 28.34645669291339);
    EXPECT_EQ(Size::inches(8.5, 11, 0.5, 300), Size(2550, 3300, 150));
}

TEST(SizeTest, OrientationSwapsSidesAndKeepsTheMargin) {
    const Size wide(100, 50, 5);
    EXPECT_EQ(wide.portrait(), Size(50, 100, 5));
    EXPECT_EQ(wide.portrait().landscape(), wide);
    EXPECT_EQ(wide.landscape(), wide);
    EXPECT_EQ(Size(7, 7, 1).portrait(), Size(7, 7, 1));
    EXPECT_EQ(wide.longSide(), 100);
    EXPECT_EQ(wide.shortSide(), 50);
    // Equal sides: the long side is the height, the short side the width.
    EXPECT_TRUE(std::signbit(Size(0.0, -0.0, 0).longSide()));
    EXPECT_FALSE(std::signbit(Size(0.0, -0.0, 0).shortSide()));
}

TEST(SizeTest, MarginDerivedValuesAndDrawingArea) {
    const Size size(100, 50, 5);
    EXPECT_EQ(size.center(), Vector(50, 25, 1));
    EXPECT_EQ(size.ratio(), 2);
    EXPECT_EQ(size.marginWidth(), 90);
    EXPECT_EQ(size.marginHeight(), 40);
    EXPECT_EQ(size.marginRatio(), 2.25);
    EXPECT_EQ(size.minX(), 5);
    EXPECT_EQ(size.maxX(), 95);
    EXPECT_EQ(size.maxY(), 45);
    const Rectangle area = size.boundingBox();
    EXPECT_EQ(area.origin, Vector(50, 25, 1));
    EXPECT_EQ(area.width, 90);
    EXPECT_EQ(area.height, 40);
    EXPECT_EQ(area.rotation, Angle());
    EXPECT_EQ(size.cg(), (CGSize{100, 50})) << "the margin is dropped";

    const Size cramped(10, 20, 8);  // nothing is clamped
    EXPECT_EQ(cramped.marginWidth(), -6);
    EXPECT_EQ(cramped.boundingBox().width, -6);
    EXPECT_EQ(Size(10, 0, 0).ratio(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(Size(10, 20, 10).marginRatio(), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(Size(20, 20, 10).marginRatio()));
}

TEST(SizeTest, EqualityAndHashFollowFloatingPointComparison) {
    const std::hash<Size> hash;
    EXPECT_EQ(Size(-0.0, 1, 2), Size(0.0, 1, 2));
    EXPECT_EQ(hash(Size(-0.0, 1, -0.0)), hash(Size(0.0, 1, 0.0)));
    EXPECT_NE(Size(NAN, 1, 2), Size(NAN, 1, 2));
    EXPECT_NE(hash(Size(1, 2, 3)), hash(Size(2, 1, 3)));  // field order matters
}

TEST(SizeCodingTest, EncodesThreeKeysInOrderAndDecodesThemBack) {
    const Size size(10.5, 20, 0);
    const CodingValue tree = encodeToTree(size);
    EXPECT_EQ(tree, sizeTree(CodingValue::real(10.5), CodingValue::real(20), CodingValue::real(0)));
    EXPECT_EQ(decodeSize(tree), size);
    EXPECT_EQ(decodeSize(sizeTree(CodingValue::integer(10), CodingValue::integer(20),
                                  CodingValue::integer(0))),
              Size(10, 20, 0));
}

TEST(SizeCodingTest, EveryKeyIsRequiredAndMustBeANumber) {
    auto noMargin = thrownBy<DecodingError>(
        [] { return decodeSize(sizeTree(CodingValue::integer(10), CodingValue::integer(20), std::nullopt)); });
    EXPECT_EQ(noMargin.kind(), DecodingError::Kind::keyNotFound);
    EXPECT_EQ(noMargin.key()->stringValue, "margin");
    auto textWidth = thrownBy<DecodingError>([] {
        return decodeSize(sizeTree(CodingValue::string("10"), CodingValue::integer(20), CodingValue::integer(0)));
    });
    EXPECT_EQ(textWidth.kind(), DecodingError::Kind::typeMismatch);
    EXPECT_EQ(codingPathText(textWidth.context().codingPath), "width");
}
