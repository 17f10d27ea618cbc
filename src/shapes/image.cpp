// `Image = file, x, y, size, letters`. The size field chooses the form: a
// coefficient (screen pixels per picture pixel, with an optional y
// coefficient), X, Y, Z or A with sizes in millimetres, or V, which draws
// nothing and returns the picture's size in pixels into two variables. The
// letters align the picture on the point; the point's own rotation turns the
// position about 0,0, never the picture.
#include "shapes/image.h"

#include "drawing/repere.h"
#include "drawing/surface.h"
#include "language/commandes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>

#include <cmath>

using namespace vb;

namespace {

// The picture's size in Surface units, from its size in pixels. On screen a
// picture pixel is a screen pixel, in the Surface's own units; on the printer
// it is measured in millimetres, at the screen's size of a pixel.
QSizeF TailleNaturelle(const Etat& e, const QImage& im) {
    const Surface* s = e.Surf;
    const double unite = s->EstImprimante() ? double(e.Repere.MmParPixelE)
                                            : std::abs(s->ScaleWidth) / s->LargeurPx();
    return {im.width() * unite, im.height() * unite};
}

// Sub-field n of the size field, evaluated; `defaut` when it is empty.
double SousChamp(Etat& e, const QString& champ, int n, double defaut) {
    QString t = Trim(Piece(champ, n, e.Separateur2));
    if (t.isEmpty()) return defaut;
    return EvalExpr(e, t).value_or(0);
}

// The drawn size (width, height) in Surface units from the size field, for
// every form but V. f is the zoom factor of the screen, 1 on the printer.
QSizeF TailleDessin(Etat& e, const QString& champ, QSizeF nat, double f) {
    const double pw = nat.width(), ph = nat.height();
    const QChar lettre = champ.isEmpty() ? QChar() : champ.at(0);
    if (lettre == u'X') {
        const double W = SousChamp(e, champ, 2, 0);
        if (W != 0) return {W, ph * W / pw};
    } else if (lettre == u'Y') {
        const double H = SousChamp(e, champ, 2, 0);
        return {pw * H / ph, H};
    } else if (lettre == u'Z') {
        return {SousChamp(e, champ, 2, 0), SousChamp(e, champ, 3, 0)};
    } else if (lettre == u'A') {
        const double W = SousChamp(e, champ, 2, 0), H = SousChamp(e, champ, 3, 0);
        if (W == 0) throw ErreurExecution("Division par zéro");
        if (ph / pw > H / W) return {pw * H / ph, H};
        return {W, ph * W / pw};
    } else {
        double k = SousChamp(e, champ, 1, 1);
        if (k == 0) k = 1;
        const double ky = SousChamp(e, champ, 3, k);
        return {pw * f * k, ph * f * ky};
    }
    // An X width of 0: the coefficient 1.
    return {pw * f, ph * f};
}

// A name without a folder is taken beside the main command file; inside an
// included file, when it is not there, beside the included file, so that a
// library's pictures can stand with its commands. Each candidate is found as
// `Fichier` finds its files.
QString CheminImage(const Etat& e, const QString& nom) {
    if (nom.contains(u':') || nom.contains(u'\\') || nom.contains(u'/')) return CheminLecture(e, nom);
    const QString principal = e.FichierPrincipal.isEmpty()
                                  ? QString()
                                  : CheminLecture(e, QFileInfo(e.FichierPrincipal).absolutePath() + u'/' + nom);
    const QString& inclus = e.PileFic[e.NiveauCourant].Nom;
    if (e.NiveauCourant < 2 || inclus.isEmpty()) return principal.isEmpty() ? CheminLecture(e, nom) : principal;
    if (QFileInfo::exists(principal)) return principal;
    const QString voisin = CheminLecture(e, QFileInfo(inclus).absolutePath() + u'/' + nom);
    return principal.isEmpty() || QFileInfo::exists(voisin) ? voisin : principal;
}

} // namespace

