// Colours, line thickness and dash patterns.
#include "drawing/styles.h"

#include "drawing/repere.h"
#include "drawing/surface.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/hote.h"
#include "language/interprete.h"
#include "language/nombre.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"

#include <QLocale>

#include <cmath>

using namespace vb;

namespace {

// A last two letters "mm" (any case) mark millimetres; they are taken off.
bool OteMm(QString& t) {
    if (t.size() >= 2 && t.right(2).toUpper() == QLatin1String("MM")) {
        t.chop(2);
        return true;
    }
    return false;
}

double Evalue(Etat& e, QString t) {
    if (t.contains(u'%') && RemplaceVar(e, t) != 0) {
        EchecNonInitialisee(e, Trim(t));
    }
    return EvalExpr(e, t).value_or(0);
}

// The style parts behind the thickness: line ends LT, dash L1, gap L2, dash L3.
void AppliqueStyle(Etat& e, const QString& texte) {
    EtatStyles& s = e.Styles;
    const QString lt = Trim(SousPara(e, texte, 2)).toUpper();
    if (lt.startsWith(u'C')) s.BoutCarre = true;
    else if (lt.startsWith(u'R')) s.BoutCarre = false;
    // A missing L1 reads as 0, like any missing number, which is not negative:
    // a style part without L1 ends a dash pattern.
    const double l1 = Evalue(e, Trim(SousPara(e, texte, 3)));
    if (l1 >= 0) {
        s.TiretL1 = s.TiretL2 = s.TiretL3 = float(l1);
        s.TiretReste = 0;
        s.TiretPhase = 0;
        s.TiretFinX = s.TiretFinY = 999.99f;
    }
    const QString l2 = Trim(SousPara(e, texte, 4));
    if (!l2.isEmpty()) {
        const double v = Evalue(e, l2);
        if (v > 0) s.TiretL2 = float(v);
    }
    const QString l3 = Trim(SousPara(e, texte, 5));
    if (!l3.isEmpty()) {
        const double v = Evalue(e, l3);
        if (v > 0) s.TiretL3 = float(v);
    }
}

// "Past E along the signs of u": (P - E) sign(u) >= 0 in x (equality counts)
// and in y.
bool Depasse(double px, double py, double ex, double ey, double ux, double uy) {
    auto signe = [](double v) { return v > 0 ? 1.0 : (v < 0 ? -1.0 : 0.0); };
    return (px - ex) * signe(ux) >= 0 && (py - ey) * signe(uy) >= 0;
}

void RecritEpaisseur(Etat& e);

} // namespace

std::optional<int> LitCouleur(Etat& e, const QString& texte) {
    QString t = Trim(texte).toUpper();
    const QString complet = t;
    int i = InStr(t, e.Separateur1.toUpper());
    if (i > 0) t = Left(t, i - 1);
    i = InStr(t, e.Separateur2.toUpper());
    if (i == 0) i = InStr(t, QStringLiteral("/"));
    if (i > 0) t = Left(t, i - 1);
    // No second trim: "ROUGE §BLEU" leaves "ROUGE ", which is no name.
    struct Nom { const char* nom; int valeur; };
    static const Nom noms[] = {
        {"NOIR", 0}, {"BLACK", 0}, {"ROUGE", 255}, {"RED", 255}, {"VERT", 65280},
        {"GREEN", 65280}, {"JAUNE", 65535}, {"YELLOW", 65535}, {"BLEU", 16711680},
        {"BLUE", 16711680}, {"CYAN", 16776960},
        {"VIOLET", 16776960}, // the same as cyan: that is how the table stands
        {"MAGENTA", 16711935}, {"BLANC", 16777215}, {"WHITE", 16777215}, {"N", -1}};
    for (const Nom& n : noms)
        if (t == QLatin1String(n.nom)) return n.valeur;
    if (t.isEmpty()) return std::nullopt;
    if (complet.startsWith(QLatin1String("RGB")) || complet.startsWith(QLatin1String("RVB"))) {
        // Three blank-separated words (any number of blanks); a missing or
        // non-numeric word reads as 0.
        const QStringList mots = t.mid(3).split(u' ', Qt::SkipEmptyParts);
        int v[3] = {0, 0, 0};
        for (int k = 0; k < 3 && k < mots.size(); ++k) {
            bool ok = false;
            const double d = mots[k].toDouble(&ok);
            v[k] = ok ? Entier16Arrondi(d) : 0;
        }
        return v[0] + 256 * v[1] + 65536 * v[2];
    }
    return std::nullopt;
}

