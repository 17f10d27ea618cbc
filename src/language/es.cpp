// Run-time input and output commands (`?` lives with the coordinate frame,
// src/drawing/repere.cpp).
#include "language/es.h"

#include "language/commandes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/hote.h"
#include "language/interprete.h"
#include "language/nombre.h"
#include "language/para.h"
#include "language/textes.h"
#include "language/variables.h"
#include "language/vb.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QSysInfo>

using namespace vb;

namespace {

[[noreturn]] void Echec(const char* quoi) { throw ErreurProvoquee(quoi); }

bool AUnDossier(const QString& nom) {
    return nom.contains(u'\\') || nom.contains(u'/') || nom.contains(u':');
}

QString DossierDe(const QString& chemin) {
    if (chemin.isEmpty()) return QString();
    return QFileInfo(chemin).absolutePath() + u'/';
}

// The data file name of Open and OpenA: with the main file's folder (or, for
// Open in an included file, the included file's) in front when needed. A
// file read is found as `Fichier` finds its files; a file written is named
// as given.
QString NomFichierDonnees(Etat& e, bool lecture) {
    const QString nom = Trim(ParaN(e, e.LigneCourante, 1));
    auto trouve = [&](const QString& n) { return lecture ? CheminLecture(e, n) : n; };
    if (QFileInfo::exists(nom) || AUnDossier(nom)) return trouve(nom);
    const QString principal = trouve(DossierDe(e.FichierPrincipal) + nom); // the name alone without a main file
    if (!lecture || e.NiveauCourant < 2 || QFileInfo::exists(principal)) return principal;
    return trouve(DossierDe(e.Ctx().Nom) + nom);
}

// One line of a data file, without its line end; UTF-8 when valid, else
// Windows-1252 (design.md §5).
QString LitLigneDonnees(QFile& f) {
    QByteArray l = f.readLine();
    while (l.endsWith('\n') || l.endsWith('\r')) l.chop(1);
    QStringDecoder utf8(QStringConverter::Utf8);
    QString t = utf8.decode(l);
    if (utf8.hasError()) {
        QStringDecoder w("windows-1252");
        t = w.isValid() ? QString(w.decode(l)) : QString::fromLatin1(l);
    }
    return t;
}

void FermeDonnees(CtxFic& c) {
    if (c.Donnees) c.Donnees->close();
    c.Donnees.reset();
    c.FicDonnees.clear();
}

bool EstCommentaire(const CtxFic& c, const QString& ligne) {
    return Trim(ligne).startsWith(c.CarCommentaire);
}

// A variable given by name: stored if it exists at the level, created
// otherwise, with the text as it stands.
void Stocke(Etat& e, const QString& nom, const QString& valeur) {
    const int s = ChercheVar(e, nom, e.NiveauCourant);
    if (s > 0) {
        e.Ctx().ValVar[s] = valeur;
        return;
    }
    CreeVarBrute(e, nom, valeur);
}

// The end of a level asked by a cancelled dialog: the If flags go as for Stop.
void FinCommeStop(Etat& e) {
    CtxFic& c = e.Ctx();
    for (int d = c.NivSi; d >= 1; --d) c.SauteSi[d] = c.ElseVu[d] = c.BrancheFaite[d] = false;
    c.NivSi = 0;
    e.FinNiveauDemandee = true;
}

QString Dossier(const QString& d) { return d.isEmpty() || d.endsWith(u'/') ? d : d + u'/'; }

} // namespace

namespace {

// The common part of Open and OpenA: the name, the comment character and the
// file number of the level.
void PartieCommune(Etat& e, const QString& nom) {
    CtxFic& c = e.Ctx();
    c.FicDonnees = nom;
    const QString code = Trim(ParaN(e, e.LigneCourante, 2));
    c.CarCommentaire = u'\'';
    if (!code.isEmpty()) {
        QString cc = code;
        c.CarCommentaire = QChar(int(EvalExpr(e, cc).value_or(39)));
    }
    c.NumFicDonnees = std::max(e.NiveauCourant + 3, 4);
}

} // namespace

void CmdOpen(Etat& e) {
    CtxFic& c = e.Ctx();
    if (Trim(e.LigneCourante).isEmpty()) {
        FermeDonnees(c);
        if (e.Host) e.Host->PompeEvenements();
        return;
    }
    FermeDonnees(c);
    const QString nom = NomFichierDonnees(e, true);
    PartieCommune(e, nom);
    e.FichierNonTrouve = true;
    e.NomFichierNonTrouve = nom;
    if (!QFileInfo::exists(nom)) Echec("fichier non trouvé");
    // A name that exists but cannot be read (a folder, no permission) fails
    // without the not-found text.
    e.FichierNonTrouve = false;
    auto f = std::make_shared<QFile>(nom);
    if (!f->open(QIODevice::ReadOnly)) Echec("ouverture impossible");
    c.Donnees = f;
    if (f->atEnd()) FermeDonnees(c); // an empty file: %EOF reads 1
}

