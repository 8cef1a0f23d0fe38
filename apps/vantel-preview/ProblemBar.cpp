#include "ProblemBar.hpp"

namespace vantel::preview {

namespace {

void styleProblemBar(GtkWidget* bar) {
    GtkCssProvider* style = gtk_css_provider_new();
    gtk_css_provider_load_from_data(
        style, "label.problem-bar { background: rgba(120, 0, 0, 0.9); color: white; padding: 6px 10px; }", -1);
    gtk_style_context_add_provider_for_display(gtk_widget_get_display(bar), GTK_STYLE_PROVIDER(style),
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(style);
}

}  // namespace

GtkWidget* newProblemBar() {
    GtkWidget* bar = gtk_label_new("");
    gtk_label_set_wrap(GTK_LABEL(bar), TRUE);
    gtk_label_set_selectable(GTK_LABEL(bar), TRUE);
    gtk_label_set_xalign(GTK_LABEL(bar), 0);
    gtk_widget_set_visible(bar, FALSE);
    gtk_widget_set_valign(bar, GTK_ALIGN_END);
    gtk_widget_set_halign(bar, GTK_ALIGN_FILL);
    gtk_widget_add_css_class(bar, "problem-bar");
    styleProblemBar(bar);
    return bar;
}

}  // namespace vantel::preview
