// Circles, ellipses, arcs and sectors, plain or filled, with the
// linear and conic gradients; and the dashed arc `ArcPointille`.
#include "shapes/cercle.h"
#include "shapes/texte.h"

#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/constantes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/para.h"
#include "language/vb.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

using namespace vb;

namespace {

constexpr double DegRad = Litteraux::DegRad;
constexpr double DegRadEllipse = 0.0174532925;   // the one of AngleEllipse
constexpr double TourComplet = Litteraux::TourComplet;
constexpr double Pi = Litteraux::Pi;
constexpr int MaxPointsPixel = 1000;             // size of `PointsPixel`

// The ellipse of a command: centre in Surface units, semi-axes, and its turn
// r (`AngleEllipse`, radians counter-clockwise).
struct Ellipse {
    double cx = 0, cy = 0, demiX = 0, demiY = 0;
    double cosR = 1, sinR = 0;

    void Tourne(double r) {
        cosR = std::cos(r);
        sinR = std::sin(r);
    }
    // A point of the outline in the ellipse's own frame, centre at 0,0.
    QPointF Local(double t) const { return {demiX * std::cos(t), demiY * std::sin(t)}; }
    // From the ellipse's frame to Surface units.
    QPointF VersSurface(QPointF p) const {
        return {cx + p.x() * cosR - p.y() * sinR, cy + p.x() * sinR + p.y() * cosR};
    }
    QPointF Point(double t) const { return VersSurface(Local(t)); }
};

// Start and end of the points path, normalised.
struct Arc {
    double debut = 0, fin = TourComplet;
    bool rayonDebut = false, rayonFin = false;
    bool Complet() const { return debut == 0 && fin == TourComplet; }
};

// A negative angle asks for a radius line and is taken by its absolute value;
// both 0 make a full turn; an end below the start goes round once more.
// A -0 counts as negative (a CercleP arc from 0 keeps its radius line), except
// when both angles are 0: that is the full turn, with no radius.
Arc Normalise(double debut, double fin) {
    Arc a;
    const bool zeros = debut == 0 && fin == 0;
    a.rayonDebut = std::signbit(debut) && !zeros;
    a.rayonFin = std::signbit(fin) && !zeros;
    a.debut = std::abs(debut);
    a.fin = std::abs(fin);
    if (zeros) {
        a.debut = 0;
        a.fin = TourComplet;
    } else if (a.fin < a.debut) {
        a.fin += TourComplet;
    }
    return a;
}

// The sample angles of an arc: from debut in steps of h while not above fin,
// then once more at exactly fin. The count N is a 16-bit integer.
void Angles(double debut, double fin, double h, std::vector<double>& ts) {
    const double n = std::floor(std::abs(fin - debut) / h + 0.5 + 2);
    if (!(n <= 32767)) throw ErreurExecution("Overflow");
    ts.clear();
    ts.reserve(size_t(n) + 1);
    for (double t = debut; t <= fin; t += h) ts.push_back(t);
    ts.push_back(fin);
}

QPointF Flottant(QPointF p) { return QPointF(float(p.x()), float(p.y())); }

// The outline as points in Surface units (32-bit floats), with the centre
// first and last for the radius lines.
void PointsArc(const Ellipse& el, const Arc& a, double h, QVector<QPointF>& pts) {
    std::vector<double> ts;
    Angles(a.debut, a.fin, h, ts);
    pts.clear();
    pts.reserve(qsizetype(ts.size()) + 2);
    const QPointF centre = Flottant({el.cx, el.cy});
    if (a.rayonDebut) pts.append(centre);
    for (double t : ts) pts.append(Flottant(el.Point(t)));
    if (a.rayonFin) pts.append(centre);
}

// The points joined by the dashed-line routine, first to last, or last to
// first when `inverse` (the I keywords).
void Joint(Etat& e, const QVector<QPointF>& pts, int couleur, bool inverse) {
    const qsizetype n = pts.size();
    for (qsizetype i = 1; i < n; ++i) {
        const QPointF& a = inverse ? pts[n - i] : pts[i - 1];
        const QPointF& b = inverse ? pts[n - i - 1] : pts[i];
        TraitRot(e, a.x(), a.y(), b.x(), b.y(), 0, couleur);
    }
}


// The outline through `PointsPixel` (at most 1000 points), filled in one colour.
void Polygone(Etat& e, const QVector<QPointF>& pts, int couleur) {
    if (pts.size() > MaxPointsPixel) throw ErreurExecution("Indice hors limites");
    QVector<QPointF>& px = e.Cercle.PointsPixel;
    px.clear();
    for (const QPointF& p : pts) px.append(PixelDevice(e, p.x(), p.y()));
    PolygoneRempli(e, px, couleur);
}

// What a command read (Reading and normalising).
struct Commande {
    bool remplie = false;     // keyword starts with CERCLEP
    bool inverse = false;     // Sens = -1
    Ellipse el;
    double rayon = 0;
    float coef = 1;
    double debut = 0, fin = 0; // radians, negative for a radius line
    int couleur = 0;
    std::optional<int> couleur2; // none: no gradient
    bool conique = false;
    int bandes = 0;
};

// The plain path; also the outline of the gradients (remplir false).
void Simple(Etat& e, const Commande& c, bool remplir) {
    Surface* s = e.Surf;
    s->FillColor = c.couleur;
    if (remplir) s->FillStyle = 0;
    if (c.coef == 1 && c.debut == c.fin) {
        // A full turn: the Surface's own Circle, or the dashed arc.
        if (e.Styles.TiretL1 > 0) ArcPointille(e, c.el.cx, c.el.cy, c.rayon, 0, 0, c.couleur, 1);
        else s->Circle(c.el.cx, c.el.cy, c.rayon, c.couleur);
        return;
    }
    QVector<QPointF>& pts = e.Cercle.Points;
    PointsArc(c.el, Normalise(c.debut, c.fin), PasArc(e, c.rayon), pts);
    if (!remplir) {
        Joint(e, pts, c.couleur, c.inverse);
        return;
    }
    MarquePage(e, e.Surf->ForeColor);
    Polygone(e, pts, c.couleur);
    s->FillStyle = 1;
}

// The arc of a gradient: a start equal to the end is the full ellipse.
bool GradientPlein(const Commande& c) { return std::abs(c.debut) == std::abs(c.fin); }

// The area of the fill in the ellipse's own frame, made of the outline's own
// sample points so that the fill's edge is the outline's polygon: the whole
// area first, then, for a sector of more than half a turn, the same area cut
// into pieces of at most about half a turn (convex), which share a radius.
struct Aire {
    QVector<QPointF> entiere;
    std::vector<QVector<QPointF>> morceaux;
};

Aire AireLocale(const Ellipse& el, const Arc& a, bool plein, double h) {
    std::vector<double> ts;
    Angles(a.debut, a.fin, h, ts);
    QVector<QPointF> arc;
    arc.reserve(qsizetype(ts.size()));
    for (double t : ts) arc.append(el.Local(t));
    Aire r;
    if (plein) {
        r.entiere = arc;
        return r;
    }
    r.entiere = QVector<QPointF>{QPointF(0, 0)} + arc;
    const double etendue = a.fin - a.debut;
    if (etendue <= Pi) return r;
    const int k = int(std::ceil(etendue / 3.0));
    std::vector<size_t> coupes{0};
    for (int j = 1; j < k; ++j) {
        const double cible = a.debut + j * etendue / k;
        size_t i = size_t(std::lower_bound(ts.begin(), ts.end(), cible) - ts.begin());
        if (i > 0 && (i == ts.size() || cible - ts[i - 1] < ts[i] - cible)) --i;
        if (i > coupes.back() && i < ts.size() - 1) coupes.push_back(i);
    }
    coupes.push_back(ts.size() - 1);
    for (size_t j = 0; j + 1 < coupes.size(); ++j) {
        QVector<QPointF> m{QPointF(0, 0)};
        for (size_t i = coupes[j]; i <= coupes[j + 1]; ++i) m.append(arc[qsizetype(i)]);
        r.morceaux.push_back(m);
    }
    return r;
}

// Where the edge p-q crosses the level y = niveau. The point depends only on
// the edge and the level, not on the direction of travel, so that two slices
// that share a level get the very same point.
QPointF Croise(QPointF p, QPointF q, double niveau) {
    if (p.y() > q.y()) std::swap(p, q);
    const double f = (niveau - p.y()) / (q.y() - p.y());
    return {p.x() + (q.x() - p.x()) * f, niveau};
}

bool Traverse(double a, double b, double niveau) {
    return (a > niveau && b < niveau) || (a < niveau && b > niveau);
}

// Even-odd test of a point in a polygon.
bool Dedans(const QVector<QPointF>& poly, QPointF p) {
    bool dedans = false;
    for (qsizetype i = 0, j = poly.size() - 1; i < poly.size(); j = i++) {
        const QPointF a = poly[i], b = poly[j];
        if ((a.y() > p.y()) != (b.y() > p.y()) &&
            p.x() < (b.x() - a.x()) * (p.y() - a.y()) / (b.y() - a.y()) + a.x())
            dedans = !dedans;
    }
    return dedans;
}

// True when a slice of `aire` joins two pieces along one of its levels through
// the outside: an edge of the slice that lies on a level and leaves the area
// somewhere between its ends.
bool Pont(const QVector<QPointF>& tranche, const QVector<QPointF>& aire, double bas, double haut) {
    for (qsizetype i = 0; i < tranche.size(); ++i) {
        const QPointF a = tranche[i], b = tranche[(i + 1) % tranche.size()];
        if (a.y() != b.y() || (a.y() != bas && a.y() != haut)) continue;
        // The cuts of the level by the area's edges split a-b into runs, each
        // all inside or all outside.
        std::vector<double> xs{std::min(a.x(), b.x()), std::max(a.x(), b.x())};
        for (qsizetype k = 0; k < aire.size(); ++k) {
            const QPointF p = aire[k], q = aire[(k + 1) % aire.size()];
            if (!Traverse(p.y(), q.y(), a.y())) continue;
            const double x = Croise(p, q, a.y()).x();
            if (x > xs[0] && x < xs[1]) xs.push_back(x);
        }
        std::sort(xs.begin(), xs.end());
        for (size_t k = 0; k + 1 < xs.size(); ++k) {
            if (xs[k + 1] - xs[k] < 1e-9) continue;
            if (!Dedans(aire, QPointF((xs[k] + xs[k + 1]) / 2, a.y()))) return true;
        }
    }
    return false;
}

// The part of a polygon between the levels bas and haut (inclusive), one
// pass over its edges. Where the part falls in two pieces, the result joins
// them along a level through the outside: the caller avoids that case.
QVector<QPointF> Tranche(const QVector<QPointF>& poly, double bas, double haut) {
    QVector<QPointF> r;
    const qsizetype n = poly.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QPointF p = poly[i], q = poly[(i + 1) % n];
        if (p.y() >= bas && p.y() <= haut) r.append(p);
        const bool h = Traverse(p.y(), q.y(), haut), b = Traverse(p.y(), q.y(), bas);
        if (p.y() > q.y()) {
            if (h) r.append(Croise(p, q, haut));
            if (b) r.append(Croise(p, q, bas));
        } else {
            if (b) r.append(Croise(p, q, bas));
            if (h) r.append(Croise(p, q, haut));
        }
    }
    return r;
}

