#pragma once

// The editor's model: one document and the edits people make to it. Each
// edit replaces one of the document's published values, so the document
// announces it and every view follows; undo and redo go back and forth
// between whole copies of the three values (documents are a few kilobytes).

#include <OverlayGenerator/OverlayGen.hpp>
#include <Platform/UUID.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantel::editor {

// The document's values at one moment.
struct DocumentState {
    Size size;
    Color background;
    std::vector<AspectRatio> guides;

    friend bool operator==(const DocumentState&, const DocumentState&) = default;
};

class GuideEditing {
public:
    explicit GuideEditing(std::shared_ptr<OverlayGen> document);

    const std::shared_ptr<OverlayGen>& document() const { return document_; }
    DocumentState state() const;

    // The guide the commands act on; none selects nothing.
    const std::optional<UUID>& selection() const { return selection_; }
    void select(std::optional<UUID> guide) { selection_ = std::move(guide); }
    const AspectRatio* selectedGuide() const;
    // The size the selected guide is fitted into: its parent's fitted box,
    // or the canvas.
    Size selectedParentFit() const;

    // AspectRatio::defaultGuide after the selection (last at the top level
    // when nothing is selected), or as the selection's last child; the new
    // guide is selected.
    void addGuide();
    void addChild();
    // AspectRatio::test's sample guides, at the end of the top level.
    void addSamples();
    void removeGuide();
    void duplicateGuide();
    void moveGuide(int steps);
    // Into the guide above as its last child, or out after the parent.
    void indentGuide();
    void outdentGuide();
    // Dragged onto `target`: right after it, at its level; never into itself.
    void moveGuideAfter(const UUID& moved, const UUID& target);

    // An edit of the selected guide. Edits in a row with the same `what`
    // (a field being typed into) undo as one.
    void changeGuide(const std::string& what, const std::function<void(AspectRatio&)>& change);
    void changeSize(const std::string& what, Size size);
    void changeBackground(Color color);

    bool undo();
    bool redo();
    bool canUndo() const { return !undo_.empty(); }
    bool canRedo() const { return !redo_.empty(); }

    // Whether the values differ from the ones last saved or read.
    bool modified() const { return state() != saved_; }
    void markSaved() { saved_ = state(); }
    // Values read from disk again: nothing to undo, nothing unsaved.
    void replace(DocumentState state);

private:
    void editGuides(const std::string& what, const std::function<void(std::vector<AspectRatio>&)>& change);
    void remember(const std::string& what);
    void apply(const DocumentState& state);

    std::shared_ptr<OverlayGen> document_;
    std::optional<UUID> selection_;
    std::vector<DocumentState> undo_;
    std::vector<DocumentState> redo_;
    std::string lastEdit_;
    DocumentState saved_;
};

}  // namespace vantel::editor
