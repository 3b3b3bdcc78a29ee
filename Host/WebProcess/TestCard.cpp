#include "Host/WebProcess/TestCard.h"

#include <array>
#include <cmath>
#include <memory>

#include <pango/pangocairo.h>

#include "Host/Inc/GHandles.h"

namespace WebProcess {

using namespace Host;

namespace {

constexpr double kWidth = kCardWidth;
constexpr double kHeight = kCardHeight;
constexpr double kCell = 80;
constexpr double kMiddleX = kWidth / 2;
constexpr double kMiddleY = kHeight / 2;
constexpr double kRadius = 330;
constexpr double kBandLeft = 370;
constexpr double kBandWidth = kWidth - 2 * kBandLeft;
constexpr double kBarsTop = 180;
constexpr double kNameTop = 290;
constexpr double kGreysTop = 420;
constexpr double kClockTop = 460;
constexpr double kClockBottom = 540;
constexpr double kTitleSize = 76;
constexpr double kClockSize = 60;

struct Colour {
    double red;
    double green;
    double blue;
};

constexpr Colour kBlack = {0, 0, 0};
constexpr Colour kWhite = {1, 1, 1};
constexpr Colour kGround = {0.36, 0.38, 0.42};
constexpr std::array<Colour, 8> kBars = {{{0.9, 0.9, 0.9},
                                          {0.8, 0.8, 0},
                                          {0, 0.8, 0.8},
                                          {0, 0.7, 0},
                                          {0.8, 0, 0.8},
                                          {0.8, 0, 0},
                                          {0, 0, 0.8},
                                          {0, 0, 0}}};

void setColour(cairo_t* cairo, const Colour& colour) {
    cairo_set_source_rgb(cairo, colour.red, colour.green, colour.blue);
}

void fillBox(cairo_t* cairo, const Colour& colour, double x, double y, double width, double height) {
    setColour(cairo, colour);
    cairo_rectangle(cairo, x, y, width, height);
    cairo_fill(cairo);
}

void drawGrid(cairo_t* cairo) {
    fillBox(cairo, kGround, 0, 0, kWidth, kHeight);
    setColour(cairo, kWhite);
    cairo_set_line_width(cairo, 3);
    for (int column = 0; column <= kWidth / kCell; ++column) {
        cairo_move_to(cairo, column * kCell, 0);
        cairo_line_to(cairo, column * kCell, kHeight);
    }
    for (int row = 0; row <= kHeight / kCell; ++row) {
        cairo_move_to(cairo, 0, row * kCell);
        cairo_line_to(cairo, kWidth, row * kCell);
    }
    cairo_stroke(cairo);
}

// The outermost cells in two colours by turns: whoever cuts an edge off sees it.
void drawEdges(cairo_t* cairo) {
    constexpr double thickness = kCell / 4;
    for (int column = 0; column < kWidth / kCell; ++column) {
        const Colour& colour = column % 2 == 0 ? kWhite : kBlack;
        fillBox(cairo, colour, column * kCell, 0, kCell, thickness);
        fillBox(cairo, colour, column * kCell, kHeight - thickness, kCell, thickness);
    }
    for (int row = 0; row < kHeight / kCell; ++row) {
        const Colour& colour = row % 2 == 0 ? kWhite : kBlack;
        fillBox(cairo, colour, 0, row * kCell, thickness, kCell);
        fillBox(cairo, colour, kWidth - thickness, row * kCell, thickness, kCell);
    }
}

void drawBars(cairo_t* cairo) {
    constexpr double width = kBandWidth / kBars.size();
    for (std::size_t bar = 0; bar < kBars.size(); ++bar) {
        const double x = kBandLeft + static_cast<double>(bar) * width;
        const double grey = static_cast<double>(bar) / (kBars.size() - 1);
        fillBox(cairo, kBars[bar], x, kBarsTop, width, kNameTop - kBarsTop);
        fillBox(cairo, {grey, grey, grey}, x, kGreysTop, width, kClockTop - kGreysTop);
    }
}

// In the middle of a black box. A text that is too long ends in an ellipsis.
void drawText(cairo_t* cairo, const std::string& text, double top, double bottom, double size) {
    fillBox(cairo, kBlack, kBandLeft, top, kBandWidth, bottom - top);
    const GObjectHandle<PangoLayout> layout(pango_cairo_create_layout(cairo));
    const std::unique_ptr<PangoFontDescription, GFree<&pango_font_description_free>> font(
        pango_font_description_from_string("sans-serif bold"));
    pango_font_description_set_absolute_size(font.get(), size * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), font.get());
    pango_layout_set_width(layout.get(), static_cast<int>(kBandWidth - kCell / 4) * PANGO_SCALE);
    pango_layout_set_alignment(layout.get(), PANGO_ALIGN_CENTER);
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    pango_layout_set_text(layout.get(), text.c_str(), -1);
    int height = 0;
    pango_layout_get_pixel_size(layout.get(), nullptr, &height);
    setColour(cairo, kWhite);
    cairo_move_to(cairo, kBandLeft + kCell / 8, (top + bottom - height) / 2);
    pango_cairo_show_layout(cairo, layout.get());
}

// The circle, and on it a ball that goes round once a minute.
void drawCircle(cairo_t* cairo, double seconds) {
    constexpr double fullCircle = 2 * G_PI;
    setColour(cairo, kWhite);
    cairo_set_line_width(cairo, 8);
    cairo_new_path(cairo);  // The text has left its end as the current point.
    cairo_arc(cairo, kMiddleX, kMiddleY, kRadius, 0, fullCircle);
    cairo_stroke(cairo);
    const double angle = seconds / 60 * fullCircle - G_PI / 2;
    setColour(cairo, {1, 0.6, 0});
    cairo_arc(cairo, kMiddleX + kRadius * std::cos(angle), kMiddleY + kRadius * std::sin(angle), kCell / 4, 0,
              fullCircle);
    cairo_fill(cairo);
}

}  // namespace

void drawTestCard(cairo_t* cairo, const std::string& title) {
    const std::unique_ptr<GDateTime, GFree<&g_date_time_unref>> now(g_date_time_new_now_local());
    const GChars clock(g_date_time_format(now.get(), "%H:%M:%S"));
    drawGrid(cairo);
    drawEdges(cairo);
    drawBars(cairo);
    drawText(cairo, title, kNameTop, kGreysTop, kTitleSize);
    drawText(cairo, clock.get(), kClockTop, kClockBottom, kClockSize);
    drawCircle(cairo, g_date_time_get_seconds(now.get()));
}

void drawAudioCard(cairo_t* cairo, const std::string& title) {
    fillBox(cairo, kGround, 0, 0, kWidth, kHeight);
    drawText(cairo, title, kNameTop, kGreysTop, kTitleSize);
}

}  // namespace WebProcess
