// Control flow. Flow moves `Pos` in the level's text and sets the
// skip flags of the record; there is no loop statement.
#include "language/flux.h"

#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/hote.h"
#include "language/para.h"
#include "language/textes.h"
#include "language/variables.h"
#include "language/vb.h"

#include <cmath>

using namespace vb;

namespace {

[[noreturn]] void Echec(const char* quoi) { throw ErreurProvoquee(quoi); }

// Only blanks after the position?
bool QueDesBlancs(const QString& t, int apres) { return Trim(Mid(t, apres)).isEmpty(); }

void Substitue(Etat& e, QString& t) {
    const QString avant = t;
    if (t.contains(u'%') && RemplaceVar(e, t) != 0) {
        EchecNonInitialisee(e, avant);
    }
}

// A number written with digits: "inf" and "nan" are labels, not numbers.
bool EstNombre(const QString& t) {
    bool ok = false;
    const double v = Trim(t).toDouble(&ok);
    return ok && std::isfinite(v);
}

// The target of a Goto: an editor line number, or a label of the level.
void Saute(Etat& e, QString cible) {
    Substitue(e, cible);
    cible = Trim(cible);
    CtxFic& c = e.Ctx();
    if (EstNombre(cible)) c.Pos = PositionLigneEditeur(e, Entier16Arrondi(cible.toDouble()));
    else c.Pos = LigneEtiquette(e, cible.toUpper(), e.NiveauCourant);
}

bool Verite(Etat& e, QString condition, bool texte) {
    Substitue(e, condition);
    if (texte) {
        FonctionsTexte(e, condition);
        return RelationTexte(e, condition);
    }
    const QString r = Trim(EvalTexte(e, condition));
    bool ok = false;
    const double v = r.toDouble(&ok);
    return ok && v != 0;
}

// Whether the condition's line, its comment cut, ends with "Then": it opens a block.
bool FinitParThen(const Etat& e) {
    const QString h = e.LigneCourante.toUpper();
    const int t = InStr(h, QStringLiteral("THEN"));
    return t > 0 && QueDesBlancs(h, t + 4);
}

// If, ElseIf, IfT, ElseIfT: a jump (Then Goto), a one-line Then, or a block.
void Si(Etat& e, bool sinonSi, bool texte) {
    if (e.Host) e.Host->PompeEvenements();
    CtxFic& c = e.Ctx();
    if (e.ArretDemande) {
        e.FinNiveauDemandee = true;
        return;
    }
    const int d = c.NivSi;
    if (sinonSi) {
        if (c.ElseVu[d] || c.NivSi == 0) Echec("ElseIf");
        if (!FinitParThen(e)) Echec("ElseIf sans Then");
    }
    const QString l = e.LigneCourante;
    const QString haut = l.toUpper();
    int p = InStr(haut, QStringLiteral("THEN GOTO"));
    int longueurMot = 9;
    if (p == 0) {
        p = InStr(haut, QStringLiteral("GOTO"));
        longueurMot = 4;
    }
    if (p > 0) {
        if (!Verite(e, Trim(Left(l, p - 1)), texte)) return;
        Saute(e, Trim(Mid(l, p + longueurMot)));
        return;
    }
    const int t = InStr(haut, QStringLiteral("THEN"));
    if (t == 0) Echec("If sans Then ni Goto");
    const bool vrai = Verite(e, Trim(Left(l, t - 1)), texte);
    const bool bloc = QueDesBlancs(l, t + 4);
    if (!vrai) {
        if (!bloc) return;
        if (!sinonSi) EntreeSi(e);
        c.SauteSi[c.NivSi] = true;
        return;
    }
    if (!bloc) {
        // The text after THEN is fetched as a line of its own.
        const int k = InStr(c.LigneBruteThen.toUpper(), QStringLiteral("THEN"));
        c.Pos = Entier16(c.PosDebut + k + 4);
        return;
    }
    if (!sinonSi) EntreeSi(e);
    const int n = c.NivSi;
    if (c.BrancheFaite[n]) c.SauteSi[n] = true;
    c.BrancheFaite[n] = true;
}

void FinBloc(CtxFic& c) {
    const int d = c.NivSi;
    c.SauteSi[d] = c.ElseVu[d] = c.BrancheFaite[d] = false;
    --c.NivSi;
}

// One relation of two texts (IfT), case-sensitive, quotes taken off.
bool RelationSimple(const QString& t) {
    static const char* const ops[] = {"<=", "=<", ">=", "=>", "<>", "><", "<", "=", ">"};
    for (const char* op : ops) {
        const int p = InStr(t, QLatin1String(op));
        if (p == 0) continue;
        auto cote = [](QString s) {
            s = Trim(s);
            if (s.size() >= 2 && s.startsWith(u'"') && s.endsWith(u'"')) s = s.mid(1, s.size() - 2);
            return s;
        };
        const QString a = cote(Left(t, p - 1));
        const QString b = cote(Mid(t, p + int(qstrlen(op))));
        const int c = a.compare(b);
        const QString o = QLatin1String(op);
        if (o == QLatin1String("<")) return c < 0;
        if (o == QLatin1String("<=") || o == QLatin1String("=<")) return c <= 0;
        if (o == QLatin1String("=")) return c == 0;
        if (o == QLatin1String(">=") || o == QLatin1String("=>")) return c >= 0;
        if (o == QLatin1String(">")) return c > 0;
        return c != 0;
    }
    const QString s = Trim(t);
    return !s.isEmpty() && s != QLatin1String("0");
}

// The words " OR ", " AND ", " XOR ", " NOT " and "NOT " split first.
bool RelationLogique(const QString& t) {
    const QString h = t.toUpper();
    for (const char* mot : {" OR ", " XOR ", " AND "}) {
        const int p = InStrRev(h, QLatin1String(mot));
        if (p == 0) continue;
        const bool a = RelationLogique(Left(t, p - 1));
        const bool b = RelationLogique(Mid(t, p + int(qstrlen(mot))));
        if (qstrcmp(mot, " OR ") == 0) return a || b;
        if (qstrcmp(mot, " AND ") == 0) return a && b;
        return a != b;
    }
    const QString n = LTrim(h);
    if (n.startsWith(QLatin1String("NOT "))) return !RelationLogique(Mid(LTrim(t), 5));
    return RelationSimple(t);
}

} // namespace

