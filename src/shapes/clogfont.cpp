// `CLogFont`, the rotated device font, and the font look-up.
#include "shapes/clogfont.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>

#include <cmath>

namespace {

// The whole part of a rotation, cut toward zero.
long long PartieEntiere(float r) { return static_cast<long long>(std::trunc(r)); }

// Rounds to a whole number, half to even.
int32_t Arrondi(double v) { return static_cast<int32_t>(std::nearbyint(v)); }

// The faces that fontconfig's metric aliases give for the common office fonts
// (Times New Roman, Arial, Courier New, ...): a family that stands in with the
// same advance widths counts as found.
struct AliasMetrique {
    const char* demande;
    const char* compatibles[3];
};
constexpr AliasMetrique AliasMetriques[] = {
    {"Times New Roman", {"Liberation Serif", "Tinos", nullptr}},
    {"Times", {"Liberation Serif", "Tinos", "Nimbus Roman"}},
    {"Arial", {"Liberation Sans", "Arimo", nullptr}},
    {"Helvetica", {"Liberation Sans", "Arimo", "Nimbus Sans"}},
    {"Courier New", {"Liberation Mono", "Cousine", nullptr}},
    {"Courier", {"Liberation Mono", "Cousine", "Nimbus Mono PS"}},
    {"Arial Narrow", {"Liberation Sans Narrow", nullptr, nullptr}},
    {"Calibri", {"Carlito", nullptr, nullptr}},
    {"Cambria", {"Caladea", nullptr, nullptr}},
};

// The family the font mapper serves for `nom`, without the " [foundry]" it
// adds when two foundries ship a family of that name.
QString FamilleServie(const QString& nom) {
    QString f = QFontInfo(QFont(nom)).family();
    const qsizetype foundry = f.lastIndexOf(QLatin1String(" ["));
    if (f.endsWith(u']') && foundry > 0) f.truncate(foundry);
    return f;
}

} // namespace

void CLogFont::SetLogFont(const PoliceSurface* police) {
    handle_.reset();
    if (!police) {
        police_.reset();
        return;
    }
    PoliceSurface copie;
    copie.Name = police->Name;
    copie.Size = police->Size;
    copie.Bold = police->Bold;
    copie.Italic = police->Italic;
    copie.Underline = police->Underline;
    copie.Strikethrough = police->Strikethrough;
    copie.Weight = police->Weight;
    copie.Charset = police->Charset;
    police_ = copie;
    FabriquePolice();
}

void CLogFont::SetRotation(float rotation) {
    if (rotation == rotation_) return;
    rotation_ = rotation;
    handle_.reset();
    if (police_) FabriquePolice();
}

void CLogFont::FabriquePolice() {
    const PoliceSurface& f = *police_;
    EnregistrementPolice r;
    r.lfHeight = -Arrondi(f.Size * dpiBureau_ / 72.0);
    r.lfWidth = 0;
    int32_t esc = Arrondi(double(rotation_) * 10.0);
    // The nudge (bit 0 of the options word): a fifth of a degree off the axes.
    if ((options_ & 1) && esc % 900 == 0 && esc >= -2700 && esc <= 2700) esc += 2;
    r.lfEscapement = esc;
    r.lfOrientation = esc;
    // The font object ties Weight to Bold: setting Bold gives 700, clearing it 400.
    r.lfWeight = f.Bold ? std::max(f.Weight, 700) : (f.Weight >= 700 ? 400 : f.Weight);
    r.lfItalic = f.Italic ? 1 : 0;
    r.lfUnderline = f.Underline ? 1 : 0;
    r.lfStrikeOut = f.Strikethrough ? 1 : 0;
    const bool tourne = PartieEntiere(rotation_) % 360 != 0;
    r.lfCharSet = uint8_t(f.Charset > 254 && tourne ? 0 : f.Charset);
    r.lfOutPrecision = tourne ? 7 : 0;
    r.lfClipPrecision = 0;
    r.lfQuality = 2;
    r.lfPitchAndFamily = 0;
    r.lfFaceName = f.Name.left(31);
    enregistrement_ = r;

    // The device font. Qt's outline fonts take any height, so the em is kept
    // unrounded: the text drawn is the text measured by TextWidth; lfHeight
    // above says what was asked.
    PoliceDevice d;
    d.Name = r.lfFaceName;
    d.HauteurPx = f.Size * dpiBureau_ / 72.0;
    d.Bold = r.lfWeight >= 600;
    d.Italic = r.lfItalic;
    d.Underline = r.lfUnderline;
    d.Strikethrough = r.lfStrikeOut;
    d.Escapement = r.lfEscapement / 10.0;
    handle_ = d;
}

QString NomPoliceRelu(const QString& nom) {
    const QString n = nom.trimmed();
    if (n.isEmpty()) return nom;
    for (const QString& famille : QFontDatabase::families())
        if (famille.compare(n, Qt::CaseInsensitive) == 0) return famille;
    const QString servie = FamilleServie(n);
    for (const AliasMetrique& a : AliasMetriques) {
        if (n.compare(QLatin1String(a.demande), Qt::CaseInsensitive) != 0) continue;
        for (const char* c : a.compatibles)
            if (c && servie.compare(QLatin1String(c), Qt::CaseInsensitive) == 0)
                return QLatin1String(a.demande); // read back in the font's own spelling
    }
    // The faces of the generic families and of a name that exists nowhere are
    // what the font mapper gives for a font it does not know.
    for (const char* generique :
         {"serif", "sans-serif", "monospace", "Serif", "Sans Serif", "Monospace",
          "Mirel police absente"}) {
        if (servie.compare(FamilleServie(QLatin1String(generique)), Qt::CaseInsensitive) == 0)
            return servie;
    }
    // Any other face that fontconfig chose on purpose for this name (an alias).
    return nom;
}
