#include "Host/Shell/Keys/RemotePanel.h"

#include <utility>

#include "Host/Shell/Keys/KeyMap.h"
#include "Host/Shell/View/Screen.h"

namespace Shell {

using namespace Host;

namespace {

constexpr char kCodeOfButton[] = "hbbtv-key-code";

constexpr int kColumns = 4;

struct Button {
    const char* label;
    std::uint32_t keyCode;
    const char* color = nullptr;
};

// Row by row.
// clang-format off
constexpr Button kButtons[] = {
    {"1", '1'}, {"2", '2'}, {"3", '3'}, {"CH +", kChannelUp},
    {"4", '4'}, {"5", '5'}, {"6", '6'}, {"CH −", kChannelDown},
    {"7", '7'}, {"8", '8'}, {"9", '9'}, {"VOL +", kVolumeUp},
    {"MENU", kMenu}, {"0", '0'}, {"MUTE", kMute}, {"VOL −", kVolumeDown},
    {"", kRed, "#d02020"}, {"", kGreen, "#20a020"}, {"", kYellow, "#d0c020"}, {"", kBlue, "#2040d0"},
    {"INFO", kInfo}, {"▲", kUp}, {"GUIDE", kGuide}, {"TEXT", kTeletext},
    {"◀", kLeft}, {"OK", kEnter}, {"▶", kRight}, {"SUB", kSubtitle},
    {"BACK", kBack}, {"▼", kDown}, {"EXIT", RemotePanel::kExitButton}, {"REC", kRecord},
    {"REW", kRewind}, {"PLAY", kPlayPause}, {"STOP", kStop}, {"FWD", kFastForward},
};
// clang-format on

}  // namespace

RemotePanel::RemotePanel(std::function<void(std::uint32_t)> press)
    : m_press(std::move(press)), m_window(gtk_window_new(GTK_WINDOW_TOPLEVEL)) {
    gtk_window_set_title(GTK_WINDOW(m_window), "Remote control");
    gtk_window_set_resizable(GTK_WINDOW(m_window), FALSE);
    gtk_window_set_accept_focus(GTK_WINDOW(m_window), FALSE);
    gtk_window_set_type_hint(GTK_WINDOW(m_window), GDK_WINDOW_TYPE_HINT_UTILITY);
    g_signal_connect(m_window, "delete-event", G_CALLBACK(gtk_widget_hide_on_delete), nullptr);
    GtkWidget* grid = gtk_grid_new();
    gtk_grid_set_column_homogeneous(GTK_GRID(grid), TRUE);
    gtk_container_add(GTK_CONTAINER(m_window), grid);
    int place = 0;
    for (const Button& each : kButtons) {
        GtkWidget* button = gtk_button_new_with_label(each.label);
        gtk_widget_set_can_focus(button, FALSE);
        if (each.color)
            paint(button, each.color);
        g_object_set_data(G_OBJECT(button), kCodeOfButton, GUINT_TO_POINTER(each.keyCode));
        g_signal_connect(button, "clicked", G_CALLBACK(callback<&RemotePanel::onClicked>), this);
        gtk_grid_attach(GTK_GRID(grid), button, place % kColumns, place / kColumns, 1, 1);
        ++place;
    }
    gtk_widget_show_all(grid);
}

RemotePanel::~RemotePanel() {
    gtk_widget_destroy(m_window);
}

void RemotePanel::toggle(GtkWidget* screen) {
    gtk_window_set_transient_for(GTK_WINDOW(m_window), GTK_WINDOW(gtk_widget_get_toplevel(screen)));
    gtk_widget_set_visible(m_window, !gtk_widget_get_visible(m_window));
}

void RemotePanel::onClicked(GtkButton* button) {
    m_press(GPOINTER_TO_UINT(g_object_get_data(G_OBJECT(button), kCodeOfButton)));
}

}  // namespace Shell