int CouleurParametre(Etat& e, const QString& parametre) {
    if (Trim(parametre).isEmpty()) return e.Styles.CouleurDefaut;
    return LitCouleur(e, parametre).value_or(e.Styles.CouleurDefaut);
}

bool EstCouleurN(const QString& parametre) {
    return Trim(parametre).toUpper() == QLatin1String("N");
}

int LargeurTrait(Etat& e, double t, bool mm) {
    const EtatRepere& r = e.Repere;
    const bool imprimante = e.Surf && e.Surf->EstImprimante();
    double w;
    if (mm) w = t * r.FacteurZ / MmParPointCible(e);
    else w = imprimante ? t * r.FacteurZ : t * r.FacteurZ / r.PointsParPixel;
    // Never thinner than one device pixel.
    return Entier16Arrondi(std::max(w, 1.0));
}

int LitEpaisseur(Etat& e, const QString& texte) {
    QString t = Trim(texte);
    const int s2 = InStr(t, e.Separateur2);
    if (s2 > 0) t = Trim(Left(t, s2 - 1));
    const bool mm = OteMm(t);
    return LargeurTrait(e, Evalue(e, Trim(t)), mm);
}

void CmdCouleur(Etat& e) {
    const QString p = ParaN(e, e.LigneCourante, 1);
    const std::optional<int> c = LitCouleur(e, p);
    e.Styles.CouleurDefaut = c.value_or(0);
    e.Styles.CouleurCmd = e.Styles.CouleurDefaut;
    if (e.NiveauCourant == 1) EcritVarTxt(e, 1, QStringLiteral("%Coul"), Trim(p));
    if (e.Styles.CouleurDefaut != -1 && e.Surf) e.Surf->ForeColor = e.Styles.CouleurDefaut;
}

void EpaisLocal(Etat& e, const QString& texte) {
    EtatStyles& s = e.Styles;
    if (Trim(texte).isEmpty()) {
        if (e.Surf) e.Surf->DrawWidth = int(s.EpaisCourante);
        s.EpaisChangee = s.StyleChange = false;
        return;
    }
    s.Sauve = {s.EpaisCourante, s.BoutCarre, s.TiretL1, s.TiretL2, s.TiretL3};
    s.SauveReste = s.TiretReste;
    s.SauvePhase = s.TiretPhase;
    s.SauveFinX = s.TiretFinX;
    s.SauveFinY = s.TiretFinY;
    s.EpaisChangee = s.StyleChange = false;
    QString epais = Trim(texte);
    const int s2 = InStr(epais, e.Separateur2);
    if (s2 > 0) epais = Trim(Left(epais, s2 - 1));
    if (!epais.isEmpty()) {
        s.EpaisCourante = float(LitEpaisseur(e, epais));
        if (e.Surf) e.Surf->DrawWidth = int(s.EpaisCourante);
        s.EpaisChangee = true;
    }
    if (s2 > 0) {
        s.StyleChange = true;
        AppliqueStyle(e, texte);
    }
}

void EpaisRestaure(Etat& e) {
    EtatStyles& s = e.Styles;
    if (s.EpaisChangee) {
        s.EpaisCourante = s.Sauve.EpaisCourante;
        if (e.Surf) e.Surf->DrawWidth = int(s.EpaisCourante);
    }
    if (s.StyleChange) {
        s.BoutCarre = s.Sauve.BoutCarre;
        s.TiretL1 = s.Sauve.TiretL1;
        s.TiretL2 = s.Sauve.TiretL2;
        s.TiretL3 = s.Sauve.TiretL3;
        s.TiretReste = s.SauveReste;
        s.TiretPhase = s.SauvePhase;
        s.TiretFinX = s.SauveFinX;
        s.TiretFinY = s.SauveFinY;
    }
    s.EpaisChangee = s.StyleChange = false;
}

