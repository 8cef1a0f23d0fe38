#include <Platform/JSON.hpp>
#include <Platform/UUID.hpp>

#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <set>
#include <unordered_set>

using namespace vantel;
using vantel::testing::thrownBy;

TEST(UUIDTest, RandomIdentifiersAreVersionFourAndDistinct) {
    std::unordered_set<UUID> seen;
    for (int i = 0; i < 200; ++i) {
        UUID uuid = UUID::random();
        EXPECT_EQ(uuid.bytes()[6] >> 4, 4);
        EXPECT_EQ(uuid.bytes()[8] >> 6, 2);
        EXPECT_TRUE(seen.insert(uuid).second);
    }
}

// RFC 4122's DNS name space; the identifiers are those Python's uuid5 gives.
TEST(UUIDTest, NameBasedIdentifiersAreVersionFiveOfTheNameAndSpace) {
    UUID dns = *UUID::fromString("6ba7b810-9dad-11d1-80b4-00c04fd430c8");
    EXPECT_EQ(UUID::nameBased(dns, "python.org").uuidString(), "886313E1-3B8A-5372-9B90-0C9AEE199E5D");
    EXPECT_EQ(UUID::nameBased(dns, "python.org"), UUID::nameBased(dns, "python.org"));
    EXPECT_NE(UUID::nameBased(dns, "python.org"), UUID::nameBased(UUID(), "python.org"));
}

TEST(UUIDTest, TextIsUpperCaseAndParsesInEitherCase) {
    auto lower = UUID::fromString("e621e1f8-c36c-495a-93fc-0c247a3e6e5f");
    auto upper = UUID::fromString("E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    ASSERT_TRUE(lower && upper);
    EXPECT_EQ(*lower, *upper);
    EXPECT_EQ(lower->uuidString(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    EXPECT_EQ(lower->bytes()[0], 0xE6);
    EXPECT_EQ(lower->bytes()[15], 0x5F);
    UUID random = UUID::random();
    EXPECT_EQ(UUID::fromString(random.uuidString()), random);
    EXPECT_LT(*UUID::fromString("00000000-0000-0000-0000-000000000001"),
              *UUID::fromString("00000000-0000-0000-0000-000000000002"));
}

TEST(UUIDTest, MalformedTextIsRejected) {
    for (const char* bad : {"", "E621E1F8C36C495A93FC0C247A3E6E5F", "E621E1F8-C36C-495A-93FC-0C247A3E6E5",
                            "E621E1F8-C36C-495A-93FC-0C247A3E6E5FF", "E621E1F8-C36C-495A-93FC_0C247A3E6E5F",
                            "E621E1F8-C36C-495A-93FC-0C247A3E6E5G", "{621E1F8-C36C-495A-93FC-0C247A3E6E5}",
                            "E621E1F-8C36C-495A-93FC-0C247A3E6E5F"}) {
        EXPECT_FALSE(UUID::fromString(bad).has_value()) << bad;
    }
}

TEST(UUIDTest, CodedAsTextAndInvalidTextIsCorrupt) {
    UUID uuid = UUID::random();
    Data json = JSONEncoder().encode(std::vector<UUID>{uuid});
    EXPECT_EQ(std::string(json.begin(), json.end()), "[\"" + uuid.uuidString() + "\"]");
    EXPECT_EQ(JSONDecoder().decode<std::vector<UUID>>(json).at(0), uuid);

    std::string bad = R"({"id": "not-a-uuid"})";
    struct Holder {
        UUID id;
        static Holder decode(const Decoder& decoder) { return {decoder.container().decode<UUID>("id")}; }
    };
    auto error = thrownBy<DecodingError>([&] { return JSONDecoder().decode<Holder>(Data(bad.begin(), bad.end())); });
    EXPECT_EQ(error.kind(), DecodingError::Kind::dataCorrupted);
    EXPECT_STREQ(error.what(), "id: Attempted to decode UUID from invalid UUID string.");
}
