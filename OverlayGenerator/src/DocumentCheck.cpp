#include <OverlayGenerator/DocumentCheck.hpp>

#include <OverlayGenerator/AspectRatio.hpp>
#include <OverlayGenerator/Grid.hpp>
#include <Platform/NumberText.hpp>

#include <cmath>
#include <optional>

namespace vantel {

std::string DocumentProblem::text() const {
    return path.empty() ? message : path + ": " + message;
}

namespace {

class DocumentChecker {
public:
    std::vector<DocumentProblem> problems;
    // The most grid lines the guides checked so far can draw.
    double gridLines = 0;
    // What every guide is centred on.
    Size canvas;

    void checkCanvas(const Size& size) {
        // Each check runs, so that every bad value is named.
        bool widthFinite = checkLength("size.width", size.width, "canvas width");
        bool heightFinite = checkLength("size.height", size.height, "canvas height");
        bool marginFinite = checkLength("size.margin", size.margin, "margin");
        if (!widthFinite || !heightFinite || !marginFinite) return;
        std::string dimensions = numberText(size.width) + " x " + numberText(size.height);
        if (std::trunc(size.width) < 1 || std::trunc(size.height) < 1) {
            report("size", "canvas " + dimensions + " is smaller than one pixel");
        } else if (size.width > DrawingLimits::maxCanvasSide || size.height > DrawingLimits::maxCanvasSide) {
            report("size", "canvas " + dimensions + " is larger than the limit of " +
                               limitText(DrawingLimits::maxCanvasSide) + " px a side");
        } else if (size.marginWidth() <= 0 || size.marginHeight() <= 0) {
            report("size.margin", "margin " + numberText(size.margin) + " leaves no room on a " +
                                      dimensions + " canvas");
        }
    }

    void checkColor(const std::string& path, const Color& color) {
        const std::pair<const char*, double> components[] = {
            {"red", color.red}, {"green", color.green}, {"blue", color.blue}, {"alpha", color.alpha}};
        for (const auto& [name, value] : components) {
            if (!std::isfinite(value)) report(path + "." + name, numberText(value) + " is not a finite number");
        }
    }

    // Checks a guide and its children. `box` is the size the guide is fitted
    // into; without one (an unusable canvas) the layout-dependent grid checks
    // are left out.
    void checkGuide(const std::string& path, const AspectRatio& guide, const std::optional<Size>& box,
                    int depth) {
        if (depth > DrawingLimits::maxGuideDepth) {
            report(path, "guides nested deeper than " + std::to_string(DrawingLimits::maxGuideDepth) +
                             " levels cannot be drawn");
            return;
        }
        bool widthUsable = checkRatioSide(path + ".width", guide.width);
        bool heightUsable = checkRatioSide(path + ".height", guide.height);
        bool sidesUsable = widthUsable && heightUsable && checkRatio(path, guide);
        bool weightUsable = checkLength(path + ".weight", guide.weight, "weight");
        checkColor(path + ".color", guide.color);
        checkColor(path + ".fillColor", guide.fillColor);
        std::optional<Size> fitted;
        if (box && sidesUsable && weightUsable) {
            fitted = guide.fitting(*box);
            Rectangle outline = guide.outline(*box, canvas);
            checkGrid(path + ".rowType", guide.rowType, outline.height);
            checkGrid(path + ".columnType", guide.columnType, outline.width);
        }
        if (!guide.children) return;
        for (std::size_t i = 0; i < guide.children->size(); ++i) {
            checkGuide(path + ".children[" + std::to_string(i) + "]", (*guide.children)[i], fitted, depth + 1);
        }
    }

    void checkGridLinesInAll() {
        if (gridLines <= DrawingLimits::maxDocumentGridLines) return;
        report("ratios", "the guides would draw " + limitText(gridLines) +
                             " grid lines in all, more than the limit of " +
                             limitText(DrawingLimits::maxDocumentGridLines));
    }

private:
    void report(std::string path, std::string message) {
        problems.push_back({std::move(path), std::move(message)});
    }

    static std::string limitText(double limit) {
        return std::to_string(static_cast<std::int64_t>(limit));
    }

    bool checkLength(const std::string& path, double value, const std::string& what) {
        if (!std::isfinite(value)) {
            report(path, numberText(value) + " is not a finite number");
            return false;
        }
        if (value < 0) {
            report(path, what + " " + numberText(value) + " is negative");
            return false;
        }
        return true;
    }

    bool checkRatioSide(const std::string& path, double value) {
        if (!std::isfinite(value)) {
            report(path, numberText(value) + " is not a finite number");
            return false;
        }
        if (value <= 0) {
            report(path, "a guide needs a positive ratio side, not " + numberText(value));
            return false;
        }
        if (value > DrawingLimits::maxRatioSide) {
            report(path, numberText(value) + " is larger than the limit of " + numberText(DrawingLimits::maxRatioSide));
            return false;
        }
        return true;
    }

