// File inclusion (`Fichier`) and external commands.
#include "app/core/inclusion.h"

#include "app/core/dmk.h"
#include "app/core/encodage.h"
#include "app/core/fichiers.h"
#include "drawing/repere.h"
#include "drawing/surface.h"
#include "language/chaines.h"
#include "language/commandes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/hote.h"
#include "language/interprete.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"

#include <QDir>
#include <QDateTime>
#include <QFileInfo>

#include <sys/stat.h>

using namespace vb;

namespace {

QString Chaine(const Etat& e, int n) { return LoadResString(n + (e.Regl ? e.Regl->LangueMessages : 0)); }

// "\" and "/" both separate folders in names inside programs, so that
// programs written with either keep working.
bool ContientChemin(const QString& nom) { return nom.contains(u'\\') || nom.contains(u'/'); }
QString VersChemin(QString nom) { return nom.replace(u'\\', u'/'); }
QString AvecBarreFinale(const QString& d) {
    if (d.isEmpty() || d.endsWith(u'/')) return d;
    return d + u'/';
}

// The existing file of a candidate name, a relative one taken in the working
// folder; names compare without regard to case, so that programs written
// with another spelling of a file's name still find it. Empty when there is
// none.
QString Existe(const Etat& e, const QString& candidat) {
    if (Trim(candidat).isEmpty()) return QString();
    QString c = VersChemin(candidat);
    if (QFileInfo(c).isRelative()) c = DossierCourant(e) + c;
    const QFileInfo fi(c);
    if (fi.fileName().isEmpty()) return QString();
    // With the window's file cache, the folder's listing answers: one look
    // at the folder instead of one at each candidate.
    if (e.Regl && e.Regl->Fichiers) return e.Regl->Fichiers->TrouveSansCasse(fi.path(), fi.fileName());
    if (fi.isFile()) return fi.filePath();
    return TrouveSansCasse(fi.path(), fi.fileName());
}

// A name as a variable stores it: trimmed, cut at "=" then at a blank.
QString NomStocke(const QString& nom) {
    QString n = Trim(nom);
    const int eg = InStr(n, QStringLiteral("="));
    if (eg > 0) n = Trim(Left(n, eg - 1));
    const int bl = InStr(n, QStringLiteral(" "));
    return bl > 0 ? Left(n, bl - 1) : n;
}

// The parameters of a call, written into the record
// of the new level. The text is the caller's parameter text; the caller's
// level is the current one, so its variables substitute.
void PasseParametres(Etat& e, const QString& ligne, int niveau, int nouveau) {
    CtxFic& c = e.PileFic[nouveau];
    const CtxFic& appelant = e.PileFic[niveau];
    const int nb = NbPara(e, ligne);
    for (int k = 4, n = 1; k <= nb; ++k, ++n) {
        const QString brut = Trim(ParaBrut(e, ligne, k));
        if (brut.startsWith(QLatin1String("%%"))) {
            // All variables of the caller: names, values, SauteVar 1; the count follows.
            for (int i = 1; i <= appelant.NbVar; ++i) {
                c.NomVar[i] = appelant.NomVar[i];
                c.ValVar[i] = appelant.ValVar[i];
                c.SauteVar[i] = 1;
            }
            c.NbVar = std::max(c.NbVar, appelant.NbVar);
            continue;
        }
        const int egal = InStr(brut, QStringLiteral("="));
        if (brut.startsWith(u'%') && egal > 0) {
            // %nom=valeur or %nom=<%autre: the name as written, never substituted.
            const QString nom = NomStocke(Left(brut, egal - 1));
            const QString reste = Mid(brut, egal + 1);
            QString valeur;
            if (reste.startsWith(u'<')) {
                // The caller's value of %autre, left-trimmed.
                const QString autre = Trim(Mid(reste, 2));
                const int s = ChercheVar(e, autre, niveau);
                valeur = LTrim(s > 0 ? appelant.ValVar[s] : ParaN(e, Mid(reste, 2), -1));
            } else {
                valeur = Trim(ParaN(e, reste, -1));
            }
            int slot = ChercheVar(e, nom, nouveau);
            if (slot == 0) {
                if (c.NbVar >= MaxVarAbsolu) throw ErreurExecution("Subscript out of range");
                slot = ++c.NbVar; // created at the next free place
                c.NomVar[slot] = nom;
            }
            c.ValVar[slot] = valeur;
            c.SauteVar[slot] = 1;
            continue;
        }
        // By position: the n-th slot takes the field's text after the caller's
        // substitution, even when that leaves it empty; an empty field only
        // makes the count reach n.
        if (n > MaxVarAbsolu) throw ErreurExecution("Subscript out of range");
        if (!brut.isEmpty()) {
            c.ValVar[n] = Trim(ParaN(e, ligne, k));
            c.SauteVar[n] = 1;
        }
        c.NbVar = std::max(c.NbVar, n);
    }
}

// The pen, saved in the caller's record and given back after the call.
void SauvePlume(Etat& e, CtxFic& appelant) {
    ParamFichier& p = appelant.Param;
    const Surface* s = e.Surf;
    p.DrawWidth = s ? s->DrawWidth : int(e.Styles.EpaisCourante);
    p.TiretL1 = e.Styles.TiretL1;
    p.TiretL2 = e.Styles.TiretL2;
    p.TiretL3 = e.Styles.TiretL3;
    p.BoutCarre = e.Styles.BoutCarre;
    p.NomPolice = s ? s->Font.Name : QString();
    p.TaillePolice = s ? float(s->Font.Size) : 0;
    p.Style.clear();
    if (s && s->Font.Bold) p.Style += u'B';
    if (s && s->Font.Italic) p.Style += u'I';
    if (s && s->Font.Underline) p.Style += u'U';
    p.Couleur = e.Styles.CouleurDefaut;
    p.CouleurCmd = e.Styles.CouleurCmd;
    p.TailleStandard = e.Txt.TaillePolice;
}

// The pen back from the caller's record (Execution, on return).
void RestaurePlume(Etat& e, const CtxFic& appelant) {
    const ParamFichier& p = appelant.Param;
    Surface* s = e.Surf;
    e.Styles.EpaisCourante = float(std::max(1, p.DrawWidth));
    e.Styles.TiretL1 = p.TiretL1;
    e.Styles.TiretL2 = p.TiretL2;
    e.Styles.TiretL3 = p.TiretL3;
    e.Styles.BoutCarre = p.BoutCarre;
    e.Txt.TaillePolice = p.TailleStandard;
    e.Styles.CouleurDefaut = p.Couleur;
    e.Styles.CouleurCmd = p.CouleurCmd;
    if (!s) return;
    s->DrawWidth = int(e.Styles.EpaisCourante);
    s->Font.Name = p.NomPolice;
    s->Font.Size = p.TaillePolice;
    s->Font.Bold = InStr(p.Style, QStringLiteral("B")) > 0;
    s->Font.Italic = InStr(p.Style, QStringLiteral("I")) > 0;
    s->Font.Underline = InStr(p.Style, QStringLiteral("U")) > 0;
    if (p.Couleur != -1) s->ForeColor = p.Couleur;
}

// The "?" form: the comment block of the called file goes into the editor
// behind the caret's line, and the run ends.
void CopieCommentaires(Etat& e, const QString& texte, const QString& nom) {
    Hote* h = e.Host;
    if (!h) return;
    CtxFic& c = e.PileFic[1];
    const QString editeur = h->TexteEditeur();
    // 0-based position behind the CR LF that ends the caret's line; headless,
    // where there is no caret, the line of the call.
    int debut = h->FinLigneCaret();
    if (debut < 0) debut = c.FinLigne + 1;
    QString bloc = TexteBlocCommentaires(texte, nom);
    if (debut > Len(editeur)) {
        debut = Len(editeur);
        bloc = CrLf() + bloc; // a last line without CR LF
    }
    h->RemplaceTexteEditeur(debut, 0, bloc);
    c.Texte = h->TexteEditeur();
    // The block is coloured line by line: its lines are comments (green).
    for (int p = debut; p < debut + Len(bloc);) {
        h->ColoreLigneA(p);
        const int f = InStr(p + 1, c.Texte, CrLf()); // 1-based CR of the line
        if (f == 0) break;
        p = f + 1; // 0-based start of the next line
    }
}

// The file of a call, found and read: `nom` receives its name as the records
// keep it (the candidate the lookup found). With the window's file cache, a
// run looks for and at each included file once, by the name of its call, and
// again after the run writes a file or starts a program; at every call once a
// program it started without waiting may be writing.
std::optional<QString> TexteAppele(Etat& e, int indexExterne, const QString& ligne, QString& nom,
                                   LectureCommande& lu) {
    QString cle;
    if (indexExterne > 0) {
        if (e.Regl && indexExterne <= e.Regl->FichiersExternes.size())
            nom = e.Regl->FichiersExternes[indexExterne - 1];
        else
            nom = (e.Regl ? e.Regl->DossierProgramme : QString()) + Trim(ParaN(e, ligne, 1)) +
                  QStringLiteral(".dmk");
        cle = nom;
    } else {
        cle = u'\n' + Trim(ParaN(e, ligne, 1)); // a name to look for, never a path found
    }
    CacheFichiers* cache = e.Regl ? e.Regl->Fichiers.get() : nullptr;
    const bool garde = cache && !e.ProgrammeEnCours;
    const auto vu = garde ? e.FichiersVus.constFind(cle) : e.FichiersVus.cend();
    std::optional<QString> t;
    bool boite = false; // no candidate found: the lookup's box
    if (vu != e.FichiersVus.cend()) {
        nom = vu->nom;
        t = vu->texte;
        boite = vu->boite;
    } else {
        QString chemin; // the existing file of the name, when there is one
        if (indexExterne > 0) chemin = Existe(e, nom);
        else nom = ChercheFichier(e, cle.mid(1), &boite, &chemin);
        t = LitFichierCommande(chemin.isEmpty() ? nom : chemin, &lu, cache);
        if (t && garde) e.FichiersVus.insert(cle, Etat::FichierVu{nom, *t, boite});
    }
    if (boite && e.Host) e.Host->Message(QStringLiteral("Mirel"), TexteNonTrouve(nom), Boutons::Ok);
    return t;
}

// The nesting limit: no sixth level. Returns the result of AppelFichier.
int RefuseImbrication(Etat& e, const QString& ligne) {
    const bool lui = e.PileFic[5].Nom == e.PileFic[4].Nom;
    const QString texte = Chaine(e, lui ? 123 : 113).replace(QLatin1String("%1"), QLatin1String("5")) +
                          CrLf() + u'(' + Trim(ParaN(e, ligne, 1)) + u')';
    ++e.ErreursAffichees;
    if (!e.Host) return 0;
    if (!lui) {
        e.Host->Message(QStringLiteral("Mirel"), texte, Boutons::Ok);
        return 0; // the call is skipped
    }
    if (e.Host->Message(QStringLiteral("Mirel"), texte, Boutons::OkAnnuler) == Reponse::Annuler) {
        e.PileFic[5].Nom = NomBoucle;
        return -1;
    }
    return 0;
}

} // namespace

