#include <OverlayGenerator/AspectRatio.hpp>
#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/PropertyList.hpp>

#include <TestSupport.hpp>
#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

using namespace vantel;

namespace {

AspectRatio sampleGuide() {
    return AspectRatio(16, 9, Color::navy(), Color::grey(0.5, 0.25), 3, GridType::pixels(50),
                       GridType::divisor(3), std::nullopt);
}

CodingValue without(CodingValue tree, std::initializer_list<std::string_view> keys) {
    std::erase_if(tree.asDictionary(), [&](const auto& entry) {
        return std::find(keys.begin(), keys.end(), entry.first) != keys.end();
    });
    return tree;
}

CodingValue with(CodingValue tree, const std::string& key, CodingValue value) {
    tree = without(std::move(tree), {key});
    tree.asDictionary().emplace_back(key, std::move(value));
    return tree;
}

CodingValue dictionary(CodingValue::Dictionary entries) { return CodingValue::dictionary(std::move(entries)); }
CodingValue payload(std::int64_t n) { return dictionary({{"_0", CodingValue::integer(n)}}); }

template <class T>
T decodeTree(const CodingValue& tree) {
    return decodeValue<T>(Decoder(tree, {}));
}

template <class T>
DecodingError decodingFailure(const CodingValue& tree) {
    return vantel::testing::thrownBy<DecodingError>([&] { return decodeTree<T>(tree); });
}

std::vector<std::string> keysOf(const CodingValue& tree) {
    std::vector<std::string> keys;
    for (const auto& entry : tree.asDictionary()) keys.push_back(entry.first);
    return keys;
}

}  // namespace

TEST(GridTypeCodingTest, EachCaseCodesAsOneKeyAndUnknownKeysAreIgnored) {
    EXPECT_EQ(encodeToTree(GridType::none()), dictionary({{"none", dictionary({})}}));
    EXPECT_EQ(encodeToTree(GridType::divisor(-3)), dictionary({{"divisor", payload(-3)}}));
    for (GridType grid : {GridType::none(), GridType::pixels(50), GridType::divisor(3)}) {
        EXPECT_EQ(decodeTree<GridType>(encodeToTree(grid)), grid);
    }
    CodingValue extra = dictionary({{"pixels", payload(10)}, {"extra", CodingValue::integer(1)}});
    EXPECT_EQ(decodeTree<GridType>(extra), GridType::pixels(10));
}

TEST(GridTypeCodingTest, ZeroOrSeveralCasesFailWithATypeMismatchAtTheDictionary) {
    CodingValue guide = encodeToTree(sampleGuide());
    for (const CodingValue& grid : {dictionary({}), dictionary({{"extra", CodingValue::integer(1)}}),
                                    dictionary({{"none", dictionary({})}, {"divisor", payload(2)}})}) {
        DecodingError error = decodingFailure<AspectRatio>(with(guide, "rowType", grid));
        EXPECT_EQ(error.kind(), DecodingError::Kind::typeMismatch);
        EXPECT_EQ(error.context().debugDescription, "Invalid number of keys found, expected one.");
        EXPECT_EQ(codingPathText(error.context().codingPath), "rowType");
    }
}

TEST(AspectRatioCodingTest, EncodingWritesEveryKeyInOrderAndChildrenOnlyWhenPresent) {
    AspectRatio guide = sampleGuide();
    std::vector<std::string> keys{"id", "width", "height", "color", "fillColor", "weight",
                                  "rowType", "columnType", "clearParent"};
    EXPECT_EQ(keysOf(encodeToTree(guide)), keys);
    guide.children = std::vector<AspectRatio>{};
    keys.push_back("children");
    EXPECT_EQ(keysOf(encodeToTree(guide)), keys);
    EXPECT_EQ(*encodeToTree(guide).find("children"), CodingValue::array());
    EXPECT_EQ(*encodeToTree(guide).find("rowType"), encodeToTree(GridType::pixels(50)));  // bare, not wrapped
}

TEST(AspectRatioCodingTest, RoundTripKeepsEveryFieldIncludingIdAndChildren) {
    AspectRatio guide = sampleGuide();
    guide.clearParent = false;
    guide.children = std::vector<AspectRatio>{sampleGuide(), AspectRatio::defaultGuide()};
    AspectRatio decoded = decodeTree<AspectRatio>(encodeToTree(guide));
    EXPECT_EQ(decoded, guide);
    EXPECT_EQ(std::hash<AspectRatio>{}(decoded), std::hash<AspectRatio>{}(guide));
    EXPECT_NE(decoded, sampleGuide());  // a fresh id makes a different guide
}

TEST(AspectRatioCodingTest, MissingOptionalKeysTakeTheirDefaults) {
    CodingValue tree = without(encodeToTree(sampleGuide()),
                               {"fillColor", "rowType", "columnType", "clearParent", "children"});
    AspectRatio guide = decodeTree<AspectRatio>(tree);
    EXPECT_EQ(guide.fillColor, Color::clear());
    EXPECT_EQ(guide.rowType, GridType::none());
    EXPECT_EQ(guide.columnType, GridType::none());
    EXPECT_TRUE(guide.clearParent);
    EXPECT_FALSE(guide.children.has_value());
}

