// Variables and substitution, and the variable listing `ListeVars`.
#include "language/variables.h"

#include "drawing/surface.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/hote.h"
#include "language/nombre.h"
#include "language/para.h"
#include "language/vb.h"

#include <QDate>
#include <QFileInfo>
#include <QLocale>
#include <QScopeGuard>

#include <cmath>
#include <string_view>

using namespace vb;

namespace {

const QString MarqueAppelant = QStringLiteral("%IRE$-1");
const QString MarquePartage = QStringLiteral("%IRE$#0");
// The stand-in of "%" in a text kept from substitution (a `VAR(` value), put
// back at the end.
const QString PourcentCache = QStringLiteral("$£µ");
constexpr int LongueurMaxSubstitution = 4096;
constexpr int MaxSubstitutions = 10000;
constexpr int MaxItemsEnCours = 64;

[[noreturn]] void Echec(Etat& e, const QString& texte) {
    if (!texte.isEmpty()) e.TexteErreur = texte;
    throw ErreurProvoquee("variables");
}

// The level that a name with a scope marker reads and writes.
int NiveauPortee(const Etat& e, const QString& marque) {
    if (marque == MarquePartage) return 0;
    return e.NiveauCourant > 1 ? e.NiveauCourant - 1 : 0;
}

// The value of an assignment: a value in double quotes is kept as it stands
// between them; otherwise trimmed, or evaluated for "==".
QString TraiteValeur(Etat& e, const QString& brut) {
    const QString t = Trim(brut);
    if (t.size() >= 2 && t.startsWith(u'"') && t.endsWith(u'"')) {
        const int d = InStr(brut, QStringLiteral("\""));
        const int f = InStrRev(brut, QStringLiteral("\""));
        return Mid(brut, d + 1, f - d - 1);
    }
    if (e.OperAffect == QLatin1String("=")) return Trim(EvalTexte(e, t));
    return t;
}

// The value text of an assignment line: ParaN(ligne, -1), with the `VAR(`
// forms kept from a premature substitution when the variable is new.
QString ValeurLigne(Etat& e, bool protegeVar) {
    if (!protegeVar || !ContientMaj(e.LigneCourante, {"VAR("}))
        return ParaN(e, e.LigneCourante, -1);
    const QString ligne = e.LigneCourante;
    e.LigneCourante.replace(u'%', PourcentCache);
    QString v = ParaN(e, e.LigneCourante, -1);
    e.LigneCourante = ligne;
    return v.replace(PourcentCache, QStringLiteral("%"));
}

void Stocke(Etat& e, int niveau, int slot, const QString& valeur) {
    CtxFic& c = e.PileFic[niveau];
    c.ValVar[slot] = valeur;
    // `%CLIPBOARD` and the value CLIPBOARD reach the clipboard.
    if (e.Host && MemeTexteMaj(c.NomVar[slot], u"%CLIPBOARD"))
        e.Host->EcritPressePapier(valeur);
    if (valeur == QLatin1String("CLIPBOARD") && e.Host) c.ValVar[slot] = e.Host->PressePapier();
}

// The stored spelling of a name: the text of its first assignment, the
// spaces and what follows taken off.
QString Orthographe(const QString& nom) {
    QString n = Trim(nom);
    const int eg = InStr(n, QStringLiteral("="));
    if (eg > 0) n = Left(n, eg - 1);
    const int bl = InStr(Trim(n), QStringLiteral(" "));
    n = Trim(n);
    return bl > 0 ? Left(n, bl - 1) : n;
}

// A free or new slot at a level, as `CreeVar` takes it. `avale` is set when
// the slot is reused with a pending `SauteVar`: the slot takes the name, and
// the value already there (a parameter passed by position) stays.
int SlotPourCreation(Etat& e, int niveau, bool& avale) {
    avale = false;
    CtxFic& c = e.PileFic[niveau];
    if (niveau == 1) {
        // A line failure with no text of its own.
        if (c.NbVar >= std::min(c.MaxVar, MaxVarAbsolu)) Echec(e, QString());
        return ++c.NbVar;
    }
    if (niveau >= 2) {
        for (int i = c.DebutLocales + 1; i <= c.NbVar; ++i) {
            if (!c.NomVar[i].isEmpty()) continue;
            if (c.SauteVar[i] > 0 && !e.StopArgVu) {
                --c.SauteVar[i];
                avale = true;
            }
            return i;
        }
    }
    if (c.NbVar >= MaxVarAbsolu) throw ErreurExecution("Subscript out of range");
    return ++c.NbVar;
}

QString Fichier(const QString& chemin) { return QFileInfo(chemin).fileName(); }

QString Dossier(const QString& chemin) {
    if (chemin.isEmpty()) return QString();
    QString d = QFileInfo(chemin).absolutePath();
    return d.endsWith(u'/') ? d : d + u'/';
}

QString CouleurTexte(int c, bool troisChiffres) {
    if (c < 0) return QStringLiteral("N");
    auto n = [&](int v) {
        return troisChiffres ? QStringLiteral("%1").arg(v, 3, 10, QLatin1Char('0'))
                             : QString::number(v);
    };
    return QStringLiteral("RVB ") + n(c & 0xFF) + u' ' + n((c >> 8) & 0xFF) + u' ' +
           n((c >> 16) & 0xFF);
}

bool EstNombre(const QString& t) {
    bool ok = false;
    t.toDouble(&ok);
    return ok;
}

// Characters p up to fin (1-based, fin excluded, p <= fin) replaced by a
// value, in place.
void RemplacePar(QString& texte, int p, int fin, const QString& valeur) {
    texte.replace(p - 1, std::min(fin, Len(texte) + 1) - p, valeur);
}

// The list index forms of RemplaceVar, at `p` (the "%"); true when one
// was replaced.
bool FormeIndex(Etat& e, QString& texte, int p) {
    const int paren = InStr(p, texte, QStringLiteral("("));
    if (paren == 0) return false;
    const QString nom = Mid(texte, p, paren - p);
    if (nom.size() < 2) return false;
    for (QChar ch : nom.mid(1))
        if (!(ch.isLetterOrNumber() || ch == u'_' || ch == u'$' || ch == u'#')) return false;
    const int slot = ChercheVar(e, nom, e.NiveauCourant);
    if (slot == 0) return false;
    const int ferme = InStr(paren, texte, QStringLiteral(")"));
    if (ferme == 0) return false;
    QString interieur = Mid(texte, paren + 1, ferme - paren - 1);
    const QString valeur = e.Ctx().ValVar[slot];
    // A form whose separator or item names its own list would never end.
    if (e.ItemsEnCours >= MaxItemsEnCours) Echec(e, QString());
    ++e.ItemsEnCours;
    const auto finItem = qScopeGuard([&] { --e.ItemsEnCours; });
    enum { Parametre, Caractere, SousParametre } genre = Parametre;
    QString sep = e.Separateur2;
    if (interieur.startsWith(u'#')) {
        genre = Caractere;
        interieur = interieur.mid(1);
    } else if (interieur.startsWith(QStringLiteral("§\""))) {
        genre = SousParametre;
        const int fin = InStr(3, interieur, QStringLiteral("\""));
        if (fin == 0) return false;
        sep = Mid(interieur, 3, fin - 3);
        if (sep.size() > 1 && InStr(2, sep, QStringLiteral("%")) > 0) RemplaceVar(e, sep);
        interieur = Mid(interieur, fin + 1);
    } else if (interieur.startsWith(u'§')) {
        genre = SousParametre; // split on the second separator, whatever it is now
        interieur = interieur.mid(1);
    }
    QString index = Trim(interieur);
    if (index.startsWith(u'%')) {
        const int s = ChercheVar(e, index, e.NiveauCourant);
        if (s > 0) index = Trim(e.Ctx().ValVar[s]);
    }
    if (!EstNombre(index)) return false;
    const int n = int(std::lround(index.toDouble()));
    // The item is read as a parameter is, its variables and text functions
    // first, so that text behind the form cannot join a name in it.
    QString item;
    switch (genre) {
    case Caractere:
        item = Mid(valeur, n, 1);
        break;
    // Only an index above the count fails; a negative one runs to the end of
    // the value, as a parameter reader's does, and 0 is the empty text.
    case Parametre:
        if (n > NbPara(e, valeur)) Echec(e, QString());
        item = ParaN(e, valeur, int(n));
        break;
    case SousParametre:
        if (n > NbSousPara(valeur, sep)) Echec(e, QString());
        item = SousPara(e, valeur, n, sep);
        break;
    }
    texte = Left(texte, p - 1) + item + Mid(texte, ferme + 1);
    return true;
}

} // namespace

