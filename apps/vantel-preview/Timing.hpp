#pragma once

#include <gtk/gtk.h>

namespace vantel::preview {

// With the program's timing variable set in the environment (startTiming)
// a window says on standard error how long it takes, one line each, for
// bench/preview_open.sh and bench/editor_frames.sh:
//   "PROGRAM: timing: STAGE MS cpu CPU"  a start-up stage, MS since main,
//                                        CPU the processor time used
//   "PROGRAM: timing: frame WxH MS cpu CPU at END"  one frame, MS from its
//                                        start to the end of its paint, END
//                                        that end in ms since main
// The stage "first-frame" is the end of the first paint that drew the
// picture. Without the variable all of this costs one test of a flag.
void markStage(const char* stage);

// Called first in main: timing is on when `variable` is set.
void startTiming(const char* program, const char* variable);

// Times every frame of `widget`'s window from now on.
void timeFrames(GtkWidget* widget);

// Called by the drawing code when it drew the picture, so that the frame
// clock can tell the first frame with the picture in it.
void notePictureDrawn();

}  // namespace vantel::preview
