#include "Timing.hpp"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace vantel::preview {

namespace {

using Clock = std::chrono::steady_clock;

// Taken while statics are set up, just before main runs.
const Clock::time_point processStart = Clock::now();
bool timingWanted = false;
const char* programName = "";

struct FrameState {
    Clock::time_point frameStart;
    double frameStartProcessor = 0;
    bool pictureDrawn = false;
    bool firstFrameMarked = false;
};
FrameState frames;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Processor time of the whole process so far: on a busy machine it tells the
// program's own work from the time spent waiting for a processor.
double processorMilliseconds() {
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return double(used.tv_sec) * 1e3 + double(used.tv_nsec) / 1e6;
}

void beforePaint(GdkFrameClock*, gpointer) {
    frames.frameStart = Clock::now();
    frames.frameStartProcessor = processorMilliseconds();
}

void afterPaint(GdkFrameClock*, gpointer widget) {
    std::fprintf(stderr, "%s: timing: frame %dx%d %.2f cpu %.2f at %.2f\n", programName,
                 gtk_widget_get_width(GTK_WIDGET(widget)), gtk_widget_get_height(GTK_WIDGET(widget)),
                 millisecondsSince(frames.frameStart), processorMilliseconds() - frames.frameStartProcessor,
                 millisecondsSince(processStart));
    if (frames.pictureDrawn && !frames.firstFrameMarked) {
        frames.firstFrameMarked = true;
        markStage("first-frame");
    }
}

void connectFrameClock(GtkWidget* widget, gpointer) {
    GdkFrameClock* clock = gtk_widget_get_frame_clock(widget);
    // Tied to the widget, so that a paint after it is gone reports nothing.
    g_signal_connect_object(clock, "before-paint", G_CALLBACK(beforePaint), widget, GConnectFlags(0));
    g_signal_connect_object(clock, "after-paint", G_CALLBACK(afterPaint), widget, GConnectFlags(0));
}

}  // namespace

void startTiming(const char* program, const char* variable) {
    programName = program;
    timingWanted = std::getenv(variable) != nullptr;
}

void markStage(const char* stage) {
    if (!timingWanted) return;
    std::fprintf(stderr, "%s: timing: %s %.1f cpu %.1f\n", programName, stage, millisecondsSince(processStart),
                 processorMilliseconds());
}

void timeFrames(GtkWidget* widget) {
    if (!timingWanted) return;
    g_signal_connect(widget, "realize", G_CALLBACK(connectFrameClock), nullptr);
}

void notePictureDrawn() {
    if (timingWanted && !frames.pictureDrawn) {
        frames.pictureDrawn = true;
        markStage("picture-drawn");
    }
}

}  // namespace vantel::preview
