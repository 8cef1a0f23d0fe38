#include <CoreGraphicsRendering/SVGDocument.hpp>

#include "PageSize.hpp"

#include <Graphics2/Color.hpp>
#include <Graphics2/Numeric.hpp>
#include <Graphics2/SVGElement.hpp>
#include <Platform/XML.hpp>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace vantel {

namespace {

struct Point {
    double x = 0;
    double y = 0;
};

CGAffineTransform concatenated(const CGAffineTransform& first, const CGAffineTransform& then) {
    return {first.a * then.a + first.b * then.c,
            first.a * then.b + first.b * then.d,
            first.c * then.a + first.d * then.c,
            first.c * then.b + first.d * then.d,
            first.tx * then.a + first.ty * then.c + then.tx,
            first.tx * then.b + first.ty * then.d + then.ty};
}

Point applied(const CGAffineTransform& m, Point p) {
    return {m.a * p.x + m.c * p.y + m.tx, m.b * p.x + m.d * p.y + m.ty};
}

std::optional<CGAffineTransform> inverted(const CGAffineTransform& m) {
    const double determinant = m.a * m.d - m.b * m.c;
    if (determinant == 0 || !std::isfinite(determinant)) return std::nullopt;
    return CGAffineTransform{m.d / determinant,
                             -m.b / determinant,
                             -m.c / determinant,
                             m.a / determinant,
                             (m.c * m.ty - m.d * m.tx) / determinant,
                             (m.b * m.tx - m.a * m.ty) / determinant};
}

bool isFinite(const CGAffineTransform& m) {
    for (double value : {m.a, m.b, m.c, m.d, m.tx, m.ty}) {
        if (!std::isfinite(value)) return false;
    }
    return true;
}

// The shortest text that reads back as the same double: path data is most
// of the file, and "10" is as exact as "10.0".
std::string number(double value) {
    std::array<char, 32> buffer{};
    auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return std::string(buffer.data(), end);
}

std::string matrixText(const CGAffineTransform& m) {
    return "matrix(" + number(m.a) + " " + number(m.b) + " " + number(m.c) + " " + number(m.d) + " " +
           number(m.tx) + " " + number(m.ty) + ")";
}

std::string rectanglePath(const CGRect& rect) {
    return "M" + number(rect.x) + " " + number(rect.y) + "h" + number(rect.width) + "v" + number(rect.height) +
           "h" + number(-rect.width) + "Z";
}

bool isFinite(const CGRect& rect) {
    return std::isfinite(rect.x) && std::isfinite(rect.y) && std::isfinite(rect.width) &&
           std::isfinite(rect.height);
}

// Cairo clamps colour components to 0...1; so must the text.
Color clampedColor(const Color& color) {
    return {clamped(color.red, 0.0, 1.0), clamped(color.green, 0.0, 1.0), clamped(color.blue, 0.0, 1.0),
            clamped(color.alpha, 0.0, 1.0)};
}

// What saveGState keeps: the platform defaults are black fill and stroke and
// a line width of 1.
struct GraphicsState {
    CGAffineTransform ctm;
    Color fill{0, 0, 0, 1};
    Color stroke{0, 0, 0, 1};
    double lineWidth = 1;
    std::vector<double> dash;  // solid when empty
};

class SVGPageContext final : public CGContext {
public:
    explicit SVGPageContext(CGSize size) : size_(size) {}

    void saveGState() override { saved_.push_back(state_); }
    void restoreGState() override {
        if (saved_.empty()) return;
        state_ = saved_.back();
        saved_.pop_back();
    }

    void setStrokeColor(double r, double g, double b, double a) override { state_.stroke = Color(r, g, b, a); }
    void setFillColor(double r, double g, double b, double a) override { state_.fill = Color(r, g, b, a); }
    void setLineWidth(double width) override { state_.lineWidth = width; }
    void setLineDash(std::span<const double> lengths) override;

