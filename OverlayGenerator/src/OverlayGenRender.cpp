#include <OverlayGenerator/OverlayGen.hpp>

#include <CoreGraphicsRendering/CoreGraphicsRenderer.hpp>

namespace vantel {

Data OverlayGen::render() const {
    CoreGraphicsRenderer renderer(*this);
    return renderer.render(NSBitmapImageFileType::png);
}

}  // namespace vantel
