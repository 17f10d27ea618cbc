// Polygons (`Poly`, `PolyP`), regular polygons (`PolyR`, `PolyRP`) and
// crescents (`DemiLune`, `DemiLuneP`). A P keyword fills first and draws the
// outline last, through the dashed-line routine, so that a line style runs
// round the shape.
#include "shapes/poly.h"
#include "shapes/cadre.h"
#include "shapes/texte.h"

#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/constantes.h"
#include "language/commandes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/para.h"
#include "language/vb.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <algorithm>
#include <cmath>

using namespace vb;

namespace {

constexpr double Pi = Litteraux::Pi;
constexpr double TourComplet = Litteraux::TourComplet;
constexpr double DegRadForme = 0.0174532925; // the start angle of PolyR, the crescent's angles
constexpr int MaxPointsPoly = 1000;           // the size of the outline buffers

// Fewer than three points, or fewer than three sides, make no polygon: the
// line fails as a division by zero.
[[noreturn]] void DivisionParZero() { throw ErreurExecution("Division par zéro"); }


// The rotation about 0,0 of a command whose angle is sub-field n of `texte`
// (the `AngRot` default when it is empty), stored negated as `LitRotation`
// stores it.
double RotationSousChamp(Etat& e, const QString& texte, int n) {
    const QString angle = Trim(Piece(texte, n, e.Separateur2));
    double x = 0, y = 0;
    LitRotation(e, QStringLiteral("0") + e.Separateur2 + angle, x, y);
    return e.Repere.RotationCmd;
}

// Puts the points through `AjoutePoint`, turned by `angle` (radians) about
// (cx, cy) and by `rotation` about 0,0. The buffers hold 1000 points.
void RangePoints(Etat& e, const QVector<QPointF>& pts, double cx, double cy, double angle,
                 double rotation) {
    if (pts.size() > MaxPointsPoly) throw ErreurExecution("Subscript out of range");
    e.Cadre.Points.clear();
    e.Cadre.PointsPixel.clear();
    for (int i = 0; i < pts.size(); ++i)
        AjoutePoint(e, i, pts[i].x(), pts[i].y(), cx, cy, angle, rotation);
}

// The stored outline in Surface units.
QVector<QPointF> ContourSurface(const Etat& e, int n) {
    QVector<QPointF> r;
    for (int i = 0; i < n; ++i) {
        const QPointF p = e.Cadre.Points[i];
        r.append({VersSurfaceX(e, p.x()), VersSurfaceY(e, p.y())});
    }
    return r;
}

// The fill of a shape in one colour, with the page mark on the printer first.
void Remplit(Etat& e, const QVector<QPointF>& pixels, int couleur) {
    if (!e.Surf || couleur == -1) return;
    MarquePage(e, couleur);
    PolygoneRempli(e, pixels, couleur);
    e.Surf->FillStyle = 1;
}

// The outline: each point joined to the next, and the last to the first.
void Contour(Etat& e, const QVector<QPointF>& pts, int couleur, bool ferme = true) {
    const int n = int(pts.size());
    for (int i = 0; i + 1 < n; ++i)
        TraitRot(e, pts[i].x(), pts[i].y(), pts[i + 1].x(), pts[i + 1].y(), 0, couleur);
    if (ferme && n > 1) TraitRot(e, pts[n - 1].x(), pts[n - 1].y(), pts[0].x(), pts[0].y(), 0, couleur);
}

// After a shape: the default colour back in the pen, the line style
// restored, the pen on `fin` (Surface units), the current point updated.
void Termine(Etat& e, QPointF fin, double rotation) {
    if (Surface* s = e.Surf) {
        s->FillStyle = 1;
        if (e.Styles.CouleurDefaut != -1) s->ForeColor = e.Styles.CouleurDefaut;
        s->CurrentX = fin.x();
        s->CurrentY = fin.y();
    }
    EpaisRestaure(e);
    MajPointCourant(e, rotation);
}

// One coordinate of a point file: a value ending in R is added to the
// previous point's one; the factor scales it either way.
double ValeurFichier(Etat& e, QString t, double precedent, double facteur) {
    t = Trim(t);
    const bool relatif = t.endsWith(u'R', Qt::CaseInsensitive);
    if (relatif) t.chop(1);
    const double v = EvalExpr(e, t).value_or(0) * facteur;
    return relatif ? precedent + v : v;
}

// The points of a point file: "x;y" lines, "," read as a decimal point,
// "'" comments; "'EOD" ends the data when it stands after a line's first
// character (at its start it is one more comment).
QVector<QPointF> PointsDuFichier(Etat& e, const QString& nom) {
    const QString chemin = FichierDeCommande(e, nom, QStringLiteral(".txt"));
    QStringList lignes;
    if (!LitLignesDonnees(chemin, lignes)) {
        e.FichierNonTrouve = true;
        e.NomFichierNonTrouve = chemin;
        throw ErreurProvoquee("fichier non trouvé");
    }
    const EtatRepere& rp = e.Repere;
    QVector<QPointF> pts;
    QPointF precedent(rp.PointX, rp.PointY);
    for (QString ligne : lignes) {
        if (ligne.indexOf(QLatin1String("'EOD")) > 0) break;
        if (ligne.startsWith(u'\'')) continue;
        ligne.replace(u',', u'.');
        if (Len(Trim(ligne)) <= 2) continue;
        const double x = ValeurFichier(e, Piece(ligne, 1, QStringLiteral(";")), precedent.x(),
                                       rp.FacteurTraitX);
        const double y = ValeurFichier(e, Piece(ligne, 2, QStringLiteral(";")), precedent.y(),
                                       rp.FacteurTraitY);
        precedent = QPointF(x, y);
        pts.append(precedent);
        if (pts.size() > MaxPointsPoly) throw ErreurExecution("Subscript out of range");
    }
    return pts;
}

// The points of the parameters from position k on, by pairs, each about
// the one before; the current point follows them.
QVector<QPointF> PointsDesParametres(Etat& e, const QString& l, int k) {
    EtatRepere& rp = e.Repere;
    QVector<QPointF> pts;
    const int n = NbPara(e, l);
    for (int i = k; i < n; i += 2) {
        double x = 0, y = 0;
        ParaCoord(e, x, y, l, i, rp.PointX, rp.PointY);
        rp.PointX = float(x);
        rp.PointY = float(y);
        pts.append({x, y});
        if (pts.size() > MaxPointsPoly) throw ErreurExecution("Subscript out of range");
    }
    return pts;
}

void Poly(Etat& e, bool plein) {
    const QString l = e.LigneCourante;
    if (Trim(l).isEmpty()) return;
    e.EtatOrdre |= 64;
    EtatRepere& rp = e.Repere;
    // The coordinate factors hold for this command only, whatever happens.
    struct Facteurs {
        EtatRepere& r;
        ~Facteurs() { r.FacteurTraitX = r.FacteurTraitY = 1; }
    } garde{rp};
    // An odd count of parameters starts with the colour and its line style.
    int k = 1;
    QString style;
    int couleur = CouleurParametre(e, QString());
    if (NbPara(e, l) % 2 == 1) {
        const QString p1 = ParaN(e, l, 1);
        couleur = CouleurParametre(e, Piece(p1, 1, e.Separateur2));
        const int s2 = InStr(p1, e.Separateur2);
        if (s2 > 0) style = Mid(p1, s2 + Len(e.Separateur2));
        k = 2;
    }
    EpaisLocal(e, style);
    const QString px = ParaN(e, l, k), py = ParaN(e, l, k + 1);
    const double fx = SousValeur(e, px, 2, 1), fy = SousValeur(e, px, 3, 1);
    rp.FacteurTraitX = float(fx == 0 ? 1 : fx);
    rp.FacteurTraitY = float(fy == 0 ? 1 : fy);
    // The polygon's own turn about point 1, and the rotation about 0,0.
    const double angle = -SousValeur(e, py, 2, 0) * Pi / 180;
    const double rotation = RotationSousChamp(e, py, 3);
    const QVector<QPointF> pts =
        Trim(Piece(px, 1, e.Separateur2)).toUpper() == QLatin1String("FIC")
            ? PointsDuFichier(e, Trim(Piece(py, 1, e.Separateur2)))
            : PointsDesParametres(e, l, k);
    if (pts.size() < 3) DivisionParZero();
    RangePoints(e, pts, pts[0].x(), pts[0].y(), angle, rotation);
    const QVector<QPointF> contour = ContourSurface(e, int(pts.size()));
    if (e.Surf && couleur != -1) {
        if (plein) {
            QVector<QPointF> pixels;
            for (const QPoint& p : e.Cadre.PointsPixel) pixels.append(QPointF(p));
            Remplit(e, pixels, couleur);
        }
        Contour(e, contour, couleur);
    }
    Termine(e, contour.front(), rotation);
}

// The corners of a regular polygon, point 1 first, sides walked
// counter-clockwise from the direction of +x.
QVector<QPointF> SommetsReguliers(int n, double x, double y, double L, double L1) {
    QVector<QPointF> pts{{x, y}};
    const int moitie = int(std::nearbyint(n / 2.0));
    double b = 0;
    for (int i = 2; i <= n; ++i) {
        const double cote = (i - 2) % moitie == 0 ? L1 : L;
        x += cote * std::cos(b);
        y += cote * std::sin(b);
        pts.append({x, y});
        b += TourComplet / n;
    }
    return pts;
}

void PolyR(Etat& e, bool plein) {
    const QString l = e.LigneCourante;
    EtatRepere& rp = e.Repere;
    e.EtatOrdre |= 64;
    double xr = 0, yr = 0;
    ParaCoord(e, xr, yr, l, 1, rp.PointX, rp.PointY);
    const double rotation = RotationSousChamp(e, ParaN(e, l, 2), 2);
    int n = Entier16Arrondi(ParaVal0(e, l, 3));
    if (std::abs(n) < 3) DivisionParZero();
    const QString p4 = ParaN(e, l, 4);
    const double R = ParaVal(e, l, 4).value_or(20);
    const double L = R > 0 ? 2 * R * std::sin(Pi / std::abs(n)) : -R;
    double L1 = SousValeur(e, p4, 2, L);
    if (n % 2 != 0) L1 = L; // an odd polygon's first side matches the others
    // A positive count centres the polygon on the point; a negative one
    // starts its first side there.
    double x = xr, y = yr;
    if (n > 0) {
        x -= L / 2;
        y -= (L / 2) / std::tan(Pi / n);
        if (L1 != 0) x -= (L1 - L) / 2;
    }
    n = std::abs(n);
    const double a0 = -ParaVal0(e, l, 5) * DegRadForme;
    const QString p6 = ParaN(e, l, 6);
    const int couleur = CouleurParametre(e, Piece(p6, 1, e.Separateur2));
    const QString fond = Trim(Piece(p6, 2, e.Separateur2));
    const int couleurFond = fond.isEmpty() ? couleur : CouleurParametre(e, fond);
    EpaisLocal(e, ParaN(e, l, -7));
    RangePoints(e, SommetsReguliers(n, x, y, L, L1), xr, yr, a0, rotation);
    const QVector<QPointF> contour = ContourSurface(e, n);
    if (e.Surf) {
        if (plein) {
            QVector<QPointF> pixels;
            for (const QPoint& p : e.Cadre.PointsPixel) pixels.append(QPointF(p));
            Remplit(e, pixels, couleurFond);
        }
        if (couleur != -1) Contour(e, contour, couleur);
    }
    Termine(e, contour.front(), rotation);
}

// A crescent: two arcs about one centre that meet at the end angle and are
// a width apart at the start angle. The angles run in device pixels, y
// downward, so they turn clockwise on the sheet.
void DemiLune(Etat& e, bool plein) {
    const QString l = e.LigneCourante;
    e.EtatOrdre |= 64;
    const QPointF c = LitPointCommande(e, l);
    const double rotation = e.Repere.RotationCmd;
    const double R = ParaVal0(e, l, 3);
    const double debut = (ParaVal0(e, l, 4) + rotation) * DegRadForme;
    const double fin = (ParaVal0(e, l, 5) + rotation) * DegRadForme;
    const double h = ParaVal0(e, l, 6) / 2;
    const int couleur = CouleurParametre(e, ParaN(e, l, 7));
    EpaisLocal(e, ParaN(e, l, -8));
    const int pas = Entier16Arrondi(std::abs(R * (fin - debut)));
    const int n = std::clamp(pas, 25, 500);
    // The outer edge from the end angle to the start, widening from R to
    // R + h; the inner one back from the start to the end, from R - h to R.
    QVector<QPointF> pts;
    auto point = [&](double angle, double rayon) {
        pts.append({c.x() + rayon * std::cos(angle), c.y() - rayon * std::sin(angle)});
    };
    for (int i = 0; i <= n; ++i) point(fin - (fin - debut) * i / n, R + h * i / n);
    for (int i = 0; i <= n; ++i) point(debut + (fin - debut) * i / n, R - h * (n - i) / n);
    if (e.Surf && couleur != -1) {
        if (plein) {
            QVector<QPointF> pixels;
            for (const QPointF& p : pts) pixels.append(PixelDevice(e, p.x(), p.y()));
            Remplit(e, pixels, couleur);
        }
        if (h >= 0) Contour(e, pts, couleur);
    }
    Termine(e, c, rotation);
}

} // namespace

