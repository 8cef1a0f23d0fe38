#include <FramingDecisions/FrameLineChart.hpp>

#include <algorithm>
#include <array>

namespace vantel {

namespace {

struct Lines {
    CGSize pixels;
    std::optional<Color> background;
    std::vector<FrameLineChart::Layer> layers;

    // Each outline inset by half the line, so the line lies inside its area.
    void draw(CGContext& context) const {
        context.saveGState();  // the dash and width stay with the chart
        if (background) {
            context.setFillColor(background->red, background->green, background->blue, background->alpha);
            context.fillRect({0, 0, pixels.width, pixels.height});
        }
        const double width = FrameLineChart::lineWidth(pixels);
        const std::array<double, 2> dash{3 * width, 2 * width};
        context.setLineWidth(width);
        for (const auto& [area, color, dashed] : layers) {
            context.setStrokeColor(color.red, color.green, color.blue, color.alpha);
            context.setLineDash(dashed ? std::span<const double>(dash) : std::span<const double>());
            const double insetX = std::min(width, area.width) / 2, insetY = std::min(width, area.height) / 2;
            context.strokeRect({area.x + insetX, area.y + insetY, area.width - 2 * insetX, area.height - 2 * insetY});
        }
        context.restoreGState();
    }
};

const FDLCanvas* canvasWithID(const FramingDecisionList& list, const std::string& id) {
    for (const FDLContext& context : list.contexts) {
        for (const FDLCanvas& canvas : context.canvases) {
            if (canvas.id == id) return &canvas;
        }
    }
    return nullptr;
}

bool holdsDecision(const FDLCanvas& canvas, const std::string& id) {
    return std::ranges::any_of(canvas.framingDecisions, [&](const FramingDecision& d) { return d.id == id; });
}

const FDLCanvas* canvasHoldingDecision(const FramingDecisionList& list, const std::string& id) {
    for (const FDLContext& context : list.contexts) {
        for (const FDLCanvas& canvas : context.canvases) {
            if (holdsDecision(canvas, id)) return &canvas;
        }
    }
    return nullptr;
}

const FDLCanvas& canvasChosen(const FramingDecisionList& list, const FrameLineChoice& choice) {
    if (choice.canvasID) {
        if (const FDLCanvas* canvas = canvasWithID(list, *choice.canvasID)) return *canvas;
        throw FrameLineChoiceError("no canvas \"" + *choice.canvasID + "\"");
    }
    if (choice.decisionID) {
        if (const FDLCanvas* canvas = canvasHoldingDecision(list, *choice.decisionID)) return *canvas;
        throw FrameLineChoiceError("no framing decision \"" + *choice.decisionID + "\"");
    }
    for (const FDLContext& context : list.contexts) {
        if (!context.canvases.empty()) return context.canvases.front();
    }
    throw FrameLineChoiceError("no canvas to draw");
}

}  // namespace

FDLCanvas chosenCanvas(const FramingDecisionList& list, const FrameLineChoice& choice) {
    FDLCanvas canvas = canvasChosen(list, choice);
    if (!choice.decisionID) return canvas;
    if (!holdsDecision(canvas, *choice.decisionID)) {
        throw FrameLineChoiceError("canvas \"" + canvas.id + "\" has no framing decision \"" + *choice.decisionID +
                                   "\"");
    }
    std::erase_if(canvas.framingDecisions, [&](const FramingDecision& d) { return d.id != *choice.decisionID; });
    return canvas;
}

CGSize chartSize(const FDLCanvas& canvas, bool desqueeze) {
    const double squeeze = desqueeze ? canvas.anamorphicSqueeze : 1;
    return {canvas.dimensions.width * squeeze, canvas.dimensions.height};
}

double FrameLineChart::lineWidth(CGSize pixels) { return std::max(1.5, std::min(pixels.width, pixels.height) / 360); }

FrameLineChart::FrameLineChart(const FDLCanvas& canvas, CGSize pixels, std::optional<Color> background)
    : pixels_(pixels), background_(background) {
    const double sx = pixels.width / canvas.dimensions.width, sy = pixels.height / canvas.dimensions.height;
    auto add = [&](const FDLRect& rect, Color color, bool dashed) {
        layers_.push_back({{rect.anchor.x * sx, rect.anchor.y * sy, rect.size.width * sx, rect.size.height * sy},
                           color,
                           dashed});
    };
    add(canvas.area(), FrameLineColors::canvas(), false);
    if (canvas.effectiveDimensions) add(canvas.effectiveArea(), FrameLineColors::effective(), false);
    for (const FramingDecision& decision : canvas.framingDecisions) {
        if (auto protection = decision.protection()) add(*protection, FrameLineColors::protection(), true);
    }
    for (const FramingDecision& decision : canvas.framingDecisions) {
        add(decision.framing(), FrameLineColors::framing(), false);
    }
}

Drawable FrameLineChart::body() const {
    return Drawable(Lines{pixels_, background_, layers_});
}

}  // namespace vantel