QImage IconeProgramme() {
    QImage im(32, 32, QImage::Format_ARGB32_Premultiplied);
    im.fill(Qt::transparent);
    QPainter p(&im);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(Qt::black, 1.5));
    p.setBrush(QColor(255, 250, 235));
    p.drawEllipse(QRectF(2, 2, 28, 28));
    // Ticks on the upper arc and a red needle from the pivot.
    for (int i = 0; i <= 6; ++i) {
        const double a = (150 - 20 * i) * 0.017453293;
        p.drawLine(QPointF(16 + 11 * std::cos(a), 20 - 11 * std::sin(a)),
                   QPointF(16 + 13 * std::cos(a), 20 - 13 * std::sin(a)));
    }
    p.setPen(QPen(QColor(200, 0, 0), 2));
    p.drawLine(QPointF(16, 20), QPointF(23, 9));
    p.setBrush(Qt::black);
    p.setPen(Qt::NoPen);
    p.drawEllipse(QPointF(16, 20), 2, 2);
    return im;
}

QImage ChargeImage(Etat& e, const QString& nom, QString& chemin) {
    if (nom.right(9).toUpper() == QLatin1String("MIREL.ICO")) {
        chemin = nom;
        return IconeProgramme();
    }
    chemin = CheminImage(e, nom);
    // While the file is read, the level's file marker names it for the
    // error box.
    e.Inclusion.Drapeau = QStringLiteral("F");
    QImageReader lecteur(chemin);
    const QImage im = lecteur.read();
    e.Inclusion.Drapeau.clear();
    if (im.isNull()) {
        e.FichierNonTrouve = true;
        e.NomFichierNonTrouve = chemin;
        throw ErreurExecution("File not found");
    }
    return im;
}

void Image(Etat& e, const QString& l) {
    Surface* s = e.Surf;
    if (!s) return;
    // 1. The position, turned about 0,0, in Surface units.
    QString reste = l;
    SautePara(e, reste, 1);
    const QPointF p = LitPointCommande(e, reste);
    const double rotation = e.Repere.RotationCmd;
    // 2 to 5. The picture.
    QString chemin;
    const QImage im = ChargeImage(e, Trim(ParaN(e, l, 1)), chemin);
    // V: the size in pixels into the two variables, nothing drawn. The names
    // are read as written, not substituted.
    const QString brut = Trim(ParaBrut(e, l, 4)).toUpper();
    if (brut.startsWith(u'V')) {
        const QString vx = Trim(Piece(brut, 2, e.Separateur2)), vy = Trim(Piece(brut, 3, e.Separateur2));
        if (!vx.isEmpty()) EcritVarNum(e, e.NiveauCourant, vx, im.width());
        if (!vy.isEmpty()) EcritVarNum(e, e.NiveauCourant, vy, im.height());
        return;
    }
    // 6, 7. The size.
    const double f = s->EstImprimante() ? 1.0 : double(e.Txt.FacteurPolice);
    const QSizeF t = TailleDessin(e, Trim(ParaN(e, l, 4)).toUpper(), TailleNaturelle(e, im), f);
    const double w = t.width(), h = t.height();
    e.EtatOrdre |= 64;
    // 8. The letters: left edge and top edge about the point.
    const QString lettres = ParaN(e, l, 5).toUpper();
    double gauche = p.x(), haut = p.y() + h;
    if (lettres.contains(u'C') || lettres.contains(u'X')) gauche = p.x() - w / 2;
    else if (lettres.contains(u'D')) gauche = p.x() - w;
    if (lettres.contains(u'C') || lettres.contains(u'Y')) haut = p.y() + h / 2;
    else if (lettres.contains(u'H')) haut = p.y();
    // 9. Drawn down from the top edge, the frame's y running upward.
    s->PaintPicture(im, chemin, gauche, haut, w, -h);
    // 10, 11.
    s->CurrentX = gauche;
    s->CurrentY = haut;
    MajPointCourant(e, rotation);
}

void CmdImage(Etat& e) { Image(e, e.LigneCourante); }
