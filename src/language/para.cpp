// Source preparation and the parameter readers.
#include "language/para.h"

#include "language/constantes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/hote.h"
#include "language/nombre.h"
#include "language/textes.h"
#include "language/variables.h"
#include "language/vb.h"

#include <cmath>

using namespace vb;

namespace {

// The variables of a parameter, then its text functions.
QString Substitue(Etat& e, QString piece) {
    if (piece.contains(u'%')) RemplaceVar(e, piece);
    if (ContientMaj(piece, {"REPL(", "UCAS", "RIG", "LEF"})) FonctionsTexte(e, piece);
    return piece;
}

bool EstChiffre(QChar c) { return c >= u'0' && c <= u'9'; }

// A unit after a number: twice, a last character that is neither ")" nor numeric
// is dropped, so "12mm" gives 12 and a final "R" or "°" is ignored.
void OteSuffixe(QString& t) {
    for (int i = 0; i < 2; ++i)
        if (!t.isEmpty() && t.back() != u')' && !EstChiffre(t.back())) t.chop(1);
}

// The value of a substituted piece: up to the second separator, unit dropped.
// A number of the language is a 32-bit float: a value beyond its range (1E39,
// -1E308) is an overflow of the line, and never a coordinate.
double Valeur(Etat& e, QString t) {
    const int s2 = InStr(t, e.Separateur2);
    if (s2 > 0) t = Left(t, s2 - 1);
    t = Trim(t);
    OteSuffixe(t);
    const std::optional<double> simple = DecimalSimple(t);
    const double v = simple ? *simple : EvalExpr(e, t).value_or(0);
    Float32(v);
    return v;
}

// The value of a piece with its variables; one left undefined fails with
// the piece's text.
double ValeurSubstituee(Etat& e, QString t) {
    const QString piece = t;
    if (t.contains(u'%') && RemplaceVar(e, t) != 0) EchecNonInitialisee(e, piece);
    return Valeur(e, t);
}

} // namespace

QString Piece(const QString& texte, int n, const QString& sep) {
    const bool jusquAuBout = n < 0;
    if (n < 0) n = -n;
    if (n == 0 || sep.isEmpty()) return n == 1 ? texte : QString();
    int debut = 1;
    for (int i = 1; i <= n; ++i) {
        const int p = InStr(debut, texte, sep);
        if (p == 0) {
            // The piece exists only if this was the n-th search: it runs to the end.
            return i == n ? Mid(texte, debut) : QString();
        }
        if (i == n) return jusquAuBout ? Mid(texte, debut) : Mid(texte, debut, p - debut);
        debut = p + int(sep.size());
    }
    return QString();
}

QString ParaN(Etat& e, const QString& texte, int& n) {
    const QString piece = Piece(texte, n, e.Separateur1);
    if (n < 0) n = -n;
    if (e.OperAffect == QLatin1String("<")) return piece;
    return Substitue(e, piece);
}

QString ParaN(Etat& e, const QString& texte, int&& n) { return ParaN(e, texte, n); }

QString ParaBrut(Etat& e, const QString& texte, int n) { return Piece(texte, n, e.Separateur1); }

QString SousPara(Etat& e, const QString& texte, int n, const QString& sep) {
    const QString piece = Piece(texte, n, sep);
    if (Trim(piece).startsWith(u'=') || piece.startsWith(u'<')) return piece;
    return Substitue(e, piece);
}

QString SousPara(Etat& e, const QString& texte, int n) {
    return SousPara(e, texte, n, e.Separateur2);
}

std::optional<double> ParaVal(Etat& e, const QString& texte, int n) {
    QString t = Trim(Piece(texte, n, e.Separateur1));
    if (t.isEmpty()) return std::nullopt;
    const QString s2 = e.Separateur2;
    const int double2 = InStr(t, s2 + s2);
    if (double2 > 0) t = Left(t, double2 - 1);
    if (t.startsWith(s2)) return std::nullopt;
    if (t.isEmpty()) return std::nullopt;
    return ValeurSubstituee(e, t);
}

double ParaVal0(Etat& e, const QString& texte, int n) { return ParaVal(e, texte, n).value_or(0); }