// Linear gradient: slices of equal height, top to bottom, in the ellipse's
// own frame.
void GradientLineaire(Etat& e, const Commande& c) {
    Teinte pas;
    const int n = NombreBandes(c.couleur, *c.couleur2, c.bandes, pas);
    Teinte t(c.couleur);
    const bool plein = GradientPlein(c);
    const Arc a = plein ? Arc() : Normalise(c.debut, c.fin);
    const Aire aire = AireLocale(c.el, a, plein, PasArc(e, c.rayon));
    const double hauteur = 2 * c.el.demiY / n;
    QVector<QPointF> pts;
    auto dessine = [&](const QVector<QPointF>& tr) {
        if (tr.size() < 3) return;
        pts.clear();
        for (const QPointF& p : tr) pts.append(Flottant(c.el.VersSurface(p)));
        Polygone(e, pts, t.Valeur());
    };
    for (int k = 0; k < n; ++k) {
        double haut = k == 0 ? c.el.demiY : c.el.demiY - k * hauteur;
        double bas = k == n - 1 ? -c.el.demiY : c.el.demiY - (k + 1) * hauteur;
        if (bas > haut) std::swap(bas, haut);
        // One polygon per band, unless the missing wedge of a sector cuts the
        // slice in two: then one polygon per convex piece, so that no edge of
        // a band runs across the wedge.
        const QVector<QPointF> tranche = Tranche(aire.entiere, bas, haut);
        if (!aire.morceaux.empty() && Pont(tranche, aire.entiere, bas, haut)) {
            for (const QVector<QPointF>& m : aire.morceaux) dessine(Tranche(m, bas, haut));
        } else {
            dessine(tranche);
        }
        t.Avance(pas);
    }
}