QString FichierDeCommande(Etat& e, const QString& nom, const QString& extension) {
    QString n = Trim(nom);
    if (!n.contains(u':') && !n.contains(u'\\') && !n.contains(u'/')) {
        const QString programme = e.NiveauCourant >= 2 ? e.Ctx().Nom : e.FichierPrincipal;
        if (!programme.isEmpty()) n = QFileInfo(programme).absolutePath() + u'/' + n;
    }
    const QString base = QFileInfo(n).fileName();
    if (base.lastIndexOf(u'.') < 1) n += extension;
    return CheminLecture(e, n);
}

bool LitLignesDonnees(const QString& chemin, QString& texte, std::vector<QStringView>& lignes) {
    QFile f(chemin);
    if (!f.open(QIODevice::ReadOnly)) return false;
    const QByteArray octets = f.readAll();
    QStringDecoder utf8(QStringConverter::Utf8);
    texte = utf8.decode(octets);
    if (utf8.hasError()) {
        QStringDecoder w("windows-1252");
        texte = w.isValid() ? QString(w.decode(octets)) : QString::fromLatin1(octets);
    }
    lignes.clear();
    const QChar* t = texte.constData();
    const qsizetype n = texte.size();
    qsizetype debut = 0;
    for (qsizetype i = 0; i < n; ++i) {
        if (t[i] != u'\r' && t[i] != u'\n') continue;
        lignes.emplace_back(t + debut, i - debut);
        if (t[i] == u'\r' && i + 1 < n && t[i + 1] == u'\n') ++i;
        debut = i + 1;
    }
    lignes.emplace_back(t + debut, n - debut);
    return true;
}

bool LitLignesDonnees(const QString& chemin, QStringList& lignes) {
    QString texte;
    std::vector<QStringView> vues;
    if (!LitLignesDonnees(chemin, texte, vues)) return false;
    lignes.clear();
    lignes.reserve(vues.size());
    for (QStringView v : vues) lignes.append(v.toString());
    return true;
}

void CmdPoly(Etat& e) { Poly(e, false); }
void CmdPolyP(Etat& e) { Poly(e, true); }
void CmdPolyR(Etat& e) { PolyR(e, false); }
void CmdPolyRP(Etat& e) { PolyR(e, true); }
void CmdDemiLune(Etat& e) { DemiLune(e, false); }
void CmdDemiLuneP(Etat& e) { DemiLune(e, true); }
