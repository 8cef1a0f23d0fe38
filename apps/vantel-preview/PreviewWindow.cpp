#include "PreviewWindow.hpp"

#include "CanvasPicture.hpp"
#include "FolderOrder.hpp"
#include "ProblemBar.hpp"
#include "Timing.hpp"

#include <CoreGraphicsRendering/ImageEncoding.hpp>
#include <FramingDecisions/FDLReading.hpp>
#include <FramingDecisions/FrameLineChart.hpp>
#include <OverlayGenerator/DocumentLoading.hpp>
#include <Platform/NumberText.hpp>
#include <VantelPreview/PreviewProvider.hpp>
#include <VantelPreview/Thumbnail.hpp>

#include <algorithm>
#include <cmath>
#include <memory>
#include <system_error>
#include <thread>

namespace vantel::preview {

namespace {

// Editors write a file in several steps (truncate, write, rename); waiting
// this long after the last change reads it once, whole, and still redraws
// well within half a second.
constexpr guint reloadDelayMilliseconds = 80;
constexpr double largestScreenShare = 0.8;
GdkRectangle screenArea(GtkWidget* widget) {
    GListModel* monitors = gdk_display_get_monitors(gtk_widget_get_display(widget));
    GdkRectangle area{0, 0, 1280, 800};
    if (g_list_model_get_n_items(monitors) > 0) {
        auto* monitor = static_cast<GdkMonitor*>(g_list_model_get_item(monitors, 0));
        gdk_monitor_get_geometry(monitor, &area);
        g_object_unref(monitor);
    }
    return area;
}

}  // namespace

PreviewWindow::PreviewWindow(GtkApplication* application, std::filesystem::path file) {
    buildWidgets(application);
    show(std::move(file));
    sizeToCanvas();
}

PreviewWindow::~PreviewWindow() {
    *alive_ = nullptr;
    if (pendingReload_) g_source_remove(pendingReload_);
    if (monitor_) g_object_unref(monitor_);
}

void PreviewWindow::buildWidgets(GtkApplication* application) {
    window_ = gtk_application_window_new(application);
    canvas_ = gtk_drawing_area_new();
    gtk_widget_set_hexpand(canvas_, TRUE);
    gtk_widget_set_vexpand(canvas_, TRUE);
    gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(canvas_), drawCallback, this, nullptr);
    scroller_ = gtk_scrolled_window_new();
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller_), canvas_);
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller_), GTK_POLICY_NEVER, GTK_POLICY_NEVER);
    gtk_widget_set_vexpand(scroller_, TRUE);
    problemBar_ = newProblemBar();
    // The bar floats over the picture, so that showing it does not move or
    // shrink the last good picture.
    GtkWidget* overlay = gtk_overlay_new();
    gtk_overlay_set_child(GTK_OVERLAY(overlay), scroller_);
    gtk_overlay_add_overlay(GTK_OVERLAY(overlay), problemBar_);
    gtk_window_set_child(GTK_WINDOW(window_), overlay);
    GtkEventController* keys = gtk_event_controller_key_new();
    g_signal_connect(keys, "key-pressed", G_CALLBACK(keyCallback), this);
    gtk_widget_add_controller(window_, keys);
    timeFrames(window_);
}

void PreviewWindow::present() { gtk_window_present(GTK_WINDOW(window_)); }

void PreviewWindow::show(std::filesystem::path file) {
    file_ = std::move(file);
    reply_.reset();
    updateTitle();  // named at once, even while a pipe keeps the document coming
    reload();
    watchFile();
}

namespace {

struct LoadedChart {
    std::optional<QLPreviewReply> reply;
    std::string problem;  // the first line `vantel validate` prints, when there is no reply
};

// A framing decision list shows the chart of its first canvas.
LoadedChart loadChart(const std::filesystem::path& file) {
    LoadedBytes read = loadDocumentBytes(DocumentSource::file(file));
    if (!read.ok()) return {std::nullopt, read.problems.empty() ? "cannot be read" : read.problems.front().text()};
    FDLReadResult list = readFramingDecisionList(read.bytes);
    auto error = std::ranges::find(list.problems, FDLProblem::Severity::error, &FDLProblem::severity);
    if (error != list.problems.end() || !list.document) {
        return {std::nullopt, error != list.problems.end() ? error->text() : "not a framing decision list"};
    }
    try {
        FDLCanvas canvas = chosenCanvas(*list.document, {});
        auto chart = std::make_shared<FrameLineChart>(canvas, chartSize(canvas, false));
        return {PreviewProvider::sketchReply(std::move(chart)), {}};
    } catch (const FrameLineChoiceError& failure) {
        return {std::nullopt, std::string("cannot draw: ") + failure.what()};
    }
}

}  // namespace

