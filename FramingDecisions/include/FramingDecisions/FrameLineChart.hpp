#pragma once

// One canvas of a framing decision list drawn as a frame-line chart, in the
// layer colours of the ASC's frame-line generator: the canvas grey, the
// effective area blue, each decision's protection orange and dashed, its
// framing green. Every line lies inside the area it marks, so the area's
// edge is the outer edge of its line at the exact fractional position the
// file gives. The chart is a sketch, so it goes wherever overlays go.

#include <FramingDecisions/FramingDecisionList.hpp>
#include <Graphics2/CGContext.hpp>
#include <Graphics2/Color.hpp>
#include <Graphics2/Size.hpp>
#include <Graphics2/Sketch.hpp>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace vantel {

struct FrameLineColors {
    static Color canvas() { return {128 / 255.0, 128 / 255.0, 128 / 255.0, 1}; }      // #808080
    static Color effective() { return {0, 102 / 255.0, 204 / 255.0, 1}; }              // #0066CC
    static Color protection() { return {1, 153 / 255.0, 0, 1}; }                       // #FF9900
    static Color framing() { return {0, 204 / 255.0, 102 / 255.0, 1}; }                // #00CC66
};

// Which canvas and decisions to draw. No canvas: the first canvas of the
// first context, or the one holding the decision asked for. No decision:
// all of the canvas's decisions.
struct FrameLineChoice {
    std::optional<std::string> canvasID;
    std::optional<std::string> decisionID;
};

// A canvas or decision asked for that the list does not hold, or a list
// without canvases; what() says which.
class FrameLineChoiceError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The chosen canvas holding only the chosen decisions.
FDLCanvas chosenCanvas(const FramingDecisionList& list, const FrameLineChoice& choice);

// The canvas's recorded size, its width times the squeeze with `desqueeze`.
CGSize chartSize(const FDLCanvas& canvas, bool desqueeze);

class FrameLineChart final : public Sketch {
public:
    // The canvas drawn on `pixels` (stretched to it both ways), over
    // `background` or on transparency.
    FrameLineChart(const FDLCanvas& canvas, CGSize pixels, std::optional<Color> background = std::nullopt);

    Size size() const override { return Size(pixels_.width, pixels_.height, 0); }
    Drawable body() const override;

    // Lines widen with the picture, but never below a pixel and a half, so
    // that a thumbnail still shows each layer's colour.
    static double lineWidth(CGSize pixels);

    struct Layer {
        CGRect area;  // on the picture
        Color color;
        bool dashed = false;
    };

private:
    CGSize pixels_;
    std::optional<Color> background_;
    std::vector<Layer> layers_;  // bottom to top
};

}  // namespace vantel
