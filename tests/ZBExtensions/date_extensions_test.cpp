#include <ZBExtensions/DateExtensions.hpp>
#include <ZBExtensions/FileManager.hpp>

#include <TestSupport.hpp>
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <string>

namespace vantel {
namespace {

using namespace std::chrono_literals;

// Noon UTC keeps every local calendar on the same day.
Date noonUTC(int year, unsigned month, unsigned day) {
    return std::chrono::sys_days(std::chrono::year_month_day(std::chrono::year(year), std::chrono::month(month),
                                                             std::chrono::day(day))) +
           12h;
}

TEST(DateExtensionsTest, DifferencesCountWholeUnitsWithTheirSign) {
    Date start = noonUTC(2024, 1, 10);
    EXPECT_EQ(days(start + 36h, start), 1);
    EXPECT_EQ(days(start - 36h, start), -1);
    EXPECT_EQ(hours(start + 90min, start), 1);
    EXPECT_EQ(minutes(start - 90s, start), -1);
    EXPECT_EQ(seconds(start + 1500ms, start), 1);
    // More seconds than 32 bits hold.
    EXPECT_EQ(seconds(noonUTC(2000, 1, 1), noonUTC(1900, 1, 1)), 36524 * 86400LL);
    EXPECT_EQ(seconds(noonUTC(1900, 1, 1), noonUTC(2000, 1, 1)), -36524 * 86400LL);
    EXPECT_EQ(weeks(start + 20 * 24h, start), 2);
    EXPECT_EQ(weeks(start + 13 * 24h, start), 1);
    EXPECT_EQ(months(noonUTC(2024, 3, 9), start), 1);
    EXPECT_EQ(years(noonUTC(2024, 2, 29), noonUTC(2020, 3, 1)), 3);
    EXPECT_EQ(years(noonUTC(2020, 3, 1), noonUTC(2024, 2, 29)), -3);
}

TEST(DateExtensionsTest, FormattersUseTheirOwnPatternLocaleAndTimeZone) {
    Date march = noonUTC(2024, 3, 5);
    EXPECT_EQ((DateFormatter{"d MMMM", "en_US", "UTC"}.string(march)), "5 March");
    EXPECT_EQ((DateFormatter{"d MMMM", "de_DE", "UTC"}.string(march)), "5 März");
    EXPECT_EQ((DateFormatter{"HH:mm xxx", "en_US", "Asia/Kolkata"}.string(march)), "17:30 +05:30");

    auto thisYear = std::chrono::year_month_day(std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now()));
    std::string year = stringForNow(DateFormatter{"yyyy", "en_US", "UTC"});
    EXPECT_TRUE(year == std::to_string(int(thisYear.year())) || year == std::to_string(int(thisYear.year()) + 1));
    EXPECT_EQ(stringForNow(DateFormatter{}), "");
}

TEST(FileManagerTest, ExistenceAndDirectoriesAtAURLsPath) {
    testing::TemporaryFolder folder;
    std::ofstream(folder / "file.txt") << "x";
    bool isDirectory = true;
    EXPECT_TRUE(fileExists(URL::fileURL(folder / "file.txt"), isDirectory));
    EXPECT_FALSE(isDirectory);
    EXPECT_TRUE(fileExists(URL::fileURL(folder.path()), isDirectory));
    EXPECT_TRUE(isDirectory);
    EXPECT_FALSE(fileExists(URL::fileURL(folder / "missing"), isDirectory));
    EXPECT_TRUE(fileIsDirectory(URL::fileURL(folder.path())));
    EXPECT_FALSE(fileIsDirectory(URL::fileURL(folder / "file.txt")));
    EXPECT_FALSE(fileIsDirectory(URL::fileURL(folder / "missing")));
}

}  // namespace
}  // namespace vantel
