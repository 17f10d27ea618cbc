// Dimensions: two attachment lines, a dimension line with arrows at its ends
// and a text that may carry the measured distance. The command brackets its
// own line styles, font and colours, so the run's are as they were after it.
#include "drawing/cote.h"

#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/chaines.h"
#include "language/constantes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/hote.h"
#include "language/nombre.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"
#include "shapes/texte.h"

#include <cmath>

using namespace vb;

namespace {

constexpr double DegRad = Litteraux::DegRad;
constexpr double Pi = Litteraux::Pi;


// A colour sub-field: empty gives `vide`, N gives -1.
int Couleur(Etat& e, const QString& texte, int vide) {
    if (Trim(texte).isEmpty()) return vide;
    return CouleurParametre(e, texte);
}

// The arrow length of parameter 9: empty or "§..." is 1, "-" or "-§..." is -1.
double LongueurFleche(Etat& e, const QString& champ) {
    const QString t = Trim(champ);
    if (t.isEmpty() || t.startsWith(e.Separateur2)) return 1;
    if (t == QLatin1String("-") || t.startsWith(QStringLiteral("-") + e.Separateur2)) return -1;
    return ValeurOuDefaut(e, Piece(t, 1, e.Separateur2), 1);
}

// The text's format field: size, style and the extra rotation (degrees).
double FormatTexte(Etat& e, const QString& champ) {
    Surface& s = *e.Surf;
    QString format = Trim(Piece(champ, 1, e.Separateur2)).toUpper();
    PoliceDuFormat(e, Piece(champ, 2, e.Separateur2));
    // The rotation: what stands behind "R", trailing style letters aside.
    double rotation = 0;
    const int r = InStr(format, QStringLiteral("R"));
    QString avant = format;
    if (r > 0) {
        QString ex = Mid(format, r + 1);
        avant = Left(format, r - 1);
        while (!ex.isEmpty() && QStringLiteral("BGISU").contains(ex.back())) {
            avant += ex.back();
            ex.chop(1);
        }
        rotation = EvalExpr(e, ex).value_or(0);
    }
    TailleDepuisFormat(e, avant);
    StylesTexte(s, avant);
    return rotation;
}

} // namespace

