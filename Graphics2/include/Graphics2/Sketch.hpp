#pragma once

#include <Graphics2/Drawable.hpp>

namespace vantel {

struct Size;

// A page size and the drawable tree drawn on it.
class Sketch {
public:
    virtual ~Sketch();
    virtual Size size() const = 0;
    virtual Drawable body() const = 0;
};

}  // namespace vantel