void CmdLVar(Etat& e) {
    CtxFic& c = e.Ctx();
    if (c.FicDonnees.isEmpty() || !c.Donnees) Echec("LVar sans fichier");
    const QString l = e.LigneCourante;
    const QString nom = Trim(ParaBrut(e, l, 1));
    const int saut = int(ParaVal0(e, l, 2));
    c.MarqueDebut = Trim(ParaBrut(e, l, 3));
    c.MarqueFin = Trim(ParaBrut(e, l, 4));
    if (!nom.startsWith(u'%')) Echec("LVar : nom");
    c.LigneLue.clear();
    QFile& f = *c.Donnees;
    if (!c.MarqueDebut.isEmpty()) {
        while (!f.atEnd()) {
            const QString ligne = LitLigneDonnees(f);
            if (!EstCommentaire(c, ligne) && ligne.contains(c.MarqueDebut)) break;
        }
    }
    for (int i = 0; i < saut && !f.atEnd(); ++i) LitLigneDonnees(f);
    while (!f.atEnd()) {
        const QString ligne = LitLigneDonnees(f);
        c.LigneBrute = ligne;
        if (EstCommentaire(c, ligne)) {
            if (!c.MarqueFin.isEmpty() && ligne.contains(c.MarqueFin)) break;
            continue;
        }
        c.LigneLue += ligne;
        if (c.LigneLue.endsWith(QLatin1String(" _"))) {
            c.LigneLue.chop(2);
            continue;
        }
        break;
    }
    if (f.atEnd()) FermeDonnees(c); // %EOF reads 1 after the last line
    Stocke(e, nom, c.LigneLue);
}

bool EcritureAccordee(Etat& e) {
    if (e.Host && !e.Host->EcriturePermise()) return false;
    e.DisqueTouche();
    return true;
}

void CmdOpenA(Etat& e) {
    if (e.Host) e.Host->PompeEvenements(); // OpenA lets the window respond (Esc)
    // The common part with Open: the level's data name, comment
    // character and number are set, even though the data file stays open.
    const bool vide = Trim(e.LigneCourante).isEmpty();
    const QString nom = vide ? QString() : NomFichierDonnees(e, false);
    PartieCommune(e, nom);
    if (vide) {
        if (e.FicPrintA) e.FicPrintA->close();
        e.FicPrintA.reset();
        e.NumFicPrintA = 0;
        return;
    }
    const QString brut = Trim(ParaN(e, e.LigneCourante, 1));
    const QString kill = Trim(ParaN(e, e.LigneCourante, 3));
    if (kill != QLatin1String("Kill")) {
        if (!e.FicPrintA) {
            if (!EcritureAccordee(e)) return;
            auto f = std::make_shared<QFile>(nom);
            if (!f->open(QIODevice::WriteOnly | QIODevice::Append)) Echec("OpenA");
            e.FicPrintA = f;
            e.NumFicPrintA = std::max(e.NiveauCourant + 3, 4);
        }
        return;
    }
    // Kill: a bare name is deleted (failures ignored) and no file stays open;
    // a name with a folder is left alone.
    if (AUnDossier(brut)) return;
    if (!EcritureAccordee(e)) return;
    if (e.FicPrintA) e.FicPrintA->close();
    e.FicPrintA.reset();
    e.NumFicPrintA = 0;
    QFile::remove(nom);
}

void CmdPrintA(Etat& e) {
    if (!e.FicPrintA) return;
    QString t = e.LigneCourante;
    if (t.startsWith(u' ')) t.remove(0, 1); // the blank after "="
    if (Trim(t).size() >= 2) {
        EvalDiese(e, t);
        RemplaceVar(e, t);
        FormatTexte(e, t);
    } else {
        t.clear();
    }
    QByteArray sortie;
    const QStringList morceaux = t.split(u'\r');
    for (int i = 0; i < morceaux.size(); ++i) {
        QString m = morceaux[i];
        if (i > 0 && m.startsWith(u'\n')) m.remove(0, 1);
        sortie += m.toUtf8();
        if (i + 1 < morceaux.size()) sortie += "\r\n";
    }
    if (!EcritureAccordee(e)) return;
    e.FicPrintA->write(sortie);
    e.FicPrintA->flush();
}

void CmdInput(Etat& e) {
    QString p = ParaN(e, e.LigneCourante, 1);
    QString op;
    if (p.startsWith(u'<') || p.startsWith(u'=')) {
        op = p.left(1);
        p.remove(0, 1);
    }
    QString invite = p, defaut;
    const int s2 = InStr(p, e.Separateur2);
    if (s2 > 0) {
        invite = Left(p, s2 - 1);
        defaut = Mid(p, s2 + Len(e.Separateur2));
    }
    const QString nom = Trim(ParaBrut(e, e.LigneCourante, 2));
    if (!nom.startsWith(u'%')) Echec("Input : nom");
    std::optional<QString> r;
    if (e.Host) r = e.Host->Saisie(QStringLiteral("Mirel INPUT ") + nom, invite, defaut);
    else r = defaut;
    if (!r || *r == QLatin1String("$Cancel$")) {
        FinCommeStop(e);
        return;
    }
    QString v = *r;
    if (op != QLatin1String("<")) {
        const QString avant = v;
        if (v.contains(u'%') && RemplaceVar(e, v) != 0) {
            EchecNonInitialisee(e, avant);
        }
        if (op == QLatin1String("=")) v = StrF(float(EvalExpr(e, v).value_or(0))).replace(u',', u'.');
    }
    Stocke(e, nom, v);
}

