#pragma once

// Applying a canvas template: one framing decision on its canvas becomes a
// new canvas (a delivery size, a VFX pull) holding one decision, in the
// order of operations the ASC FDL specification gives: the layers to keep,
// desqueeze and scale, place by the alignment into the target, crop or pad
// to the maximum, and only then round the canvas to whole pixels. Framing,
// protection and their anchors stay fractional; the canvas and its
// effective area are whole numbers, as the schema wants them. A source
// without an effective area gets one on whole pixels: those its picture
// covers on the new canvas, so that only padding lies outside it.

#include <FramingDecisions/FramingDecisionList.hpp>

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>

namespace vantel {

// A template that asks for a layer the source does not have (a protection,
// an effective area), or a canvas or decision that is not there; what() is
// one line saying which.
class CanvasTemplateError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The new canvas made of `decision` on `source`, named `canvasID`, its
// decision "<canvasID>-<intent id>".
FDLCanvas applyCanvasTemplate(const FDLCanvas& source, const FramingDecision& decision,
                              const CanvasTemplate& canvasTemplate, const std::string& canvasID);

// Which canvas and decision a template is applied to. No canvas: the first
// canvas of the first context, or the first holding the decision asked
// for; no decision: the canvas's first.
struct CanvasTemplateSource {
    std::optional<std::string> canvasID;
    std::optional<std::string> decisionID;
};

// The list with the new canvas placed right after its source canvas, in the
// same context. Its id is the source canvas's and the template's joined by
// "_" (cut to the 32 characters an id may have), numbered on when the list
// holds it already.
FramingDecisionList withCanvasTemplateApplied(const FramingDecisionList& list, const CanvasTemplateSource& source,
                                              const CanvasTemplate& canvasTemplate);

}  // namespace vantel
