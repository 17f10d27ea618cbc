// The expression evaluator. There is no tree: each operation of the text is
// replaced by the text of its result, a 32-bit float printed by `StrF`, until
// one number is left. The odd results this gives ("-2^2" is -4, "3*-2^2"
// is 12, divisions before multiplications, ACOS(-1) is 0) belong to the
// language: command programs rely on them.
//
// Positions are 1-based, as everywhere in the language; `Car` reads one
// character and gives the null character outside the text, so that "the next
// character" at the end of the text is simply not an operator.
#include "language/expr.h"

#include "language/constantes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/nombre.h"
#include "language/textes.h"
#include "language/vb.h"

#include <cmath>
#include <cstring>
#include <string>

namespace {

constexpr double DegRad = Litteraux::DegRad;
constexpr double Pi = Litteraux::Pi;
constexpr int TaillePile = 50;            // the stack of groups holds 51 positions, 0 to 50

[[noreturn]] void Echec(const char* quoi) { throw ErreurProvoquee(quoi); }

QChar Car(const QString& t, int pos) {
    return pos >= 1 && pos <= t.size() ? t[pos - 1] : QChar();
}
bool EstChiffre(QChar c) { return c >= u'0' && c <= u'9'; }
bool EstComparaison(QChar c) { return c == u'<' || c == u'=' || c == u'>'; }

// Nothing but blanks from pos on: the end of the text (its final padding blank).
bool FinDeTexte(const QString& t, int pos) { return vb::Trim(vb::Mid(t, pos)).isEmpty(); }

QString SansBlancs(const QString& t) {
    QString r = t;
    r.remove(u' ');
    return r;
}

QString TexteResultat(double v) { return StrF(Float32(v)); }

// The number text debut..fin read as a 32-bit float.
float LitFloat(const QString& t, int debut, int fin) {
    return Float32(ValNombre(vb::Mid(t, debut, fin - debut + 1)));
}

// Number scan to the right from pos; returns the position of its last character.
int ScanDroite(const QString& t, int pos) {
    const QChar c = Car(t, pos);
    if (!(EstChiffre(c) || c == u'-' || c == u'+' || c == u'.')) Echec("nombre attendu");
    int f = pos;
    while (Car(t, f + 1) == u'.' || EstChiffre(Car(t, f + 1))) ++f;
    if (Car(t, f + 1) == u'E' && (Car(t, f + 2) == u'-' || Car(t, f + 2) == u'+')) {
        f += 2;
        while (EstChiffre(Car(t, f + 1))) ++f;
    }
    return f;
}

// Number scan to the left from pos; returns the position of its first character.
// The sign before it isn't taken: the passes decide about it.
int ScanGauche(const QString& t, int pos) {
    if (!EstChiffre(Car(t, pos))) Echec("nombre attendu");
    int d = pos;
    const auto passe = [&] {
        while (Car(t, d - 1) == u'.' || EstChiffre(Car(t, d - 1))) --d;
    };
    passe();
    if ((Car(t, d - 1) == u'-' || Car(t, d - 1) == u'+') && Car(t, d - 2) == u'E' &&
        (Car(t, d - 3) == u'.' || EstChiffre(Car(t, d - 3)))) {
        d -= 2;
        passe();
    }
    return d;
}

// The group that starts at d ends at the first ")" from d, or with the text.
int FinGroupe(const QString& t, int d) {
    const int f = vb::InStr(d, t, QStringLiteral(")"));
    return f > 0 ? f : int(t.size()) + 1;
}

// The first op of the group at d, or 0.
int ChercheDansGroupe(const QString& t, int d, const QString& op) {
    const int p = vb::InStr(d, t, op);
    return p > 0 && p < FinGroupe(t, d) ? p : 0;
}

// Exponents get their sign: "1E3" becomes "1E+3".
void AjoutePlusExposants(QString& t, int d) {
    int fin = FinGroupe(t, d);
    for (int i = d; i < fin; ++i) {
        if (Car(t, i) == u'E' && Car(t, i + 1) != u'+' && Car(t, i + 1) != u'-') {
            t.insert(i, u'+');
            ++fin;
        }
    }
    Entier16(t.size());
}

// Powers first. A "-" before the left operand belongs to it after an operator
// or "(", not at the start of the text: -2^2 is -(2^2), 3*-2^2 is 3*4.
void PassePuissance(QString& t, int d) {
    while (const int p = ChercheDansGroupe(t, d, QStringLiteral("^"))) {
        int g = ScanGauche(t, p - 1);
        const QChar avant = Car(t, g - 2);
        if (Car(t, g - 1) == u'-' && !avant.isNull() && QStringLiteral("*/(+-").contains(avant)) --g;
        const int f = ScanDroite(t, p + 1);
        const double r = std::pow(double(LitFloat(t, g, p - 1)), double(LitFloat(t, p + 1, f)));
        Remplace(t, g, f, TexteResultat(r));
    }
}

QString Division(float a, float b) {
    if (b == 0) Echec("Division par zéro");
    return TexteResultat(a / b);
}
QString Multiplication(float a, float b) { return TexteResultat(a * b); }

// A whole 32-bit integer, a half rounded to the even one.
int32_t EnEntier32(float v) { return Entier32(std::nearbyint(double(v))); }
QString Modulo(float a, float b) {
    const int32_t x = EnEntier32(a), y = EnEntier32(b);
    if (y == 0) Echec("Division par zéro");
    if (y == -1) return QStringLiteral("0"); // INT32_MIN % -1 would trap
    return TexteResultat(double(x % y));     // C++ % keeps the sign of the left one
}

// One binary operator (/, then *, then MOD), from the left, both operands as
// floats.
void PasseBinaire(QString& t, int d, const QString& op, QString (*calcul)(float, float)) {
    while (const int p = ChercheDansGroupe(t, d, op)) {
        const int g = ScanGauche(t, p - 1);
        const int droite = p + int(op.size());
        const int f = ScanDroite(t, droite);
        Remplace(t, g, f, calcul(LitFloat(t, g, p - 1), LitFloat(t, droite, f)));
    }
}

// Runs of signs collapse to one, from d to the end of the text.
void PasseSignes(QString& t, int d) {
    QString reste = t.mid(d - 1);
    reste.replace(QStringLiteral("--"), QStringLiteral("+"));
    reste.replace(QStringLiteral("+-"), QStringLiteral("-"));
    reste.replace(QStringLiteral("-+"), QStringLiteral("-"));
    t = t.left(d - 1) + reste;
}

// Additions and subtractions, from the left; returns the end of the one
// number left.
int PasseAddition(QString& t, int d) {
    int f = ScanDroite(t, d);
    for (;;) {
        const QChar c = Car(t, f + 1);
        if (c == u'+' || c == u'-') {
            const int f2 = ScanDroite(t, f + 2);
            const float a = LitFloat(t, d, f), b = LitFloat(t, f + 2, f2);
            const QString s = TexteResultat(c == u'+' ? a + b : a - b);
            Remplace(t, d, f2, s);
            f = d + int(s.size()) - 1;
        } else if (c == u')' || FinDeTexte(t, f + 1)) {
            return f;
        } else {
            Echec("caractère inattendu");
        }
    }
}

// RNDd: x rounded to d decimals, a half to the even neighbour. The rounding is
// done on the decimal digits of x as the language prints it (7 significant
// digits), not on the binary value: 1.015 is held as 1.01499999..., yet it is
// the half 1.015 that the user wrote and sees, and it gives 1.02.
double ArrondiDecimal(double x, int d) {
    const std::string t = StrF(Float32(x)).toStdString();
    // t = [-]digits[.digits][E±dd]: its value is chiffres x 10^exposant.
    const bool negatif = t[0] == '-';
    std::string chiffres;
    int exposant = 0;
    bool apresPoint = false;
    size_t i = negatif ? 1 : 0;
    for (; i < t.size() && t[i] != 'E'; ++i) {
        if (t[i] == '.') {
            apresPoint = true;
        } else {
            chiffres += t[i];
            if (apresPoint) --exposant;
        }
    }
    if (i < t.size()) exposant += std::stoi(t.substr(i + 1));
    // The digits below the d-th decimal are dropped; at most 7 digits exist.
    const int enTrop = -d - exposant;
    if (enTrop <= 0) return x;
    if (enTrop > 7) return 0;
    long long p = 1;
    for (int k = 0; k < enTrop; ++k) p *= 10;
    const long long m = std::stoll(chiffres);
    long long q = m / p;
    const long long reste = m % p;
    if (2 * reste > p || (2 * reste == p && q % 2 == 1)) ++q;
    const double r = double(q) / std::pow(10.0, d);
    return negatif ? -r : r;
}

// The functions applied to a group, with a name of four characters; none
// when the name isn't one.
std::optional<double> Fonction4(Etat& e, const QString& nom, double x) {
    Q_UNUSED(e);
    if (nom == u"ASIN") {
        if (x >= 1) return 90.0;
        if (x <= -1) return -90.0;
        return std::atan(x / std::sqrt(1 - x * x)) / DegRad;
    }
    if (nom == u"ACOS") {
        // |x| >= 1 gives 0, so ACOS(-1) is 0.
        if (std::fabs(x) >= 1) return 0.0;
        return (std::atan(-x / std::sqrt(1 - x * x)) + 2 * std::atan(1.0)) / DegRad;
    }
    if (nom == u"ATAN") return std::atan(x) / DegRad;
    if (nom == u"SINH") return (std::exp(x) - std::exp(-x)) / 2;
    if (nom == u"COSH") return (std::exp(x) + std::exp(-x)) / 2;
    if (nom.startsWith(u"RND") && EstChiffre(nom[3])) return ArrondiDecimal(x, nom[3].digitValue());
    return std::nullopt;
}

std::optional<double> Fonction3(Etat& e, const QString& nom, double x) {
    if (nom == u"LOG") {
        if (!(x > 0)) Echec("LOG hors domaine");
        return std::log(x) / std::log(10.0);
    }
    if (nom == u"SQR") {
        if (x < 0) Echec("SQR hors domaine");
        return std::sqrt(x);
    }
    if (nom == u"ABS") return std::fabs(x);
    if (nom == u"SIN") return std::sin(x * DegRad);
    if (nom == u"COS") return std::cos(x * DegRad);
    if (nom == u"TAN") return std::tan(x * DegRad);
    if (nom == u"SGN") return vb::Sgn(x);
    if (nom == u"FIX") return std::trunc(x);
    if (nom == u"ALE") return double(Rnd(e, Float32(x)));
    return std::nullopt;
}

// The group d..f, reduced to one number, closed by the ")" at f + 1: a power
// of the group, a function of it, or the bare number.
void RetireParentheses(Etat& e, QString& t, int d, int f) {
    const int ouvre = d - 1, ferme = f + 1;
    if (Car(t, ferme + 1) == u'^') {
        const int g = ScanDroite(t, ferme + 2);
        const double r = std::pow(double(LitFloat(t, d, f)), double(LitFloat(t, ferme + 2, g)));
        Remplace(t, ouvre, g, TexteResultat(r));
        return;
    }
    const double x = ValNombre(vb::Mid(t, d, f - d + 1));
    std::optional<double> r;
    int debutNom = 0;
    if (ouvre > 4 && (r = Fonction4(e, vb::Mid(t, ouvre - 4, 4), x))) {
        debutNom = ouvre - 4;
    } else if (ouvre > 3 && (r = Fonction3(e, vb::Mid(t, ouvre - 3, 3), x))) {
        debutNom = ouvre - 3;
    }
    if (r) {
        Remplace(t, debutNom, ferme, TexteResultat(*r));
    } else {
        Remplace(t, ferme, ferme, QString());
        Remplace(t, ouvre, ouvre, QString());
    }
}

// The group rewriter, for the group that starts at d, with `indice` the
// index of d in the stack of groups.
void ReecritGroupe(Etat& e, QString& t, int d, int indice) {
    // The next "(" anywhere after d is rewritten first, so groups go
    // from the last "(" to the first and the stack counts every "(".
    if (const int p = vb::InStr(d, t, QStringLiteral("("))) {
        if (indice + 1 > TaillePile) Echec("Trop de parenthèses");
        ReecritGroupe(e, t, p + 1, indice + 1);
    }
    AjoutePlusExposants(t, d);
    PassePuissance(t, d);
    PasseBinaire(t, d, QStringLiteral("/"), Division);
    PasseBinaire(t, d, QStringLiteral("*"), Multiplication);
    PasseBinaire(t, d, QStringLiteral("MOD"), Modulo);
    PasseSignes(t, d);
    const int f = PasseAddition(t, d);
    if (Car(t, f + 1) != u')') return; // the end of the text (PasseAddition checked it)
    if (Car(t, d - 1) != u'(') Echec("parenthèse fermante sans ouvrante");
    RetireParentheses(e, t, d, f);
}

// The padding: 3 blanks in front, 1 behind, the first character at 4.
QString Garni(const QString& t) { return QStringLiteral("   ") + t + u' '; }

// One half of ARG(x,y): padded and rewritten from position 4.
double EvalMoitie(Etat& e, const QString& moitie) {
    QString t = Garni(vb::Trim(moitie));
    Entier16(t.size());
    ReecritGroupe(e, t, 4, 0);
    return ValNombre(t);
}

// The ARG(x,y) forms, before the groups, from the last to the first.
void RemplaceArg(Etat& e, QString& t) {
    while (const int p = vb::InStrRev(t, QStringLiteral("ARG("))) {
        int ferme = vb::InStr(p + 4, t, QStringLiteral(")"));
        const bool ouvert = ferme == 0;
        if (ouvert) ferme = int(t.size());
        const QStringList moities = vb::Mid(t, p + 4, ferme - p - 4 + (ouvert ? 1 : 0)).split(u',');
        if (moities.size() < 2) Echec("ARG sans virgule");
        const double x = EvalMoitie(e, moities[0]);
        const double y = EvalMoitie(e, moities[1]);
        double a;
        if (x != 0) {
            a = std::atan(y / x);
            if (x < 0) a += y >= 0 ? Pi : -Pi;
        } else {
            a = y < 0 ? -Pi / 2 : Pi / 2;
        }
        Remplace(t, p, ferme, TexteResultat(a / DegRad) + (ouvert ? QStringLiteral(" ") : QString()));
    }
}

// ---- Logic (EvalTexte)

// Length of the logic operator word that starts (or ends) at pos, or 0.
int OperateurA(const QString& t, int pos) {
    for (const char* op : {"AND", "XOR", "NOT", "OR"}) {
        if (vb::Mid(t, pos, int(std::strlen(op))) == QLatin1String(op)) return int(std::strlen(op));
    }
    return 0;
}
int OperateurFinissantA(const QString& t, int pos) {
    for (const char* op : {"AND", "XOR", "NOT", "OR"}) {
        const int n = int(std::strlen(op));
        if (pos - n + 1 >= 1 && vb::Mid(t, pos - n + 1, n) == QLatin1String(op)) return n;
    }
    return 0;
}
bool ContientLogique(const QString& t) {
    return t.contains(u"AND") || t.contains(u"NOT") || t.contains(u"OR");
}

// The end of an operand that starts at debut: an unmatched ")", an operator
// at the same depth, or the end of the text. Returns the position after it.
int FinOperandeDroite(const QString& t, int debut) {
    int f = debut, profondeur = 0;
    for (; f <= t.size(); ++f) {
        const QChar c = Car(t, f);
        if (c == u'(') {
            ++profondeur;
        } else if (c == u')') {
            if (profondeur == 0) break;
            --profondeur;
        } else if (profondeur == 0 && OperateurA(t, f)) {
            break;
        }
    }
    return f;
}

// The start of an operand that ends at fin, scanning to the left.
int DebutOperandeGauche(const QString& t, int fin) {
    int g = fin, profondeur = 0;
    for (; g >= 1; --g) {
        const QChar c = Car(t, g);
        if (c == u')') {
            ++profondeur;
        } else if (c == u'(') {
            if (profondeur == 0) break;
            --profondeur;
        } else if (profondeur == 0 && OperateurFinissantA(t, g)) {
            break;
        }
    }
    return g + 1;
}

QString ReecritLogique(Etat& e, QString t);

// An operand: rewritten first when it holds an operator, otherwise `Vrai`.
bool VraiOperande(Etat& e, const QString& operande) {
    if (ContientLogique(operande)) return ReecritLogique(e, operande) == u"1";
    return Vrai(e, operande);
}

// The last occurrence of op, an "OR" of "XOR" excepted.
int DernierOperateur(const QString& t, const QString& op) {
    int p = vb::InStrRev(t, op);
    while (p > 1 && op == u"OR" && Car(t, p - 1) == u'X') p = vb::InStrRev(t, op, p - 1);
    return p;
}

void ReecritNot(Etat& e, QString& t) {
    while (const int p = DernierOperateur(t, QStringLiteral("NOT"))) {
        const int debut = p + 3;
        int fin; // the position after the operand
        if (Car(t, debut) == u'(') {
            const int ferme = ParentheseFermante(t, debut);
            if (ferme == 0) Echec("NOT avec une parenthèse ouverte");
            fin = ferme + 1;
        } else {
            fin = FinOperandeDroite(t, debut);
        }
        const QString operande = vb::Mid(t, debut, fin - debut);
        const QString valeur = VraiOperande(e, operande) ? QStringLiteral("0") : QStringLiteral("1");
        t.replace(QStringLiteral("NOT") + operande, valeur);
    }
}

// The truth table of AND, OR and XOR by the forms "1AND1", "0OR0"...
bool Table(const QString& forme, const QString& op) {
    if (op == u"AND") return forme == u"1AND1";
    if (op == u"OR") return forme != u"0OR0";
    return forme == u"1XOR0" || forme == u"0XOR1";
}

void ReecritBinaire(Etat& e, QString& t, const QString& op) {
    while (const int p = DernierOperateur(t, op)) {
        const int g = DebutOperandeGauche(t, p - 1);
        const int debutDroite = p + int(op.size());
        const int f = FinOperandeDroite(t, debutDroite);
        const QString gauche = VraiOperande(e, vb::Mid(t, g, p - g)) ? QStringLiteral("1") : QStringLiteral("0");
        const QString droite = VraiOperande(e, vb::Mid(t, debutDroite, f - debutDroite))
                                   ? QStringLiteral("1")
                                   : QStringLiteral("0");
        t.replace(g - 1, f - g, Table(gauche + op + droite, op) ? QStringLiteral("1") : QStringLiteral("0"));
    }
}

// The logic rewriter: NOT, AND, OR, XOR, each from the last to the first;
// then `Vrai` on what is left. Gives "1" or "0".
QString ReecritLogique(Etat& e, QString t) {
    ReecritNot(e, t);
    for (const char* op : {"AND", "OR", "XOR"}) ReecritBinaire(e, t, QLatin1String(op));
    return Vrai(e, t) ? QStringLiteral("1") : QStringLiteral("0");
}

// One pair of parentheses that encloses the whole text of a relation is dropped.
QString SansParenthesesEnglobantes(const QString& t) {
    if (t.startsWith(u'(') && ParentheseFermante(t, 1) == t.size()) return t.mid(1, t.size() - 2);
    return t;
}

} // namespace

