#include "GuidePanels.hpp"

#include <Platform/NumberText.hpp>

#include <cmath>
#include <map>
#include <string>
#include <utility>

namespace vantel::editor {

namespace {

GdkRGBA rgbaOf(const Color& color) {
    return {float(color.red), float(color.green), float(color.blue), float(color.alpha)};
}

Color colorOf(GtkWidget* button) {
    GdkRGBA rgba;
    gtk_color_chooser_get_rgba(GTK_COLOR_CHOOSER(button), &rgba);
    return Color(rgba.red, rgba.green, rgba.blue, rgba.alpha);
}

GtkWidget* spinButton(double lowest, double highest, double step, unsigned digits) {
    GtkWidget* spin = gtk_spin_button_new_with_range(lowest, highest, step);
    gtk_spin_button_set_digits(GTK_SPIN_BUTTON(spin), digits);
    gtk_widget_set_hexpand(spin, TRUE);
    return spin;
}

GtkWidget* colorButton(const char* title) {
    GtkWidget* button = gtk_color_button_new();
    gtk_color_chooser_set_use_alpha(GTK_COLOR_CHOOSER(button), TRUE);
    gtk_color_button_set_title(GTK_COLOR_BUTTON(button), title);
    return button;
}

double spinValue(GtkWidget* spin) { return gtk_spin_button_get_value(GTK_SPIN_BUTTON(spin)); }

// Rows of "label  widget" in a grid; the label names the widget for screen
// readers and mnemonics.
void addRow(GtkWidget* grid, int row, const char* label, GtkWidget* widget, GtkWidget* extra = nullptr) {
    GtkWidget* name = gtk_label_new_with_mnemonic(label);
    gtk_label_set_xalign(GTK_LABEL(name), 0);
    gtk_label_set_mnemonic_widget(GTK_LABEL(name), widget);
    gtk_grid_attach(GTK_GRID(grid), name, 0, row, 1, 1);
    gtk_grid_attach(GTK_GRID(grid), widget, 1, row, extra ? 1 : 2, 1);
    if (extra) gtk_grid_attach(GTK_GRID(grid), extra, 2, row, 1, 1);
}

GtkWidget* sectionGrid() {
    GtkWidget* grid = gtk_grid_new();
    gtk_grid_set_row_spacing(GTK_GRID(grid), 4);
    gtk_grid_set_column_spacing(GTK_GRID(grid), 8);
    return grid;
}

GtkWidget* heading(const char* text) {
    GtkWidget* label = gtk_label_new(text);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    gtk_widget_add_css_class(label, "heading");
    gtk_widget_set_margin_top(label, 8);
    return label;
}

// The ratios people frame with, for the menu beside the ratio.
GMenuModel* commonRatios() {
    static const char* const ratios[][2] = {
        {"1\u22361", "1:1"},       {"5\u22364", "5:4"},   {"4\u22363", "4:3"},     {"3\u22362", "3:2"},
        {"16\u223610", "16:10"},   {"16\u22369", "16:9"}, {"1.85\u22361", "1.85:1"}, {"2\u22361", "2:1"},
        {"2.39\u22361", "2.39:1"}, {"9\u223616", "9:16"}, {"4\u22365", "4:5"}};
    GMenu* menu = g_menu_new();
    for (const auto& ratio : ratios) {
        GMenuItem* item = g_menu_item_new(ratio[0], nullptr);
        g_menu_item_set_action_and_target_value(item, "win.set-ratio", g_variant_new_string(ratio[1]));
        g_menu_append_item(menu, item);
        g_object_unref(item);
    }
    return G_MENU_MODEL(menu);
}

GtkWidget* gridKindDropDown() {
    static const char* const kinds[] = {"No lines", "Every N px", "N equal parts", nullptr};
    return gtk_drop_down_new_from_strings(kinds);
}

GridType gridOf(GtkWidget* kind, GtkWidget* count) {
    auto n = std::int64_t(std::lround(spinValue(count)));
    switch (gtk_drop_down_get_selected(GTK_DROP_DOWN(kind))) {
        case 1: return GridType::pixels(n);
        case 2: return GridType::divisor(n);
        default: return GridType::none();
    }
}

void showGrid(const GridType& grid, GtkWidget* kind, GtkWidget* count) {
    gtk_drop_down_set_selected(GTK_DROP_DOWN(kind), guint(grid.tag));
    if (grid.tag != GridType::Case::none) gtk_spin_button_set_value(GTK_SPIN_BUTTON(count), double(grid.payload));
    gtk_widget_set_sensitive(count, grid.tag != GridType::Case::none);
}

GtkWidget* toolButton(const char* icon, const char* action, const char* tooltip) {
    GtkWidget* button = gtk_button_new_from_icon_name(icon);
    gtk_actionable_set_action_name(GTK_ACTIONABLE(button), action);
    gtk_widget_set_tooltip_text(button, tooltip);
    return button;
}

// The orientation's icon: a frame of the guide's shape in the row's text
// colour, so it follows selection and theme as a symbolic icon does. Drawn
// here rather than loaded: an SVG icon would bring librsvg into the editor
// for three frames, and an icon folder of the application's makes GTK read
// the whole icon theme twice: together about a tenth of the processor time
// to the first frame.
void drawOrientation(GtkDrawingArea* area, cairo_t* cairo, int, int, gpointer) {
    static constexpr double frames[][8] = {
        {1, 4, 14, 8, 3, 6, 10, 4}, {4, 1, 8, 14, 6, 3, 4, 10}, {2, 2, 12, 12, 4, 4, 8, 8}};
    const double* frame = frames[GPOINTER_TO_INT(g_object_get_data(G_OBJECT(area), "orientation"))];
    GdkRGBA color;
    gtk_style_context_get_color(gtk_widget_get_style_context(GTK_WIDGET(area)), &color);
    gdk_cairo_set_source_rgba(cairo, &color);
    cairo_set_fill_rule(cairo, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_rectangle(cairo, frame[0], frame[1], frame[2], frame[3]);
    cairo_rectangle(cairo, frame[4], frame[5], frame[6], frame[7]);
    cairo_fill(cairo);
}

int orientationShape(const AspectRatio& guide) {
    std::string icon = guide.icon();
    return icon == "rectangle" ? 0 : icon == "rectangle.portrait" ? 1 : 2;
}

GtkWidget* orientationIcon() {
    GtkWidget* area = gtk_drawing_area_new();
    gtk_drawing_area_set_content_width(GTK_DRAWING_AREA(area), 16);
    gtk_drawing_area_set_content_height(GTK_DRAWING_AREA(area), 16);
    gtk_widget_set_valign(area, GTK_ALIGN_CENTER);
    gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(area), drawOrientation, nullptr, nullptr);
    return area;
}

// What a row of the tree shows of its guide.
struct RowLook {
    std::string id;
    int depth = 0;
    std::string text;
    int shape = 0;
};

// The rows the tree should have, in order: each guide, then its children.
void rowLooks(const std::vector<AspectRatio>& guides, int depth, std::vector<RowLook>& looks) {
    for (const AspectRatio& guide : guides) {
        looks.push_back({guide.id.uuidString(), depth, guide.formatted(), orientationShape(guide)});
        if (guide.children) rowLooks(*guide.children, depth + 1, looks);
    }
}

// A row of the tree: the orientation's icon and the guide's label, indented
// by its depth; showLook() fills it in.
GtkWidget* emptyRow() {
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 6);
    GtkWidget* icon = orientationIcon();
    GtkWidget* label = gtk_label_new("");
    gtk_box_append(GTK_BOX(box), icon);
    gtk_box_append(GTK_BOX(box), label);
    GtkWidget* row = gtk_list_box_row_new();
    gtk_list_box_row_set_child(GTK_LIST_BOX_ROW(row), box);
    g_object_set_data(G_OBJECT(row), "box", box);
    g_object_set_data(G_OBJECT(row), "icon", icon);
    g_object_set_data(G_OBJECT(row), "label", label);
    return row;
}

// Only what differs is set: an unchanged row costs GTK no new layout.
void showLook(GtkWidget* row, const RowLook& look) {
    auto* box = static_cast<GtkWidget*>(g_object_get_data(G_OBJECT(row), "box"));
    auto* icon = static_cast<GtkWidget*>(g_object_get_data(G_OBJECT(row), "icon"));
    auto* label = static_cast<GtkWidget*>(g_object_get_data(G_OBJECT(row), "label"));
    const char* id = static_cast<const char*>(g_object_get_data(G_OBJECT(row), "guide-id"));
    if (!id || look.id != id) g_object_set_data_full(G_OBJECT(row), "guide-id", g_strdup(look.id.c_str()), g_free);
    if (gtk_widget_get_margin_start(box) != 6 + 18 * look.depth) gtk_widget_set_margin_start(box, 6 + 18 * look.depth);
    if (look.text != gtk_label_get_text(GTK_LABEL(label))) gtk_label_set_text(GTK_LABEL(label), look.text.c_str());
    if (GPOINTER_TO_INT(g_object_get_data(G_OBJECT(icon), "orientation")) != look.shape) {
        g_object_set_data(G_OBJECT(icon), "orientation", GINT_TO_POINTER(look.shape));
        gtk_widget_queue_draw(icon);
    }
}

const char* rowGuide(GtkWidget* row) { return static_cast<const char*>(g_object_get_data(G_OBJECT(row), "guide-id")); }

GdkContentProvider* dragRow(GtkDragSource* source, double, double, gpointer) {
    GtkWidget* row = gtk_event_controller_get_widget(GTK_EVENT_CONTROLLER(source));
    return gdk_content_provider_new_typed(G_TYPE_STRING, rowGuide(row));
}

}  // namespace

