#include "FDLCommands.hpp"

#include <FramingDecisions/FDLReading.hpp>
#include <Platform/JSON.hpp>
#include <Platform/NumberText.hpp>

#include <cmath>
#include <iostream>
#include <new>

namespace vantel::cli {

namespace {

CommandDocument readFailure(const DocumentSource& source, const LoadedBytes& read) {
    CommandDocument failed;
    failed.failure = read.failure == DocumentFailure::unreadable ? ExitCode::ioFailure : ExitCode::badDocument;
    for (const DocumentProblem& problem : read.problems) failed.problems.push_back(source.name() + ": " + problem.text());
    return failed;
}

void reportFDLProblems(const std::string& name, const FDLReadResult& read) {
    std::cout.flush();
    for (const FDLProblem& problem : read.problems) std::cerr << name << ": " << problem.text() << '\n';
}

// ---- the text form

std::string areaText(const FDLRect& rect) {
    return numberText(rect.size.width) + " x " + numberText(rect.size.height) + " at " + numberText(rect.anchor.x) +
           ", " + numberText(rect.anchor.y);
}

// Exact, then in whole pixels when that differs.
std::string placedText(const FDLRect& rect) {
    std::string text = areaText(rect);
    if (rect.snapped() != rect) text += " (pixels " + areaText(rect.snapped()) + ")";
    return text;
}

std::string aspectText(double aspect) { return numberText(std::round(aspect * 1000) / 1000); }

std::string labelled(const std::string& id, const std::string& label) {
    return label.empty() ? id : id + " \"" + label + "\"";
}

void printDecision(std::ostream& out, const FDLCanvas& canvas, const FramingDecision& decision) {
    out << "    decision " << labelled(decision.id, decision.label) << " (intent " << decision.framingIntentID
        << "): " << placedText(decision.framing()) << ", desqueezed aspect "
        << aspectText(canvas.desqueezedAspect(decision.dimensions)) << '\n';
    if (auto protection = decision.protection()) out << "      protection " << placedText(*protection) << '\n';
}

void printCanvas(std::ostream& out, const FDLCanvas& canvas) {
    out << "  canvas " << labelled(canvas.id, canvas.label) << ": " << numberText(canvas.dimensions.width) << " x "
        << numberText(canvas.dimensions.height) << ", squeeze " << numberText(canvas.anamorphicSqueeze)
        << ", desqueezed aspect " << aspectText(canvas.desqueezedAspect(canvas.dimensions)) << ", from canvas "
        << canvas.sourceCanvasID << '\n';
    if (canvas.effectiveDimensions) out << "    effective " << placedText(canvas.effectiveArea()) << '\n';
    for (const FramingDecision& decision : canvas.framingDecisions) printDecision(out, canvas, decision);
}

void printList(std::ostream& out, const std::string& name, const FramingDecisionList& list) {
    out << "file         " << name << '\n'
        << "kind         ASC framing decision list, version " << list.version.major << '.' << list.version.minor << '\n'
        << "uuid         " << list.uuid << '\n';
    if (list.fdlCreator) out << "creator      " << *list.fdlCreator << '\n';
    for (const FramingIntent& intent : list.framingIntents) {
        bool isDefault = list.defaultFramingIntent == intent.id;
        out << "intent       " << labelled(intent.id, intent.label) << ": " << numberText(intent.aspectRatio.width)
            << ":" << numberText(intent.aspectRatio.height) << ", protection " << numberText(intent.protection)
            << (isDefault ? " (default)" : "") << '\n';
    }
    for (const FDLContext& context : list.contexts) {
        out << "context      " << context.label;
        if (!context.contextCreator.empty()) out << " (by " << context.contextCreator << ")";
        out << '\n';
        for (const FDLCanvas& canvas : context.canvases) printCanvas(out, canvas);
    }
    if (!list.canvasTemplates.empty()) out << "templates    " << list.canvasTemplates.size() << " (not applied)\n";
}

// ---- the JSON form

void encodeArea(KeyedEncodingContainer& container, const std::optional<FDLRect>& rect, std::string_view key) {
    if (!rect) return container.encodeNil(key);
    KeyedEncodingContainer area = container.nestedContainer(key);
    for (auto [form, value] : {std::pair{"rect", *rect}, std::pair{"pixels", rect->snapped()}}) {
        KeyedEncodingContainer fields = area.nestedContainer(form);
        fields.encode(value.anchor.x, "x");
        fields.encode(value.anchor.y, "y");
        fields.encode(value.size.width, "width");
        fields.encode(value.size.height, "height");
    }
}

struct DecisionJSON {
    const FDLCanvas* canvas;
    const FramingDecision* decision;

