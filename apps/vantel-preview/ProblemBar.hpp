#pragma once

// The dark red bar both windows lay over the picture to say why a document
// cannot be shown, with its text selectable so people can copy it.

#include <gtk/gtk.h>

namespace vantel::preview {

// A hidden, wrapping label at the bottom of its overlay, styled once per display.
GtkWidget* newProblemBar();

}  // namespace vantel::preview
