#include <Graphics2/SVGContext.hpp>

#include <Graphics2/Size.hpp>
#include <Platform/Fatal.hpp>
#include <Platform/FileIO.hpp>

#include <cmath>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <unordered_map>

namespace vantel {

namespace {

XMLElement makeRoot(std::int64_t width, std::int64_t height) {
    XMLElement root("svg");
    root.addAttribute("width", std::to_string(width));
    root.addAttribute("height", std::to_string(height));
    root.addAttribute("xmlns", "http://www.w3.org/2000/svg");
    root.addAttribute("xmlns:inkscape", "http://www.inkscape.org/namespaces/inkscape");
    return root;
}

std::int64_t truncatedSide(double side) {
    const double truncated = std::trunc(side);
    if (!(truncated >= -9223372036854775808.0 && truncated < 9223372036854775808.0)) {
        fatalError("SVG document size is not a 64-bit integer: " + std::to_string(side));
    }
    return static_cast<std::int64_t>(truncated);
}

std::vector<XMLElement> detachAll(XMLElement& root) {
    std::vector<XMLElement> elements;
    for (auto& child : root.children()) elements.push_back(child.detach());
    return elements;
}

// A web address names no place on this machine: its path is the server's.
std::filesystem::path localPath(const URL& url) {
    if (url.isFileURL()) return url.path();
    throw std::filesystem::filesystem_error("only file URLs can be written to", url.absoluteString(),
                                            std::make_error_code(std::errc::operation_not_supported));
}

// The name stays one file inside the folder: an absolute name would replace
// the folder, a separator or "..", leave it.
std::filesystem::path oneFileComponent(std::string_view name, const std::filesystem::path& folder) {
    bool single = !name.empty() && name != "." && name != ".." && name.find('/') == std::string_view::npos &&
                  name.find('\0') == std::string_view::npos;
    if (single) return std::string(name);
    throw std::filesystem::filesystem_error("the name \"" + std::string(name) + "\" is not one file name", folder,
                                            std::make_error_code(std::errc::invalid_argument));
}

}  // namespace

SVGContext::SVGContext(std::int64_t width, std::int64_t height, bool debug)
    : debug(debug), document_(makeRoot(width, height)), width_(width), height_(height) {}

SVGContext::SVGContext(std::int64_t width, std::int64_t height, bool debug, const std::vector<Drawable>& shapes)
    : SVGContext(width, height, debug) {
    for (const auto& shape : shapes) addShape(shape);
}

SVGContext::SVGContext(const Sketch& sketch, bool debug)
    : SVGContext(truncatedSide(sketch.size().width), truncatedSide(sketch.size().height), debug) {
    addShape(sketch.body());
}

void SVGContext::append(std::optional<XMLElement> element) {
    if (element) svg().addChild(std::move(*element));
}

void SVGContext::addShape(const Drawable& shape) {
    if (!shape.isSVGDrawable()) return;
    std::cout << "Adding " << shape.typeName() << " to SVG\n";
    append(debug ? shape.debugSVG() : shape.svgElement());
}

void SVGContext::groupElements(SVGAttribute attribute) {
    XMLElement root = svg();
    if (root.childCount() == 0 || !root.hasOnlyElementChildren()) return;
    const std::string key(rawValue(attribute));
    std::unordered_map<std::string, std::vector<XMLElement>> layers;
    for (auto& element : detachAll(root)) {
        std::string value = element.attribute(key).value_or("");
        layers[value].push_back(std::move(element));
    }
    std::vector<XMLElement> groups;
    int index = 0;
    for (auto& [value, elements] : layers) {
        XMLElement group("g");
        group.addAttribute("id", value);
        group.addAttribute("inkscape:groupmode", "layer");
        group.addAttribute("inkscape:label", std::to_string(++index) + "-" + value);
        group.replaceChildren(std::move(elements));
        groups.push_back(std::move(group));
    }
    root.replaceChildren(std::move(groups));
}

void SVGContext::breakGroups() {
    XMLElement root = svg();
    if (root.childCount() == 0 || !root.hasOnlyElementChildren()) return;
    std::vector<XMLElement> flattened;
    for (auto& element : detachAll(root)) {
        if (element.name() != "g") {
            flattened.push_back(std::move(element));
            continue;
        }
        for (auto& member : detachAll(element)) flattened.push_back(std::move(member));
    }
    root.replaceChildren(std::move(flattened));
}

std::string SVGContext::svgString(bool pretty) const { return document_.xmlString(pretty); }

void SVGContext::writeSVG(const URL& url) const { writeSVG(localPath(url)); }

void SVGContext::writeSVG(const std::filesystem::path& path) const {
    const std::string text = svgString(true);
    if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path());
    writeDataAtomically(Data(text.begin(), text.end()), path);
}

void SVGContext::writeSVG(std::string_view name, const URL& folder, bool includeSubDir) const {
    std::filesystem::path path = localPath(folder);
    if (includeSubDir) path /= "SVG";
    path /= oneFileComponent(name, path);
    if (path.extension() != ".svg") path += ".svg";
    writeSVG(path);
}

}  // namespace vantel