// Conic gradient: wedges about the centre, from start to end.
void GradientConique(Etat& e, const Commande& c) {
    Teinte pas;
    const int n = NombreBandes(c.couleur, *c.couleur2, c.bandes, pas);
    Teinte t(c.couleur);
    const Arc a = GradientPlein(c) ? Arc() : Normalise(c.debut, c.fin);
    const double h = PasArc(e, c.rayon);
    const double largeur = (a.fin - a.debut) / n;
    const QPointF centre = Flottant({c.el.cx, c.el.cy});
    QVector<QPointF> pts;
    double debut = a.debut;
    while (a.fin - debut > 0.0001) {
        const double fin = debut + largeur;
        pts = {centre};
        for (double u = debut; u <= fin; u += h) pts.append(Flottant(c.el.Point(u)));
        pts.append(Flottant(c.el.Point(fin)));
        Polygone(e, pts, t.Valeur());
        debut = fin;
        t.Avance(pas);
    }
}

// The three paths: a conic gradient, a linear gradient (each with its outline
// drawn last), or the plain figure.
void Dessine(Etat& e, const Commande& c) {
    Surface* s = e.Surf;
    if (c.couleur == -1) return; // N: nothing drawn, the cursor still moves
    const bool degrade = c.remplie && c.couleur2.has_value();
    if (c.remplie && c.conique && c.couleur2) {
        MarquePage(e, e.Surf->ForeColor);
        s->FillStyle = 0;
        GradientConique(e, c);
    } else if (degrade) {
        MarquePage(e, e.Surf->ForeColor);
        s->FillStyle = 0;
        GradientLineaire(e, c);
    } else {
        Simple(e, c, c.remplie);
        return;
    }
    // The outline, last, over the bands.
    s->FillStyle = 1;
    s->ForeColor = c.couleur;
    Simple(e, c, false);
}

} // namespace

