#include "Host/Shell/View/Screen.h"

#include <algorithm>
#include <cmath>

#include "Host/Inc/ShellChannel.h"

namespace Shell {

using namespace Host;

void paint(GtkWidget* widget, const char* color) {
    const GObjectHandle<GtkCssProvider> style(gtk_css_provider_new());
    const std::string css = std::string("* { background: ") + color + " }";
    gtk_css_provider_load_from_data(style.get(), css.c_str(), -1, nullptr);
    gtk_style_context_add_provider(gtk_widget_get_style_context(widget), GTK_STYLE_PROVIDER(style.get()),
                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

namespace {

// Without compositing, WebKit replaces what is beneath a view where that is transparent. So each paints on a
// sheet of its own, which is then laid over the others.
gboolean onDrawSheet(GtkWidget* sheet, cairo_t* cairo, gpointer view) {
    cairo_push_group(cairo);
    gtk_container_propagate_draw(GTK_CONTAINER(sheet), GTK_WIDGET(view), cairo);
    cairo_pop_group_to_source(cairo);
    cairo_paint(cairo);
    return TRUE;
}

// A title takes place that a display of the television's own size has not; on Wayland, one that shows all
// windows on its whole screen would end the shell for it.
bool hasPlaceForTitle(int height) {
    GdkRectangle area{};
    GdkMonitor* monitor = gdk_display_get_monitor(gdk_display_get_default(), 0);
    if (monitor)
        gdk_monitor_get_workarea(monitor, &area);
    return !monitor || area.height > height;
}

}  // namespace

Screen::Screen(double zoom, std::function<bool(const GdkEventKey&)> keyHandler, std::function<void()> closed)
    : m_keyHandler(std::move(keyHandler)), m_closed(std::move(closed)) {
    m_window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_title(GTK_WINDOW(m_window), "HbbTV");
    gtk_window_set_resizable(GTK_WINDOW(m_window), FALSE);
    m_overlay = gtk_overlay_new();
    paint(m_window, "black");
    const int height = static_cast<int>(std::lround(kScreenHeight * zoom));
    gtk_window_set_decorated(GTK_WINDOW(m_window), hasPlaceForTitle(height));
    gtk_widget_set_size_request(m_overlay, static_cast<int>(std::lround(kScreenWidth * zoom)), height);
    gtk_container_add(GTK_CONTAINER(m_window), m_overlay);
    g_signal_connect(m_window, "key-press-event", G_CALLBACK(callback<&Screen::onKey>), this);
    g_signal_connect(m_window, "key-release-event", G_CALLBACK(callback<&Screen::onKey>), this);
    g_signal_connect(m_window, "destroy", G_CALLBACK(callback<&Screen::onDestroy>), this);
    gtk_widget_show_all(m_window);
}

Screen::~Screen() {
    if (!m_window)
        return;
    g_signal_handlers_disconnect_by_data(m_window, this);
    gtk_widget_destroy(m_window);
}

void Screen::add(BrowserView& view) {
    m_views.push_back(&view);
    GtkWidget* sheet = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
    gtk_box_pack_start(GTK_BOX(sheet), view.widget(), TRUE, TRUE, 0);
    g_signal_connect(sheet, "draw", G_CALLBACK(onDrawSheet), view.widget());
    gtk_widget_show(sheet);
    gtk_overlay_add_overlay(GTK_OVERLAY(m_overlay), sheet);
    focusTop();
}

void Screen::remove(BrowserView& view) {
    std::erase(m_views, &view);
    if (m_window)
        gtk_widget_destroy(gtk_widget_get_parent(view.widget()));
    focusTop();
}

void Screen::setVisible(BrowserView& view, bool visible) {
    gtk_widget_set_visible(view.widget(), visible);
    focusTop();
}

BrowserView* Screen::top() const {
    const auto views = visibleViews();
    return views.empty() ? nullptr : views.back();
}

std::vector<BrowserView*> Screen::visibleViews() const {
    std::vector<BrowserView*> visible;
    std::copy_if(m_views.begin(), m_views.end(), std::back_inserter(visible),
                 [](const BrowserView* view) { return gtk_widget_get_visible(view->widget()); });
    return visible;
}

void Screen::tellLowest() {
    bool isLowest = true;
    for (const BrowserView* view : visibleViews()) {
        webkit_web_view_send_message_to_page(
            view->webView(),
            webkit_user_message_new(ShellChannel::kIsLowest, g_variant_new_boolean(isLowest)), nullptr,
            nullptr, nullptr);
        isLowest = false;
    }
}

void Screen::focusTop() {
    tellLowest();
    if (BrowserView* view = top())
        gtk_widget_grab_focus(view->widget());
}

void Screen::onDestroy(GtkWidget*) {
    m_window = nullptr;
    m_closed();
}

}  // namespace Shell
