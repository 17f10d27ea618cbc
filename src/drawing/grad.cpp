// Graduations: the ticks of a scale.
#include "drawing/grad.h"

#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"

#include <cmath>

using namespace vb;

namespace {

constexpr double DegRad = DegRadEchelle;

// The run-time failure of a loop that runs away.
[[noreturn]] void Depassement() { throw ErreurExecution("Dépassement de capacité"); }

// a^z: a negative base with a fractional exponent, or 0 to a negative power,
// is a run-time failure.
double Puissance(double a, double z) {
    if ((a < 0 && z != std::floor(z)) || (a == 0 && z < 0))
        throw ErreurExecution("Appel de procédure incorrect");
    return std::pow(a, z);
}

// The number of a sub-parameter (the `§` part of a length): empty gives 0.
double ValeurSousPara(Etat& e, const QString& parametre, int n) {
    return ParaVal0(e, Trim(SousPara(e, parametre, n)), 1);
}

// The first and last values of the log loop, as mantissa and decade; a missing
// or zero value takes the scale's own bound.
void BorneLog(const std::optional<double>& v, float defaut, int decDefaut, float& mant,
              int& dec) {
    if (!v || *v == 0) {
        mant = defaut;
        dec = decDefaut;
        return;
    }
    Mantisse(float(*v), mant, dec);
}

} // namespace

// Reads the series parameters into e.Grad: N, Prem, Der for a linear or power
// scale; interval, decade end and start, first and last for a log scale.
void LitSerie(Etat& e, const QString& l, int nNombre, int nPrem, int nDer) {
    EtatGrad& g = e.Grad;
    const std::optional<double> prem = ParaVal(e, l, nPrem);
    const std::optional<double> der = ParaVal(e, l, nDer);
    if (!e.Ctx().EchelleLog) {
        g.N = ParaVal0(e, l, nNombre);
        // N of 0 is taken as 1 before Der defaults to it, so "Grad = 0, 5"
        // draws 2 ticks.
        if (g.N == 0) g.N = 1;
        g.Prem = prem.value_or(0);
        g.Der = der.value_or(g.N);
        return;
    }
    const QString nombre = ParaN(e, l, nNombre);
    g.Der = 10;
    g.LogInterv = float(ParaVal0(e, l, nNombre));
    const QString fin = Trim(SousPara(e, nombre, 2));
    const QString debut = Trim(SousPara(e, nombre, 3));
    g.LogFinDecade = fin.isEmpty() ? 10.0f : float(ParaVal0(e, fin, 1));
    g.LogDebDecade = debut.isEmpty() ? 1.0f : float(ParaVal0(e, debut, 1));
    BorneLog(prem, e.Ech.LogDebut, 0, g.MantPrem, g.DecPrem);
    BorneLog(der, e.Ech.LogFin, e.Ech.NbDecades, g.MantDer, g.DecDer);
}

namespace {

// One rung up the ladder of a negative LogFinDecade.
float Echelon(float pas) {
    if (pas == 0.01f) return 0.02f;
    if (pas == 0.02f) return 0.05f;
    if (pas == 0.05f) return 0.1f;
    if (pas == 0.1f) return 0.2f;
    if (pas == 0.2f) return 0.5f;
    if (pas == 0.5f) return 1.0f;
    if (pas == 1.0f || pas == 2.0f || pas == 5.0f) return 5.0f;
    return pas;
}

float Arrondi4(double v) { return float(std::nearbyint(v * 10000) / 10000); }

// `AvanceLog`, Grad on a log scale: the next tick, or false when the
// loop ends without one. `dernier` is set when it is the last.
bool AvanceLog(Etat& e, bool& dernier, long& tours) {
    EtatGrad& g = e.Grad;
    const Echelle& s = e.Ech;
    const double w = double(g.MantDer) * std::pow(10.0, g.DecDer);
    for (;;) {
        // A step too small to move the mantissa would never end: like a
        // 16-bit counter, the loop fails with an overflow instead.
        if (++tours > 1000000) Depassement();
        // 1.
        if (g.MantCour == 1 && g.Pas > 1) g.MantSuiv = g.Pas;
        else g.MantSuiv = Arrondi4(double(g.MantCour) + double(g.Pas));
        // 2.
        if (g.MantSuiv >= 10) {
            g.Pas = g.LogInterv;
            g.DecCour = Entier16(g.DecCour + 1);
            g.MantSuiv = 1;
        }
        // 3. Series such as 1, 2, 5 close on the decade.
        if (g.Pas == 5 && g.MantSuiv == 6) g.MantSuiv = 5;
        if (g.Pas == 5 && g.MantSuiv == 9) {
            g.Pas = g.LogInterv;
            g.DecCour = Entier16(g.DecCour + 1);
            g.MantSuiv = 1;
        }
        if (g.Pas == 2 && g.MantSuiv == 3) g.MantSuiv = 2;
        // 4.
        const double v = double(g.MantSuiv) * std::pow(10.0, g.DecCour);
        if (v == w) dernier = true;
        if (v > w) return false;
        const float fin = std::abs(g.LogFinDecade);
        if (g.Pas == 0) {
            // 5. The first step.
            g.Pas = g.LogInterv;
            if (g.MantSuiv < g.LogDebDecade) {
                g.MantCour = g.MantSuiv;
                continue;
            }
            if (g.MantSuiv == fin || fin > g.MantSuiv) break;
            continue;
        }
        // 6.
        if (g.MantSuiv >= g.LogDebDecade) {
            if (g.MantSuiv >= 10 || fin >= g.MantSuiv) break;
            // 7. Coarsening.
            g.Pas = g.LogFinDecade >= 0 ? 10.0f : Echelon(g.Pas);
            g.MantCour = g.MantSuiv;
            continue;
        }
        // Below LogDebDecade: passed over.
        g.MantCour = g.MantSuiv;
    }
    // 8.
    g.MantCour = g.MantSuiv;
    const double num = double(g.MantCour) * std::pow(10.0, g.DecCour) / s.LogDebut;
    const double den = std::pow(10.0, s.NbDecades) * s.LogFin / s.LogDebut;
    if (num <= 0 || den <= 0) throw ErreurExecution("Appel de procédure incorrect");
    g.PosCourante = float(std::log(num) / std::log(den));
    return true;
}

} // namespace

