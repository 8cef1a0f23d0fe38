#include <FramingDecisions/CanvasTemplateApplication.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

namespace vantel {

namespace {

// The nested areas a template works on, outermost first: the order in which
// they may hold each other.
enum Layer : std::size_t { canvasLayer, effectiveLayer, protectionLayer, framingLayer };
constexpr std::array<std::string_view, 4> layerPaths = {"canvas.dimensions", "canvas.effective_dimensions",
                                                        "framing_decision.protection_dimensions",
                                                        "framing_decision.dimensions"};

struct Area {
    FDLDimensions size;
    FDLPoint anchor;
    bool isEmpty() const { return size.width == 0 && size.height == 0; }
};

using Geometry = std::array<Area, 4>;

std::size_t layerOf(const std::string& path) {
    auto found = std::find(layerPaths.begin(), layerPaths.end(), path);
    if (found == layerPaths.end()) throw CanvasTemplateError("\"" + path + "\" is not a layer a template can name");
    return static_cast<std::size_t>(found - layerPaths.begin());
}

std::optional<Area> sourceArea(const FDLCanvas& canvas, const FramingDecision& decision, std::size_t layer) {
    switch (layer) {
        case canvasLayer: return Area{canvas.dimensions, {}};
        case effectiveLayer:
            if (!canvas.effectiveDimensions) return std::nullopt;
            return Area{*canvas.effectiveDimensions, canvas.effectiveAnchorPoint.value_or(FDLPoint{})};
        case protectionLayer:
            if (!decision.protectionDimensions) return std::nullopt;
            return Area{*decision.protectionDimensions, decision.protectionAnchorPoint.value_or(FDLPoint{})};
        default: return Area{decision.dimensions, decision.anchorPoint};
    }
}

void requireArea(const FDLCanvas& canvas, const FramingDecision& decision, std::size_t layer, std::string_view use) {
    if (sourceArea(canvas, decision, layer)) return;
    std::string owner = layer == effectiveLayer ? "canvas \"" + canvas.id + "\"" : "decision \"" + decision.id + "\"";
    throw CanvasTemplateError("the template " + std::string(use) + " " + std::string(layerPaths[layer]) + ", which " +
                              owner + " does not have");
}

// The layers the template keeps: the preserved one and those inside it,
// then the fitted one and those inside it. Layers around both are taken
// from the outermost one kept; a protection is never made up.
Geometry keptLayers(const FDLCanvas& canvas, const FramingDecision& decision, std::size_t fit,
                    std::optional<std::size_t> preserve) {
    Geometry geometry{};
    for (std::optional<std::size_t> start : {preserve, std::optional<std::size_t>(fit)}) {
        if (!start) continue;
        for (std::size_t layer = *start; layer < geometry.size(); ++layer) {
            if (auto area = sourceArea(canvas, decision, layer)) geometry[layer] = *area;
        }
    }
    const FDLDimensions& effective = geometry[effectiveLayer].size;
    const FDLDimensions& protection = geometry[protectionLayer].size;
    if (!geometry[effectiveLayer].isEmpty() && !geometry[protectionLayer].isEmpty() &&
        (effective.width < protection.width || effective.height < protection.height)) {
        throw CanvasTemplateError("the effective area of canvas \"" + canvas.id + "\" is smaller than the protection of \"" +
                                  decision.id + "\"");
    }
    auto outermost = std::find_if(geometry.begin(), geometry.end(), [](const Area& area) { return !area.isEmpty(); });
    if (outermost == geometry.end()) throw CanvasTemplateError("decision \"" + decision.id + "\" has no size");
    Area reference = *outermost;
    if (geometry[canvasLayer].isEmpty()) geometry[canvasLayer].size = reference.size;
    if (geometry[effectiveLayer].isEmpty()) geometry[effectiveLayer] = reference;
    return geometry;
}

// Anchors from the corner of the outermost layer kept, which becomes the
// new canvas's corner.
void moveOrigin(Geometry& geometry, FDLPoint origin) {
    for (std::size_t layer = effectiveLayer; layer < geometry.size(); ++layer) {
        geometry[layer].anchor.x -= origin.x;
        geometry[layer].anchor.y -= origin.y;
    }
}

// Desqueezed from the source's squeeze, scaled, squeezed to the target's.
// Each axis's factor is kept as the ratio it is made of: value x a / b is
// exact for whole pixel values where value x (a / b) is not, and a canvas
// 1e-13 above a whole number would round up to the next one. The axis the
// template fits by leaves the squeezes out, since they cancel on it: 1028
// squeezed pixels fitted to 3840 are 3840, not 3839.9999999999995.
struct Scaling {
    double horizontalNumerator = 1, horizontalDenominator = 1;
    double verticalNumerator = 1, verticalDenominator = 1;