QString TexteNonInitialisee(const QString& nom) {
    return nom + QStringLiteral(" : non initialisée / not initialized / nicht initialisiert") +
           CrLf() + CrLf();
}

void EchecNonInitialisee(Etat& e, const QString& nom) {
    e.TexteErreur = TexteNonInitialisee(nom);
    throw ErreurProvoquee("variable non initialisée");
}

namespace {

// The characters at which a variable's name ends, besides the separators.
constexpr std::u16string_view FinsDeNom = u"= \u00B0+-*/^)<>\"";

// The name at the start of a text: upper-cased, trimmed, and cut at the first
// character that ends a name (operators, blanks, the separators as they are,
// so that a lower-case letter as separator cuts no name). Names of plain
// ASCII letters with single-character separators are found in place, as
// written; anything else takes the general path, which upper-cases the whole
// text first, as that may change its length, and keeps it in `tampon`.
QStringView NomEnTete(const Etat& e, QStringView texte, QString& tampon) {
    const QString& s1 = e.Separateur1;
    const QString& s2 = e.Separateur2;
    if (s1.size() == 1 && s2.size() == 1) {
        const QChar sep1 = s1[0], sep2 = s2[0];
        auto coupe = [&](QChar ch) { return FinsDeNom.find(ch.unicode()) != std::u16string_view::npos || ch == sep1 || ch == sep2; };
        int debut = 0;
        while (debut < texte.size() && texte[debut] == u' ') ++debut;
        int fin = debut;
        bool ascii = true;
        for (; fin < texte.size(); ++fin) {
            // Letters other than ASCII may upper-case to another length ("ß")
            // or to an ASCII letter ("ı"): the general path takes them. Other
            // characters ("§", "°") upper-case to themselves.
            const QChar ch = texte[fin];
            const bool autre = ch.unicode() >= 0x80;
            if (autre && ch.isLetter()) {
                ascii = false;
                break;
            }
            if (coupe(ch.toUpper())) break;
            if (autre) {
                ascii = false;
                break;
            }
        }
        if (ascii) return texte.mid(debut, fin - debut);
    }
    QString t = Trim(texte.toString().toUpper());
    QStringList coupures = {s1, s2};
    for (char16_t c : FinsDeNom) coupures << QString(QChar(c));
    for (const QString& cp : coupures) {
        const int i = InStr(t, cp);
        if (i > 0) t = Left(t, i - 1);
    }
    tampon = t;
    return tampon;
}

} // namespace

