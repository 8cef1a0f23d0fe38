#pragma once

#include <Graphics2/CGContext.hpp>
#include <Graphics2/Color.hpp>
#include <Graphics2/DrawingContext.hpp>
#include <Graphics2/EmptyDrawable.hpp>
#include <Platform/ContainerTraits.hpp>
#include <Platform/XML.hpp>

#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace vantel {

class Drawable;

namespace detail {

template <class T>
concept DrawsGenerically = requires(const T& value, DrawingContext& context) { value.draw(context); };
template <class T>
concept DrawsRaster = requires(const T& value, CGContext& context) { value.draw(context); };
template <class T>
concept DrawsSVG = requires(const T& value) {
    { value.svgElement() } -> std::same_as<std::optional<XMLElement>>;
};
template <class T>
concept DrawsSVGDebug = requires(const T& value) {
    { value.debugSVG() } -> std::same_as<std::optional<XMLElement>>;
};
template <class T>
concept DrawsRasterDebug = requires(const T& value, CGContext& context) { value.debugDraw(context); };

// "StyledShape" for vantel::StyledShape: the demangled name with every
// namespace qualifier removed.
std::string unqualifiedTypeName(const std::type_info& type);

}  // namespace detail

// What a Drawable can hold: any copyable struct or class. Callables and
// containers are left out so that builder overloads taking them stay
// unambiguous. (Drawable itself comes first so that checking the rest never
// asks whether a Drawable is copyable while deciding how to copy one.)
template <class T>
concept DrawableValue = !std::same_as<T, Drawable> && std::is_class_v<T> &&
                        std::copy_constructible<T> && !std::invocable<const T&> &&
                        !IsVector<T>::value && !IsOptional<T>::value;

// A copyable value holding any drawable type, in the way std::function holds
// any callable. What the held type can do is read from its members when it
// is wrapped:
//   void draw(DrawingContext&) const  draws itself generically (groups);
//                                     without it the drawable hands itself,
//                                     whole, to context.addShape;
//   void draw(CGContext&) const       makes it a raster drawable;
//   void debugDraw(CGContext&) const  optional; defaults to the raster draw.
//   std::optional<XMLElement> svgElement() const
//                                     makes it an SVG drawable;
//   std::optional<XMLElement> debugSVG() const
//                                     optional; defaults to svgElement().
// The held value is immutable and shared, so copies are cheap and may be
// drawn from several threads at once.
class Drawable {
public:
    Drawable();  // an EmptyDrawable

    template <class T>
        requires DrawableValue<std::remove_cvref_t<T>>
    Drawable(T&& value)  // NOLINT(google-explicit-constructor): wrapping is meant to be implicit
        : model_(std::make_shared<Model<std::remove_cvref_t<T>>>(std::forward<T>(value))) {}

    void draw(DrawingContext& context) const { model_->draw(context, *this); }

    bool isCGDrawable() const { return model_->isCGDrawable(); }
    // Both do nothing when the held type is not a raster drawable.
    void draw(CGContext& context) const { model_->drawRaster(context); }
    void debugDraw(CGContext& context) const { model_->debugDraw(context); }

    bool isSVGDrawable() const { return model_->isSVGDrawable(); }
    // Both are absent when the held type is not an SVG drawable.
    std::optional<XMLElement> svgElement() const { return model_->svgElement(); }
    std::optional<XMLElement> debugSVG() const { return model_->debugSVG(); }

    // The held value when it is exactly a T, else null.
    template <class T>
    const T* as() const {
        if (model_->type() != typeid(T)) return nullptr;
        return static_cast<const T*>(model_->address());
    }
    std::string typeName() const { return model_->typeName(); }

    // Style modifiers. On a StyledShape they return a copy with that one
    // style replaced (nullopt clears it); on anything else they wrap it in a
    // new StyledShape. Chained modifiers therefore never nest.
    Drawable strokeColor(std::optional<Color> color) const;
    Drawable fillColor(std::optional<Color> color) const;
    Drawable strokeWidth(std::optional<double> width) const;

private:
    struct Concept {
        virtual ~Concept() = default;
        virtual void draw(DrawingContext& context, const Drawable& self) const = 0;
        virtual bool isCGDrawable() const = 0;
        virtual void drawRaster(CGContext& context) const = 0;
        virtual void debugDraw(CGContext& context) const = 0;
        virtual bool isSVGDrawable() const = 0;
        virtual std::optional<XMLElement> svgElement() const = 0;
        virtual std::optional<XMLElement> debugSVG() const = 0;
        virtual const std::type_info& type() const = 0;
        virtual const void* address() const = 0;
        virtual std::string typeName() const = 0;
    };

    template <class T>
    struct Model final : Concept {
        T value;

        template <class U>
        explicit Model(U&& value) : value(std::forward<U>(value)) {}

        void draw(DrawingContext& context, const Drawable& self) const override {
            if constexpr (detail::DrawsGenerically<T>) value.draw(context);
            else context.addShape(self);
        }
        bool isCGDrawable() const override { return detail::DrawsRaster<T>; }
        void drawRaster(CGContext& context) const override {
            if constexpr (detail::DrawsRaster<T>) value.draw(context);
        }
        void debugDraw(CGContext& context) const override {
            if constexpr (detail::DrawsRasterDebug<T>) value.debugDraw(context);
            else drawRaster(context);
        }
        bool isSVGDrawable() const override { return detail::DrawsSVG<T>; }
        std::optional<XMLElement> svgElement() const override {
            if constexpr (detail::DrawsSVG<T>) return value.svgElement();
            else return std::nullopt;
        }
        std::optional<XMLElement> debugSVG() const override {
            if constexpr (detail::DrawsSVGDebug<T>) return value.debugSVG();
            else return svgElement();
        }
        const std::type_info& type() const override { return typeid(T); }
        const void* address() const override { return &value; }
        std::string typeName() const override {
            static const std::string name = detail::unqualifiedTypeName(typeid(T));
            return name;
        }
    };

    static std::shared_ptr<const Concept> emptyModel();

    std::shared_ptr<const Concept> model_;
};

}  // namespace vantel