int PositionLigneEditeur(Etat& e, int numero) {
    // Lines count from 1: a number below names no line, and the position 0
    // fails at the next fetch, as an unknown label does.
    if (numero < 1) return 0;
    const QString texte = e.Host ? e.Host->TexteEditeur() : e.PileFic[1].Texte;
    int pos = 1;
    for (int i = 1; i < numero; ++i) {
        const int f = InStr(pos, texte, CrLf());
        if (f == 0) return Entier16(Len(texte) + 1);
        pos = f + 2;
    }
    return Entier16(pos);
}

bool RelationTexte(Etat&, const QString& condition) {
    QString t = condition;
    // Groups from the last "(" on, in a stack of 13 positions: a fourteenth
    // group overflows it, and the line fails.
    for (int tours = 0;; ++tours) {
        const int o = InStrRev(t, QStringLiteral("("));
        if (o == 0) break;
        if (tours == 13) throw ErreurExecution("Subscript out of range");
        int f = InStr(o, t, QStringLiteral(")"));
        if (f == 0) f = Len(t) + 1;
        const QString groupe = Mid(t, o + 1, f - o - 1);
        if (Trim(groupe).isEmpty()) throw ErreurProvoquee("groupe vide");
        const QString h = groupe.toUpper();
        const bool relation = h.contains(QLatin1String(" OR ")) || h.contains(QLatin1String(" AND ")) ||
                              h.contains(QLatin1String(" XOR ")) || h.contains(u'=') ||
                              h.contains(u'<') || h.contains(u'>');
        const QString r = relation ? (RelationLogique(groupe) ? QStringLiteral("1") : QString()) : groupe;
        t = Left(t, o - 1) + r + Mid(t, f + 1);
    }
    return RelationLogique(t);
}

bool FiltreSi(Etat& e) {
    CtxFic& c = e.Ctx();
    const int d = c.NivSi;
    if (!c.SauteSi[d]) return true;
    const QString& mot = c.Mot;
    if (mot == QLatin1String("IF") || mot == QLatin1String("IFT")) {
        if (FinitParThen(e)) {
            // A block inside skipped code: all its branches will be passed over.
            EntreeSi(e);
            c.SauteSi[c.NivSi] = true;
            c.BrancheFaite[c.NivSi] = true;
        }
        return false;
    }
    if (mot == QLatin1String("ELSE")) {
        c.SauteSi[d] = c.BrancheFaite[d];
        c.ElseVu[d] = true;
        return false;
    }
    if (mot == QLatin1String("ELSEIF") || mot == QLatin1String("ELSEIFT")) {
        c.SauteSi[d] = false;
        return true;
    }
    if (mot == QLatin1String("ENDIF")) FinBloc(c);
    return false;
}

void EntreeSi(Etat& e) {
    CtxFic& c = e.Ctx();
    // The depth limit fails the line with no text of its own.
    if (c.NivSi >= c.MaxSi) Echec("MaxSi");
    ++c.NivSi;
}

void CmdIf(Etat& e) { Si(e, false, false); }
void CmdElseIf(Etat& e) { Si(e, true, false); }
void CmdIfT(Etat& e) { Si(e, false, true); }
void CmdElseIfT(Etat& e) { Si(e, true, true); }

void CmdElse(Etat& e) {
    CtxFic& c = e.Ctx();
    if (c.NivSi < 1) Echec("Else hors bloc");
    c.SauteSi[c.NivSi] = c.BrancheFaite[c.NivSi];
    c.ElseVu[c.NivSi] = true;
}

void CmdEndIf(Etat& e) {
    CtxFic& c = e.Ctx();
    if (c.NivSi < 1) Echec("EndIf hors bloc");
    FinBloc(c);
}

void CmdGoto(Etat& e) {
    if (e.Host) e.Host->PompeEvenements();
    if (e.ArretDemande) {
        e.FinNiveauDemandee = true;
        return;
    }
    Saute(e, e.LigneCourante);
}

void CmdStop(Etat& e) {
    CtxFic& c = e.Ctx();
    for (int d = c.NivSi; d >= 1; --d) c.SauteSi[d] = c.ElseVu[d] = c.BrancheFaite[d] = false;
    c.NivSi = 0;
    e.FinNiveauDemandee = true;
}