int ChercheVar(Etat& e, QStringView texte, int niveau) {
    const CtxFic& c = e.PileFic[niveau];
    if (c.NbVar == 0) return 0;
    QString tampon;
    const QStringView t = NomEnTete(e, texte, tampon);
    for (int i = 1; i <= c.NbVar; ++i)
        if (!c.NomVar[i].isEmpty() && MemeTexteMaj(c.NomVar[i], t)) return i;
    return 0;
}

QString NomVar(const QString& texte) {
    QString t = Trim(texte.toUpper());
    int i = InStr(t, QStringLiteral("="));
    if (i > 0) t = Left(t, i - 1);
    i = InStr(t, QStringLiteral(" "));
    if (i > 0) t = Left(t, i - 1);
    return t;
}

void CreeVar(Etat& e, const QString& nom, const QString& valeur, int& index) {
    const int niveau = e.NiveauCourant;
    bool avale = false;
    index = SlotPourCreation(e, niveau, avale);
    CtxFic& c = e.PileFic[niveau];
    c.NomVar[index] = Orthographe(nom);
    if (avale) return; // the value passed in stays
    c.SauteVar[index] = 0;
    Stocke(e, niveau, index, TraiteValeur(e, valeur));
}

void CreeVarBrute(Etat& e, const QString& nom, const QString& valeur) {
    const int niveau = e.NiveauCourant;
    bool avale = false;
    const int index = SlotPourCreation(e, niveau, avale);
    CtxFic& c = e.PileFic[niveau];
    c.NomVar[index] = Orthographe(nom);
    if (avale) return;
    c.SauteVar[index] = 0;
    Stocke(e, niveau, index, valeur);
}

bool LitVar(Etat& e, int niveau, const QString& nom, QString& valeur) {
    const int s = ChercheVar(e, nom, niveau);
    if (s == 0) return false;
    valeur = e.PileFic[niveau].ValVar[s];
    return true;
}

