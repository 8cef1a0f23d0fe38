#include <VantelPreview/PreviewProvider.hpp>

#include <Graphics2/SketchDrawing.hpp>
#include <OverlayGenerator/DocumentLoading.hpp>
#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/FileIO.hpp>
#include <Platform/PropertyList.hpp>
#include <RecordingContext.hpp>
#include <Thrown.hpp>
#include <TestSupport.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <future>
#include <memory>
#include <thread>

using namespace vantel;
using vantel::testing::RecordingContext;
using vantel::testing::TemporaryFolder;
using vantel::testing::thrownBy;

namespace {

OverlayGen sampleDocument() {
    AspectRatio guide(16, 9, Color::orange(), Color::clear(), 4, GridType::divisor(3), GridType::none(), std::nullopt);
    return OverlayGen(400, 300, 10, Color::navy(), {guide});
}

QLFilePreviewRequest requestFor(const std::filesystem::path& file) { return {URL::fileURL(file)}; }

// What a completion handler saw, and how often it was called.
struct Outcome {
    std::atomic<int> calls = 0;
    std::optional<QLPreviewReply> reply;
    std::exception_ptr error;
    std::thread::id thread;
};

// Runs one request through the platform's entry point and returns once the
// provider, which waits for its requests, is gone.
void request(const std::filesystem::path& file, Outcome& outcome) {
    PreviewProvider provider;
    provider.providePreviewForFileRequest(requestFor(file), [&outcome](std::optional<QLPreviewReply> reply,
                                                                       std::exception_ptr error) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));  // finish after the call returned
        outcome.reply = std::move(reply);
        outcome.error = error;
        outcome.thread = std::this_thread::get_id();
        ++outcome.calls;
    });
    EXPECT_EQ(outcome.calls, 0) << "the entry point did not return before the work was done";
}

template <class Error>
Error caught(std::exception_ptr error) {
    EXPECT_NE(error, nullptr);
    return thrownBy<Error>([&] { if (error) std::rethrow_exception(error); });
}

}  // namespace

TEST(PreviewProviderTest, ReplyDrawsTheDocumentSketchIntoTheSuppliedContext) {
    TemporaryFolder folder;
    OverlayGen document = sampleDocument();
    writeData(PropertyListEncoder().encode(document), folder / "doc.aspectratio");
    QLPreviewReply reply = PreviewProvider().providePreview(requestFor(folder / "doc.aspectratio")).get();

    RecordingContext drawn, expected;
    reply.draw(drawn);
    drawSketch(expected, document);
    EXPECT_EQ(drawn.operations, expected.operations);
    EXPECT_EQ(std::count(drawn.operations.begin(), drawn.operations.end(), "fillRect 0.0 0.0 400.0 300.0"), 1)
        << "no background";

    // A host that has read the document already gets the same reply for it.
    QLPreviewReply forDocument = PreviewProvider::previewReply(std::make_shared<const OverlayGen>(sampleDocument()));
    EXPECT_EQ(forDocument.contextSize, reply.contextSize);
    EXPECT_EQ(forDocument.isBitmap, reply.isBitmap);
    RecordingContext drawnForDocument;
    forDocument.draw(drawnForDocument);
    EXPECT_EQ(drawnForDocument.operations, expected.operations);
}

TEST(PreviewProviderTest, HandlerGetsTheReplyExactlyOnceFromAnotherThread) {
    TemporaryFolder folder;
    writeData(PropertyListEncoder().encode(sampleDocument()), folder / "doc.aspectratio");
    Outcome outcome;
    request(folder / "doc.aspectratio", outcome);
    EXPECT_EQ(outcome.calls, 1);
    ASSERT_TRUE(outcome.reply.has_value());
    EXPECT_EQ(outcome.reply->contextSize, (CGSize{400, 300}));  // the whole canvas, margin 10 included
    EXPECT_FALSE(outcome.reply->isBitmap);
    EXPECT_EQ(outcome.error, nullptr);
    EXPECT_NE(outcome.thread, std::this_thread::get_id());
}

