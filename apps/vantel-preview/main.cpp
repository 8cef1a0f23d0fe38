// `vantel-preview FILE`: the quick-look window for overlay documents. A
// separate program from `vantel`, so that the thumbnailer stays small and
// static while this one links GTK.

#include "PreviewWindow.hpp"
#include "Timing.hpp"

#include <Platform/URL.hpp>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace {

struct Launch {
    std::filesystem::path file;
    std::unique_ptr<vantel::preview::PreviewWindow> window;
};

// Desktop launchers pass a file URI (%u) or a path (%f).
std::filesystem::path documentPath(const std::string& argument) {
    if (argument.starts_with("file:")) {
        if (std::optional<vantel::URL> url = vantel::URL::fromString(argument)) return url->path();
    }
    return argument;
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
    vantel::preview::markStage("main");
    if (argc != 2) {
        std::fprintf(stderr, "usage: vantel-preview FILE\n");
        return 64;
    }
    Launch launch{documentPath(argv[1]), nullptr};
    GtkApplication* application = gtk_application_new("org.vantel.Preview", G_APPLICATION_NON_UNIQUE);
    g_signal_connect(application, "activate", G_CALLBACK(activate), &launch);
    char* programOnly[] = {argv[0], nullptr};
    int status = g_application_run(G_APPLICATION(application), 1, programOnly);
    launch.window.reset();
    g_object_unref(application);
    return status;
}
