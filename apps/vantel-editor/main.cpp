// `vantel-editor [FILE]`: design the guides of an overlay document in a
// window. A program of its own, like the preview window, so that the
// `vantel` command stays small and static.

#include "EditorWindow.hpp"

#include "GtkStartup.hpp"
#include "Timing.hpp"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace {

const char* const helpText =
    "vantel-editor: design the guides of an overlay document\n"
    "\n"
    "Usage:\n"
    "  vantel-editor               a new, untitled document\n"
    "  vantel-editor FILE          FILE, or a new document saved there by Ctrl+S\n"
    "  vantel-editor -- FILE       (a FILE whose name starts with -)\n"
    "\n"
    "FILE is an .aspectratio document, as a path or a file:// URI. Insert adds a\n"
    "guide, Ctrl+Insert one inside the selected guide, Delete removes it, Ctrl+D\n"
    "duplicates it, Alt+Up and Alt+Down move it, Alt+Right and Alt+Left nest it\n"
    "in the guide above or take it out; Ctrl+L types a guide (\"2.39:1 color=red\n"
    "grid=3x3\"); Ctrl+Z undoes, Ctrl+Shift+Z redoes; Ctrl+S saves, Ctrl+Shift+S\n"
    "saves as, Ctrl+E exports PNG, SVG or PDF; Ctrl+N opens a new window, Ctrl+W\n"
    "closes this one.\n"
    "\n"
    "Options:\n"
    "  -h, --help    print this help and exit\n"
    "  --version     print the version and exit\n";

struct Arguments {
    std::optional<std::string> file;
    bool run = true;  // false: answered without a window
    int status = 0;
};

// Help, version and usage errors are answered on the terminal, before GTK
// is started: they need no display.
Arguments readArguments(int argc, char** argv) {
    const std::string_view first = argc > 1 ? argv[1] : "";
    if (argc == 1) return {};
    if (argc == 2 && (first == "-h" || first == "--help")) {
        std::fputs(helpText, stdout);
        return {std::nullopt, false};
    }
    if (argc == 2 && first == "--version") {
        std::printf("vantel-editor %s\n", VANTEL_VERSION);
        return {std::nullopt, false};
    }
    if (argc == 3 && first == "--") return {argv[2]};
    if (argc == 2 && !first.starts_with("-")) return {argv[1]};
    if (argc == 2) std::fprintf(stderr, "vantel-editor: unknown option '%s'\n", argv[1]);
    std::fprintf(stderr, "usage: vantel-editor [FILE] (vantel-editor --help for more)\n");
    return {std::nullopt, false, 64};
}

void activate(GtkApplication* application, gpointer file) {
    auto* path = static_cast<std::optional<std::filesystem::path>*>(file);
    vantel::preview::markStage("gtk-started");
    vantel::editor::EditorWindow::open(application, *path);
    vantel::preview::markStage("document-read");
}

}  // namespace

int main(int argc, char** argv) {
    vantel::preview::startTiming("vantel-editor", "VANTEL_EDITOR_TIMING");
    vantel::preview::markStage("main");
    Arguments arguments = readArguments(argc, argv);
    if (!arguments.run) return arguments.status;
    vantel::preview::preferCairoRendering();
    vantel::preview::skipSessionBusWhenAbsent();
    std::optional<std::filesystem::path> file;
    if (arguments.file) file = vantel::preview::documentPath(*arguments.file);
    GtkApplication* application = gtk_application_new("org.vantel.Editor", G_APPLICATION_NON_UNIQUE);
    // The editor has no resources: GTK would otherwise add the icon folder
    // under the application's path to the icon theme, and read the theme,
    // already read at start-up, once more for it.
    g_application_set_resource_base_path(G_APPLICATION(application), nullptr);
    g_signal_connect(application, "activate", G_CALLBACK(activate), &file);
    char* programOnly[] = {argv[0], nullptr};
    int status = g_application_run(G_APPLICATION(application), 1, programOnly);
    g_object_unref(application);
    return status;
}