void setMenuOnFirstOpen(GtkWidget* menuButton, GMenuModel* (*makeMenu)()) {
    auto makeNow = [](GtkMenuButton* button, gpointer make) {
        GMenuModel* menu = reinterpret_cast<GMenuModel* (*)()>(make)();
        gtk_menu_button_set_menu_model(button, menu);
        g_object_unref(menu);
    };
    gtk_menu_button_set_create_popup_func(GTK_MENU_BUTTON(menuButton), makeNow, reinterpret_cast<gpointer>(makeMenu),
                                          nullptr);
}

// Each row can be dragged by its guide's id and takes a dropped guide after
// itself.
GtkWidget* GuidePanels::newRow() {
    GtkWidget* row = emptyRow();
    GtkDragSource* source = gtk_drag_source_new();
    gtk_drag_source_set_actions(source, GDK_ACTION_MOVE);
    g_signal_connect(source, "prepare", G_CALLBACK(dragRow), nullptr);
    gtk_widget_add_controller(row, GTK_EVENT_CONTROLLER(source));
    GtkDropTarget* target = gtk_drop_target_new(G_TYPE_STRING, GDK_ACTION_MOVE);
    g_signal_connect(target, "drop", G_CALLBACK(droppedOnRow), this);
    gtk_widget_add_controller(row, GTK_EVENT_CONTROLLER(target));
    return row;
}

