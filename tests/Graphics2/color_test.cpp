#include <Graphics2/Color.hpp>

#include <TestSupport.hpp>

#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>

using vantel::CodingValue;
using vantel::Color;
using vantel::DecodingError;
using vantel::testing::thrownBy;

namespace {

void expectComponents(const Color& color, double red, double green, double blue, double alpha) {
    EXPECT_DOUBLE_EQ(color.red, red);
    EXPECT_DOUBLE_EQ(color.green, green);
    EXPECT_DOUBLE_EQ(color.blue, blue);
    EXPECT_DOUBLE_EQ(color.alpha, alpha);
}

Color decoded(CodingValue::Dictionary members) {
    CodingValue tree = CodingValue::dictionary(std::move(members));
    return vantel::decodeValue<Color>(vantel::Decoder(tree, {}));
}

}  // namespace

TEST(ColorTest, ConstructorsClampToTheUnitRangeAndLetNaNThrough) {
    expectComponents(Color(-0.2, 1.7, 0.5, 2), 0, 1, 0.5, 1);
    expectComponents(Color::rgb255(300, 128, -5, 0.5), 1, 128 / 255.0, 0, 0.5);
    expectComponents(Color::grey(1.5, -1), 1, 1, 1, 0);
    expectComponents(Color(0.2, 0.4, 0.6, 0.8).withAlpha(3), 0.2, 0.4, 0.6, 1);
    expectComponents(Color(0.2, 0.4, 0.6, 0.8).withoutAlpha(), 0.2, 0.4, 0.6, 1);
    EXPECT_FALSE(std::signbit(Color(-0.0, 0, 0, 0).red));

    double nan = std::numeric_limits<double>::quiet_NaN();
    Color withNaN(nan, 0, 0, 1);
    EXPECT_TRUE(std::isnan(withNaN.red));
    EXPECT_NE(withNaN, withNaN);
}

TEST(ColorTest, HexTextIsTrimmedAndLosesEveryHash) {
    Color orange(1, 128 / 255.0, 0, 1);
    EXPECT_EQ(Color::fromHexString("  #ff8000  "), orange);
    EXPECT_EQ(Color::fromHexString("ff8000"), orange);
    EXPECT_EQ(Color::fromHexString("\n\t#FF#80#00\r\n"), orange);
    EXPECT_EQ(Color::fromHexString("\u00A0#ff8000\u3000"), orange);  // Unicode spaces trim too
}

TEST(ColorTest, HexAlphaIsReadOnlyFromExactlyEightCharactersAndAGivenOneStaysUnclamped) {
    EXPECT_DOUBLE_EQ(Color::fromHexString("#FF800080").alpha, 128 / 255.0);
    EXPECT_EQ(Color::fromHexString("#FF80008").alpha, 1);
    EXPECT_EQ(Color::fromHexString("#FF80008080").alpha, 1);
    EXPECT_EQ(Color::fromHexString("#FF8000", 1.5).alpha, 1.5);
    expectComponents(Color::fromHexString("#FF800080", 0.25), 1, 128 / 255.0, 0, 0.25);  // last pair ignored
}

TEST(ColorTest, HexPairsAreReadByAPrefixScanThatNeverFails) {
    EXPECT_EQ(Color::fromHexString("#ZZ0000").red, 0);
    EXPECT_DOUBLE_EQ(Color::fromHexString("#1G0000").red, 1 / 255.0);
    EXPECT_DOUBLE_EQ(Color::fromHexString("# F0000").red, 15 / 255.0);  // blank skipped inside the pair
    Color prefixed = Color::fromHexString("#0x10ff");
    EXPECT_EQ(prefixed.red, 0);
    EXPECT_DOUBLE_EQ(prefixed.green, 16 / 255.0);
    EXPECT_EQ(prefixed.blue, 1);
}

TEST(ColorTest, HexOffsetsCountCharactersNotBytes) {
    // "é" is two bytes but one character: the pairs are "éF", "F0", "00".
    expectComponents(Color::fromHexString("#\u00E9FF0000"), 0, 240 / 255.0, 0, 1);
    // A letter with a combining accent is one character as well; its base
    // letter is still a readable digit.
    expectComponents(Color::fromHexString("#e\u0301FF0000"), 14 / 255.0, 240 / 255.0, 0, 1);
}

TEST(ColorDeathTest, HexTextShorterThanSixDigitsStops) {
    EXPECT_DEATH(Color::fromHexString("#F0F"), "six");
    EXPECT_DEATH(Color::fromHexString("  #FF#800  "), "six");
    EXPECT_DEATH(Color::fromHexString("#\u00E9FFFF", 1), "six");  // six bytes, five characters
}

