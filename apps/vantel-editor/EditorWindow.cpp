#include "EditorWindow.hpp"

#include "CanvasPicture.hpp"
#include "DocumentFile.hpp"
#include "PixelRect.hpp"
#include "ProblemBar.hpp"
#include "Timing.hpp"

#include <VantelPreview/PreviewProvider.hpp>

#include <cmath>
#include <cstdio>
#include <utility>

namespace vantel::editor {

namespace {

EditorWindow* editorOf(gpointer self) { return static_cast<EditorWindow*>(self); }

GMenuModel* windowMenu() {
    static const char* const items[][3] = {
        {"New Window", "win.new-window", "<Control>n"}, {"Save", "win.save", "<Control>s"},
        {"Save As…", "win.save-as", "<Control><Shift>s"}, {"Export…", "win.export", "<Control>e"},
        {"Undo", "win.undo", "<Control>z"},             {"Redo", "win.redo", "<Control><Shift>z"},
        {"Add Sample Guides", "win.add-samples", ""},
        {"Fit", "win.fit", "<Control>0"},               {"100 %", "win.actual-size", "<Control>1"},
        {"Close", "win.close", "<Control>w"}};
    GMenu* menu = g_menu_new();
    for (const auto& item : items) {
        GMenuItem* entry = g_menu_item_new(item[0], item[1]);
        if (*item[2]) g_menu_item_set_attribute(entry, "accel", "s", item[2]);
        g_menu_append_item(menu, entry);
        g_object_unref(entry);
    }
    return G_MENU_MODEL(menu);
}

std::string joinedLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + line;
    return text;
}

std::string rectText(const CGRect& rect) {
    using cli::pixelsText;
    return "x " + pixelsText(rect.x) + ", y " + pixelsText(rect.y) + ", " + pixelsText(rect.width) + " \u00d7 " +
           pixelsText(rect.height) + " px";
}

}  // namespace

void EditorWindow::open(GtkApplication* application, std::optional<std::filesystem::path> file) {
    auto* editor = new EditorWindow(application, std::move(file));
    gtk_window_present(GTK_WINDOW(editor->window_));
}

EditorWindow::EditorWindow(GtkApplication* application, std::optional<std::filesystem::path> file)
    : file_(std::move(file)) {
    OpenedDocument opened = file_ ? readDocumentFile(*file_) : readDocumentFile({});
    buildWidgets(application);
    take(std::move(opened));
    addActions();
    addShortcuts();
    watchFile();
    refresh();
    panels_->focusTree();
    // The window owns this editor: both go together.
    g_object_set_data_full(G_OBJECT(window_), "vantel-editor", this,
                           [](gpointer self) { delete static_cast<EditorWindow*>(self); });
}

EditorWindow::~EditorWindow() {
    forget();
    forgetPicture();
    if (pendingRefresh_) g_source_remove(pendingRefresh_);
    if (pendingReload_) g_source_remove(pendingReload_);
    if (monitor_) {
        g_signal_handlers_disconnect_by_data(monitor_, this);
        g_object_unref(monitor_);
    }
}

void EditorWindow::buildWidgets(GtkApplication* application) {
    window_ = gtk_application_window_new(application);
    gtk_window_set_default_size(GTK_WINDOW(window_), 1200, 760);
    GtkWidget* header = gtk_header_bar_new();
    GtkWidget* menu = gtk_menu_button_new();
    gtk_menu_button_set_icon_name(GTK_MENU_BUTTON(menu), "open-menu-symbolic");
    setMenuOnFirstOpen(menu, windowMenu);
    gtk_menu_button_set_primary(GTK_MENU_BUTTON(menu), TRUE);  // F10 opens it
    gtk_header_bar_pack_end(GTK_HEADER_BAR(header), menu);
    GtkWidget* undo = gtk_button_new_from_icon_name("edit-undo-symbolic");
    gtk_actionable_set_action_name(GTK_ACTIONABLE(undo), "win.undo");
    GtkWidget* redo = gtk_button_new_from_icon_name("edit-redo-symbolic");
    gtk_actionable_set_action_name(GTK_ACTIONABLE(redo), "win.redo");
    gtk_header_bar_pack_start(GTK_HEADER_BAR(header), undo);
    gtk_header_bar_pack_start(GTK_HEADER_BAR(header), redo);
    gtk_window_set_titlebar(GTK_WINDOW(window_), header);

    canvas_ = gtk_drawing_area_new();
    gtk_widget_set_hexpand(canvas_, TRUE);
    gtk_widget_set_vexpand(canvas_, TRUE);
    gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(canvas_), drawCallback, this, nullptr);
    scroller_ = gtk_scrolled_window_new();
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller_), canvas_);
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller_), GTK_POLICY_NEVER, GTK_POLICY_NEVER);
    problemBar_ = preview::newProblemBar();
    GtkWidget* overlay = gtk_overlay_new();
    gtk_overlay_set_child(GTK_OVERLAY(overlay), scroller_);
    gtk_overlay_add_overlay(GTK_OVERLAY(overlay), problemBar_);
    selectionLabel_ = gtk_label_new("");
    gtk_label_set_xalign(GTK_LABEL(selectionLabel_), 0);
    gtk_label_set_selectable(GTK_LABEL(selectionLabel_), TRUE);
    gtk_widget_set_margin_start(selectionLabel_, 8);
    gtk_widget_set_margin_top(selectionLabel_, 4);
    gtk_widget_set_margin_bottom(selectionLabel_, 4);
    GtkWidget* view = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_append(GTK_BOX(view), overlay);
    gtk_box_append(GTK_BOX(view), selectionLabel_);

    GtkWidget* paned = gtk_paned_new(GTK_ORIENTATION_HORIZONTAL);
    gtk_paned_set_end_child(GTK_PANED(paned), view);
    gtk_paned_set_position(GTK_PANED(paned), 380);
    gtk_paned_set_shrink_start_child(GTK_PANED(paned), FALSE);
    gtk_window_set_child(GTK_WINDOW(window_), paned);
    g_signal_connect(window_, "close-request", G_CALLBACK(closeRequest), this);
    preview::timeFrames(window_);
}