// A named pipe or a device may keep the reader waiting (loadDocument gives up
// after a few quiet seconds); the window goes on answering meanwhile.
void PreviewWindow::reload() {
    ++loads_;
    if (isFramingDecisionList({}, file_.string())) {
        LoadedChart chart = loadChart(file_);
        if (!chart.reply) return showProblem(file_.string() + ": " + chart.problem);
        reply_ = std::move(chart.reply);
        return showReply();
    }
    std::error_code error;
    std::filesystem::file_status status = std::filesystem::status(file_, error);
    bool mayWait = std::filesystem::exists(status) && !std::filesystem::is_regular_file(status) &&
                   !std::filesystem::is_directory(status);
    if (mayWait) {
        loadInBackground();
    } else {
        apply(loadDocument(DocumentSource::file(file_)));
    }
}

namespace {

struct BackgroundLoad {
    std::shared_ptr<PreviewWindow*> window;
    std::uint64_t load;
    LoadedDocument loaded;
};

}  // namespace

void PreviewWindow::loadInBackground() {
    std::thread([file = file_, window = alive_, load = loads_] {
        auto* result = new BackgroundLoad{window, load, loadDocument(DocumentSource::file(file))};
        g_idle_add(backgroundLoadDone, result);
    }).detach();
}

gboolean PreviewWindow::backgroundLoadDone(gpointer data) {
    std::unique_ptr<BackgroundLoad> result(static_cast<BackgroundLoad*>(data));
    PreviewWindow* window = *result->window;
    if (window != nullptr && window->loads_ == result->load) window->apply(std::move(result->loaded));
    return G_SOURCE_REMOVE;
}

void PreviewWindow::apply(LoadedDocument loaded) {
    if (!loaded.ok()) {
        // The first line `vantel validate` prints for the same file.
        std::string problem = loaded.problems.empty() ? "cannot be drawn" : loaded.problems.front().text();
        showProblem(file_.string() + ": " + problem);
        return;
    }
    try {
        reply_ = PreviewProvider::previewReply(std::move(loaded.document));
    } catch (const std::exception& error) {
        showProblem(file_.string() + ": cannot draw: " + error.what());
        return;
    }
    showReply();
}

void PreviewWindow::showReply() {
    gtk_widget_set_visible(problemBar_, FALSE);
    updateTitle();
    if (actualSize_) setActualSize(true);
    gtk_widget_queue_draw(canvas_);
}

void PreviewWindow::showProblem(const std::string& line) {
    gtk_label_set_text(GTK_LABEL(problemBar_), line.c_str());
    gtk_widget_set_visible(problemBar_, TRUE);
    updateTitle();
}

void PreviewWindow::updateTitle() {
    std::string title = file_.filename().string();
    if (reply_) {
        title += " \u2014 " + numberText(reply_->contextSize.width) + " \u00d7 " + numberText(reply_->contextSize.height);
    }
    gtk_window_set_title(GTK_WINDOW(window_), title.c_str());
}

// The window opens at the canvas's aspect, as large as fits in the share of
// the screen a preview may take.
void PreviewWindow::sizeToCanvas() {
    GdkRectangle screen = screenArea(window_);
    double width = reply_ ? reply_->contextSize.width : 640;
    double height = reply_ ? reply_->contextSize.height : 480;
    double scale = std::min({1.0, screen.width * largestScreenShare / width, screen.height * largestScreenShare / height});
    gtk_window_set_default_size(GTK_WINDOW(window_), std::max(1, int(std::lround(width * scale))),
                                std::max(1, int(std::lround(height * scale))));
}

