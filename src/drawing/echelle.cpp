// Scale definition: the current scale and the mapping of a position to a point.
#include "drawing/echelle.h"

#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/interprete.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"
#include "shapes/cercle.h"

#include <cmath>
#include <utility>

using namespace vb;

namespace {

constexpr double DegRad = DegRadEchelle;
constexpr double Pi = PiEchelle;
constexpr double DeuxPi = DeuxPiEchelle;

// Into 0 to 6.283185 by adding or subtracting the full turn once.
double DansUnTour(double a) {
    if (a < 0) return a + DeuxPi;
    if (a > DeuxPi) return a - DeuxPi;
    return a;
}

// The number format "##0.##": two decimals at most, rounded half away from
// zero, at least one digit before the point, and the point kept when no
// decimal follows ("5."). The locale is not consulted: a composed command
// always takes a decimal point, never a comma.
QString FormatDeuxDecimales(double v) {
    const double r = std::round(v * 100) / 100;
    QString t = QString::number(std::abs(r), 'f', 2);
    while (t.endsWith(u'0')) t.chop(1);
    if (r < 0) t.prepend(u'-');
    return t;
}

// The scale's arc: the Surface's Circle, or the dashed arc of the circle
// commands when a dash pattern is in force.
void TraceArcEchelle(Etat& e, double cx, double cy, double r, double debut, double fin,
                     int couleur) {
    if (!e.Surf) return;
    if (e.Styles.TiretL1 > 0) ArcPointille(e, cx, cy, r, debut, fin, couleur, 1);
    else e.Surf->Circle(cx, cy, r, couleur, debut, fin);
}

// The "?" form of the fifth parameter: the "?" and the separator before it
// become two blanks, an apostrophe and the composed text, in the editor's line.
void RecritArc(Etat& e, const QString& compose) {
    const CtxFic& c = e.PileFic[1];
    const QString ligne = Mid(c.Texte, c.PosDebut, c.FinLigne - c.PosDebut);
    int p = InStr(ligne, QStringLiteral("="));
    if (p == 0) return;
    for (int i = 0; i < 4 && p > 0; ++i) p = InStr(p + 1, ligne, e.Separateur1);
    if (p == 0) return;
    const int q = InStr(p, ligne, QStringLiteral("?"));
    if (q == 0) return;
    RecritLigneEditeur(e, Left(ligne, p - 1) + QStringLiteral("  '") + compose +
                              Mid(ligne, q + 1));
}

// Arc's fifth parameter: the command that draws the scale's own circle about
// the offset centre (or its line when the centre is far away), written into
// the editor ("?"), into a text variable (%CMD...), or the arc's length into a
// numeric variable.
void Parametre5(Etat& e) {
    const Echelle& s = e.Ech;
    const QString p5 = Trim(ParaBrut(e, e.LigneCourante, 5));
    if (p5.isEmpty() || s.D == 0) return;
    QString compose;
    if (std::abs(s.D) < 10000) {
        const double x = s.D * std::sin(s.RotRad), y = -s.D * std::cos(s.RotRad);
        compose = QStringLiteral("Cercle = ") + FormatDeuxDecimales(x) + QStringLiteral(", ") +
                  FormatDeuxDecimales(y) + QStringLiteral(", ") + u' ' +
                  FormatDeuxDecimales(s.RpDebut) + QStringLiteral(", ") +
                  FormatDeuxDecimales(s.AngFin / DegRad) + QStringLiteral(", ") +
                  FormatDeuxDecimales(s.AngDebut / DegRad);
    } else {
        const double sy = s.R * std::sin(s.a1 * DegRad);
        double x1 = -s.R * std::cos(s.a1 * DegRad), y1 = sy;
        double x2 = sy * std::tan((s.a2 - 90) * DegRad), y2 = sy;
        // Brought back through the scale's rotation: the line as it is seen.
        Tourne(-s.Rot, x1, y1);
        Tourne(-s.Rot, x2, y2);
        compose = QStringLiteral("Trait = ") + FormatDeuxDecimales(x1) + QStringLiteral(", ") +
                  FormatDeuxDecimales(y1) + QStringLiteral(", ") + FormatDeuxDecimales(x2) +
                  QStringLiteral(", ") + FormatDeuxDecimales(y2);
    }
    if (p5 == QLatin1String("?")) {
        if (e.NiveauCourant == 1) RecritArc(e, compose);
    } else if (p5.toUpper().startsWith(QLatin1String("%CMD"))) {
        EcritVarTxt(e, e.NiveauCourant, p5, compose);
    } else if (p5.startsWith(u'%')) {
        EcritVarNum(e, e.NiveauCourant, p5, std::abs(s.AngDebut - s.AngFin) * s.RpDebut);
    }
}

// Droite and DroiteV share everything but the axis.
void DroiteCommune(Etat& e, bool verticale) {
    Echelle& s = e.Ech;
    EtatRepere& rp = e.Repere;
    const QString l = e.LigneCourante;
    // 1.
    e.EtatOrdre |= 32 | 64;
    const double d1 = ParaVal0(e, l, 1);
    double d2 = ParaVal0(e, l, 2);
    QString fin = ParaN(e, l, 2);
    const int s2 = InStr(fin, e.Separateur2);
    if (s2 > 0) fin = Left(fin, s2 - 1);
    if (Trim(fin).toUpper().endsWith(u'R')) d2 += d1;
    // 2.
    double x = 0, y = 0;
    LitRotation(e, ParaN(e, l, 2), x, y);
    s.Rot = -rp.RotationCmd;
    s.RotRad = s.Rot * DegRad;
    // 3.
    s.R = ParaVal0(e, l, 3);
    const int couleur = CouleurParametre(e, ParaN(e, l, -4));
    s.TraceEchelle = !EstCouleurN(ParaN(e, l, 4));
    // 4.
    if (s.TraceEchelle) {
        if (verticale)
            TraitRot(e, VersSurfaceX(e, s.R), VersSurfaceY(e, d1), VersSurfaceX(e, s.R),
                     VersSurfaceY(e, d2), s.Rot, couleur);
        else
            TraitRot(e, VersSurfaceX(e, d1), VersSurfaceY(e, s.R), VersSurfaceX(e, d2),
                     VersSurfaceY(e, s.R), s.Rot, couleur);
    }
    // 5.
    s.D = 0;
    s.a1 = s.a2 = 0;
    if (verticale) {
        s.y1 = d1;
        s.y2 = d2;
        s.x1 = s.x2 = 0;
    } else {
        s.x1 = d1;
        s.x2 = d2;
        s.y1 = s.y2 = 0;
    }
    // 6. The pen at the middle of the line, turned.
    const double m = (d1 + d2) / 2, t = -s.RotRad;
    if (e.Surf) {
        if (verticale) {
            e.Surf->CurrentX = rp.OrigineX + rp.CTx + s.R * std::cos(t) + m * std::sin(t);
            e.Surf->CurrentY = rp.OrigineY + rp.CTy - s.R * std::sin(t) + m * std::cos(t);
        } else {
            e.Surf->CurrentX = rp.OrigineX + rp.CTx + m * std::cos(t) + s.R * std::sin(t);
            e.Surf->CurrentY = rp.OrigineY + rp.CTy - m * std::sin(t) + s.R * std::cos(t);
        }
    }
    MajPointCourant(e, -s.Rot);
}

} // namespace

