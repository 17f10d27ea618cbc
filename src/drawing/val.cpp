// Scale values: the numbers and texts written along a scale.
#include "drawing/val.h"

#include "drawing/grad.h"
#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/nombre.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"
#include "shapes/texte.h"

#include <QLocale>

#include <cmath>

using namespace vb;

namespace {

constexpr double DegRad = DegRadEchelle;
constexpr double Pi = PiEchelle;

// Which first parameter the keyword has: none (Val, Val1), or one with the
// relative angle read as perpendicular to the needle (R) or to the radius of
// the drawn centre (D).
enum class Genre { Simple, R, D };

[[noreturn]] void AppelIncorrect() { throw ErreurExecution("Appel de procédure incorrect"); }

// The whole-number remainder: both sides rounded to whole numbers (half-even),
// the remainder with the sign of the left side. The remainder of two whole
// numbers held as doubles is exact at any size, and a zero is never "-0".
double ModEntier(double x, double m) {
    const double a = std::nearbyint(x), b = std::nearbyint(m);
    if (b == 0) throw ErreurExecution("Division par zéro");
    return std::fmod(a, b) + 0.0;
}

// The `Str` text made into the system's plain form: leading 0, locale's symbol.
QString VersSysteme(QString s) {
    if (s.startsWith(u'.')) s.prepend(u'0');
    else if (s.startsWith(QLatin1String("-."))) s.insert(1, u'0');
    return s.replace(u'.', QLocale().decimalPoint());
}

// A Surface point turned by the scale's rotation about the frame's 0,0, as
// TraitRot turns the ends of a line.
void TourneEchelle(const Etat& e, double& x, double& y) {
    const double r = -e.Ech.Rot * DegRad;
    if (r == 0) return;
    const double cx = e.Repere.OrigineX + e.Repere.CTx, cy = e.Repere.OrigineY + e.Repere.CTy;
    const double dx = x - cx, dy = y - cy;
    x = cx + dx * std::cos(r) + dy * std::sin(r);
    y = cy - dx * std::sin(r) + dy * std::cos(r);
}

// Reading of the first parameter (ValR, ValD, Val1R, Val1D), steps 1 to 4.
void PremierParametre(Etat& e, QString& l) {
    EtatVal& v = e.Val;
    QString p = Trim(ParaN(e, l, 1)).toUpper();
    // 1.
    if (p.isEmpty()) p = QStringLiteral("R0");
    // 2. A text shorter than 2 letters isn't searched.
    static const QStringList deux = {"BG", "BD", "HG", "HD", "GB", "DB", "GH", "DH"};
    if (Len(p) >= 2) {
        if (deux.contains(Right(p, 2))) {
            v.Just = Right(p, 2);
            p.chop(2);
        } else if (QStringLiteral("BHGD").contains(p.back())) {
            v.Just = Right(p, 1);
            p.chop(1);
        }
    }
    // 3. Bad letters stay in the angle text: the evaluation decides.
    const int r = InStr(p, QStringLiteral("R"));
    if (r > 0) {
        QString ex = Mid(p, r + 1);
        v.AngRel = float(EvalExpr(e, ex).value_or(0));
        v.RelDonne = true;
    } else {
        v.AngAbs = float(EvalExpr(e, p).value_or(0));
    }
    // 4.
    SautePara(e, l, 1);
}

// The distance parameter: Dist (times CoteGrad) and its angle, stored negated.
void LitDistance(Etat& e, const QString& texte, int n) {
    EtatVal& v = e.Val;
    v.Dist = ParaVal0(e, texte, n) * e.Ech.CoteGrad;
    const QString a = Trim(SousPara(e, ParaN(e, texte, n), 2));
    v.AngDist = a.isEmpty() ? 0 : -ParaVal0(e, a, 1);
}

// The anchor of a value at the scale value `valeur`: the end of a tick of
// length Dist, unturned Surface units. On an arc the distance angle has no
// part; on a Droite (X + Dist sin(-g), R + Dist cos(-g)), on a DroiteV
// (R + Dist cos(-g), Y + Dist sin(-g)), g = AngDist in radians.
PointEchelle Ancre(Etat& e, FormeEchelle f, double valeur) {
    const EtatVal& v = e.Val;
    const double g = v.AngDist * DegRad;
    PointEchelle base, bout;
    switch (f) {
    case FormeEchelle::Arc: ExtremitesTick(e, f, valeur, v.Dist, 0, base, bout); break;
    case FormeEchelle::Droite: ExtremitesTick(e, f, valeur, v.Dist, g, base, bout); break;
    case FormeEchelle::DroiteV: ExtremitesTick(e, f, valeur, v.Dist, -g, base, bout); break;
    }
    return bout;
}

// The text angle by scale form. `valeur` is the deviation in degrees on an
// arc; `ancre.b` the direction of the drawn centre's radius through the anchor.
float AngleTexte(const Etat& e, FormeEchelle f, Genre genre, bool val1, double valeur,
                 const PointEchelle& ancre) {
    const EtatVal& v = e.Val;
    if (genre == Genre::Simple) return 0;
    if (f == FormeEchelle::DroiteV) {
        if (v.RelDonne) return float(v.AngRel + 90 - v.AngDist);
        // Here only, Val, ValR, ValD don't take an absolute angle over.
        return val1 ? v.AngAbs : 0.0f;
    }
    if (!v.RelDonne || v.AngAbs != 0) return v.AngAbs;
    if (f == FormeEchelle::Droite) return float(v.AngRel + 90 + v.AngDist);
    // Arc: at right angles to the needle's radius (R) or to the radius of
    // the drawn centre (D), whose deviation is pi minus its direction.
    if (genre == Genre::R) return float(v.AngRel + 90 - valeur);
    return float(v.AngRel + 90 - (Pi - ancre.b) / DegRad);
}

// Measures a text, finds its angle and anchor, writes it unless N. The
// anchor, turned by the scale's rotation, is kept in e.Val.AncreX, AncreY.
void EcritValeur(Etat& e, FormeEchelle f, Genre genre, bool val1, double valeur,
                 const QString& texte, int couleur) {
    Surface* s = e.Surf;
    if (!s) return;
    EtatVal& v = e.Val;
    const double w = s->TextWidth(texte);
    const double h = -s->TextHeight(texte);
    const PointEchelle a = Ancre(e, f, valeur);
    v.TexteAng = AngleTexte(e, f, genre, val1, valeur, a);
    v.AncreX = a.x;
    v.AncreY = a.y;
    TourneEchelle(e, v.AncreX, v.AncreY);
    // The pen at the anchor; ValText turns the module position itself.
    e.Txt.X = a.x;
    e.Txt.Y = a.y;
    s->CurrentX = v.AncreX;
    s->CurrentY = v.AncreY;
    if (couleur == -1) return;
    s->ForeColor = couleur;
    e.Txt.CouleurTexte = couleur;
    ValText(e, w, h, v.TexteAng, texte, v.Just, e.Ech.Rot);
}

void RazAngles(Etat& e) {
    EtatVal& v = e.Val;
    v.TexteAng = v.AngAbs = v.AngRel = 0;
    v.RelDonne = false;
    v.Just.clear();
}

void Val(Etat& e, Genre genre) {
    EtatVal& v = e.Val;
    EtatGrad& g = e.Grad;
    const QString s2 = e.Separateur2;
    // 1.
    VerifieEchelle(e);
    e.EtatOrdre |= 64;
    RazAngles(e);
    // 2.
    QString l = e.LigneCourante;
    if (genre != Genre::Simple) PremierParametre(e, l);
    const bool log = e.Ctx().EchelleLog;
    LitSerie(e, l, 1, 5, 6);
    v.NbVal = g.N;
    v.PremVal = g.Prem;
    v.DerVal = g.Der;
    LitDistance(e, l, 4);
    const QString depart = ParaN(e, l, 2), fin = ParaN(e, l, 3);
    v.DepartVal = ParaVal0(e, l, 2);
    // On a log scale Fin is a form (P, E, S, a number format), not a number.
    v.FinVal = log ? 0 : ParaVal0(e, l, 3);
    const QString formeLog = LTrim(Piece(fin, 1, s2)).toUpper();
    double modulo = 0;
    if (!log) {
        const QString m = Trim(SousPara(e, ParaN(e, l, 1), 2));
        if (!m.isEmpty()) modulo = ParaVal0(e, m, 1);
    }
    // The units: the § text of Depart, and of Fin for the last value.
    const QString unite = NormaliseUnite(SousPara(e, depart, 2));
    const bool uniteFinDonnee = InStr(fin, s2) > 0 && !SousPara(e, fin, 2).isEmpty();
    const QString uniteFin = NormaliseUnite(SousPara(e, fin, 2));
    const int couleur = CouleurParametre(e, ParaN(e, l, -7));
    // 3.
    const FormeEchelle f = FormeEchelleCourante(e);
    const double fixN = std::trunc(v.NbVal);
    bool ecrite = false;
    ParcourtSerie(e, f, [&](Etat& e, double valeur) {
        QString t;
        if (!log) {
            if (fixN == 0) throw ErreurExecution("Division par zéro");
            double x = v.DepartVal + e.Grad.Ind * (v.FinVal - v.DepartVal) / fixN;
            if (modulo != 0) x = ModEntier(x, modulo);
            t = Trim(DecimalSysteme(x));
        } else {
            const Echelle& s = e.Ech;
            const double x = std::pow(10.0, s.DecadesTotal * double(e.Grad.PosCourante)) *
                             double(s.LogDebut) * v.DepartVal;
            t = TexteValeurLog(x, formeLog);
        }
        const bool dernier = std::abs(e.Grad.Der) == double(e.Grad.Ind);
        t += (dernier && uniteFinDonnee) ? uniteFin : unite;
        EcritValeur(e, f, genre, false, valeur, t, couleur);
        ecrite = true;
    });
    // 4. The pen stays at the last anchor.
    if (ecrite && e.Surf) {
        e.Surf->CurrentX = v.AncreX;
        e.Surf->CurrentY = v.AncreY;
    }
    MajPointCourant(e, -e.Ech.Rot);
}

// The text of a Val1 group for round i (0-based).
QString TexteVal1(Etat& e, QString t, int i) {
    const QString s2 = e.Separateur2;
    // The parameter as it stands, untrimmed: "Val1 = 50, 10, 8" writes " 10".
    t.replace(e.Separateur1, s2);
    ExprTexte(e, t);
    if (RemplaceVar(e, t) != 0) {
        EchecNonInitialisee(e, t);
    }
    t.replace(QStringLiteral("$£"), QStringLiteral(","));
    const QString txt = s2 + QStringLiteral("TXT");
    if (t.endsWith(txt, Qt::CaseInsensitive)) {
        t.chop(txt.size());
        t.replace(u'.', QLocale().decimalPoint());
    }
    if (t.contains(s2)) {
        const QStringList elements = t.split(s2);
        t = elements[std::min<qsizetype>(i, elements.size() - 1)];
    }
    return t;
}

void Val1(Etat& e, Genre genre) {
    const QString s2 = e.Separateur2;
    // 1.
    VerifieEchelle(e);
    e.EtatOrdre |= 64;
    RazAngles(e);
    // 2.
    QString texte = e.LigneCourante;
    texte.replace(s2 + QStringLiteral("txt"), s2 + QStringLiteral("TXT"), Qt::CaseInsensitive);
    if (genre != Genre::Simple) PremierParametre(e, texte);
    // 3., 4.
    ParcourtGroupes(e, texte, [&](Etat& e, const QString& groupe, int i, double pos, bool brute) {
        // 5.
        const QString t = TexteVal1(e, ParaN(e, groupe, 2), i);
        LitDistance(e, groupe, 3);
        const int couleur = CouleurParametre(e, ParaN(e, groupe, -4));
        // 6.
        const FormeEchelle f = FormeEchelleCourante(e);
        EcritValeur(e, f, genre, true, ValeurEchelle(e, f, pos, brute), t, couleur);
    });
    // 7.
    MajPointCourant(e, -e.Ech.Rot);
}

// The number placeholders of a format without exponent: "0" a digit always
// shown, "#" a digit shown when needed, "." the decimal symbol (always shown
// when in the format).
QString FormatSansExposant(double v, const QString& format) {
    const int point = int(format.indexOf(u'.'));
    const QString entier = point < 0 ? format : format.left(point);
    const QString decimales = point < 0 ? QString() : format.mid(point + 1);
    int zerosEntier = 0, zeros = 0, dieses = 0;
    for (QChar c : entier)
        if (c == u'0') ++zerosEntier;
    for (QChar c : decimales) {
        if (c == u'0') ++zeros;
        else if (c == u'#') ++dieses;
    }
    // Literal text around the placeholders stays in front and behind.
    auto estMarque = [](QChar c) { return c == u'0' || c == u'#' || c == u'.'; };
    int debut = 0, fin = int(format.size());
    while (debut < fin && !estMarque(format[debut])) ++debut;
    while (fin > debut && !estMarque(format[fin - 1])) --fin;
    const int nd = zeros + dieses;
    const double r = std::round(std::abs(v) * std::pow(10.0, nd)) / std::pow(10.0, nd);
    QString t = QString::number(r, 'f', nd);
    QString ent = t, dec;
    if (nd > 0) {
        ent = t.section(u'.', 0, 0);
        dec = t.section(u'.', 1);
        while (dec.size() > zeros && dec.endsWith(u'0')) dec.chop(1);
    }
    if (ent == QLatin1String("0") && zerosEntier == 0) ent.clear();
    while (ent.size() < zerosEntier) ent.prepend(u'0');
    QString n = ent;
    if (point >= 0) n += QLocale().decimalPoint() + dec;
    if (v < 0 && r != 0) n.prepend(u'-');
    return format.left(debut) + n + format.mid(fin);
}

} // namespace