// --- AppelFichier

int AppelFichier(Etat& e, int niveau, int indexExterne) {
    const QString ligne = e.LigneCourante;
    if (niveau >= NiveauMaxInclusion) return RefuseImbrication(e, ligne);
    const int nouveau = niveau + 1;
    CtxFic& appelant = e.PileFic[niveau];
    EtatRepere& r = e.Repere;

    // The "?" form: at level 1 the file is not run; from deeper levels the
    // file runs and the "?" is read as any x, a number without digits: 0.
    const bool question = indexExterne >= 0 && Trim(ParaBrut(e, ligne, 2)) == QLatin1String("?");

    // The position: x, y about the frame, an omitted one is the current point,
    // turned about 0,0 by the rotation of the third parameter (or AngRot).
    double x = 0, y = 0;
    if (!(question && niveau == 1)) {
        ParaCoord(e, x, y, ligne, 2, r.PointX, r.PointY);
    }
    const double xLu = x, yLu = y;
    const QString texteY = ParaN(e, ligne, 3);
    const bool positionDonnee = !Trim(ParaBrut(e, ligne, 2)).isEmpty() || !Trim(ParaBrut(e, ligne, 3)).isEmpty();
    const float rotationCmdAvant = r.RotationCmd;
    const bool rotationDonneeAvant = r.RotationDonnee;
    if (!(question && niveau == 1)) LitRotation(e, texteY, x, y);

    // The pen in the caller's record.
    SauvePlume(e, appelant);

    // The file, and the text of the level.
    QString nom, texte;
    if (indexExterne < 0) {
        nom = NomSymbole;
        texte = e.Inclusion.TexteSymbole;
    } else {
        LectureCommande lu = LectureCommande::Ok;
        const std::optional<QString> t = TexteAppele(e, indexExterne, ligne, nom, lu);
        e.Inclusion.Drapeau = QStringLiteral("F");
        if (!t) {
            if (lu == LectureCommande::LongueurFausse) {
                // A coded file of wrong length has been damaged or altered:
                // the whole run stops, after a box naming the file.
                ++e.ErreursAffichees;
                if (e.Host) e.Host->Message(QStringLiteral("Mirel"), TexteCodeIllisible(nom), Boutons::Ok);
                e.PileFic[5].Nom = NomBoucle;
                e.ArretDemande = true;
                return -1;
            }
            e.FichierNonTrouve = true;
            e.NomFichierNonTrouve = nom;
            throw ErreurExecution("File not found");
        }
        texte = *t;
        if (question && niveau == 1) {
            CopieCommentaires(e, texte, nom);
            e.ArretDemande = true;
            return -1;
        }
    }

    // The record of the new level: parameters, position, rotation, %FicX, %FicY.
    RazCtxFic(e, nouveau);
    CtxFic& c = e.PileFic[nouveau];
    try {
        PasseParametres(e, ligne, niveau, nouveau);
        EcritVarNum(e, nouveau, QStringLiteral("%FicX"), xLu);
        if (InStr(texteY, e.Separateur2) > 0)
            EcritVarTxt(e, nouveau, QStringLiteral("%FicY"), Trim(texteY).replace(u',', u'.'));
        else
            EcritVarNum(e, nouveau, QStringLiteral("%FicY"), yLu);
    } catch (...) {
        RazCtxFic(e, nouveau);
        throw;
    }
    c.Nom = nom;
    c.Texte = texte;
    // The origin of the called file is the caller's plus x, y; level entry
    // computes it as Dx + DecalX.
    c.DecalX = r.OrigineX + x - r.Dx;
    c.DecalY = r.OrigineY + y - r.Dy;
    c.Param.FicX = positionDonnee ? float(xLu) : 999.99f;
    c.Param.FicY = positionDonnee ? float(yLu) : 999.99f;
    // AngRot passes down to NivAngRot.
    c.AngleDefaut = nouveau <= r.NivAngRot ? r.AngRotDefaut : 0.0f;
    // The parameters passed are found by the first assignments of the file:
    // no slot is kept from them (see CreeVar), as level entry has it.
    c.DebutLocales = 0;

    // What comes back after the call.
    const float pointX = r.PointX, pointY = r.PointY;
    const QString sep1 = e.Separateur1, sep2 = e.Separateur2;
    const double origineX = r.OrigineX, origineY = r.OrigineY;
    const float ctx = r.CTx, cty = r.CTy, ctxNT = r.CTxNonTourne, ctyNT = r.CTyNonTourne;
    const float angRot = r.AngRotDefaut;

    int n = nouveau;
    Interprete(e, n);
    if (e.PileFic[5].Nom == NomBoucle || e.PileFic[nouveau].Nom == NomBoucle) e.ArretDemande = true;

    r.PointX = pointX;
    r.PointY = pointY;
    e.LigneCourante = ligne;
    e.Separateur1 = appelant.Separateur1 = sep1;
    e.Separateur2 = appelant.Separateur2 = sep2;
    e.NiveauCourant = niveau;
    RazCtxFic(e, nouveau);
    RestaurePlume(e, appelant);
    r.OrigineX = origineX;
    r.OrigineY = origineY;
    r.CTx = ctx;
    r.CTy = cty;
    r.CTxNonTourne = ctxNT;
    r.CTyNonTourne = ctyNT;
    r.AngRotDefaut = angRot;
    r.RotationCmd = rotationCmdAvant;
    r.RotationDonnee = rotationDonneeAvant;
    return e.ArretDemande ? -1 : 0;
}

