#include <Graphics2/GroupDrawable.hpp>

namespace vantel {

void GroupDrawable::draw(DrawingContext& context) const {
    for (const Drawable& shape : shapes) shape.draw(context);
}

void GroupDrawable::draw(CGContext& context) const {
    for (const Drawable& shape : shapes) shape.draw(context);
}

}  // namespace vantel