double Arrondi(double x) {
    const double entier = std::floor(x);
    if (std::fmod(entier, 2.0) == 0) return std::nearbyint(x);
    return std::nearbyint(x + 1) - 1;
}

QString DecimalSysteme(double v) { return VersSysteme(StrD(v)); }
QString DecimalSystemeF(float v) { return VersSysteme(StrF(v)); }

QString NormaliseUnite(const QString& u) {
    QString r = u;
    if (r.startsWith(u' ')) r = u' ' + LTrim(r);
    if (r == QLatin1String(" ")) r.clear();
    return r;
}

QString FormatNombre(double v, const QString& format) {
    // The scientific part: "E-" or "E+" (either case) and the exponent digits.
    int pe = -1;
    for (int i = 0; i + 1 < format.size(); ++i) {
        if ((format[i] == u'E' || format[i] == u'e') &&
            (format[i + 1] == u'-' || format[i + 1] == u'+')) {
            pe = i;
            break;
        }
    }
    if (pe < 0) return FormatSansExposant(v, format);
    const QString mantisse = format.left(pe);
    const bool plus = format[pe + 1] == u'+';
    const QString reste = format.mid(pe + 2);
    int chiffresEntier = 0, decimales = 0;
    bool apresPoint = false;
    for (QChar c : mantisse) {
        if (c == u'.') apresPoint = true;
        else if (c == u'0' || c == u'#') (apresPoint ? decimales : chiffresEntier)++;
    }
    chiffresEntier = std::max(chiffresEntier, 1);
    int exposant = 0;
    double m = 0;
    if (v != 0) {
        exposant = int(std::floor(std::log10(std::abs(v)))) - (chiffresEntier - 1);
        m = v / std::pow(10.0, exposant);
        const double k = std::pow(10.0, decimales);
        if (std::round(std::abs(m) * k) / k >= std::pow(10.0, chiffresEntier)) {
            ++exposant;
            m = v / std::pow(10.0, exposant);
        }
    }
    // The exponent: at least as many digits as "0" placeholders; other text
    // behind the sign stays as it is.
    int zeros = 0;
    QString litteral;
    for (QChar c : reste) {
        if (c == u'0' || c == u'#') {
            if (c == u'0') ++zeros;
        } else {
            litteral += c;
        }
    }
    QString chiffres = QString::number(std::abs(exposant));
    while (chiffres.size() < zeros) chiffres.prepend(u'0');
    QString signe;
    if (exposant < 0) signe = QStringLiteral("-");
    else if (plus) signe = QStringLiteral("+");
    return FormatSansExposant(m, mantisse) + format[pe] + signe + litteral + chiffres;
}

