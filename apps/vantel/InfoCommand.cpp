// vantel info FILE

#include "CommandRegistry.hpp"
#include "HelpFormat.hpp"
#include "DocumentLoading.hpp"
#include "FDLCommands.hpp"
#include "PixelRect.hpp"

#include <Platform/JSON.hpp>
#include <Platform/NumberText.hpp>
#include <ZBExtensions/TreeItem.hpp>

#include <Graphics2/ColorText.hpp>

#include <cmath>
#include <optional>
#include <iostream>
#include <memory>
#include <sstream>

namespace vantel::cli {

namespace {

// How colours are written: by default hex with the alpha beside it when not
// opaque; with --colors, every colour in the form asked for.
struct ColorWriting {
    std::optional<ColorFormatStyle> style;

    std::string operator()(const Color& color) const {
        if (style) return style->formatted(color);
        std::string text = color.toHex();
        if (color.alpha < 1) text += " alpha " + numberText(color.alpha);
        return text;
    }
};

std::string gridText(const GridType& grid) {
    switch (grid.tag) {
        case GridType::Case::none: return "";
        case GridType::Case::pixels: return "every " + std::to_string(grid.payload) + " px";
        case GridType::Case::divisor: return "in " + std::to_string(grid.payload) + " equal parts";
    }
    return "";
}

std::string guideText(const AspectRatio& guide, const Size& fitted, const ColorWriting& colorText) {
    std::ostringstream text;
    text << guide.formatted() << " at " << pixelsText(fitted.width) << " x " << pixelsText(fitted.height)
         << " px: outline " << colorText(guide.color) << " weight " << numberText(guide.weight);
    text << ", " << (guide.fillColor.alpha == 0 ? "no fill" : "fill " + colorText(guide.fillColor));
    if (std::string rows = gridText(guide.rowType); !rows.empty()) text << ", rows " << rows;
    if (std::string columns = gridText(guide.columnType); !columns.empty()) text << ", columns " << columns;
    text << ", " << (guide.clearParent ? "clears what is beneath" : "keeps what is beneath");
    return text.str();
}

// A guide as laid out on the canvas: the tree `vantel info` prints, one node
// per guide under a root for the canvas.
struct LaidOutGuide {
    const AspectRatio* guide = nullptr;  // none for the root
    Size fitted;
    CGRect box;  // the outline's outer edges, in canvas pixels

    friend bool operator==(const LaidOutGuide& a, const LaidOutGuide& b) { return a.guide == b.guide; }
};
using GuideTree = TreeItem<LaidOutGuide>;

void addGuides(const GuideTree::Node& parent, const std::vector<AspectRatio>& guides, const Size& canvas) {
    for (const AspectRatio& guide : guides) {
        auto node = GuideTree::make({&guide, guide.fitting(parent->object.fitted), guide.box(parent->object.fitted, canvas)});
        parent->addChildren({node});
        if (guide.children) addGuides(node, *guide.children, canvas);
    }
}

GuideTree::Node guideTree(const OverlayGen& document) {
    const Size canvas = document.size();
    auto root = GuideTree::make({nullptr, canvas, CGRect{0, 0, canvas.width, canvas.height}});
    addGuides(root, document.ratios(), canvas);
    return root;
}

// One line per guide, children indented under their parent with tree lines.
void printGuides(std::ostream& out, const GuideTree& parent, const std::string& indent,
                 const ColorWriting& colorText) {
    for (std::size_t i = 0; i < parent.children.size(); ++i) {
        const bool last = i + 1 == parent.children.size();
        const LaidOutGuide& laidOut = parent.children[i]->object;
        out << indent << (last ? "└─ " : "├─ ") << guideText(*laidOut.guide, laidOut.fitted, colorText) << '\n';
        printGuides(out, *parent.children[i], indent + (last ? "   " : "│  "), colorText);
    }
}

void printDocument(std::ostream& out, const std::string& file, const OverlayGen& document,
                   const ColorWriting& colorText) {
    const Size size = document.size();
    out << "file         " << file << '\n'
        << "description  " << document.description() << '\n'
        << "canvas       " << numberText(size.width) << " x " << numberText(size.height) << ", margin "
        << numberText(size.margin) << '\n'
        << "background   " << colorText(document.backgroundColor()) << '\n';
    GuideTree::Node tree = guideTree(document);
    if (tree->isLeaf()) {
        out << "guides       none\n";
        return;
    }
    out << "guides       " << tree->flatChildren().size() << " (" << tree->children.size()
        << " at the top level), drawn in this order:\n";
    printGuides(out, *tree, "", colorText);
}

// ---- the JSON form

void encodeRect(KeyedEncodingContainer& container, const CGRect& rect, std::string_view key) {
    KeyedEncodingContainer fields = container.nestedContainer(key);
    fields.encode(rect.x, "x");
    fields.encode(rect.y, "y");
    fields.encode(rect.width, "width");
    fields.encode(rect.height, "height");
}

void encodeGrid(KeyedEncodingContainer& container, const GridType& grid, std::string_view key) {
    if (grid.tag == GridType::Case::none) return container.encodeNil(key);
    KeyedEncodingContainer fields = container.nestedContainer(key);
    fields.encode(grid.payload, grid.tag == GridType::Case::pixels ? "every" : "parts");
}

// With --colors, a "text" member holds the colour in the form asked for.
void encodeColor(KeyedEncodingContainer& container, const Color& color, std::string_view key,
                 const ColorWriting& colorText) {
    KeyedEncodingContainer fields = container.nestedContainer(key);
    fields.encode(color.toHex(), "hex");
    fields.encode(color.alpha, "alpha");
    if (colorText.style) fields.encode(colorText(color), "text");
}

struct GuideJSON {
    const GuideTree* node;
    const ColorWriting* colorText;