void EcritVarTxt(Etat& e, int niveau, const QString& nom, const QString& valeur) {
    QString n = nom;
    if (niveau >= 2 && n.startsWith(MarquePartage, Qt::CaseInsensitive)) {
        niveau = 0;
        n = u'%' + n.mid(MarquePartage.size());
    }
    CtxFic& c = e.PileFic[niveau];
    int slot = ChercheVar(e, n, niveau);
    if (slot == 0) {
        if (c.NbVar >= MaxVarAbsolu) throw ErreurExecution("Subscript out of range");
        slot = ++c.NbVar;
        c.NomVar[slot] = Orthographe(n);
        c.SauteVar[slot] = 0;
    }
    Stocke(e, niveau, slot, valeur);
}

void EcritVarNum(Etat& e, int niveau, const QString& nom, double valeur) {
    EcritVarTxt(e, niveau, nom, StrF(float(valeur)).replace(u',', u'.'));
}

bool VarPredefinie(Etat& e, QStringView texte, QString& valeur, int& longueur) {
    // The longest name has five characters: the upper case of the first five
    // starts the upper case of the whole text.
    const QString h = texte.left(5).toString().toUpper();
    const CtxFic& c = e.Ctx();
    Surface* s = e.Surf;
    const bool imprimante = s && s->EstImprimante();
    auto essaie = [&](int n, const char* nom) { return h.startsWith(QLatin1String(nom)) && (longueur = n); };
    // Five characters first, then four, then three; no check of where the name ends.
    if (essaie(5, "%IREC")) valeur = QString::number(e.NiveauCourant);
    else if (essaie(5, "%FILE")) valeur = Fichier(e.NiveauCourant == 1 ? e.FichierPrincipal : c.Nom);
    else if (essaie(5, "%FIL1")) valeur = e.NiveauCourant == 1 ? QString() : Fichier(e.FichierPrincipal);
    else if (essaie(5, "%PATH")) valeur = Dossier(e.FichierPrincipal);
    else if (essaie(5, "%DATE")) valeur = QLocale().toString(QDate::currentDate(), QLocale::ShortFormat);
    else if (essaie(5, "%ZOOM")) valeur = StrF(imprimante ? e.Repere.ZoomI : e.Repere.ZoomE);
    else if (essaie(5, "%FCMM")) valeur = StrF(e.Regl ? e.Regl->Zmm : 1.0f);
    else if (essaie(5, "%COUL")) valeur = CouleurTexte(e.Styles.CouleurDefaut, false);
    else if (essaie(4, "%IMP")) valeur = imprimante ? QStringLiteral("1") : QStringLiteral("0");
    else if (essaie(4, "%EOF")) valeur = c.FicDonnees.isEmpty() ? QStringLiteral("1") : QStringLiteral("0");
    else if (essaie(4, "%TAP")) valeur = Trim(StrF(float(e.Txt.TaillePolice * c.CoefTaille)));
    else if (essaie(4, "%EPT")) valeur = StrF(float(std::round(e.Styles.EpaisCourante * (s ? s->MmParPixel() : 0.25) * 100) / 100));
    else if (essaie(4, "%CEX")) valeur = StrF(float(e.Repere.OrigineX));
    else if (essaie(4, "%CEY")) valeur = StrF(float(e.Repere.OrigineY));
    else if (essaie(4, "%CTX")) valeur = StrF(e.Repere.CTx);
    else if (essaie(4, "%CTY")) valeur = StrF(e.Repere.CTy);
    else if (essaie(4, "%POL")) valeur = s ? s->Font.Name : QStringLiteral("Times New Roman");
    else if (essaie(4, "%AR0")) valeur = StrF(-e.Repere.AngRotDefaut);
    else if (essaie(3, "%CR")) valeur = QStringLiteral("\r");
    else if (essaie(3, "%LF")) valeur = QStringLiteral("\n");
    else if (essaie(3, "%PI")) valeur = QStringLiteral("3.14159265358979");
    else return false;
    return true;
}

