// Text: writing, measuring and placing texts, and the font commands.
#include "shapes/texte.h"

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
#include "language/textes.h"
#include "language/variables.h"
#include "language/vb.h"
#include "shapes/clogfont.h"

#include <cmath>
#include <memory>

using namespace vb;

namespace {

constexpr double DegRad = Litteraux::DegRad;
constexpr double DegRad64 = 0.0174532925; // the same, as TexteC writes it

bool Contient(const QString& t, char c) { return t.contains(QLatin1Char(c)); }

// The division by zero that some bad inputs raise on purpose.
[[noreturn]] void DivisionParZero() { throw ErreurProvoquee("Division par zéro"); }

// String 112 "Pas de police %1".
void MessagePolice(Etat& e, const QString& nom) {
    QString t = LoadResString(112 + (e.Regl ? e.Regl->LangueMessages : 0));
    t.replace(QStringLiteral("%1"), nom);
    if (e.Host) e.Host->Message(QStringLiteral("Mirel"), t, Boutons::Ok);
}

// The text functions that a text of Texte, TexteC and TailleP goes through:
// REPL, UCAS, RIG, LEF (when the text names one, as ParaN tests) and the
// formatting forms TXT, ARR.
void FonctionsDuTexte(Etat& e, QString& t) {
    const QString haut = t.toUpper();
    if (haut.contains(QLatin1String("REPL(")) || haut.contains(QLatin1String("UCAS")) ||
        haut.contains(QLatin1String("RIG")) || haut.contains(QLatin1String("LEF")))
        FonctionsTexte(e, t);
    FormatTexte(e, t);
}

// The first thing Texte and TexteC do: before anything is drawn in the run, a white
// plus sign off the sheet readies the Surface for the font work.
void PlusDeDepart(Etat& e) {
    if (e.EtatOrdre & 64) return;
    EpaisLocal(e, QStringLiteral("1"));
    DessinePlus(e, VersSurfaceX(e, -100), VersSurfaceY(e, 100), 0.1, 0, RGB(255, 255, 255), 1);
    EpaisRestaure(e);
}

} // namespace

void TailleDepuisFormat(Etat& e, QString& format) {
    Surface& s = *e.Surf;
    if (format.contains(u'*')) {
        const double k = LitFacteur(e, format);
        s.Font.Size = e.Txt.TaillePolice * e.Txt.FacteurPolice * k;
        return;
    }
    const double n = NombreEnTete(format);
    if (n > 0) s.Font.Size = n * e.Txt.FacteurPolice;
}

namespace {

// The three style letters, all set from the field.
void StylesDe(Surface& s, const QString& champ) {
    s.Font.Bold = Contient(champ, 'G') || Contient(champ, 'B');
    s.Font.Italic = Contient(champ, 'I');
    s.Font.Underline = Contient(champ, 'S') || Contient(champ, 'U');
}

} // namespace

void StylesTexte(Surface& s, const QString& format) {
    const QString& f = format; // as it stands: " 14" starts with a blank
    const bool debut = !f.isEmpty() && QStringLiteral("*0123456789.").contains(f[0]);
    bool lettre = false;
    for (char c : {'S', 'U', 'I', 'G', 'B'}) lettre = lettre || Contient(f, c);
    if (debut || lettre) StylesDe(s, f);
}

void RetablitPolice(Surface& s, const PoliceSurface& garde) {
    s.Font.Name = garde.Name;
    s.Font.Bold = garde.Bold;
    s.Font.Italic = garde.Italic;
    s.Font.Underline = garde.Underline;
    s.Font.Size = garde.Size;
}