    void encode(Encoder& encoder) const {
        const AspectRatio& guide = *node->object.guide;
        KeyedEncodingContainer fields = encoder.container();
        fields.encode(guide.formatted(), "ratio");
        fields.encode(guide.width, "ratioWidth");
        fields.encode(guide.height, "ratioHeight");
        encodeColor(fields, guide.color, "outline", *colorText);
        encodeColor(fields, guide.fillColor, "fill", *colorText);
        fields.encode(guide.weight, "weight");
        encodeGrid(fields, guide.rowType, "rows");
        encodeGrid(fields, guide.columnType, "columns");
        fields.encode(guide.clearParent, "clearsParent");
        encodeRect(fields, node->object.box, "rect");
        encodeRect(fields, snapped(node->object.box), "pixels");
        encodeChildren(fields, *node, *colorText);
    }

    static void encodeChildren(KeyedEncodingContainer& container, const GuideTree& parent,
                               const ColorWriting& colorText) {
        UnkeyedEncodingContainer items = container.nestedUnkeyedContainer(parent.object.guide ? "children" : "guides");
        for (const auto& child : parent.children) items.encode(GuideJSON{child.get(), &colorText});
    }
};

struct DocumentJSON {
    std::string name;
    const OverlayGen* document;
    ColorWriting colorText;

    void encode(Encoder& encoder) const {
        KeyedEncodingContainer fields = encoder.container();
        fields.encode(name, "file");
        fields.encode(document->description(), "description");
        KeyedEncodingContainer canvas = fields.nestedContainer("canvas");
        canvas.encode(document->size().width, "width");
        canvas.encode(document->size().height, "height");
        canvas.encode(document->size().margin, "margin");
        encodeColor(fields, document->backgroundColor(), "background", colorText);
        GuideJSON::encodeChildren(fields, *guideTree(*document), colorText);
    }
};

void printJSON(std::ostream& out, const std::string& name, const OverlayGen& document,
               const ColorWriting& colorText) {
    JSONEncoder encoder;
    encoder.prettyPrinted = true;
    Data json = encoder.encode(DocumentJSON{name, &document, colorText});
    out.write(reinterpret_cast<const char*>(json.data()), static_cast<std::streamsize>(json.size()));
    out << '\n';
}

struct InfoOptions {
    std::string file;
    bool json = false;
    std::string colors;  // empty: the default writing
};

ColorWriting colorWriting(const std::string& colors) {
    if (colors == "hex") return {ColorFormatStyle::hex()};
    if (colors == "hex-alpha") return {ColorFormatStyle::hexAlpha()};
    if (colors == "rgba") return {ColorFormatStyle::rgba()};
    return {};
}

ExitCode runInfo(const InfoOptions& options) {
    const std::string& file = options.file;
    const ColorWriting colorText = colorWriting(options.colors);
    CommandInput input = readCommandInput(file);
    if (input.framingDecisionList) return describeFramingDecisionList(input, options.json);
    const DocumentSource& source = input.source;
    CommandDocument loaded = input.unreadable ? std::move(*input.unreadable) : readDocument(source);
    if (!loaded.ok()) {
        reportProblems(loaded.problems);
        return loaded.failure;
    }
    if (options.json) {
        printJSON(std::cout, source.name(), *loaded.document, colorText);
    } else {
        printDocument(std::cout, source.name(), *loaded.document, colorText);
    }
    return ExitCode::ok;
}

const char* const infoFooter =
    "Shows the canvas, the background, the document's description and each "
    "guide as a tree: its ratio, the size it is laid out at, outline and fill "
    "colours in hex, stroke weight, grid and whether it clears what is beneath. "
    "With --json the same as one JSON object, each guide with its outline's "
    "rectangle on the canvas, exact (\"rect\") and rounded to whole pixels "
    "(\"pixels\"), and its children. With --colors each colour is written in "
    "that form (in JSON, as each colour's \"text\").\n"
    "An ASC framing decision list (.fdl) is described by its contexts, canvases "
    "and framing decisions, each area as the file holds it and in whole pixels, "
    "with the aspect once the squeeze is undone.\n"
    "Exit codes: 0 shown, 1 the document is bad, 2 bad usage, 3 FILE could not be read.";

CommandRegistration registration(30, [](CLI::App& app, ExitCode& result) {
    auto options = std::make_shared<InfoOptions>();
    CLI::App* sub = app.add_subcommand("info", "Describe an overlay document");
    setUsageForms(sub, {"vantel info [--json] [--colors FORM] FILE"});
    sub->footer(infoFooter);
    sub->add_option("FILE", options->file, "an overlay document (.aspectratio file or http(s) URL) or an ASC framing decision list (.fdl), or - for standard input")
        ->required()
        ->option_text("FILE")
        ->group("Input");
    sub->add_flag("--json", options->json, "print the document and its laid-out guides as JSON")->group("Output");
    sub->add_option("--colors", options->colors,
                    "write every colour as hex (#RRGGBB), hex-alpha (#RRGGBBAA) or rgba (rgba(255,128,0,0.5))")
        ->check(CLI::IsMember({"hex", "hex-alpha", "rgba"}))
        ->option_text("FORM")
        ->group("Output");
    sub->callback([options, &result] { result = runInfo(*options); });
});

}  // namespace

}  // namespace vantel::cli
