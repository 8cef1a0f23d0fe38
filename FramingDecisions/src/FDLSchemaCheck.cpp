#include "FDLChecks.hpp"

#include <cmath>
#include <initializer_list>
#include <regex>
#include <string>
#include <string_view>

namespace vantel::detail {

namespace {

std::string member(const std::string& path, std::string_view key) {
    return path.empty() ? std::string(key) : path + "." + std::string(key);
}

std::string item(const std::string& path, std::size_t index) {
    return path + "[" + std::to_string(index) + "]";
}

bool isInteger(const CodingValue& value) {
    if (value.kind() == CodingValue::Kind::integer) return true;
    // JSON has one number type: 4448.0 is the integer 4448.
    return value.kind() == CodingValue::Kind::real && std::isfinite(value.asReal()) &&
           value.asReal() == std::trunc(value.asReal());
}

bool isNumber(const CodingValue& value) {
    return value.kind() == CodingValue::Kind::integer || value.kind() == CodingValue::Kind::real;
}

double numberValue(const CodingValue& value) {
    return value.kind() == CodingValue::Kind::integer ? static_cast<double>(value.asInteger()) : value.asReal();
}

enum class Minimum { none, zero, aboveZero };

class SchemaChecker {
public:
    SchemaChecker(bool strict, std::vector<FDLProblem>& problems) : strict_(strict), problems_(problems) {}

    void document(const CodingValue& root) {
        if (!object(root, "")) return;
        keys(root, "", {"uuid", "version", "fdl_creator", "default_framing_intent", "framing_intents", "contexts",
                        "canvas_templates"});
        uuid(root);
        version(root);
        string(root, "", "fdl_creator", false);
        id(root, "", "default_framing_intent", false);
        array(root, "", "framing_intents", [this](const CodingValue& v, const std::string& p) { intent(v, p); });
        array(root, "", "contexts", [this](const CodingValue& v, const std::string& p) { context(v, p); });
        array(root, "", "canvas_templates", [this](const CodingValue& v, const std::string& p) { canvasTemplate(v, p); });
    }

private:
    void error(const std::string& path, std::string message) {
        problems_.push_back({FDLProblem::Severity::error, path, std::move(message)});
    }
    void warning(const std::string& path, std::string message) {
        problems_.push_back({FDLProblem::Severity::warning, path, std::move(message)});
    }

    bool object(const CodingValue& value, const std::string& path) {
        if (value.kind() == CodingValue::Kind::dictionary) return true;
        error(path, "expected an object, found " + CodingValue::describe(value.kind()));
        return false;
    }

    // Members the schema does not name, other than the writer's own "_..." ones.
    void keys(const CodingValue& object, const std::string& path, std::initializer_list<std::string_view> known) {
        for (const auto& [key, value] : object.asDictionary()) {
            if (key.starts_with('_')) continue;
            bool isKnown = false;
            for (std::string_view name : known) isKnown = isKnown || key == name;
            if (isKnown) continue;
            std::string message = "unknown property (a property of one's own starts with \"_\")";
            std::string where = member(path, key.size() > 40 ? quoted(key) : key);
            if (strict_) error(where, message);
            else warning(where, message);
        }
    }

    // The member when present; a missing required one is reported.
    const CodingValue* required(const CodingValue& object, const std::string& path, std::string_view key, bool needed) {
        const CodingValue* value = object.find(key);
        if (!value && needed) error(path, "missing required property \"" + std::string(key) + "\"");
        return value;
    }

    const CodingValue* string(const CodingValue& object, const std::string& path, std::string_view key, bool needed) {
        const CodingValue* value = required(object, path, key, needed);
        if (!value) return nullptr;
        if (value->kind() == CodingValue::Kind::string) return value;
        error(member(path, key), "expected a string, found " + CodingValue::describe(value->kind()));
        return nullptr;
    }