void CmdCercle(Etat& e) { Cercle(e, e.Ctx().Mot, e.LigneCourante); }

void Cercle(Etat& e, const QString& mot, const QString& l) {
    Surface* s = e.Surf;
    if (!s) return;
    e.EtatOrdre |= 64;
    Commande c;
    const QString motH = mot.toUpper();
    c.remplie = motH.startsWith(QLatin1String("CERCLEP"));
    c.inverse = motH.endsWith(u'I');
    // Centre: the command's coordinate pair, turned, origins added.
    const QPointF centre = LitPointCommande(e, l);
    const double rotation = e.Repere.RotationCmd;
    c.el.cx = centre.x();
    c.el.cy = centre.y();
    // Radius and ellipse coefficient.
    c.rayon = float(ParaVal0(e, l, 3));
    if (c.rayon == 0) {
        s->FillStyle = 1;
        return;
    }
    QString coef = Trim(SousPara(e, ParaN(e, l, 3), 2));
    if (!coef.isEmpty()) c.coef = float(EvalExpr(e, coef).value_or(0));
    // Start and end: "-0" still asks for a radius line.
    auto angle = [&](int i) {
        double v = ParaVal0(e, l, i);
        if (v == 0 && LTrim(ParaN(e, l, i)).startsWith(u'-')) v = -0.0000001;
        return v * DegRad;
    };
    c.debut = angle(4);
    c.fin = angle(5);
    // A filled arc always has both radius lines.
    if (c.remplie) {
        c.debut = -std::abs(c.debut);
        c.fin = -std::abs(c.fin);
    }
    // Colours: colour[§colour2[§[C][NbBandes]]].
    const QString p6 = ParaN(e, l, 6);
    c.couleur = CouleurParametre(e, p6);
    c.couleur2 = CouleurFinale(e, p6);
    if (c.couleur2) {
        QString reste = Trim(Piece(p6, 3, e.Separateur2));
        if (reste.left(1).toUpper() == QLatin1String("C")) {
            c.conique = true;
            reste = Mid(reste, 2);
        }
        c.bandes = Entier16(std::llround(std::nearbyint(EvalExpr(e, reste).value_or(0))));
    }
    // Semi-axes: Coef is height over width, the larger one is the radius.
    c.el.demiX = c.coef > 1 ? float(c.rayon / c.coef) : c.rayon;
    c.el.demiY = c.coef < 1 ? float(c.rayon * c.coef) : c.rayon;
    c.el.Tourne((ParaVal0(e, l, 8) - rotation) * DegRadEllipse);
    EpaisLocal(e, ParaN(e, l, 7));
    try {
        Dessine(e, c);
    } catch (...) {
        // Any fault leaves by the same end.
        s->FillStyle = 1;
        EpaisRestaure(e);
        throw;
    }
    s->FillStyle = 1;
    e.Styles.CouleurCmd = e.Styles.CouleurDefaut;
    if (e.Styles.CouleurDefaut != -1) s->ForeColor = e.Styles.CouleurDefaut;
    EpaisRestaure(e);
    // The cursor: the end of the arc (its start for the I keywords); the
    // centre after a full turn.
    const Arc a = Normalise(c.debut, c.fin);
    QPointF p(c.el.cx, c.el.cy);
    if (!a.Complet()) p = c.el.Point(c.inverse ? a.debut : a.fin);
    s->CurrentX = p.x();
    s->CurrentY = p.y();
    MajPointCourant(e, rotation);
}