gboolean GuidePanels::droppedOnRow(GtkDropTarget* target, const GValue* value, double, double, gpointer self) {
    GtkWidget* row = gtk_event_controller_get_widget(GTK_EVENT_CONTROLLER(target));
    auto moved = UUID::fromString(g_value_get_string(value));
    auto onto = UUID::fromString(rowGuide(row));
    if (!moved || !onto) return FALSE;
    static_cast<GuidePanels*>(self)->editing_.moveGuideAfter(*moved, *onto);
    return TRUE;
}

GuidePanels::GuidePanels(GuideEditing& editing, std::function<void()> selectionChanged)
    : editing_(editing), selectionChanged_(std::move(selectionChanged)) {
    root_ = gtk_box_new(GTK_ORIENTATION_VERTICAL, 4);
    gtk_widget_set_margin_start(root_, 10);
    gtk_widget_set_margin_end(root_, 10);
    gtk_widget_set_margin_bottom(root_, 10);
    gtk_box_append(GTK_BOX(root_), heading("Canvas"));
    gtk_box_append(GTK_BOX(root_), buildCanvasPanel());
    gtk_box_append(GTK_BOX(root_), heading("Guides"));
    gtk_box_append(GTK_BOX(root_), buildTree());
    gtk_box_append(GTK_BOX(root_), heading("Guide"));
    gtk_box_append(GTK_BOX(root_), buildInspector());
}

