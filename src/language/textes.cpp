// Text and list functions. Each form is a rewrite of the text: it is replaced
// in place by its result, and what surrounds it stays.
#include "language/textes.h"

#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/hote.h"
#include "language/nombre.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace {

// A text function whose result holds another form could in principle rewrite
// for ever; no real program comes near this many rewrites of one text.
constexpr int MaxReecritures = 100000;

const QString Guillemet = QStringLiteral("\"");
const QString EntreArguments = QStringLiteral("\",\""); // ","
const QString FinArguments = QStringLiteral("\")");     // ")

QChar Car(const QString& t, int pos) {
    return pos >= 1 && pos <= t.size() ? t[pos - 1] : QChar();
}
bool EstChiffre(QChar c) { return c >= u'0' && c <= u'9'; }

// ---- FonctionsTexte

// The count of LEFn / RIGn: a digit (0 means 10), or the letter that names
// the variable `%Lef` or `%Rig`, whose absence fails the line.
int LongueurForme(Etat& e, QChar c, const QString& variable) {
    if (EstChiffre(c)) return c == u'0' ? 10 : c.digitValue();
    QString valeur;
    if (!LitVar(e, e.NiveauCourant, variable, valeur)) EchecNonInitialisee(e, variable);
    const double n = std::nearbyint(ValNombre(valeur));
    if (n < 0) throw ErreurExecution("Invalid procedure call");
    return n > 32767 ? 32767 : int(n);
}

// The form whose "(" is at q, if it fits: its result and its last position.
bool FormeTexte(Etat& e, const QString& t, int q, QString& resultat, int& fin) {
    const QString u = Majuscules(t);
    const QString nom = vb::Mid(u, q - 4, 3);
    const QChar c = Car(u, q - 1);
    const bool repl = nom == u"REP" && c == u'L';
    const bool lef = nom == u"LEF" && (EstChiffre(c) || c == u'L');
    const bool rig = nom == u"RIG" && (EstChiffre(c) || c == u'R');
    const bool ucas = nom == u"UCA" && c == u'S';
    if (!(repl || lef || rig || ucas) || Car(t, q + 1) != u'"') return false;
    const int debut = q + 2;
    if (repl) {
        // All three strings and the closing ") must be found in order.
        const int i1 = vb::InStr(debut, t, EntreArguments);
        const int i2 = i1 ? vb::InStr(i1 + 3, t, EntreArguments) : 0;
        const int i3 = i2 ? vb::InStr(i2 + 3, t, FinArguments) : 0;
        if (i3 == 0) return false;
        resultat = vb::Replace(vb::Mid(t, debut, i1 - debut), vb::Mid(t, i1 + 3, i2 - i1 - 3),
                               vb::Mid(t, i2 + 3, i3 - i2 - 3));
        fin = i3 + 1;
        return true;
    }
    const int i = vb::InStr(debut, t, FinArguments);
    if (i == 0) return false;
    const QString argument = vb::Mid(t, debut, i - debut);
    if (lef) resultat = vb::Left(argument, LongueurForme(e, c, QStringLiteral("%Lef")));
    else if (rig) resultat = vb::Right(argument, LongueurForme(e, c, QStringLiteral("%Rig")));
    else resultat = Majuscules(argument);
    fin = i + 1;
    return true;
}

// ---- Counting forms

// The form nom "(" ... ")" that starts at p: the text inside its parentheses,
// and the position of its ")"; false when the parenthesis stays open.
bool Interieur(const QString& t, int p, const QString& nom, QString& interieur, int& ferme) {
    const int ouvre = p + int(nom.size()) - 1;
    ferme = ParentheseFermante(t, ouvre);
    if (ferme == 0) return false;
    interieur = vb::Mid(t, ouvre + 1, ferme - ouvre - 1);
    return true;
}

