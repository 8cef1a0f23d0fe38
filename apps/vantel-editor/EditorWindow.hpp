#pragma once

// One window editing one document: the guide panels beside the live canvas.
// Every command is a GAction of the window ("win.add-guide", "win.save",
// ...), so the menus, the keyboard shortcuts and the tests share one path.
// The window follows the document's change announcements: each one
// schedules a single refresh of the panels, the title and the canvas.

#include "GuideEditing.hpp"
#include "GuidePanels.hpp"

#include <Platform/Data.hpp>
#include <VantelPreview/QLPreviewReply.hpp>

#include <gtk/gtk.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantel::editor {

struct OpenedDocument;

class EditorWindow {
public:
    // Opens a window for `file`, or for a new untitled document. The window
    // owns itself and goes when it is closed.
    static void open(GtkApplication* application, std::optional<std::filesystem::path> file);

    EditorWindow(const EditorWindow&) = delete;
    EditorWindow& operator=(const EditorWindow&) = delete;

private:
    EditorWindow(GtkApplication* application, std::optional<std::filesystem::path> file);
    ~EditorWindow();

    void buildWidgets(GtkApplication* application);
    void addActions();
    void addShortcuts();
    void take(OpenedDocument opened);
    void observe();
    void forget();
    void scheduleRefresh();
    void refresh();
    void updateTitle();
    void updateProblems();
    void updateSelection();
    void notice(std::string line);
    void reportLoadProblems();
    std::string name() const;

    void save();
    bool saveTo(const std::filesystem::path& file);
    void chooseSaveFile();
    void chooseExportFile();
    void exportTo(const std::filesystem::path& file);
    void applyExpression(const std::string& text);
    void setRatio(const std::string& text);
    void askBeforeClosing();
    void watchFile();
    void fileChangedOnDisk();
    void reloadFromDisk(OpenedDocument opened);
    void setActualSize(bool actualSize);
    void draw(cairo_t* cairo, int width, int height);
    const QLPreviewReply* shownReply() const;
    bool keepPicture(const QLPreviewReply& reply, int width, int height);
    void forgetPicture();
    void drawSelection(cairo_t* cairo, int width, int height) const;

    static void drawCallback(GtkDrawingArea*, cairo_t* cairo, int width, int height, gpointer self);
    static gboolean closeRequest(GtkWindow*, gpointer self);
    static void fileChanged(GFileMonitor*, GFile*, GFile*, GFileMonitorEvent event, gpointer self);

    std::optional<std::filesystem::path> file_;
    bool binary_ = false;
    // The file exists but was not read as a document: saving would replace
    // what could not be read, so only Save As writes.
    bool fileUnread_ = false;
    Data diskBytes_;  // what the file held when last read or written
    std::unique_ptr<GuideEditing> editing_;
    std::unique_ptr<GuidePanels> panels_;
    std::optional<QLPreviewReply> reply_;
    std::optional<QLPreviewReply> partsReply_;  // while the document cannot be drawn
    std::vector<std::string> loadProblems_;  // of the file as read
    std::vector<std::string> problems_;      // of the document as it stands
    std::string notice_;                     // the outcome of the last command, when it failed
    std::vector<std::uint64_t> subscriptions_;
    bool actualSize_ = false;
    bool closing_ = false;
    guint pendingRefresh_ = 0;
    guint pendingReload_ = 0;
    GtkWidget* window_ = nullptr;
    GtkWidget* canvas_ = nullptr;
    GtkWidget* scroller_ = nullptr;
    GtkWidget* problemBar_ = nullptr;
    GtkWidget* selectionLabel_ = nullptr;
    GFileMonitor* monitor_ = nullptr;
    // The picture as last drawn into the fitted canvas, and its size in
    // widget pixels; none at 100 %, where it would be the canvas's size.
    cairo_surface_t* picture_ = nullptr;
    int pictureWidth_ = 0;
    int pictureHeight_ = 0;
};

}  // namespace vantel::editor
