// `CLogFont`, the rotated-font wrapper, and the font look-up that maps a
// font name to an installed face.
#pragma once

#include "drawing/surface.h"

#include <QString>

#include <cstdint>
#include <optional>

// The vertical resolution (dots per inch) of the desktop device, which the
// font record uses also for a printer. The screen pane is at this resolution.
constexpr double DpiBureau = 96.0;

// The font record: height, escapement, weight, character set, precisions
// and face. Kept for what it asks of the font engine.
struct EnregistrementPolice {
    int32_t lfHeight = 0;
    int32_t lfWidth = 0;
    int32_t lfEscapement = 0;
    int32_t lfOrientation = 0;
    int32_t lfWeight = 0;
    uint8_t lfItalic = 0, lfUnderline = 0, lfStrikeOut = 0;
    uint8_t lfCharSet = 0;
    uint8_t lfOutPrecision = 0;
    uint8_t lfClipPrecision = 0;
    uint8_t lfQuality = 0;
    uint8_t lfPitchAndFamily = 0;
    QString lfFaceName; // at most 31 characters: 32 bytes with the terminating zero
};

// `CLogFont`: a private copy of a font and a rotation, and the device font
// (the "handle") made from them. The instance owns the handle.
class CLogFont {
public:
    // `options` is the options word of the settings (`Patchs`); its bit 0 asks
    // for the nudge of the axis-aligned escapements. `dpiBureau` is the
    // desktop's vertical resolution: the screen's own, 96 for the printer
    // (whose factor 15 twips per pixel is 1440 / 96).
    explicit CLogFont(int options = 0, double dpiBureau = DpiBureau)
        : options_(options), dpiBureau_(dpiBureau) {}

    // Set `LogFont`: frees the handle; none clears the font; otherwise copies
    // the font and makes a new handle with the current rotation.
    void SetLogFont(const PoliceSurface* police);
    // Get `LogFont`: the private copy, or none.
    const std::optional<PoliceSurface>& LogFont() const { return police_; }
    // Set `Rotation` (degrees): an equal value does nothing; otherwise the
    // handle is made again when a font is held.
    void SetRotation(float rotation);
    float Rotation() const { return rotation_; }
    // Get `Handle`: the device font, none when there is no font.
    const std::optional<PoliceDevice>& Handle() const { return handle_; }
    // The record of the last handle made.
    const EnregistrementPolice& Enregistrement() const { return enregistrement_; }

private:
    void FabriquePolice(); // the private font maker
    int options_;
    double dpiBureau_;
    std::optional<PoliceSurface> police_;
    float rotation_ = 0;
    std::optional<PoliceDevice> handle_;
    EnregistrementPolice enregistrement_;
};

// The `Font.Name` that the drawing object reads back after `Font.Name` = nom:
// the installed family's own spelling; the name as asked, in its usual spelling,
// when the font mapper serves it with a metric-compatible face (Liberation
// for Times New Roman, Arial, Courier New); the name as asked for another
// alias of fontconfig; or else the face substituted for a font that is not
// there (a generic fallback).
QString NomPoliceRelu(const QString& nom);