// `INS("a","b")`, the first form only. With a capital S, a is upper-cased.
void RemplaceIns(QString& t) {
    const int p = vb::InStr(Majuscules(t), QStringLiteral("INS("));
    if (p == 0 || Car(t, p + 4) != u'"') return;
    const int i1 = vb::InStr(p + 5, t, EntreArguments);
    const int i2 = i1 ? vb::InStr(i1 + 3, t, FinArguments) : 0;
    if (i2 == 0) return;
    QString a = vb::Mid(t, p + 5, i1 - p - 5);
    if (Car(t, p + 2) == u'S') a = Majuscules(a);
    const QString b = vb::Mid(t, i1 + 3, i2 - i1 - 3);
    Remplace(t, p, i2 + 1, QString::number(vb::InStr(a, b)));
}

// `NBP(t)` or `NB§(t)`, from the last to the first.
void RemplaceComptes(Etat& e, QString& t, const QString& nom, int (*compte)(Etat&, const QString&)) {
    int depuis = -1;
    while (const int p = vb::InStrRev(Majuscules(t), nom, depuis)) {
        QString interieur;
        int ferme;
        if (Interieur(t, p, nom, interieur, ferme)) Remplace(t, p, ferme, QString::number(compte(e, interieur)));
        depuis = p - 1;
        if (depuis < 1) break;
    }
}

// `NBCR(t)`, the first form only.
void RemplaceNbcr(QString& t) {
    const QString nom = QStringLiteral("NBCR(");
    const int p = vb::InStr(Majuscules(t), nom);
    QString interieur;
    int ferme;
    if (p && Interieur(t, p, nom, interieur, ferme))
        Remplace(t, p, ferme, QString::number(interieur.count(u'\r')));
}

// `LEN("t")`, the first form only, after substitution of the whole text.
void RemplaceLen(Etat& e, QString& t) {
    const QString nom = QStringLiteral("LEN(");
    if (!Majuscules(t).contains(nom)) return;
    RemplaceVar(e, t);
    const int p = vb::InStr(Majuscules(t), nom);
    const int i = p && Car(t, p + 4) == u'"' ? vb::InStr(p + 5, t, FinArguments) : 0;
    if (i) Remplace(t, p, i + 1, QString::number(i - p - 5));
}

// ---- FormatTexte

// The locale of the user, without group separators (the "0.00" formats).
QLocale LocaleNombres() {
    QLocale l;
    l.setNumberOptions(l.numberOptions() | QLocale::OmitGroupSeparator);
    return l;
}

void RemplaceTxt(QString& t) {
    const QString separateur = QLocale().decimalPoint();
    int depuis = 1;
    while (const int p = vb::InStr(depuis, Majuscules(t), QStringLiteral("TXT("))) {
        QString x;
        int ferme;
        if (!Interieur(t, p, QStringLiteral("TXT("), x, ferme)) {
            depuis = p + 1;
            continue;
        }
        x = vb::Trim(x).replace(u'.', separateur);
        Remplace(t, p, ferme, x);
        depuis = p; // the text is shorter: a TXT( inside is met again
    }
}

void RemplaceArr(QString& t) {
    int depuis = 1;
    while (const int p = vb::InStr(depuis, Majuscules(t), QStringLiteral("ARR"))) {
        QString x;
        int ferme;
        const QChar d = Car(t, p + 3);
        if (!EstChiffre(d) || Car(t, p + 4) != u'(' || !Interieur(t, p, QStringLiteral("ARRd("), x, ferme)) {
            depuis = p + 1; // a word ARR not followed by a digit and "(" stays
            continue;
        }
        const double v = ValNombre(x.replace(u',', u'.'));
        const QString r = LocaleNombres().toString(v, 'f', d.digitValue());
        Remplace(t, p, ferme, r);
        depuis = p + int(r.size());
    }
}

} // namespace

QString Majuscules(const QString& texte) {
    QString r = texte;
    for (QChar& c : r) {
        // "µ" has no capital in the language's 8-bit character set; it stays,
        // and with it the "$£µ" stand-in of "%" in variable substitution.
        if (c != QChar(0x00B5)) c = c.toUpper();
    }
    return r;
}

void Remplace(QString& t, int debut, int fin, const QString& par) {
    t.replace(debut - 1, fin - debut + 1, par);
    Entier16(t.size());
}

int ParentheseFermante(const QString& texte, int pos) {
    int profondeur = 0;
    for (int i = pos; i <= texte.size(); ++i) {
        const QChar c = texte[i - 1];
        if (c == u'(') ++profondeur;
        else if (c == u')' && --profondeur == 0) return i;
        if (profondeur == 0) return 0; // pos wasn't a "("
    }
    return 0;
}

