// The window's commands: its GActions and their shortcuts, saving,
// exporting, closing, and following the file on disk.

#include "EditorWindow.hpp"

#include "DocumentEncoding.hpp"
#include "DocumentFile.hpp"
#include "GuideExpressionEdit.hpp"
#include "OutputFormat.hpp"

#include <CoreGraphicsRendering/RenderError.hpp>
#include <Platform/FileIO.hpp>

#include <charconv>
#include <cmath>
#include <exception>
#include <system_error>
#include <utility>

namespace vantel::editor {

namespace {

// Editors write a file in several steps (truncate, write, rename); waiting
// this long after the last change reads it once, whole.
constexpr guint reloadDelayMilliseconds = 80;

EditorWindow* editorOf(gpointer self) { return static_cast<EditorWindow*>(self); }

struct Shortcut {
    const char* trigger;
    const char* action;
};

// Added to the window in the bubbling phase: a text field that has the
// focus keeps its own keys (Delete, Insert, Ctrl+Z edit the text), and
// everywhere else they edit the document.
constexpr Shortcut shortcuts[] = {
    {"Insert", "win.add-guide"},       {"<Control>Insert", "win.add-child"},
    {"Delete", "win.remove"},          {"<Control>d", "win.duplicate"},
    {"<Alt>Up", "win.move-up"},        {"<Alt>Down", "win.move-down"},
    {"<Alt>Right", "win.indent"},      {"<Alt>Left", "win.outdent"},
    {"<Control>z", "win.undo"},        {"<Control><Shift>z", "win.redo"},
    {"<Control>s", "win.save"},        {"<Control><Shift>s", "win.save-as"},
    {"<Control>e", "win.export"},      {"<Control>w", "win.close"},
    {"<Control>n", "win.new-window"},  {"<Control>l", "win.edit-expression"},
    {"<Control>1", "win.actual-size"}, {"<Control>0", "win.fit"},
};

// "W:H" with positive numbers.
std::optional<std::pair<double, double>> ratioSides(const std::string& text) {
    std::size_t colon = text.find(':');
    if (colon == std::string::npos) return std::nullopt;
    double width = 0, height = 0;
    auto first = std::from_chars(text.data(), text.data() + colon, width);
    auto second = std::from_chars(text.data() + colon + 1, text.data() + text.size(), height);
    if (first.ec != std::errc() || second.ec != std::errc() || !(width > 0 && height > 0)) return std::nullopt;
    return std::pair{width, height};
}

GtkFileChooserNative* fileChooser(GtkWidget* window, const char* title, const char* accept,
                                  const std::optional<std::filesystem::path>& folder, const std::string& name) {
    GtkFileChooserNative* chooser =
        gtk_file_chooser_native_new(title, GTK_WINDOW(window), GTK_FILE_CHOOSER_ACTION_SAVE, accept, "_Cancel");
    if (folder) {
        GFile* place = g_file_new_for_path(folder->c_str());
        gtk_file_chooser_set_current_folder(GTK_FILE_CHOOSER(chooser), place, nullptr);
        g_object_unref(place);
    }
    gtk_file_chooser_set_current_name(GTK_FILE_CHOOSER(chooser), name.c_str());
    return chooser;
}

// The path a file chooser answered with; the chooser goes with it, and the
// keyboard comes back to the window (without a window manager nothing else
// gives it back).
std::optional<std::filesystem::path> chosenPath(GtkNativeDialog* dialog, int response) {
    gtk_window_present(gtk_native_dialog_get_transient_for(dialog));
    std::optional<std::filesystem::path> path;
    if (response == GTK_RESPONSE_ACCEPT) {
        GFile* file = gtk_file_chooser_get_file(GTK_FILE_CHOOSER(dialog));
        if (char* chosen = file ? g_file_get_path(file) : nullptr) {
            path = chosen;
            g_free(chosen);
        }
        if (file) g_object_unref(file);
    }
    g_object_unref(dialog);
    return path;
}

GtkWidget* question(GtkWidget* window, const char* title, const std::string& text) {
    GtkWidget* dialog =
        gtk_message_dialog_new(GTK_WINDOW(window), GtkDialogFlags(GTK_DIALOG_MODAL | GTK_DIALOG_DESTROY_WITH_PARENT),
                               GTK_MESSAGE_QUESTION, GTK_BUTTONS_NONE, "%s", text.c_str());
    gtk_window_set_title(GTK_WINDOW(dialog), title);
    return dialog;
}

template <void (EditorWindow::*command)()>
void run(GSimpleAction*, GVariant*, gpointer self) {
    (editorOf(self)->*command)();
}

}  // namespace

void EditorWindow::addActions() {
    static const GActionEntry entries[] = {
        {"add-guide", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->editing_->addGuide(); },
         nullptr, nullptr, nullptr, {}},
        {"add-child", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->editing_->addChild(); },
         nullptr, nullptr, nullptr, {}},
        {"add-samples", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->editing_->addSamples(); },
         nullptr, nullptr, nullptr, {}},
        {"remove", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->editing_->removeGuide(); },
         nullptr, nullptr, nullptr, {}},
        {"duplicate", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->editing_->duplicateGuide(); },
         nullptr, nullptr, nullptr, {}},
        {"move-up", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->editing_->moveGuide(-1); },
         nullptr, nullptr, nullptr, {}},
        {"move-down", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->editing_->moveGuide(1); },
         nullptr, nullptr, nullptr, {}},
        {"indent", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->editing_->indentGuide(); },
         nullptr, nullptr, nullptr, {}},
        {"outdent", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->editing_->outdentGuide(); },
         nullptr, nullptr, nullptr, {}},
        {"undo", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->editing_->undo(); },
         nullptr, nullptr, nullptr, {}},
        {"redo", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->editing_->redo(); },
         nullptr, nullptr, nullptr, {}},
        {"save", run<&EditorWindow::save>, nullptr, nullptr, nullptr, {}},
        {"save-as", run<&EditorWindow::chooseSaveFile>, nullptr, nullptr, nullptr, {}},
        {"export", run<&EditorWindow::chooseExportFile>, nullptr, nullptr, nullptr, {}},
        {"close", [](GSimpleAction*, GVariant*, gpointer self) { gtk_window_close(GTK_WINDOW(editorOf(self)->window_)); },
         nullptr, nullptr, nullptr, {}},
        {"new-window",
         [](GSimpleAction*, GVariant*, gpointer self) {
             open(gtk_window_get_application(GTK_WINDOW(editorOf(self)->window_)), std::nullopt);
         },
         nullptr, nullptr, nullptr, {}},
        {"edit-expression", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->panels_->focusExpression(); },
         nullptr, nullptr, nullptr, {}},
        {"apply-expression",
         [](GSimpleAction*, GVariant* text, gpointer self) {
             editorOf(self)->applyExpression(g_variant_get_string(text, nullptr));
         },
         "s", nullptr, nullptr, {}},
        {"set-ratio",
         [](GSimpleAction*, GVariant* text, gpointer self) { editorOf(self)->setRatio(g_variant_get_string(text, nullptr)); },
         "s", nullptr, nullptr, {}},
        {"actual-size", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->setActualSize(true); },
         nullptr, nullptr, nullptr, {}},
        {"fit", [](GSimpleAction*, GVariant*, gpointer self) { editorOf(self)->setActualSize(false); },
         nullptr, nullptr, nullptr, {}},
    };
    g_action_map_add_action_entries(G_ACTION_MAP(window_), entries, G_N_ELEMENTS(entries), this);
}