// --- Commands

void CmdFichier(Etat& e) {
    e.EtatOrdre |= 8 | 64;
    if (e.Host) e.Host->PompeEvenements();
    if (e.ArretDemande) return;
    if (AppelFichier(e, e.NiveauCourant, 0) < 0) e.FinNiveauDemandee = true;
}

int AppelSymbole(Etat& e, int niveau, const QString& texte, const QString& parametres) {
    const QString garde = e.LigneCourante;
    const QString gardeTexte = e.Inclusion.TexteSymbole;
    e.LigneCourante = parametres;
    e.Inclusion.TexteSymbole = texte;
    int resultat = 0;
    try {
        resultat = AppelFichier(e, niveau, -1);
    } catch (...) {
        e.LigneCourante = garde;
        e.Inclusion.TexteSymbole = gardeTexte;
        throw;
    }
    e.LigneCourante = garde;
    e.Inclusion.TexteSymbole = gardeTexte;
    return resultat;
}

QStringList ModeleDmkCode() {
    return {
        QStringLiteral("'# Fin des commentaires copiés par MCE_xxx=? ou Fichier=xxx,? "),
        QStringLiteral("'$FDescription;[Coordonnée x];[Coordonnée y];[Paramètres séparés par point virgule ou Dollar(0)]"),
        QStringLiteral("'@C LB"),
        QStringLiteral("'Lignes commencant par '"),
        QStringLiteral("'$EDescription in English;[x Coordinate];[y Coordinate];[Parameters ()]"),
        QStringLiteral("'@C LB"),
        QStringLiteral("'Lines beginning with '"),
        QStringLiteral("'$DBeschreibung;[x Koordinate];[y Koordinate];[()]"),
        QStringLiteral("'@C LB"),
        QStringLiteral("'Zeilen beginnend mit '"),
        QStringLiteral("'$$"),
        QStringLiteral("StopArg"),
        QStringLiteral("'L left, C centered, R right, B bold "),
        QStringLiteral("'Shell = Fic,WindowsStyle[0-6]"),
        QStringLiteral("'Options#$ = MaxIf[,3,,OptMaxIf]"),
        QStringLiteral("'Options#$ = Var[,38,,OptMaxVar]"),
        QStringLiteral("'Options#$ = Plot[,2000,,OptMaxPlot]"),
        QStringLiteral("'%IRE$#0Nom = ..."),
        QStringLiteral("'%IRE$-1Nom = ..."),
        QStringLiteral("'ListeVar = #JPGRép"),
        QStringLiteral("'Enregistrer sous *.JPG#"),
    };
}

