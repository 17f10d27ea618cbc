// The run driver `Visualiser` and the command loop `Interprete`.
#include "language/interprete.h"

#include "drawing/surface.h"
#include "language/chaines.h"
#include "language/commandes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/flux.h"
#include "language/hote.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"

#include <QFile>
#include <QScopeGuard>

#include <array>

using namespace vb;

namespace {

// Message n in the configured language of the messages.
QString Chaine(const Etat& e, int n) { return LoadResString(n + (e.Regl ? e.Regl->LangueMessages : 0)); }

// Whether the physical line from `debut` to `fin` (1-based, `fin` excluded)
// is blank or a comment and continues on no other line: it is passed over
// without being copied (the included command files are mostly comments).
bool CommentaireOuVide(const QString& texte, int debut, int fin) {
    if (fin > debut && texte[fin - 2] == u'_') return false; // maybe continued: the full reading
    for (int i = debut - 1; i < fin - 1; ++i) {
        const QChar ch = texte[i];
        if (ch == u' ' || ch == u'\t') continue;
        return ch == u'\'';
    }
    return true;
}

// Fetches the next logical line. Returns false when the text is finished.
// On return LigneCourante holds the logical line, PosDebut and FinLigne frame it.
// `stable` is cleared when the line came from a variable (a stored command),
// `brute` set when a physical line was read.
bool LitLigneTexte(Etat& e, CtxFic& c, bool& stable, bool& brute) {
    const QString& texte = c.Texte;
    const int longueur = Len(texte);
    for (;;) {
        // A Goto to an unknown label left Pos at 0: the fetch fails.
        if (c.Pos < 1) throw ErreurExecution("Invalid procedure call or argument");
        int fin = InStr(c.Pos, texte, CrLf());
        if (fin == 0) {
            if (c.Pos > longueur) return false;
            fin = longueur + 1;
        }
        c.FinLigne = Entier16(fin);
        if (CommentaireOuVide(texte, c.Pos, fin)) {
            c.PosDebut = c.Pos;
            c.Pos = Entier16(c.FinLigne + 2);
            continue;
        }
        QString physique = Mid(texte, c.Pos, c.FinLigne - c.Pos);
        c.LigneBruteThen = physique; // the raw line, for a one-line Then
        brute = true;
        QString ligne = LTrim(QString(physique).replace(u'\t', u' '));
        // A lone "_" continues like " _" (and Pos moves back by one).
        if (ligne == QLatin1String("_")) {
            ligne = QStringLiteral(" _");
            c.Pos = Entier16(c.Pos - 1);
        }
        c.PosDebut = c.Pos;
        while (ligne.endsWith(QLatin1String(" _"))) {
            ligne.chop(2);
            const int suite = c.FinLigne + 2;
            if (suite > longueur) {
                // The text ends during a continuation: the line fails.
                c.PosFin = c.FinLigne;
                const int debutDerniere = InStrRev(texte, CrLf(), c.FinLigne - 1);
                c.PosDebut = Entier16(debutDerniere == 0 ? 1 : debutDerniere + 2);
                c.Ligne = ligne;
                throw ErreurProvoquee("continuation");
            }
            int f = InStr(suite, texte, CrLf());
            if (f == 0) f = longueur + 1;
            ligne += LTrim(Mid(texte, suite, f - suite));
            c.FinLigne = Entier16(f);
        }
        ligne.replace(u'\t', u' ');
        c.Pos = Entier16(c.FinLigne + 2);
        // A "%name" line without "=" is a stored command.
        QString net = Trim(ligne);
        if (net.startsWith(u'%') && !net.contains(u'=')) {
            stable = false;
            QString valeur;
            if (!LitVar(e, e.NiveauCourant, net, valeur)) {
                c.Ligne = ligne;
                c.PosFin = c.FinLigne;
                EchecNonInitialisee(e, net);
            }
            ligne = net = Trim(valeur);
        }
        if (net.isEmpty() || net.startsWith(u'\'')) continue;
        e.LigneCourante = ligne;
        return true;
    }
}

// The fetch from a position of a text always finds the same line, unless
// the line is a stored command: the lines of a text that a run enters again
// are found read. A text is known by its characters' storage, which the
// entry keeps, so that no other text can take its place.
bool LitLigne(Etat& e, CtxFic& c) {
    if (e.ArretDemande) return true; // the caller tests it and ends the level
    bool stable = true, brute = false;
    // A position beyond the text reads nothing and leaves the line's frame as
    // it was; a plot symbol's text is made again at each point.
    if (c.Pos > Len(c.Texte) || c.Texte.constData() == e.Inclusion.TexteSymbole.constData())
        return LitLigneTexte(e, c, stable, brute);
    auto texte = e.TextesLus.find(c.Texte.constData());
    if (texte == e.TextesLus.end())
        texte = e.TextesLus.Garde(c.Texte.constData(), Etat::LignesDuTexte{c.Texte, {}});
    const int depart = c.Pos;
    if (const auto lue = texte->Lignes.constFind(depart); lue != texte->Lignes.cend()) {
        c.Pos = lue->Pos;
        c.FinLigne = lue->FinLigne;
        c.PosDebut = lue->PosDebut;
        if (lue->Brute) c.LigneBruteThen = lue->LigneBruteThen;
        if (lue->Trouvee) e.LigneCourante = lue->Ligne;
        return lue->Trouvee;
    }
    const bool trouvee = LitLigneTexte(e, c, stable, brute);
    if (stable)
        texte->Lignes.insert(depart, Etat::LigneLue{c.Pos, c.FinLigne, c.PosDebut, trouvee, brute,
                                                    brute ? c.LigneBruteThen : QString(),
                                                    trouvee ? e.LigneCourante : QString()});
    return trouvee;
}

// Removes the comment of the line, except for the commands whose text may hold "'".
void OteCommentaire(Etat& e, const QString& mot) {
    QString& l = e.LigneCourante;
    const int q = InStr(l, QStringLiteral("'"));
    if (q == 0) return;
    if (mot == QLatin1String("TEXTE") || mot == QLatin1String("TEXTEC") ||
        mot == QLatin1String("LISTEVAR") || mot == QLatin1String("PRINTA") ||
        mot == QLatin1String("INPUT"))
        return;
    if (mot.startsWith(QLatin1String("VAL1")) || (mot.startsWith(u'%') && q != 1)) {
        // "'" in the middle of "'" passes; the text is cut at the first other one.
        int p = q;
        while (p > 0 && p > 1 && Mid(l, p - 1, 3) == QLatin1String("\"'\""))
            p = InStr(p + 1, l, QStringLiteral("'"));
        if (p > 0) l = Left(l, p - 1);
        l.replace(QLatin1String("\"'\""), QLatin1String("'"));
        return;
    }
    l = Left(l, q - 1);
}

// Classification of a fetched line: Mot, OperAffect, LigneCourante.
// `calcule` tells whether the keyword came from variables.
void ClasseLigne(Etat& e, CtxFic& c, bool& calcule) {
    c.Ligne = e.LigneCourante;
    c.PosFin = c.FinLigne;
    const QString ligne = e.LigneCourante;
    int coupe = 0;
    if (!CommenceMaj(ligne, QLatin1String("IF")) && !CommenceMaj(ligne, QLatin1String("ELSEIF")))
        coupe = InStr(ligne, QStringLiteral("="));
    if (coupe == 0) {
        const int debut = Len(ligne) - Len(LTrim(ligne)) + 1;
        coupe = InStr(debut, ligne, QStringLiteral(" "));
        if (coupe == 0) coupe = Len(ligne) + 1;
    }
    e.NomAffecte = Trim(Left(ligne, coupe - 1));
    QString mot = e.NomAffecte.toUpper();
    e.OperAffect.clear();
    e.LigneCourante = Mid(ligne, coupe + 1);
    if (mot.startsWith(u'%')) {
        const QString suivant = Mid(ligne, coupe + 1, 1);
        if (suivant == QLatin1String("<") || suivant == QLatin1String("=")) {
            e.OperAffect = suivant;
            e.LigneCourante = Mid(ligne, coupe + 2);
        }
    }
    OteCommentaire(e, mot);
    // A keyword may be computed from variables.
    calcule = mot.size() >= 2 && InStr(2, mot, QStringLiteral("%")) > 0;
    if (calcule) {
        QString m = e.NomAffecte;
        RemplaceVar(e, m);
        m.remove(u' ');
        mot = m.toUpper();
        e.NomAffecte = m;
    }
    if (mot.startsWith(u'!')) mot = QStringLiteral("!");
    c.Mot = mot;
}

// The classification depends on the line's text alone, unless its keyword
// comes from variables: the lines of a run that comes again are found
// classified.
void Classe(Etat& e, CtxFic& c) {
    if (const auto connue = e.LignesClassees.constFind(e.LigneCourante); connue != e.LignesClassees.cend()) {
        c.Ligne = e.LigneCourante;
        c.PosFin = c.FinLigne;
        c.Mot = connue->Mot;
        e.NomAffecte = connue->NomAffecte;
        e.OperAffect = connue->OperAffect;
        e.LigneCourante = connue->Reste;
        return;
    }
    const QString ligne = e.LigneCourante;
    bool calcule = false;
    ClasseLigne(e, c, calcule);
    if (calcule || ligne.size() > Etat::LongueurMaxConnue) return;
    e.LignesClassees.Garde(ligne, Etat::LigneClassee{c.Mot, e.NomAffecte, e.OperAffect, e.LigneCourante});
}

// The routine of a keyword; false when the keyword is none of the table.
bool Dispatch(Etat& e, const QString& mot) {
    const Commande* cmd = TrouveCommande(mot);
    if (!cmd) return false;
    cmd->routine(e);
    return true;
}

// Runs the line: a table keyword, an assignment, a label or an external command.
void Execute(Etat& e, CtxFic& c) {
    const QString& mot = c.Mot;
    if (Dispatch(e, mot)) return;
    if (mot.startsWith(u'%')) {
        Affectation(e);
        return;
    }
    if (mot.endsWith(u':')) return; // a label
    if (e.Regl) {
        const QStringList& ext = e.Regl->CommandesExternes;
        for (int i = 0; i < ext.size(); ++i) {
            if (ext[i].toUpper() != mot) continue;
            e.EtatOrdre |= 8 | 64;
            e.LigneCourante = ext[i] + u' ' + e.Separateur1 + e.LigneCourante;
            if (AppelFichier(e, e.NiveauCourant, i + 1) < 0) e.FinNiveauDemandee = true;
            return;
        }
    }
    throw ErreurCommande();
}

// Entry of a level: separators, text ratios, labels and limits reset.
void EntreeNiveau(Etat& e, int niveau) {
    CtxFic& c = e.PileFic[niveau];
    e.NumFicPrintA = 0;
    e.FicPrintA.reset();
    e.Separateur1 = QStringLiteral(",");
    e.Separateur2 = QStringLiteral("§");
    c.Separateur1 = e.Separateur1;
    c.Separateur2 = e.Separateur2;
    if (niveau == 1) {
        e.Repere.RefCurX = e.Repere.RefCurY = e.Repere.RefCurAngle = QStringLiteral("0");
    }
    e.Txt.ForceBase = e.Txt.ForceMilieu = e.Txt.ForceHaut = 0;
    e.Txt.CoefBase = 0.8f;
    e.Txt.CoefMilieu = 0.3f;
    e.Txt.CoefHaut = 0.91f;
    e.NiveauCourant = niveau;
    ScanEtiquettes(e, niveau);
    if (c.MaxVar == 0) c.MaxVar = 33;
    c.MaxSi = 2;
    c.MaxPlot = 50100;
    c.CoefTaille = 1.0f;
    if (niveau == 1) {
        RazVars(e, 1);
        e.EtatOrdre = 0;
    }
    c.DebutLocales = 0;
    c.Pos = c.PosDebut = c.PosFin = 1;
    c.CoefExposant = 1.0f;
    c.EchelleLog = false;
    EntreeNiveauDessin(e, niveau);
}

// The failure handler: marks the line and shows the box of the failure.
// The printer's failure: the rest of the run draws on the pane, and the box
// names no line.
void PanneImprimante(Etat& e) {
    e.TexteErreur.clear();
    if (e.ArretDemande) return;
    e.Surf = e.Pane;
    ++e.ErreursAffichees;
    if (e.Host)
        e.Host->Message(QStringLiteral("Mirel"), CrLf() + QStringLiteral("Erreur d'imprimante [Printer error]") + CrLf(),
                        Boutons::Ok);
}

void Gestionnaire(Etat& e, int niveau) {
    if (e.ArretDemande) {
        e.TexteErreur.clear();
        return;
    }
    Hote* h = e.Host;
    CtxFic& c = e.PileFic[niveau];
    // Mark the line: at level 1 the current line, below it the Fichier line of level 1.
    const CtxFic& m = e.PileFic[1];
    int longueur = m.PosFin - m.PosDebut;
    if (longueur <= 0) longueur = m.FinLigne - m.PosDebut;
    if (longueur <= 0) longueur = 5;
    const int ligne = h ? h->MarqueErreur(m.PosDebut - 1, longueur) : 0;
    // The listing and the file-not-found text.
    const QString liste = ListeVars(e, niveau);
    const QString nonTrouve = RaisonNonTrouve(e);
    Reponse r = Reponse::Ok;
    ++e.ErreursAffichees;
    if (niveau == 1) {
        if (e.EtatOrdre < 0) {
            const QString t = Chaine(e, 119) + QString::number(ligne) + QStringLiteral(": ") +
                              c.Ligne + CrLf() + Chaine(e, 161) + CrLf();
            if (h) h->Message(QStringLiteral("Mirel"), t, Boutons::Ok);
        } else {
            const QString t = Chaine(e, 114) + QString::number(ligne) + QStringLiteral(": ") +
                              c.Ligne + CrLf() + CrLf() + e.TexteErreur + nonTrouve + liste;
            if (h) h->Message(QStringLiteral("Mirel    (nb Var=%1)").arg(c.NbVar), t, Boutons::Ok);
        }
    } else {
        QString t;
        if (c.Nom.section(u'.', -1).toUpper() == QLatin1String("DMK") && c.Nom.contains(u'.')) {
            // The insides of a coded file stay unshown.
            t = Chaine(e, 114) + QString::number(ligne) + QStringLiteral(", dans le fichier: ") +
                c.Nom + CrLf() + nonTrouve + CrLf();
        } else {
            t = Chaine(e, 114) + c.Ligne + QStringLiteral(" du fichier: ") + c.Nom + CrLf() +
                CrLf() + nonTrouve + liste;
        }
        if (h) r = h->Message(QStringLiteral("Mirel    (nb Var=%1)").arg(c.NbVar), t, Boutons::OkAnnuler);
    }
    e.TexteErreur.clear();
    e.FichierNonTrouve = false;
    // Cancel below level 1 stops the whole run, through the "Loop" name.
    if (r == Reponse::Annuler) e.PileFic[5].Nom = QStringLiteral("Loop");
}

// The command error: no keyword matched.
void ErreurDeCommande(Etat& e, int niveau) {
    if (e.ArretDemande) return;
    Hote* h = e.Host;
    CtxFic& c = e.PileFic[niveau];
    ++e.ErreursAffichees;
    if (niveau == 1) {
        int longueur = c.PosFin - c.PosDebut;
        if (longueur <= 0) longueur = c.FinLigne - c.PosDebut;
        if (longueur <= 0) longueur = 5;
        const int ligne = h ? h->MarqueErreur(c.PosDebut - 1, longueur) : 0;
        if (h)
            h->Message(QStringLiteral("Mirel"),
                       Chaine(e, 124) + QString::number(ligne) + QStringLiteral(": ") + c.Ligne + CrLf(),
                       Boutons::Ok);
    } else if (h) {
        h->Message(QStringLiteral("Mirel"), Chaine(e, 124) + c.Ligne + Chaine(e, 115) + c.Nom + CrLf(),
                   Boutons::Ok);
    }
    e.TexteErreur.clear();
}

// End of a level after a normal end: the drawing's part, then an If block
// left open is reported.
void FinNiveau(Etat& e, int niveau) {
    FinNiveauDessin(e, niveau);
    CtxFic& c = e.PileFic[niveau];
    if (c.NivSi > 0 && !e.ArretDemande && e.Host && ++e.ErreursAffichees)
        e.Host->Message(QStringLiteral("Mirel"), Chaine(e, 127), Boutons::Ok);
}

} // namespace