int RemplaceVar(Etat& e, QString& texte) {
    // 1. VAR( forms, from the last to the first (upper-casing never makes a "(").
    const bool parenthese = texte.contains(u'(');
    for (int p = parenthese ? InStrRev(texte.toUpper(), QStringLiteral("VAR(")) : 0; p > 0;
         p = p > 1 ? InStrRev(texte.toUpper(), QStringLiteral("VAR("), p - 1) : 0) {
        int fin = InStr(p + 4, texte, QStringLiteral(")"));
        if (fin == 0) fin = Len(texte) + 1;
        const QString nom = Trim(Mid(texte, p + 4, fin - p - 4)).toUpper();
        const int slot = ChercheVar(e, nom, e.NiveauCourant);
        if (slot == 0) continue;
        QString v = e.Ctx().ValVar[slot];
        v.replace(u'%', PourcentCache);
        texte = Left(texte, p - 1) + v + Mid(texte, fin + 1);
    }

    int resultat = 0, substitutions = 0;
    // A text grown beyond its limit fails the line, and so do values that
    // name each other through "=<", which would never end.
    auto apresRemplacement = [&] {
        if (Len(texte) > LongueurMaxSubstitution) Echec(e, QString());
        if (++substitutions > MaxSubstitutions) Echec(e, QString());
    };
    int p = InStr(texte, QStringLiteral("%"));
    while (p > 0 && p < Len(texte)) {
        if (texte[p] == u' ') { // "% " is no variable and no fault
            p = InStr(p + 1, texte, QStringLiteral("%"));
            continue;
        }
        // a. The scope markers ("%IRE$..."; a name whose first letter is
        // plain ASCII other than I is none).
        const QChar premiere = texte[p];
        const bool peutEtreMarque = premiere == u'I' || premiere == u'i' || premiere.unicode() >= 0x80;
        const QString marque = peutEtreMarque ? Mid(texte, p, 7).toUpper() : QString();
        if (peutEtreMarque && (marque == MarqueAppelant || marque == MarquePartage)) {
            const int niveau = NiveauPortee(e, marque);
            const QString nom = u'%' + Mid(texte, p + 7);
            const int slot = ChercheVar(e, nom, niveau);
            int fin = p + 7;
            if (slot > 0) {
                fin += Len(e.PileFic[niveau].NomVar[slot]) - 1;
                RemplacePar(texte, p, fin, e.PileFic[niveau].ValVar[slot]);
            } else {
                static const QString lettres = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_");
                while (fin <= Len(texte) && lettres.contains(texte[fin - 1].toUpper())) ++fin;
                texte = Left(texte, p - 1) + Mid(texte, fin);
                if (texte.endsWith(u'+') || texte.endsWith(u'-')) texte.chop(1);
            }
            if (Len(texte) > LongueurMaxSubstitution) Echec(e, QString());
            p = InStr(p, texte, QStringLiteral("%"));
            continue;
        }
        // b. The name at this level.
        const int slot = ChercheVar(e, QStringView(texte).mid(p - 1), e.NiveauCourant);
        if (slot > 0) {
            const CtxFic& c = e.Ctx();
            const QString nom = c.NomVar[slot];
            const int fin = p + Len(nom); // first character after the name
            QString valeur;
            if (!e.VarListeCourante.isEmpty() && MemeTexteMaj(nom, e.VarListeCourante)) {
                valeur = e.ItemListeCourant; // d. the list being stepped
            } else {
                valeur = c.ValVar[slot];
                // c. The guard against endless substitution.
                const QStringView suite = TrimVue(QStringView(texte).mid(std::min<qsizetype>(fin - 1, texte.size())));
                if ((!valeur.isEmpty() && TrimVue(valeur) == suite) || MemeTexteMaj(valeur, nom))
                    Echec(e, QString()); // a line failure with no text of its own
            }
            int apres = fin;
            if (Mid(texte, fin, 1) == QLatin1String(" ")) {
                const QString s = Mid(texte, fin, 4).toUpper();
                if (s != QLatin1String(" AND") && s != QLatin1String(" OR ")) ++apres;
            }
            RemplacePar(texte, p, apres, valeur);
            apresRemplacement();
            p = InStr(p, texte, QStringLiteral("%")); // restart at the same place
            continue;
        }
        // e. The list index forms.
        if (FormeIndex(e, texte, p)) {
            apresRemplacement();
            p = InStr(p, texte, QStringLiteral("%"));
            continue;
        }
        // f. The predefined variables.
        QString valeur;
        int longueur = 0;
        if (VarPredefinie(e, QStringView(texte).mid(p - 1), valeur, longueur)) {
            RemplacePar(texte, p, p + longueur, valeur);
            p = InStr(p + Len(valeur), texte, QStringLiteral("%"));
            continue;
        }
        // g. Undefined: the "%" stays.
        resultat = 1;
        p = InStr(p + 1, texte, QStringLiteral("%"));
    }
    if (texte.contains(PourcentCache)) texte.replace(PourcentCache, QStringLiteral("%"));
    return resultat;
}