    void id(const CodingValue& object, const std::string& path, std::string_view key, bool needed) {
        static const std::regex form("[A-Za-z0-9_]{1,32}");
        const CodingValue* value = string(object, path, key, needed);
        // Lengths first: the regular expression engine recurses per character.
        if (value && (value->asString().size() > 32 || !std::regex_match(value->asString(), form))) {
            error(member(path, key), quoted(value->asString()) + " is not an id: 1 to 32 letters, digits or _");
        }
    }

    void decisionID(const CodingValue& object, const std::string& path) {
        static const std::regex form("[A-Za-z0-9_]+-[A-Za-z0-9_]+");
        const CodingValue* value = string(object, path, "id", true);
        if (!value) return;
        const std::string& text = value->asString();
        if (text.size() < 3 || text.size() > 65 || !std::regex_match(text, form)) {
            error(member(path, "id"), quoted(text) + " is not a framing decision id: <canvas id>-<intent id>");
        }
    }

    void uuid(const CodingValue& root) {
        static const std::regex form("[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}");
        const CodingValue* value = string(root, "", "uuid", true);
        if (value && (value->asString().size() != 36 || !std::regex_match(value->asString(), form))) {
            error("uuid", quoted(value->asString()) + " is not a UUID (8-4-4-4-12 hexadecimal digits)");
        }
    }

    void version(const CodingValue& root) {
        const CodingValue* value = required(root, "", "version", true);
        if (!value || !object(*value, "version")) return;
        keys(*value, "version", {"major", "minor"});
        bool complete = integer(*value, "version", "major", true, Minimum::zero);
        complete = integer(*value, "version", "minor", true, Minimum::zero) && complete;
        if (!complete) return;
        FDLVersion found = versionOf(root);
        bool known = isStrictVersion(found) || found.major == 1 || (found.major == 0 && found.minor == 1);
        std::string text = std::to_string(found.major) + "." + std::to_string(found.minor);
        if (!known) error("version", "version " + text + " is not one this reader knows (0.1, 1.x, 2.0)");
        else if (!isStrictVersion(found)) warning("version", "version " + text + " is older than 2.0; read leniently");
    }

    bool number(const CodingValue& object, const std::string& path, std::string_view key, bool needed,
                Minimum minimum) {
        const CodingValue* value = required(object, path, key, needed);
        if (!value) return false;
        if (!isNumber(*value)) {
            error(member(path, key), "expected a number, found " + CodingValue::describe(value->kind()));
            return false;
        }
        return inRange(numberValue(*value), member(path, key), minimum);
    }

    bool integer(const CodingValue& object, const std::string& path, std::string_view key, bool needed,
                 Minimum minimum) {
        const CodingValue* value = required(object, path, key, needed);
        if (!value) return false;
        if (!isInteger(*value)) {
            std::string found = isNumber(*value) ? "a fractional number" : CodingValue::describe(value->kind());
            error(member(path, key), "expected an integer, found " + found);
            return false;
        }
        return inRange(numberValue(*value), member(path, key), minimum);
    }

    bool inRange(double value, const std::string& path, Minimum minimum) {
        if (minimum == Minimum::aboveZero && !(value > 0)) {
            error(path, "must be greater than 0");
            return false;
        }
        if (minimum == Minimum::zero && !(value >= 0)) {
            error(path, "must not be negative");
            return false;
        }
        return true;
    }

    void dimensions(const CodingValue& object, const std::string& path, std::string_view key, bool needed,
                    bool whole, Minimum minimum = Minimum::aboveZero) {
        const CodingValue* value = required(object, path, key, needed);
        std::string here = member(path, key);
        if (!value || !this->object(*value, here)) return;
        keys(*value, here, {"width", "height"});
        for (std::string_view side : {"width", "height"}) {
            if (whole) integer(*value, here, side, true, minimum);
            else number(*value, here, side, true, minimum);
        }
    }

    // Anchors were allowed below zero before 2.0.
    void point(const CodingValue& object, const std::string& path, std::string_view key, bool needed) {
        const CodingValue* value = required(object, path, key, needed);
        std::string here = member(path, key);
        if (!value || !this->object(*value, here)) return;
        keys(*value, here, {"x", "y"});
        for (std::string_view axis : {"x", "y"}) number(*value, here, axis, true, strict_ ? Minimum::zero : Minimum::none);
    }