QString FormatNombrePoint(double v, const QString& format) {
    return FormatNombre(v, format).replace(QLocale().decimalPoint(), QStringLiteral("."));
}

QString TexteValeurLog(double v, const QString& finBrute) {
    const QString fin = LTrim(finBrute).toUpper();
    // Three significant digits.
    if (v != 0) {
        const double k = Arrondi(std::log10(std::abs(v)) + 0.5);
        const double p = std::pow(10.0, 3 - k);
        v = Arrondi(v * p) / p;
    }
    // Unit prefix.
    if (fin.startsWith(u'P')) {
        QString lettre;
        const double x = Prefixe(v, lettre);
        return DecimalSystemeF(float(x)) + lettre;
    }
    // Exponent, or a number format around the "E".
    if (fin.contains(u'E')) {
        if (RTrim(fin) == QLatin1String("E")) {
            if (v <= 0) AppelIncorrect();
            const int x = int(std::floor(std::log10(v)));
            return DecimalSysteme(v / std::pow(10.0, x)) + u'E' + QString::number(x);
        }
        const int p = InStr(fin, QStringLiteral("E"));
        return FormatNombre(v, Left(fin, p) + u'-' + Mid(fin, p + 1));
    }
    // The exponent brought to a multiple of 3.
    if (fin.contains(u'S')) {
        if (v <= 0) AppelIncorrect();
        int x = int(std::floor(std::log10(v)));
        if (x >= 0) x -= x % 3;
        else if (x % 3 != 0) x -= 3 + x % 3;
        const double m = v / std::pow(10.0, x);
        if (RTrim(fin) == QLatin1String("S")) return DecimalSysteme(m) + u'E' + QString::number(x);
        const int p = InStr(fin, QStringLiteral("S"));
        const QString apres = Mid(fin, p + 1);
        return FormatNombre(m, Left(fin, p - 1)) + u'E' +
               (Trim(apres).isEmpty() ? QString::number(x) : FormatNombre(x, apres));
    }
    // Otherwise the plain decimal form.
    return DecimalSysteme(v);
}

void ValText(Etat& e, double w, double h, double angle, const QString& texte,
             const QString& just, double rotation) {
    // 1. Nothing with the colour N; 2. to 6. are those of PlaceTexte.
    if (e.Txt.CouleurTexte == -1) return;
    PlaceTexte(e, w, h, angle, texte, just, rotation);
}

void CmdVal(Etat& e) { Val(e, Genre::Simple); }
void CmdValR(Etat& e) { Val(e, Genre::R); }
void CmdValD(Etat& e) { Val(e, Genre::D); }
void CmdVal1(Etat& e) { Val1(e, Genre::Simple); }
void CmdVal1R(Etat& e) { Val1(e, Genre::R); }
void CmdVal1D(Etat& e) { Val1(e, Genre::D); }
