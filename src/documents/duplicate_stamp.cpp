#include "documents/duplicate_stamp.hpp"

#include <memory>
#include <stdexcept>
#include <string>

#include <cairo-pdf.h>
#include <cairo.h>

namespace fnrk::documents {

namespace {

constexpr double kA4Width = 595.0;
constexpr double kA4Height = 842.0;

cairo_status_t AppendToString(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

}  // namespace

std::string DrawStampPage(std::string_view text) {
    std::string pdf;
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_pdf_surface_create_for_stream(AppendToString, &pdf, kA4Width, kA4Height),
        cairo_surface_destroy);
    const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> cr(cairo_create(surface.get()),
                                                                cairo_destroy);
    const std::string word(text);
    cairo_select_font_face(cr.get(), "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_BOLD);
    cairo_set_font_size(cr.get(), 96);
    cairo_text_extents_t extents{};
    cairo_text_extents(cr.get(), word.c_str(), &extents);
    // Scaled down to fit the page width with a margin, centred.
    const double scale = std::min(1.0, (kA4Width - 60.0) / extents.width);
    cairo_translate(cr.get(), kA4Width / 2, kA4Height / 2);
    cairo_scale(cr.get(), scale, scale);
    cairo_move_to(cr.get(), -extents.width / 2 - extents.x_bearing,
                  -extents.height / 2 - extents.y_bearing);
    cairo_set_source_rgba(cr.get(), 0.85, 0.1, 0.1, 0.45);
    cairo_show_text(cr.get(), word.c_str());
    cairo_show_page(cr.get());
    cairo_surface_finish(surface.get());
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error(std::string("the stamp could not be drawn: ") +
                                 cairo_status_to_string(cairo_surface_status(surface.get())));
    return pdf;
}

}  // namespace fnrk::documents