void PreviewWindow::watchFile() {
    if (monitor_) g_object_unref(monitor_);
    GFile* watched = g_file_new_for_path(file_.c_str());
    // Watching moves too catches editors that save by renaming a new file
    // over the old one.
    monitor_ = g_file_monitor_file(watched, G_FILE_MONITOR_WATCH_MOVES, nullptr, nullptr);
    g_object_unref(watched);
    if (monitor_) g_signal_connect(monitor_, "changed", G_CALLBACK(fileChangedCallback), this);
}

void PreviewWindow::scheduleReload() {
    if (pendingReload_) g_source_remove(pendingReload_);
    pendingReload_ = g_timeout_add(reloadDelayMilliseconds, reloadTimeout, this);
}

void PreviewWindow::setActualSize(bool actualSize) {
    actualSize_ = actualSize;
    GtkPolicyType policy = actualSize ? GTK_POLICY_AUTOMATIC : GTK_POLICY_NEVER;
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller_), policy, policy);
    int width = actualSize && reply_ ? int(std::ceil(reply_->contextSize.width)) : -1;
    int height = actualSize && reply_ ? int(std::ceil(reply_->contextSize.height)) : -1;
    gtk_widget_set_size_request(canvas_, width, height);
    gtk_widget_queue_draw(canvas_);
}

void PreviewWindow::copyPicture() {
    if (!reply_) return;
    try {
        // Canvases go up to 32767 px a side; a copy past 16384 would hold
        // gigabytes, so the largest ones are copied smaller.
        constexpr double largestCopy = 16384;
        int side = int(std::ceil(std::min(largestCopy, std::max(reply_->contextSize.width, reply_->contextSize.height))));
        Data png = thumbnailPNG(*reply_, side);
        GBytes* bytes = g_bytes_new(png.data(), png.size());
        GdkContentProvider* content = gdk_content_provider_new_for_bytes("image/png", bytes);
        gdk_clipboard_set_content(gtk_widget_get_clipboard(window_), content);
        g_object_unref(content);
        g_bytes_unref(bytes);
    } catch (const std::exception& error) {
        showProblem(file_.string() + ": cannot copy: " + error.what());
    }
}

bool PreviewWindow::handleKey(guint keyval, GdkModifierType state) {
    bool control = state & GDK_CONTROL_MASK;
    if (keyval == GDK_KEY_space || keyval == GDK_KEY_Escape || (control && keyval == GDK_KEY_w)) {
        gtk_window_close(GTK_WINDOW(window_));
    } else if (control && keyval == GDK_KEY_c) {
        copyPicture();
    } else if (keyval == GDK_KEY_Left || keyval == GDK_KEY_Right) {
        std::filesystem::path next = neighbourDocument(file_, keyval == GDK_KEY_Left ? -1 : 1);
        if (next != file_) show(next);
    } else if (keyval == GDK_KEY_1 || keyval == GDK_KEY_KP_1) {
        setActualSize(true);
    } else if (keyval == GDK_KEY_0 || keyval == GDK_KEY_KP_0) {
        setActualSize(false);
    } else {
        return false;
    }
    return true;
}

void PreviewWindow::draw(cairo_t* cairo, int width, int height) const {
    if (!reply_) return;
    // A document that passed the checks and still fails to draw leaves the
    // checkerboard; the next save gets another chance.
    if (drawPicture(cairo, *reply_, pictureFrame(reply_->contextSize, width, height, actualSize_))) notePictureDrawn();
}

void PreviewWindow::drawCallback(GtkDrawingArea*, cairo_t* cairo, int width, int height, gpointer self) {
    static_cast<const PreviewWindow*>(self)->draw(cairo, width, height);
}

gboolean PreviewWindow::keyCallback(GtkEventControllerKey*, guint keyval, guint, GdkModifierType state,
                                    gpointer self) {
    return static_cast<PreviewWindow*>(self)->handleKey(keyval, state);
}

void PreviewWindow::fileChangedCallback(GFileMonitor*, GFile*, GFile*, GFileMonitorEvent event, gpointer self) {
    if (event == G_FILE_MONITOR_EVENT_ATTRIBUTE_CHANGED) return;
    static_cast<PreviewWindow*>(self)->scheduleReload();
}

gboolean PreviewWindow::reloadTimeout(gpointer self) {
    auto* window = static_cast<PreviewWindow*>(self);
    window->pendingReload_ = 0;
    window->reload();
    return G_SOURCE_REMOVE;
}

}  // namespace vantel::preview
