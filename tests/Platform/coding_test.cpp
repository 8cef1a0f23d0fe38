#include <Platform/Coding.hpp>
#include <Platform/JSON.hpp>

#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <string>

using namespace vantel;

namespace {

CodingValue tree(std::string_view json) { return JSONDecoder().parse(Data(json.begin(), json.end())); }

template <class Body>
DecodingError decodingError(Body body) { return vantel::testing::thrownBy<DecodingError>(body); }

struct Weighted {
    double weight = 0;
    static Weighted decode(const Decoder& decoder) { return {decoder.container().decode<double>("weight")}; }
};

}  // namespace

TEST(CodingTest, KeyedContainersReadKeysInOrderAndReportMissingOnes) {
    CodingValue root = tree(R"({"b": 1, "a": {"c": "x"}, "n": null})");
    auto keyed = Decoder(root, {}).container();
    EXPECT_EQ(keyed.allKeys(), (std::vector<std::string>{"b", "a", "n"}));
    EXPECT_TRUE(keyed.contains("n"));
    EXPECT_TRUE(keyed.decodeNil("n"));
    EXPECT_EQ(keyed.nestedContainer("a").decode<std::string>("c"), "x");

    DecodingError missing = decodingError([&] { keyed.nestedContainer("a").decode<int>("zz"); });
    EXPECT_EQ(missing.kind(), DecodingError::Kind::keyNotFound);
    EXPECT_EQ(missing.key()->stringValue, "zz");
    EXPECT_EQ(codingPathText(missing.context().codingPath), "a");
    EXPECT_STREQ(missing.what(), "a.zz: No value associated with key \"zz\".");

    DecodingError null = decodingError([&] { keyed.decode<double>("n"); });
    EXPECT_EQ(null.kind(), DecodingError::Kind::valueNotFound);
    EXPECT_EQ(codingPathText(null.fullPath()), "n");
}

TEST(CodingTest, DecodeIfPresentTellsAbsentFromWrong) {
    CodingValue root = tree(R"({"present": 2.5, "null": null, "text": "2.5"})");
    auto keyed = Decoder(root, {}).container();
    EXPECT_EQ(keyed.decodeIfPresent<double>("present"), 2.5);
    EXPECT_EQ(keyed.decodeIfPresent<double>("absent"), std::nullopt);
    EXPECT_EQ(keyed.decodeIfPresent<double>("null"), std::nullopt);
    DecodingError wrong = decodingError([&] { keyed.decodeIfPresent<double>("text"); });
    EXPECT_EQ(wrong.kind(), DecodingError::Kind::typeMismatch);
    EXPECT_EQ(wrong.expectedType(), "Double");
    EXPECT_STREQ(wrong.what(), "text: Expected to decode Double but found a string instead.");
}

TEST(CodingTest, UnkeyedContainersAdvanceAndStopAtTheEnd) {
    CodingValue root = tree(R"([1, null, [true], {"k": 2}])");
    auto items = Decoder(root, {}).unkeyedContainer();
    EXPECT_EQ(items.count(), 4u);
    EXPECT_FALSE(items.decodeNil());
    EXPECT_EQ(items.decode<int>(), 1);
    EXPECT_EQ(items.decodeIfPresent<int>(), std::nullopt);  // the null, consumed
    EXPECT_TRUE(items.nestedUnkeyedContainer().decode<bool>());
    EXPECT_EQ(items.nestedContainer().decode<int>("k"), 2);
    EXPECT_TRUE(items.isAtEnd());
    DecodingError end = decodingError([&] { items.decode<int>(); });
    EXPECT_EQ(end.kind(), DecodingError::Kind::valueNotFound);
    EXPECT_EQ(codingPathText(end.context().codingPath), "[4]");
}

TEST(CodingTest, PathsNameEveryStepToTheFailure) {
    CodingValue root = tree(R"({"ratios": [{"weight": 1}, {"weight": "heavy"}]})");
    DecodingError error = decodingError([&] {
        Decoder(root, {}).container().decode<std::vector<Weighted>>("ratios");
    });
    EXPECT_EQ(error.kind(), DecodingError::Kind::typeMismatch);
    EXPECT_EQ(codingPathText(error.context().codingPath), "ratios[1].weight");
    EXPECT_EQ(std::string(error.what()).find("ratios[1].weight: "), 0u);

    DecodingError notADictionary = decodingError([&] { Decoder(root, {}).container().nestedContainer("ratios"); });
    EXPECT_EQ(notADictionary.kind(), DecodingError::Kind::typeMismatch);
    EXPECT_EQ(notADictionary.expectedType(), "Dictionary");
}

TEST(CodingTest, NumbersConvertOnlyWithoutLoss) {
    CodingValue root = tree(R"({"whole": 3.0, "half": 3.5, "huge": 1e30, "int": 7, "big": 300, "flag": 1})");
    auto keyed = Decoder(root, {}).container();
    EXPECT_EQ(keyed.decode<int>("whole"), 3);
    EXPECT_EQ(keyed.decode<double>("int"), 7.0);
    EXPECT_EQ(keyed.decode<float>("half"), 3.5f);
    EXPECT_EQ(decodingError([&] { keyed.decode<int>("half"); }).kind(), DecodingError::Kind::dataCorrupted);
    EXPECT_EQ(decodingError([&] { keyed.decode<std::int64_t>("huge"); }).kind(),
              DecodingError::Kind::dataCorrupted);
    DecodingError narrow = decodingError([&] { keyed.decode<std::int8_t>("big"); });
    EXPECT_EQ(narrow.kind(), DecodingError::Kind::dataCorrupted);
    EXPECT_EQ(codingPathText(narrow.context().codingPath), "big");
    EXPECT_EQ(decodingError([&] { keyed.decode<bool>("flag"); }).kind(), DecodingError::Kind::typeMismatch);
}

TEST(CodingTest, SingleValuesDecodeAtTheRoot) {
    CodingValue root = CodingValue::string("x");
    EXPECT_EQ(decodeValue<std::string>(Decoder(root, {})), "x");
    EXPECT_EQ(decodeValue<std::optional<int>>(Decoder(CodingValue(), {})), std::nullopt);
    EXPECT_EQ(decodingError([&] { Decoder(root, {}).singleValueContainer().decodeData(); }).kind(),
              DecodingError::Kind::typeMismatch);
}

TEST(CodingTest, EncodingKeepsInsertionOrderAndReplacesRepeatedKeys) {
    EncodingTree encoding;
    Encoder root = encoding.rootEncoder();
    auto keyed = root.container();
    keyed.encode(1, "z");
    keyed.encode(std::string("first"), "a");
    auto nested = keyed.nestedUnkeyedContainer("list");
    keyed.encode(2.5, "z");  // replaces, keeps its place
    nested.encode(true);
    nested.encodeNil();
    keyed.encodeIfPresent(std::optional<int>(), "absent");
    keyed.encode("text", "literal");
    EXPECT_EQ(encoding.finish(),
              CodingValue::dictionary({
                  {"z", CodingValue::real(2.5)},
                  {"a", CodingValue::string("first")},
                  {"list", CodingValue::array({CodingValue::boolean(true), CodingValue()})},
                  {"literal", CodingValue::string("text")},
              }));
    EXPECT_EQ(encodeToTree(std::vector<int>{1, 2}),
              CodingValue::array({CodingValue::integer(1), CodingValue::integer(2)}));
    EncodingTree single;
    single.rootEncoder().singleValueContainer().encode("text");  // a literal is text, not a boolean
    EXPECT_EQ(single.finish(), CodingValue::string("text"));
}