    // Sides far apart in size give a ratio of 0 or infinity, which lays out to
    // a guide with no width or height, or with a NaN side inside it.
    bool checkRatio(const std::string& path, const AspectRatio& guide) {
        const double ratio = guide.ratio();
        if (ratio > 0 && std::isfinite(ratio)) return true;
        report(path, "a guide of " + numberText(guide.width) + " by " + numberText(guide.height) +
                         " has no usable ratio (width / height is " + numberText(ratio) + ")");
        return false;
    }

    // Lines are counted by the layout's own gridLineCount, so the limits hold
    // for what drawing draws.
    void checkGrid(const std::string& path, const GridType& grid, double side) {
        if (grid.tag == GridType::Case::none) return;
        std::string sideText = " on a side of " + numberText(side) + " px";
        if (!std::isfinite(side)) {
            report(path, "a grid" + sideText + " cannot be drawn");
            return;
        }
        std::string what = (grid.tag == GridType::Case::divisor ? "divisor " : "a line every ") +
                           std::to_string(grid.payload) + (grid.tag == GridType::Case::divisor ? "" : " px");
        if (gridStepIsZero(grid, side)) {
            report(path, what + sideText + " would give a zero grid step");
            return;
        }
        double lines = gridLineCount(grid, side);
        if (lines > DrawingLimits::maxGridLines) {
            report(path, what + sideText + " would draw more than " + limitText(DrawingLimits::maxGridLines) +
                             " grid lines");
        } else {
            gridLines += lines;
        }
    }
};

// Adds up what drawing costs at a scale: every guide over the whole picture,
// every grid line over its length, on the layout drawing uses.
class CostCounter {
public:
    double guides = 0;
    double linePixels = 0;

    CostCounter(const Size& canvas, double scaleX, double scaleY)
        : canvas_(canvas), scaleX_(scaleX), scaleY_(scaleY) {}

    void count(const std::vector<AspectRatio>& ratios, const Size& box) {
        for (const AspectRatio& guide : ratios) {
            guides += 1;
            Rectangle outline = guide.outline(box, canvas_);
            linePixels += gridLineCount(guide.rowType, outline.height) * outline.width * scaleX_;
            linePixels += gridLineCount(guide.columnType, outline.width) * outline.height * scaleY_;
            if (guide.children) count(*guide.children, guide.fitting(box));
        }
    }

private:
    Size canvas_;
    double scaleX_, scaleY_;
};

// Counts and pixel sizes as whole numbers; past what an integer holds (a
// vector page zoomed without end), in the usual number text.
std::string wholeNumber(double value) {
    if (std::abs(value) < 9e18) return std::to_string(std::llround(value));
    return numberText(value);
}

}  // namespace

std::vector<DocumentProblem> checkDrawingCost(const OverlayGen& document, CGSize drawn) {
    const Size canvas = document.size();
    CostCounter cost(canvas, drawn.width / canvas.width, drawn.height / canvas.height);
    cost.count(document.ratios(), canvas);
    const std::string picture = wholeNumber(drawn.width) + " x " + wholeNumber(drawn.height) + " px";
    std::vector<DocumentProblem> problems;
    const double guidePixels = cost.guides * drawn.width * drawn.height;
    if (guidePixels > DrawingLimits::maxGuidePixels) {
        problems.push_back({"ratios", wholeNumber(cost.guides) + " guides drawn at " + picture + " cost " +
                                          wholeNumber(guidePixels) + " guide pixels, more than the limit of " +
                                          wholeNumber(DrawingLimits::maxGuidePixels)});
    }
    if (cost.linePixels > DrawingLimits::maxGridLinePixels) {
        problems.push_back({"ratios", "the grid lines drawn at " + picture + " cover " +
                                          wholeNumber(cost.linePixels) + " pixels of line, more than the limit of " +
                                          wholeNumber(DrawingLimits::maxGridLinePixels)});
    }
    return problems;
}

std::vector<DocumentProblem> checkDocument(const OverlayGen& document) {
    DocumentChecker checker;
    const Size size = document.size();
    checker.canvas = size;
    checker.checkCanvas(size);
    std::optional<Size> box;
    if (checker.problems.empty()) box = size;
    checker.checkColor("backgroundColor", document.backgroundColor());
    const auto& ratios = document.ratios();
    for (std::size_t i = 0; i < ratios.size(); ++i) {
        checker.checkGuide("ratios[" + std::to_string(i) + "]", ratios[i], box, 1);
    }
    checker.checkGridLinesInAll();
    return checker.problems;
}

}  // namespace vantel