GtkWidget* GuidePanels::buildCanvasPanel() {
    GtkWidget* grid = sectionGrid();
    canvasWidth_ = spinButton(1, 32767, 1, 0);
    canvasHeight_ = spinButton(1, 32767, 1, 0);
    canvasMargin_ = spinButton(0, 16383, 1, 0);
    background_ = colorButton("Background");
    addRow(grid, 0, "_Width", canvasWidth_);
    addRow(grid, 1, "_Height", canvasHeight_);
    addRow(grid, 2, "_Margin", canvasMargin_);
    addRow(grid, 3, "_Background", background_);
    for (GtkWidget* spin : {canvasWidth_, canvasHeight_, canvasMargin_}) {
        g_signal_connect(spin, "value-changed", G_CALLBACK(spinChanged), this);
    }
    g_signal_connect(background_, "color-set", G_CALLBACK(colorSet), this);
    return grid;
}

GtkWidget* GuidePanels::buildTree() {
    tree_ = gtk_list_box_new();
    gtk_list_box_set_selection_mode(GTK_LIST_BOX(tree_), GTK_SELECTION_SINGLE);
    gtk_accessible_update_property(GTK_ACCESSIBLE(tree_), GTK_ACCESSIBLE_PROPERTY_LABEL, "Guides", -1);
    g_signal_connect(tree_, "row-selected", G_CALLBACK(rowSelectedCallback), this);
    GtkWidget* scroller = gtk_scrolled_window_new();
    gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), tree_);
    gtk_scrolled_window_set_min_content_height(GTK_SCROLLED_WINDOW(scroller), 160);
    gtk_widget_set_vexpand(scroller, TRUE);
    GtkWidget* tools = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 2);
    gtk_box_append(GTK_BOX(tools), toolButton("list-add-symbolic", "win.add-guide", "Add a guide (Insert)"));
    gtk_box_append(GTK_BOX(tools), toolButton("format-indent-more-symbolic", "win.add-child", "Add a guide inside (Ctrl+Insert)"));
    gtk_box_append(GTK_BOX(tools), toolButton("edit-copy-symbolic", "win.duplicate", "Duplicate (Ctrl+D)"));
    gtk_box_append(GTK_BOX(tools), toolButton("go-up-symbolic", "win.move-up", "Move up (Alt+Up)"));
    gtk_box_append(GTK_BOX(tools), toolButton("go-down-symbolic", "win.move-down", "Move down (Alt+Down)"));
    gtk_box_append(GTK_BOX(tools), toolButton("go-next-symbolic", "win.indent", "Into the guide above (Alt+Right)"));
    gtk_box_append(GTK_BOX(tools), toolButton("go-previous-symbolic", "win.outdent", "Out of its parent (Alt+Left)"));
    gtk_box_append(GTK_BOX(tools), toolButton("list-remove-symbolic", "win.remove", "Remove (Delete)"));
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 4);
    gtk_box_append(GTK_BOX(box), scroller);
    gtk_box_append(GTK_BOX(box), tools);
    return box;
}

