// GIF through giflib. GIF holds at most 256 colours and one fully
// transparent index, so the picture is reduced first:
// - a pixel less than half opaque becomes transparent, any other keeps its
//   straight colour, fully opaque (GIF has no partial transparency);
// - with at most 256 colours (the transparent index included) the palette
//   is exact and the file lossless;
// - otherwise the palette is the most frequent colours and every other
//   colour takes its nearest palette entry. Overlays are a few flat colours
//   plus anti-aliased blends at edges, so the flat colours stay exact.

#include "Encoders.hpp"

#include <gif_lib.h>

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <vector>

namespace vantel {

namespace {

constexpr std::uint32_t transparentKey = 0xffffffffu;
constexpr std::size_t paletteLimit = 256;

// Each pixel as 0x00RRGGBB, or transparentKey.
std::vector<std::uint32_t> colourKeys(const ImageView& image) {
    std::vector<std::uint32_t> keys(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
    std::vector<std::uint32_t> words(static_cast<std::size_t>(image.width));
    const auto* rgba = reinterpret_cast<const std::uint8_t*>(words.data());
    auto key = keys.begin();
    for (int y = 0; y < image.height; ++y) {
        pixels::straightRow(image, y, words.data());
        for (std::size_t i = 0; i < 4 * words.size(); i += 4) {
            bool opaqueEnough = rgba[i + 3] >= 128;
            *key++ = opaqueEnough ? std::uint32_t(rgba[i]) << 16 | std::uint32_t(rgba[i + 1]) << 8 | rgba[i + 2]
                                  : transparentKey;
        }
    }
    return keys;
}

std::unordered_map<std::uint32_t, std::uint64_t> histogram(const std::vector<std::uint32_t>& keys) {
    std::unordered_map<std::uint32_t, std::uint64_t> counts;
    for (std::size_t i = 0; i < keys.size();) {
        std::size_t run = i + 1;  // flat areas: count runs, not pixels
        while (run < keys.size() && keys[run] == keys[i]) ++run;
        counts[keys[i]] += run - i;
        i = run;
    }
    return counts;
}

// The palette, transparency first if present, most frequent colours after.
std::vector<std::uint32_t> choosePalette(const std::unordered_map<std::uint32_t, std::uint64_t>& counts) {
    std::vector<std::pair<std::uint32_t, std::uint64_t>> byCount(counts.begin(), counts.end());
    std::sort(byCount.begin(), byCount.end(), [](const auto& a, const auto& b) {
        if ((a.first == transparentKey) != (b.first == transparentKey)) return a.first == transparentKey;
        return a.second != b.second ? a.second > b.second : a.first < b.first;
    });
    std::vector<std::uint32_t> palette;
    for (std::size_t i = 0; i < byCount.size() && i < paletteLimit; ++i) palette.push_back(byCount[i].first);
    return palette;
}

int squaredDistance(std::uint32_t a, std::uint32_t b) {
    int total = 0;
    for (int shift = 0; shift <= 16; shift += 8) {
        int d = int((a >> shift) & 0xff) - int((b >> shift) & 0xff);
        total += d * d;
    }
    return total;
}

GifByteType nearestIndex(std::uint32_t key, const std::vector<std::uint32_t>& palette) {
    std::size_t best = 0;
    int bestDistance = 1 << 30;
    for (std::size_t i = 0; i < palette.size(); ++i) {
        if (palette[i] == transparentKey) continue;
        int distance = squaredDistance(key, palette[i]);
        if (distance < bestDistance) bestDistance = distance, best = i;
    }
    return static_cast<GifByteType>(best);
}

// Palette index of every pixel.
std::vector<GifByteType> indexPixels(const std::vector<std::uint32_t>& keys, const std::vector<std::uint32_t>& palette) {
    std::unordered_map<std::uint32_t, GifByteType> indexOf;
    for (std::size_t i = 0; i < palette.size(); ++i) indexOf[palette[i]] = static_cast<GifByteType>(i);
    std::vector<GifByteType> indices(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (i > 0 && keys[i] == keys[i - 1]) {
            indices[i] = indices[i - 1];
            continue;
        }
        auto [entry, isNew] = indexOf.try_emplace(keys[i], 0);
        if (isNew) entry->second = nearestIndex(keys[i], palette);
        indices[i] = entry->second;
    }
    return indices;
}

int appendToData(GifFileType* gif, const GifByteType* bytes, int length) {
    auto* out = static_cast<Data*>(gif->UserData);
    out->insert(out->end(), bytes, bytes + length);
    return length;
}

struct CloseGIF {
    void operator()(GifFileType* gif) const { EGifCloseFile(gif, nullptr); }
};
struct FreeColourMap {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};

std::unique_ptr<ColorMapObject, FreeColourMap> colourMap(const std::vector<std::uint32_t>& palette) {
    std::vector<GifColorType> colours(std::size_t(1) << GifBitSize(static_cast<int>(palette.size())), GifColorType{0, 0, 0});
    for (std::size_t i = 0; i < palette.size(); ++i) {
        if (palette[i] == transparentKey) continue;
        colours[i] = GifColorType{static_cast<GifByteType>(palette[i] >> 16), static_cast<GifByteType>(palette[i] >> 8),
                                  static_cast<GifByteType>(palette[i])};
    }
    return std::unique_ptr<ColorMapObject, FreeColourMap>(GifMakeMapObject(static_cast<int>(colours.size()), colours.data()));
}

bool putTransparency(GifFileType* gif) {
    GraphicsControlBlock control{};
    control.DisposalMode = DISPOSAL_UNSPECIFIED;
    control.TransparentColor = 0;  // the palette puts transparency first
    GifByteType extension[4];
    std::size_t length = EGifGCBToExtension(&control, extension);
    return EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(length), extension) == GIF_OK;
}

bool writeGIF(Data& out, const ImageView& image, const std::vector<std::uint32_t>& palette,
              std::vector<GifByteType>& indices) {
    auto map = colourMap(palette);
    int error = 0;
    std::unique_ptr<GifFileType, CloseGIF> gif(EGifOpen(&out, appendToData, &error));
    if (!map || !gif) return false;
    EGifSetGifVersion(gif.get(), true);
    if (EGifPutScreenDesc(gif.get(), image.width, image.height, 8, 0, map.get()) != GIF_OK) return false;
    if (palette.front() == transparentKey && !putTransparency(gif.get())) return false;
    if (EGifPutImageDesc(gif.get(), 0, 0, image.width, image.height, false, nullptr) != GIF_OK) return false;
    for (int y = 0; y < image.height; ++y) {
        GifByteType* row = indices.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width);
        if (EGifPutLine(gif.get(), row, image.width) != GIF_OK) return false;
    }
    return EGifCloseFile(gif.release(), &error) == GIF_OK;
}

}  // namespace

Data encodeGIF(const ImageView& image) {
    if (image.width > 0xffff || image.height > 0xffff) failToEncode();  // 16-bit sides
    std::vector<std::uint32_t> keys = colourKeys(image);
    std::vector<std::uint32_t> palette = choosePalette(histogram(keys));
    std::vector<GifByteType> indices = indexPixels(keys, palette);
    keys = {};
    Data out;
    if (!writeGIF(out, image, palette, indices)) failToEncode();
    return out;
}

}  // namespace vantel
