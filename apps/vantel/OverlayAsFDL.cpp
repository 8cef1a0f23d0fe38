#include "OverlayAsFDL.hpp"

#include <FramingDecisions/FDLReading.hpp>
#include <FramingDecisions/FDLWriting.hpp>
#include <Platform/UUID.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <utility>

namespace vantel::cli {

namespace {

const std::string canvasID = "overlay";

// What the name-based uuids of our lists are made in, so that they cannot
// meet those of other names.
const UUID& listNameSpace() {
    static const UUID space = *UUID::fromString("DB04B405-4898-433D-A82B-B654E98A2717");
    return space;
}

// "2.39", "16": ratios as people write them, without a forced ".0".
std::string shortestText(double value) {
    char buffer[32];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

// Ids are 1 to 32 letters, digits and underscores: the path with underscores
// for its dots, or for a guide nested too deep for that, its place in
// drawing order (a name no path takes).
std::string intentID(const std::string& path, std::size_t order) {
    std::string id = path;
    std::replace(id.begin(), id.end(), '.', '_');
    return id.size() <= 32 ? id : "guide" + std::to_string(order);
}

// The same ratio in whole numbers, in lowest terms: 239:100 for 2.39:1,
// 37:20 for 1.85:1. A ratio that is no short fraction gets the closest one
// that is (a few parts in 10^10 away at most). Sides stay within 32-bit
// integers, which every reader holds.
FDLDimensions wholeNumberRatio(double width, double height) {
    constexpr double largest = 2147483647;
    constexpr double tolerance = 1e-10;
    const double ratio = width / height;
    if (ratio >= largest) return {largest, 1};
    if (ratio <= 1 / largest) return {1, largest};
    // The continued fraction's convergents, up to the first close enough.
    double numerator = 1, denominator = 0, previousNumerator = 0, previousDenominator = 1;
    double rest = ratio;
    for (int term = 0; term < 64; ++term) {
        const double whole = std::floor(rest);
        const double nextNumerator = whole * numerator + previousNumerator;
        const double nextDenominator = whole * denominator + previousDenominator;
        if (nextNumerator > largest || nextDenominator > largest) break;
        previousNumerator = std::exchange(numerator, nextNumerator);
        previousDenominator = std::exchange(denominator, nextDenominator);
        if (numerator >= 1 && std::fabs(numerator / denominator - ratio) <= tolerance * ratio) break;
        if (rest - whole <= 0) break;
        rest = 1 / (rest - whole);
    }
    return {std::max(numerator, 1.0), std::max(denominator, 1.0)};
}

class DecisionListBuilder {
public:
    DecisionListBuilder(const OverlayGen& document, CGSize pixels)
        : canvasSize_(document.size()),
          scaleX_(pixels.width / canvasSize_.width),
          scaleY_(pixels.height / canvasSize_.height) {
        canvas_.id = canvasID;
        canvas_.sourceCanvasID = canvasID;
        canvas_.label = "overlay canvas";
        canvas_.dimensions = {pixels.width, pixels.height};
    }

    // Each guide laid out as drawing lays it out: the top level fitted into
    // the canvas less its margin, children into their parent's fitted size,
    // all centred on the canvas's centre.
    void addGuides(const std::vector<AspectRatio>& guides, const Size& fitInto, const std::string& parentPath) {
        for (std::size_t i = 0; i < guides.size(); ++i) {
            const AspectRatio& guide = guides[i];
            std::string path = (parentPath.empty() ? "" : parentPath + ".") + std::to_string(i + 1);
            addGuide(guide, guide.box(fitInto, canvasSize_), path);
            if (guide.children) addGuides(*guide.children, guide.fitting(fitInto), path);
        }
    }

    FramingDecisionList finished(FramingDecisionList list) && {
        list.framingIntents = std::move(intents_);
        if (!list.framingIntents.empty()) list.defaultFramingIntent = list.framingIntents.front().id;
        FDLContext context;
        context.label = "overlay";
        context.contextCreator = list.fdlCreator.value_or("");
        context.canvases.push_back(std::move(canvas_));
        list.contexts.push_back(std::move(context));
        return list;
    }

private:
    void addGuide(const AspectRatio& guide, const CGRect& box, const std::string& path) {
        FramingIntent intent;
        intent.id = intentID(path, intents_.size() + 1);
        intent.label = shortestText(guide.width) + ":" + shortestText(guide.height);
        intent.aspectRatio = wholeNumberRatio(guide.width, guide.height);
        FramingDecision decision;
        decision.label = path;
        decision.id = canvasID + "-" + intent.id;
        decision.framingIntentID = intent.id;
        // A guide as wide as the canvas may reach a rounding error past it.
        decision.anchorPoint = {std::max(0.0, box.x * scaleX_), std::max(0.0, box.y * scaleY_)};
        decision.dimensions = {std::min(box.width * scaleX_, canvas_.dimensions.width - decision.anchorPoint.x),
                               std::min(box.height * scaleY_, canvas_.dimensions.height - decision.anchorPoint.y)};
        intents_.push_back(std::move(intent));
        canvas_.framingDecisions.push_back(std::move(decision));
    }

    Size canvasSize_;
    double scaleX_, scaleY_;
    FDLCanvas canvas_;
    std::vector<FramingIntent> intents_;
};

std::string reproducibleUUID(FramingDecisionList list) {
    list.uuid = UUID().uuidString();
    Data bytes = encodeFramingDecisionList(list);
    return UUID::nameBased(listNameSpace(), std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()))
        .uuidString();
}

}  // namespace

FramingDecisionList overlayDecisionList(const OverlayGen& document, CGSize pixels) {
    FramingDecisionList list;
    list.version = {2, 0};
    list.fdlCreator = std::string("vantel ") + VANTEL_VERSION;
    DecisionListBuilder builder(document, pixels);
    builder.addGuides(document.ratios(), document.size(), "");
    return std::move(builder).finished(std::move(list));
}

Data encodeOverlayDecisionList(const OverlayGen& document, CGSize pixels) {
    FramingDecisionList list = overlayDecisionList(document, pixels);
    list.uuid = std::getenv("SOURCE_DATE_EPOCH") ? reproducibleUUID(list) : UUID::random().uuidString();
    Data bytes = encodeFramingDecisionList(list);
    // Our own checker reads back what goes out, so a layout the format cannot
    // hold is refused here rather than in the next program.
    FDLReadResult check = readFramingDecisionList(bytes);
    auto error = std::ranges::find(check.problems, FDLProblem::Severity::error, &FDLProblem::severity);
    if (error != check.problems.end()) {
        throw std::runtime_error("the guides make no valid framing decision list: " + error->path + ": " +
                                 error->message);
    }
    return bytes;
}

}  // namespace vantel::cli