TEST(AspectRatioCodingTest, KeysWithCodeDefaultsAreStillRequired) {
    for (std::string_view key : {"id", "color", "weight"}) {
        DecodingError error = decodingFailure<AspectRatio>(without(encodeToTree(sampleGuide()), {key}));
        EXPECT_EQ(error.kind(), DecodingError::Kind::keyNotFound) << key;
        EXPECT_EQ(error.key().value_or(CodingKey{}).stringValue, key);
    }
}

TEST(AspectRatioCodingTest, DefaultedKeyOfTheWrongTypeIsAnErrorNotADefault) {
    for (const char* key : {"clearParent", "fillColor", "rowType", "children"}) {
        CodingValue tree = with(encodeToTree(sampleGuide()), key, CodingValue::string("x"));
        DecodingError error = decodingFailure<AspectRatio>(tree);
        EXPECT_EQ(error.kind(), DecodingError::Kind::typeMismatch) << key;
        EXPECT_EQ(codingPathText(error.context().codingPath), key);
    }
}

TEST(OverlayGenCodingTest, BackgroundIsOptionalButSizeAndRatiosAreRequired) {
    OverlayGen document(400, 300, 10, Color::navy(), {sampleGuide()});
    CodingValue tree = encodeToTree(document);
    EXPECT_EQ(keysOf(tree), (std::vector<std::string>{"size", "ratios", "backgroundColor"}));
    EXPECT_EQ(decodeTree<OverlayGen>(tree), document);
    EXPECT_EQ(decodeTree<OverlayGen>(without(tree, {"backgroundColor"})).backgroundColor(), Color::clear());
    EXPECT_EQ(decodingFailure<OverlayGen>(without(tree, {"ratios"})).kind(), DecodingError::Kind::keyNotFound);
    EXPECT_EQ(decodingFailure<OverlayGen>(without(tree, {"size"})).kind(), DecodingError::Kind::keyNotFound);
}

TEST(OverlayGenCodingTest, CommittedExamplesDecode) {
    auto read = [](const std::string& name) {
        auto examples = std::filesystem::path(VANTEL_TEST_DATA_DIR).parent_path().parent_path() / "examples";
        std::ifstream file(examples / name, std::ios::binary);
        EXPECT_TRUE(file.is_open()) << name;
        return Data(std::istreambuf_iterator<char>(file), {});
    };
    OverlayGen sample = PropertyListDecoder().decode<OverlayGen>(read("sample.aspectratio"));
    EXPECT_EQ(sample.size(), Size(1920, 1080, 40));
    EXPECT_EQ(sample.description(), "overlay_16x9_1x1_9x16");
    const AspectRatio& wide = sample.ratios().at(0);
    EXPECT_EQ(wide.rowType, GridType::divisor(3));
    ASSERT_EQ(wide.children.value_or(std::vector<AspectRatio>{}).size(), 1u);
    EXPECT_FALSE(wide.children->front().clearParent);
    EXPECT_EQ(sample.ratios().at(1).columnType, GridType::pixels(120));

    OverlayGen portrait = PropertyListDecoder().decode<OverlayGen>(read("portrait-binary.aspectratio"));
    EXPECT_EQ(portrait.size(), Size(1080, 1350, 24));
    EXPECT_EQ(portrait.ratios().size(), 1u);
}

namespace {

// Each key of `node`, one at a time, holds a value of no type the decoder
// accepts; the keys whose change makes the document fail are the ones read.
void collectKeysRead(CodingValue& root, CodingValue& node, std::set<std::string>& read) {
    if (node.kind() == CodingValue::Kind::array) {
        for (CodingValue& item : node.asArray()) collectKeysRead(root, item, read);
    }
    if (node.kind() != CodingValue::Kind::dictionary) return;
    for (auto& [key, value] : node.asDictionary()) {
        collectKeysRead(root, value, read);
        CodingValue kept = std::exchange(value, CodingValue::string("?"));
        try {
            decodeValue<OverlayGen>(Decoder(root, {}));
        } catch (const DecodingError&) {
            read.insert(key);
        }
        value = std::move(kept);
    }
}

}  // namespace

TEST(OverlayGenCodingTest, TheFormatReferenceNamesExactlyTheKeysTheDecoderReads) {
    AspectRatio child(4, 3, Color::black(), Color::clear(), 1, GridType::none(), GridType::none(), std::nullopt);
    AspectRatio parent = sampleGuide();
    parent.children = std::vector{child};
    CodingValue tree = encodeToTree(OverlayGen(640, 480, 8, Color::white(), {parent}));
    std::set<std::string> read;
    collectKeysRead(tree, tree, read);

    std::ifstream reference(vantel::testing::testDataPath("../../docs/format.md"));
    ASSERT_TRUE(reference) << "docs/format.md";
    const std::regex keyRow("^\\| `([A-Za-z_0-9]+)` \\|.*");
    std::set<std::string> documented;
    std::smatch match;
    for (std::string line; std::getline(reference, line);) {
        if (std::regex_match(line, match, keyRow)) documented.insert(match[1]);
    }
    EXPECT_EQ(documented, read);
}
