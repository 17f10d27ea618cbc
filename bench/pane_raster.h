// The raster pane of the benchmarks: the Session's pane size at the screen's
// resolution, painted into a QImage.
#pragma once

#include "app/core/session.h"
#include "drawing/surface_peinte.h"

#include <QImage>

#include <memory>

struct PaneRaster {
    QImage image;
    std::unique_ptr<SurfacePeinte> surface;
    PaneRaster() {
        const double w = 297 / 25.4 * DpiEcran, h = 210 / 25.4 * DpiEcran;
        image = QImage(int(w), int(h), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        surface = std::make_unique<SurfacePeinte>(GenreSurface::Ecran, w, h, 25.4 / DpiEcran,
                                                  [this](int) -> QPaintDevice* { return &image; });
    }
};
