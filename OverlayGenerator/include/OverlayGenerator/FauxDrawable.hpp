#pragma once

namespace vantel {

// A filler element of the guide groups. It draws nothing of its own: the
// generic path hands it to the context like any drawable, and it is not a
// raster drawable, so raster drawing skips it. Kept in the groups so their
// shape stays what outputs and tests expect.
struct FauxDrawable {
    friend bool operator==(const FauxDrawable&, const FauxDrawable&) = default;
};

}  // namespace vantel