void CmdListeVar(Etat& e) {
    QString commentaire = ParaN(e, e.LigneCourante, 1);
    QString texte;
    const int marque = InStr(2, commentaire, QStringLiteral("#JPGRép"));
    if (marque > 0) {
        commentaire = Left(commentaire, marque - 1) + QStringLiteral("JPG") + Mid(commentaire, marque + 7);
        const Reglages* r = e.Regl;
        auto ligne = [](const QString& a, const QString& b) { return a + b + QStringLiteral("\t") + CrLf(); };
        texte += ligne(QStringLiteral("StartPath="), r ? r->DossierTravail : QString());
        texte += ligne(QStringLiteral("CurDir    = "), Dossier(QDir::currentPath()));
        texte += ligne(QStringLiteral("FicPath  = "), DossierDe(e.FichierPrincipal));
        texte += ligne(QStringLiteral("CfgPath = "), r ? r->DossierCfg : QString());
        texte += ligne(QStringLiteral("AppPath = "), r ? r->DossierProgramme : QString());
        texte += ligne(QStringLiteral("UserAppPath = "), r ? r->DossierCfg : QString());
        texte += ligne(QStringLiteral("UserProfile = "), qEnvironmentVariable("HOME"));
        texte += ligne(QStringLiteral("ComputerName = "), QSysInfo::machineHostName());
        texte += ligne(QStringLiteral("Utilisateur = "), qEnvironmentVariable("USER"));
        texte += ligne(QStringLiteral("OS = "), QSysInfo::prettyProductName());
        texte += ligne(QStringLiteral("Processeur = "), QSysInfo::currentCpuArchitecture());
        texte += CrLf() + CrLf();
        const CtxFic& z = e.PileFic[0];
        for (int i = 1, n = 0; i <= z.NbVar; ++i) {
            if (z.NomVar[i].isEmpty()) continue;
            texte += z.NomVar[i] + QStringLiteral(" = ") + z.ValVar[i];
            texte += (++n % 4 == 0) ? CrLf() : QStringLiteral("\t");
        }
        texte += CrLf();
    }
    texte += ListeVars(e, e.NiveauCourant);
    const QString titre = QStringLiteral("Mirel        ListeVar (n=%1  L=%2)  ")
                              .arg(e.Ctx().NbVar)
                              .arg(LigneEditeurCourante(e)) +
                          CrLf() + commentaire;
    if (e.Host && e.Host->Message(titre, texte, Boutons::OkAnnuler) == Reponse::Annuler) FinCommeStop(e);
}

void CmdOptions(Etat& e) {
    // The line is completed with ",,," and then split on the first separator:
    // under another separator the word must be followed by one to be read.
    const QString t = e.LigneCourante + QStringLiteral(",,,");
    const QString choix = Trim(Piece(t, 1, e.Separateur1));
    QString deux = Trim(Piece(t, 2, e.Separateur1));
    const double v = deux.isEmpty() ? 0 : EvalExpr(e, deux).value_or(0);
    const QString mot = Trim(Piece(t, 4, e.Separateur1));
    CtxFic& c = e.Ctx();
    // A wrong word puts the start value back; the right word with a value
    // below 1 changes nothing.
    if (choix == QLatin1String("Var")) {
        if (mot != QLatin1String("OptMaxVar")) c.MaxVar = 33;
        else if (v >= 1) c.MaxVar = int(std::min(v, double(MaxVarAbsolu)));
    } else if (choix == QLatin1String("MaxIf")) {
        if (mot != QLatin1String("OptMaxIf")) c.MaxSi = 2;
        else if (v >= 1) c.MaxSi = v >= 5 ? 4 : int(v);
    } else if (choix == QLatin1String("Plot") || choix == QLatin1String("PlotP") ||
               choix == QLatin1String("PlotS")) {
        if (mot != QLatin1String("OptMaxPlot")) c.MaxPlot = 50100;
        else if (v >= 1) c.MaxPlot = Entier32(v * 1000);
    }
}

void CmdShell(Etat& e) {
    const QString l = e.LigneCourante;
    const QString commande = Trim(ParaN(e, l, 1));
    if (Trim(ParaN(e, l, 2)) != QLatin1String("JPG#")) return;
    const bool attendre = Trim(ParaN(e, l, 3)) == QLatin1String("1");
    const QString arguments = ParaN(e, l, 4);
    if (e.Host) e.Host->Lance(commande + arguments, attendre);
    e.DisqueTouche(); // the program may write files
    if (!attendre) e.ProgrammeEnCours = true;
}
