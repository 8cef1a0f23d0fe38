#include "GuideEditing.hpp"

#include <gtest/gtest.h>

#include <memory>

using namespace vantel;
using namespace vantel::editor;

namespace {

AspectRatio guide(double width, double height) {
    return AspectRatio(width, height, Color::black(), Color::clear(), 2, GridType::none(), GridType::none(), std::nullopt);
}

struct Editing {
    std::shared_ptr<OverlayGen> document =
        std::make_shared<OverlayGen>(400, 300, 10, Color::black(), std::vector{guide(16, 9), guide(4, 3)});
    GuideEditing editing{document};
    const std::vector<AspectRatio>& guides() const { return document->ratios(); }
};

}  // namespace

TEST(GuideEditingTest, TreeCommandsPlaceTheGuideAndMoveTheSelection) {
    Editing e;
    const UUID first = e.guides()[0].id, second = e.guides()[1].id;
    e.editing.select(first);
    e.editing.addGuide();
    ASSERT_EQ(e.guides().size(), 3u);
    EXPECT_EQ(e.editing.selection(), e.guides()[1].id);  // after the selection, and selected
    e.editing.addChild();
    const UUID child = *e.editing.selection();
    EXPECT_EQ(e.guides()[1].children->back().id, child);

    e.editing.select(second);
    e.editing.indentGuide();  // into the guide above, last
    EXPECT_EQ(e.guides().size(), 2u);
    EXPECT_EQ(e.guides()[1].children->back().id, second);
    e.editing.outdentGuide();  // after its parent again
    ASSERT_EQ(e.guides().size(), 3u);
    EXPECT_EQ(e.guides()[2].id, second);

    e.editing.select(child);
    e.editing.duplicateGuide();
    const auto& copies = *e.guides()[1].children;
    ASSERT_EQ(copies.size(), 2u);
    EXPECT_NE(copies[0].id, copies[1].id);
    EXPECT_EQ(copies[0].ratio(), copies[1].ratio());
    e.editing.removeGuide();
    e.editing.removeGuide();  // the last child: the selection goes to the parent
    EXPECT_EQ(e.editing.selection(), e.guides()[1].id);
    EXPECT_FALSE(e.guides()[1].children.has_value());  // written without a "children" key

    e.editing.select(first);
    e.editing.moveGuide(-1);  // already first: nothing to undo
    e.editing.moveGuide(1);
    EXPECT_EQ(e.guides()[1].id, first);

    e.editing.select(second);
    e.editing.addChild();
    const UUID inner = *e.editing.selection();
    e.editing.moveGuideAfter(second, inner);  // not into itself
    EXPECT_EQ(e.guides()[2].children->front().id, inner);
    e.editing.moveGuideAfter(inner, first);  // dragged out, after the drop target
    EXPECT_EQ(e.guides()[2].id, inner);
    EXPECT_FALSE(e.guides()[3].children.has_value());

    e.editing.addSamples();
    ASSERT_EQ(e.guides().size(), 6u);
    EXPECT_EQ(e.guides()[4].children->front().ratio(), 4.0 / 3);
    EXPECT_EQ(e.editing.selection(), e.guides()[4].id);
}

TEST(GuideEditingTest, UndoRedoAndOneAnnouncementPerEdit) {
    Editing e;
    int announced = 0;
    e.document->publishedRatios().subscribe([&](const auto&) { ++announced; });
    e.editing.select(e.guides()[0].id);
    e.editing.changeGuide("weight", [](AspectRatio& g) { g.weight = 3; });
    e.editing.changeGuide("weight", [](AspectRatio& g) { g.weight = 4; });  // typed on: one undo step
    e.editing.changeGuide("", [](AspectRatio& g) { g.color = Color::named("red").value(); });
    EXPECT_EQ(announced, 3);
    EXPECT_TRUE(e.editing.modified());
    e.editing.undo();
    e.editing.undo();
    EXPECT_EQ(e.guides()[0].weight, 2);
    EXPECT_FALSE(e.editing.modified());
    EXPECT_FALSE(e.editing.undo());
    e.editing.redo();
    EXPECT_EQ(e.guides()[0].weight, 4);
    e.editing.changeSize("width", Size(800, 300, 10));  // a new edit ends the redo
    EXPECT_FALSE(e.editing.canRedo());
    e.editing.markSaved();
    EXPECT_FALSE(e.editing.modified());
    e.editing.undo();
    EXPECT_EQ(e.document->size().width, 400);
    EXPECT_TRUE(e.editing.modified());
}
