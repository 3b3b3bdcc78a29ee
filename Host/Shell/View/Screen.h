// The television screen: a black window of 1280x720 with the views stacked in it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtk/gtk.h>

#include "Host/Shell/View/BrowserView.h"

namespace Shell {

inline constexpr int kScreenWidth = 1280;
inline constexpr int kScreenHeight = 720;

// Gives the widget a background.
void paint(GtkWidget* widget, const char* color);

class Screen : Host::Pinned {
 public:
    // `keyHandler` sees each key before any view; true keeps it from the view that has the focus.
    Screen(double zoom, std::function<bool(const GdkEventKey&)> keyHandler, std::function<void()> closed);
    ~Screen();

    // Above all others. The view must be removed before it dies.
    void add(BrowserView& view);
    void remove(BrowserView& view);
    void setVisible(BrowserView& view, bool visible);

    // All of it, as it is seen.
    [[nodiscard]] GtkWidget* widget() const { return m_window; }

    // Tells each view whether it is the lowest. Pages that come later are to be told again.
    void tellLowest();

    // The view that the remote control acts on; null when all are hidden.
    [[nodiscard]] BrowserView* top() const;
    // What is on the screen, bottom up.
    [[nodiscard]] std::vector<BrowserView*> visibleViews() const;

 private:
    gboolean onKey(GtkWidget*, GdkEventKey* event) { return m_keyHandler(*event); }
    void onDestroy(GtkWidget*);

    void focusTop();

    std::function<bool(const GdkEventKey&)> m_keyHandler;
    std::function<void()> m_closed;
    GtkWidget* m_window;
    GtkWidget* m_overlay;
    std::vector<BrowserView*> m_views;
};

}  // namespace Shell