    double x(double value) const { return value * horizontalNumerator / horizontalDenominator; }
    double y(double value) const { return value * verticalNumerator / verticalDenominator; }
    void apply(Area& area) const {
        area.size = {x(area.size.width), y(area.size.height)};
        area.anchor = {x(area.anchor.x), y(area.anchor.y)};
    }
};

Scaling scaling(const FDLDimensions& fit, const CanvasTemplate& canvasTemplate, double sourceSqueeze,
                double targetSqueeze) {
    const FDLDimensions& target = canvasTemplate.targetDimensions;
    double fitWidth = fit.width * sourceSqueeze, targetWidth = target.width * targetSqueeze;
    bool byWidth = canvasTemplate.fitMethod == "width";
    if (canvasTemplate.fitMethod == "fit_all") byWidth = targetWidth / fitWidth <= target.height / fit.height;
    if (canvasTemplate.fitMethod == "fill") byWidth = targetWidth / fitWidth >= target.height / fit.height;
    Scaling scale = byWidth ? Scaling{target.width, fit.width, targetWidth, fitWidth}
                            : Scaling{target.height * sourceSqueeze, fit.height * targetSqueeze, target.height,
                                      fit.height};
    bool bothSides = canvasTemplate.fitMethod == "fit_all" || canvasTemplate.fitMethod == "fill";
    double fittedSide = byWidth ? targetWidth : target.height;
    if (!(fittedSide > 0) || (bothSides && !(target.width > 0 && target.height > 0))) {
        throw CanvasTemplateError("fit_method \"" + canvasTemplate.fitMethod + "\" needs a target " +
                                  (bothSides ? "width and height" : byWidth ? "width" : "height") + " above 0");
    }
    return scale;
}

// One axis of placing the scaled layers on the new canvas.
struct Axis {
    double canvas;     // the scaled outermost layer
    double target;
    double fit;        // the scaled fitted layer and its anchor
    double fitAnchor;
    double maximum;    // 0: none
    bool pad;
    double alignment;  // 0 left or top, 0.5 centre, 1 right or bottom

    double output() const {
        if (maximum > 0 && (pad || canvas > maximum)) return maximum;
        return canvas;
    }