    void rotateCTM(double radians) override {
        const double c = std::cos(radians), s = std::sin(radians);
        concatCTM({c, s, -s, c, 0, 0});
    }
    void translateCTM(double tx, double ty) override { concatCTM({1, 0, 0, 1, tx, ty}); }
    void scaleCTM(double sx, double sy) override { concatCTM({sx, 0, 0, sy, 0, 0}); }
    void concatCTM(const CGAffineTransform& transform) override {
        state_.ctm = concatenated(transform, state_.ctm);
    }

    // Points are kept on the page, as cairo keeps them, so that a change of
    // transformation between building and stroking a path moves nothing.
    void moveTo(double x, double y) override { path_.push_back({applied(state_.ctm, {x, y})}); }
    void addLineTo(double x, double y) override {
        if (path_.empty()) path_.emplace_back();
        path_.back().push_back(applied(state_.ctm, {x, y}));
    }
    void strokePath() override;

    void fillRect(const CGRect& rect) override;
    void strokeRect(const CGRect& rect) override;
    void clearRect(const CGRect& rect) override;

    Data document() &&;

private:
    XMLElement shapeElement(std::string data) const;
    // A stroke of no width leaves no trace in a bitmap; leave it out here.
    bool drawsStroke() const { return std::isfinite(state_.lineWidth) && state_.lineWidth > 0; }
    void paint(XMLElement element) { drawn_.push_back({std::move(element), holes_.size()}); }

    struct Hole {
        CGRect rect;
        CGAffineTransform ctm;
    };
    struct HoleBlock {
        std::size_t first = 0;
        std::size_t count = 0;
        auto operator<=>(const HoleBlock&) const = default;
    };
    static std::string maskId(std::size_t firstHole) { return "clear" + std::to_string(firstHole + 1); }
    static std::string blockId(HoleBlock block) {
        return "holes" + std::to_string(block.first + 1) + "-" + std::to_string(block.first + block.count);
    }
    XMLElement holeElement(const Hole& hole) const;
    XMLElement holeBlock(HoleBlock block) const;
    std::vector<HoleBlock> blocksFrom(std::size_t first) const;
    XMLElement maskFrom(std::size_t first, std::set<HoleBlock>& usedBlocks) const;
    static bool covers(const Hole& outer, const Hole& inner);
    void dropCoveredHoles();
    std::vector<XMLElement> maskedRuns(XMLElement& definitions);

