// Run state of the circles.
#pragma once

#include <QPoint>
#include <QPointF>
#include <QVector>

struct EtatCercle {
    // `Points`: the outline of the shape in progress, in Surface units, as
    // 32-bit floats. `PointsPixel`: a polygon in device pixels, at most 1000
    // points. Working buffers, kept to spare allocations between commands.
    QVector<QPointF> Points;
    QVector<QPointF> PointsPixel;
};