TEST(PreviewProviderTest, ReadAndDecodingErrorsReachTheHandlerUnchangedWithNoReply) {
    TemporaryFolder folder;
    Outcome missing;
    request(folder / "missing.aspectratio", missing);
    EXPECT_EQ(missing.calls, 1);
    EXPECT_FALSE(missing.reply.has_value());
    EXPECT_EQ(caught<std::filesystem::filesystem_error>(missing.error).path1(), folder / "missing.aspectratio");

    for (const char* bytes : {"not a property list", "<plist><dict><key>ratios</key><array/></dict></plist>"}) {
        Data data(bytes, bytes + std::strlen(bytes));
        writeData(data, folder / "bad.aspectratio");
        auto expected = thrownBy<DecodingError>([&] { return PropertyListDecoder().decode<OverlayGen>(data); });
        Outcome bad;
        request(folder / "bad.aspectratio", bad);
        EXPECT_EQ(bad.calls, 1);
        EXPECT_FALSE(bad.reply.has_value());
        EXPECT_EQ(caught<DecodingError>(bad.error), expected) << bytes;
        EXPECT_THROW(PreviewProvider().providePreview(requestFor(folder / "bad.aspectratio")).get(), DecodingError);
    }
}

// Documents that would stop the process on drawing, and inputs without end,
// come back as errors: a library caller cannot end its host with a file.
TEST(PreviewProviderTest, UndrawableAndEndlessInputsAreErrorsNotStops) {
    TemporaryFolder folder;
    // A 1:1 guide fits 280 x 280 on this canvas; a stroke as wide leaves a
    // grid nothing to divide.
    AspectRatio zeroStep(1, 1, Color::orange(), Color::clear(), 280, GridType::divisor(3), GridType::none(),
                         std::nullopt);
    writeData(PropertyListEncoder().encode(OverlayGen(400, 300, 10, Color::navy(), {zeroStep})),
              folder / "zero-step.aspectratio");
    Outcome undrawable;
    request(folder / "zero-step.aspectratio", undrawable);
    EXPECT_EQ(undrawable.calls, 1);
    EXPECT_FALSE(undrawable.reply.has_value());
    auto error = caught<UndrawableDocumentError>(undrawable.error);
    ASSERT_EQ(error.problems.size(), 1u);
    EXPECT_EQ(error.problems[0].path, "ratios[0].rowType");

    Outcome endless;
    request("/dev/zero", endless);
    EXPECT_EQ(caught<std::filesystem::filesystem_error>(endless.error).code(), std::errc::file_too_large);
}

TEST(PreviewProviderDeathTest, HandlerThatThrowsStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            PreviewProvider provider;
            provider.providePreviewForFileRequest(requestFor("/nonexistent/doc.aspectratio"),
                                                  [](std::optional<QLPreviewReply>, std::exception_ptr) {
                                                      throw std::runtime_error("handler bug");
                                                  });
        },
        "completion handler threw: handler bug");
}

TEST(QLPreviewReplyTest, DrawRunsTheBlockWithTheReplyAndPassesItsErrorsOn) {
    CGSize seen;
    QLPreviewReply reply(CGSize{7, 5}, true, [&seen](CGContext& context, const QLPreviewReply& self) {
        seen = self.contextSize;
        context.fillRect(CGRect{0, 0, self.contextSize.width, self.contextSize.height});
    });
    RecordingContext context;
    reply.draw(context);
    EXPECT_EQ(seen, (CGSize{7, 5}));
    EXPECT_EQ(context.operations, std::vector<std::string>{"fillRect 0.0 0.0 7.0 5.0"});

    QLPreviewReply failing(CGSize{1, 1}, false, [](CGContext&, const QLPreviewReply&) {
        throw std::range_error("cannot draw");
    });
    EXPECT_THROW(failing.draw(context), std::range_error);
}
