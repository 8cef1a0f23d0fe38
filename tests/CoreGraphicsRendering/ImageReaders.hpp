#pragma once

#include <Platform/Data.hpp>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vantel::testing {

// A decoded picture as straight R, G, B, A bytes, top row first.
struct DecodedImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;

    std::array<int, 4> at(int x, int y) const {
        const std::uint8_t* p = rgba.data() + 4 * (static_cast<std::size_t>(y) * width + x);
        return {p[0], p[1], p[2], p[3]};
    }
};

// Each reader uses the format's standard library (BMP: a header parser of
// the test's own) and throws std::runtime_error naming what it rejected.
DecodedImage readPNG(const Data& file);
DecodedImage readTIFF(const Data& file);
DecodedImage readBMP(const Data& file);
DecodedImage readGIF(const Data& file);   // transparent index reads (0, 0, 0, 0)
DecodedImage readJPEG(const Data& file);  // alpha 255
DecodedImage readJPEG2000(const Data& file);

}  // namespace vantel::testing