std::optional<double> EvalExpr(Etat& e, QString& texte) {
    if (texte.isEmpty()) texte = QStringLiteral("0");
    const QString nu = Majuscules(SansBlancs(texte));
    if (nu.isEmpty()) return std::nullopt; // a text of blanks
    // The same text gives the same number, a draw apart: a run that comes
    // again (the live preview at each pause) finds its expressions evaluated.
    const bool garde = !nu.contains(QLatin1String("ALE")) && nu.size() <= Etat::LongueurMaxConnue;
    if (garde) {
        if (const auto connue = e.ExpressionsConnues.constFind(nu); connue != e.ExpressionsConnues.cend()) {
            texte = connue->texte;
            return connue->valeur;
        }
    }
    QString t = Garni(nu);
    Entier16(t.size());
    RemplaceArg(e, t);
    ReecritGroupe(e, t, 4, 0);
    texte = t;
    const double valeur = ValNombre(t);
    if (garde) {
        e.ExpressionsConnues.Garde(nu, Etat::ExpressionConnue{valeur, t});
    }
    return valeur;
}

bool Vrai(Etat& e, const QString& texte) {
    QString t = vb::Trim(texte);
    if (t.isEmpty()) return false;
    t = SansParenthesesEnglobantes(t);
    int q = 0;
    for (int i = int(t.size()); i >= 1 && q == 0; --i)
        if (EstComparaison(Car(t, i))) q = i;
    if (q == 0) {
        QString c = t;
        return EvalExpr(e, c).value_or(0) != 0;
    }
    int debutOp = q;
    if (EstComparaison(Car(t, q - 1))) {
        if (Car(t, q - 1) == Car(t, q)) Echec("comparaison doublée");
        debutOp = q - 1;
    }
    const QString op = vb::Mid(t, debutOp, q - debutOp + 1);
    QString gauche = vb::Left(t, debutOp - 1), droite = vb::Mid(t, q + 1);
    const double a = EvalExpr(e, gauche).value_or(0);
    const double b = EvalExpr(e, droite).value_or(0);
    if (op == u"<") return a < b;
    if (op == u"<=" || op == u"=<") return a <= b;
    if (op == u"=") return a == b;
    if (op == u">=" || op == u"=>") return a >= b;
    if (op == u">") return a > b;
    return a != b; // "<>", "><": every other pair of different characters
}