// The document comes with the panels that show it; a file that is not a
// document leaves an empty one on the usual canvas, and the file untouched.
void EditorWindow::take(OpenedDocument opened) {
    fileUnread_ = file_ && !opened.document;
    binary_ = opened.binary;
    diskBytes_ = std::move(opened.bytes);
    loadProblems_ = std::move(opened.problems);
    reportLoadProblems();
    std::shared_ptr<OverlayGen> document =
        opened.document ? std::move(opened.document) : readDocumentFile({}).document;
    editing_ = std::make_unique<GuideEditing>(document);
    if (!document->ratios().empty()) editing_->select(document->ratios().front().id);
    reply_ = PreviewProvider::previewReply(document);
    panels_ = std::make_unique<GuidePanels>(*editing_, [this] { updateSelection(); });
    GtkWidget* scroller = gtk_scrolled_window_new();
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), panels_->widget());
    gtk_paned_set_start_child(GTK_PANED(gtk_window_get_child(GTK_WINDOW(window_))), scroller);
    observe();
}

// Each announcement comes before the value is stored, so the window reads
// the document once the change has taken effect: in one refresh, however
// many values one command changed.
void EditorWindow::observe() {
    OverlayGen& document = *editing_->document();
    subscriptions_ = {document.publishedSize().subscribe([this](const Size&) { scheduleRefresh(); }),
                      document.publishedBackgroundColor().subscribe([this](const Color&) { scheduleRefresh(); }),
                      document.publishedRatios().subscribe([this](const auto&) { scheduleRefresh(); })};
}

void EditorWindow::forget() {
    if (!editing_ || subscriptions_.size() != 3) return;
    OverlayGen& document = *editing_->document();
    document.publishedSize().unsubscribe(subscriptions_[0]);
    document.publishedBackgroundColor().unsubscribe(subscriptions_[1]);
    document.publishedRatios().unsubscribe(subscriptions_[2]);
    subscriptions_.clear();
}