void FermeFichiers(Etat& e) {
    for (CtxFic& c : e.PileFic) {
        if (c.Donnees) c.Donnees->close();
        c.Donnees.reset();
    }
    if (e.FicPrintA) e.FicPrintA->close();
    e.FicPrintA.reset();
    e.NumFicPrintA = 0;
}

QString RaisonNonTrouve(const Etat& e) {
    if (!e.FichierNonTrouve) return QString();
    return e.NomFichierNonTrouve + QStringLiteral(" : fichier non trouvé [File not found]") + CrLf() + CrLf();
}

int LigneEditeurCourante(Etat& e) {
    const CtxFic& c = e.PileFic[1];
    return e.Host ? e.Host->LigneDe(c.PosDebut - 1) : 0;
}

void Interprete(Etat& e, int& niveau) {
    if (e.PileFic[1].Texte.isEmpty()) return;
    if (niveau == 1 && e.ExecutionEnCours) return;
    e.ExecutionEnCours = true;
    const int garde = e.NiveauCourant;
    bool echec = false;
    try {
        EntreeNiveau(e, niveau);
        CtxFic& c = e.PileFic[niveau];
        e.FinNiveauDemandee = false;
        for (;;) {
            e.NiveauCourant = niveau;
            if (e.ArretDemande) break;
            if (!LitLigne(e, c)) break;
            if (e.ArretDemande) break;
            Classe(e, c);
            if (!FiltreSi(e)) continue;
            if (e.ArretDemande) {
                FermeFichiers(e);
                break;
            }
            ++e.CommandesEnCours;
            const auto fin = qScopeGuard([&e] { --e.CommandesEnCours; });
            Execute(e, c);
            if (e.FinNiveauDemandee) break;
        }
    } catch (const ArretExecution&) {
        e.NiveauCourant = niveau; // stopped inside a command: the level ends as at its next line
    } catch (const ErreurCommande&) {
        e.NiveauCourant = niveau;
        ErreurDeCommande(e, niveau);
    } catch (const ErreurImprimante&) {
        e.NiveauCourant = niveau;
        PanneImprimante(e);
        echec = true;
    } catch (const std::exception&) {
        e.NiveauCourant = niveau;
        Gestionnaire(e, niveau);
        echec = true;
    }
    if (e.ArretDemande) FermeFichiers(e);
    e.FinNiveauDemandee = false;
    e.NiveauCourant = niveau;
    // After a run-time failure the handler has ended the level: the steps of
    // the end of a level (margins, read-out values, string 127) don't run;
    // they follow only the normal ends.
    if (!echec) FinNiveau(e, niveau);
    if (niveau == 1) e.ExecutionEnCours = false;
    e.NiveauCourant = garde > 0 ? garde : niveau;
}

