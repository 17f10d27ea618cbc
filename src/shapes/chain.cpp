// The catenary. A chain of uniform weight hangs as y = a ch((x - X0) / a)
// - a ch(X0 / a) from its first point, X0 being the abscissa of its lowest
// point and a the ratio of the horizontal tension to the weight per length.
// From any sufficient mix of span, drop, length, a and starting angle the
// solver finds the rest; with a load, two such curves meet at the load.
// Impossible data, a solver that finds no finite answer and a stop request
// all fail the line with a division by zero: no unsolved value is drawn.
#include "shapes/chain.h"

#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/constantes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/hote.h"
#include "language/nombre.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"

#include <QLocale>
#include <QPointF>
#include <QVector>

#include <algorithm>
#include <cmath>

using namespace vb;

namespace {

constexpr double DegRad = Litteraux::DegRad;

double sh(double x) { return (std::exp(x) - std::exp(-x)) / 2; }
double ch(double x) { return (std::exp(x) + std::exp(-x)) / 2; }
// Odd by construction, so that a large negative argument keeps its digits.
double argsh(double x) { return x < 0 ? -argsh(-x) : std::log(x + std::sqrt(x * x + 1)); }

[[noreturn]] void Impossible() { throw ErreurExecution("Division par zéro"); }

bool Fini(double v) { return std::isfinite(v); }

// One span: its width X, its drop Y (positive when the second end is lower),
// its length L, its parameter a, its starting angle (degrees) and X0.
struct Portee {
    double X = 0, Y = 0, L = 0, a = 0, angle = 0, X0 = 0;
};

// The drop of a span from its first end to its second for a given X0 and a.
double Chute(double X, double X0, double a) { return a * ch(X0 / a) - a * ch((X - X0) / a); }
double Longueur(double X, double X0, double a) { return a * (sh(X0 / a) + sh((X - X0) / a)); }

// The solver loops: the stop request ends them, and the interface gets its
// chance to run every few hundred passes.
class Solveur {
public:
    explicit Solveur(Etat& e) : e_(e) {}
    void Passe() {
        if (e_.ArretDemande) Impossible();
        if ((++passes_ & 255) == 0 && e_.Host) {
            e_.Host->PompeEvenements();
            if (e_.ArretDemande) Impossible();
        }
    }

    // X0 for a given a. The iteration X0 := (X0 - X/2) Y / f + X/2 from
    // X0 = X settles only while the lowest point stays within about twice a
    // of the middle of the span; where it runs away, the exact root of
    // f = 2a sh(X / 2a) sh((X0 - X/2) / a) = Y takes over. With `garde`, a
    // negative X0 of the iteration is held at 0.0001. False when the curve
    // overflows.
    bool X0PourA(double X, double Y, double a, double& X0, bool garde) {
        if (Y == 0) {
            X0 = X / 2;
            return true;
        }
        const double tol = X / 50000;
        X0 = X;
        double ecartAvant = HUGE_VAL;
        for (int n = 0; n < 200; ++n) {
            Passe();
            const double f = Chute(X, X0, a);
            if (!Fini(f) || f == 0) break;
            const double ecart = std::abs(f - Y);
            if (ecart < tol) return true;
            if (n >= 3 && ecart >= ecartAvant) break;
            ecartAvant = ecart;
            X0 = (X0 - X / 2) * Y / f + X / 2;
            if (garde && X0 < 0) X0 = 0.0001;
            if (!Fini(X0)) break;
        }
        X0 = X / 2 + a * argsh(Y / (2 * a * sh(X / (2 * a))));
        return Fini(X0) && Fini(Chute(X, X0, a));
    }

