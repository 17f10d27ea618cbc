// The JSON of `mirel dump` (design.md §6).
#pragma once

#include "drawing/surface.h"

#include <QJsonObject>

struct Session;

QString CouleurHex(int bgr);
QJsonObject OpVersJson(const OpSurface& op);
QJsonObject DumpJson(const Session& s);