    // A member that needs another beside it.
    void dependent(const CodingValue& object, const std::string& path, std::string_view key, std::string_view needs) {
        if (object.find(key) && !object.find(needs)) {
            error(path, "\"" + std::string(key) + "\" needs \"" + std::string(needs) + "\" beside it");
        }
    }

    void oneOf(const CodingValue& object, const std::string& path, std::string_view key,
               std::initializer_list<std::string_view> allowed, bool needed) {
        const CodingValue* value = string(object, path, key, needed);
        if (!value) return;
        for (std::string_view name : allowed) {
            if (value->asString() == name) return;
        }
        std::string list;
        for (std::string_view name : allowed) list += (list.empty() ? "" : ", ") + std::string(name);
        error(member(path, key), quoted(value->asString()) + " is not one of " + list);
    }

    template <typename Check>
    void array(const CodingValue& object, const std::string& path, std::string_view key, Check check) {
        const CodingValue* value = object.find(key);
        if (!value) return;
        std::string here = member(path, key);
        if (value->kind() != CodingValue::Kind::array) {
            error(here, "expected an array, found " + CodingValue::describe(value->kind()));
            return;
        }
        const auto& items = value->asArray();
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (this->object(items[i], item(here, i))) check(items[i], item(here, i));
        }
    }

    void intent(const CodingValue& value, const std::string& path) {
        keys(value, path, {"label", "id", "aspect_ratio", "protection"});
        string(value, path, "label", false);
        id(value, path, "id", true);
        dimensions(value, path, "aspect_ratio", true, true);
        // A share of the canvas: all of it would leave nothing to frame.
        const CodingValue* protection = value.find("protection");
        if (number(value, path, "protection", false, Minimum::zero) && numberValue(*protection) >= 1) {
            error(member(path, "protection"), "must be below 1 (a share of the canvas)");
        }
    }

    void context(const CodingValue& value, const std::string& path) {
        keys(value, path, {"label", "context_creator", "clip_id", "canvases"});
        string(value, path, "label", false);
        string(value, path, "context_creator", false);
        if (const CodingValue* clip = value.find("clip_id"); clip && object(*clip, member(path, "clip_id"))) {
            clipID(*clip, member(path, "clip_id"));
        }
        array(value, path, "canvases", [this](const CodingValue& v, const std::string& p) { canvas(v, p); });
    }

    void clipID(const CodingValue& value, const std::string& path) {
        keys(value, path, {"clip_name", "file", "sequence"});
        string(value, path, "clip_name", true);
        string(value, path, "file", false);
        if (value.find("file") && value.find("sequence")) error(path, "holds both \"file\" and \"sequence\"; one at most");
        const CodingValue* sequence = value.find("sequence");
        std::string here = member(path, "sequence");
        if (!sequence || !object(*sequence, here)) return;
        keys(*sequence, here, {"value", "idx", "min", "max"});
        string(*sequence, here, "value", true);
        if (const CodingValue* idx = string(*sequence, here, "idx", true); idx && idx->asString().size() != 1) {
            error(member(here, "idx"), "must be a single character");
        }
        integer(*sequence, here, "min", true, Minimum::zero);
        integer(*sequence, here, "max", true, Minimum::zero);
    }

    void canvas(const CodingValue& value, const std::string& path) {
        keys(value, path, {"label", "id", "source_canvas_id", "dimensions", "effective_dimensions",
                           "effective_anchor_point", "photosite_dimensions", "physical_dimensions",
                           "anamorphic_squeeze", "framing_decisions"});
        string(value, path, "label", false);
        id(value, path, "id", true);
        id(value, path, "source_canvas_id", true);
        dimensions(value, path, "dimensions", true, true);
        dimensions(value, path, "effective_dimensions", false, true);
        point(value, path, "effective_anchor_point", false);
        dependent(value, path, "effective_dimensions", "effective_anchor_point");
        dimensions(value, path, "photosite_dimensions", false, true);
        dimensions(value, path, "physical_dimensions", false, false);
        number(value, path, "anamorphic_squeeze", false, Minimum::aboveZero);
        array(value, path, "framing_decisions", [this](const CodingValue& v, const std::string& p) { decision(v, p); });
    }