QString EvalTexte(Etat& e, QString texte) {
    FonctionsComptage(e, texte);
    QString u = Majuscules(SansBlancs(texte));
    RemplaceNbp(e, u);
    if (ContientLogique(u)) return ReecritLogique(e, u);
    if (u.contains(u'<') || u.contains(u'=') || u.contains(u'>'))
        return Vrai(e, u) ? QStringLiteral("1") : QStringLiteral("0");
    return StrD(EvalExpr(e, u).value_or(0));
}

double Prefixe(double valeur, QString& lettre) {
    // Limits as 32-bit floats: 1E-6 as a float reaches the µ row. The value
    // is scaled as given, so that 9E9 gives 9 and not the 8.999999 of its
    // nearest float.
    struct Ligne { float limite; const char16_t* lettre; double facteur; bool divise; };
    static constexpr Ligne table[] = {
        {1e18f, u"E", 1e18, true}, {1e15f, u"P", 1e15, true}, {1e12f, u"T", 1e12, true},
        {1e9f, u"G", 1e9, true},   {1e6f, u"M", 1e6, true},   {1000.0f, u"k", 1000.0, true},
        {1.0f, u"", 1.0, false},   {0.001f, u"m", 1000.0, false}, {1e-6f, u"µ", 1e6, false},
        {1e-9f, u"n", 1e9, false}, {1e-12f, u"p", 1e12, false}, {1e-15f, u"f", 1e15, false},
        {1e-18f, u"a", 1e18, false},
    };
    lettre.clear();
    for (const Ligne& l : table) {
        if (float(valeur) >= l.limite) {
            lettre = QString::fromUtf16(l.lettre);
            return l.divise ? valeur / l.facteur : valeur * l.facteur;
        }
    }
    return valeur;
}

void AleGraine(Etat& e, float x) {
    uint32_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    e.Ale.seed(bits);
}

float Rnd(Etat& e, float x) {
    if (x < 0) AleGraine(e, x);
    // 24 random bits: a float from 0 up to 1, never 1 itself.
    return float(e.Ale() >> 8) * (1.0f / 16777216.0f);
}
