// A run painted on a raster pane, for the tests that look at pixels.
#pragma once

#include "outils.h"

#include "drawing/repere.h"
#include "drawing/surface_peinte.h"

#include <QImage>

// A session's run painted as the window paints it, on a white screen pane of
// 297 x 210 mm at 96 dpi; with `journal`, the pane records its operations too.
inline QImage PeintEcran(Session& s, bool journal = false) {
    const double w = 297 / 25.4 * DpiEcran, h = 210 / 25.4 * DpiEcran;
    QImage im(int(w), int(h), QImage::Format_RGB32);
    im.fill(Qt::white);
    Journal j;
    SurfacePeinte pane(GenreSurface::Ecran, w, h, 25.4 / DpiEcran, [&](int) -> QPaintDevice* { return &im; });
    if (journal) pane.SetJournal(&j);
    AttachePane(s.etat, &pane);
    s.Execute();
    pane.EndDoc();
    return im;
}
