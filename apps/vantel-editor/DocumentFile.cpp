#include "DocumentFile.hpp"

#include "NewDocument.hpp"

#include <OverlayGenerator/DocumentLoading.hpp>

#include <algorithm>
#include <string_view>
#include <system_error>

namespace vantel::editor {

namespace {

std::vector<std::string> namedLines(const std::vector<DocumentProblem>& problems, const std::string& name) {
    std::vector<std::string> lines;
    for (const DocumentProblem& problem : problems) lines.push_back(name + ": " + problem.text());
    return lines;
}

bool isBinaryPropertyList(const Data& bytes) {
    constexpr std::string_view magic = "bplist";
    return bytes.size() >= magic.size() && std::equal(magic.begin(), magic.end(), bytes.begin());
}

}  // namespace

OpenedDocument readDocumentFile(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(std::filesystem::symlink_status(file, error))) {
        return {std::make_shared<OverlayGen>(cli::newDocument(std::vector<AspectRatio>{})), false, {}, {}};
    }
    const std::string name = file.string();
    LoadedBytes read = loadDocumentBytes(DocumentSource::file(file));
    if (!read.ok()) return {nullptr, false, {}, namedLines(read.problems, name)};
    OpenedDocument opened{nullptr, isBinaryPropertyList(read.bytes), read.bytes, {}};
    LoadedDocument loaded = loadDocument(DocumentSource::bytes(read.bytes, name), false);
    if (!loaded.document) {
        opened.problems = namedLines(loaded.problems, name);
        return opened;
    }
    opened.problems = documentProblems(*loaded.document, name);
    opened.document = std::move(loaded.document);
    return opened;
}

std::vector<std::string> documentProblems(const OverlayGen& document, const std::string& name) {
    std::vector<DocumentProblem> problems = checkDocument(document);
    if (problems.empty()) problems = checkDrawingCost(document, document.size().cg());
    return namedLines(problems, name);
}

std::shared_ptr<const OverlayGen> drawableParts(const OverlayGen& document) {
    std::vector<DocumentProblem> problems = checkDocument(document);
    std::vector<AspectRatio> kept;
    for (std::size_t index = 0; index < document.ratios().size(); ++index) {
        const std::string guide = "ratios[" + std::to_string(index) + "]";
        bool bad = std::ranges::any_of(problems, [&](const DocumentProblem& problem) {
            return problem.path == guide || problem.path.starts_with(guide + ".");
        });
        if (!bad) kept.push_back(document.ratios()[index]);
    }
    auto parts = std::make_shared<OverlayGen>(document.size(), document.backgroundColor(), std::move(kept));
    if (!checkDocument(*parts).empty() || !checkDrawingCost(*parts, parts->size().cg()).empty()) return nullptr;
    return parts;
}

Data encodedDocument(const OverlayGen& document, bool binary) { return cli::encodeNewDocument(document, binary); }

}  // namespace vantel::editor