void RazVars(Etat& e, int niveau) {
    CtxFic& c = e.PileFic[niveau];
    for (int i = 0; i <= MaxVarAbsolu; ++i) {
        c.NomVar[i].clear();
        c.ValVar[i].clear();
        c.SauteVar[i] = 0;
    }
    c.NbVar = 0;
    c.DebutLocales = 0;
}

void RazCtxFic(Etat& e, int niveau) {
    e.PileFic[niveau] = CtxFic();
    RazVars(e, niveau);
}

void Affectation(Etat& e) {
    CtxFic& c = e.Ctx();
    const QString mot = c.Mot;
    const QString marque = Left(mot, 7);
    // The caller's level and the shared level.
    if (marque == MarqueAppelant || marque == MarquePartage) {
        if (e.NiveauCourant < 2) {
            if (marque == MarqueAppelant) return; // at level 1 the line does nothing
        } else {
            const int niveau = NiveauPortee(e, marque);
            const QString nom = u'%' + Mid(e.NomAffecte, 8);
            const int slot = ChercheVar(e, nom, niveau);
            // Read at this level: its VAR( forms take this level's values.
            const QString valeur = TraiteValeur(e, ValeurLigne(e, false));
            if (slot > 0) {
                Stocke(e, niveau, slot, valeur);
            } else {
                const int garde = e.NiveauCourant;
                e.NiveauCourant = niveau;
                int index = 0;
                bool avale = false;
                try {
                    index = SlotPourCreation(e, niveau, avale);
                } catch (...) {
                    e.NiveauCourant = garde;
                    throw;
                }
                e.NiveauCourant = garde;
                e.PileFic[niveau].NomVar[index] = Orthographe(nom);
                if (!avale) {
                    e.PileFic[niveau].SauteVar[index] = 0;
                    Stocke(e, niveau, index, valeur);
                }
            }
            return;
        }
    }
    // The name at the level.
    const int slot = ChercheVar(e, mot, e.NiveauCourant);
    if (slot == 0) {
        int index = 0;
        CreeVar(e, e.NomAffecte, ValeurLigne(e, true), index);
        return;
    }
    // A parameter passed by the caller swallows its default.
    if (c.SauteVar[slot] > 0 && !e.StopArgVu) {
        --c.SauteVar[slot];
        return;
    }
    Stocke(e, e.NiveauCourant, slot, TraiteValeur(e, ValeurLigne(e, false)));
}

void CmdStopArg(Etat& e) { e.StopArgVu = true; }

QString ListeVars(Etat& e, int niveau) {
    const int garde = e.NiveauCourant;
    e.NiveauCourant = niveau;
    auto entree = [&](const char* nom) {
        QString v;
        int l = 0;
        VarPredefinie(e, QString::fromLatin1(nom), v, l);
        // The predefined names are listed in their own spelling (%iRec, %TaP).
        return QLatin1String(nom) + QStringLiteral("\t= ") + v;
    };
    auto paire = [&](const QString& a, const QString& b) { return a + u'\t' + b + CrLf(); };
    const CtxFic& c = e.PileFic[niveau];
    QString t;
    t += paire(entree("%iRec"), entree("%Date"));
    t += paire(entree("%File"), entree("%Path"));
    t += paire(entree("%Fil1"), c.FicDonnees.isEmpty() ? entree("%EOF") : QStringLiteral("%EOF = 0"));
    t += paire(entree("%TaP"), entree("%Pol"));
    t += paire(entree("%EpT"), QStringLiteral("%Coul\t= ") + CouleurTexte(e.Styles.CouleurDefaut, true));
    t += paire(entree("%CEx"), entree("%CEy"));
    t += paire(entree("%CTx"), entree("%CTy"));
    t += paire(entree("%Zoom"), entree("%Imp"));
    t += entree("%AR0") + CrLf();
    for (int i = 1; i <= c.NbVar; ++i)
        if (!c.NomVar[i].isEmpty()) t += c.NomVar[i] + QStringLiteral("\t= ") + c.ValVar[i] + CrLf();
    e.NiveauCourant = garde;
    return t;
}