void CmdDmkCode(Etat& e) {
    // Only the editor's text can take the template: the main program's line.
    if (!e.Host || e.NiveauCourant != 1) return;
    const std::optional<QString> code = e.Host->Saisie(QStringLiteral("Mirel"), InviteDmkCode, QString());
    if (!code || Trim(*code) != CodeDmkCode) return; // any other input does nothing
    const CtxFic& c = e.PileFic[1];
    const int debut = c.PosDebut - 1;
    const QString modele = ModeleDmkCode().join(CrLf());
    RecritLigneEditeur(e, modele);
    // The block is recoloured line by line (the first line by the rewrite).
    for (int p = InStr(debut + 1, c.Texte, CrLf()); p > 0 && p < debut + Len(modele);
         p = InStr(p + 2, c.Texte, CrLf()))
        e.Host->ColoreLigneA(p + 1);
}

// --- File lookup and reading

QString DossierCourant(const Etat& e) {
    if (e.Regl && !e.Regl->DossierTravail.isEmpty()) return AvecBarreFinale(VersChemin(e.Regl->DossierTravail));
    return AvecBarreFinale(QDir::currentPath());
}

QString CheminLecture(const Etat& e, const QString& nom) {
    const QFileInfo tel(nom);
    if (tel.isAbsolute() && tel.isFile()) return nom;
    const QString trouve = Existe(e, nom);
    return trouve.isEmpty() ? nom : trouve;
}

