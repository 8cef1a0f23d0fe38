#pragma once

// A document file as the editor reads and writes it: through the one door,
// remembering whether it was a binary property list so that it is saved as
// one, and refusing to replace a file it could not read.

#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/Data.hpp>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace vantel::editor {

struct OpenedDocument {
    std::shared_ptr<OverlayGen> document;  // none when the file is not a document
    bool binary = false;
    Data bytes;                           // as read, to tell a change on disk from our own save
    std::vector<std::string> problems;    // as `vantel validate` words them, naming the file
};

// A path that does not exist gives a new document (the `vantel new` canvas
// without guides) and no problems.
OpenedDocument readDocumentFile(const std::filesystem::path& file);

// Why the document cannot be drawn, one line each naming `name`; empty when it can.
std::vector<std::string> documentProblems(const OverlayGen& document, const std::string& name);

// What of a document that cannot be drawn can be: its canvas with the
// top-level guides that have no problems. None when even that cannot.
std::shared_ptr<const OverlayGen> drawableParts(const OverlayGen& document);

// The property list, binary or XML; throws what encoding throws.
Data encodedDocument(const OverlayGen& document, bool binary);

}  // namespace vantel::editor
