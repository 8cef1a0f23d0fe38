#include <FramingDecisions/FramingDecisionList.hpp>

#include <cmath>

namespace vantel {

namespace {

// Lists written by other programs carry the last digits of their own
// arithmetic (3710.7000000000003); a millionth of a pixel is not a framing.
constexpr double edgeTolerance = 1e-6;

}  // namespace

FDLRect FDLRect::snapped() const {
    double left = std::round(anchor.x), top = std::round(anchor.y);
    return {{left, top}, {std::round(right()) - left, std::round(bottom()) - top}};
}

bool FDLRect::contains(const FDLRect& other) const {
    return other.anchor.x >= anchor.x - edgeTolerance && other.anchor.y >= anchor.y - edgeTolerance &&
           other.right() <= right() + edgeTolerance && other.bottom() <= bottom() + edgeTolerance;
}

std::optional<FDLRect> FramingDecision::protection() const {
    if (!protectionDimensions) return std::nullopt;
    return FDLRect{protectionAnchorPoint.value_or(FDLPoint{}), *protectionDimensions};
}

FDLRect FDLCanvas::effectiveArea() const {
    if (!effectiveDimensions) return area();
    return {effectiveAnchorPoint.value_or(FDLPoint{}), *effectiveDimensions};
}

double FDLCanvas::desqueezedAspect(const FDLDimensions& size) const {
    return size.width * anamorphicSqueeze / size.height;
}

const FramingIntent* FramingDecisionList::intent(const std::string& id) const {
    for (const FramingIntent& candidate : framingIntents) {
        if (candidate.id == id) return &candidate;
    }
    return nullptr;
}

}  // namespace vantel