void CmdEpaisT(Etat& e) {
    EtatStyles& s = e.Styles;
    const QString texte = ParaN(e, e.LigneCourante, 1);
    if (Trim(e.LigneCourante).isEmpty()) {
        if (e.NiveauCourant == 1) RecritEpaisseur(e);
        return;
    }
    QString epais = Trim(texte);
    const int s2 = InStr(epais, e.Separateur2);
    if (s2 > 0) epais = Trim(Left(epais, s2 - 1));
    if (!epais.isEmpty()) {
        QString t = epais;
        const bool mm = OteMm(t);
        const double v = Evalue(e, Trim(t));
        const float avant = s.EpaisCourante;
        const int w = LargeurTrait(e, v, mm);
        s.EpaisCourante = float(w);
        // The level keeps the parsed thickness; a given value below 1 stores the
        // thickness that was current instead.
        e.Ctx().EpaisDefaut = v < 1 ? avant : float(w);
        if (e.Surf) e.Surf->DrawWidth = w;
    }
    if (s2 > 0) AppliqueStyle(e, texte);
    s.EpaisChangee = s.StyleChange = false;
}

namespace {
// EpaisT with no parameter at level 1: the line shows the thickness in pixels
// and millimetres.
void RecritEpaisseur(Etat& e) {
    EtatStyles& s = e.Styles;
    const double mmParPoint = MmParPointCible(e);
    const QLocale c = QLocale::c();
    // " ###" and "###.##" formats, decimal commas replaced by points.
    const QString pixels = u' ' + c.toString(std::nearbyint(s.EpaisCourante), 'f', 0);
    // "###.##": no leading 0, at most two decimals, trailing zeros dropped, and
    // the decimal point kept even with no decimal left (3 gives "3.").
    double mm = std::round(s.EpaisCourante * mmParPoint * 100) / 100;
    QString mmTexte = c.toString(mm, 'f', 2);
    while (mmTexte.endsWith(u'0')) mmTexte.chop(1);
    if (mmTexte.startsWith(QLatin1String("0."))) mmTexte = mmTexte.mid(1);
    const QString mot = Trim(Left(e.Ctx().Ligne, InStr(e.Ctx().Ligne + u'=', QStringLiteral("=")) - 1));
    RecritLigneEditeur(e, mot + pixels + QStringLiteral("  ' ") + mmTexte + QStringLiteral("mm"));
}
} // namespace

void TraitTirete(Etat& e, double sx, double sy, double ex, double ey, int couleur) {
    EtatStyles& s = e.Styles;
    const double L = std::hypot(ex - sx, ey - sy);
    if (L == 0) return;
    const double ux = (ex - sx) / L, uy = (ey - sy) / L;
    auto pas = [&](float l) { return l > 0 ? l : s.TiretL1; };
    double px = sx, py = sy;
    auto avance = [&](double longueur, float& reste) {
        px = sx + longueur * ux;
        py = sy + longueur * uy;
        if (Depasse(px, py, ex, ey, ux, uy)) {
            reste = float(longueur - std::hypot(ex - sx, ey - sy));
            px = ex;
            py = ey;
        }
    };
    auto estFin = [&] { return px == ex && py == ey; };
    // Finish the piece in progress.
    if (s.TiretReste != 0) {
        float reste = 0;
        const float enCours = s.TiretReste;
        avance(enCours, reste);
        s.TiretReste = estFin() ? float(enCours - std::hypot(ex - sx, ey - sy)) : 0.0f;
        if (s.TiretPhase == 0 || s.TiretPhase == 2) Segment(e, sx, sy, px, py, couleur);
        sx = px;
        sy = py;
        if (s.TiretReste == 0) s.TiretPhase = (s.TiretPhase + 1) % 4;
        if (estFin()) {
            s.TiretFinX = float(ex);
            s.TiretFinY = float(ey);
            return;
        }
    }
    // The loop over the phases: L1, gap L2, L3, gap L2.
    for (;;) {
        float reste = 0;
        const int phase = s.TiretPhase;
        const float longueur = phase == 0 ? s.TiretL1 : phase == 2 ? pas(s.TiretL3) : pas(s.TiretL2);
        avance(longueur, reste);
        if (phase == 0 || phase == 2) Segment(e, sx, sy, px, py, couleur);
        sx = px;
        sy = py;
        s.TiretReste = reste;
        if (reste != 0) break;
        // A gap that ends exactly at E ends the routine in its phase, so the
        // next segment starts with a whole gap again.
        if ((phase == 1 || phase == 3) && estFin()) break;
        s.TiretPhase = (phase + 1) % 4;
        if (estFin()) break;
    }
    s.TiretFinX = float(ex);
    s.TiretFinY = float(ey);
}