void RecritLigneEditeur(Etat& e, const QString& nouveau) {
    if (e.NiveauCourant != 1 || !e.Host) return;
    CtxFic& c = e.PileFic[1];
    const int debut = c.PosDebut - 1;
    const int longueur = c.FinLigne - c.PosDebut;
    e.Host->RemplaceTexteEditeur(debut, longueur, nouveau);
    c.Texte = e.Host->TexteEditeur();
    c.FinLigne = Entier16(c.PosDebut + Len(nouveau));
    c.PosFin = c.FinLigne;
    c.Pos = Entier16(c.FinLigne + 2);
    e.Host->ColoreLigneA(debut);
}

namespace {

// While a run is under way, a command that draws for long lets the interface
// run every few hundred operations (so that Esc, the time limit of a live or
// headless run and the window's repaint come through) and ends there once the
// run is to stop. Outside a command (the end of the main level) it only yields.
class VeilleSurfaces {
public:
    explicit VeilleSurfaces(Etat& e) : surfaces_{e.Surf, e.Pane} {
        for (Surface* s : surfaces_)
            if (s) s->Veille([&e] {
                if (e.Host) e.Host->PompeEvenements();
                if (e.ArretDemande && e.CommandesEnCours > 0) throw ArretExecution();
            });
    }
    ~VeilleSurfaces() {
        for (Surface* s : surfaces_)
            if (s) s->Veille({});
    }
    VeilleSurfaces(const VeilleSurfaces&) = delete;
    VeilleSurfaces& operator=(const VeilleSurfaces&) = delete;

private:
    std::array<Surface*, 2> surfaces_;
};

} // namespace