GtkWidget* GuidePanels::buildInspector() {
    GtkWidget* grid = sectionGrid();
    ratioWidth_ = spinButton(0.001, 1e6, 1, 3);
    ratioHeight_ = spinButton(0.001, 1e6, 1, 3);
    GtkWidget* ratios = gtk_menu_button_new();
    gtk_menu_button_set_label(GTK_MENU_BUTTON(ratios), "Common");
    setMenuOnFirstOpen(ratios, commonRatios);
    gtk_widget_set_tooltip_text(ratios, "Ratios people frame with");
    outline_ = colorButton("Outline");
    weight_ = spinButton(0, 1000, 1, 1);
    fill_ = colorButton("Fill");
    rowKind_ = gridKindDropDown();
    rowCount_ = spinButton(1, 100000, 1, 0);
    columnKind_ = gridKindDropDown();
    columnCount_ = spinButton(1, 100000, 1, 0);
    clears_ = gtk_check_button_new_with_mnemonic("_Clears what lies beneath");
    expression_ = gtk_entry_new();
    gtk_entry_set_placeholder_text(GTK_ENTRY(expression_), "2.39:1 color=red grid=3x3 (Ctrl+L)");
    addRow(grid, 0, "Ratio _width", ratioWidth_, ratios);
    addRow(grid, 1, "Ratio _height", ratioHeight_);
    addRow(grid, 2, "_Outline", outline_);
    addRow(grid, 3, "W_eight", weight_);
    addRow(grid, 4, "_Fill", fill_);
    addRow(grid, 5, "_Rows", rowKind_, rowCount_);
    addRow(grid, 6, "Colu_mns", columnKind_, columnCount_);
    gtk_grid_attach(GTK_GRID(grid), clears_, 0, 7, 3, 1);
    addRow(grid, 8, "_Type", expression_);
    for (GtkWidget* spin : {ratioWidth_, ratioHeight_, weight_, rowCount_, columnCount_}) {
        g_signal_connect(spin, "value-changed", G_CALLBACK(guideWidgetChanged), this);
    }
    for (GtkWidget* kind : {rowKind_, columnKind_}) {
        g_signal_connect(kind, "notify::selected", G_CALLBACK(dropDownChanged), this);
    }
    g_signal_connect(outline_, "color-set", G_CALLBACK(guideWidgetChanged), this);
    g_signal_connect(fill_, "color-set", G_CALLBACK(guideWidgetChanged), this);
    g_signal_connect(clears_, "toggled", G_CALLBACK(guideWidgetChanged), this);
    g_signal_connect(expression_, "activate", G_CALLBACK(guideWidgetChanged), this);
    inspector_ = grid;
    return grid;
}

void GuidePanels::refresh() {
    syncing_ = true;
    refreshCanvasPanel();
    updateTree();
    refreshInspector();
    syncing_ = false;
}

void GuidePanels::refreshCanvasPanel() {
    const OverlayGen& document = *editing_.document();
    gtk_spin_button_set_value(GTK_SPIN_BUTTON(canvasWidth_), document.size().width);
    gtk_spin_button_set_value(GTK_SPIN_BUTTON(canvasHeight_), document.size().height);
    gtk_spin_button_set_value(GTK_SPIN_BUTTON(canvasMargin_), document.size().margin);
    GdkRGBA background = rgbaOf(document.backgroundColor());
    gtk_color_chooser_set_rgba(GTK_COLOR_CHOOSER(background_), &background);
}