void ParaCoord(Etat& e, double& x, double& y, const QString& texte, int n, double refX,
               double refY) {
    const QString s2 = e.Separateur2.toUpper();
    auto lit = [&](int i) {
        QString t = Trim(Piece(texte, i, e.Separateur1)).toUpper();
        const QString brut = t;
        if (t.contains(u'%') && RemplaceVar(e, t) != 0) EchecNonInitialisee(e, brut);
        return Trim(t).toUpper();
    };
    const QString a = lit(n);
    const QString bEntier = lit(n + 1);
    const int s2b = InStr(bEntier, s2);
    const QString b = s2b > 0 ? Left(bEntier, s2b - 1) : bEntier;
    if (b.contains(u'°')) throw ErreurProvoquee("° dans y");
    const double fx = e.Repere.FacteurTraitX, fy = e.Repere.FacteurTraitY;

    if (a.endsWith(u'°')) {
        // Polar: direction in a, length in b, about the reference point.
        if (a.contains(u'R') || b.endsWith(u'R') || Trim(b).isEmpty())
            throw ErreurProvoquee("coordonnée polaire");
        QString dir = Left(a, Len(a) - 1);
        const double direction = Valeur(e, dir);
        const double longueur = Valeur(e, b);
        x = refX + longueur * std::cos(direction * Litteraux::DegRad) * fx;
        y = refY + longueur * std::sin(direction * Litteraux::DegRad) * fy;
        return;
    }
    if (a.contains(u'°')) throw ErreurProvoquee("° dans x");
    // A coordinate is relative when its value ends in "R" (before a rotation
    // the y carries), or when "R" follows the second separator.
    auto relatif = [&](const QString& valeur, const QString& entier) {
        return valeur.endsWith(u'R') || entier.contains(s2 + u'R');
    };
    if (a.isEmpty()) x = refX;
    else x = Valeur(e, a) * fx + (relatif(a, a) ? refX : 0);
    if (b.isEmpty() || bEntier.startsWith(s2)) y = refY;
    else y = Valeur(e, b) * fy + (relatif(b, bEntier) ? refY : 0);
}

double ValeurOuDefaut(Etat& e, const QString& texte, double defaut) {
    QString t = Trim(texte);
    if (t.isEmpty()) return defaut;
    return EvalExpr(e, t).value_or(0);
}

double ValeurChamp(Etat& e, const QString& texte, double defaut) {
    const QString t = Trim(texte);
    return t.isEmpty() ? defaut : ValeurSubstituee(e, t);
}

double SousValeur(Etat& e, const QString& texte, int n, double defaut) {
    return ValeurOuDefaut(e, SousPara(e, texte, n), defaut);
}

int NbPara(Etat& e, const QString& texte) {
    const QString t = Trim(texte);
    if (t.isEmpty() || t == QLatin1String(")")) return 0;
    return 1 + int(texte.count(e.Separateur1));
}

int NbSousPara(Etat& e, const QString& texte) { return NbSousPara(texte, e.Separateur2); }

int NbSousPara(const QString& texte, const QString& sep) {
    const QString t = Trim(texte);
    if (t.isEmpty() || t == QLatin1String(")")) return 0;
    return 1 + int(texte.count(sep));
}

void SautePara(Etat& e, QString& texte, int n) {
    int debut = 1;
    for (int i = 0; i < n; ++i) {
        const int p = InStr(debut, texte, e.Separateur1);
        if (p == 0) {
            texte.clear();
            return;
        }
        debut = p + int(e.Separateur1.size());
    }
    texte = Mid(texte, debut);
}

void CmdSeparateur(Etat& e) {
    // The second is taken before the first takes effect.
    const QString deux = Trim(ParaN(e, e.LigneCourante, 2));
    const QString un = Trim(ParaN(e, e.LigneCourante, 1));
    if (!deux.isEmpty()) e.Separateur2 = deux;
    e.Separateur1 = un.isEmpty() ? QStringLiteral(",") : un;
    e.Ctx().Separateur1 = e.Separateur1;
    e.Ctx().Separateur2 = e.Separateur2;
    if (e.Host) e.Host->PompeEvenements();
}

