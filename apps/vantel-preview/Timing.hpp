#pragma once

#include <gtk/gtk.h>

namespace vantel::preview {

// With VANTEL_PREVIEW_TIMING set in the environment the window says on
// standard error how long it takes, one line each, for bench/preview_open.sh:
//   "vantel-preview: timing: STAGE MS cpu CPU"  a start-up stage, MS since main,
//                                               CPU the processor time used
//   "vantel-preview: timing: frame WxH MS cpu CPU"  one frame, MS from its
//                                               start to the end of its paint
// The stage "first-frame" is the end of the first paint that drew the
// picture. Without the variable all of this costs one test of a flag.
void markStage(const char* stage);

// Times every frame of `widget`'s window from now on.
void timeFrames(GtkWidget* widget);

// Called by the drawing code when it drew the picture, so that the frame
// clock can tell the first frame with the picture in it.
void notePictureDrawn();

}  // namespace vantel::preview
