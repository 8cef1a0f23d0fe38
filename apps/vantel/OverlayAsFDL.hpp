#pragma once

// An overlay document written as an ASC framing decision list (`vantel
// render doc.aspectratio -o doc.fdl`), so that the framing drawn as guides
// travels to cameras, dailies and VFX tools as their own files do.

#include <FramingDecisions/FramingDecisionList.hpp>
#include <Graphics2/CGContext.hpp>
#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/Data.hpp>

namespace vantel::cli {

// The overlay on a canvas of `pixels` (whole pixels: the canvas's own size,
// or the size asked for, the guides scaled with it): one context holding one
// canvas, and for each guide in drawing order a framing intent of its ratio
// in whole numbers and a framing decision at its laid-out rectangle, both
// labelled by the guide's path ("2" the second top-level guide, "2.1" its
// first child). The first guide's intent is the default.
FramingDecisionList overlayDecisionList(const OverlayGen& document, CGSize pixels);

// The list as JSON. Its uuid is random, or with SOURCE_DATE_EPOCH set a
// name-based one of the rest of the file, so that a release build writes
// the same bytes every time. Throws std::runtime_error when the overlay
// makes no valid list, naming the first fault.
Data encodeOverlayDecisionList(const OverlayGen& document, CGSize pixels);

}  // namespace vantel::cli