// The rows follow the document in place: each guide keeps its row, moved
// where the guide now is, and only rows of new guides are made. An edit
// then changes a few rows, not every row of the tree (making 50 rows again
// took most of an edit's time). A row whose guide is gone ends up past the
// wanted ones and goes.
void GuidePanels::updateTree() {
    bool hadFocus = gtk_widget_has_focus(tree_) || gtk_widget_get_focus_child(tree_);
    std::vector<RowLook> looks;
    rowLooks(editing_.document()->ratios(), 0, looks);
    std::map<std::string, GtkWidget*> rowsByGuide;
    for (GtkWidget* row = gtk_widget_get_first_child(tree_); row; row = gtk_widget_get_next_sibling(row)) {
        if (const char* id = rowGuide(row)) rowsByGuide.emplace(id, row);
    }
    GtkListBox* tree = GTK_LIST_BOX(tree_);
    for (std::size_t index = 0; index < looks.size(); ++index) {
        GtkWidget* row = nullptr;
        // Taken out of the map once placed, so that a second guide with
        // the same id gets a row of its own.
        if (auto found = rowsByGuide.find(looks[index].id); found != rowsByGuide.end()) {
            row = found->second;
            rowsByGuide.erase(found);
        }
        auto position = int(index);
        if (!row) {
            row = newRow();
            gtk_list_box_insert(tree, row, position);
        } else if (GTK_WIDGET(gtk_list_box_get_row_at_index(tree, position)) != row) {
            g_object_ref(row);
            gtk_list_box_remove(tree, row);
            gtk_list_box_insert(tree, row, position);
            g_object_unref(row);
        }
        showLook(row, looks[index]);
    }
    while (GtkListBoxRow* stale = gtk_list_box_get_row_at_index(tree, int(looks.size()))) {
        gtk_list_box_remove(tree, GTK_WIDGET(stale));
    }
    selectRowOfSelection();
    if (hadFocus) focusTree();
}

void GuidePanels::selectRowOfSelection() {
    const auto& selection = editing_.selection();
    std::string id = selection ? selection->uuidString() : "";
    for (GtkWidget* row = gtk_widget_get_first_child(tree_); row; row = gtk_widget_get_next_sibling(row)) {
        if (id == rowGuide(row)) {
            gtk_list_box_select_row(GTK_LIST_BOX(tree_), GTK_LIST_BOX_ROW(row));
            return;
        }
    }
    gtk_list_box_unselect_all(GTK_LIST_BOX(tree_));
}

void GuidePanels::focusTree() {
    GtkListBoxRow* row = gtk_list_box_get_selected_row(GTK_LIST_BOX(tree_));
    gtk_widget_grab_focus(row ? GTK_WIDGET(row) : tree_);
}

void GuidePanels::focusExpression() { gtk_widget_grab_focus(expression_); }

void GuidePanels::clearExpression() { gtk_editable_set_text(GTK_EDITABLE(expression_), ""); }

void GuidePanels::refreshInspector() {
    const AspectRatio* guide = editing_.selectedGuide();
    gtk_widget_set_sensitive(inspector_, guide != nullptr);
    if (!guide) return;
    gtk_spin_button_set_value(GTK_SPIN_BUTTON(ratioWidth_), guide->width);
    gtk_spin_button_set_value(GTK_SPIN_BUTTON(ratioHeight_), guide->height);
    GdkRGBA outline = rgbaOf(guide->color), fill = rgbaOf(guide->fillColor);
    gtk_color_chooser_set_rgba(GTK_COLOR_CHOOSER(outline_), &outline);
    gtk_color_chooser_set_rgba(GTK_COLOR_CHOOSER(fill_), &fill);
    gtk_spin_button_set_value(GTK_SPIN_BUTTON(weight_), guide->weight);
    showGrid(guide->rowType, rowKind_, rowCount_);
    showGrid(guide->columnType, columnKind_, columnCount_);
    gtk_check_button_set_active(GTK_CHECK_BUTTON(clears_), guide->clearParent);
}

