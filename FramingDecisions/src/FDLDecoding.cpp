#include "FDLChecks.hpp"

#include <cmath>
#include <string_view>

namespace vantel::detail {

namespace {

std::string text(const CodingValue& object, std::string_view key) {
    const CodingValue* value = object.find(key);
    return value && value->kind() == CodingValue::Kind::string ? value->asString() : std::string();
}

std::optional<std::string> optionalText(const CodingValue& object, std::string_view key) {
    const CodingValue* value = object.find(key);
    if (!value || value->kind() != CodingValue::Kind::string) return std::nullopt;
    return value->asString();
}

std::optional<double> optionalNumber(const CodingValue& object, std::string_view key) {
    const CodingValue* value = object.find(key);
    if (!value) return std::nullopt;
    if (value->kind() == CodingValue::Kind::integer) return static_cast<double>(value->asInteger());
    if (value->kind() == CodingValue::Kind::real) return value->asReal();
    return std::nullopt;
}

double number(const CodingValue& object, std::string_view key, double fallback) {
    return optionalNumber(object, key).value_or(fallback);
}

std::int64_t integer(const CodingValue& object, std::string_view key) {
    double value = number(object, key, 0);
    return std::fabs(value) < 9e15 ? static_cast<std::int64_t>(value) : 0;
}

std::optional<FDLDimensions> dimensions(const CodingValue& object, std::string_view key) {
    const CodingValue* value = object.find(key);
    if (!value || value->kind() != CodingValue::Kind::dictionary) return std::nullopt;
    return FDLDimensions{number(*value, "width", 0), number(*value, "height", 0)};
}

std::optional<FDLPoint> point(const CodingValue& object, std::string_view key) {
    const CodingValue* value = object.find(key);
    if (!value || value->kind() != CodingValue::Kind::dictionary) return std::nullopt;
    return FDLPoint{number(*value, "x", 0), number(*value, "y", 0)};
}

FDLUserProperties userProperties(const CodingValue& object) {
    FDLUserProperties kept;
    for (const auto& entry : object.asDictionary()) {
        if (entry.first.starts_with('_')) kept.push_back(entry);
    }
    return kept;
}

// The objects of an array member; items of another kind are skipped.
template <typename Decode>
auto items(const CodingValue& object, std::string_view key, Decode decode) {
    std::vector<decltype(decode(object))> decoded;
    const CodingValue* value = object.find(key);
    if (!value || value->kind() != CodingValue::Kind::array) return decoded;
    for (const CodingValue& entry : value->asArray()) {
        if (entry.kind() == CodingValue::Kind::dictionary) decoded.push_back(decode(entry));
    }
    return decoded;
}

FramingIntent intent(const CodingValue& value) {
    return {text(value, "label"), text(value, "id"), dimensions(value, "aspect_ratio").value_or(FDLDimensions{}),
            number(value, "protection", 0), userProperties(value)};
}

std::optional<ClipID> clipID(const CodingValue& context) {
    const CodingValue* value = context.find("clip_id");
    if (!value || value->kind() != CodingValue::Kind::dictionary) return std::nullopt;
    ClipID clip{text(*value, "clip_name"), optionalText(*value, "file"), std::nullopt, userProperties(*value)};
    const CodingValue* sequence = value->find("sequence");
    if (sequence && sequence->kind() == CodingValue::Kind::dictionary) {
        clip.sequence = FileSequence{text(*sequence, "value"), text(*sequence, "idx"), integer(*sequence, "min"),
                                     integer(*sequence, "max")};
    }
    return clip;
}

FramingDecision decision(const CodingValue& value) {
    return {text(value, "label"),
            text(value, "id"),
            text(value, "framing_intent_id"),
            dimensions(value, "dimensions").value_or(FDLDimensions{}),
            point(value, "anchor_point").value_or(FDLPoint{}),
            dimensions(value, "protection_dimensions"),
            point(value, "protection_anchor_point"),
            userProperties(value)};
}

FDLCanvas canvas(const CodingValue& value) {
    return {text(value, "label"),
            text(value, "id"),
            text(value, "source_canvas_id"),
            dimensions(value, "dimensions").value_or(FDLDimensions{}),
            dimensions(value, "effective_dimensions"),
            point(value, "effective_anchor_point"),
            dimensions(value, "photosite_dimensions"),
            dimensions(value, "physical_dimensions"),
            number(value, "anamorphic_squeeze", 1),
            items(value, "framing_decisions", decision),
            userProperties(value)};
}

FDLContext context(const CodingValue& value) {
    return {text(value, "label"), text(value, "context_creator"), clipID(value), items(value, "canvases", canvas),
            userProperties(value)};
}

CanvasTemplate canvasTemplate(const CodingValue& value) {
    CanvasTemplate result;
    result.label = text(value, "label");
    result.id = text(value, "id");
    result.targetDimensions = dimensions(value, "target_dimensions").value_or(FDLDimensions{});
    result.targetAnamorphicSqueeze = number(value, "target_anamorphic_squeeze", 1);
    result.fitSource = text(value, "fit_source");
    result.fitMethod = text(value, "fit_method");
    result.alignmentMethodVertical = optionalText(value, "alignment_method_vertical").value_or("center");
    result.alignmentMethodHorizontal = optionalText(value, "alignment_method_horizontal").value_or("center");
    result.preserveFromSourceCanvas = optionalText(value, "preserve_from_source_canvas");
    if (result.preserveFromSourceCanvas == "none") result.preserveFromSourceCanvas.reset();
    result.maximumDimensions = dimensions(value, "maximum_dimensions");
    const CodingValue* pad = value.find("pad_to_maximum");
    result.padToMaximum = pad && pad->kind() == CodingValue::Kind::boolean && pad->asBoolean();
    if (const CodingValue* round = value.find("round"); round && round->kind() == CodingValue::Kind::dictionary) {
        result.round = CanvasTemplateRound{optionalText(*round, "even").value_or("even"),
                                           optionalText(*round, "mode").value_or("up")};
    }
    result.userProperties = userProperties(value);
    return result;
}

}  // namespace

FramingDecisionList decodeList(const CodingValue& root) {
    FramingDecisionList list;
    list.uuid = text(root, "uuid");
    list.version = versionOf(root);
    list.fdlCreator = optionalText(root, "fdl_creator");
    list.defaultFramingIntent = optionalText(root, "default_framing_intent");
    list.framingIntents = items(root, "framing_intents", intent);
    list.contexts = items(root, "contexts", context);
    list.canvasTemplates = items(root, "canvas_templates", canvasTemplate);
    list.userProperties = userProperties(root);
    return list;
}

}  // namespace vantel::detail
