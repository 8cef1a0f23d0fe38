// What `make run` does: the command renders examples/sample.aspectratio to a
// PNG. A lattice of its pixels (rows and columns 23 px apart) is compared
// with the drawing replayed for single pixels: background, then per guide
// clear, fill, outline, rows, columns and children. The places come from the
// library's own layout (AspectRatio::box, outline, gridOffsets; the layout is
// tested in OverlayGenerator), so this checks that the command draws and
// encodes what the layout says.

#include <ImageReaders.hpp>
#include <OverlayGenerator/DocumentLoading.hpp>
#include <OverlayGenerator/Grid.hpp>
#include <Platform/FileIO.hpp>
#include <TestSupport.hpp>
#include <ZBExtensions/Process.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <set>

using namespace vantel;

namespace {

enum class Coverage { none, partial, full };

// [left, right) x [top, bottom) in canvas units.
struct Box {
    double left, top, right, bottom;

    static Box of(const CGRect& r) { return {r.x, r.y, r.x + r.width, r.y + r.height}; }
    Box grown(double by) const { return {left - by, top - by, right + by, bottom + by}; }

    Coverage coverage(int x, int y) const {
        if (x >= right || x + 1 <= left || y >= bottom || y + 1 <= top) return Coverage::none;
        if (x >= left && x + 1 <= right && y >= top && y + 1 <= bottom) return Coverage::full;
        return Coverage::partial;
    }
};

// A box, or with `hole` the band between the two (a stroked outline).
struct Region {
    Box box;
    std::optional<Box> hole;

    Coverage coverage(int x, int y) const {
        Coverage outer = box.coverage(x, y);
        Coverage inner = hole && hole->right > hole->left ? hole->coverage(x, y) : Coverage::none;
        if (outer == Coverage::none || inner == Coverage::full) return Coverage::none;
        return outer == Coverage::full && inner == Coverage::none ? Coverage::full : Coverage::partial;
    }
};

using Premultiplied = std::array<double, 4>;

struct Operation {
    std::string label;
    Region region;
    std::optional<Premultiplied> colour;  // none: clear to transparent
};

Premultiplied premultiplied(const Color& c) { return {c.red * c.alpha, c.green * c.alpha, c.blue * c.alpha, c.alpha}; }

struct Replay {
    std::vector<Operation> operations;
    std::set<std::string> mustBeSeen;

    void add(std::string label, Region region, std::optional<Premultiplied> colour, bool required = true) {
        if (colour && (*colour)[3] == 0) return;  // draws nothing
        if (required) mustBeSeen.insert(label);
        operations.push_back({std::move(label), region, colour});
    }

    void addGuide(const AspectRatio& guide, const std::string& path, const Size& fitInto, const Size& canvas) {
        Box box = Box::of(guide.box(fitInto, canvas));
        Rectangle outline = guide.outline(fitInto, canvas);
        Box rect = Box::of(outline.makeCGRect());
        double half = guide.weight / 2;
        Premultiplied stroke = premultiplied(guide.color);
        // A fill over the cleared area hides it.
        if (guide.clearParent) add("cleared area", Region{rect, {}}, std::nullopt, guide.fillColor.alpha == 0);
        add("fill of " + path, Region{rect, {}}, premultiplied(guide.fillColor));
        add("outline of " + path, Region{box, rect.grown(-half)}, stroke);
        for (double offset : gridOffsets(guide.rowType, outline.height)) {
            double y = rect.top + offset;
            add("grid line of " + path, Region{Box{rect.left, y - half, rect.right, y + half}, {}}, stroke);
        }
        for (double offset : gridOffsets(guide.columnType, outline.width)) {
            double x = rect.left + offset;
            add("grid line of " + path, Region{Box{x - half, rect.top, x + half, rect.bottom}, {}}, stroke);
        }
        if (!guide.children) return;
        for (std::size_t i = 0; i < guide.children->size(); ++i) {
            addGuide((*guide.children)[i], path + ".children[" + std::to_string(i) + "]", guide.fitting(fitInto),
                     canvas);
        }
    }

    // The pixel as premultiplied 0...255 and what shows in it; none where an
    // edge crosses it (anti-aliased).
    std::optional<std::pair<std::array<int, 4>, std::string>> expected(int x, int y) const {
        Premultiplied pixel{0, 0, 0, 0};
        std::string label = "nothing drawn";
        for (const Operation& op : operations) {
            Coverage coverage = op.region.coverage(x, y);
            if (coverage == Coverage::partial) return std::nullopt;
            if (coverage == Coverage::none) continue;
            for (int i = 0; i < 4; ++i) pixel[i] = op.colour ? (*op.colour)[i] + pixel[i] * (1 - (*op.colour)[3]) : 0;
            label = op.label;
        }
        std::array<int, 4> bytes;
        for (int i = 0; i < 4; ++i) bytes[i] = static_cast<int>(std::lround(pixel[i] * 255));
        return std::pair{bytes, label};
    }
};

std::array<int, 4> premultipliedPixel(const vantel::testing::DecodedImage& image, int x, int y) {
    std::array<int, 4> p = image.at(x, y);
    for (int i = 0; i < 3; ++i) p[i] = static_cast<int>(std::lround(p[i] * p[3] / 255.0));
    return p;
}

}  // namespace

TEST(SamplePictureTest, RenderedPixelsAreWhereTheLibraryLaysTheGuidesOut) {
    const std::string sample = std::string(VANTEL_SOURCE_DIR) + "/examples/sample.aspectratio";
    LoadedDocument loaded = loadDocument(DocumentSource::file(sample));
    ASSERT_TRUE(loaded.ok());
    const OverlayGen& document = *loaded.document;
    const Size canvas = document.size();

    vantel::testing::TemporaryFolder folder;
    auto task = std::make_shared<Task>();
    task->launchPath = VANTEL_COMMAND;
    task->arguments = {"render", sample, "-o", (folder / "sample.png").string()};
    run(task, false);
    vantel::testing::DecodedImage image = vantel::testing::readPNG(readData(folder / "sample.png"));
    ASSERT_EQ(image.width, static_cast<int>(canvas.width));
    ASSERT_EQ(image.height, static_cast<int>(canvas.height));

    Replay replay;
    replay.add("background", Region{Box{0, 0, canvas.width, canvas.height}, {}},
               premultiplied(document.backgroundColor()));
    for (std::size_t i = 0; i < document.ratios().size(); ++i) {
        replay.addGuide(document.ratios()[i], "ratios[" + std::to_string(i) + "]", canvas, canvas);
    }

    constexpr int step = 23;
    std::map<std::string, int> seen;
    int mismatches = 0;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            if (x % step != 0 && y % step != 0) continue;
            auto expected = replay.expected(x, y);
            if (!expected) continue;
            ++seen[expected->second];
            std::array<int, 4> actual = premultipliedPixel(image, x, y);
            for (int i = 0; i < 4; ++i) {
                if (std::abs(actual[i] - expected->first[i]) <= 3) continue;  // rounding in drawing and encoding
                if (++mismatches <= 10) ADD_FAILURE() << "(" << x << ", " << y << ") should show the " << expected->second;
                break;
            }
        }
    }
    EXPECT_EQ(mismatches, 0);
    for (const std::string& label : replay.mustBeSeen) EXPECT_GT(seen[label], 0) << "no compared pixel shows the " << label;
}
