#pragma once

// An ASC Framing Decision List as a value: canvases (the recorded pixels),
// the framing decisions placed on them and the intents they were made from,
// and canvas templates. Sizes and anchors stay exactly as the file holds
// them (fractional pixels); whole pixels are asked for explicitly. Properties
// whose names start with an underscore belong to whoever wrote them and are
// kept, in order, on the object that held them.

#include <Platform/CodingValue.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vantel {

using FDLUserProperties = CodingValue::Dictionary;

struct FDLDimensions {
    double width = 0;
    double height = 0;
    friend bool operator==(const FDLDimensions&, const FDLDimensions&) = default;
};

struct FDLPoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const FDLPoint&, const FDLPoint&) = default;
};

// An area on a canvas: its top left corner and its size, in canvas pixels.
struct FDLRect {
    FDLPoint anchor;
    FDLDimensions size;

    double right() const { return anchor.x + size.width; }
    double bottom() const { return anchor.y + size.height; }
    // Each edge rounded to the nearest pixel, so neighbouring areas share edges.
    FDLRect snapped() const;
    // Whether other lies within this area, allowing for rounding in the file.
    bool contains(const FDLRect& other) const;
    friend bool operator==(const FDLRect&, const FDLRect&) = default;
};

struct FDLVersion {
    std::int64_t major = 0;
    std::int64_t minor = 0;
    friend bool operator==(const FDLVersion&, const FDLVersion&) = default;
};

struct FramingIntent {
    std::string label;
    std::string id;
    FDLDimensions aspectRatio;  // whole numbers: an exact ratio
    double protection = 0;      // the share of the canvas kept around the framing
    FDLUserProperties userProperties;
    friend bool operator==(const FramingIntent&, const FramingIntent&) = default;
};

struct FileSequence {
    std::string value;  // "A01_C012_###.exr"
    std::string idx;    // the character that stands for the frame digits
    std::int64_t min = 0;
    std::int64_t max = 0;
    friend bool operator==(const FileSequence&, const FileSequence&) = default;
};

struct ClipID {
    std::string clipName;
    std::optional<std::string> file;
    std::optional<FileSequence> sequence;
    FDLUserProperties userProperties;
    friend bool operator==(const ClipID&, const ClipID&) = default;
};

struct FramingDecision {
    std::string label;
    std::string id;  // "<canvas id>-<framing intent id>"
    std::string framingIntentID;
    FDLDimensions dimensions;
    FDLPoint anchorPoint;
    std::optional<FDLDimensions> protectionDimensions;
    std::optional<FDLPoint> protectionAnchorPoint;
    FDLUserProperties userProperties;
    friend bool operator==(const FramingDecision&, const FramingDecision&) = default;

    FDLRect framing() const { return {anchorPoint, dimensions}; }
    std::optional<FDLRect> protection() const;
};

struct FDLCanvas {
    std::string label;
    std::string id;
    std::string sourceCanvasID;
    FDLDimensions dimensions;
    std::optional<FDLDimensions> effectiveDimensions;
    std::optional<FDLPoint> effectiveAnchorPoint;
    std::optional<FDLDimensions> photositeDimensions;
    std::optional<FDLDimensions> physicalDimensions;  // millimetres
    double anamorphicSqueeze = 1;                      // horizontal
    std::vector<FramingDecision> framingDecisions;
    FDLUserProperties userProperties;
    friend bool operator==(const FDLCanvas&, const FDLCanvas&) = default;

    FDLRect area() const { return {{}, dimensions}; }
    // The effective area, or the whole canvas when there is none.
    FDLRect effectiveArea() const;
    // Width over height of a size on this canvas once the squeeze is undone.
    double desqueezedAspect(const FDLDimensions& size) const;
};

struct FDLContext {
    std::string label;
    std::string contextCreator;
    std::optional<ClipID> clipID;
    std::vector<FDLCanvas> canvases;
    FDLUserProperties userProperties;
    friend bool operator==(const FDLContext&, const FDLContext&) = default;
};

struct CanvasTemplateRound {
    std::string even = "even";  // "whole" or "even"
    std::string mode = "up";    // "up", "down" or "round"
    friend bool operator==(const CanvasTemplateRound&, const CanvasTemplateRound&) = default;
};

struct CanvasTemplate {
    std::string label;
    std::string id;
    FDLDimensions targetDimensions;
    double targetAnamorphicSqueeze = 1;  // 0 keeps the source's squeeze
    std::string fitSource;
    std::string fitMethod;
    std::string alignmentMethodVertical = "center";
    std::string alignmentMethodHorizontal = "center";
    std::optional<std::string> preserveFromSourceCanvas;
    std::optional<FDLDimensions> maximumDimensions;
    bool padToMaximum = false;
    std::optional<CanvasTemplateRound> round;
    FDLUserProperties userProperties;
    friend bool operator==(const CanvasTemplate&, const CanvasTemplate&) = default;
};

struct FramingDecisionList {
    std::string uuid;
    FDLVersion version;
    std::optional<std::string> fdlCreator;
    std::optional<std::string> defaultFramingIntent;
    std::vector<FramingIntent> framingIntents;
    std::vector<FDLContext> contexts;
    std::vector<CanvasTemplate> canvasTemplates;
    FDLUserProperties userProperties;
    friend bool operator==(const FramingDecisionList&, const FramingDecisionList&) = default;

    const FramingIntent* intent(const std::string& id) const;
};

}  // namespace vantel