double PasArc(const Etat& e, double rayon) {
    return PasArc(e, rayon, double(e.Txt.FacteurPolice));
}

double PasArc(const Etat& e, double rayon, double facteurPolice) {
    const double base = std::sqrt(facteurPolice) * std::abs(rayon);
    const bool fin = e.Surf && e.Surf->EstImprimante() && std::abs(rayon) < 10;
    return (fin ? 0.1 : 1.0) / base;
}

Teinte::Teinte(int c)
    : r(float(c & 255)), g(float((c / 256) & 255)), b(float((c / 65536) & 255)) {}

int Teinte::Valeur() const {
    return RGB(int(std::nearbyint(r)), int(std::nearbyint(g)), int(std::nearbyint(b)));
}

void Teinte::Avance(const Teinte& pas) {
    r += pas.r;
    g += pas.g;
    b += pas.b;
}

std::optional<int> CouleurFinale(Etat& e, const QString& parametre) {
    if (InStr(parametre, e.Separateur2) == 0) return std::nullopt;
    const std::optional<int> c = LitCouleur(e, Piece(parametre, 2, e.Separateur2));
    if (!c || *c == -1) return std::nullopt;
    return c;
}

int NombreBandes(int couleur, int couleur2, int bandes, Teinte& pas) {
    const Teinte a(couleur), b(couleur2);
    const float dR = b.r - a.r, dG = b.g - a.g, dB = b.b - a.b;
    int n = int(std::max({std::abs(dR), std::abs(dG), std::abs(dB)})) + 1;
    if (bandes > 0) n = bandes;
    pas.r = dR / n;
    pas.g = dG / n;
    pas.b = dB / n;
    return n;
}