// The loop over the series read by LitSerie.
void ParcourtSerie(Etat& e, FormeEchelle f, const ActionSerie& action) {
    EtatGrad& g = e.Grad;
    double debut = 0, fin = 0;
    BornesEchelle(e, f, debut, fin);
    if (!e.Ctx().EchelleLog) {
        // 5., 6.
        const double z = e.Ctx().CoefExposant;
        const double E = (fin - debut) / Puissance(g.N, z);
        const double fixDer = std::trunc(g.Der);
        g.Ind = Entier16((long long)std::nearbyint(g.Prem - 1));
        do {
            g.Ind = Entier16(g.Ind + 1);
            g.PosCourante = float(Puissance(g.Ind, z));
            if (g.Ind <= fixDer) action(e, debut + E * g.PosCourante);
        } while (!(g.Ind >= fixDer));
        return;
    }
    // Log: the first mantissa, then one AvanceLog per tick.
    float k = g.LogInterv;
    if (g.LogInterv > 1 && g.MantPrem == 1) k -= 1;
    if (g.LogInterv == 0) throw ErreurExecution("Division par zéro");
    g.MantCour = float(std::trunc((double(g.MantPrem) + k - 0.00001) / g.LogInterv) * g.LogInterv);
    if (g.MantCour == 0) g.MantCour = 1;
    g.Pas = 0;
    g.DecCour = g.DecPrem;
    g.Ind = 0;
    long tours = 0;
    int traits = 0;
    for (;;) {
        bool dernier = false;
        if (!AvanceLog(e, dernier, tours)) {
            g.Ind = int(g.Der) + 1;
            return;
        }
        if (dernier) g.Ind = int(g.Der); // the flag: this is the last tick
        action(e, debut + g.PosCourante * (fin - debut));
        if (dernier) return;
        if (++traits > 32767) Depassement();
    }
}

void Mantisse(float v, float& mantisse, int& decade) {
    float m = v;
    int d = 0;
    if (m > 10) {
        do {
            m /= 10;
            d = Entier16(d + 1);
        } while (!(m < 10));
    }
    if (m < 1) {
        do {
            m *= 10;
            d = Entier16(d - 1);
        } while (!(m > 1));
    }
    mantisse = m;
    decade = d;
}

void ExtremitesTick(Etat& e, FormeEchelle f, double v, double L, double angTick,
                    PointEchelle& base, PointEchelle& bout) {
    const Echelle& s = e.Ech;
    switch (f) {
    case FormeEchelle::Arc: {
        const double A = v * DegRad;
        if (s.D < 10000) {
            base = PointCercleDecal(e, A, s.RpDebut);
            bout = PointCercleDecal(e, A, DistDecal(s.D, s.Rg + L, s.a1));
        } else {
            // The tick points at the needle's axis.
            base = PointArc(e, A, s.Rg);
            bout = PointArc(e, A, s.Rg + L);
        }
        return;
    }
    case FormeEchelle::Droite:
        base = PointDroit(e, f, v);
        bout = base;
        bout.x += L * std::sin(-angTick);
        bout.y += L * std::cos(-angTick);
        return;
    case FormeEchelle::DroiteV:
        base = PointDroit(e, f, v);
        bout = base;
        bout.x += L * std::cos(angTick);
        bout.y += L * std::sin(angTick);
        return;
    }
}