double DistDecal(double d, double r, double a) {
    return std::sqrt(d * d + r * r - 2 * d * r * std::cos((a + 90) * DegRad));
}

double ArcSinus(double v) {
    if (v >= 1) return Pi / 2;
    if (v <= -1) return -Pi / 2;
    return std::atan(v / std::sqrt(1 - v * v));
}

// Within 0 to 6.283185, as AngDebut and AngFin are kept: a negative angle
// would mean a radius line to `Circle`.
double RadMod(double v) {
    double m = std::fmod(std::nearbyint(100 * v), 36000.0);
    if (m < 0) m += 36000;
    return m * DegRad / 100;
}

FormeEchelle FormeEchelleCourante(Etat& e) {
    const Echelle& s = e.Ech;
    if (s.a1 != s.a2) return FormeEchelle::Arc;
    if (s.x1 != s.x2) return FormeEchelle::Droite;
    if (s.y1 != s.y2) return FormeEchelle::DroiteV;
    throw ErreurProvoquee("échelle sans forme");
}

void BornesEchelle(const Etat& e, FormeEchelle f, double& debut, double& fin) {
    const Echelle& s = e.Ech;
    switch (f) {
    case FormeEchelle::Arc: debut = s.a1; fin = s.a2; break;
    case FormeEchelle::Droite: debut = s.x1; fin = s.x2; break;
    case FormeEchelle::DroiteV: debut = s.y1; fin = s.y2; break;
    }
}

double PositionT(Etat& e, double nombre) {
    const CtxFic& c = e.Ctx();
    const Echelle& s = e.Ech;
    if (c.EchelleLog) {
        const double base = std::pow(10.0, s.NbDecades) * s.LogFin / s.LogDebut;
        const double rapport = nombre / s.LogDebut;
        // The logarithm of a value at or below 0 is a run-time failure.
        if (rapport <= 0 || base <= 0) throw ErreurExecution("Appel de procédure incorrect");
        return std::log(rapport) / std::log(base);
    }
    const double p = nombre / 100;
    const double z = c.CoefExposant;
    if ((p < 0 && z != std::floor(z)) || (p == 0 && z < 0))
        throw ErreurExecution("Appel de procédure incorrect");
    return std::pow(p, z);
}

