#include <Platform/JSON.hpp>

#include <SampleDocument.hpp>
#include <Thrown.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using namespace vantel;
using vantel::testing::SampleDocument;

namespace {

Data bytes(std::string_view text) { return Data(text.begin(), text.end()); }
std::string text(const Data& data) { return std::string(data.begin(), data.end()); }
CodingValue parse(std::string_view json) { return JSONDecoder().parse(bytes(json)); }

std::string written(const CodingValue& tree, bool pretty = false, bool sorted = false) {
    JSONEncoder encoder;
    encoder.prettyPrinted = pretty;
    encoder.sortedKeys = sorted;
    return text(encoder.serialize(tree));
}

DecodingError parseError(std::string_view json) {
    return vantel::testing::thrownBy<DecodingError>([&] { return parse(json); });
}

}  // namespace

TEST(JSONTest, ValuesMapOntoCodingValuesInOrder) {
    CodingValue root = parse(R"({"z": 1, "a": -2.5, "n": null, "t": true, "s": "\u00e9\n", "l": [1e2, 18446744073709551615]})");
    EXPECT_EQ(root, CodingValue::dictionary({
                        {"z", CodingValue::integer(1)},
                        {"a", CodingValue::real(-2.5)},
                        {"n", CodingValue()},
                        {"t", CodingValue::boolean(true)},
                        {"s", CodingValue::string("\xC3\xA9\n")},
                        {"l", CodingValue::array({CodingValue::real(100.0),
                                                  CodingValue::real(18446744073709551615.0)})},
                    }));
    EXPECT_EQ(parse("42"), CodingValue::integer(42));  // fragments are accepted
    EXPECT_EQ(parse(R"({"a": 1, "b": 2, "a": 3})"),
              CodingValue::dictionary({{"a", CodingValue::integer(3)}, {"b", CodingValue::integer(2)}}));
}

TEST(JSONTest, InvalidTextIsCorruptWithTheParsersReason) {
    for (const char* bad : {"", "{", R"({"a": })", "[1,]", "nul", "{} {}", "\"\xFF\""}) {
        DecodingError error = parseError(bad);
        EXPECT_EQ(error.kind(), DecodingError::Kind::dataCorrupted);
        std::string message = error.what();
        EXPECT_EQ(message.find("The given data was not valid JSON. "), 0u) << message;
        EXPECT_GT(message.size(), std::string("The given data was not valid JSON. ").size());
    }
}

TEST(JSONTest, NestingIsLimited) {
    auto nested = [](int depth) { return std::string(depth, '[') + std::string(depth, ']'); };
    EXPECT_NO_THROW(parse(nested(512)));
    EXPECT_EQ(parseError(nested(513)).kind(), DecodingError::Kind::dataCorrupted);
    EXPECT_EQ(parseError(nested(100'000)).kind(), DecodingError::Kind::dataCorrupted);
}

TEST(JSONTest, CompactOutputKeepsInsertionOrderAndShortestNumbers) {
    CodingValue tree = CodingValue::dictionary({
        {"width", CodingValue::real(10.0)},
        {"ratio", CodingValue::real(0.1)},
        {"tiny", CodingValue::real(1e-05)},
        {"count", CodingValue::integer(-3)},
        {"name", CodingValue::string("a\"b\\c\t\x01/")},
        {"bytes", CodingValue::data({'h', 'i', '!', '?'})},
        {"three", CodingValue::data({'h', 'i', '!'})},
        {"none", CodingValue()},
        {"list", CodingValue::array({CodingValue::boolean(false), CodingValue::array()})},
        {"empty", CodingValue::dictionary()},
    });
    EXPECT_EQ(written(tree),
              R"({"width":10.0,"ratio":0.1,"tiny":1e-05,"count":-3,"name":"a\"b\\c\t\u0001/",)"
              R"("bytes":"aGkhPw==","three":"aGkh","none":null,"list":[false,[]],"empty":{}})");
}

TEST(JSONTest, PrettyAndSortedOutput) {
    CodingValue tree = CodingValue::dictionary({
        {"b", CodingValue::array({CodingValue::integer(1), CodingValue::dictionary({{"y", CodingValue::integer(2)}, {"x", CodingValue::integer(3)}})})},
        {"a", CodingValue::string("z")},
    });
    EXPECT_EQ(written(tree, true, true),
              "{\n"
              "  \"a\" : \"z\",\n"
              "  \"b\" : [\n"
              "    1,\n"
              "    {\n"
              "      \"x\" : 3,\n"
              "      \"y\" : 2\n"
              "    }\n"
              "  ]\n"
              "}");
    EXPECT_EQ(written(tree, false, true), R"({"a":"z","b":[1,{"x":3,"y":2}]})");
}

TEST(JSONTest, UnwritableValuesThrowWithTheirPath) {
    for (double bad : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        CodingValue tree = CodingValue::dictionary(
            {{"ratios", CodingValue::array({CodingValue::dictionary({{"weight", CodingValue::real(bad)}})})}});
        auto error = vantel::testing::thrownBy<EncodingError>([&] { return written(tree); });
        EXPECT_EQ(codingPathText(error.codingPath()), "ratios[0].weight");
        EXPECT_EQ(std::string(error.what()).find("ratios[0].weight: "), 0u);
    }
    EXPECT_THROW(written(CodingValue::string("\xC3")), EncodingError);
    EXPECT_THROW(written(CodingValue::string("\xED\xA0\x80")), EncodingError);  // a surrogate
    EXPECT_THROW(written(CodingValue::string("\xE0\x9F\xBF")), EncodingError);  // overlong
    EXPECT_THROW(written(CodingValue::string("\xF0\x8F\xBF\xBF")), EncodingError);  // overlong
    EXPECT_NO_THROW(written(CodingValue::string("\xC2\x80\xE0\xA0\x80\xF1\x80\x80\x80\xF0\x90\x80\x80")));
}

TEST(JSONTest, DocumentsAndNumbersRoundTrip) {
    SampleDocument document;
    document.size = {1920, 1080, 24.5};
    document.backgroundColor = {0.1, 0.2, 0.30000000000000004, 1};
    vantel::testing::SampleGuide guide;
    guide.id = UUID::random();
    guide.width = 16;
    guide.height = 9;
    guide.rowPixels = 50;
    guide.children = std::vector<vantel::testing::SampleGuide>{};
    document.ratios = {guide};
    for (bool pretty : {false, true}) {
        JSONEncoder encoder;
        encoder.prettyPrinted = pretty;
        EXPECT_EQ(JSONDecoder().decode<SampleDocument>(encoder.encode(document)), document);
    }
    for (double value : {5e-324, 1.7976931348623157e308, -0.0, 123456789.12345679, 1.0 / 3}) {
        double back = JSONDecoder().decode<double>(JSONEncoder().encode(value));
        EXPECT_EQ(back, value);
        EXPECT_EQ(std::signbit(back), std::signbit(value));
    }
}
