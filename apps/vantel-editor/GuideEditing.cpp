#include "GuideEditing.hpp"

#include <utility>

namespace vantel::editor {

namespace {

// Where a guide lies in the tree: its list, its place in it, and the size
// that list is fitted into.
struct Place {
    std::vector<AspectRatio>* siblings = nullptr;
    std::size_t index = 0;
    AspectRatio* parent = nullptr;
    Size fit;

    AspectRatio& guide() const { return (*siblings)[index]; }
};

std::optional<Place> find(std::vector<AspectRatio>& guides, const UUID& id, AspectRatio* parent, const Size& fit) {
    for (std::size_t index = 0; index < guides.size(); ++index) {
        AspectRatio& guide = guides[index];
        if (guide.id == id) return Place{&guides, index, parent, fit};
        if (!guide.children) continue;
        if (auto inside = find(*guide.children, id, &guide, guide.fitting(fit))) return inside;
    }
    return std::nullopt;
}

void giveFreshIds(AspectRatio& guide) {
    guide.id = UUID::random();
    if (guide.children) {
        for (AspectRatio& child : *guide.children) giveFreshIds(child);
    }
}

std::vector<AspectRatio>& childrenOf(AspectRatio& guide) {
    if (!guide.children) guide.children.emplace();
    return *guide.children;
}

// A guide left without children has none, as a document read from disk.
void dropEmptyChildren(AspectRatio* guide) {
    if (guide && guide->children && guide->children->empty()) guide->children.reset();
}

}  // namespace

GuideEditing::GuideEditing(std::shared_ptr<OverlayGen> document) : document_(std::move(document)), saved_(state()) {}

DocumentState GuideEditing::state() const {
    return {document_->size(), document_->backgroundColor(), document_->ratios()};
}

const AspectRatio* GuideEditing::selectedGuide() const {
    if (!selection_) return nullptr;
    auto& guides = const_cast<std::vector<AspectRatio>&>(document_->ratios());
    std::optional<Place> place = find(guides, *selection_, nullptr, document_->size());
    return place ? &place->guide() : nullptr;
}

Size GuideEditing::selectedParentFit() const {
    auto& guides = const_cast<std::vector<AspectRatio>&>(document_->ratios());
    std::optional<Place> place = selection_ ? find(guides, *selection_, nullptr, document_->size()) : std::nullopt;
    return place ? place->fit : document_->size();
}

void GuideEditing::addGuide() {
    AspectRatio added = AspectRatio::defaultGuide();
    UUID id = added.id;
    editGuides("", [&](std::vector<AspectRatio>& guides) {
        std::optional<Place> place = selection_ ? find(guides, *selection_, nullptr, {}) : std::nullopt;
        if (place) {
            place->siblings->insert(place->siblings->begin() + std::ptrdiff_t(place->index) + 1, std::move(added));
        } else {
            guides.push_back(std::move(added));
        }
        selection_ = id;
    });
}

void GuideEditing::addChild() {
    if (!selectedGuide()) return addGuide();
    AspectRatio added = AspectRatio::defaultGuide();
    UUID id = added.id;
    editGuides("", [&](std::vector<AspectRatio>& guides) {
        childrenOf(find(guides, *selection_, nullptr, {})->guide()).push_back(std::move(added));
        selection_ = id;
    });
}

void GuideEditing::addSamples() {
    std::vector<AspectRatio> samples = AspectRatio::test();
    selection_ = samples.front().id;
    editGuides("", [&](std::vector<AspectRatio>& guides) { guides.insert(guides.end(), samples.begin(), samples.end()); });
}

// The selection moves to the guide that took the removed one's place, the
// one before it, or its parent.
void GuideEditing::removeGuide() {
    if (!selectedGuide()) return;
    editGuides("", [&](std::vector<AspectRatio>& guides) {
        Place place = *find(guides, *selection_, nullptr, {});
        place.siblings->erase(place.siblings->begin() + std::ptrdiff_t(place.index));
        if (place.index < place.siblings->size()) selection_ = (*place.siblings)[place.index].id;
        else if (place.index > 0) selection_ = (*place.siblings)[place.index - 1].id;
        else selection_ = place.parent ? std::optional(place.parent->id) : std::nullopt;
        dropEmptyChildren(place.parent);
    });
}

void GuideEditing::duplicateGuide() {
    if (!selectedGuide()) return;
    editGuides("", [&](std::vector<AspectRatio>& guides) {
        Place place = *find(guides, *selection_, nullptr, {});
        AspectRatio copy = place.guide();
        giveFreshIds(copy);
        selection_ = copy.id;
        place.siblings->insert(place.siblings->begin() + std::ptrdiff_t(place.index) + 1, std::move(copy));
    });
}

void GuideEditing::moveGuide(int steps) {
    if (!selectedGuide()) return;
    editGuides("", [&](std::vector<AspectRatio>& guides) {
        Place place = *find(guides, *selection_, nullptr, {});
        std::ptrdiff_t target = std::ptrdiff_t(place.index) + steps;
        if (target < 0 || target >= std::ptrdiff_t(place.siblings->size())) return;
        std::swap((*place.siblings)[place.index], (*place.siblings)[std::size_t(target)]);
    });
}

void GuideEditing::indentGuide() {
    if (!selectedGuide()) return;
    editGuides("", [&](std::vector<AspectRatio>& guides) {
        Place place = *find(guides, *selection_, nullptr, {});
        if (place.index == 0) return;
        AspectRatio moved = std::move(place.guide());
        place.siblings->erase(place.siblings->begin() + std::ptrdiff_t(place.index));
        childrenOf((*place.siblings)[place.index - 1]).push_back(std::move(moved));
    });
}

void GuideEditing::outdentGuide() {
    if (!selectedGuide()) return;
    UUID id = *selection_;
    editGuides("", [&](std::vector<AspectRatio>& guides) {
        Place place = *find(guides, id, nullptr, {});
        if (!place.parent) return;
        AspectRatio moved = std::move(place.guide());
        place.siblings->erase(place.siblings->begin() + std::ptrdiff_t(place.index));
        UUID parentId = place.parent->id;
        dropEmptyChildren(place.parent);
        Place parent = *find(guides, parentId, nullptr, {});
        parent.siblings->insert(parent.siblings->begin() + std::ptrdiff_t(parent.index) + 1, std::move(moved));
    });
}

void GuideEditing::moveGuideAfter(const UUID& moved, const UUID& target) {
    editGuides("", [&](std::vector<AspectRatio>& guides) {
        std::optional<Place> from = find(guides, moved, nullptr, {});
        if (!from || moved == target) return;
        std::vector<AspectRatio> inside{from->guide()};
        if (!find(guides, target, nullptr, {}) || find(inside, target, nullptr, {})) return;
        AspectRatio taken = std::move(from->guide());
        from->siblings->erase(from->siblings->begin() + std::ptrdiff_t(from->index));
        dropEmptyChildren(from->parent);
        Place to = *find(guides, target, nullptr, {});
        to.siblings->insert(to.siblings->begin() + std::ptrdiff_t(to.index) + 1, std::move(taken));
        selection_ = moved;
    });
}

void GuideEditing::changeGuide(const std::string& what, const std::function<void(AspectRatio&)>& change) {
    if (!selectedGuide()) return;
    editGuides(what + " " + selection_->uuidString(),
               [&](std::vector<AspectRatio>& guides) { change(find(guides, *selection_, nullptr, {})->guide()); });
}

void GuideEditing::changeSize(const std::string& what, Size size) {
    if (size == document_->size()) return;
    remember(what);
    document_->setSize(size);
}

void GuideEditing::changeBackground(Color color) {
    if (color == document_->backgroundColor()) return;
    remember("background");
    document_->setBackgroundColor(color);
}

void GuideEditing::editGuides(const std::string& what,
                              const std::function<void(std::vector<AspectRatio>&)>& change) {
    std::vector<AspectRatio> guides = document_->ratios();
    change(guides);
    if (guides == document_->ratios()) return;
    remember(what);
    document_->setRatios(std::move(guides));
}

void GuideEditing::remember(const std::string& what) {
    if (what.empty() || what != lastEdit_) {
        undo_.push_back(state());
        redo_.clear();
    }
    lastEdit_ = what;
}

bool GuideEditing::undo() {
    if (undo_.empty()) return false;
    redo_.push_back(state());
    DocumentState earlier = std::move(undo_.back());
    undo_.pop_back();
    apply(earlier);
    return true;
}

bool GuideEditing::redo() {
    if (redo_.empty()) return false;
    undo_.push_back(state());
    DocumentState later = std::move(redo_.back());
    redo_.pop_back();
    apply(later);
    return true;
}

void GuideEditing::replace(DocumentState state) {
    undo_.clear();
    redo_.clear();
    apply(state);
    saved_ = std::move(state);
}

// Only the values that differ are set, so observers hear of real changes.
// A selection the values no longer hold is dropped.
void GuideEditing::apply(const DocumentState& state) {
    lastEdit_.clear();
    std::vector<AspectRatio> guides = state.guides;
    if (selection_ && !find(guides, *selection_, nullptr, {})) selection_.reset();
    if (state.size != document_->size()) document_->setSize(state.size);
    if (state.background != document_->backgroundColor()) document_->setBackgroundColor(state.background);
    if (state.guides != document_->ratios()) document_->setRatios(std::move(guides));
}

}  // namespace vantel::editor
