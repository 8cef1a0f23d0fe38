#pragma once

namespace vantel {

class Drawable;

// An output that drawables are handed to (the SVG document, a recorder).
// Groups flatten themselves into their leaves before they get here; every
// other drawable, a styled shape included, arrives whole.
class DrawingContext {
public:
    virtual ~DrawingContext() = default;
    virtual void addShape(const Drawable& shape) = 0;
};

}  // namespace vantel