void ArcPointille(Etat& e, double cx, double cy, double rayon, double debut, double fin,
                  int couleur, double aspect) {
    Surface* s = e.Surf;
    if (!s) return;
    if (couleur == -1) {
        s->CurrentX = cx;
        s->CurrentY = cy;
        return;
    }
    const EtatStyles& st = e.Styles;
    auto enroule = [](double a) {
        while (a > TourComplet) a -= TourComplet;
        return a;
    };
    // `Circle` takes -0 for 0, with no radius line: a radius at angle 0 is
    // asked by a tiny negative.
    auto negatif = [](double a) { return a == 0 ? -0.0000001 : -a; };
    const bool rayonDebut = debut < 0, rayonFin = fin < 0;
    const double d = enroule(std::abs(debut));
    double f = enroule(std::abs(fin));
    const bool plein = f == d;
    if (f <= d) f += TourComplet;
    if (st.TiretL1 <= 0) {
        // No pattern: one Circle.
        if (plein && !rayonDebut && !rayonFin) s->Circle(cx, cy, rayon, couleur, {}, {}, aspect);
        else
            s->Circle(cx, cy, rayon, couleur, rayonDebut ? negatif(d) : d,
                      rayonFin ? negatif(enroule(f)) : enroule(f), aspect);
        return;
    }
    // Semi-axes for measuring lengths along the outline.
    double rx = std::abs(rayon), ry = std::abs(rayon);
    if (aspect > 1) rx /= aspect;
    else if (aspect < 1) ry *= aspect;
    // Length along the outline from d to angle t, and back. A circle is exact;
    // an ellipse uses a table of small steps.
    std::vector<double> tt, ll;
    const bool cercle = rx == ry;
    if (!cercle) {
        const int m = std::max(64, int(std::ceil((f - d) / 0.002)));
        tt.resize(size_t(m) + 1);
        ll.resize(size_t(m) + 1);
        ll[0] = 0;
        tt[0] = d;
        for (int i = 1; i <= m; ++i) {
            tt[size_t(i)] = d + (f - d) * i / m;
            const double tm = (tt[size_t(i)] + tt[size_t(i) - 1]) / 2;
            const double ds = std::hypot(rx * std::sin(tm), ry * std::cos(tm));
            ll[size_t(i)] = ll[size_t(i) - 1] + ds * (tt[size_t(i)] - tt[size_t(i) - 1]);
        }
    }
    const double total = cercle ? rx * (f - d) : ll.back();
    auto angleA = [&](double longueur) {
        if (cercle) return rx > 0 ? d + longueur / rx : d;
        const size_t i = size_t(std::lower_bound(ll.begin(), ll.end(), longueur) - ll.begin());
        if (i == 0) return tt[0];
        if (i >= ll.size()) return tt.back();
        const double k = (longueur - ll[i - 1]) / (ll[i] - ll[i - 1]);
        return tt[i - 1] + k * (tt[i] - tt[i - 1]);
    };
    // The pattern L1, gap L2, L3, gap L2 from the start of the arc.
    const double pas[4] = {st.TiretL1, st.TiretL2 > 0 ? st.TiretL2 : st.TiretL1,
                           st.TiretL3 > 0 ? st.TiretL3 : st.TiretL1,
                           st.TiretL2 > 0 ? st.TiretL2 : st.TiretL1};
    double pos = 0;
    int phase = 0;
    bool finDessinee = false;
    while (pos < total) {
        const double bout = std::min(pos + pas[phase], total);
        if (phase % 2 == 0) {
            const double ta = pos == 0 ? d : angleA(pos);
            const double tb = bout >= total ? f : angleA(bout);
            double a0 = enroule(ta), a1 = enroule(tb);
            if (pos == 0 && rayonDebut) a0 = negatif(a0);
            if (bout >= total && rayonFin) {
                a1 = negatif(a1);
                finDessinee = true;
            }
            s->Circle(cx, cy, rayon, couleur, a0, a1, aspect);
        }
        pos = bout;
        phase = (phase + 1) % 4;
    }
    // The end fell in a gap: its radius line still is drawn, with a tiny arc.
    if (rayonFin && !finDessinee)
        s->Circle(cx, cy, rayon, couleur, enroule(f - 0.000001), negatif(enroule(f)), aspect);
}