QString TexteCodeIllisible(const QString& nom) {
    return nom + QStringLiteral(" : fichier codé illisible / unreadable coded file");
}

QString TexteNonTrouve(const QString& nom) {
    return QStringLiteral("Fichier[file] ") + nom + QStringLiteral(" non trouvé[not founf] !");
}

QString ChercheFichier(const Etat& e, const QString& nom, bool* boiteNonTrouve, QString* chemin) {
    if (boiteNonTrouve) *boiteNonTrouve = false;
    QString trouve;
    auto existe = [&](const QString& candidat) {
        trouve = Existe(e, candidat);
        if (chemin) *chemin = trouve;
        return !trouve.isEmpty();
    };
    // The candidate that matches is returned as formed (a relative one stands
    // in the working folder): it is the record's name, shown in the boxes.
    if (existe(nom)) return nom;
    const QString prog = e.Regl ? AvecBarreFinale(VersChemin(e.Regl->DossierProgramme)) : QString();
    const QString dossierFichier = e.Regl ? AvecBarreFinale(VersChemin(e.Regl->DossierFichier)) : QString();
    QStringList essais;
    if (!ContientChemin(nom) && !nom.contains(u':') && InStr(2, nom, QStringLiteral(".")) == 0) {
        // 1. A bare name.
        essais << nom + QStringLiteral(".dmk") << nom + QStringLiteral(".dat"); // working folder
        if (!prog.isEmpty()) essais << prog + nom + QStringLiteral(".dmk");
        if (!dossierFichier.isEmpty()) essais << dossierFichier + nom + QStringLiteral(".dat");
        if (!prog.isEmpty()) essais << prog + nom + QStringLiteral(".dat");
    } else if (!nom.contains(u'.')) {
        // 2. A path without extension.
        essais << nom + QStringLiteral(".dmk") << nom + QStringLiteral(".dat");
    } else {
        // 3. An extension without path, or a path.
        if (!dossierFichier.isEmpty()) essais << dossierFichier + nom;
        if (!prog.isEmpty()) essais << prog + nom;
    }
    for (const QString& essai : essais)
        if (existe(essai)) return essai;
    const bool branche3 = (ContientChemin(nom) || nom.contains(u':') || InStr(2, nom, QStringLiteral(".")) > 0) &&
                          nom.contains(u'.');
    if (branche3 && InStrRev(nom, QStringLiteral(".")) == 1 && boiteNonTrouve) *boiteNonTrouve = true;
    return nom;
}