void EditorWindow::addShortcuts() {
    GtkEventController* controller = gtk_shortcut_controller_new();
    for (const Shortcut& shortcut : shortcuts) {
        gtk_shortcut_controller_add_shortcut(
            GTK_SHORTCUT_CONTROLLER(controller),
            gtk_shortcut_new(gtk_shortcut_trigger_parse_string(shortcut.trigger),
                             gtk_named_action_new(shortcut.action)));
    }
    gtk_widget_add_controller(window_, controller);
}

void EditorWindow::setActualSize(bool actualSize) {
    actualSize_ = actualSize;
    forgetPicture();
    GtkPolicyType policy = actualSize ? GTK_POLICY_AUTOMATIC : GTK_POLICY_NEVER;
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller_), policy, policy);
    CGSize canvas = editing_->document()->size().cg();
    gtk_widget_set_size_request(canvas_, actualSize ? int(std::ceil(canvas.width)) : -1,
                                actualSize ? int(std::ceil(canvas.height)) : -1);
    gtk_widget_queue_draw(canvas_);
}

// Typed with nothing selected, the words make a new guide.
void EditorWindow::applyExpression(const std::string& text) {
    if (!editing_->selectedGuide()) editing_->addGuide();
    auto changed = guideWithExpression(*editing_->selectedGuide(), text);
    if (auto* reason = std::get_if<std::string>(&changed)) return notice(*reason);
    notice("");
    editing_->changeGuide("", [&](AspectRatio& guide) { guide = std::get<AspectRatio>(changed); });
    panels_->clearExpression();
    panels_->focusTree();
}

