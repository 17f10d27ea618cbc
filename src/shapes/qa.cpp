// Dovetails: the outline of a row of tails laid out along a line, with the
// return lines that carry the wood's thickness onto the faces of the board.
#include "shapes/qa.h"

#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/para.h"
#include "language/vb.h"

#include <QPointF>
#include <QVector>

#include <cmath>

using namespace vb;

namespace {

constexpr double Pi = 3.14159265358979;
constexpr double DegRad = 0.0174532925;

double Nombre(Etat& e, QString texte, double defaut) {
    texte.remove(QChar(0x00B0)); // a degree sign after the value
    return ValeurOuDefaut(e, texte, defaut);
}

double Signe(double v) { return v < 0 ? -1 : 1; }

} // namespace

void QueuesAronde(Etat& e, const QString& mot) {
    if (!e.Surf) return;
    EtatRepere& rp = e.Repere;
    const QString l = e.LigneCourante;
    const QString s2 = e.Separateur2;
    // 1. The two points: the second is read about the first.
    e.EtatOrdre |= 64;
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    ParaCoord(e, x1, y1, l, 1, rp.PointX, rp.PointY);
    rp.PointX = float(x1);
    rp.PointY = float(y1);
    ParaCoord(e, x2, y2, l, 3, rp.PointX, rp.PointY);
    double rx = 0, ry = 0;
    LitRotation(e, ParaN(e, l, 2), rx, ry);
    const double rotation = rp.RotationCmd;

    const double nombre = ParaVal0(e, l, 5);
    const QString p6 = ParaN(e, l, 6);
    double h = Nombre(e, Piece(p6, 1, s2), 0);
    double bois = std::abs(Nombre(e, Piece(p6, 2, s2), h)) * Signe(h);
    const QString p7 = ParaN(e, l, 7);
    const QString pente = Trim(Piece(p7, 1, s2));
    const double a = pente.isEmpty() ? 0.157079637 * Signe(h) : Nombre(e, pente, 0) * DegRad * Signe(h);
    double i = Nombre(e, Piece(p7, 2, s2), 0) * DegRad;
    const QString tremie = Trim(Piece(p7, 3, s2)).toUpper();
    const double sens = tremie.startsWith(u'T') ? (tremie.startsWith(QLatin1String("T-")) ? -1 : 1) : 0;
    const double r = ParaVal(e, l, 8).value_or(50) / 100;
    EpaisLocal(e, ParaN(e, l, 9));
    const QString p10 = ParaN(e, l, -10);
    const int couleur = CouleurParametre(e, Piece(p10, 1, s2));
    const QString pr = Piece(p10, 2, s2);
    const int couleurR = Trim(pr).isEmpty() ? couleur : CouleurParametre(e, pr);

    // A hopper: the board leans, and its edges meet at an angle.
    if (sens != 0) {
        const double si = std::sin(i);
        if (si == 0) throw ErreurExecution("Division par zéro");
        const double i0 = i;
        i = Pi / 2 - std::atan(1 / si);
        const double q = std::atan(std::tan(i0) * std::sin(i));
        h /= std::cos(q);
        bois /= std::cos(q);
    }

    // 2. The whole number of tails, and the offset of the first.
    const int K = int(std::floor(std::abs(nombre)));
    if (nombre == 0) throw ErreurExecution("Division par zéro");
    double f = (std::abs(nombre) - K) / 2;
    const double p = std::hypot(x2 - x1, y2 - y1) / std::abs(nombre);
    double t = x2 == x1 ? Pi / 2 : std::atan(std::abs(y2 - y1) / std::abs(x2 - x1));
    if (x2 < x1) t = Pi - t;
    if (y2 < y1) t = -t;
    const QPointF u(std::cos(t), std::sin(t)), n(-std::sin(t), std::cos(t));
    const double tp = std::tan(i + a), tm = std::tan(a - i);

    // 3. The outline, stroke by stroke; the corners that carry return lines.
    auto trait = [&](QPointF de, QPointF a, int c) {
        double xa = de.x(), ya = de.y(), xb = a.x(), yb = a.y();
        // A flank at a right angle to the row has no finite end.
        if (!std::isfinite(xa + ya + xb + yb)) throw ErreurExecution("Division par zéro");
        Tourne(rotation, xa, ya);
        Tourne(rotation, xb, yb);
        TraitRot(e, VersSurfaceX(e, xa), VersSurfaceY(e, ya), VersSurfaceX(e, xb), VersSurfaceY(e, yb),
                 0, c);
    };
    const QPointF p1(x1, y1), p2(x2, y2);
    QVector<QPointF> bas{p1}, haut{p1 + h * n - h * std::tan(i) * u};
    QPointF P = p1;
    auto va = [&](QPointF q) {
        trait(P, q, couleur);
        P = q;
    };
    for (int k = 1; k <= K; ++k) {
        QPointF q = P + (((1 - r) / 2 + f) * p + h / 2 * tp) * u;
        if (k == 1) q -= h / 2 * std::tan(i) * u;
        va(q);
        bas.append(P);
        va(P + h * n - h * tp * u);
        haut.append(P);
        va(P + (r * p + h / 2 * (tp + tm)) * u);
        haut.append(P);
        va(P - h * n - h * tm * u);
        bas.append(P);
        va(k == K ? p2 : P + ((1 - r) * p / 2 + h / 2 * tm) * u);
        f = 0;
    }
    // The row's far end has its return lines too.
    bas.append(p2);
    haut.append(p2 + h * n - h * std::tan(i) * u);

    // 4. The return lines, across the thickness of the wood.
    if (mot.contains(u'1')) {
        const QPointF v = sens == 0 ? QPointF(std::sin(t), -std::cos(t))
                                    : QPointF(std::sin(t + sens * i), -std::cos(t + sens * i)) / std::cos(i);
        for (const QPointF& c : bas) trait(c, c + bois * v, couleurR);
    }
    if (mot.contains(u'2')) {
        const QPointF v = sens == 0 ? QPointF(-std::sin(t), std::cos(t))
                                    : QPointF(-std::sin(t - sens * i), std::cos(t - sens * i)) / std::cos(i);
        for (const QPointF& c : haut) trait(c, c + bois * v, couleurR);
    }

    // 5.
    EpaisRestaure(e);
    double ex = x2, ey = y2;
    Tourne(rotation, ex, ey);
    e.Surf->CurrentX = VersSurfaceX(e, ex);
    e.Surf->CurrentY = VersSurfaceY(e, ey);
    if (e.Styles.CouleurDefaut != -1) e.Surf->ForeColor = e.Styles.CouleurDefaut;
    MajPointCourant(e, rotation);
}

void CmdQA(Etat& e) { QueuesAronde(e, QStringLiteral("QA")); }
void CmdQA1(Etat& e) { QueuesAronde(e, QStringLiteral("QA1")); }
void CmdQA2(Etat& e) { QueuesAronde(e, QStringLiteral("QA2")); }
void CmdQA12(Etat& e) { QueuesAronde(e, QStringLiteral("QA12")); }