bool EstFichierCode(const QString& nom) {
    const QString fichier = QFileInfo(VersChemin(nom)).fileName();
    const int point = InStrRev(fichier, QStringLiteral("."));
    if (point == 0) return false;
    return Mid(fichier, point + 1, 3).toUpper() == QLatin1String("DMK");
}

namespace {

std::optional<QString> LitSurDisque(const QString& nom, const QString& chemin, LectureCommande* etat) {
    if (EstFichierCode(nom)) {
        ErreurDmk erreur = ErreurDmk::Aucune;
        const std::optional<QString> t = LitDmk(chemin, &erreur);
        if (!t) {
            if (etat)
                *etat = erreur == ErreurDmk::Longueur ? LectureCommande::LongueurFausse
                                                      : LectureCommande::Introuvable;
            return std::nullopt;
        }
        return NormaliseFinsDeLigne(*t);
    }
    const std::optional<QByteArray> octets = LitOctets(chemin);
    if (!octets) {
        if (etat) *etat = LectureCommande::Introuvable;
        return std::nullopt;
    }
    Encodage enc = Encodage::Utf8;
    return NormaliseFinsDeLigne(DecodeOctets(*octets, enc));
}

} // namespace

namespace {

// What one look at a file system entry tells: its kind, modification time
// (nanoseconds) and size. Taken straight from the system, without the time
// zone work of a QDateTime: the cache looks at every included file and folder
// at every run.
struct Regard {
    bool fichier = false, dossier = false;
    qint64 date = 0, taille = 0;
};
std::optional<Regard> Regarde(const QString& chemin) {
    struct stat st {};
    if (::stat(QFile::encodeName(chemin).constData(), &st) != 0) return std::nullopt;
    return Regard{S_ISREG(st.st_mode), S_ISDIR(st.st_mode),
                  qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec, qint64(st.st_size)};
}

} // namespace