namespace {

// The angle of a Texte line: R, less AngleCourant (the stored rotation).
double AngleTexte(Etat& e, const QString& format) {
    const double angleCourant = e.Repere.RotationCmd;
    const int p = InStr(format, QStringLiteral("R"));
    if (p == 0) return -angleCourant;
    QString ex = Mid(format, p + 1);
    ex.remove(u'#');
    const int s2 = InStr(ex, e.Separateur2);
    if (s2 > 0) ex = Left(ex, s2 - 1);
    const QString fin = QStringLiteral("BCDGHISUVXY");
    while (!ex.isEmpty() && fin.contains(ex.back())) ex.chop(1);
    return EvalExpr(e, ex).value_or(0) - angleCourant;
}

// One writing of Texte: device coordinates on the printer, EcritRot unless N.
void EcritLettre(Etat& e, double x, double y, double a, const QString& texte, int couleur) {
    double xd = x, yd = y;
    if (e.Surf->EstImprimante()) CoordDevice(e, x, y, xd, yd);
    if (couleur != -1) EcritRot(e, xd, yd, a, texte);
}

// One horizontal line of Texte.
void LigneHorizontale(Etat& e, const QString& ligne, QString& format, double X0, double Y0,
                      double a, double S, int couleur) {
    Surface& s = *e.Surf;
    EtatTexte& t = e.Txt;
    const double ang = a * DegRad;
    const double c = std::cos(ang), sn = std::sin(ang);
    const int n = Len(ligne);
    // 1, 2.
    const double G = s.TextWidth(QStringLiteral("X")) * S;
    double W = 0;
    if (!s.EstImprimante() && S == 0) {
        W = s.TextWidth(ligne);
    } else {
        for (int i = 1; i <= n; ++i) W += s.TextWidth(Mid(ligne, i, 1));
        W += (n - 1) * G;
    }
    // 3.
    const double H = -s.TextHeight(ligne);
    const double Hx = -s.TextHeight(QStringLiteral("X"));
    MetriquesTexte(e);
    // 4.
    double X = X0, Y = Y0;
    double Ex = X0 + W * c, Ey = Y0 + W * sn;
    // 5.
    const bool centre = Contient(format, 'C') || Contient(format, 'X');
    if (centre && Contient(format, 'D')) DivisionParZero();
    if (centre) {
        X -= W / 2 * c; Y -= W / 2 * sn;
        Ex -= W / 2 * c; Ey -= W / 2 * sn;
    } else if (Contient(format, 'D')) {
        X -= W * c; Y -= W * sn;
        Ex -= W * c; Ey -= W * sn;
    }
    // 6.
    double d = 0;
    if (Contient(format, 'Y') || Contient(format, 'C')) d = t.CoefMilieu * H;
    else if (Contient(format, 'H')) d = 2 * t.CoefMilieu * H;
    X += d * sn; Y -= d * c;
    Ex += d * sn; Ey -= d * c;
    // 7.
    for (int p = InStr(format, QStringLiteral("#")); p > 0; p = InStr(format, QStringLiteral("#"))) {
        X += Hx * sn; Y -= Hx * c;
        Ex += Hx * sn; Ey -= Hx * c;
        format.remove(p - 1, 1);
    }
    // 8.
    s.CurrentX = X;
    s.CurrentY = Y;
    // 9, 10.
    if (S != 0) {
        for (int i = 1; i <= n; ++i) {
            if (i > 1) {
                const double avance = s.TextWidth(Mid(ligne, i - 1, 1)) + G;
                X += avance * c;
                Y += avance * sn;
            }
            // Each letter starts at its own place, on the screen too.
            s.CurrentX = X;
            s.CurrentY = Y;
            EcritLettre(e, X, Y, a, Mid(ligne, i, 1), couleur);
        }
    } else {
        EcritLettre(e, X, Y, a, ligne, couleur);
    }
    // 11.
    t.X = Ex; t.Y = Ey;
    s.CurrentX = Ex;
    s.CurrentY = Ey;
}

// A vertical line of Texte (letter V).
void LigneVerticale(Etat& e, const QString& ligne, const QString& format, double X0, double Y0,
                    double a, double S, int couleur) {
    Surface& s = *e.Surf;
    EtatTexte& t = e.Txt;
    const double ang = a * DegRad;
    const double Hx = -s.TextHeight(QStringLiteral("X"));
    const double Hv = Hx * (S + 1);
    const int n = Len(ligne);
    const bool centre = Contient(format, 'C') || Contient(format, 'X');
    for (int i = 1; i <= n + 1; ++i) {
        // 1.
        const QString lettre = Mid(ligne, i, 1);
        const double w = s.TextWidth(lettre);
        double x = X0;
        if (centre) x -= w / 2;
        else if (Contient(format, 'D')) x -= w;
        // 2.
        double y;
        if (Contient(format, 'Y') || Contient(format, 'C')) y = Y0 - Hv * ((i - 1) - n / 2.0);
        else if (Contient(format, 'H')) y = Y0 - Hv * (i - n);
        else y = Y0 - Hv * ((i - 1) + t.CoefBase);
        // 3.
        if (a != 0) {
            const double dx = x - X0, dy = y - Y0;
            x = X0 + dx * std::cos(ang) - dy * std::sin(ang);
            y = Y0 + dx * std::sin(ang) + dy * std::cos(ang);
        }
        // 4.
        s.CurrentX = x;
        s.CurrentY = y;
        double xd = x, yd = y;
        if (s.EstImprimante()) {
            CoordDevice(e, x, y, xd, yd);
            if (!t.PageMarquee) {
                MarquePage(e, e.Txt.CouleurTexte);
                s.CurrentX = x;
                s.CurrentY = y;
            }
        }
        if (couleur != -1) EcritRot(e, xd, yd, a, lettre);
    }
}

} // namespace

