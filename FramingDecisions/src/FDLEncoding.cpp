#include <FramingDecisions/FDLWriting.hpp>

#include <Platform/JSON.hpp>

#include <cmath>
#include <string_view>
#include <utility>

namespace vantel {

namespace {

using Dictionary = CodingValue::Dictionary;

// The schema's integers (canvas sizes, ratios) are written without a
// fractional part; a value the model holds fractionally there stays as it
// is, so that a check of the written file can say so.
CodingValue whole(double value) {
    if (std::isfinite(value) && value == std::trunc(value) && std::fabs(value) < 9e15) {
        return CodingValue::integer(static_cast<std::int64_t>(value));
    }
    return CodingValue::real(value);
}

CodingValue size(const FDLDimensions& dimensions, bool integers) {
    auto number = [integers](double value) { return integers ? whole(value) : CodingValue::real(value); };
    return CodingValue::dictionary({{"width", number(dimensions.width)}, {"height", number(dimensions.height)}});
}

CodingValue point(const FDLPoint& point) {
    return CodingValue::dictionary({{"x", CodingValue::real(point.x)}, {"y", CodingValue::real(point.y)}});
}

void addText(Dictionary& object, std::string_view key, const std::string& value) {
    if (!value.empty()) object.emplace_back(key, CodingValue::string(value));
}

void addUserProperties(Dictionary& object, const FDLUserProperties& properties) {
    object.insert(object.end(), properties.begin(), properties.end());
}

template <typename Item, typename Encode>
CodingValue array(const std::vector<Item>& items, Encode encode) {
    CodingValue::Array encoded;
    for (const Item& item : items) encoded.push_back(encode(item));
    return CodingValue::array(std::move(encoded));
}

CodingValue intent(const FramingIntent& intent) {
    Dictionary object;
    addText(object, "label", intent.label);
    object.emplace_back("id", CodingValue::string(intent.id));
    object.emplace_back("aspect_ratio", size(intent.aspectRatio, true));
    object.emplace_back("protection", CodingValue::real(intent.protection));
    addUserProperties(object, intent.userProperties);
    return CodingValue::dictionary(std::move(object));
}

CodingValue decision(const FramingDecision& decision) {
    Dictionary object;
    addText(object, "label", decision.label);
    object.emplace_back("id", CodingValue::string(decision.id));
    object.emplace_back("framing_intent_id", CodingValue::string(decision.framingIntentID));
    object.emplace_back("dimensions", size(decision.dimensions, false));
    object.emplace_back("anchor_point", point(decision.anchorPoint));
    if (decision.protectionDimensions) {
        object.emplace_back("protection_dimensions", size(*decision.protectionDimensions, false));
        object.emplace_back("protection_anchor_point", point(decision.protectionAnchorPoint.value_or(FDLPoint{})));
    }
    addUserProperties(object, decision.userProperties);
    return CodingValue::dictionary(std::move(object));
}

CodingValue canvas(const FDLCanvas& canvas) {
    Dictionary object;
    addText(object, "label", canvas.label);
    object.emplace_back("id", CodingValue::string(canvas.id));
    object.emplace_back("source_canvas_id", CodingValue::string(canvas.sourceCanvasID));
    object.emplace_back("dimensions", size(canvas.dimensions, true));
    if (canvas.effectiveDimensions) {
        object.emplace_back("effective_dimensions", size(*canvas.effectiveDimensions, true));
        object.emplace_back("effective_anchor_point", point(canvas.effectiveAnchorPoint.value_or(FDLPoint{})));
    }
    if (canvas.photositeDimensions) object.emplace_back("photosite_dimensions", size(*canvas.photositeDimensions, true));
    if (canvas.physicalDimensions) object.emplace_back("physical_dimensions", size(*canvas.physicalDimensions, false));
    object.emplace_back("anamorphic_squeeze", CodingValue::real(canvas.anamorphicSqueeze));
    object.emplace_back("framing_decisions", array(canvas.framingDecisions, decision));
    addUserProperties(object, canvas.userProperties);
    return CodingValue::dictionary(std::move(object));
}

CodingValue clipID(const ClipID& clip) {
    Dictionary object{{"clip_name", CodingValue::string(clip.clipName)}};
    if (clip.file) object.emplace_back("file", CodingValue::string(*clip.file));
    if (clip.sequence) {
        object.emplace_back("sequence", CodingValue::dictionary({{"value", CodingValue::string(clip.sequence->value)},
                                                                 {"idx", CodingValue::string(clip.sequence->idx)},
                                                                 {"min", CodingValue::integer(clip.sequence->min)},
                                                                 {"max", CodingValue::integer(clip.sequence->max)}}));
    }
    addUserProperties(object, clip.userProperties);
    return CodingValue::dictionary(std::move(object));
}

CodingValue context(const FDLContext& context) {
    Dictionary object;
    addText(object, "label", context.label);
    addText(object, "context_creator", context.contextCreator);
    if (context.clipID) object.emplace_back("clip_id", clipID(*context.clipID));
    object.emplace_back("canvases", array(context.canvases, canvas));
    addUserProperties(object, context.userProperties);
    return CodingValue::dictionary(std::move(object));
}

CodingValue canvasTemplate(const CanvasTemplate& canvasTemplate) {
    Dictionary object;
    addText(object, "label", canvasTemplate.label);
    object.emplace_back("id", CodingValue::string(canvasTemplate.id));
    object.emplace_back("target_dimensions", size(canvasTemplate.targetDimensions, true));
    object.emplace_back("target_anamorphic_squeeze", CodingValue::real(canvasTemplate.targetAnamorphicSqueeze));
    object.emplace_back("fit_source", CodingValue::string(canvasTemplate.fitSource));
    object.emplace_back("fit_method", CodingValue::string(canvasTemplate.fitMethod));
    object.emplace_back("alignment_method_vertical", CodingValue::string(canvasTemplate.alignmentMethodVertical));
    object.emplace_back("alignment_method_horizontal", CodingValue::string(canvasTemplate.alignmentMethodHorizontal));
    if (canvasTemplate.preserveFromSourceCanvas) {
        object.emplace_back("preserve_from_source_canvas", CodingValue::string(*canvasTemplate.preserveFromSourceCanvas));
    }
    if (canvasTemplate.maximumDimensions) {
        object.emplace_back("maximum_dimensions", size(*canvasTemplate.maximumDimensions, true));
    }
    object.emplace_back("pad_to_maximum", CodingValue::boolean(canvasTemplate.padToMaximum));
    if (canvasTemplate.round) {
        object.emplace_back("round", CodingValue::dictionary({{"even", CodingValue::string(canvasTemplate.round->even)},
                                                              {"mode", CodingValue::string(canvasTemplate.round->mode)}}));
    }
    addUserProperties(object, canvasTemplate.userProperties);
    return CodingValue::dictionary(std::move(object));
}

CodingValue list(const FramingDecisionList& list) {
    Dictionary object;
    object.emplace_back("uuid", CodingValue::string(list.uuid));
    object.emplace_back("version", CodingValue::dictionary({{"major", CodingValue::integer(list.version.major)},
                                                            {"minor", CodingValue::integer(list.version.minor)}}));
    if (list.fdlCreator) object.emplace_back("fdl_creator", CodingValue::string(*list.fdlCreator));
    if (list.defaultFramingIntent) {
        object.emplace_back("default_framing_intent", CodingValue::string(*list.defaultFramingIntent));
    }
    object.emplace_back("framing_intents", array(list.framingIntents, intent));
    object.emplace_back("contexts", array(list.contexts, context));
    object.emplace_back("canvas_templates", array(list.canvasTemplates, canvasTemplate));
    addUserProperties(object, list.userProperties);
    return CodingValue::dictionary(std::move(object));
}

// ------------------------------------------------------------ as read

bool isNumber(const CodingValue& value) {
    return value.kind() == CodingValue::Kind::integer || value.kind() == CodingValue::Kind::real;
}

double numberValue(const CodingValue& value) {
    return value.kind() == CodingValue::Kind::integer ? static_cast<double>(value.asInteger()) : value.asReal();
}

// What a reader assumes for a member that is left out: the model cannot
// tell "absent" from these, so a file without them stays without them.
bool isSchemaDefault(std::string_view key, const CodingValue& value) {
    if (key == "anamorphic_squeeze") return isNumber(value) && numberValue(value) == 1;
    if (key == "protection") return isNumber(value) && numberValue(value) == 0;
    if (key == "pad_to_maximum") return value == CodingValue::boolean(false);
    if (key == "alignment_method_vertical" || key == "alignment_method_horizontal") {
        return value == CodingValue::string("center");
    }
    return key == "framing_intents" || key == "contexts" || key == "canvas_templates" || key == "framing_decisions"
               ? value.kind() == CodingValue::Kind::array && value.asArray().empty()
               : false;
}

// Members the model does not hold, kept as the file had them: the writer's
// own "_" properties of objects the model keeps none for (sizes, points),
// and empty texts, which the model reads as absent.
bool keptAsRead(const std::string& key, const CodingValue& value) {
    return key.starts_with('_') || value == CodingValue::string("");
}

const CodingValue* idOf(const CodingValue& item) {
    const CodingValue* id = item.find("id");
    return id && id->kind() == CodingValue::Kind::string ? id : nullptr;
}

CodingValue arranged(CodingValue fresh, const CodingValue* asRead);

const CodingValue* counterpart(const CodingValue& item, std::size_t index, const CodingValue::Array& asRead) {
    if (const CodingValue* id = idOf(item)) {
        for (const CodingValue& candidate : asRead) {
            if (const CodingValue* other = idOf(candidate); other && *other == *id) return &candidate;
        }
        return nullptr;
    }
    return index < asRead.size() && !idOf(asRead[index]) ? &asRead[index] : nullptr;
}

CodingValue arrangedArray(CodingValue::Array fresh, const CodingValue::Array& asRead) {
    for (std::size_t i = 0; i < fresh.size(); ++i) {
        // Found before the item moves: arguments may be taken in either order.
        const CodingValue* asReadItem = counterpart(fresh[i], i, asRead);
        fresh[i] = arranged(std::move(fresh[i]), asReadItem);
    }
    return CodingValue::array(std::move(fresh));
}

CodingValue arrangedDictionary(Dictionary fresh, const Dictionary& asRead) {
    auto find = [](auto& entries, const std::string& key) {
        auto found = entries.begin();
        while (found != entries.end() && found->first != key) ++found;
        return found;
    };
    Dictionary result;
    for (const auto& [key, value] : asRead) {
        if (auto current = find(fresh, key); current != fresh.end()) {
            result.emplace_back(key, arranged(std::move(current->second), &value));
        } else if (keptAsRead(key, value)) {
            result.emplace_back(key, value);
        }
    }
    for (auto& [key, value] : fresh) {
        if (find(asRead, key) == asRead.end() && !isSchemaDefault(key, value)) result.emplace_back(key, std::move(value));
    }
    return CodingValue::dictionary(std::move(result));
}

CodingValue arranged(CodingValue fresh, const CodingValue* asRead) {
    if (!asRead) return fresh;
    if (isNumber(fresh) && isNumber(*asRead) && numberValue(fresh) == numberValue(*asRead)) return *asRead;
    if (fresh.kind() == CodingValue::Kind::dictionary && asRead->kind() == CodingValue::Kind::dictionary) {
        return arrangedDictionary(std::move(fresh.asDictionary()), asRead->asDictionary());
    }
    if (fresh.kind() == CodingValue::Kind::array && asRead->kind() == CodingValue::Kind::array) {
        return arrangedArray(std::move(fresh.asArray()), asRead->asArray());
    }
    return fresh;
}

}  // namespace

CodingValue encodedList(const FramingDecisionList& framingDecisionList, const CodingValue* asRead) {
    return arranged(list(framingDecisionList), asRead);
}

Data encodeFramingDecisionList(const FramingDecisionList& list, const CodingValue* asRead) {
    JSONEncoder encoder;
    encoder.prettyPrinted = true;
    encoder.spaceBeforeColon = false;
    Data text = encoder.serialize(encodedList(list, asRead));
    text.push_back('\n');
    return text;
}

}  // namespace vantel