double ValeurDeT(const Etat& e, FormeEchelle f, double t) {
    double debut = 0, fin = 0;
    BornesEchelle(e, f, debut, fin);
    return debut + t * (fin - debut);
}

double ValeurEchelle(Etat& e, FormeEchelle f, double nombre, bool brute) {
    if (brute) return nombre;
    return ValeurDeT(e, f, PositionT(e, nombre));
}

PointEchelle PointCercleDecal(const Etat& e, double A, double rp) {
    const Echelle& s = e.Ech;
    const EtatRepere& r = e.Repere;
    const double num = s.D * std::cos(A);
    // A circle of radius 0 (a tick that ends on the centre): no offset term.
    const double v = num == 0 ? 0 : (rp == 0 ? (num > 0 ? 1 : -1) : num / rp);
    PointEchelle p;
    p.b = (Pi - A) - ArcSinus(v);
    p.x = r.OrigineX + r.CTx + rp * std::cos(p.b);
    p.y = r.OrigineY + r.CTy - s.D + rp * std::sin(p.b);
    return p;
}

PointEchelle PointArc(const Etat& e, double A, double r) {
    const Echelle& s = e.Ech;
    if (s.D < 10000) return PointCercleDecal(e, A, DistDecal(s.D, r, s.a1));
    const EtatRepere& rp = e.Repere;
    const double f = Pi - A;
    const double sy = r * std::sin(s.a1 * DegRad);
    PointEchelle p;
    p.b = f;
    p.x = rp.OrigineX + rp.CTx + sy * std::tan(Pi / 2 - f);
    p.y = rp.OrigineY + rp.CTy + sy;
    return p;
}

PointEchelle PointDroit(const Etat& e, FormeEchelle f, double v) {
    const Echelle& s = e.Ech;
    PointEchelle p;
    if (f == FormeEchelle::DroiteV) {
        p.x = VersSurfaceX(e, s.R);
        p.y = VersSurfaceY(e, v);
        p.b = 0;
    } else {
        p.x = VersSurfaceX(e, v);
        p.y = VersSurfaceY(e, s.R);
        p.b = Pi / 2;
    }
    return p;
}

void CmdArc(Etat& e) {
    Echelle& s = e.Ech;
    EtatRepere& rp = e.Repere;
    const QString l = e.LigneCourante;
    // 1.
    e.EtatOrdre |= 32 | 64;
    double a1 = ParaVal0(e, l, 1);
    double a2 = ParaVal0(e, l, 2);
    double x = 0, y = 0;
    LitRotation(e, ParaN(e, l, 2), x, y);
    s.Rot = -rp.RotationCmd;
    s.RotRad = s.Rot * DegRad;
    s.R = s.Rg = ParaVal0(e, l, 3);
    const int couleur = CouleurParametre(e, ParaN(e, l, -4));
    s.TraceEchelle = !EstCouleurN(ParaN(e, l, 4));
    // 2. A zero end can't make the two equal.
    if (a1 == 0) a1 = Sgn(a2) * 0.000001;
    if (a2 == 0) a2 = Sgn(a1) * 0.000001;
    s.a1 = a1;
    s.a2 = a2;
    const double cx = rp.OrigineX + rp.CTx, cy = rp.OrigineY + rp.CTy;
    if (s.D == 0) {
        // 3.
        s.RpDebut = s.RpFin = s.R;
        s.AngDebut = RadMod(s.Rot + 540 - a1);
        s.AngFin = RadMod(s.Rot + 540 - a2);
        if (a1 > a2) std::swap(s.AngDebut, s.AngFin);
        if (s.TraceEchelle) TraceArcEchelle(e, cx, cy, s.RpDebut, s.AngFin, s.AngDebut, couleur);
    } else {
        // 4. Clamp of wide scales.
        if (std::abs(a1 - a2) > 200 && std::abs(s.D) > 0.5 * std::abs(s.R))
            s.D = Sgn(s.D) * 0.5 * std::abs(s.R);
        const double D = s.D, R = s.R;
        s.RpDebut = DistDecal(D, R, a1);
        s.RpFin = DistDecal(D, R, a2);
        const double a = a1 * DegRad;
        const double q = std::atan((D + R * std::sin(a)) / (R * std::cos(a)));
        double ad;
        if (a1 == 90) ad = s.RotRad + Pi / 2;
        else if (a1 == -90) ad = s.RotRad + 4.712388980384685;
        else if (std::abs(a1) < 90) ad = s.RotRad + Pi - q;
        else if (std::abs(a1) > 90 && a1 <= 180) ad = s.RotRad - q;
        else if (a1 >= 270) ad = s.RotRad + Pi - q;
        else ad = s.RotRad + DeuxPi - q;
        s.AngDebut = DansUnTour(ad);
        const double cosA2 = std::sin(a2 * DegRad + Pi / 2);
        s.AngFin = DansUnTour(Pi - a2 * DegRad - ArcSinus(D * cosA2 / s.RpDebut) + s.RotRad);
        if (std::abs(s.D) >= 10000) {
            // 5. The straight limit: the projection of the needle's path.
            s.D = std::abs(s.D);
            const double sy = R * std::sin(a1 * DegRad);
            if (s.TraceEchelle)
                TraitRot(e, cx - R * std::cos(a1 * DegRad), cy + sy,
                         cx + sy * std::tan((a2 - 90) * DegRad), cy + sy, s.Rot, couleur);
        } else {
            // 6.
            if (a1 > a2) std::swap(s.AngDebut, s.AngFin);
            const double Cx = cx + D * std::sin(s.RotRad), Cy = cy - D * std::cos(s.RotRad);
            if (s.CouleurDecal) DessinePlus(e, Cx, Cy, 1, -s.RotRad, *s.CouleurDecal, 1);
            if (s.TraceEchelle) {
                if (std::abs(a1 - a2) >= 359) {
                    s.AngDebut = RadMod(s.AngDebut / DegRad);
                    s.AngFin = RadMod(s.AngFin / DegRad);
                }
                TraceArcEchelle(e, Cx, Cy, s.RpDebut, s.AngFin, s.AngDebut, couleur);
            }
        }
    }
    // 7.
    Parametre5(e);
    // 8.
    s.x1 = s.x2 = s.y1 = s.y2 = 0;
    if (e.Surf) {
        e.Surf->CurrentX = cx;
        e.Surf->CurrentY = cy;
    }
    MajPointCourant(e, -s.Rot);
}

