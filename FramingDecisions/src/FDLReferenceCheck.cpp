#include "FDLChecks.hpp"

#include <cmath>
#include <map>
#include <set>
#include <string>

#include <Platform/NumberText.hpp>

namespace vantel::detail {

namespace {

// How far a framing may sit from what its intent's protection makes of the
// protection area: writers round both areas to whole pixels.
constexpr double protectionTolerancePixels = 1.5;

std::string item(const std::string& path, std::size_t index) {
    return path + "[" + std::to_string(index) + "]";
}

class ReferenceChecker {
public:
    ReferenceChecker(const FramingDecisionList& list, std::vector<FDLProblem>& problems)
        : list_(list), problems_(problems) {}

    void check() {
        for (std::size_t i = 0; i < list_.framingIntents.size(); ++i) {
            const FramingIntent& intent = list_.framingIntents[i];
            unique(intentIDs_, intent.id, item("framing_intents", i) + ".id", "framing intent");
            intents_.emplace(intent.id, &intent);  // the first of a duplicated id, as FramingDecisionList::intent
        }
        if (list_.defaultFramingIntent && !list_.defaultFramingIntent->empty() &&
            !intents_.contains(*list_.defaultFramingIntent)) {
            error("default_framing_intent", "names no framing intent: " + quoted(*list_.defaultFramingIntent));
        }
        collectCanvasIDs();
        for (std::size_t c = 0; c < list_.contexts.size(); ++c) {
            const FDLContext& context = list_.contexts[c];
            for (std::size_t i = 0; i < context.canvases.size(); ++i) {
                canvas(context.canvases[i], item(item("contexts", c) + ".canvases", i));
            }
        }
        std::set<std::string> templateIDs;
        for (std::size_t i = 0; i < list_.canvasTemplates.size(); ++i) {
            unique(templateIDs, list_.canvasTemplates[i].id, item("canvas_templates", i) + ".id", "canvas template");
        }
    }

private:
    void error(const std::string& path, std::string message) {
        problems_.push_back({FDLProblem::Severity::error, path, std::move(message)});
    }

    void unique(std::set<std::string>& seen, const std::string& id, const std::string& path, const char* kind) {
        if (id.empty()) return;  // the schema check has said so
        if (!seen.insert(id).second) error(path, std::string("another ") + kind + " has the id " + quoted(id));
    }

    void collectCanvasIDs() {
        for (std::size_t c = 0; c < list_.contexts.size(); ++c) {
            const auto& canvases = list_.contexts[c].canvases;
            for (std::size_t i = 0; i < canvases.size(); ++i) {
                unique(canvasIDs_, canvases[i].id, item(item("contexts", c) + ".canvases", i) + ".id", "canvas");
            }
        }
    }

    void canvas(const FDLCanvas& canvas, const std::string& path) {
        if (!canvas.sourceCanvasID.empty() && !canvasIDs_.contains(canvas.sourceCanvasID)) {
            error(path + ".source_canvas_id", "names no canvas in this list: " + quoted(canvas.sourceCanvasID));
        }
        const FDLRect effective = canvas.effectiveArea();
        if (canvas.effectiveDimensions && !canvas.area().contains(effective)) {
            error(path + ".effective_dimensions", "the effective area reaches outside the canvas");
        }
        for (std::size_t i = 0; i < canvas.framingDecisions.size(); ++i) {
            decision(canvas, canvas.framingDecisions[i], item(path + ".framing_decisions", i));
        }
    }

    void decision(const FDLCanvas& canvas, const FramingDecision& decision, const std::string& path) {
        unique(decisionIDs_, decision.id, path + ".id", "framing decision");
        std::string expected = canvas.id + "-" + decision.framingIntentID;
        if (!decision.id.empty() && decision.id != expected) {
            error(path + ".id", quoted(decision.id) + " should be " + quoted(expected) + " (<canvas id>-<intent id>)");
        }
        auto found = intents_.find(decision.framingIntentID);
        const FramingIntent* intent = found == intents_.end() ? nullptr : found->second;
        if (!intent && !decision.framingIntentID.empty()) {
            error(path + ".framing_intent_id", "names no framing intent: " + quoted(decision.framingIntentID));
        }
        nesting(canvas, decision, path);
        if (intent) protectionMatches(*intent, decision, path);
    }

    void nesting(const FDLCanvas& canvas, const FramingDecision& decision, const std::string& path) {
        std::optional<FDLRect> protection = decision.protection();
        const FDLRect outer = protection.value_or(decision.framing());
        const char* outerName = protection ? "the protection area" : "the framing";
        if (protection && !protection->contains(decision.framing())) {
            error(path + ".dimensions", "the framing reaches outside the protection area");
        }
        std::string outerPath = path + (protection ? ".protection_dimensions" : ".dimensions");
        if (!canvas.area().contains(outer)) {
            error(outerPath, std::string(outerName) + " reaches outside the canvas");
            return;
        }
        if (!canvas.effectiveDimensions) return;
        const FDLRect effective = canvas.effectiveArea();
        if (!effective.contains(decision.framing())) {
            error(path + ".dimensions", "the framing reaches outside the effective area");
        } else if (protection && !effective.contains(*protection)) {
            // Cameras write protection that spills into the padding (the ASC's
            // own Alexa 65 sample does); the framing itself is still usable.
            warning(outerPath, "the protection area reaches outside the effective area");
        }
    }

    // The intent's protection is the share of the protection area left
    // around the framing; a decision may override it, so a mismatch warns.
    void protectionMatches(const FramingIntent& intent, const FramingDecision& decision, const std::string& path) {
        if (intent.protection <= 0 || intent.protection >= 1) return;
        if (!decision.protectionDimensions) {
            warning(path, "the intent asks for a protection of " + numberText(intent.protection) +
                              " but the decision has no protection area");
            return;
        }
        const double kept = 1 - intent.protection;
        const FDLDimensions& outer = *decision.protectionDimensions;
        if (std::fabs(outer.width * kept - decision.dimensions.width) > protectionTolerancePixels ||
            std::fabs(outer.height * kept - decision.dimensions.height) > protectionTolerancePixels) {
            warning(path + ".protection_dimensions",
                    "does not match the intent's protection of " + numberText(intent.protection));
        }
    }

    void warning(const std::string& path, std::string message) {
        problems_.push_back({FDLProblem::Severity::warning, path, std::move(message)});
    }

    const FramingDecisionList& list_;
    std::vector<FDLProblem>& problems_;
    std::set<std::string> intentIDs_, canvasIDs_, decisionIDs_;
    std::map<std::string, const FramingIntent*> intents_;  // a list can hold thousands
};

}  // namespace

std::string quoted(const std::string& value) {
    constexpr std::size_t longest = 40;
    if (value.size() <= longest) return "\"" + value + "\"";
    std::size_t cut = longest;
    while (cut > 0 && (static_cast<unsigned char>(value[cut]) & 0xC0) == 0x80) --cut;  // not inside a character
    return "\"" + value.substr(0, cut) + "...\"";
}

void checkReferences(const FramingDecisionList& list, std::vector<FDLProblem>& problems) {
    ReferenceChecker(list, problems).check();
}

}  // namespace vantel::detail