    void decision(const CodingValue& value, const std::string& path) {
        keys(value, path, {"label", "id", "framing_intent_id", "dimensions", "anchor_point", "protection_dimensions",
                           "protection_anchor_point"});
        string(value, path, "label", false);
        decisionID(value, path);
        id(value, path, "framing_intent_id", true);
        dimensions(value, path, "dimensions", true, false);
        point(value, path, "anchor_point", true);
        dimensions(value, path, "protection_dimensions", false, false);
        point(value, path, "protection_anchor_point", false);
        dependent(value, path, "protection_dimensions", "protection_anchor_point");
    }

    void canvasTemplate(const CodingValue& value, const std::string& path) {
        const std::initializer_list<std::string_view> sources = {
            "framing_decision.dimensions", "framing_decision.protection_dimensions", "canvas.dimensions",
            "canvas.effective_dimensions"};
        keys(value, path, {"label", "id", "target_dimensions", "target_anamorphic_squeeze", "fit_source", "fit_method",
                           "alignment_method_vertical", "alignment_method_horizontal", "preserve_from_source_canvas",
                           "maximum_dimensions", "pad_to_maximum", "round"});
        string(value, path, "label", false);
        id(value, path, "id", true);
        dimensions(value, path, "target_dimensions", true, true, Minimum::zero);
        number(value, path, "target_anamorphic_squeeze", true, Minimum::zero);
        oneOf(value, path, "fit_source", sources, true);
        oneOf(value, path, "fit_method", {"width", "height", "fit_all", "fill"}, true);
        oneOf(value, path, "alignment_method_vertical", {"top", "center", "bottom"}, false);
        oneOf(value, path, "alignment_method_horizontal", {"left", "center", "right"}, false);
        preserve(value, path, sources);
        dimensions(value, path, "maximum_dimensions", false, true);
        if (const CodingValue* pad = value.find("pad_to_maximum"); pad && pad->kind() != CodingValue::Kind::boolean) {
            error(member(path, "pad_to_maximum"), "expected a boolean, found " + CodingValue::describe(pad->kind()));
        }
        const CodingValue* round = value.find("round");
        std::string here = member(path, "round");
        if (!round || !object(*round, here)) return;
        keys(*round, here, {"even", "mode"});
        oneOf(*round, here, "even", {"whole", "even"}, true);
        oneOf(*round, here, "mode", {"up", "down", "round"}, true);
    }

    // Before 2.0 "none" said what leaving the member out says now.
    void preserve(const CodingValue& value, const std::string& path,
                  std::initializer_list<std::string_view> sources) {
        const CodingValue* preserve = value.find("preserve_from_source_canvas");
        if (!strict_ && preserve && preserve->kind() == CodingValue::Kind::string && preserve->asString() == "none") {
            return;
        }
        oneOf(value, path, "preserve_from_source_canvas", sources, false);
    }

    bool strict_;
    std::vector<FDLProblem>& problems_;
};

}  // namespace

bool isStrictVersion(const FDLVersion& version) { return version.major == 2 && version.minor == 0; }

FDLVersion versionOf(const CodingValue& root) {
    FDLVersion version;
    const CodingValue* value = root.find("version");
    if (!value) return version;
    auto whole = [](const CodingValue* number) -> std::int64_t {
        if (!number || !isInteger(*number) || std::fabs(numberValue(*number)) > 1e9) return 0;
        return static_cast<std::int64_t>(numberValue(*number));
    };
    version.major = whole(value->find("major"));
    version.minor = whole(value->find("minor"));
    return version;
}

void checkSchema(const CodingValue& root, bool strict, std::vector<FDLProblem>& problems) {
    SchemaChecker(strict, problems).document(root);
}

}  // namespace vantel::detail