std::optional<QString> CacheFichiers::Lit(const QString& nom, LectureCommande* etat) {
    if (etat) *etat = LectureCommande::Ok;
    const QString chemin = VersChemin(nom);
    const std::optional<Regard> r = Trim(nom).isEmpty() ? std::nullopt : Regarde(chemin);
    if (!r || !r->fichier) {
        if (etat) *etat = LectureCommande::Introuvable;
        return std::nullopt;
    }
    const QString cle = QFileInfo(chemin).absoluteFilePath();
    {
        const auto i = entrees_.constFind(cle);
        if (i != entrees_.cend() && i->date == r->date && i->taille == r->taille) {
            ++trouves_;
            return i->texte;
        }
    }
    std::optional<QString> t = LitSurDisque(nom, chemin, etat);
    ++lus_;
    if (t) entrees_.insert(cle, Entree{r->date, r->taille, *t});
    else entrees_.remove(cle);
    return t;
}

QString CacheFichiers::TrouveSansCasse(const QString& dossier, const QString& nom) {
    if (dossier.isEmpty() || nom.isEmpty()) return {};
    const std::optional<Regard> r = Regarde(dossier);
    if (!r || !r->dossier) return {};
    const QString cle = QFileInfo(dossier).absoluteFilePath();
    auto choisit = [&](const Liste& l) -> QString {
        const QStringList variantes = l.noms.value(CleSansCasse(nom));
        if (variantes.isEmpty()) return {};
        const QDir d(dossier);
        return d.filePath(variantes.contains(nom) ? nom : variantes.first());
    };
    {
        const auto i = listes_.constFind(cle);
        if (i != listes_.cend() && i->date == r->date) return choisit(*i);
    }
    Liste l{r->date, {}};
    for (const QString& n : QDir(dossier).entryList(QDir::Files | QDir::Hidden))
        l.noms[CleSansCasse(n)].append(n);
    // A folder changed in the last two seconds may change again within the
    // same tick of its file system's clock, under the same time: its listing
    // is not kept, so that a file added then is never missed.
    const qint64 maintenant = QDateTime::currentMSecsSinceEpoch() * 1000000;
    if (maintenant - r->date > qint64(2000) * 1000000) listes_.insert(cle, l);
    else listes_.remove(cle);
    return choisit(l);
}

