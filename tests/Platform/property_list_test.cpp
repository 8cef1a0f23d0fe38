#include <Platform/FileIO.hpp>
#include <Platform/PropertyList.hpp>

#include <SampleDocument.hpp>
#include <TestSupport.hpp>

#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <random>
#include <string>

using namespace vantel;
using vantel::testing::SampleDocument;
using vantel::testing::testDataPath;
using vantel::testing::thrownBy;

namespace {

Data fixture(const std::string& name) { return readData(testDataPath("plist/" + name)); }

Data bytes(std::string_view text) { return Data(text.begin(), text.end()); }

CodingValue parse(std::string_view xmlBody) {
    return PropertyListDecoder().parse(bytes("<?xml version=\"1.0\"?><plist version=\"1.0\">" +
                                             std::string(xmlBody) + "</plist>"));
}

std::string nestedArraysXML(int depth) {
    std::string text = "<plist>";
    for (int i = 0; i < depth; ++i) text += "<array>";
    for (int i = 0; i < depth; ++i) text += "</array>";
    return text + "</plist>";
}

// A binary property list built by hand: every object is given encoded, with
// 4-byte object references and offsets.
class BinaryPlist {
public:
    std::uint32_t add(Data object) {
        objects_.push_back(std::move(object));
        return static_cast<std::uint32_t>(objects_.size() - 1);
    }
    static Data array(const std::vector<std::uint32_t>& references) {
        Data object;
        if (references.size() < 15) {
            object.push_back(static_cast<std::uint8_t>(0xA0 | references.size()));
        } else {
            object = {0xAF, 0x12};
            append(object, references.size(), 4);
        }
        for (std::uint32_t reference : references) append(object, reference, 4);
        return object;
    }
    Data bytes(std::uint32_t top = 0) const {
        Data out = {'b', 'p', 'l', 'i', 's', 't', '0', '0'};
        std::vector<std::size_t> offsets;
        for (const Data& object : objects_) {
            offsets.push_back(out.size());
            out.insert(out.end(), object.begin(), object.end());
        }
        std::size_t table = out.size();
        for (std::size_t offset : offsets) append(out, offset, 4);
        out.insert(out.end(), {0, 0, 0, 0, 0, 0, 4, 4});
        append(out, objects_.size(), 8);
        append(out, top, 8);
        append(out, table, 8);
        return out;
    }

private:
    static void append(Data& out, std::uint64_t value, int width) {
        for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) out.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    std::vector<Data> objects_;
};

// Arrays nested depth deep, each holding the next; the innermost is empty.
Data nestedArraysBinary(std::uint32_t depth) {
    BinaryPlist plist;
    for (std::uint32_t i = 0; i + 1 < depth; ++i) plist.add(BinaryPlist::array({i + 1}));
    plist.add(BinaryPlist::array({}));
    return plist.bytes();
}

// `reason`, when given, must be part of what follows the plain statement.
void expectCorrupt(const Data& input, const std::string& reason = {}) {
    DecodingError error = thrownBy<DecodingError>([&] { return PropertyListDecoder().parse(input); });
    EXPECT_EQ(error.kind(), DecodingError::Kind::dataCorrupted);
    std::string message = error.what();
    EXPECT_TRUE(message.starts_with("The given data was not a valid property list.")) << message;
    if (!reason.empty()) {
        EXPECT_NE(message.find(". " + reason), std::string::npos) << message;
    }
}

}  // namespace