QStringList ListePosition(Etat& e, const QString& parametre1, QString& nom) {
    nom.clear();
    const int p = InStr(parametre1, e.Separateur2);
    if (p == 0) return {};
    const QString n = Trim(Mid(parametre1, p + Len(e.Separateur2)));
    if (!n.startsWith(u'%') || Len(n) < 2) return {};
    const int slot = ChercheVar(e, n, e.NiveauCourant);
    if (slot == 0) return {}; // a list variable that doesn't exist counts as no list
    const CtxFic& c = e.Ctx();
    const QString valeur = c.ValVar[slot];
    nom = c.NomVar[slot];
    // The items: sub-parameters of the value, or parameters when it holds no
    // second separator.
    const QString sep = valeur.contains(e.Separateur2) ? e.Separateur2 : e.Separateur1;
    return valeur.split(sep);
}

double LitPosition(Etat& e, const QString& texte, int n, bool& brute) {
    // Only the part before the second separator is the position: the list
    // name behind it is not read, so that a missing list is no failure.
    QString t = ParaBrut(e, texte, n);
    const int s2 = InStr(t, e.Separateur2);
    if (s2 > 0) t = Left(t, s2 - 1);
    brute = Trim(ParaN(e, t, 1)).endsWith(u'°');
    return ParaVal0(e, t, 1);
}

void CmdGrad(Etat& e) {
    EtatGrad& g = e.Grad;
    const QString l = e.LigneCourante;
    // 1.
    VerifieEchelle(e);
    e.EtatOrdre |= 64;
    // 2., 3.
    LitSerie(e, l, 1, 3, 4);
    const QString longueur = ParaN(e, l, 2);
    g.L = ParaVal0(e, l, 2) * e.Ech.CoteGrad;
    g.AngTick = ValeurSousPara(e, longueur, 2) * DegRad;
    // 4.
    EpaisLocal(e, ParaN(e, l, 5));
    const int couleur = CouleurParametre(e, ParaN(e, l, -6));
    // 5., 6.
    const FormeEchelle f = FormeEchelleCourante(e);
    ParcourtSerie(e, f, [&](Etat& e, double v) {
        PointEchelle base, bout;
        ExtremitesTick(e, f, v, e.Grad.L, e.Grad.AngTick, base, bout);
        TraitRot(e, base.x, base.y, bout.x, bout.y, e.Ech.Rot, couleur);
        e.Grad.BoutX = bout.x;
        e.Grad.BoutY = bout.y;
        TourneAutourCentre(e, e.Ech.Rot, e.Grad.BoutX, e.Grad.BoutY);
    });
    // 7.
    EpaisRestaure(e);
    MajPointCourant(e, -e.Ech.Rot);
}

namespace {

// Restores the list variable whatever way a round ends.
struct GardeListe {
    Etat& e;
    ~GardeListe() {
        e.VarListeCourante.clear();
        e.ItemListeCourant.clear();
    }
};

} // namespace

void ParcourtGroupes(Etat& e, QString texte, const ActionGroupe& action) {
    while (!Trim(texte).isEmpty()) {
        QString nom;
        const QStringList liste = ListePosition(e, ParaBrut(e, texte, 1), nom);
        const int tours = liste.isEmpty() ? 1 : int(liste.size());
        for (int i = 0; i < tours; ++i) {
            GardeListe garde{e};
            if (!liste.isEmpty()) {
                e.VarListeCourante = nom;
                e.ItemListeCourant = liste[i];
            }
            bool brute = false;
            const double pos = LitPosition(e, texte, 1, brute);
            action(e, texte, i, pos, brute);
        }
        SautePara(e, texte, 4);
    }
}

void CmdGrad1(Etat& e) {
    EtatGrad& g = e.Grad;
    // 1.
    VerifieEchelle(e);
    e.EtatOrdre |= 64;
    const int largeur = e.Surf ? e.Surf->DrawWidth : 1;
    bool bout = false;
    // 2.
    ParcourtGroupes(e, e.LigneCourante, [&](Etat& e, const QString& texte, int, double pos, bool brute) {
        // 4.
        g.L = ParaVal0(e, texte, 2) * e.Ech.CoteGrad;
        g.AngTick = ValeurSousPara(e, ParaN(e, texte, 2), 2) * DegRad;
        EpaisLocal(e, ParaN(e, texte, 3));
        const int couleur = CouleurParametre(e, ParaN(e, texte, -4));
        // 5.
        const FormeEchelle f = FormeEchelleCourante(e);
        const double v = ValeurEchelle(e, f, pos, brute);
        PointEchelle base, pointe;
        ExtremitesTick(e, f, v, g.L, g.AngTick, base, pointe);
        // 6. A tick of length 0 is not drawn; its place is still computed.
        if (g.L != 0) TraitRot(e, base.x, base.y, pointe.x, pointe.y, e.Ech.Rot, couleur);
        g.BoutX = pointe.x;
        g.BoutY = pointe.y;
        TourneAutourCentre(e, e.Ech.Rot, g.BoutX, g.BoutY);
        bout = true;
    });
    // 7.
    if (e.Surf) e.Surf->DrawWidth = largeur;
    EpaisRestaure(e);
    if (e.Surf && bout) {
        e.Surf->CurrentX = g.BoutX;
        e.Surf->CurrentY = g.BoutY;
    }
    MajPointCourant(e, -e.Ech.Rot);
}
