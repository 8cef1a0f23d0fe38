#pragma once

#include <OverlayGenerator/DocumentLoading.hpp>
#include <VantelPreview/QLPreviewReply.hpp>

#include <gtk/gtk.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace vantel::preview {

// One window showing one document at a time. It plays the preview host: it
// reads and checks the document, asks the preview provider for the reply and
// runs the reply's drawing into the widget's cairo context, fitted and
// centred over a checkerboard. It watches the file and redraws when an editor
// saves it; a save that breaks the document keeps the last good picture and
// shows the problem in a bar at the bottom.
class PreviewWindow {
public:
    PreviewWindow(GtkApplication* application, std::filesystem::path file);
    PreviewWindow(const PreviewWindow&) = delete;
    PreviewWindow& operator=(const PreviewWindow&) = delete;
    ~PreviewWindow();

    void present();

private:
    void buildWidgets(GtkApplication* application);
    void show(std::filesystem::path file);
    void reload();
    void loadInBackground();
    void apply(LoadedDocument loaded);
    void watchFile();
    void scheduleReload();
    void updateTitle();
    void sizeToCanvas();
    void showProblem(const std::string& line);
    void showReply();
    void setActualSize(bool actualSize);
    void copyPicture();
    bool handleKey(guint keyval, GdkModifierType state);
    void draw(cairo_t* cairo, int width, int height) const;

    static void drawCallback(GtkDrawingArea*, cairo_t* cairo, int width, int height, gpointer self);
    static gboolean keyCallback(GtkEventControllerKey*, guint keyval, guint, GdkModifierType state, gpointer self);
    static void fileChangedCallback(GFileMonitor*, GFile*, GFile*, GFileMonitorEvent, gpointer self);
    static gboolean reloadTimeout(gpointer self);
    static gboolean backgroundLoadDone(gpointer result);

    std::filesystem::path file_;
    std::optional<QLPreviewReply> reply_;  // the last good document's
    bool actualSize_ = false;
    GtkWidget* window_ = nullptr;
    GtkWidget* scroller_ = nullptr;
    GtkWidget* canvas_ = nullptr;
    GtkWidget* problemBar_ = nullptr;
    GFileMonitor* monitor_ = nullptr;
    guint pendingReload_ = 0;
    // Read on the main thread until the window goes; a load in the
    // background finds the window through it, or finds it gone.
    std::shared_ptr<PreviewWindow*> alive_ = std::make_shared<PreviewWindow*>(this);
    std::uint64_t loads_ = 0;  // only the latest load's result is shown
};

}  // namespace vantel::preview