    void encode(Encoder& encoder) const {
        KeyedEncodingContainer fields = encoder.container();
        fields.encode(decision->id, "id");
        fields.encode(decision->label, "label");
        fields.encode(decision->framingIntentID, "framingIntentID");
        encodeArea(fields, decision->framing(), "framing");
        encodeArea(fields, decision->protection(), "protection");
        fields.encode(canvas->desqueezedAspect(decision->dimensions), "desqueezedAspect");
    }
};

struct CanvasJSON {
    const FDLCanvas* canvas;

    void encode(Encoder& encoder) const {
        KeyedEncodingContainer fields = encoder.container();
        fields.encode(canvas->id, "id");
        fields.encode(canvas->label, "label");
        fields.encode(canvas->sourceCanvasID, "sourceCanvasID");
        fields.encode(canvas->anamorphicSqueeze, "anamorphicSqueeze");
        encodeArea(fields, canvas->area(), "canvas");
        encodeArea(fields, canvas->effectiveDimensions ? std::optional(canvas->effectiveArea()) : std::nullopt,
                   "effective");
        fields.encode(canvas->desqueezedAspect(canvas->dimensions), "desqueezedAspect");
        UnkeyedEncodingContainer decisions = fields.nestedUnkeyedContainer("decisions");
        for (const FramingDecision& decision : canvas->framingDecisions) decisions.encode(DecisionJSON{canvas, &decision});
    }
};

struct ListJSON {
    std::string name;
    const FramingDecisionList* list;

    void encode(Encoder& encoder) const {
        KeyedEncodingContainer fields = encoder.container();
        fields.encode(name, "file");
        fields.encode(std::string("framing decision list"), "kind");
        fields.encode(list->uuid, "uuid");
        fields.encode(std::to_string(list->version.major) + "." + std::to_string(list->version.minor), "version");
        fields.encodeIfPresent(list->fdlCreator, "creator");
        fields.encodeIfPresent(list->defaultFramingIntent, "defaultFramingIntent");
        UnkeyedEncodingContainer intents = fields.nestedUnkeyedContainer("framingIntents");
        for (const FramingIntent& intent : list->framingIntents) {
            KeyedEncodingContainer item = intents.nestedContainer();
            item.encode(intent.id, "id");
            item.encode(intent.label, "label");
            item.encode(intent.aspectRatio.width, "aspectWidth");
            item.encode(intent.aspectRatio.height, "aspectHeight");
            item.encode(intent.protection, "protection");
        }
        UnkeyedEncodingContainer contexts = fields.nestedUnkeyedContainer("contexts");
        for (const FDLContext& context : list->contexts) {
            KeyedEncodingContainer item = contexts.nestedContainer();
            item.encode(context.label, "label");
            item.encode(context.contextCreator, "creator");
            UnkeyedEncodingContainer canvases = item.nestedUnkeyedContainer("canvases");
            for (const FDLCanvas& canvas : context.canvases) canvases.encode(CanvasJSON{&canvas});
        }
    }
};

void printJSON(std::ostream& out, const std::string& name, const FramingDecisionList& list) {
    JSONEncoder encoder;
    encoder.prettyPrinted = true;
    Data json = encoder.encode(ListJSON{name, &list});
    out.write(reinterpret_cast<const char*>(json.data()), static_cast<std::streamsize>(json.size()));
    out << '\n';
}

}  // namespace

CommandInput readCommandInput(const std::string& argument) { return readCommandInput(documentSource(argument)); }

CommandInput readCommandInput(DocumentSource source) {
    LoadedBytes read;
    try {
        read = loadDocumentBytes(source);
    } catch (const std::bad_alloc&) {
        CommandDocument failed;
        failed.failure = ExitCode::badDocument;
        failed.problems.push_back(source.name() + ": cannot read: not enough memory");
        return {source, std::nullopt, std::move(failed)};
    }
    if (!read.ok()) return {source, std::nullopt, readFailure(source, read)};
    if (isFramingDecisionList(read.bytes, source.name())) return {source, std::move(read.bytes), std::nullopt};
    std::string name = source.name();
    return {DocumentSource::bytes(std::move(read.bytes), std::move(name)), std::nullopt, std::nullopt};
}

ExitCode validateFramingDecisionList(const CommandInput& input) {
    FDLReadResult read = readFramingDecisionList(*input.framingDecisionList);
    reportFDLProblems(input.name(), read);
    if (read.hasErrors()) return ExitCode::badDocument;
    std::cout << input.name() << ": ok\n";
    return ExitCode::ok;
}

ExitCode describeFramingDecisionList(const CommandInput& input, bool json) {
    FDLReadResult read = readFramingDecisionList(*input.framingDecisionList);
    if (read.hasErrors() || !read.document) {
        reportFDLProblems(input.name(), read);
        return ExitCode::badDocument;
    }
    if (json) printJSON(std::cout, input.name(), *read.document);
    else printList(std::cout, input.name(), *read.document);
    return ExitCode::ok;
}

}  // namespace vantel::cli