    void Resout(Portee& c);

private:
    void AvecAngle(Portee& c);
    void PourA(Portee& c);
    void PourY(Portee& c);
    Etat& e_;
    long passes_ = 0;
};

// A starting angle: the slope at the first end fixes a = X0 / argsh(tan angle).
void Solveur::AvecAngle(Portee& c) {
    const double X = c.X;
    if (c.Y == 0) c.Y = 0.000001;
    double T = std::tan(c.angle * DegRad);
    if (T < 0 || T > 573.0) T = 573.0;
    const double u = argsh(T);
    const double tol = X / 50000;
    auto ecart = [&](double X0) { return Chute(X, X0, X0 / u) - c.Y; };
    double X0 = X;
    bool ok = false;
    for (int n = 0; n < 1000; ++n) {
        Passe();
        const double f = ecart(X0) + c.Y;
        if (!Fini(f) || f == 0) break;
        if (std::abs(f - c.Y) < tol) {
            ok = true;
            break;
        }
        X0 = (X0 - X / 2) * c.Y / f + X / 2;
        if (!Fini(X0) || X0 <= 0) break;
    }
    if (!ok) {
        // The drop grows with X0 from minus infinity towards X tan(angle):
        // a search between bounds on a logarithmic scale.
        double bas = X * 1e-6, haut = X * 1e6;
        if (!(ecart(bas) < 0) || !(ecart(haut) > 0)) Impossible();
        for (int n = 0; n < 200 && !ok; ++n) {
            Passe();
            X0 = std::sqrt(bas * haut);
            const double g = ecart(X0);
            if (std::abs(g) < tol) ok = true;
            else if (g < 0) bas = X0;
            else haut = X0;
            if (std::abs((haut - bas) / haut) < 2e-15) break;
        }
        if (!ok) Impossible();
    }
    c.X0 = X0;
    c.a = X0 / u;
    c.L = Longueur(X, X0, c.a);
}

// Length, span and drop known: a by a search on a logarithmic scale.
void Solveur::PourA(Portee& c) {
    const double X = c.X, Y = c.Y, L = c.L;
    const double D = float(std::sqrt(X * X + Y * Y));
    const double q = L / D;
    if (q <= 1) Impossible(); // the chain is shorter than the chord
    const double a0 = X / (3.57 * std::log(std::sqrt(q * q - 1) + q));
    // A steep chain needs a lower start, whichever end is the higher.
    double bas = std::abs(Y) / X < 4.85 ? a0 * 0.2 : a0 * 0.01;
    double haut = a0 * 100;
    const double w = std::sqrt((L - D) * L) * 0.00001;
    const double tol = w >= 0.0001 ? 0.00001 : std::max(w, 0.0000001);
    double a = 0, X0 = 0, Lc = 0;
    for (int n = 0; n < 2000; ++n) {
        Passe();
        a = std::sqrt(haut * bas);
        // No finite lowest point: a is far too small, the chain far too long.
        Lc = X0PourA(X, Y, a, X0, true) ? Longueur(X, X0, a) : HUGE_VAL;
        if (!Fini(Lc)) Lc = HUGE_VAL;
        if (Lc <= L) haut = a;
        else bas = a;
        if (std::abs(Lc - L) < tol || std::abs((haut - bas) / haut) < 2e-15) break;
    }
    // The lowest point is found to X / 50000 only, so the length may stay a
    // little off when the bounds have met; far off, the bounds missed a.
    if (!Fini(Lc) || std::abs(Lc - L) > 0.001 * L) Impossible();
    c.a = a;
    c.X0 = X0;
}

// a, span and length known: the drop, the lowest point moving from the middle
// towards the second end until the length is reached.
void Solveur::PourY(Portee& c) {
    const double X = c.X, L = c.L, a = c.a;
    if (L < X) Impossible();
    if (Longueur(X, X / 2, a) > L) Impossible(); // too short for this a
    double bas = X / 2, haut = std::max(100000.0, X);
    double X0 = bas;
    for (int n = 0; n < 2000; ++n) {
        Passe();
        X0 = (bas + haut) / 2;
        const double Lc = Longueur(X, X0, a);
        if (Fini(Lc) && std::abs(Lc - L) < 0.00001) break;
        if (!Fini(Lc) || Lc > L) haut = X0;
        else bas = X0;
        if (std::abs((haut - bas) / haut) < 2e-15) break;
    }
    const double Lc = Longueur(X, X0, a);
    if (!Fini(Lc) || std::abs(Lc - L) > std::max(0.00001, 1e-6 * L)) Impossible();
    c.X0 = X0;
    c.Y = Chute(X, X0, a);
}

void Solveur::Resout(Portee& c) {
    if (c.X == 0) Impossible();
    if (c.angle != 0) {
        AvecAngle(c);
    } else if (c.L == 0) {
        // a gives the lowest point and the length.
        if (c.a == 0 || !X0PourA(c.X, c.Y, c.a, c.X0, false)) Impossible();
        c.L = Longueur(c.X, c.X0, c.a);
    } else if (c.Y == 0 && c.a != 0) {
        PourY(c); // a and the length give the drop
    } else {
        PourA(c);
    }
    if (!Fini(c.a) || !Fini(c.X0) || !Fini(c.L) || !Fini(c.Y) || c.a <= 0) Impossible();
}

// The value of a position: a "%" name is an output and reads as 0.
struct Entree {
    QString nom;
    double valeur = 0;
};

Entree LitEntree(Etat& e, QString t) {
    t = Trim(t);
    if (t.startsWith(u'%')) return {t, 0};
    if (t.isEmpty()) return {};
    RemplaceVar(e, t);
    return {QString(), EvalExpr(e, t).value_or(0)};
}

// An output position: empty, or a "%" name.
QString Sortie(Etat& e, const QString& brut) {
    const QString t = Trim(Piece(brut, 1, e.Separateur2));
    if (!t.isEmpty() && !t.startsWith(u'%')) Impossible();
    return t;
}

void Ecrit(Etat& e, const QString& nom, double v) {
    if (!nom.isEmpty()) EcritVarNum(e, e.NiveauCourant, nom, v);
}

// The points of one span, x from 0 to X in 100 steps, relative to its first end.
void AjouteCourbe(QVector<QPointF>& pts, const Portee& c, double x0, double y0) {
    for (int i = 0; i <= 100; ++i) {
        const double x = i == 100 ? c.X : i * (c.X / 100);
        pts.append({x0 + x, y0 + c.a * ch((x - c.X0) / c.a) - c.a * ch(c.X0 / c.a)});
    }
}

// The vertical pull of a span at its ends, in the sense of the slope.
double TractionFin(const Portee& c) { return c.a * sh((c.X - c.X0) / c.a); }
double TractionDebut(const Portee& c) { return c.a * sh(c.X0 / c.a); }

struct Charge {
    Portee p1, p2;
    double XL = 0, YL = 0;
};

// The load's place: an outer search on its x, each x with an inner search on
// its y that balances the vertical forces at the load; the outer one then
// balances the horizontal tensions of the two spans.
Charge Equilibre(Solveur& sv, double X, double Y, double L1, double L2, double RM) {
    // The x range where both spans can reach the load: that of the meeting
    // of the discs of radius L1 about the first end and L2 about the second.
    const double D = std::hypot(X, Y);
    if (L1 + L2 <= D) Impossible();
    auto dans1 = [&](double x, double y) { return x * x + y * y <= L1 * L1; };
    auto dans2 = [&](double x, double y) { return (x - X) * (x - X) + (y - Y) * (y - Y) <= L2 * L2; };
    QVector<double> xs;
    if (dans1(X - L2, Y)) xs.append(X - L2);
    if (dans1(X + L2, Y)) xs.append(X + L2);
    if (dans2(-L1, 0)) xs.append(-L1);
    if (dans2(L1, 0)) xs.append(L1);
    const double m = (L1 * L1 - L2 * L2 + D * D) / (2 * D), h2 = L1 * L1 - m * m;
    if (h2 >= 0) {
        const double h = std::sqrt(h2);
        xs.append(m * X / D - h * Y / D);
        xs.append(m * X / D + h * Y / D);
    }
    if (xs.isEmpty()) Impossible();
    const double marge = 1e-6 * (L1 + L2);
    double bas = std::max(0.0, *std::min_element(xs.begin(), xs.end())) + marge;
    double haut = std::min(X, *std::max_element(xs.begin(), xs.end())) - marge;
    if (bas >= haut) Impossible();
    const double Efin = std::min(0.1, std::sqrt(D) * 0.00001);
    Charge r;
    for (int tour = 0; tour < 400; ++tour) {
        sv.Passe();
        const double E = tour < 5 ? std::max(Efin, 0.05) : Efin;
        r.XL = bas * 0.8 + haut * 0.2;
        // The y range of the load at this x.
        const double r1 = std::sqrt(std::max(0.0, L1 * L1 - r.XL * r.XL));
        const double r2 = std::sqrt(std::max(0.0, L2 * L2 - (X - r.XL) * (X - r.XL)));
        double yb = std::max(-r1, Y - r2) + marge, yh = std::min(r1, Y + r2) - marge;
        // Near the end of a span's reach its chord, a 32-bit float, may round
        // up to the span's length: the range keeps both chords shorter.
        auto tendu = [&](double y) {
            const double x2 = X - r.XL, y2 = Y - y;
            return float(std::sqrt(r.XL * r.XL + y * y)) >= L1 || float(std::sqrt(x2 * x2 + y2 * y2)) >= L2;
        };
        for (double pas = marge; yb < yh && tendu(yb); pas *= 2) yb += pas;
        for (double pas = marge; yb < yh && tendu(yh); pas *= 2) yh -= pas;
        if (yb >= yh) Impossible();
        for (int n = 0; n < 400; ++n) {
            sv.Passe();
            r.YL = (yb + yh) / 2;
            r.p1 = {r.XL, r.YL, L1, 0, 0, 0};
            r.p2 = {X - r.XL, Y - r.YL, L2, 0, 0, 0};
            sv.Resout(r.p1);
            sv.Resout(r.p2);
            const double R = TractionFin(r.p1) + TractionDebut(r.p2) + RM;
            if (std::abs(R) < E || std::abs((yh - yb) / (std::abs(yh) + std::abs(yb))) < 2e-15) break;
            if (R > 0) yb = r.YL;
            else yh = r.YL;
        }
        if (tour >= 5 && std::abs(r.p1.a - r.p2.a) < Efin) break;
        if (r.p1.a > r.p2.a) haut = r.XL;
        else bas = r.XL;
        if (std::abs((haut - bas) / haut) < 2e-15) break;
    }
    return r;
}

} // namespace

