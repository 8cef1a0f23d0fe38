#pragma once

// The side of the editor's window: the canvas's values, the guide tree and
// the selected guide's values. Every change made here is an edit of
// GuideEditing; what they show is read back from the document by refresh(),
// which the window calls when the document announces a change.

#include "GuideEditing.hpp"

#include <gtk/gtk.h>

#include <functional>

namespace vantel::editor {

// Gives a menu button the menu `makeMenu` makes when it first opens (by a
// click or F10): no menu is seen before that, so making its popover of many
// items at start-up delayed the first frame for nothing.
void setMenuOnFirstOpen(GtkWidget* menuButton, GMenuModel* (*makeMenu)());

class GuidePanels {
public:
    // `selectionChanged` runs when someone picks another guide in the tree.
    GuidePanels(GuideEditing& editing, std::function<void()> selectionChanged);
    GuidePanels(const GuidePanels&) = delete;
    GuidePanels& operator=(const GuidePanels&) = delete;

    GtkWidget* widget() const { return root_; }

    // Everything again from the document: tree, canvas values, inspector;
    // the tree's rows are kept, moved and changed in place.
    void refresh();
    void focusTree();
    void focusExpression();
    void clearExpression();

private:
    GtkWidget* buildCanvasPanel();
    GtkWidget* buildTree();
    GtkWidget* buildInspector();
    void updateTree();
    GtkWidget* newRow();
    void refreshCanvasPanel();
    void refreshInspector();
    void selectRowOfSelection();
    void sizeEdited(GtkSpinButton* which);
    void guideEdited(GtkWidget* which);
    void rowSelected(GtkListBoxRow* row);

    static void spinChanged(GtkSpinButton* spin, gpointer self);
    static void guideWidgetChanged(GtkWidget* widget, gpointer self);
    static void dropDownChanged(GObject* dropDown, GParamSpec*, gpointer self);
    static void colorSet(GtkColorButton* button, gpointer self);
    static gboolean droppedOnRow(GtkDropTarget* target, const GValue* value, double, double, gpointer self);
    static void rowSelectedCallback(GtkListBox*, GtkListBoxRow* row, gpointer self);

    GuideEditing& editing_;
    std::function<void()> selectionChanged_;
    bool syncing_ = false;  // widgets being set from the document, not edited
    GtkWidget* root_ = nullptr;
    GtkWidget* canvasWidth_ = nullptr;
    GtkWidget* canvasHeight_ = nullptr;
    GtkWidget* canvasMargin_ = nullptr;
    GtkWidget* background_ = nullptr;
    GtkWidget* tree_ = nullptr;
    GtkWidget* inspector_ = nullptr;
    GtkWidget* ratioWidth_ = nullptr;
    GtkWidget* ratioHeight_ = nullptr;
    GtkWidget* outline_ = nullptr;
    GtkWidget* weight_ = nullptr;
    GtkWidget* fill_ = nullptr;
    GtkWidget* rowKind_ = nullptr;
    GtkWidget* rowCount_ = nullptr;
    GtkWidget* columnKind_ = nullptr;
    GtkWidget* columnCount_ = nullptr;
    GtkWidget* clears_ = nullptr;
    GtkWidget* expression_ = nullptr;
};

}  // namespace vantel::editor