void PoliceDuFormat(Etat& e, const QString& nom) {
    const QString n = Trim(nom);
    if (n.isEmpty()) return;
    if (ChangeNomPolice(e, n)) MessagePolice(e, n);
}

// --- measuring and placing

void MetriquesTexte(Etat& e) {
    EtatTexte& t = e.Txt;
    MetriquesPolice m;
    if (e.Surf) m = e.Surf->Metriques();
    // 1.
    if (t.ForceBase != 0) t.CoefBase = t.ForceBase;
    else if (m.Height != 0) t.CoefBase = float(m.Ascent / m.Height);
    else t.CoefBase = 0.8f;
    // 2.
    if (t.ForceMilieu != 0) {
        t.CoefMilieu = t.ForceMilieu;
    } else {
        const double L = m.Height != 0 ? m.InternalLeading / m.Height : 0.8;
        t.CoefMilieu = float((t.CoefBase - L) / 2);
    }
    // 3.
    t.CoefHaut = t.ForceHaut != 0 ? t.ForceHaut : t.CoefBase;
}

void EcritRot(Etat& e, double x, double y, double angle, const QString& texte) {
    Surface* s = e.Surf;
    if (!s) return;
    const int options = e.Regl ? e.Regl->Patchs : 0;
    if (s->EstImprimante()) {
        auto police = std::make_shared<CLogFont>(options, DpiBureau);
        // 1. The size is kept as a 16-bit integer; the font is made for the
        // printer's dots from the desktop's resolution.
        const int garde = Entier16(std::llround(std::nearbyint(s->Font.Size)));
        const double P = 1440.0 * e.Repere.MmParPointI / 25.4; // twips per printer dot
        s->Font.Size = s->Font.Size * 15 / P;
        // 2.
        e.Txt.LogFont = police;
        police->SetLogFont(&s->Font);
        police->SetRotation(float(angle));
        // 3.
        const auto ancienne = s->SelectFont(police->Handle());
        s->TextOutA(int(std::nearbyint(x)), int(std::nearbyint(y)), texte);
        s->SelectFont(ancienne);
        // 4.
        s->Font.Size = garde != 0 ? garde : 1;
        return;
    }
    // On the screen the desktop is the screen: its resolution is the pane's.
    auto police = std::make_shared<CLogFont>(options, 25.4 / s->MmParPixel());
    e.Txt.LogFont = police;
    police->SetLogFont(&s->Font);
    police->SetRotation(float(angle));
    const auto ancienne = s->SelectFont(police->Handle());
    s->Print(texte);
    s->SelectFont(ancienne);
}