void EditorWindow::setRatio(const std::string& text) {
    auto sides = ratioSides(text);
    if (!sides) return notice("not a ratio: " + text);
    editing_->changeGuide("", [&](AspectRatio& guide) { std::tie(guide.width, guide.height) = *sides; });
}

void EditorWindow::save() {
    if (!file_) return chooseSaveFile();
    if (fileUnread_) {
        return notice(file_->string() + ": not saved: it was not read as a document, so saving would lose it; "
                      "Save As writes another file");
    }
    saveTo(*file_);
}

// Never writes a document that cannot be drawn: it could not be read back.
bool EditorWindow::saveTo(const std::filesystem::path& file) {
    if (!problems_.empty()) {
        notice(file.string() + ": not saved: the document cannot be drawn");
        return false;
    }
    try {
        Data bytes = encodedDocument(*editing_->document(), binary_);
        writeDataAtomically(bytes, file);
        diskBytes_ = std::move(bytes);
    } catch (const std::filesystem::filesystem_error& error) {
        notice(file.string() + ": cannot write: " + fileErrorReason(error));
        return false;
    }
    if (file_ != file) {
        file_ = file;
        watchFile();
    }
    fileUnread_ = false;
    loadProblems_.clear();
    notice_.clear();
    editing_->markSaved();
    refresh();
    return true;
}

void EditorWindow::chooseSaveFile() {
    std::optional<std::filesystem::path> folder = file_ ? std::optional(file_->parent_path()) : std::nullopt;
    GtkFileChooserNative* chooser = fileChooser(window_, "Save Guides", "_Save", folder,
                                                file_ ? file_->filename().string() : "Untitled.aspectratio");
    g_signal_connect(chooser, "response", G_CALLBACK(+[](GtkNativeDialog* dialog, int response, gpointer self) {
                         if (auto path = chosenPath(dialog, response)) editorOf(self)->saveTo(*path);
                     }),
                     this);
    gtk_native_dialog_show(GTK_NATIVE_DIALOG(chooser));
}

void EditorWindow::chooseExportFile() {
    std::optional<std::filesystem::path> folder = file_ ? std::optional(file_->parent_path()) : std::nullopt;
    std::string stem = file_ ? file_->stem().string() : "Untitled";
    GtkFileChooserNative* chooser = fileChooser(window_, "Export Picture", "_Export", folder, stem + ".png");
    g_signal_connect(chooser, "response", G_CALLBACK(+[](GtkNativeDialog* dialog, int response, gpointer self) {
                         if (auto path = chosenPath(dialog, response)) editorOf(self)->exportTo(*path);
                     }),
                     this);
    gtk_native_dialog_show(GTK_NATIVE_DIALOG(chooser));
}

// The file `vantel render` writes for the same document and name.
void EditorWindow::exportTo(const std::filesystem::path& file) {
    std::optional<cli::OutputFormat> format = cli::OutputFormat::forFile(file);
    if (!format) return notice(file.string() + ": not exported: name it .png, .svg, .pdf or another format of vantel render");
    if (!problems_.empty()) return notice(file.string() + ": not exported: the document cannot be drawn");
    try {
        writeDataAtomically(cli::encodeDocument(editing_->document(), *format), file);
        notice("");
    } catch (const std::filesystem::filesystem_error& error) {
        notice(file.string() + ": cannot write: " + fileErrorReason(error));
    } catch (const std::exception& error) {
        notice(file.string() + ": cannot export: " + error.what());
    }
}

gboolean EditorWindow::closeRequest(GtkWindow*, gpointer self) {
    EditorWindow* editor = editorOf(self);
    if (editor->closing_ || !editor->editing_->modified()) return FALSE;
    editor->askBeforeClosing();
    return TRUE;
}

