#include <ZBExtensions/Download.hpp>

#include <Platform/FileIO.hpp>

#include <TestSupport.hpp>
#include <Thrown.hpp>
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <functional>
#include <string>

namespace vantel {
namespace {

using Reason = DownloadError::Reason;
using namespace std::chrono_literals;

class DownloadTest : public ::testing::Test {
protected:
    DownloadTest() { std::ofstream(site / "sample.aspectratio") << sample; }

    URL at(const std::string& path) const { return *URL::fromString(server.address(path)); }

    const std::string sample = "<plist>the served bytes</plist>";
    testing::TemporaryFolder site;
    testing::LocalWebServer server{site.path()};
};

Reason reasonOf(const std::function<void()>& download) {
    DownloadError error = testing::thrownBy<DownloadError>(download);
    EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos) << "one line: " << error.what();
    return error.reason;
}

TEST_F(DownloadTest, ServedFilesArriveInATemporaryFileThatGoesWithTheHandle) {
    std::filesystem::path temporary;
    {
        DownloadedFile file = downloadFile(at("/redirect/2"));
        temporary = file.location.path();
        EXPECT_EQ(file.response.statusCode, 200);
        EXPECT_EQ(file.response.url, at("/sample.aspectratio")) << "the address after redirects";
        EXPECT_EQ(file.response.expectedContentLength, sample.size());
        Data bytes = readData(temporary);
        EXPECT_EQ(std::string(bytes.begin(), bytes.end()), sample);
        DownloadedFile moved = std::move(file);
        EXPECT_TRUE(std::filesystem::exists(temporary)) << "moving the handle keeps the file";
    }
    EXPECT_FALSE(std::filesystem::exists(temporary));
}

TEST_F(DownloadTest, ErrorStatusesAreAnswersNotFailures) {
    DownloadedFile missing = downloadFile(at("/missing.aspectratio"));
    EXPECT_EQ(missing.response.statusCode, 404);
    EXPECT_EQ(statusText(404), "404 Not Found");
}

TEST_F(DownloadTest, TheSizeLimitStopsTheTransferWhileItRuns) {
    DownloadLimits limits;
    limits.maximumBytes = 1 << 20;
    EXPECT_EQ(reasonOf([&] { downloadFile(at("/endless"), limits); }), Reason::tooLarge);
    limits.maximumBytes = sample.size() - 1;
    EXPECT_EQ(reasonOf([&] { downloadFile(at("/sample.aspectratio"), limits); }), Reason::tooLarge)
        << "an announced length over the limit";
    EXPECT_EQ(reasonOf([&] { downloadFile(at("/stream/sample.aspectratio"), limits); }), Reason::tooLarge)
        << "an unannounced length, counted as it comes";
    limits.maximumBytes = sample.size();
    EXPECT_EQ(downloadFile(at("/stream/sample.aspectratio"), limits).response.statusCode, 200);
}

TEST_F(DownloadTest, TimeoutsRedirectLoopsAndRefusedConnectionsFail) {
    DownloadLimits limits;
    limits.timeout = 500ms;
    EXPECT_EQ(reasonOf([&] { downloadFile(at("/stall"), limits); }), Reason::timedOut);
    limits.maximumRedirects = 3;
    EXPECT_EQ(reasonOf([&] { downloadFile(at("/redirect/5"), limits); }), Reason::tooManyRedirects);
    // Port 1 (tcpmux) is closed on any machine that runs these tests.
    EXPECT_EQ(reasonOf([&] { downloadFile(*URL::fromString("http://127.0.0.1:1/x")); }), Reason::connectionRefused);
}

TEST(DownloadTLSTest, CertificatesAreCheckedAgainstTheTrustedAuthorities) {
    testing::TemporaryFolder site;
    std::ofstream(site / "sample.aspectratio") << "tls";
    testing::LocalWebServer server(site.path(), true);
    URL address = *URL::fromString(server.address("/sample.aspectratio"));
    EXPECT_EQ(reasonOf([&] { downloadFile(address); }), Reason::certificateRefused);
    DownloadLimits trusting;
    trusting.certificateAuthorities = testing::testDataPath("tls/localhost-cert.pem");
    EXPECT_EQ(downloadFile(address, trusting).response.statusCode, 200);
}

}  // namespace
}  // namespace vantel