void CoordDevice(Etat& e, double x, double y, double& xd, double& yd) {
    // The frame's pixel conversion, unrounded: TextOutA takes whole pixels.
    const QPointF d = PixelDevice(e, x, y, false);
    xd = d.x();
    yd = d.y();
}

void MarquePage(Etat& e, int couleur) {
    Surface* s = e.Surf;
    if (!s || !s->EstImprimante() || e.Txt.PageMarquee) return;
    PSetHorsPage(e, couleur);
    e.Txt.PageMarquee = true;
}

void PlaceTexte(Etat& e, double W, double H, double angle, const QString& texte,
                const QString& lettres, double rot) {
    Surface* s = e.Surf;
    EtatTexte& t = e.Txt;
    if (!s) return;
    const QString l = lettres.toUpper();
    // 1.
    if (t.CouleurTexte == -1) return;
    // 2.
    s->SetTextAlign(24);
    MetriquesTexte(e);
    // 3. The turn about the frame's centre.
    const double r = -rot * DegRad;
    if (TourneAutourCentre(e, rot, t.X, t.Y)) {
        s->CurrentX = t.X;
        s->CurrentY = t.Y;
    }
    double Px = t.X, Py = t.Y;
    // 4.
    const double b = angle * DegRad - r;
    const double cb = std::cos(b), sb = std::sin(b);
    // 5.
    if (Contient(l, 'G')) {
        Px += W * cb; Py += W * sb;
    } else if (Contient(l, 'D')) {
        t.X -= W * cb; t.Y -= W * sb;
    } else {
        t.X -= W / 2 * cb; t.Y -= W / 2 * sb;
        Px += W / 2 * cb; Py += W / 2 * sb;
    }
    s->CurrentX = t.X;
    s->CurrentY = t.Y;
    // 6.
    if (!Contient(l, 'B')) {
        const double c = Contient(l, 'H') ? 2 * t.CoefMilieu * H : t.CoefMilieu * H;
        t.X += c * sb; t.Y -= c * cb;
        Px += c * sb; Py -= c * cb;
        s->CurrentX = t.X;
        s->CurrentY = t.Y;
    }
    // 7.
    double xd = t.X, yd = t.Y;
    if (s->EstImprimante()) {
        CoordDevice(e, t.X, t.Y, xd, yd);
        if (!t.PageMarquee) MarquePage(e, e.Txt.CouleurTexte);
    }
    // 8.
    EcritRot(e, xd, yd, angle + rot, texte);
    // 9.
    t.X = Px; t.Y = Py;
    s->CurrentX = Px;
    s->CurrentY = Py;
}

// --- text helpers

void ExprTexte(Etat& e, QString& texte) {
    const QString diese = QStringLiteral("#");
    int i = 1;
    for (;;) {
        const int p = InStr(i, texte, diese);
        if (p == 0) return;
        if (Mid(texte, p + 1, 1) == diese) {
            // "##": one literal "#" stays, the scan goes on behind it.
            texte.remove(p, 1);
            i = p + 1;
            continue;
        }
        int q = InStr(p + 1, texte, diese);
        // A "#" right behind "IRE$" belongs to a line-reading expression.
        while (q > 0 && q - 4 > p && Mid(texte, q - 4, 4).compare(QLatin1String("IRE$"), Qt::CaseInsensitive) == 0)
            q = InStr(q + 1, texte, diese);
        if (q == 0) return; // a lone "#" is left as it is
        QString piece = Mid(texte, p + 1, q - p - 1);
        RemplaceVar(e, piece);
        const auto v = EvalExpr(e, piece); // rewrites the piece into its result
        const QString resultat = v ? Trim(piece) : QString();
        texte = Left(texte, p - 1) + resultat + Mid(texte, q + 1);
        i = p + Len(resultat);
    }
}