// Label scan: every logical line of the level's text, before the
// first command, so that duplicate labels are refused before anything is drawn.
void ScanEtiquettes(Etat& e, int niveau) {
    CtxFic& c = e.PileFic[niveau];
    QVector<Etiquette>& table = e.Etiquettes[niveau];
    const QString& texte = c.Texte;
    if (const auto connue = e.EtiquettesConnues.constFind(texte); connue != e.EtiquettesConnues.cend()) {
        table = *connue;
        return;
    }
    table.clear();
    const int longueur = Len(texte);
    int pos = 1, numero = 0;
    while (pos <= longueur) {
        const int debutLigne = pos;
        const int premiereLigne = numero;
        QString ligne;
        // Join the continuations, each " _" kept out.
        for (;;) {
            int fin = InStr(pos, texte, CrLf());
            if (fin == 0) fin = longueur + 1;
            QString physique = Mid(texte, pos, fin - pos);
            ++numero;
            pos = fin + 2;
            if (!ligne.isEmpty()) physique = LTrim(physique);
            if (physique.endsWith(QLatin1String(" _")) && pos <= longueur) {
                ligne += Left(physique, Len(physique) - 2);
                continue;
            }
            ligne += physique;
            break;
        }
        if (ligne.isEmpty() || ligne.startsWith(u'\'')) continue;
        ligne = Trim(QString(ligne).replace(u'\t', u' '));
        if (ligne.isEmpty() || ligne.startsWith(u'\'')) continue;
        if (ligne.contains(u'=')) continue;
        const int deuxPoints = InStr(ligne, QStringLiteral(":"));
        if (deuxPoints == 0) continue;
        const int blanc = InStr(ligne, QStringLiteral(" "));
        const int apostrophe = InStr(ligne, QStringLiteral("'"));
        if (blanc > 0 && deuxPoints > blanc) continue;
        if (apostrophe > 0 && deuxPoints > apostrophe) continue;
        const QString nom = LTrim(Left(ligne, deuxPoints - 1)).toUpper();
        for (const Etiquette& et : table) {
            if (et.Nom == nom) {
                c.PosDebut = Entier16(debutLigne);
                c.Ligne = ligne;
                int fin = InStr(debutLigne, texte, CrLf());
                c.PosFin = Entier16(fin == 0 ? longueur + 1 : fin);
                c.FinLigne = c.PosFin;
                throw ErreurProvoquee("étiquette en double"); // no text of its own
            }
        }
        table.append({nom, premiereLigne + 1, debutLigne});
    }
    e.EtiquettesConnues.Garde(texte, table);
}

int LigneEtiquette(const Etat& e, const QString& nom, int niveau) {
    for (const Etiquette& et : e.Etiquettes[niveau])
        if (et.Nom == nom) return et.Position;
    return 0;
}

const QStringList& MotsCanoniques() {
    static const QStringList mots = {
        "Arc", "Bezier", "BezierP", "Bezier_aGr", "Cadre", "CadreP", "CadreA", "CadreAP",
        "CentreE", "CentreI", "CentreEI", "Cercle", "CercleI", "CercleP", "CerclePI", "Chain",
        "Couleur", "CT", "Decal", "DemiLune", "DemiLuneP", "Droite", "DroiteV", "EpaisT",
        "Exposant", "Fichier", "Fleche", "FlecheP", "FormatI", "Goto", "Grad", "Grad1", "Image",
        "Input", "Inversion", "If", "ElseIf", "IfT", "ElseIfT", "EndIf", "Else", "ListeVar",
        "LVar", "NPage", "Open", "OpenA", "PalCoul", "PalCoul2", "PalCoul3", "Percer", "PercerX",
        "Plot", "PlotP", "PlotS", "Plus", "PrintA", "+", "Police", "Poly", "PolyP", "PolyR",
        "PolyRP", "QA", "QA1", "QA2", "QA12", "RefCur", "Sect", "SectP", "Separateur", "Stop",
        "!", "TailleP", "Texte", "TexteC", "Trait", "Val", "ValR", "ValD", "Val1", "Val1R",
        "Val1D", "Voyant", "X", "ZoomIni", "ZoomIniI", "AngRot", "Cote", "?"};
    return mots;
}

QString AliasEditeur(const QString& mot) {
    if (mot == QLatin1String("SI")) return QStringLiteral("If");
    if (mot == QLatin1String("SIT")) return QStringLiteral("IfT");
    if (mot == QLatin1String("ROTANG")) return QStringLiteral("AngRot");
    // Overwrites the first four letters only, which leaves "ElseN".
    if (mot == QLatin1String("SINON")) return QStringLiteral("Else");
    return QString();
}