void GuidePanels::sizeEdited(GtkSpinButton* which) {
    Size size = editing_.document()->size();
    double value = gtk_spin_button_get_value(which);
    GtkWidget* spin = GTK_WIDGET(which);
    std::string what = spin == canvasWidth_ ? "width" : spin == canvasHeight_ ? "height" : "margin";
    (spin == canvasWidth_ ? size.width : spin == canvasHeight_ ? size.height : size.margin) = value;
    editing_.changeSize(what, size);
}

// A kind of grid chosen without a count starts from one that shows: thirds,
// or a line every 100 px.
void GuidePanels::guideEdited(GtkWidget* which) {
    if (which == expression_) {
        const char* text = gtk_editable_get_text(GTK_EDITABLE(expression_));
        gtk_widget_activate_action(expression_, "win.apply-expression", "s", text);
        return;
    }
    if (which == rowKind_ || which == columnKind_) {
        GtkWidget* count = which == rowKind_ ? rowCount_ : columnCount_;
        guint kind = gtk_drop_down_get_selected(GTK_DROP_DOWN(which));
        syncing_ = true;
        if (kind == 2 && spinValue(count) > 100) gtk_spin_button_set_value(GTK_SPIN_BUTTON(count), 3);
        if (kind == 1 && spinValue(count) < 10) gtk_spin_button_set_value(GTK_SPIN_BUTTON(count), 100);
        syncing_ = false;
    }
    const char* what = which == ratioWidth_ ? "ratio width" : which == ratioHeight_ ? "ratio height"
                     : which == weight_     ? "weight"
                                            : "";
    // Only the value edited is taken: the others show rounded, and writing
    // them back would change what was not touched.
    editing_.changeGuide(what, [&](AspectRatio& guide) {
        if (which == ratioWidth_) guide.width = spinValue(ratioWidth_);
        if (which == ratioHeight_) guide.height = spinValue(ratioHeight_);
        if (which == weight_) guide.weight = spinValue(weight_);
        if (which == outline_) guide.color = colorOf(outline_);
        if (which == fill_) guide.fillColor = colorOf(fill_);
        if (which == rowKind_ || which == rowCount_) guide.rowType = gridOf(rowKind_, rowCount_);
        if (which == columnKind_ || which == columnCount_) guide.columnType = gridOf(columnKind_, columnCount_);
        if (which == clears_) guide.clearParent = gtk_check_button_get_active(GTK_CHECK_BUTTON(clears_));
    });
}

void GuidePanels::rowSelected(GtkListBoxRow* row) {
    std::optional<UUID> id;
    if (row) id = UUID::fromString(rowGuide(GTK_WIDGET(row)));
    if (id == editing_.selection()) return;
    editing_.select(id);
    syncing_ = true;
    refreshInspector();
    syncing_ = false;
    selectionChanged_();
}

void GuidePanels::spinChanged(GtkSpinButton* spin, gpointer self) {
    auto* panels = static_cast<GuidePanels*>(self);
    if (!panels->syncing_) panels->sizeEdited(spin);
}

void GuidePanels::guideWidgetChanged(GtkWidget* widget, gpointer self) {
    auto* panels = static_cast<GuidePanels*>(self);
    if (!panels->syncing_) panels->guideEdited(widget);
}

void GuidePanels::dropDownChanged(GObject* dropDown, GParamSpec*, gpointer self) {
    guideWidgetChanged(GTK_WIDGET(dropDown), self);
}

void GuidePanels::colorSet(GtkColorButton* button, gpointer self) {
    auto* panels = static_cast<GuidePanels*>(self);
    if (!panels->syncing_) panels->editing_.changeBackground(colorOf(GTK_WIDGET(button)));
}

void GuidePanels::rowSelectedCallback(GtkListBox*, GtkListBoxRow* row, gpointer self) {
    auto* panels = static_cast<GuidePanels*>(self);
    if (!panels->syncing_) panels->rowSelected(row);
}

}  // namespace vantel::editor