double NombreEnTete(const QString& texte) {
    // Blanks are skipped; then sign, digits, decimal point, exponent.
    QString t;
    for (QChar c : texte)
        if (c != u' ' && c != u'\t' && c != u'\n' && c != u'\r') t += c;
    int i = 0;
    const int n = int(t.size());
    auto chiffre = [&](int k) { return k < n && t[k] >= u'0' && t[k] <= u'9'; };
    if (i < n && (t[i] == u'+' || t[i] == u'-')) ++i;
    const int debutChiffres = i;
    while (chiffre(i)) ++i;
    if (i < n && t[i] == u'.') {
        ++i;
        while (chiffre(i)) ++i;
    }
    if (i == debutChiffres || (i == debutChiffres + 1 && t[debutChiffres] == u'.')) return 0;
    int fin = i;
    if (i < n && QStringLiteral("EeDd").contains(t[i])) {
        int k = i + 1;
        if (k < n && (t[k] == u'+' || t[k] == u'-')) ++k;
        if (chiffre(k)) {
            while (chiffre(k)) ++k;
            fin = k;
        }
    }
    QString nombre = t.left(fin);
    nombre.replace(u'D', u'E').replace(u'd', u'e');
    return nombre.toDouble();
}

double LitFacteur(Etat& e, QString& champ) {
    champ.remove(u' ');
    const int p = InStr(champ, QStringLiteral("*"));
    if (p == 0) return 1;
    if (Mid(champ, p + 1, 1) == QLatin1String("(")) {
        int profondeur = 0, q = 0;
        for (int k = p + 1; k <= Len(champ); ++k) {
            const QChar c = champ[k - 1];
            if (c == u'(') ++profondeur;
            else if (c == u')' && --profondeur == 0) {
                q = k;
                break;
            }
        }
        if (q == 0) DivisionParZero();
        QString expression = Mid(champ, p + 2, q - p - 2);
        const double k = EvalExpr(e, expression).value_or(0);
        champ = Left(champ, p - 1) + Mid(champ, q + 1);
        return k;
    }
    return NombreEnTete(Mid(champ, p + 1));
}

bool ChangeNomPolice(Etat& e, const QString& nom) {
    if (!e.Surf) return false;
    e.Surf->Font.Name = NomPoliceRelu(nom);
    return e.Surf->Font.Name.compare(nom, Qt::CaseInsensitive) != 0;
}

// --- commands

void CmdPolice(Etat& e) {
    const QString l = e.LigneCourante;
    // 1.
    const QString nom = Trim(ParaN(e, l, 1));
    if (!nom.isEmpty() && ChangeNomPolice(e, nom) &&
        !e.Ctx().Nom.toUpper().contains(QLatin1String(".DMK")))
        MessagePolice(e, nom);
    // 2.
    MetriquesTexte(e);
    // 3.
    QString coef = Trim(ParaN(e, l, 2));
    if (!coef.isEmpty()) e.Txt.ForceMilieu = float((e.Txt.CoefBase - EvalExpr(e, coef).value_or(0)) / 2);
    else e.Txt.ForceMilieu = 0;
}

