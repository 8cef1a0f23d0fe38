// `vantel-preview FILE`: the quick-look window for overlay documents. A
// separate program from `vantel`, so that the thumbnailer stays small and
// static while this one links GTK.

#include "GtkStartup.hpp"
#include "PreviewWindow.hpp"
#include "Timing.hpp"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace {

struct Launch {
    std::filesystem::path file;
    std::unique_ptr<vantel::preview::PreviewWindow> window;
};

const char* const helpText =
    "vantel-preview: show an overlay document in a window\n"
    "\n"
    "Usage:\n"
    "  vantel-preview FILE\n"
    "  vantel-preview -- FILE      (a FILE whose name starts with -)\n"
    "\n"
    "FILE is an .aspectratio document, as a path or a file:// URI. The window\n"
    "reloads it when it is saved. Left and Right show the folder's other\n"
    "documents, 1 shows the picture at 100 %, 0 fits it again, Ctrl+C copies it\n"
    "as a PNG; Space, Escape and Ctrl+W close the window.\n"
    "\n"
    "Options:\n"
    "  -h, --help    print this help and exit\n"
    "  --version     print the version and exit\n";

struct Arguments {
    std::optional<std::string> file;  // none: answered without a window
    int status = 0;
};

// Help, version and usage errors are answered on the terminal, before GTK
// is started: they need no display, and a window would only keep the
// command from returning.
Arguments readArguments(int argc, char** argv) {
    const std::string_view first = argc > 1 ? argv[1] : "";
    if (argc == 2 && (first == "-h" || first == "--help")) {
        std::fputs(helpText, stdout);
        return {};
    }
    if (argc == 2 && first == "--version") {
        std::printf("vantel-preview %s\n", VANTEL_VERSION);
        return {};
    }
    if (argc == 3 && first == "--") return {argv[2]};
    if (argc == 2 && !(first.starts_with("-") && first != "-")) return {argv[1]};
    if (argc == 2) std::fprintf(stderr, "vantel-preview: unknown option '%s'\n", argv[1]);
    std::fprintf(stderr, "usage: vantel-preview FILE (vantel-preview --help for more)\n");
    return {std::nullopt, 64};
}

void activate(GtkApplication* application, gpointer data) {
    auto* launch = static_cast<Launch*>(data);
    vantel::preview::markStage("gtk-started");
    launch->window = std::make_unique<vantel::preview::PreviewWindow>(application, launch->file);
    vantel::preview::markStage("document-read");
    launch->window->present();
}

}  // namespace

int main(int argc, char** argv) {
    vantel::preview::startTiming("vantel-preview", "VANTEL_PREVIEW_TIMING");
    vantel::preview::markStage("main");
    Arguments arguments = readArguments(argc, argv);
    if (!arguments.file) return arguments.status;
    vantel::preview::preferCairoRendering();
    vantel::preview::skipSessionBusWhenAbsent();
    Launch launch{vantel::preview::documentPath(*arguments.file), nullptr};
    GtkApplication* application = gtk_application_new("org.vantel.Preview", G_APPLICATION_NON_UNIQUE);
    g_signal_connect(application, "activate", G_CALLBACK(activate), &launch);
    char* programOnly[] = {argv[0], nullptr};
    int status = g_application_run(G_APPLICATION(application), 1, programOnly);
    launch.window.reset();
    g_object_unref(application);
    return status;
}
