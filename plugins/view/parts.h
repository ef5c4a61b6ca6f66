// The picture's parts, in the order in which they lie on each other: what depends on the settings
// alone, what moves, the equaliser's curves over the spectra, and what pointer and keyboard are on.

#pragma once

#include "canvas.h"
#include "layout.h"
#include "model.h"

namespace channelstrip::view {

void draw_header(Canvas& canvas, const Layout& layout, const Setup& setup);
void draw_cells(Canvas& canvas, const Layout& layout, const Setup& setup);
void draw_equaliser_plot(Canvas& canvas, const Layout& layout, const Setup& setup);
void draw_levels_plot(Canvas& canvas, const Layout& layout, const Setup& setup);
void draw_history_plot(Canvas& canvas, const Layout& layout, const Setup& setup);
void draw_meter_scales(Canvas& canvas, const Layout& layout, const Setup& setup);

void draw_spectra(Canvas& canvas, const Layout& layout, const Model& model);
void draw_levels(Canvas& canvas, const Layout& layout, const Model& model);
void draw_history(Canvas& canvas, const Layout& layout, const Model& model);
void draw_meters(Canvas& canvas, const Layout& layout, const Model& model);
void draw_readouts(Canvas& canvas, const Layout& layout, const Model& model);

void draw_equaliser_curves(Canvas& canvas, const Layout& layout, const Setup& setup);

void draw_history_buttons(Canvas& canvas, const Layout& layout, const Model& model);
void draw_attention(Canvas& canvas, const Layout& layout, const Model& model);

}  // namespace channelstrip::view
