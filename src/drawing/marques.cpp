// Line marks: broken lines, signs, drill marks, light symbols and arrow tips.
#include "drawing/marques.h"

#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/constantes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"
#include "shapes/cercle.h"

#include <cmath>

using namespace vb;

namespace {

constexpr double DegRad = Litteraux::DegRad;

// The common end: the command's style undone, the pen on the mark's point,
// the current point updated, something drawn.
void Termine(Etat& e, QPointF p) {
    EpaisRestaure(e);
    e.Surf->CurrentX = p.x();
    e.Surf->CurrentY = p.y();
    MajPointCourant(e, e.Repere.RotationCmd);
    e.EtatOrdre |= 64;
}


// `Plus` (ratio allowed, base angle 0) and `X` (no ratio, base angle 45).
void Signe(Etat& e, bool croix) {
    if (!e.Surf) return;
    const QString l = e.LigneCourante;
    const QPointF p = LitPointCommande(e, l);
    const double s = ParaVal0(e, l, 3);
    double k = 1;
    if (!croix) {
        const QString p3 = ParaN(e, l, 3);
        if (InStr(p3, e.Separateur2) > 0) k = SousValeur(e, p3, 2, 1);
    }
    const int couleur = CouleurParametre(e, ParaN(e, l, 4));
    EpaisLocal(e, ParaN(e, l, 5));
    const double angleSigne = ParaVal0(e, l, 6);
    const double a = DegRad * (e.Repere.RotationCmd + (croix ? 45 : 0) - angleSigne);
    if (s != 0) {
        // The second stroke's half length is s / k: a ratio of 0 fails only
        // for a sign that is drawn.
        if (k == 0) throw ErreurExecution("Division par zéro");
        DessinePlus(e, p.x(), p.y(), s, a, couleur, k);
    }
    Termine(e, p);
}

// `Percer`, `PercerX`: a circle and a cross of the same half size.
void Percage(Etat& e, bool enX) {
    Surface* s = e.Surf;
    if (!s) return;
    const QString l = e.LigneCourante;
    const QPointF p = LitPointCommande(e, l);
    const double r = ParaVal0(e, l, 3) / 2;
    const int couleur = CouleurParametre(e, ParaN(e, l, 4));
    EpaisLocal(e, ParaN(e, l, 5));
    if (r != 0) {
        if (couleur != -1) {
            if (e.Styles.TiretL1 > 0) ArcPointille(e, p.x(), p.y(), r, 0, 0, couleur, 1);
            else s->Circle(p.x(), p.y(), r, couleur);
        }
        const double a = e.Repere.RotationCmd * DegRad + (enX ? 0.785398185 : 0);
        DessinePlus(e, p.x(), p.y(), r, a, couleur, 1);
    }
    Termine(e, p);
}

// The arrow tips: open (`Fleche`) or filled and outlined (`FlecheP`).
void Pointe(Etat& e, bool pleine) {
    Surface* s = e.Surf;
    if (!s) return;
    EtatRepere& rp = e.Repere;
    const QString l = e.LigneCourante;
    double x = 0, y = 0;
    ParaCoord(e, x, y, l, 1, rp.PointX, rp.PointY);
    rp.PointX = float(x);
    rp.PointY = float(y);
    LitRotation(e, ParaN(e, l, 2), x, y);
    const QPointF pointe(VersSurfaceX(e, x), VersSurfaceY(e, y));
    const double direction = ParaVal0(e, l, 3) - rp.RotationCmd;
    const double L = ParaVal(e, l, 4).value_or(1);
    EpaisLocal(e, ParaN(e, l, 5));
    const std::optional<double> ouverture = ParaVal(e, l, 6);
    const double h = ouverture ? *ouverture / 2 : 30;
    const int couleur = CouleurParametre(e, ParaN(e, l, -7));
    const double a1 = (h + direction) * DegRad, a2 = (direction - h) * DegRad;
    const QPointF b1(pointe.x() - L * std::cos(a1), pointe.y() - L * std::sin(a1));
    const QPointF b2(pointe.x() - L * std::cos(a2), pointe.y() - L * std::sin(a2));
    if (L != 0 && pleine && couleur != -1) {
        auto pixel = [&](QPointF q) { return PixelDevice(e, q.x(), q.y()); };
        InitialiseStylo(e, couleur);
        PolygoneRempli(e, {pixel(pointe), pixel(b1), pixel(b2)}, couleur);
        s->FillStyle = 1;
    }
    if (L != 0) {
        TraitRot(e, pointe.x(), pointe.y(), b1.x(), b1.y(), 0, couleur);
        TraitRot(e, pointe.x(), pointe.y(), b2.x(), b2.y(), 0, couleur);
    }
    Termine(e, pointe);
}

// The quartered disc of `Voyant`, base angle b in degrees.
void DisqueQuartiers(Etat& e, QPointF p, double r, int couleur, double b, int largeur) {
    Surface* s = e.Surf;
    s->DrawWidth = 1;
    s->FillStyle = 0;
    s->FillColor = couleur;
    double dir[4];
    for (int i = 0; i < 4; ++i) {
        double v = std::fmod(b + 90 * i + e.Repere.RotationCmd, 360.0);
        if (v < 0) v += 360;
        dir[i] = -v * DegRad;
        // A direction of exactly 0 keeps its radius.
        if (dir[i] == 0) dir[i] = -0.001;
    }
    // Two opposite quarters filled, the two others left clear.
    s->Circle(p.x(), p.y(), r, couleur, dir[0], dir[1]);
    s->Circle(p.x(), p.y(), r, couleur, dir[2], dir[3]);
    s->FillStyle = 1;
    s->DrawWidth = largeur;
    if (e.Styles.CouleurDefaut != -1) s->Circle(p.x(), p.y(), r, e.Styles.CouleurDefaut);
}

} // namespace