    // How far everything moves: the fitted layer placed in the target by
    // the alignment, the target centred in a padded or cropped canvas. A
    // crop keeps the canvas covered.
    double shift() const {
        double overflow = canvas - output();
        if (overflow == 0 && !pad) return 0;
        // A target side of 0 is left to the fitted layer ("fit by width,
        // whatever height that gives").
        double size = target > 0 ? target : fit;
        double targetOffset = pad || alignment == 0.5 ? (output() - size) * 0.5 : 0;
        double shift = targetOffset + (size - fit) * alignment - fitAnchor;
        if (!pad && overflow > 0) shift = std::max(std::min(shift, 0.0), -overflow);
        return shift;
    }
};

double alignment(const std::string& method) {
    if (method == "left" || method == "top") return 0;
    if (method == "right" || method == "bottom") return 1;
    return 0.5;
}

// What of a moved layer lies on the canvas: cut where it left the canvas
// on the top or left (its anchor then held at 0) and where it runs past it.
FDLDimensions visible(const Area& moved, FDLPoint unclamped, const FDLDimensions& canvas) {
    double width = std::min(moved.size.width - std::max(0.0, -unclamped.x), canvas.width - moved.anchor.x);
    double height = std::min(moved.size.height - std::max(0.0, -unclamped.y), canvas.height - moved.anchor.y);
    return {std::max(0.0, width), std::max(0.0, height)};
}

FDLDimensions smallest(const FDLDimensions& a, const FDLDimensions& b) {
    return {std::min(a.width, b.width), std::min(a.height, b.height)};
}

void placeOnCanvas(Geometry& geometry, FDLPoint shift, const FDLDimensions& canvas) {
    geometry[canvasLayer].size = canvas;
    for (std::size_t layer = effectiveLayer; layer < geometry.size(); ++layer) {
        Area& area = geometry[layer];
        if (layer == protectionLayer && area.isEmpty()) continue;
        FDLPoint unclamped{area.anchor.x + shift.x, area.anchor.y + shift.y};
        area.anchor = {std::max(0.0, unclamped.x), std::max(0.0, unclamped.y)};
        area.size = visible(area, unclamped, canvas);
    }
    Area& effective = geometry[effectiveLayer];
    Area& protection = geometry[protectionLayer];
    effective.size = smallest(effective.size, canvas);
    if (!protection.isEmpty()) protection.size = smallest(protection.size, effective.size);
    FDLDimensions parent = protection.isEmpty() ? effective.size : protection.size;
    geometry[framingLayer].size = smallest(geometry[framingLayer].size, parent);
}

double rounded(double value, const CanvasTemplateRound& round) {
    double step = round.even == "even" ? 2 : 1;
    double steps = value / step;
    if (round.mode == "up") steps = std::ceil(steps);
    else if (round.mode == "down") steps = std::floor(steps);
    else steps = std::round(steps);
    return steps * step;
}

double clamped(double value, double low, double high) { return std::max(low, std::min(value, high)); }

// A scaled effective area the source had goes up to whole pixels about
// its centre; its anchor stays fractional, as every scaled anchor does.
void wholeAboutCentre(Area& effective, const FDLDimensions& canvas) {
    FDLDimensions whole{std::ceil(effective.size.width), std::ceil(effective.size.height)};
    effective.anchor.x -= (whole.width - effective.size.width) / 2;
    effective.anchor.y -= (whole.height - effective.size.height) / 2;
    effective.size = smallest(whole, canvas);
}

// An edge this close to a pixel boundary is on it: scaling leaves such
// crumbs, and they must not claim a row of pixels.
constexpr double edgeTolerance = 1e-6;

// For a source without an effective area, the new one is every whole pixel
// row and column its picture touches on the canvas: the outer bounds of
// the active image, so padding is all that lies outside it.
void wholeCoveringPixels(Area& effective, const FDLDimensions& canvas) {
    auto span = [&](double start, double length, double limit) {
        double first = std::max(0.0, std::floor(start + edgeTolerance));
        double last = std::min(limit, std::ceil(start + length - edgeTolerance));
        return std::pair{first, std::max(0.0, last - first)};
    };
    auto [x, width] = span(effective.anchor.x, effective.size.width, canvas.width);
    auto [y, height] = span(effective.anchor.y, effective.size.height, canvas.height);
    effective = {{width, height}, {x, y}};
}

// The last step: the canvas rounded as the template says, growing or
// shrinking about its centre, the effective area made whole pixels, and
// the fractional areas cut back to what the canvas holds.
void roundCanvas(Geometry& geometry, const CanvasTemplate& canvasTemplate, bool padded, bool sourceHadEffective) {
    Area& canvas = geometry[canvasLayer];
    Area& effective = geometry[effectiveLayer];
    FDLDimensions exact = canvas.size;
    if (!padded) {
        CanvasTemplateRound round = canvasTemplate.round.value_or(CanvasTemplateRound{});
        canvas.size = {rounded(exact.width, round), rounded(exact.height, round)};
    }
    for (std::size_t layer = effectiveLayer; layer < geometry.size(); ++layer) {
        geometry[layer].anchor.x += (canvas.size.width - exact.width) / 2;
        geometry[layer].anchor.y += (canvas.size.height - exact.height) / 2;
    }
    if (sourceHadEffective) wholeAboutCentre(effective, canvas.size);
    else wholeCoveringPixels(effective, canvas.size);
    effective.anchor = {clamped(effective.anchor.x, 0, canvas.size.width - effective.size.width),
                        clamped(effective.anchor.y, 0, canvas.size.height - effective.size.height)};
    for (std::size_t layer : {protectionLayer, framingLayer}) {
        Area& area = geometry[layer];
        area.anchor = {clamped(area.anchor.x, 0, canvas.size.width), clamped(area.anchor.y, 0, canvas.size.height)};
        area.size = smallest(area.size, {canvas.size.width - area.anchor.x, canvas.size.height - area.anchor.y});
        area.size = smallest(area.size, effective.size);
    }
}

FDLCanvas canvasOf(const Geometry& geometry, const FDLCanvas& source, const FramingDecision& decision,
                   const CanvasTemplate& canvasTemplate, const std::string& canvasID, double squeeze) {
    FDLCanvas canvas;
    canvas.label = canvasTemplate.label.empty() || source.label.empty() ? canvasTemplate.label + source.label
                                                                           : canvasTemplate.label + ": " + source.label;
    canvas.id = canvasID;
    canvas.sourceCanvasID = source.id;
    canvas.dimensions = geometry[canvasLayer].size;
    canvas.effectiveDimensions = geometry[effectiveLayer].size;
    canvas.effectiveAnchorPoint = geometry[effectiveLayer].anchor;
    canvas.anamorphicSqueeze = squeeze;
    FramingDecision made;
    made.label = decision.label;
    made.id = canvasID + "-" + decision.framingIntentID;
    made.framingIntentID = decision.framingIntentID;
    made.dimensions = geometry[framingLayer].size;
    made.anchorPoint = geometry[framingLayer].anchor;
    if (!geometry[protectionLayer].isEmpty()) {
        made.protectionDimensions = geometry[protectionLayer].size;
        made.protectionAnchorPoint = geometry[protectionLayer].anchor;
    }
    canvas.framingDecisions.push_back(made);
    return canvas;
}

}  // namespace

FDLCanvas applyCanvasTemplate(const FDLCanvas& source, const FramingDecision& decision,
                              const CanvasTemplate& canvasTemplate, const std::string& canvasID) {
    std::size_t fit = layerOf(canvasTemplate.fitSource);
    std::optional<std::size_t> preserve;
    if (canvasTemplate.preserveFromSourceCanvas) preserve = layerOf(*canvasTemplate.preserveFromSourceCanvas);
    if (preserve) requireArea(source, decision, *preserve, "keeps");
    requireArea(source, decision, fit, "fits");

    Geometry geometry = keptLayers(source, decision, fit, preserve);
    bool preserved = preserve && !geometry[*preserve].isEmpty();
    moveOrigin(geometry, geometry[preserved ? *preserve : fit].anchor);

    double squeeze = canvasTemplate.targetAnamorphicSqueeze == 0 ? source.anamorphicSqueeze
                                                                 : canvasTemplate.targetAnamorphicSqueeze;
    Scaling scale = scaling(geometry[fit].size, canvasTemplate, source.anamorphicSqueeze, squeeze);
    for (Area& area : geometry) scale.apply(area);

    const std::optional<FDLDimensions>& maximum = canvasTemplate.maximumDimensions;
    bool padded = maximum && canvasTemplate.padToMaximum;
    const Area& fitted = geometry[fit];
    Axis horizontal{geometry[canvasLayer].size.width, canvasTemplate.targetDimensions.width, fitted.size.width,
                    fitted.anchor.x, maximum ? maximum->width : 0, padded,
                    alignment(canvasTemplate.alignmentMethodHorizontal)};
    Axis vertical{geometry[canvasLayer].size.height, canvasTemplate.targetDimensions.height, fitted.size.height,
                  fitted.anchor.y, maximum ? maximum->height : 0, padded,
                  alignment(canvasTemplate.alignmentMethodVertical)};
    placeOnCanvas(geometry, {horizontal.shift(), vertical.shift()}, {horizontal.output(), vertical.output()});
    roundCanvas(geometry, canvasTemplate, padded, source.effectiveDimensions.has_value());
    return canvasOf(geometry, source, decision, canvasTemplate, canvasID, squeeze);
}

namespace {

constexpr std::size_t longestID = 32;

bool holdsCanvas(const FramingDecisionList& list, const std::string& id) {
    for (const FDLContext& context : list.contexts) {
        for (const FDLCanvas& canvas : context.canvases) {
            if (canvas.id == id) return true;
        }
    }
    return false;
}

std::string newCanvasID(const FramingDecisionList& list, const std::string& sourceID, const std::string& templateID) {
    std::string base = sourceID + "_" + templateID;
    std::string id = base.substr(0, longestID);
    for (int number = 2; holdsCanvas(list, id); ++number) {
        std::string suffix = "_" + std::to_string(number);
        id = base.substr(0, longestID - suffix.size()) + suffix;
    }
    return id;
}

const FramingDecision& chosenDecision(const FDLCanvas& canvas, const std::optional<std::string>& decisionID) {
    if (canvas.framingDecisions.empty()) {
        throw CanvasTemplateError("canvas \"" + canvas.id + "\" has no framing decision to apply the template to");
    }
    if (!decisionID) return canvas.framingDecisions.front();
    for (const FramingDecision& decision : canvas.framingDecisions) {
        if (decision.id == *decisionID) return decision;
    }
    throw CanvasTemplateError("canvas \"" + canvas.id + "\" holds no framing decision \"" + *decisionID + "\"");
}

bool holdsDecision(const FDLCanvas& canvas, const std::string& id) {
    return std::any_of(canvas.framingDecisions.begin(), canvas.framingDecisions.end(),
                       [&id](const FramingDecision& decision) { return decision.id == id; });
}

// A decision asked for without its canvas is looked for on every canvas,
// as the frame-line chart looks for it.
bool isChosen(const FDLCanvas& canvas, const CanvasTemplateSource& source) {
    if (source.canvasID) return canvas.id == *source.canvasID;
    return !source.decisionID || holdsDecision(canvas, *source.decisionID);
}

}  // namespace

FramingDecisionList withCanvasTemplateApplied(const FramingDecisionList& list, const CanvasTemplateSource& source,
                                              const CanvasTemplate& canvasTemplate) {
    for (std::size_t c = 0; c < list.contexts.size(); ++c) {
        const std::vector<FDLCanvas>& canvases = list.contexts[c].canvases;
        for (std::size_t i = 0; i < canvases.size(); ++i) {
            if (!isChosen(canvases[i], source)) continue;
            const FDLCanvas& canvas = canvases[i];
            FDLCanvas made = applyCanvasTemplate(canvas, chosenDecision(canvas, source.decisionID), canvasTemplate,
                                                 newCanvasID(list, canvas.id, canvasTemplate.id));
            FramingDecisionList result = list;
            std::vector<FDLCanvas>& placed = result.contexts[c].canvases;
            placed.insert(placed.begin() + static_cast<std::ptrdiff_t>(i) + 1, std::move(made));
            return result;
        }
    }
    if (source.canvasID) throw CanvasTemplateError("the list holds no canvas \"" + *source.canvasID + "\"");
    if (source.decisionID) {
        throw CanvasTemplateError("the list holds no framing decision \"" + *source.decisionID + "\"");
    }
    throw CanvasTemplateError("the list holds no canvas to apply the template to");
}

}  // namespace vantel
