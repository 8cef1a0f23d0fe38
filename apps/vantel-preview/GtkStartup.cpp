#include "GtkStartup.hpp"

#include <Platform/URL.hpp>

#include <glib.h>

#include <cstdlib>
#include <optional>
#include <system_error>

namespace vantel::preview {

std::filesystem::path documentPath(const std::string& argument) {
    if (argument.starts_with("file:")) {
        if (std::optional<URL> url = URL::fromString(argument)) return url->path();
    }
    return argument;
}

// The picture is one cairo drawing. GTK's cairo renderer puts it straight
// into the window; its GL renderers would first load the GL driver (with
// software GL, Mesa and LLVM: hundreds of milliseconds of processor time)
// only to upload the same drawing as a texture. GDK also loads the driver at
// start-up to choose a visual, hence both variables. Set by hand, they win.
void preferCairoRendering() {
    if (std::getenv("GSK_RENDERER") || std::getenv("GDK_DEBUG")) return;
    g_setenv("GSK_RENDERER", "cairo", FALSE);
    g_setenv("GDK_DEBUG", "gl-disable", FALSE);
}

// Without a session bus no assistive technology can be listening and no one
// can call the application. GTK's accessibility would start a bus of its own
// (a child process) only to warn, and GLib, asked for the bus by GApplication
// and by GDK's file transfer portal, would run `dbus-launch --autolaunch`
// for each, forking the whole process twice to find none. An address of no
// known transport fails at once, and both go on without the bus, as now.
void skipSessionBusWhenAbsent() {
    if (std::getenv("DBUS_SESSION_BUS_ADDRESS")) return;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code error;
    if (runtime && std::filesystem::exists(std::filesystem::path(runtime) / "bus", error)) return;
    g_setenv("GTK_A11Y", "none", FALSE);
    g_setenv("DBUS_SESSION_BUS_ADDRESS", "none:", TRUE);
}

}  // namespace vantel::preview