void CmdTrait(Etat& e) {
    Surface* s = e.Surf;
    if (!s) return;
    EtatRepere& rp = e.Repere;
    const QString l = e.LigneCourante;
    // The scale factors go back to 1 at the end, whatever happens.
    struct Facteurs {
        EtatRepere& r;
        ~Facteurs() { r.FacteurTraitX = r.FacteurTraitY = 1; }
    } garde{rp};
    // 1. SFx, SFy behind x0: non-empty, evaluated, 0 read as 1.
    const QString p1 = ParaN(e, l, 1);
    if (InStr(p1, e.Separateur2) > 0) {
        const double fx = SousValeur(e, p1, 2, 1), fy = SousValeur(e, p1, 3, 1);
        rp.FacteurTraitX = float(fx == 0 ? 1 : fx);
        rp.FacteurTraitY = float(fy == 0 ? 1 : fy);
    }
    // 2. The start point, its rotation and the name of the length variable.
    // The variable is named, not read: the start point is read without it, so
    // that a variable not defined yet is no failure.
    const QString p2 = ParaBrut(e, l, 2);
    const QString nomLongueur = Trim(Piece(p2, 3, e.Separateur2));
    QString debut = l;
    if (!nomLongueur.isEmpty()) {
        debut = ParaBrut(e, l, 1) + e.Separateur1 + Piece(p2, 1, e.Separateur2) +
                e.Separateur2 + Piece(p2, 2, e.Separateur2);
    }
    double x = 0, y = 0;
    ParaCoord(e, x, y, debut, 1, rp.PointX, rp.PointY);
    rp.PointX = float(x);
    rp.PointY = float(y);
    LitRotation(e, ParaN(e, l, 2), x, y);
    const double rotation = rp.RotationCmd;
    QPointF precedent(VersSurfaceX(e, x), VersSurfaceY(e, y));
    // 3. Each next point: ParaCoord against the last one, which it becomes,
    // then turned.
    auto suivant = [&](const QString& texte, int n) {
        double px = 0, py = 0;
        ParaCoord(e, px, py, texte, n, rp.PointX, rp.PointY);
        rp.PointX = float(px);
        rp.PointY = float(py);
        Tourne(rotation, px, py);
        return QPointF(VersSurfaceX(e, px), VersSurfaceY(e, py));
    };
    QPointF courant = suivant(l, 3);
    // 4. Style and colour; the six first parameters dropped.
    EpaisLocal(e, ParaN(e, l, 5));
    const int couleur = CouleurParametre(e, ParaN(e, l, -6));
    QString reste = l;
    SautePara(e, reste, 6);
    // 5. The broken line.
    double longueur = 0;
    for (;;) {
        TraitRot(e, precedent.x(), precedent.y(), courant.x(), courant.y(), 0, couleur);
        longueur += std::hypot(courant.x() - precedent.x(), courant.y() - precedent.y());
        precedent = courant;
        if (Trim(reste).isEmpty()) break;
        courant = suivant(reste, 1);
        SautePara(e, reste, 2);
    }
    // 6.
    if (!nomLongueur.isEmpty()) EcritVarNum(e, e.NiveauCourant, nomLongueur, longueur);
    EpaisRestaure(e);
    s->CurrentX = precedent.x();
    s->CurrentY = precedent.y();
    rp.FacteurTraitX = rp.FacteurTraitY = 1;
    MajPointCourant(e, rotation);
    e.EtatOrdre |= 64;
}

void CmdPlus(Etat& e) { Signe(e, false); }
void CmdX(Etat& e) { Signe(e, true); }
void CmdPercer(Etat& e) { Percage(e, false); }
void CmdPercerX(Etat& e) { Percage(e, true); }
void CmdFleche(Etat& e) { Pointe(e, false); }
void CmdFlecheP(Etat& e) { Pointe(e, true); }

void CmdVoyant(Etat& e) {
    Surface* s = e.Surf;
    if (!s) return;
    const QString l = e.LigneCourante;
    double x = 0, y = 0;
    ParaCoord(e, x, y, l, 1, e.Repere.PointX, e.Repere.PointY);
    // An empty y takes CourantY.
    const QString texteY = Trim(ParaBrut(e, l, 2));
    if (texteY.isEmpty() || texteY.startsWith(e.Separateur2)) y = s->CurrentY;
    LitRotation(e, ParaN(e, l, 2), x, y);
    const QPointF p(VersSurfaceX(e, x), VersSurfaceY(e, y));
    const double r = ParaVal0(e, l, 3) / 2;
    const int type = int(std::nearbyint(ParaVal0(e, l, 4)));
    const int couleur = CouleurParametre(e, ParaN(e, l, -5));
    const int largeur = s->DrawWidth;
    if (r != 0 && couleur != -1) {
        if (type < 2) {
            s->DrawWidth = 1;
            s->FillColor = couleur;
            s->FillStyle = 0;
            s->Circle(p.x(), p.y(), r, couleur);
            s->FillStyle = 1;
            s->DrawWidth = largeur;
            if (e.Styles.CouleurDefaut != -1) s->Circle(p.x(), p.y(), r, e.Styles.CouleurDefaut);
        } else {
            const double base = type == 2 ? 0 : type == 3 ? 90 : type == 4 ? 45 : 135;
            DisqueQuartiers(e, p, r, couleur, base, largeur);
        }
    }
    s->FillStyle = 1;
    s->CurrentX = p.x();
    s->CurrentY = p.y();
    MajPointCourant(e, e.Repere.RotationCmd);
    e.EtatOrdre |= 64;
}