void FonctionsTexte(Etat& e, QString& texte) {
    // Over the "(" from the last to the first; a "(" before position 5 ends
    // the scan. After a rewrite the scan restarts at the end of the new text,
    // so that nested forms go inner first. (A last "(" of NBP is no form.)
    int depuis = -1, reecritures = 0;
    for (;;) {
        const int q = vb::InStrRev(texte, QStringLiteral("("), depuis);
        if (q < 5) break;
        QString resultat;
        int fin;
        if (FormeTexte(e, texte, q, resultat, fin)) {
            if (++reecritures > MaxReecritures) throw ErreurProvoquee("FonctionsTexte sans fin");
            Remplace(texte, q - 4, fin, resultat);
            depuis = -1;
        } else {
            depuis = q - 1;
        }
    }
}

void RemplaceNbp(Etat& e, QString& texte) {
    RemplaceComptes(e, texte, QStringLiteral("NBP("), [](Etat& et, const QString& t) { return NbPara(et, t); });
}

void FonctionsComptage(Etat& e, QString& texte) {
    RemplaceIns(texte);
    RemplaceNbp(e, texte);
    RemplaceComptes(e, texte, QStringLiteral("NB§("),
                    [](Etat& et, const QString& t) { return NbSousPara(et, t); });
    RemplaceNbcr(texte);
    RemplaceLen(e, texte);
}

void FormatTexte(Etat&, QString& texte) {
    RemplaceTxt(texte);
    RemplaceArr(texte);
}

void EvalDiese(Etat& e, QString& texte) {
    int i = 1;
    while (const int p = vb::InStr(i, texte, QStringLiteral("#"))) {
        if (Car(texte, p + 1) == u'#') { // "##" is one "#"
            texte.remove(p, 1);
            i = p + 1;
            continue;
        }
        // The "#" of the marker %IRE$#0 doesn't close the piece.
        int q = vb::InStr(p + 1, texte, QStringLiteral("#"));
        while (q > 4 && Majuscules(vb::Mid(texte, q - 4, 4)) == u"IRE$")
            q = vb::InStr(q + 1, texte, QStringLiteral("#"));
        if (q == 0) break; // no closing "#": it stays
        QString piece = vb::Mid(texte, p + 1, q - p - 1);
        RemplaceVar(e, piece);
        EvalExpr(e, piece);
        const QString r = vb::Trim(piece);
        Remplace(texte, p, q, r);
        i = p + int(r.size());
    }
}

QVector<int> TirageSansRepetition(Etat& e, int n, int a, int b, float graine) {
    const long long taille = (long long)b - a + 1;
    if (n > taille) {
        if (e.Host) {
            e.Host->Message(QStringLiteral("Mirel"),
                            QStringLiteral("Il est impossible de tirer ") + QString::number(n) +
                                QStringLiteral(" nombres dans la fourchette comprise entre ") +
                                QString::number(a) + QStringLiteral(" et ") + QString::number(b) +
                                QStringLiteral(" qui ne comprend que ") + QString::number(taille) +
                                QStringLiteral(" nombres, VOYONS !!!"),
                            Boutons::Ok);
        }
        return {};
    }
    if (n > 45) throw ErreurExecution("Subscript out of range"); // the list holds 45 entries
    if (n <= 0) return {};
    QVector<int> plage;
    plage.reserve(int(taille));
    for (long long v = a; v <= b; ++v) plage.append(int(v));

    const float sauve = Rnd(e);
    AleGraine(e, graine);
    QVector<int> tirage;
    for (int k = 0; k < n; ++k) {
        const int reste = int(taille) - k;
        const int pos = std::min(int(double(reste) * Rnd(e)), reste - 1);
        tirage.append(plage[pos]);
        plage[pos] = plage[reste - 1];
    }
    // After the draw the generator is reseeded from the number drawn before
    // it (a draw with its negative), so the seeded sequence doesn't go on.
    AleGraine(e, -sauve);
    Rnd(e);
    return tirage;
}
