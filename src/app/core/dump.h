// The JSON of `mirel dump`: every drawing operation in millimetres, the boxes,
// the variables, the current point and the editor text after a run.
#pragma once

#include "drawing/surface.h"

#include <QJsonObject>

struct Session;

QString CouleurHex(int bgr);
QJsonObject OpVersJson(const OpSurface& op);
QJsonObject DumpJson(const Session& s);
