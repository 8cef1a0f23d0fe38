#pragma once

namespace vantel {

// Draws nothing in any output: the body of an empty builder block or of an
// `if` without a branch taken.
struct EmptyDrawable {
    friend bool operator==(const EmptyDrawable&, const EmptyDrawable&) = default;
};

}  // namespace vantel
