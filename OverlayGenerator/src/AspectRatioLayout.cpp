#include <OverlayGenerator/AspectRatio.hpp>

#include <Graphics2/Angle.hpp>
#include <Graphics2/Drawable.hpp>
#include <Graphics2/Rectangle.hpp>
#include <OverlayGenerator/FauxDrawable.hpp>
#include <OverlayGenerator/Grid.hpp>
#include <Platform/Fatal.hpp>

#include <string>
#include <utility>

namespace vantel {

constinit thread_local std::optional<Size> fittingSize;
constinit thread_local std::optional<Size> centeringSize;

namespace {

GroupDrawable oneElementGroup(Drawable drawable) {
    return GroupDrawable{std::vector<Drawable>{std::move(drawable)}};
}

const Size& layoutSize(const std::optional<Size>& size, const char* name) {
    if (!size) {
        fatalError(std::string("Guide layout needs ") + name +
                   ", which is unset: lay guides out from a document body or pass the sizes");
    }
    return *size;
}

}  // namespace

void AspectRatio::rotate() { std::swap(width, height); }

Size AspectRatio::fitting(const Size& size) const {
    double r = ratio();
    double availableWidth = size.marginWidth();
    double availableHeight = size.marginHeight();
    if (r < availableWidth / availableHeight) return Size(r * availableHeight, availableHeight, 0);
    return Size(availableWidth, availableWidth / r, 0);
}

CGRect AspectRatio::box(const Size& fitInto, const Size& centreOn) const {
    Size fitted = fitting(fitInto);
    Vector centre = centreOn.center();
    return {centre.x - fitted.width / 2, centre.y - fitted.height / 2, fitted.width, fitted.height};
}

Rectangle AspectRatio::outline(const Size& fitInto, const Size& centreOn) const {
    Size fitted = fitting(fitInto);
    return Rectangle(centreOn.center(), fitted.width - weight, fitted.height - weight, Angle::fromDegrees(0));
}

GroupDrawable AspectRatio::drawing(const Size& fitInto, const Size& centreOn) const {
    Size fitted = fitting(fitInto);
    Drawable styled = Drawable(Grid{outline(fitInto, centreOn), rowType, columnType, clearParent})
                          .fillColor(fillColor)
                          .strokeColor(color)
                          .strokeWidth(weight);

    std::vector<Drawable> laidOutChildren;
    if (children) {
        for (const AspectRatio& child : *children) {
            laidOutChildren.push_back(oneElementGroup(child.drawing(fitted, centreOn)));
        }
    }
    return GroupDrawable{std::vector<Drawable>{
        std::move(styled), FauxDrawable{}, GroupDrawable{std::move(laidOutChildren)}, FauxDrawable{}}};
}

GroupDrawable AspectRatio::drawing() const {
    const Size& fitInto = layoutSize(fittingSize, "fittingSize");
    const Size& centreOn = layoutSize(centeringSize, "centeringSize");
    return drawing(fitInto, centreOn);
}

}  // namespace vantel