void CmdCote(Etat& e) {
    Surface* s = e.Surf;
    if (!s) return;
    EtatRepere& rp = e.Repere;
    const QString l = e.LigneCourante;
    const QString s2 = e.Separateur2;
    const PoliceSurface garde = s->Font;
    auto fin = [&] {
        RetablitPolice(*s, garde);
        MajPointCourant(e, rp.RotationCmd);
    };
    if (Trim(l).isEmpty()) {
        fin();
        return;
    }
    // 1. The two points, unturned, and the rotation of the whole.
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    ParaCoord(e, x1, y1, l, 1, rp.PointX, rp.PointY);
    ParaCoord(e, x2, y2, l, 3, x1, y1);
    double rx = 0, ry = 0;
    LitRotation(e, ParaN(e, l, 2), rx, ry);
    const double rotation = rp.RotationCmd;   // degrees, stored negated
    const double tourne = -rotation;          // counter-clockwise degrees of TraitRot
    const QString p5 = ParaN(e, l, 5);
    const double longueurA = ValeurOuDefaut(e, Piece(p5, 1, s2), 0);
    const double retrait = ValeurOuDefaut(e, Piece(p5, 2, s2), 0);
    const double position = ParaVal0(e, l, 6);
    const QString p7 = ParaN(e, l, 7);
    const int couleurA = Couleur(e, Piece(p7, 1, s2), e.Styles.CouleurDefaut);
    const int couleurCote = Couleur(e, Piece(p7, 2, s2), couleurA);
    const QString epaisT = ParaN(e, l, 8);
    const QString p9 = ParaN(e, l, 9);
    const double fleche = LongueurFleche(e, p9);
    QString numeros = Trim(Piece(p9, 2, s2));
    if (numeros.isEmpty()) numeros = QStringLiteral("12");
    QString epaisF = Trim(ParaN(e, l, 10));
    const bool pleine = epaisF.startsWith(u'P', Qt::CaseInsensitive);
    if (pleine) epaisF = Mid(epaisF, 2);
    const double ouverture = ParaVal(e, l, 11).value_or(60) / 2 * DegRad;
    const int couleurF = Couleur(e, ParaN(e, l, 12), couleurA);
    const double px = ParaVal(e, l, 13).value_or(50) / 100;
    const double py = ParaVal(e, l, 14).value_or(30) / 100;
    int couleurT = -1;
    for (int c : {couleurCote, couleurF, couleurA})
        if (c != -1) {
            couleurT = c;
            break;
        }
    couleurT = Couleur(e, ParaN(e, l, 15), couleurT);
    const double rotTexte = FormatTexte(e, ParaN(e, l, 16));

    // 2. Distance and directions: A along the points, B across.
    const double dx = x2 - x1, dy = y2 - y1;
    const double d = std::hypot(dx, dy);
    if (!std::isfinite(d + position + longueurA + retrait + fleche + px + py))
        throw ErreurExecution("Dépassement de capacité");
    double A = 0;
    if (dx == 0) A = dy > 0 ? Pi / 2 : dy < 0 ? -Pi / 2 : 0;
    else A = std::atan(dy / dx) + (dx < 0 ? Pi : 0);
    const double B = A + Pi / 2;
    const double ca = std::cos(A), sa = std::sin(A), cb = std::cos(B), sb = std::sin(B);

    // 3. The text: the distance, expressions, commas, variables.
    QString texte = NbPara(e, l) >= 17 ? Piece(l, -17, e.Separateur1) : QString();
    texte.replace(QStringLiteral("%DIST"), Trim(StrF(float(d))), Qt::CaseInsensitive);
    ExprTexte(e, texte);
    texte.replace(QStringLiteral("$£"), QStringLiteral(","));
    RemplaceVar(e, texte);
    const double W = s->TextWidth(texte);
    const double H = -s->TextHeight(QStringLiteral("X"));
    const double largeurI = s->TextWidth(QStringLiteral("I"));

    // Surface points of a user point moved along A and B.
    auto point = [&](double x, double y, double le, double tr) {
        return QPointF(VersSurfaceX(e, x + le * ca + tr * cb), VersSurfaceY(e, y + le * sa + tr * sb));
    };
    const bool un = numeros.contains(u'1'), deux = numeros.contains(u'2');

    // 4. The attachment lines.
    EpaisLocal(e, epaisT);
    if (couleurA != -1) {
        const QPointF a1 = point(x1, y1, 0, retrait), b1 = point(x1, y1, 0, longueurA);
        const QPointF a2 = point(x2, y2, 0, retrait), b2 = point(x2, y2, 0, longueurA);
        if (un) TraitRot(e, a1.x(), a1.y(), b1.x(), b1.y(), tourne, couleurA);
        if (deux) TraitRot(e, a2.x(), a2.y(), b2.x(), b2.y(), tourne, couleurA);
    }
    // 5. The dimension line, lengthened to reach a text outside the points.
    const QPointF q1 = point(x1, y1, 0, position), q2 = point(x2, y2, 0, position);
    if (couleurCote != -1) {
        if (px >= 0 && px <= 1) {
            TraitRot(e, q1.x(), q1.y(), q2.x(), q2.y(), tourne, couleurCote);
        } else if (px > 1) {
            const QPointF b = point(x1, y1, px * d + W / 2 + largeurI, position);
            TraitRot(e, q1.x(), q1.y(), b.x(), b.y(), tourne, couleurCote);
        } else {
            const QPointF b = point(x1, y1, px * d - W / 2 - largeurI, position);
            TraitRot(e, q2.x(), q2.y(), b.x(), b.y(), tourne, couleurCote);
        }
    }
    EpaisRestaure(e);

    // 6. The arrows, tips turned with the whole, wings from the turned tips.
    if (fleche != 0 && couleurF != -1) {
        EpaisLocal(e, epaisF);
        const double R = rotation * DegRad;
        auto pointe = [&](QPointF q, double sens) {
            double x = q.x(), y = q.y();
            TourneAutourCentre(e, tourne, x, y);
            const QPointF t(x, y);
            const double a1 = A + ouverture - R + sens, a2 = A - ouverture - R + sens;
            const QPointF w1(x + fleche * std::cos(a1), y + fleche * std::sin(a1));
            const QPointF w2(x + fleche * std::cos(a2), y + fleche * std::sin(a2));
            if (pleine) {
                auto pixel = [&](QPointF p) { return PixelDevice(e, p.x(), p.y()); };
                MarquePage(e, couleurF);
                PolygoneRempli(e, {pixel(t), pixel(w1), pixel(w2)}, couleurF);
                s->FillStyle = 1;
            } else {
                TraitRot(e, t.x(), t.y(), w1.x(), w1.y(), 0, couleurF);
                TraitRot(e, t.x(), t.y(), w2.x(), w2.y(), 0, couleurF);
            }
        };
        if (un) pointe(q1, 0);
        if (deux) pointe(q2, Pi);
        EpaisRestaure(e);
    }

    // 7. The text, from its start at the base point less half its width.
    const double b = A + rotTexte * DegRad;
    double tx = x1 + px * (x2 - x1) + position * cb + py * H * cb - W / 2 * std::cos(b);
    double ty = y1 + px * (y2 - y1) + position * sb + py * H * sb - W / 2 * std::sin(b);
    Tourne(rotation, tx, ty);
    EtatTexte& t = e.Txt;
    t.X = VersSurfaceX(e, tx);
    t.Y = VersSurfaceY(e, ty);
    s->CurrentX = t.X;
    s->CurrentY = t.Y;
    t.CouleurTexte = couleurT;
    if (couleurT != -1 && !texte.isEmpty()) {
        s->ForeColor = couleurT;
        PlaceTexte(e, W, H, A / DegRad + rotTexte - rotation, texte, QStringLiteral("GB"), 0);
        if (e.Styles.CouleurDefaut != -1) s->ForeColor = e.Styles.CouleurDefaut;
    } else {
        // 8. The far end of the text all the same.
        const double a = b - rotation * DegRad;
        s->CurrentX = t.X + W * std::cos(a);
        s->CurrentY = t.Y + W * std::sin(a);
    }
    e.EtatOrdre |= 64;
    fin();
}