TEST(PropertyListTest, DocumentsWrittenByPlistlibDecodeAlikeFromXMLAndBinary) {
    auto xml = PropertyListDecoder().decode<SampleDocument>(fixture("document-xml.plist"));
    auto binary = PropertyListDecoder().decode<SampleDocument>(fixture("document-binary.plist"));
    EXPECT_EQ(xml, binary);

    EXPECT_EQ(xml.size.width, 1920.0);  // written as an integer
    EXPECT_EQ(xml.size.margin, 24.5);
    EXPECT_DOUBLE_EQ(xml.backgroundColor.green, 0.2);
    ASSERT_EQ(xml.ratios.size(), 2u);
    const auto& outer = xml.ratios[0];
    EXPECT_EQ(outer.id.uuidString(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");  // stored lower case
    EXPECT_EQ(outer.weight, 2.0);
    EXPECT_EQ(outer.rowPixels, 50);
    ASSERT_TRUE(outer.fillColor.has_value());
    EXPECT_EQ(outer.fillColor->alpha, 0.25);
    ASSERT_TRUE(outer.children.has_value());
    ASSERT_EQ(outer.children->size(), 1u);
    EXPECT_FALSE(outer.children->front().clearParent);
    EXPECT_EQ(outer.children->front().weight, 1.5);
    EXPECT_FALSE(xml.ratios[1].fillColor.has_value());
    EXPECT_FALSE(xml.ratios[1].children.has_value());
}

TEST(PropertyListTest, DictionariesKeepTheFileOrder) {
    for (const char* name : {"document-xml.plist", "document-binary.plist"}) {
        CodingValue root = PropertyListDecoder().parse(fixture(name));
        Decoder decoder(root, {});
        EXPECT_EQ(decoder.container().allKeys(),
                  (std::vector<std::string>{"size", "ratios", "backgroundColor"}));
        EXPECT_EQ(decoder.container().nestedContainer("backgroundColor").allKeys(),
                  (std::vector<std::string>{"red", "green", "blue", "alpha"}));
    }
}

TEST(PropertyListTest, BrokenDocumentsGiveTheErrorKindAndTheCodingPath) {
    struct Case {
        const char* file;
        DecodingError::Kind kind;
        const char* message;
    };
    const Case cases[] = {
        {"missing-weight-xml.plist", DecodingError::Kind::keyNotFound,
         "ratios[0].weight: No value associated with key \"weight\"."},
        {"missing-weight-binary.plist", DecodingError::Kind::keyNotFound,
         "ratios[0].weight: No value associated with key \"weight\"."},
        {"wrong-type-xml.plist", DecodingError::Kind::typeMismatch, "ratios[1].width: "},
        {"wrong-type-binary.plist", DecodingError::Kind::typeMismatch, "ratios[1].width: "},
        {"bad-uuid-xml.plist", DecodingError::Kind::dataCorrupted,
         "ratios[0].children[0].id: Attempted to decode UUID from invalid UUID string."},
        {"truncated-binary.plist", DecodingError::Kind::dataCorrupted,
         "The given data was not a valid property list."},
        {"not-a-plist.plist", DecodingError::Kind::dataCorrupted,
         "The given data was not a valid property list."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        auto error = thrownBy<DecodingError>([&] { return PropertyListDecoder().decode<SampleDocument>(fixture(c.file)); });
        EXPECT_EQ(error.kind(), c.kind);
        EXPECT_EQ(std::string(error.what()).find(c.message), 0u) << error.what();
    }
}

TEST(PropertyListTest, EmptyTruncatedAndForeignInputIsCorrupt) {
    expectCorrupt({});
    expectCorrupt(bytes("bplist00"));
    expectCorrupt(bytes("<plist><dict><key>a</key><integer>1</integer></plist>"));
    expectCorrupt(bytes("just text"));
    Data whole = fixture("document-binary.plist");
    for (std::size_t cut : {whole.size() - 1, whole.size() - 40, std::size_t{9}}) {
        expectCorrupt(Data(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(cut)));
    }
}

TEST(PropertyListTest, ScalarsMapOntoCodingValues) {
    CodingValue root = parse(
        "<array><integer>-5</integer><real>2.5</real><true/><string>a &amp; b</string>"
        "<data>AAH/</data><date>2001-01-01T00:01:00Z</date><string>$null</string></array>");
    const auto& items = root.asArray();
    ASSERT_EQ(items.size(), 7u);
    EXPECT_EQ(items[0], CodingValue::integer(-5));
    EXPECT_EQ(items[1], CodingValue::real(2.5));
    EXPECT_EQ(items[2], CodingValue::boolean(true));
    EXPECT_EQ(items[3], CodingValue::string("a & b"));
    EXPECT_EQ(items[4], CodingValue::data({0x00, 0x01, 0xFF}));
    EXPECT_EQ(items[5], CodingValue::real(60.0));  // seconds since 2001
    EXPECT_TRUE(items[6].isNull());
}

// libplist reads integer text with strtoull in any base and wraps: "1e3"
// would read as 1 and 2^64 - 1 as -1. Such text is refused where it stands.
TEST(PropertyListTest, IntegerTextIsPlainDecimalWithinSixtyFourBits) {
    CodingValue fine = parse("<array><integer> +7\n</integer><integer>-9223372036854775808</integer></array>");
    EXPECT_EQ(fine.asArray()[0], CodingValue::integer(7));
    EXPECT_EQ(fine.asArray()[1], CodingValue::integer(std::numeric_limits<std::int64_t>::min()));
    for (std::string text : {"1e3", "010", "0x10", "18446744073709551615", "-99999999999999999999", "1<!---->2", ""}) {
        auto error = thrownBy<DecodingError>([&] {
            return parse("<dict><key>a&amp;b</key><array><dict/><integer>" + text + "</integer></array></dict>");
        });
        EXPECT_EQ(std::string(error.what()).find("a&b[1]: Number "), 0u) << text << ": " << error.what();
    }
}

TEST(PropertyListTest, KeyedArchiveUIDsReadAsIntegers) {
    BinaryPlist plist;
    plist.add(BinaryPlist::array({1}));
    plist.add({0x80, 0x07});  // UID 7
    EXPECT_EQ(PropertyListDecoder().parse(plist.bytes()).asArray().at(0), CodingValue::integer(7));
}

TEST(PropertyListTest, EncodedValuesKeepKindsOrderAndNull) {
    CodingValue tree = CodingValue::dictionary(
        {{"z", CodingValue::integer(-9223372036854775807 - 1)},
         {"a", CodingValue::real(0.1)},
         {"m", CodingValue()},
         {"d", CodingValue::data({1, 2, 3})},
         {"s", CodingValue::array({CodingValue::string("x"), CodingValue::boolean(false)})}});
    for (auto format : {PropertyListEncoder::OutputFormat::xml, PropertyListEncoder::OutputFormat::binary}) {
        PropertyListEncoder encoder;
        encoder.outputFormat = format;
        Data written = encoder.serialize(tree);
        EXPECT_EQ(std::string(written.begin(), written.begin() + 6),
                  format == PropertyListEncoder::OutputFormat::xml ? "<?xml " : "bplist");
        EXPECT_EQ(PropertyListDecoder().parse(written), tree);
    }
}

TEST(PropertyListTest, StringsWithNULCannotBeWritten) {
    CodingValue tree = CodingValue::dictionary(
        {{"list", CodingValue::array({CodingValue::string(std::string("a\0b", 3))})}});
    EXPECT_EQ(codingPathText(thrownBy<EncodingError>([&] { return PropertyListEncoder().serialize(tree); }).codingPath()),
              "list[0]");
}

TEST(PropertyListTest, RepeatedKeysKeepTheirFirstPlaceAndLastValue) {
    CodingValue root = parse("<dict><key>a</key><integer>1</integer><key>b</key><integer>2</integer>"
                             "<key>a</key><integer>3</integer></dict>");
    EXPECT_EQ(root, CodingValue::dictionary({{"a", CodingValue::integer(3)}, {"b", CodingValue::integer(2)}}));
}

TEST(PropertyListTest, NestingIsLimitedInBothFormats) {
    EXPECT_NO_THROW(PropertyListDecoder().parse(bytes(nestedArraysXML(512))));
    EXPECT_NO_THROW(PropertyListDecoder().parse(nestedArraysBinary(512)));
    // Said as such: the list is whole, only too deep for us.
    const std::string tooDeep = "Containers nest deeper than 512 levels.";
    expectCorrupt(bytes(nestedArraysXML(513)), tooDeep);
    expectCorrupt(nestedArraysBinary(513), tooDeep);
    // Deep enough to overflow the stack in recursive code.
    expectCorrupt(bytes(nestedArraysXML(200'000)), tooDeep);
    expectCorrupt(nestedArraysBinary(200'000), tooDeep);
}

TEST(PropertyListTest, CommentedOutContainersDoNotCountAsNesting) {
    std::string deepComment = "<!-- " + std::string(2000, 'x');
    for (int i = 0; i < 600; ++i) deepComment += "<array>";
    deepComment += " -->";
    EXPECT_EQ(parse(deepComment + "<array/>"), CodingValue::array());
}

TEST(PropertyListTest, SharedObjectsThatWouldMultiplyAreRefused) {
    // Each array refers to the next one twice: 2^40 values once expanded.
    BinaryPlist plist;
    for (std::uint32_t i = 0; i < 40; ++i) plist.add(BinaryPlist::array({i + 1, i + 1}));
    plist.add({0x09});  // true
    expectCorrupt(plist.bytes(), "The binary property list expands to more than ");

    // Moderate sharing, as a writer that reuses one dictionary object makes.
    BinaryPlist shared;
    shared.add(BinaryPlist::array(std::vector<std::uint32_t>(1000, 1)));
    shared.add(BinaryPlist::array({2, 2, 2, 2}));
    shared.add({0x09});
    EXPECT_EQ(PropertyListDecoder().parse(shared.bytes()).asArray().size(), 1000u);
}

TEST(PropertyListTest, DamagedBinaryObjectsAreCorrupt) {
    BinaryPlist cycle;
    cycle.add(BinaryPlist::array({1}));
    cycle.add(BinaryPlist::array({0}));
    expectCorrupt(cycle.bytes());

    // libplist aborts on a key holding a NUL character.
    BinaryPlist nulKey;
    nulKey.add({0xD1, 0, 0, 0, 1, 0, 0, 0, 2});
    nulKey.add({0x63, 0, 'a', 0, 0, 0, 'b'});  // UTF-16 "a\0b"
    nulKey.add({0x09});
    expectCorrupt(nulKey.bytes());
}

TEST(PropertyListTest, MangledInputNeverCrashes) {
    std::mt19937 random(20240601);
    for (const char* name : {"document-binary.plist", "document-xml.plist"}) {
        Data original = fixture(name);
        for (int round = 0; round < 3000; ++round) {
            Data input = original;
            for (unsigned change = 0; change <= random() % 4; ++change) {
                std::size_t at = random() % input.size();
                if (random() % 4 == 0) input.resize(at + 1);
                else input[at] = static_cast<std::uint8_t>(random());
            }
            try {
                PropertyListDecoder().parse(input);
            } catch (const DecodingError& error) {
                ASSERT_EQ(error.kind(), DecodingError::Kind::dataCorrupted);
            }
        }
    }
}