void LanceExecution(Etat& e, Surface* cible) {
    e.ErreursAffichees = 0;
    if (e.Host) e.Host->DebutExecution();
    if (e.Host) e.Host->PompeEvenements();
    EffacePane(e);
    for (int i = 0; i < NbNiveaux; ++i) e.PileFic[i] = CtxFic();
    RazEtatDessin(e);
    e.PileFic[1].Texte = e.Host ? e.Host->TexteEditeur() : QString();
    e.Surf = cible ? cible : e.Pane;
    e.ArretDemande = false;
    e.StopArgVu = false;
    e.DisqueTouche(); // files changed on disk since the last run are seen
    e.ProgrammeEnCours = false;
    e.Repere.StyloInitialise = false;
    e.CommandesEnCours = 0;
    int niveau = 1;
    {
        const VeilleSurfaces veille(e);
        Interprete(e, niveau);
    }
    if (e.Host) e.Host->FinExecution();
    if (e.Host) e.Host->PompeEvenements();
}

void Visualiser(Etat& e) {
    FermeFichiers(e);
    if (e.ExecutionEnCours) return;
    e.Repere.ZoomE = 1.0f;
    e.Repere.ZoomI = 1.0f;
    e.Repere.ZoomDepartI = 1.0f;
    LanceExecution(e);
}
