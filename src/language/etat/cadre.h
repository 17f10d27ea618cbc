// Run state of Part 3.2: frames. Owned by that Part; fields are added with it.
#pragma once

#include <QPoint>
#include <QPointF>
#include <QVector>

struct EtatCadre {
    // The working buffers of the shapes, filled through `AjoutePoint`: the
    // outline in user coordinates (turned, without the origins) and the same
    // points in device pixels, origins added, for `Polygon` (Parts 3.2, 3.4).
    QVector<QPointF> Points;
    QVector<QPoint> PointsPixel;
};
