#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace vantel {

// Every SVG attribute name. Case names are the attribute in lower camel
// case; rawValue gives the name as SVG spells it ("stroke-width",
// "xlink:href", "panose-1"). Names that are C++ keywords end in '_'.
enum class SVGAttribute {
    accentHeight, accumulate, additive, alignmentBaseline, alphabetic, amplitude,
    arabicForm, ascent, attributeName, attributeType, azimuth, baseFrequency,
    baselineShift, baseProfile, bbox, begin, bias, by,
    calcMode, capHeight, class_, clip, clipPathUnits, clipPath,
    clipRule, color, colorInterpolation, colorInterpolationFilters, colorProfile, colorRendering,
    contentScriptType, contentStyleType, crossorigin, cursor, cx, cy,
    d, decelerate, descent, diffuseConstant, direction, display,
    divisor, dominantBaseline, dur, dx, dy, edgeMode,
    elevation, enableBackground, end, exponent, externalResourcesRequired, fill,
    fillOpacity, fillRule, filter, filterRes, filterUnits, floodColor,
    floodOpacity, fontFamily, fontSize, fontSizeAdjust, fontStretch, fontStyle,
    fontVariant, fontWeight, format, from, fr, fx,
    fy, g1, g2, glyphName, glyphOrientationHorizontal, glyphOrientationVertical,
    glyphRef, gradientTransform, gradientUnits, hanging, height, href,
    hreflang, horizAdvX, horizOriginX, id, ideographic, imageRendering,
    in_, in2, intercept, k, k1, k2,
    k3, k4, kernelMatrix, kernelUnitLength, kerning, keyPoints,
    keySplines, keyTimes, lang, lengthAdjust, letterSpacing, lightingColor,
    limitingConeAngle, local, markerEnd, markerMid, markerStart, markerHeight,
    markerUnits, markerWidth, mask, maskContentUnits, maskUnits, mathematical,
    max, media, method, min, mode, name,
    numOctaves, offset, opacity, operator_, order, orient,
    orientation, origin, overflow, overlinePosition, overlineThickness, panose1,
    paintOrder, path, pathLength, patternContentUnits, patternTransform, patternUnits,
    ping, pointerEvents, points, pointsAtX, pointsAtY, pointsAtZ,
    preserveAlpha, preserveAspectRatio, primitiveUnits, r, radius, referrerPolicy,
    refX, refY, rel, renderingIntent, repeatCount, repeatDur,
    requiredExtensions, requiredFeatures, restart, result, rotate, rx,
    ry, scale, seed, shapeRendering, slope, spacing,
    specularConstant, specularExponent, speed, spreadMethod, startOffset, stdDeviation,
    stemh, stemv, stitchTiles, stopColor, stopOpacity, strikethroughPosition,
    strikethroughThickness, string, stroke, strokeDasharray, strokeDashoffset, strokeLinecap,
    strokeLinejoin, strokeMiterlimit, strokeOpacity, strokeWidth, style, surfaceScale,
    systemLanguage, tabindex, tableValues, target, targetX, targetY,
    textAnchor, textDecoration, textRendering, textLength, to, transform,
    transformOrigin, type, u1, u2, underlinePosition, underlineThickness,
    unicode, unicodeBidi, unicodeRange, unitsPerEm, vAlphabetic, vHanging,
    vIdeographic, vMathematical, values, vectorEffect, version, vertAdvY,
    vertOriginX, vertOriginY, viewBox, viewTarget, visibility, width,
    widths, wordSpacing, writingMode, x, xHeight, x1,
    x2, xChannelSelector, xlinkActuate, xlinkArcrole, xlinkHref, xlinkRole,
    xlinkShow, xlinkTitle, xlinkType, xmlBase, xmlLang, xmlSpace,
    y, y1, y2, yChannelSelector, z, zoomAndPan,
};

inline constexpr std::size_t svgAttributeCount = 258;

std::string_view rawValue(SVGAttribute attribute);
// The case whose raw value is exactly this text, else nothing.
std::optional<SVGAttribute> svgAttribute(std::string_view rawValue);
// All cases in declaration order.
const std::array<SVGAttribute, svgAttributeCount>& allSVGAttributes();

}  // namespace vantel