void CmdTailleP(Etat& e) {
    Surface* s = e.Surf;
    if (!s) return;
    EtatTexte& t = e.Txt;
    const QString l = e.LigneCourante;
    // 1.
    QString champ = ParaN(e, l, 1);
    if (NbPara(e, l) == 2) champ += ParaN(e, l, 2);
    // 2.
    if (!Trim(champ).isEmpty()) {
        champ = LTrim(champ);
        if (champ.startsWith(u'*')) {
            const double k = LitFacteur(e, champ);
            e.Ctx().MultiplicateurTaille = float(k);
            s->Font.Size = k * t.TaillePolice * t.FacteurPolice;
        } else if (champ[0] >= u'0' && champ[0] <= u'9') {
            t.TaillePolice = NombreEnTete(ParaN(e, l, 1));
            s->Font.Size = t.TaillePolice * t.FacteurPolice;
            e.Ctx().MultiplicateurTaille = 1.0f;
        }
    }
    // 3.
    StylesDe(*s, champ.toUpper());
    // 4. ParaN has applied the quoted forms; the formatting forms remain.
    QString texte = ParaN(e, l, 2);
    FormatTexte(e, texte);
    if (texte.isEmpty()) texte = QStringLiteral("X");
    const double H = -s->TextHeight(texte);
    // 5.
    auto deuxDecimales = [](double v) { return std::nearbyint(v * 100) / 100; };
    const QString vw = Trim(ParaBrut(e, l, 3)), vh = Trim(ParaBrut(e, l, 4));
    if (vw.startsWith(u'%') && vw.size() >= 2)
        EcritVarNum(e, e.NiveauCourant, vw, deuxDecimales(s->TextWidth(texte)));
    if (vh.startsWith(u'%') && vh.size() >= 2) EcritVarNum(e, e.NiveauCourant, vh, deuxDecimales(H));
    // 6. The undocumented demonstration: the text's lower edge on the origin.
    if (!Trim(ParaBrut(e, l, 5)).isEmpty()) {
        s->SetTextAlign(0);
        const double x = e.Repere.OrigineX + e.Repere.CTx;
        const double y = e.Repere.OrigineY + e.Repere.CTy + H;
        s->CurrentX = x;
        s->CurrentY = y;
        s->Print(texte);
        s->CurrentY = y - H;
        s->SetTextAlign(24);
    }
}

void CmdTexte(Etat& e) {
    Surface* s = e.Surf;
    if (!s) return;
    EtatTexte& t = e.Txt;
    EtatRepere& rp = e.Repere;
    const QString l = e.LigneCourante;
    const QString s2 = e.Separateur2;
    // 1.
    PlusDeDepart(e);
    // 2.
    const QPointF p0 = LitPointCommande(e, l);
    const double X0 = p0.x(), Y0 = p0.y();
    // 3.
    const int couleur = CouleurParametre(e, ParaN(e, l, 3));
    // 4.
    const QString champ = ParaN(e, l, 4).toUpper();
    QString reste;
    if (NbPara(e, l) >= 5) {
        reste = Piece(l, -5, e.Separateur1);
        if (Len(Trim(reste)) >= 2) {
            ExprTexte(e, reste);
            RemplaceVar(e, reste);
        }
    }
    FonctionsDuTexte(e, reste);
    // 5.
    reste.replace(QStringLiteral("\r\n"), QStringLiteral("\r"));
    reste.replace(u'\n', u'\r');
    reste.replace(QStringLiteral("$£"), QStringLiteral(","));
    QString copie = champ; // the whole upper-cased field, the format of the lines below (step 13)
    // 6.
    if (couleur != -1 && !reste.isEmpty()) e.EtatOrdre |= 64;
    t.CouleurTexte = couleur;
    // 7.
    const PoliceSurface garde = s->Font;
    // 8.
    QString format = Piece(champ, 1, s2); // line 1: the letters, sub-field 1
    PoliceDuFormat(e, Piece(champ, 2, s2));
    double S = 0;
    QString espacement = Trim(Piece(champ, 3, s2));
    if (!espacement.isEmpty()) S = EvalExpr(e, espacement).value_or(0) - 1;
    // 9.
    TailleDepuisFormat(e, format);
    // 10 to 13.
    for (;;) {
        if (reste.startsWith(u'\r')) {
            // 13. The next line is one line lower.
            copie += u'#';
            format = copie;
            reste.remove(0, 1);
            continue;
        }
        QString ligne;
        const int cr = InStr(reste, QStringLiteral("\r"));
        if (cr == 0) {
            ligne = reste;
            reste.clear();
        } else {
            ligne = Left(reste, cr - 1);
            reste = Mid(reste, cr);
        }
        // 11.
        StylesTexte(*s, format);
        if (couleur != -1) s->ForeColor = couleur;
        s->SetTextAlign(24);
        const double a = AngleTexte(e, format);
        // 12.
        if (Contient(format, 'V')) LigneVerticale(e, ligne, format, X0, Y0, a, S, couleur);
        else LigneHorizontale(e, ligne, format, X0, Y0, a, S, couleur);
        if (!reste.contains(u'\r')) break;
    }
    // 14.
    if (couleur != -1 && e.Styles.CouleurDefaut != -1) s->ForeColor = e.Styles.CouleurDefaut;
    RetablitPolice(*s, garde);
    MajPointCourant(e, rp.RotationCmd);
}