void EditorWindow::askBeforeClosing() {
    GtkWidget* dialog = question(window_, "Unsaved Changes", "Save the changes to \u201c" + name() + "\u201d before closing?");
    gtk_dialog_add_buttons(GTK_DIALOG(dialog), "_Cancel", GTK_RESPONSE_CANCEL, "_Discard", GTK_RESPONSE_REJECT,
                           "_Save", GTK_RESPONSE_ACCEPT, nullptr);
    gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_ACCEPT);
    g_signal_connect(dialog, "response", G_CALLBACK(+[](GtkDialog* asked, int response, gpointer self) {
                         EditorWindow* editor = editorOf(self);
                         gtk_window_destroy(GTK_WINDOW(asked));
                         gtk_window_present(GTK_WINDOW(editor->window_));
                         if (response == GTK_RESPONSE_ACCEPT) {
                             editor->save();
                             if (editor->editing_->modified()) return;  // not saved: keep the window
                         } else if (response != GTK_RESPONSE_REJECT) {
                             return;
                         }
                         editor->closing_ = true;
                         gtk_window_close(GTK_WINDOW(editor->window_));
                     }),
                     this);
    gtk_window_present(GTK_WINDOW(dialog));
}

void EditorWindow::watchFile() {
    if (monitor_) {
        g_signal_handlers_disconnect_by_data(monitor_, this);
        g_object_unref(monitor_);
    }
    monitor_ = nullptr;
    if (!file_) return;
    GFile* watched = g_file_new_for_path(file_->c_str());
    // Watching moves too catches editors that save by renaming a new file
    // over the old one, as this one does.
    monitor_ = g_file_monitor_file(watched, G_FILE_MONITOR_WATCH_MOVES, nullptr, nullptr);
    g_object_unref(watched);
    if (monitor_) g_signal_connect(monitor_, "changed", G_CALLBACK(fileChanged), this);
}

void EditorWindow::fileChanged(GFileMonitor*, GFile*, GFile*, GFileMonitorEvent event, gpointer self) {
    EditorWindow* editor = editorOf(self);
    if (event == G_FILE_MONITOR_EVENT_ATTRIBUTE_CHANGED) return;
    if (editor->pendingReload_) g_source_remove(editor->pendingReload_);
    editor->pendingReload_ = g_timeout_add(
        reloadDelayMilliseconds,
        [](gpointer self) {
            editorOf(self)->pendingReload_ = 0;
            editorOf(self)->fileChangedOnDisk();
            return G_SOURCE_REMOVE;
        },
        self);
}

// Our own saves, and writes of the same bytes, are no change. A file that
// someone broke keeps what the window shows and says what is wrong with it;
// a file removed or moved away leaves the document as it is, for a save to
// write again.
void EditorWindow::fileChangedOnDisk() {
    std::error_code error;
    if (!std::filesystem::exists(*file_, error)) return;
    OpenedDocument opened = readDocumentFile(*file_);
    if (opened.bytes == diskBytes_) return;
    if (!opened.document) {
        diskBytes_ = std::move(opened.bytes);
        loadProblems_ = std::move(opened.problems);
        reportLoadProblems();
        return updateProblems();
    }
    if (!editing_->modified()) return reloadFromDisk(std::move(opened));
    auto* held = new OpenedDocument(std::move(opened));
    GtkWidget* dialog = question(window_, "Changed on Disk",
                                 "\u201c" + name() + "\u201d changed on disk. Reload it and lose your changes?");
    gtk_dialog_add_buttons(GTK_DIALOG(dialog), "_Keep Mine", GTK_RESPONSE_REJECT, "_Reload", GTK_RESPONSE_ACCEPT,
                           nullptr);
    g_object_set_data_full(G_OBJECT(dialog), "opened", held, [](gpointer data) { delete static_cast<OpenedDocument*>(data); });
    g_signal_connect(dialog, "response", G_CALLBACK(+[](GtkDialog* asked, int response, gpointer self) {
                         auto* opened = static_cast<OpenedDocument*>(g_object_get_data(G_OBJECT(asked), "opened"));
                         if (response == GTK_RESPONSE_ACCEPT) editorOf(self)->reloadFromDisk(std::move(*opened));
                         gtk_window_destroy(GTK_WINDOW(asked));
                         gtk_window_present(GTK_WINDOW(editorOf(self)->window_));
                     }),
                     this);
    gtk_window_present(GTK_WINDOW(dialog));
}

void EditorWindow::reloadFromDisk(OpenedDocument opened) {
    diskBytes_ = std::move(opened.bytes);
    binary_ = opened.binary;
    fileUnread_ = false;
    loadProblems_ = std::move(opened.problems);
    reportLoadProblems();
    const OverlayGen& read = *opened.document;
    editing_->replace({read.size(), read.backgroundColor(), read.ratios()});
    refresh();
}

}  // namespace vantel::editor