void EditorWindow::scheduleRefresh() {
    if (pendingRefresh_) return;
    preview::markStage("edit-announced");
    pendingRefresh_ = g_idle_add_full(
        G_PRIORITY_HIGH_IDLE,
        [](gpointer self) {
            editorOf(self)->pendingRefresh_ = 0;
            editorOf(self)->refresh();
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
}

void EditorWindow::refresh() {
    problems_ = documentProblems(*editing_->document(), name());
    partsReply_.reset();
    if (!problems_.empty()) {
        if (auto parts = drawableParts(*editing_->document())) partsReply_ = PreviewProvider::previewReply(parts);
    }
    panels_->refresh();
    updateTitle();
    updateProblems();
    updateSelection();
    auto enable = [this](const char* action, bool enabled) {
        GAction* found = g_action_map_lookup_action(G_ACTION_MAP(window_), action);
        if (found) g_simple_action_set_enabled(G_SIMPLE_ACTION(found), enabled);
    };
    enable("undo", editing_->canUndo());
    enable("redo", editing_->canRedo());
    if (actualSize_) {
        CGSize canvas = editing_->document()->size().cg();
        gtk_widget_set_size_request(canvas_, int(std::ceil(canvas.width)), int(std::ceil(canvas.height)));
    }
    forgetPicture();
    gtk_widget_queue_draw(canvas_);
    preview::markStage("refreshed");
}

std::string EditorWindow::name() const { return file_ ? file_->filename().string() : "Untitled"; }

void EditorWindow::updateTitle() {
    std::string title = (editing_->modified() ? "*" : "") + name() + " \u2014 Vantel Editor";
    gtk_window_set_title(GTK_WINDOW(window_), title.c_str());
}

void EditorWindow::updateProblems() {
    std::vector<std::string> lines = loadProblems_;
    if (lines.empty()) lines = problems_;
    if (!notice_.empty()) lines.push_back(notice_);
    gtk_label_set_text(GTK_LABEL(problemBar_), joinedLines(lines).c_str());
    gtk_widget_set_visible(problemBar_, !lines.empty());
}

// Said on standard error too, for someone who started the editor from a
// terminal: the same lines `vantel validate` prints.
void EditorWindow::notice(std::string line) {
    if (!line.empty()) std::fprintf(stderr, "%s\n", line.c_str());
    notice_ = std::move(line);
    updateProblems();
}

void EditorWindow::reportLoadProblems() {
    for (const std::string& line : loadProblems_) std::fprintf(stderr, "%s\n", line.c_str());
}

// The selected guide's outline on the canvas, exact and in whole pixels, as
// `vantel info --json` gives them ("rect" and "pixels").
void EditorWindow::updateSelection() {
    const AspectRatio* guide = editing_->selectedGuide();
    std::string text = "No guide selected";
    if (guide) {
        CGRect box = guide->box(editing_->selectedParentFit(), editing_->document()->size());
        text = guide->formatted() + ": " + rectText(box) + "; whole pixels " + rectText(cli::snapped(box));
    }
    gtk_label_set_text(GTK_LABEL(selectionLabel_), text.c_str());
    gtk_widget_queue_draw(canvas_);
}

const QLPreviewReply* EditorWindow::shownReply() const {
    if (!problems_.empty()) return partsReply_ ? &*partsReply_ : nullptr;
    return reply_ ? &*reply_ : nullptr;
}

// A document that cannot be drawn shows its problems over the parts that
// can be: the canvas and the guides without problems. The fitted picture is
// drawn once per change of the document or the widget's size and kept: a
// frame for anything else (another guide selected, a tooltip, a row's
// highlight) paints the kept picture, a copy instead of every guide again.
void EditorWindow::draw(cairo_t* cairo, int width, int height) {
    const QLPreviewReply* reply = shownReply();
    if (!reply) return;
    if (actualSize_ || !keepPicture(*reply, width, height)) {
        preview::PictureFrame frame = preview::pictureFrame(reply->contextSize, width, height, actualSize_);
        bool drawn = preview::drawPicture(cairo, *reply, frame);
        if (drawn && problems_.empty()) preview::notePictureDrawn();
    } else {
        cairo_set_source_surface(cairo, picture_, 0, 0);
        cairo_paint(cairo);
    }
    if (problems_.empty()) drawSelection(cairo, width, height);
}

// False when no picture can be kept (no memory for it); then it is drawn
// straight into the frame.
bool EditorWindow::keepPicture(const QLPreviewReply& reply, int width, int height) {
    if (picture_ && pictureWidth_ == width && pictureHeight_ == height) return true;
    forgetPicture();
    int scale = gtk_widget_get_scale_factor(canvas_);
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width * scale, height * scale);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        return false;
    }
    cairo_surface_set_device_scale(surface, scale, scale);
    cairo_t* onPicture = cairo_create(surface);
    bool drawn = preview::drawPicture(onPicture, reply, preview::pictureFrame(reply.contextSize, width, height, false));
    cairo_destroy(onPicture);
    if (drawn && problems_.empty()) preview::notePictureDrawn();
    picture_ = surface;
    pictureWidth_ = width;
    pictureHeight_ = height;
    return true;
}

void EditorWindow::forgetPicture() {
    if (picture_) cairo_surface_destroy(picture_);
    picture_ = nullptr;
}

// Dashes of white over black, seen on any colour of guide or background.
void EditorWindow::drawSelection(cairo_t* cairo, int width, int height) const {
    const AspectRatio* guide = editing_->selectedGuide();
    if (!guide) return;
    preview::PictureFrame frame = preview::pictureFrame(reply_->contextSize, width, height, actualSize_);
    CGRect box = frame.onWidget(guide->box(editing_->selectedParentFit(), editing_->document()->size()));
    static const double dash[] = {6, 4};
    cairo_save(cairo);
    cairo_set_line_width(cairo, 2);
    cairo_rectangle(cairo, box.x, box.y, box.width, box.height);
    cairo_set_source_rgb(cairo, 0, 0, 0);
    cairo_stroke_preserve(cairo);
    cairo_set_dash(cairo, dash, 2, 0);
    cairo_set_source_rgb(cairo, 1, 1, 1);
    cairo_stroke(cairo);
    cairo_restore(cairo);
}

void EditorWindow::drawCallback(GtkDrawingArea*, cairo_t* cairo, int width, int height, gpointer self) {
    editorOf(self)->draw(cairo, width, height);
}

}  // namespace vantel::editor