void CmdDroite(Etat& e) { DroiteCommune(e, false); }
void CmdDroiteV(Etat& e) { DroiteCommune(e, true); }

void CmdDecal(Etat& e) {
    Echelle& s = e.Ech;
    const QString l = e.LigneCourante;
    // 1.
    e.EtatOrdre |= 64;
    s.D = -ParaVal0(e, l, 1);
    EcritVarNum(e, e.NiveauCourant, QStringLiteral("%DECAL"), s.D);
    // 2. The cross colour.
    const QString reste = ParaN(e, l, -2);
    if (EstCouleurN(ParaN(e, l, 2))) {
        s.CouleurDecal.reset();
        return;
    }
    s.CouleurDecal = CouleurParametre(e, reste);
    if (e.Surf) {
        e.Surf->CurrentX = e.Repere.OrigineX + e.Repere.CTx;
        e.Surf->CurrentY = e.Repere.OrigineY + e.Repere.CTy - s.D;
    }
    if (!Trim(reste).isEmpty())
        EcritVarTxt(e, e.NiveauCourant, QStringLiteral("%CouleurDECAL"), reste);
}

void CmdExposant(Etat& e) {
    Echelle& s = e.Ech;
    CtxFic& c = e.Ctx();
    const QString l = e.LigneCourante;
    if (Trim(ParaN(e, l, 1)).toUpper() != QLatin1String("L")) {
        c.CoefExposant = float(ParaVal0(e, l, 1));
        c.EchelleLog = false;
        return;
    }
    c.CoefExposant = 0;
    s.NbDecades = Entier16((long long)std::nearbyint(ParaVal0(e, l, 2)));
    s.LogDebut = float(ParaVal0(e, l, 3));
    s.LogFin = float(ParaVal0(e, l, 4));
    if (s.LogDebut == 0) s.LogDebut = 1;
    if (s.LogFin == 0) s.LogFin = 1;
    if (s.LogDebut == 1 && s.LogFin == 1 && s.NbDecades == 0) s.NbDecades = 1;
    c.EchelleLog = true;
    s.DecadesTotal = s.NbDecades + (std::log(double(s.LogFin)) - std::log(double(s.LogDebut))) /
                                       std::log(10.0);
}

void CmdInversion(Etat& e) {
    Echelle& s = e.Ech;
    const std::optional<double> v = ParaVal(e, e.LigneCourante, 1);
    if (v && (*v == 1 || *v == -1)) s.CoteGrad = int(*v);
    else s.CoteGrad = -s.CoteGrad;
}

void RazEchelleRun(Etat& e) {
    e.Ech.D = 0;
    e.Ech.CouleurDecal.reset();
    e.Ech.CoteGrad = 1;
}
