#include <ZBExtensions/CoderFiles.hpp>

#include <SampleDocument.hpp>
#include <TestSupport.hpp>

#include <Thrown.hpp>
#include <gtest/gtest.h>

using namespace vantel;
using vantel::testing::SampleDocument;
using vantel::testing::TemporaryFolder;
using vantel::testing::testDataPath;
using vantel::testing::thrownBy;

namespace {

URL fixture(const std::string& name) { return URL::fileURL(testDataPath("plist/" + name)); }

}  // namespace

TEST(CoderFilesTest, DecodesOneFileOrManyInOrder) {
    auto xml = decode<SampleDocument>(PropertyListDecoder(), fixture("document-xml.plist"));
    EXPECT_EQ(xml.size.width, 1920.0);
    auto both = decode<SampleDocument>(PropertyListDecoder(),
                                       std::vector<URL>{fixture("document-binary.plist"), fixture("document-xml.plist")});
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[0], xml);
    EXPECT_EQ(both[1], xml);
    EXPECT_TRUE(decode<SampleDocument>(JSONDecoder(), std::vector<URL>{}).empty());
}

TEST(CoderFilesTest, ReadAndDecodingErrorsPassThroughUnchanged) {
    EXPECT_THROW(decode<SampleDocument>(PropertyListDecoder(), fixture("absent.plist")),
                 std::filesystem::filesystem_error);
    std::vector<URL> urls = {fixture("document-xml.plist"), fixture("missing-weight-xml.plist"),
                             fixture("absent.plist")};
    // The first failure, not the missing file after it.
    EXPECT_EQ(thrownBy<DecodingError>([&] { return decode<SampleDocument>(PropertyListDecoder(), urls); }).kind(),
              DecodingError::Kind::keyNotFound);
}

TEST(CoderFilesTest, WritesWithTheEncodersSettingsIntoExistingFolders) {
    TemporaryFolder folder;
    auto document = decode<SampleDocument>(PropertyListDecoder(), fixture("document-xml.plist"));

    PropertyListEncoder binary;
    binary.outputFormat = PropertyListEncoder::OutputFormat::binary;
    URL plist = URL::fileURL(folder / "doc.plist");
    writeData(Data(10'000, 'x'), plist);  // overwritten, not appended to
    write(binary, document, plist);
    EXPECT_EQ(readData(plist).front(), 'b');
    EXPECT_EQ(decode<SampleDocument>(PropertyListDecoder(), plist), document);

    JSONEncoder pretty;
    pretty.prettyPrinted = true;
    URL json = URL::fileURL(folder / "doc.json");
    write(pretty, document, json);
    EXPECT_EQ(readData(json).at(1), '\n');
    EXPECT_EQ(decode<SampleDocument>(JSONDecoder(), json), document);

    EXPECT_THROW(write(JSONEncoder(), document, URL::fileURL(folder / "absent" / "doc.json")),
                 std::filesystem::filesystem_error);
    EXPECT_FALSE(std::filesystem::exists(folder / "absent"));
}
