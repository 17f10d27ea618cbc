// Run state of the frames.
#pragma once

#include <QPoint>
#include <QPointF>
#include <QVector>

struct EtatCadre {
    // The working buffers of the shapes, filled through `AjoutePoint`: the
    // outline in user coordinates (turned, without the origins) and the same
    // points in device pixels, origins added, for `Polygon` (frames, polygons).
    QVector<QPointF> Points;
    QVector<QPoint> PointsPixel;
};