void CacheFichiers::Vide() {
    entrees_.clear();
    listes_.clear();
    lus_ = trouves_ = 0;
}

std::optional<QString> LitFichierCommande(const QString& nom, LectureCommande* etat,
                                          CacheFichiers* cache) {
    if (cache) return cache->Lit(nom, etat);
    if (etat) *etat = LectureCommande::Ok;
    if (Trim(nom).isEmpty() || !QFileInfo(VersChemin(nom)).isFile()) {
        if (etat) *etat = LectureCommande::Introuvable;
        return std::nullopt;
    }
    return LitSurDisque(nom, VersChemin(nom), etat);
}

// --- The "?" form

QStringList BlocCommentaires(const QString& texte) {
    QStringList lignes = NormaliseFinsDeLigne(texte).split(CrLf());
    if (!lignes.isEmpty() && lignes.back().isEmpty()) lignes.removeLast(); // behind the last line end
    QStringList garde;
    // The lines as they stand: an indented line ends the block.
    for (const QString& l : lignes) {
        if (l.startsWith(QLatin1String("'#"))) break;
        if (!(l.isEmpty() || l.startsWith(u'\'') || l.startsWith(u'%'))) break;
        if (l.startsWith(QLatin1String("'$")) || l.startsWith(QLatin1String("'@"))) continue;
        garde << (l.startsWith(u'%') ? QStringLiteral("' ") + l : l);
    }
    return garde;
}

QString TexteBlocCommentaires(const QString& texte, const QString& nom) {
    QString t = QStringLiteral("' Commentaires du fichier commande") + CrLf() + QStringLiteral("' externe ") +
                nom + CrLf();
    for (const QString& l : BlocCommentaires(texte)) t += l + CrLf();
    return t;
}

// --- Header language

QString MarqueSection(int indexLangue) {
    const QStringList marques = QStringLiteral(",'$F,'$E,'$D,'$S,'$R").split(u',');
    if (indexLangue < 1 || indexLangue >= marques.size()) return QString();
    return marques[indexLangue];
}

std::optional<QString> SectionEntete(const QString& texte, const QString& marque) {
    if (marque.isEmpty()) return std::nullopt;
    const QStringList lignes = NormaliseFinsDeLigne(texte).split(CrLf());
    // A marker counts only behind a line break: never on the first line.
    for (int i = 1; i < lignes.size(); ++i) {
        if (!lignes[i].startsWith(marque)) continue;
        QStringList section{lignes[i].mid(marque.size())};
        for (int j = i + 1; j < lignes.size(); ++j) {
            if (lignes[j].startsWith(QLatin1String("'$"))) break;
            section << (lignes[j].startsWith(u'\'') ? lignes[j].mid(1) : lignes[j]);
        }
        while (section.size() > 1 && section.back().isEmpty()) section.removeLast();
        return section.join(u'\n');
    }
    return std::nullopt;
}

std::optional<QString> DescriptionExterne(const QString& texte, int langue, int langueMasq) {
    for (int l : {langue, langueMasq, 1}) {
        const std::optional<QString> s = SectionEntete(texte, MarqueSection(l));
        if (s) return s;
    }
    return std::nullopt;
}

std::optional<QString> DescriptionCommandeExterne(const Reglages& r, int indexExterne, int langue,
                                                  int langueMasq) {
    if (indexExterne < 1 || indexExterne > r.FichiersExternes.size()) return std::nullopt;
    const std::optional<QString> t = LitFichierCommande(r.FichiersExternes[indexExterne - 1], nullptr, r.Fichiers.get());
    if (!t) return std::nullopt;
    return DescriptionExterne(*t, langue, langueMasq);
}