    CGSize size_;
    GraphicsState state_;
    std::vector<GraphicsState> saved_;
    std::vector<std::vector<Point>> path_;
    struct Drawn {
        XMLElement element;
        std::size_t clearsBefore;
    };
    std::vector<Drawn> drawn_;  // in order, each with the number of clears before it
    std::vector<Hole> holes_;
};

XMLElement SVGPageContext::shapeElement(std::string data) const {
    XMLElement element("path");
    element.addAttribute("d", data);
    const CGAffineTransform& ctm = state_.ctm;
    if (ctm != CGAffineTransform{}) element.addAttribute("transform", matrixText(ctm));
    return element;
}

void SVGPageContext::fillRect(const CGRect& rect) {
    if (!isFinite(rect) || !isFinite(state_.ctm)) return;
    XMLElement element = shapeElement(rectanglePath(rect));
    fillColor(element, clampedColor(state_.fill));
    paint(std::move(element));
}

// Cairo's stroke: butt caps, mitred joins up to a limit of 10, the width in
// the user space of the moment of stroking.
void addStroke(XMLElement& element, const GraphicsState& state) {
    fillColor(element, std::nullopt);
    strokeColor(element, clampedColor(state.stroke));
    if (state.lineWidth != 1) element.addAttribute("stroke-width", number(state.lineWidth));
    element.addAttribute("stroke-miterlimit", "10");
    if (state.dash.empty()) return;
    std::string lengths;
    for (double length : state.dash) lengths += (lengths.empty() ? "" : " ") + number(length);
    element.addAttribute("stroke-dasharray", lengths);
}

// As on cairo: a pattern it would refuse strokes solid.
void SVGPageContext::setLineDash(std::span<const double> lengths) {
    state_.dash.clear();
    if (!isUsableDash(lengths)) return;
    state_.dash.assign(lengths.begin(), lengths.end());
}

void SVGPageContext::strokeRect(const CGRect& rect) {
    if (!isFinite(rect) || !isFinite(state_.ctm) || !drawsStroke()) return;
    XMLElement element = shapeElement(rectanglePath(rect));
    addStroke(element, state_);
    paint(std::move(element));
}

void SVGPageContext::strokePath() {
    std::vector<std::vector<Point>> path = std::exchange(path_, {});
    const std::optional<CGAffineTransform> toUser = inverted(state_.ctm);
    if (!toUser || !isFinite(*toUser) || !drawsStroke()) return;
    std::string data;
    for (const std::vector<Point>& subpath : path) {
        for (std::size_t i = 0; i < subpath.size(); ++i) {
            const Point user = applied(*toUser, subpath[i]);
            if (!std::isfinite(user.x) || !std::isfinite(user.y)) return;
            data += (i == 0 ? "M" : "L") + number(user.x) + " " + number(user.y);
        }
    }
    if (data.empty()) return;
    XMLElement element = shapeElement(std::move(data));
    addStroke(element, state_);
    paint(std::move(element));
}

// A clear is kept as its rectangle and transformation; what it cuts is
// decided when the document is written, once every later clear is known.
void SVGPageContext::clearRect(const CGRect& rect) {
    if (!isFinite(rect) || !isFinite(state_.ctm) || drawn_.empty()) return;
    holes_.push_back({rect, state_.ctm});
}

XMLElement SVGPageContext::holeElement(const Hole& hole) const {
    XMLElement element("path");
    element.addAttribute("d", rectanglePath(hole.rect));
    if (hole.ctm != CGAffineTransform{}) element.addAttribute("transform", matrixText(hole.ctm));
    element.addAttribute("fill", "#000000");
    return element;
}

CGRect withPositiveSides(CGRect rect) {
    if (rect.width < 0) rect = {rect.x + rect.width, rect.y, -rect.width, rect.height};
    if (rect.height < 0) rect = {rect.x, rect.y + rect.height, rect.width, -rect.height};
    return rect;
}

bool SVGPageContext::covers(const Hole& outer, const Hole& inner) {
    if (outer.ctm != inner.ctm) return false;
    const CGRect a = withPositiveSides(outer.rect), b = withPositiveSides(inner.rect);
    return a.x <= b.x && a.y <= b.y && b.x + b.width <= a.x + a.width && b.y + b.height <= a.y + a.height;
}

// A hole that a later one repeats, or that the next hole kept covers, cuts
// nothing the later one does not: whatever it cuts, that one cuts too.
// Guides that repeat a ratio clear the same rectangle again and again, so
// this keeps masks few and short for most documents.
void SVGPageContext::dropCoveredHoles() {
    std::set<std::array<double, 10>> later;
    std::vector<bool> kept(holes_.size(), false);
    std::optional<std::size_t> nextKept;
    for (std::size_t i = holes_.size(); i-- > 0;) {
        const Hole& hole = holes_[i];
        const auto& [x, y, width, height] = hole.rect;
        const auto& [a, b, c, d, tx, ty] = hole.ctm;
        if (!later.insert({x, y, width, height, a, b, c, d, tx, ty}).second) continue;
        if (nextKept && covers(holes_[*nextKept], hole)) continue;
        kept[i] = true;
        nextKept = i;
    }
    std::vector<std::size_t> keptBefore{0};
    std::vector<Hole> keptHoles;
    for (std::size_t i = 0; i < holes_.size(); ++i) {
        if (kept[i]) keptHoles.push_back(holes_[i]);
        keptBefore.push_back(keptHoles.size());
    }
    for (Drawn& drawn : drawn_) drawn.clearsBefore = keptBefore[drawn.clearsBefore];
    holes_ = std::move(keptHoles);
}

// The holes first..first+count-1 as one group that masks refer to.
XMLElement SVGPageContext::holeBlock(HoleBlock block) const {
    XMLElement group("g");
    group.addAttribute("id", blockId(block));
    for (std::size_t i = block.first; i < block.first + block.count; ++i) group.addChild(holeElement(holes_[i]));
    return group;
}

// The holes from `first` to the last one, in blocks of a power of two that
// start at a multiple of their size: any run to the end is a few such
// blocks, and all runs together share them, so the masks of n clears hold
// about n log n holes instead of n squared, each mask a flat list.
std::vector<SVGPageContext::HoleBlock> SVGPageContext::blocksFrom(std::size_t first) const {
    std::vector<HoleBlock> blocks;
    const std::size_t end = holes_.size();
    while (first < end) {
        std::size_t count = first == 0 ? std::bit_floor(end) : first & (~first + 1);
        while (first + count > end) count /= 2;
        blocks.push_back({first, count});
        first += count;
    }
    return blocks;
}

// White shows, black is cut: the canvas less every hole from `first` on.
XMLElement SVGPageContext::maskFrom(std::size_t first, std::set<HoleBlock>& usedBlocks) const {
    XMLElement mask("mask");
    mask.addAttribute("id", maskId(first));
    mask.addAttribute("maskUnits", "userSpaceOnUse");
    for (auto [key, value] : {std::pair{"x", 0.0}, {"y", 0.0}, {"width", size_.width}, {"height", size_.height}}) {
        mask.addAttribute(key, number(value));
    }
    XMLElement canvas("path");
    canvas.addAttribute("d", rectanglePath({0, 0, size_.width, size_.height}));
    canvas.addAttribute("fill", "#FFFFFF");
    mask.addChild(std::move(canvas));
    for (HoleBlock block : blocksFrom(first)) {
        if (block.count == 1) {
            mask.addChild(holeElement(holes_[block.first]));
            continue;
        }
        XMLElement use("use");
        use.addAttribute("xlink:href", "#" + blockId(block));
        mask.addChild(std::move(use));
        usedBlocks.insert(block);
    }
    return mask;
}

// Whatever the number of clears, the tree is at most four levels deep: the
// masks and the blocks they share are siblings in <defs>, and each run of
// shapes drawn between two clears is one group under the root, masked by
// every clear that came after it.
std::vector<XMLElement> SVGPageContext::maskedRuns(XMLElement& definitions) {
    std::set<HoleBlock> usedBlocks;
    std::vector<XMLElement> runs;
    for (std::size_t i = 0; i < drawn_.size();) {
        const std::size_t clearsBefore = drawn_[i].clearsBefore;
        if (clearsBefore == holes_.size()) {
            runs.push_back(std::move(drawn_[i++].element));
            continue;
        }
        definitions.addChild(maskFrom(clearsBefore, usedBlocks));
        XMLElement group("g");
        group.addAttribute("mask", "url(#" + maskId(clearsBefore) + ")");
        for (; i < drawn_.size() && drawn_[i].clearsBefore == clearsBefore; ++i) {
            group.addChild(std::move(drawn_[i].element));
        }
        runs.push_back(std::move(group));
    }
    for (HoleBlock block : usedBlocks) definitions.addChild(holeBlock(block));
    return runs;
}

Data SVGPageContext::document() && {
    XMLElement root("svg");
    root.addAttribute("xmlns", "http://www.w3.org/2000/svg");
    root.addAttribute("width", number(size_.width));
    root.addAttribute("height", number(size_.height));
    root.addAttribute("viewBox", "0 0 " + number(size_.width) + " " + number(size_.height));
    dropCoveredHoles();
    XMLElement definitions("defs");
    std::vector<XMLElement> content = maskedRuns(definitions);
    if (!holes_.empty()) {
        // Masks refer to blocks of holes with xlink:href, which every reader knows.
        root.addAttribute("xmlns:xlink", "http://www.w3.org/1999/xlink");
        root.addChild(std::move(definitions));
    }
    for (XMLElement& element : content) root.addChild(std::move(element));
    const std::string text = XMLDocument(std::move(root)).xmlString(true);
    return Data(text.begin(), text.end());
}

}  // namespace

Data drawSVG(CGSize size, const std::function<void(CGContext&)>& draw) {
    checkPageSize(size, "SVG picture");
    SVGPageContext context(size);
    draw(context);
    return std::move(context).document();
}

}  // namespace vantel
