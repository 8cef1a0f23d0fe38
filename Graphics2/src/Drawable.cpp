#include <Graphics2/Drawable.hpp>
#include <Graphics2/StyledShape.hpp>

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace vantel {
namespace {

// The receiver itself when it is already styled, so modifiers never nest.
StyledShape styled(const Drawable& drawable) {
    if (const StyledShape* styled = drawable.as<StyledShape>()) return *styled;
    StyledShape wrapped;
    wrapped.shape = drawable;
    return wrapped;
}

bool isIdentifierCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

std::string withoutQualifiers(std::string_view name) {
    constexpr std::string_view anonymous = "(anonymous namespace)";
    std::string result;
    for (size_t i = 0; i < name.size(); ++i) {
        if (name.substr(i, 2) != "::") {
            result += name[i];
            continue;
        }
        if (result.ends_with(anonymous)) {
            result.erase(result.size() - anonymous.size());
        } else {
            while (!result.empty() && isIdentifierCharacter(result.back())) result.pop_back();
        }
        ++i;
    }
    return result;
}

}  // namespace

namespace detail {

std::string unqualifiedTypeName(const std::type_info& type) {
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> demangled(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return withoutQualifiers(status == 0 ? demangled.get() : type.name());
}

}  // namespace detail

std::shared_ptr<const Drawable::Concept> Drawable::emptyModel() {
    static const std::shared_ptr<const Concept> empty = std::make_shared<Model<EmptyDrawable>>(EmptyDrawable{});
    return empty;
}

Drawable::Drawable() : model_(emptyModel()) {}

Drawable Drawable::strokeColor(std::optional<Color> color) const {
    StyledShape result = styled(*this);
    result.strokeColor = color;
    return result;
}

Drawable Drawable::fillColor(std::optional<Color> color) const {
    StyledShape result = styled(*this);
    result.fillColor = color;
    return result;
}

Drawable Drawable::strokeWidth(std::optional<double> width) const {
    StyledShape result = styled(*this);
    result.strokeWidth = width;
    return result;
}

}  // namespace vantel
