#include <Graphics2/Sketch.hpp>

namespace vantel {

Sketch::~Sketch() = default;

}  // namespace vantel