void CmdChain(Etat& e) {
    Surface* s = e.Surf;
    if (!s) return;
    EtatRepere& rp = e.Repere;
    const QString l = e.LigneCourante;
    const QString s2 = e.Separateur2;
    const int np = NbPara(e, l);
    if (np < 3) Impossible();
    // Inputs; a "%" name is an output.
    const Entree dX = LitEntree(e, ParaBrut(e, l, 1));
    const Entree dY = LitEntree(e, ParaBrut(e, l, 2));
    const QString p3 = ParaBrut(e, l, 3);
    const Entree eL = LitEntree(e, Piece(p3, 1, s2));
    const Entree ea = LitEntree(e, ParaBrut(e, l, 4));
    const Entree eAngle = LitEntree(e, ParaBrut(e, l, 5));
    double fx = LitEntree(e, ParaBrut(e, l, 6)).valeur, fy = LitEntree(e, ParaBrut(e, l, 7)).valeur;
    if (fx == 0) fx = 1;
    if (fy == 0) fy = 1;
    QString sorties[7];
    for (int n = 8; n <= 13; ++n) sorties[n - 7] = Sortie(e, ParaBrut(e, l, n));
    // The rotation about the first point, on the last parameter.
    double rx = 0, ry = 0;
    LitRotation(e, np >= 11 ? ParaBrut(e, l, np) : QString(), rx, ry);
    const double rotation = rp.RotationCmd;

    // The load, behind the length.
    QString tL1 = Trim(Piece(p3, 2, s2));
    const bool pourcent = tL1.endsWith(u'%');
    if (pourcent) tL1.chop(1);
    const double LL1 = LitEntree(e, tL1).valeur;
    const double RM = std::max(0.0, LitEntree(e, Piece(p3, 3, s2)).valeur);
    bool charge = !tL1.isEmpty() && RM != 0;

    // A span drawn leftwards is solved as its mirror.
    const double sens = dX.valeur < 0 ? -1 : 1;
    const double X = std::abs(dX.valeur);
    Solveur sv(e);
    QVector<QPointF> pts;
    Portee c{X, dY.valeur, eL.valeur, ea.valeur, eAngle.valeur, 0};
    double T1 = 0, T2 = 0, XL = 0, YL = 0;
    double L1 = 0;
    QString rapportFaux; // the tension ratio of a loaded chain, when it is not 1
    if (charge) {
        if (c.L <= 0) Impossible();
        L1 = pourcent ? LL1 / 100 * c.L : LL1;
        if (L1 > c.L || L1 < 0) Impossible();
        // A load on one of the ends leaves the chain as it hangs alone.
        charge = L1 > 0 && L1 < c.L;
    }
    if (!charge) {
        sv.Resout(c);
        AjouteCourbe(pts, c, 0, 0);
        T1 = c.a * ch(c.X0 / c.a);
        T2 = c.a * ch((c.X - c.X0) / c.a);
        if (L1 > 0) {
            XL = c.X;
            YL = c.Y;
        }
    } else {
        const Charge r = Equilibre(sv, X, c.Y, L1, c.L - L1, RM);
        AjouteCourbe(pts, r.p1, 0, 0);
        pts.removeLast();
        AjouteCourbe(pts, r.p2, r.XL, -r.YL);
        XL = r.XL;
        YL = r.YL;
        c.a = r.p1.a;
        c.X0 = r.p1.X0;
        T1 = r.p1.a * ch(r.p1.X0 / r.p1.a);
        T2 = r.p2.a * ch((r.p2.X - r.p2.X0) / r.p2.a);
        // The two spans pull alike horizontally at a balanced load; the
        // warning comes once the chain is drawn and its outputs written.
        const QString t = QLocale().toString(r.p1.a / r.p2.a, 'f', 2);
        if (t != QLocale().toString(1.0, 'f', 2)) rapportFaux = t;
    }
    for (const QPointF& p : pts)
        if (!Fini(p.x()) || !Fini(p.y())) Impossible();

    // The drawing: scaled, turned about the first point, in the default colour.
    const double x1 = rp.PointX, y1 = rp.PointY;
    auto surface = [&](QPointF p) {
        double x = sens * p.x() * fx, y = p.y() * fy;
        Tourne(rotation, x, y);
        return QPointF(VersSurfaceX(e, x1 + x), VersSurfaceY(e, y1 + y));
    };
    QPointF avant = surface(pts.first());
    for (int i = 1; i < pts.size(); ++i) {
        const QPointF p = surface(pts[i]);
        TraitRot(e, avant.x(), avant.y(), p.x(), p.y(), 0, e.Styles.CouleurDefaut);
        avant = p;
    }
    e.EtatOrdre |= 64;

    // The results.
    const double angle = std::atan(sh(c.X0 / c.a)) / DegRad;
    Ecrit(e, dX.nom, dX.valeur);
    Ecrit(e, dY.nom, c.Y);
    Ecrit(e, eL.nom, c.L);
    Ecrit(e, ea.nom, c.a);
    Ecrit(e, eAngle.nom, angle);
    if (!sorties[1].isEmpty())
        EcritVarTxt(e, e.NiveauCourant, sorties[1], StrF(float(T1)) + QStringLiteral(", ") + StrF(float(T2)));
    Ecrit(e, sorties[2], sens * c.X0);
    // The largest slack below the chord: where the curve runs parallel to it,
    // its slope -Y / X (Y is the drop of the second end).
    double xs = 0, ys = 0;
    if (!charge) {
        xs = c.X0 - c.a * argsh(c.Y / c.X);
        const double yc = c.a * ch((xs - c.X0) / c.a) - c.a * ch(c.X0 / c.a);
        ys = -c.Y * xs / c.X - yc;
    } else {
        for (const QPointF& p : pts) {
            const double v = -c.Y * p.x() / X - p.y();
            if (v > ys) {
                ys = v;
                xs = p.x();
            }
        }
    }
    Ecrit(e, sorties[3], sens * xs);
    Ecrit(e, sorties[4], ys);
    Ecrit(e, sorties[5], sens * XL);
    Ecrit(e, sorties[6], YL);
    if (!rapportFaux.isEmpty() && e.Host)
        e.Host->Message(QStringLiteral("Mirel"),
                        QStringLiteral("\r\nATTENTION: mauvaise convergence / bad convergence / "
                                       "schlechte Konvergenz\r\n") + rapportFaux + QStringLiteral(" <> 1"),
                        Boutons::Ok);

    s->CurrentX = avant.x();
    s->CurrentY = avant.y();
    MajPointCourant(e, 0);
}