TEST(ColorTest, ComponentListLengthChoosesTheMeaning) {
    EXPECT_EQ(Color::fromComponents({}), Color::black());
    expectComponents(Color::fromComponents({0.5}), 0.5, 0.5, 0.5, 1);
    expectComponents(Color::fromComponents({0.5, 0.2}), 0.5, 0.5, 0.5, 0.2);
    expectComponents(Color::fromComponents({0.1, 0.2, 0.3}), 0.1, 0.2, 0.3, 1);
    expectComponents(Color::fromComponents({1, 0, 0, 0.5, 9}), 1, 0, 0, 0.5);
    expectComponents(Color::fromComponents({2, -1, 0, 7}), 1, 0, 0, 1);
}

// The published table, read from tests/data: keyword -> "#RRGGBB".
static std::map<std::string, std::string> publishedKeywords() {
    std::ifstream file(vantel::testing::testDataPath("css-named-colors.txt"));
    std::map<std::string, std::string> keywords;
    std::string keyword, hex;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream(line) >> keyword >> hex;
        keywords[keyword] = hex;
    }
    return keywords;
}

TEST(ColorTest, KeywordsHaveThePublishedValuesExceptSeashellAndRebeccapurple) {
    std::map<std::string, std::string> published = publishedKeywords();
    ASSERT_EQ(published.size(), 148u);
    for (const auto& [keyword, hex] : published) {
        std::optional<Color> named = Color::named(keyword);
        if (keyword == "rebeccapurple") {
            EXPECT_EQ(named, std::nullopt);
            continue;
        }
        ASSERT_TRUE(named.has_value()) << keyword;
        EXPECT_EQ(named->alpha, 1) << keyword;
        EXPECT_EQ(named->toHex(), keyword == "seashell" ? "#2E8B57" : hex) << keyword;
    }
    EXPECT_EQ(Color::named("seashell"), Color::seagreen());
    expectComponents(Color::navy(), 0, 0, 128 / 255.0, 1);
}

TEST(ColorTest, NameLookupIsExactAndCaseSensitive) {
    EXPECT_EQ(Color::named("red"), Color::redColor());
    EXPECT_EQ(Color::named("Red"), std::nullopt);
    EXPECT_EQ(Color::named(" red"), std::nullopt);
    EXPECT_EQ(Color::named("clear"), std::nullopt);
}

TEST(ColorTest, TextFormsRoundHalfAwayFromZero) {
    Color orange(1, 0.5, 0, 0.3);  // 0.5 x 255 = 127.5 becomes 128
    EXPECT_EQ(orange.toHex(), "#FF8000");
    EXPECT_EQ(orange.toRGBA(), "rgba(255,128,0,0.3)");
    EXPECT_EQ(Color(0.498, 0.002, 0.04, 1).toHex(), "#7F010A");
    EXPECT_EQ(Color::clear().toRGBA(), "rgba(0,0,0,0.0)");
    EXPECT_EQ(Color::black().toRGBA(), "rgba(0,0,0,1.0)");
    EXPECT_DOUBLE_EQ(Color(0.3, 0.6, 0.9, 0.1).greyLevel(), 0.6);
}

TEST(ColorTest, CodingUsesFourRequiredKeysAndKeepsValuesUnclamped) {
    CodingValue tree = vantel::encodeToTree(Color(1, 0.5, 0, 1));
    ASSERT_EQ(tree.kind(), CodingValue::Kind::dictionary);
    std::vector<std::string> keys;
    for (const auto& [key, value] : tree.asDictionary()) keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<std::string>{"red", "green", "blue", "alpha"}));
    EXPECT_EQ(vantel::decodeValue<Color>(vantel::Decoder(tree, {})), Color(1, 0.5, 0, 1));

    Color bright = decoded({{"red", CodingValue::real(2)}, {"green", CodingValue::integer(0)},
                            {"blue", CodingValue::real(-1)}, {"alpha", CodingValue::real(1)}});
    expectComponents(bright, 2, 0, -1, 1);

    auto noAlpha = thrownBy<DecodingError>([] {
        return decoded({{"red", CodingValue::real(1)}, {"green", CodingValue::real(0)}, {"blue", CodingValue::real(0)}});
    });
    EXPECT_EQ(noAlpha.kind(), DecodingError::Kind::keyNotFound);
    EXPECT_EQ(noAlpha.key()->stringValue, "alpha");
    auto textRed = thrownBy<DecodingError>([] {
        return decoded({{"red", CodingValue::string("1")}, {"green", CodingValue::real(0)},
                        {"blue", CodingValue::real(0)}, {"alpha", CodingValue::real(1)}});
    });
    EXPECT_EQ(textRed.kind(), DecodingError::Kind::typeMismatch);
}
