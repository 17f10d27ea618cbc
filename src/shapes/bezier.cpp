// Bezier curves. A chain of cubic curves, each from a start point and its
// direction point to an arrival and its direction point; sampled finely
// enough that the dash pattern of the line style runs on unbroken.
#include "shapes/bezier.h"
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

#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

using namespace vb;

namespace {

constexpr double Pi = Litteraux::Pi;
constexpr double DegRad = Litteraux::DegRad;
constexpr double TourComplet = Litteraux::TourComplet;
constexpr double DegRadCible = 0.0174532925; // angle targets of the graduations
constexpr int MaxPointsBezier = 10000;        // the filled outline's buffer
constexpr double RayonMarque = 0.5;           // the small circle on each end point

enum class Genre { Trace, Plein, Graduee };

using Controle = std::array<QPointF, 4>; // P0 start, P1 its direction, P2, P3 arrival

// The point at t of a cubic curve, each term in 32-bit floats, then summed.
QPointF PointBezier(const Controle& p, float t) {
    const float u = 1 - t;
    const float a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
    auto terme = [](float k, double v) { return float(k * float(v)); };
    return {double(terme(a, p[0].x()) + terme(b, p[1].x()) + terme(c, p[2].x()) + terme(d, p[3].x())),
            double(terme(a, p[0].y()) + terme(b, p[1].y()) + terme(c, p[2].y()) + terme(d, p[3].y()))};
}

// The transform of a chain: factors, offsets, rotation about 0,0, origins.
struct Transformation {
    double aX = 1, aY = 1, bX = 0, bY = 0;
    double rotation = 0; // degrees, stored negated
    QPointF Applique(const Etat& e, QPointF p) const {
        double x = (p.x() + bX) * aX, y = (p.y() + bY) * aY;
        Tourne(rotation, x, y);
        return {VersSurfaceX(e, x), VersSurfaceY(e, y)};
    }
};

// The graduation options of `Bezier_aGr`, from the sub-fields of the colour
// parameter.
struct Graduations {
    QString nombre;        // a count, or a list of percentages and angles
    double longueur = 0;
    bool seules = false;   // "S": the marks and texts without the curve
    double rotation = 0;   // degrees; 0 means along the radius
    bool rotationRelative = false;
    QStringList textes;
    double distance = 0;
    double rotationTexte = 0;
    bool texteRelatif = false;
};

// A sub-field read as a number, with its letters dropped; none when empty.
std::optional<double> Nombre(Etat& e, QString t, const QString& lettres = QString()) {
    for (const QChar c : lettres) t.remove(c, Qt::CaseInsensitive);
    t = Trim(t);
    if (t.isEmpty()) return std::nullopt;
    return EvalExpr(e, t).value_or(0);
}

// The items of a list held in one sub-field: split on the first separator,
// or on "," when the first separator has been changed.
QStringList Liste(const Etat& e, const QString& t) {
    const QString sep = t.contains(e.Separateur1) ? e.Separateur1 : QStringLiteral(",");
    return t.split(sep);
}

// The angle of a point seen from 0,0, in (-pi, pi]; pi on the negative x axis.
double AngleDe(QPointF p) {
    const double r = std::hypot(p.x(), p.y());
    if (r == 0) return 0;
    const double a = std::asin(p.y() / r);
    if (p.x() >= 0) return a;
    if (p.y() == 0) return Pi;
    return (p.y() > 0 ? Pi : -Pi) - a;
}

// The run of angles a curve sweeps as seen from 0,0, and its direction.
struct Course {
    double a1 = 0, a2 = 0;
    bool horaire = false;
    // The angle of a point of the curve, taken in the turn of the run.
    double Angle(QPointF p) const {
        const double milieu = (a1 + a2) / 2;
        double a = AngleDe(p);
        while (a < milieu - Pi) a += TourComplet;
        while (a > milieu + Pi) a -= TourComplet;
        return a;
    }
    bool Contient(double a) const {
        return a >= std::min(a1, a2) - 1e-9 && a <= std::max(a1, a2) + 1e-9;
    }
};

Course CourseDe(const Controle& p) {
    Course c;
    c.a1 = AngleDe(p[0]);
    c.a2 = AngleDe(p[3]);
    const double a3 = AngleDe(PointBezier(p, 0.1f));
    // A first step of more than half a turn crosses the negative x axis: the
    // direction is the other one, and one end moves a turn so that the run
    // is a single interval.
    const bool traverse = std::abs(c.a1 - a3) > Pi;
    c.horaire = traverse ? a3 > c.a1 : a3 < c.a1;
    // Otherwise the arrival may still lie behind the start in that direction:
    // a curve that starts below the negative x axis and runs over the top, or
    // one that crosses that axis after its first step. That end moves a turn.
    const bool aRebours = c.horaire ? c.a1 < c.a2 : c.a2 < c.a1;
    if (traverse || aRebours) (c.horaire ? c.a1 : c.a2) += TourComplet;
    return c;
}

// `ChercheT`: the t at which the curve is seen at the angle `cible`, by
// bisection; after 20 rounds the last t stands, whatever it gives.
float ChercheT(const Controle& p, const Course& c, double cible) {
    float bas = 0, haut = 1, t = 0.5f;
    for (int tour = 0; tour < 20; ++tour) {
        t = (bas + haut) / 2;
        const double a = c.Angle(PointBezier(p, t));
        if (std::abs(cible - a) < 0.001) break;
        const bool depasse = c.horaire ? a < cible : a > cible;
        (depasse ? haut : bas) = t;
    }
    return t;
}

// The target angles of the graduations along the run.
QVector<double> Cibles(Etat& e, const Graduations& g, const Course& c) {
    QVector<double> r;
    const QString n = Trim(g.nombre);
    if (n.contains(e.Separateur1) || n.contains(u',')) {
        for (QString item : Liste(e, n)) {
            item = Trim(item);
            if (item.isEmpty()) continue;
            if (item.endsWith(u'°')) {
                double a = Nombre(e, item, QStringLiteral("°")).value_or(0) * DegRadCible;
                for (const double k : {0.0, TourComplet, -TourComplet})
                    if (c.Contient(a + k)) {
                        a += k;
                        break;
                    }
                r.append(a);
            } else {
                r.append(c.a1 + (c.a2 - c.a1) * Nombre(e, item).value_or(0) / 100);
            }
        }
        return r;
    }
    const int nombre = n.isEmpty() ? 10 : int(std::nearbyint(Nombre(e, n).value_or(0)));
    for (int i = 0; i <= nombre && nombre > 0; ++i) r.append(c.a1 + (c.a2 - c.a1) * i / nombre);
    return r;
}

// Marks and texts along the first curve of a `Bezier_aGr` chain.
void Gradue(Etat& e, const Controle& p, const Transformation& tr, const Graduations& g,
            int couleur, int epaisseur) {
    Surface* s = e.Surf;
    const Course c = CourseDe(p);
    const QVector<double> cibles = Cibles(e, g, c);
    s->DrawWidth = epaisseur <= 1 ? 1 : int(std::nearbyint((epaisseur + 0.5) / 2));
    const int couleurTexte = e.Txt.CouleurTexte;
    for (int i = 0; i < cibles.size(); ++i) {
        const double cible = cibles[i];
        if (!c.Contient(cible)) continue;
        const QPointF B = PointBezier(p, ChercheT(p, c, cible));
        double d = cible;
        if (g.rotation != 0) d = g.rotation * DegRad + (g.rotationRelative ? cible : 0);
        const QPointF u(std::cos(d), std::sin(d));
        const QPointF a = tr.Applique(e, B), b = tr.Applique(e, B + g.longueur * u);
        TraitRot(e, a.x(), a.y(), b.x(), b.y(), 0, couleur);
        if (i >= g.textes.size() || couleur == -1) continue;
        const QString texte = g.textes[i];
        const QPointF ancre = tr.Applique(e, B + g.distance * u);
        const double angle = g.texteRelatif ? cible / DegRadCible - 90 + g.rotationTexte
                                            : g.rotationTexte;
        e.Txt.X = s->CurrentX = ancre.x();
        e.Txt.Y = s->CurrentY = ancre.y();
        e.Txt.CouleurTexte = s->ForeColor = couleur;
        PlaceTexte(e, s->TextWidth(texte), -s->TextHeight(texte), angle, texte, QString(), 0);
    }
    e.Txt.CouleurTexte = couleurTexte;
}

// The two end points of a curve, marked with a small circle, and the lines
// to their direction points, one pixel wide: the construction of the curve.
void MarqueControle(Etat& e, const Controle& p, int couleur) {
    Surface* s = e.Surf;
    const int largeur = s->DrawWidth;
    s->DrawWidth = 1;
    s->Circle(p[0].x(), p[0].y(), RayonMarque, couleur);
    s->Circle(p[3].x(), p[3].y(), RayonMarque, couleur);
    s->Line(p[0].x(), p[0].y(), p[1].x(), p[1].y(), couleur);
    s->Line(p[3].x(), p[3].y(), p[2].x(), p[2].y(), couleur);
    s->DrawWidth = largeur;
}

// The control points of the chain as given, untransformed: the first curve
// from parameters 4 to 11, each next one from six more parameters, its
// start being the last arrival. A group of six empty parameters ends the chain.
QVector<Controle> Chaine(Etat& e, const QString& l) {
    QVector<Controle> r;
    const EtatRepere& rp = e.Repere;
    auto lit = [&](int n, QPointF ref) {
        double x = 0, y = 0;
        ParaCoord(e, x, y, l, n, ref.x(), ref.y());
        return QPointF(x, y);
    };
    Controle c;
    c[0] = lit(4, {rp.PointX, rp.PointY});
    c[1] = lit(6, c[0]);
    c[3] = lit(8, c[0]);
    c[2] = lit(10, c[3]);
    r.append(c);
    const int n = NbPara(e, l);
    auto vide = [&](int k) {
        for (int i = k; i < k + 6; ++i)
            if (!Trim(ParaBrut(e, l, i)).isEmpty()) return false;
        return true;
    };
    for (int k = 12; k <= n && !vide(k); k += 6) {
        Controle s;
        s[0] = r.back()[3];
        s[1] = lit(k, s[0]);
        s[3] = lit(k + 2, s[0]);
        s[2] = lit(k + 4, s[3]);
        r.append(s);
    }
    return r;
}

void Bezier(Etat& e, Genre genre) {
    Surface* s = e.Surf;
    const QString l = e.LigneCourante;
    e.EtatOrdre |= 64;
    const QString p1 = Trim(ParaN(e, l, 1));
    const int couleurPoints = p1.isEmpty() ? -1 : CouleurParametre(e, p1);
    EpaisLocal(e, ParaN(e, l, 2));
    const int epaisseur = s ? s->DrawWidth : 1;
    // The colour parameter and its sub-fields.
    const QString p3 = ParaN(e, l, 3);
    auto champ = [&](int i) { return Piece(p3, i + 1, e.Separateur2); };
    const int couleur = CouleurParametre(e, champ(0));
    Transformation tr;
    tr.aX = Nombre(e, champ(1)).value_or(1);
    tr.aY = Nombre(e, champ(2)).value_or(1);
    if (tr.aX == 0) tr.aX = 1;
    if (tr.aY == 0) tr.aY = 1;
    tr.bX = Nombre(e, champ(3)).value_or(0);
    tr.bY = Nombre(e, champ(4)).value_or(0);
    const std::optional<double> rot = Nombre(e, champ(5));
    tr.rotation = rot ? -*rot : e.Repere.AngRotDefaut;
    Graduations g;
    if (genre == Genre::Graduee) {
        g.nombre = champ(6);
        g.seules = champ(7).contains(u'S', Qt::CaseInsensitive);
        g.longueur = Nombre(e, champ(7), QStringLiteral("S")).value_or(0);
        g.rotationRelative = champ(8).contains(u'R', Qt::CaseInsensitive);
        g.rotation = Nombre(e, champ(8), QStringLiteral("R")).value_or(0);
        if (!Trim(champ(9)).isEmpty()) g.textes = Liste(e, champ(9));
        g.distance = Nombre(e, champ(10)).value_or(0);
        g.texteRelatif = champ(11).contains(u'R', Qt::CaseInsensitive);
        g.rotationTexte = Nombre(e, champ(11), QStringLiteral("R")).value_or(0);
    }
    const QVector<Controle> chaine = Chaine(e, l);
    const bool trace = !g.seules;
    QVector<QPointF> pixels;
    QPointF fin = tr.Applique(e, chaine.back()[3]);
    for (const Controle& brut : chaine) {
        Controle p;
        for (int i = 0; i < 4; ++i) p[i] = tr.Applique(e, brut[i]);
        // At least 50 steps; the length is measured deliberately from the
        // start to the arrival's direction point.
        const double L = std::max(50.0, std::hypot(p[2].x() - p[0].x(), p[2].y() - p[0].y()));
        const float dt = 1.0f / float(std::floor(L));
        QPointF precedent = p[0];
        auto ajoute = [&](QPointF q, bool joint) {
            if (joint && trace && s)
                TraitRot(e, precedent.x(), precedent.y(), q.x(), q.y(), 0, couleur);
            precedent = q;
            if (genre != Genre::Plein) return;
            if (pixels.size() >= MaxPointsBezier) throw ErreurExecution("Subscript out of range");
            pixels.append(PixelDevice(e, q.x(), q.y()));
        };
        ajoute(p[0], false);
        for (float t = dt; t <= 1; t += dt) ajoute(PointBezier(p, t), true);
        ajoute(PointBezier(p, 1), true);
        if (s && couleurPoints != -1) MarqueControle(e, p, couleurPoints);
        fin = p[3];
    }
    if (s && genre == Genre::Plein && couleur != -1) {
        s->DrawWidth = epaisseur;
        MarquePage(e, couleur);
        PolygoneRempli(e, pixels, couleur);
        s->FillStyle = 1;
    }
    if (s && genre == Genre::Graduee) Gradue(e, chaine.front(), tr, g, couleur, epaisseur);
    EpaisRestaure(e);
    if (s) {
        s->FillStyle = 1;
        if (e.Styles.CouleurDefaut != -1) s->ForeColor = e.Styles.CouleurDefaut;
        s->CurrentX = fin.x();
        s->CurrentY = fin.y();
    }
    EtatRepere& rp = e.Repere;
    rp.PointX = float(fin.x() - rp.OrigineX - rp.CTx);
    rp.PointY = float(fin.y() - rp.OrigineY - rp.CTy);
}

} // namespace

void CmdBezier(Etat& e) { Bezier(e, Genre::Trace); }
void CmdBezierP(Etat& e) { Bezier(e, Genre::Plein); }
void CmdBezierAGr(Etat& e) { Bezier(e, Genre::Graduee); }