void CmdTexteC(Etat& e) {
    Surface* s = e.Surf;
    if (!s) return;
    EtatTexte& t = e.Txt;
    EtatRepere& rp = e.Repere;
    const QString l = e.LigneCourante;
    const QString s2 = e.Separateur2;
    // 1.
    PlusDeDepart(e);
    // 2.
    const QPointF p0 = LitPointCommande(e, l);
    const double X0 = p0.x(), Y0 = p0.y();
    // 3.
    double R = ParaVal0(e, l, 3);
    double E = 1.0;
    QString esp = Trim(Piece(ParaN(e, l, 3), 2, s2));
    if (!esp.isEmpty()) E = EvalExpr(e, esp).value_or(0);
    const double A = ParaVal0(e, l, 4);
    double b = (180 - A - rp.RotationCmd) * DegRad64;
    // 4.
    const int couleur = CouleurParametre(e, ParaN(e, l, 5));
    const QString champ = ParaN(e, l, 6).toUpper();
    QString format = Piece(champ, 1, s2);
    PoliceDuFormat(e, Piece(champ, 2, s2));
    // 5.
    QString texte;
    if (NbPara(e, l) >= 7) {
        texte = Piece(l, -7, e.Separateur1);
        if (Len(Trim(texte)) >= 2 && texte.contains(u'%')) {
            ExprTexte(e, texte);
            RemplaceVar(e, texte);
        }
    }
    FonctionsDuTexte(e, texte);
    texte.replace(QStringLiteral("$£"), QStringLiteral(","));
    // 6.
    const PoliceSurface garde = s->Font;
    const bool champVide = format.isEmpty(); // " " isn't empty
    TailleDepuisFormat(e, format);
    if (!champVide) StylesDe(*s, format);
    // 7.
    if (couleur != -1) s->ForeColor = couleur;
    t.CouleurTexte = couleur;
    const double W = s->TextWidth(texte);
    const double H = -s->TextHeight(texte);
    // 8. The ratios are those of the last text measured.
    if (Contient(format, 'Y') || Contient(format, 'C')) R -= H * t.CoefMilieu;
    else if (Contient(format, 'H')) R -= H * 2 * t.CoefMilieu;
    // 9.
    const double M = R + H / 5.5;
    if (Contient(format, 'C') || Contient(format, 'X')) b += (E * 0.5 * W) / M;
    else if (Contient(format, 'D')) b += (E * W) / M;
    // 10.
    MetriquesTexte(e);
    if (couleur != -1 && !texte.isEmpty()) e.EtatOrdre |= 64;
    const float n = float(Len(texte));
    const double ee = E - 1;
    // 11.
    for (int i = 1; i <= Len(texte); ++i) {
        const QString lettre = Mid(texte, i, 1);
        const double w = s->TextWidth(lettre);
        const double q = w + ee * W / n;
        const double f = b - 0.5 * q / M;
        t.X = X0 + std::cos(f) * (H * t.CoefMilieu + R);
        t.Y = Y0 + std::sin(f) * (H * t.CoefMilieu + R);
        s->CurrentX = t.X;
        s->CurrentY = t.Y;
        PlaceTexte(e, w, H, f / DegRad64 - 90, lettre, QString(), 0);
        b -= q / M;
    }
    // 12.
    if (couleur != -1 && e.Styles.CouleurDefaut != -1) s->ForeColor = e.Styles.CouleurDefaut;
    RetablitPolice(*s, garde);
    MajPointCourant(e, rp.RotationCmd);
}
