// The settings file "Mirel.cfg" and the language choices.
#include "app/core/config.h"

#include "app/core/installation.h"
#include "language/chaines.h"
#include "language/etat.h"
#include "language/vb.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>

#include <algorithm>
#include <cmath>

using namespace vb;

// --- Version text and header

QString TexteVersion(int majeur, int mineur, int revision) {
    QString t = QString::number(majeur) + u'.' + QStringLiteral("%1").arg(mineur, 2, 10, QChar(u'0'));
    // The revision letter is followed by a blank; without one, nothing follows.
    if (revision > 0 && revision <= 26) t += QChar(char16_t(u'a' + revision - 1)) + QStringLiteral(" ");
    return t;
}

QString TexteVersionProgramme() {
#ifdef MIREL_VERSION
    const QStringList p = QStringLiteral(MIREL_VERSION).split(u'.');
#else
    const QStringList p;
#endif
    return TexteVersion(p.value(0).toInt(), p.value(1).toInt(), p.value(2).toInt());
}

QString EnteteConfig(const QString& version) {
    return QStringLiteral("'Fichier de configuration du Programme Mirel V") + version;
}

QString EnteteConfig2() { return QStringLiteral("'Ne pas modifier / Do not change"); }

bool VersionConforme(const QString& premiereLigne, const QString& version) {
    return InStr(premiereLigne, QStringLiteral("Mirel V") + version) > 0;
}

// --- Reading

int Entier16Bits(long long v) { return int(int16_t(uint16_t(uint64_t(v) & 0xFFFFu))); }

namespace {

// The value behind the first occurrence of the key in the line, trimmed.
std::optional<QString> ValeurCle(const QString& ligne, const QString& cle) {
    const qsizetype i = ligne.indexOf(cle, 0, Qt::CaseInsensitive);
    if (i < 0) return std::nullopt;
    return Trim(ligne.mid(i + cle.size()));
}

QStringList DecoupeLignes(const QString& texte) {
    return NormaliseFinsDeLigne(texte).split(CrLf());
}

} // namespace

Config LitConfigTexte(const QString& contenu) {
    Config c;
    c.Zmm = 0; // "a line without this key leaves a zero Zmm at 1"
    const QStringList lignes = DecoupeLignes(contenu);
    c.PremiereLigne = lignes.value(0);
    for (const QString& ligne : lignes) {
        if (ligne.startsWith(u'\'')) continue;
        // "LANGUE =" is not found inside "LANGUEMENU =": the blank and the sign
        // belong to the key.
        if (auto v = ValeurCle(ligne, CleCfg::Langue)) c.Langue = *v;
        if (auto v = ValeurCle(ligne, CleCfg::LangueMenu)) c.LangueMenu = *v;
        if (auto v = ValeurCle(ligne, CleCfg::LangueAide)) c.LangueAide = *v;
        if (auto v = ValeurCle(ligne, CleCfg::LangueMasq)) c.LangueMasq = *v;
        if (auto v = ValeurCle(ligne, CleCfg::FichierDat)) c.FichierDat = *v;
        if (auto v = ValeurCle(ligne, CleCfg::DoubleClic)) c.DoubleClic = UCase(*v) == u"OUI";
        if (auto v = ValeurCle(ligne, CleCfg::Zmm)) c.Zmm = float(ValVb(*v));
        if (auto v = ValeurCle(ligne, CleCfg::TailleCarCode)) c.TailleCarCode = float(ValVb(*v));
        if (auto v = ValeurCle(ligne, CleCfg::Patchs))
            c.Patchs = Entier16Bits(std::llround(ValVb(*v)));
        if (auto v = ValeurCle(ligne, CleCfg::Recents))
            c.Recents = v->split(u'|', Qt::SkipEmptyParts);
        if (auto v = ValeurCle(ligne, CleCfg::ApercuDirect)) c.ApercuDirect = UCase(*v) == u"OUI";
        if (auto v = ValeurCle(ligne, CleCfg::Export)) c.Export = *v;
        if (auto v = ValeurCle(ligne, CleCfg::Fenetre)) c.Fenetre = *v;
    }
    if (c.Zmm == 0) c.Zmm = 1;
    return c;
}

QStringList LignesConfigDefaut(const QString& version) {
    return {EnteteConfig(version),      EnteteConfig2(),
            QStringLiteral("Langue ="), QStringLiteral("LangueMenu ="),
            QStringLiteral("LangueAide ="), QStringLiteral("LangueMasq ="),
            QStringLiteral("FichierDat = Mirel.dat"), QStringLiteral("DoubleClic = Non"),
            QStringLiteral("Zmm = 1"),  QStringLiteral("Patchs = 0")};
}

// --- Location

QString AvecBarre(const QString& dossier) {
    if (dossier.isEmpty() || dossier.endsWith(u'/')) return dossier;
    return dossier + u'/';
}

bool DossierTestable(const QString& dossier) {
    // The path holds no ":\" on Linux: create, delete, report usable.
    const QString essai = AvecBarre(dossier) + QStringLiteral("Tmp$.tst");
    QFile f(essai);
    if (!f.open(QIODevice::WriteOnly)) return false;
    f.close();
    f.remove();
    return true;
}

QString DossierXdgMirel() {
    QString base = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (base.isEmpty() || !QDir::isAbsolutePath(base))
        base = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    if (base.isEmpty()) return {};
    return AvecBarre(base) + QStringLiteral("Mirel/");
}

bool DossierContientProgramme(const QString& dossier, const QString& nomExecutable) {
    const QStringList noms = QDir(dossier).entryList(QDir::Files | QDir::System | QDir::Hidden);
    const QString exe = nomExecutable.toUpper();
    for (const QString& n : noms) {
        const QString u = n.toUpper();
        if (u.startsWith(u"MIREL.EXE") || u == u"MIREL.LNK") return true;
        if (!exe.isEmpty() && (u == exe || u == exe + QStringLiteral(".DESKTOP"))) return true;
    }
    return false;
}

bool ProgrammeEnPlace(const QString& dossierExecutable) {
    const QString d = AvecBarre(dossierExecutable);
    return QFileInfo(d + QStringLiteral("CMakeCache.txt")).isFile() || ProgrammeInstalle(dossierExecutable);
}

EmplacementConfig LocaliseConfig(const QString& dossierProgramme, const QString& dossierTravail,
                                 const QString& dossierXdg, const QString& nomExecutable, bool enPlace) {
    EmplacementConfig l;
    l.DossierProgramme = AvecBarre(dossierProgramme);
    // 1. Test the program folder.
    l.ProgrammeUtilisable = DossierTestable(l.DossierProgramme);
    // 2. The working folder.
    l.DossierDepart = AvecBarre(dossierTravail);
    l.DossierFichier = l.DossierDepart;
    l.DossierCfg = l.DossierDepart;
    // 3. A "Mirel.cfg" in the working folder is used and saved there.
    if (QFileInfo(l.DossierDepart + NomFichierCfg).isFile()) return l;
    // A program in its place is started from a launcher or a shell in any
    // folder: its settings are the user's, in the XDG folder.
    if (enPlace && !dossierXdg.isEmpty()) {
        l.DossierCfg = AvecBarre(dossierXdg);
        return l;
    }
    // 4. Started from a foreign folder: read, never written.
    if (!DossierContientProgramme(l.DossierDepart, nomExecutable)) l.EcritureInterdite = true;
    // 5. The program folder when usable, else the XDG folder when known.
    if (l.ProgrammeUtilisable)
        l.DossierCfg = l.DossierProgramme;
    else if (!dossierXdg.isEmpty())
        l.DossierCfg = AvecBarre(dossierXdg);
    return l;
}

namespace {

bool EcritLignes(const QString& chemin, const QStringList& lignes, Encodage enc, QString* erreur) {
    QString texte;
    for (const QString& l : lignes) texte += l + CrLf();
    return EcritOctets(chemin, EncodeTexte(texte, enc), erreur);
}

} // namespace

Config ChargeConfig(const EmplacementConfig& lieu, const QString& version) {
    const QString chemin = lieu.Fichier();
    // 6. The default file when missing.
    if (!QFileInfo::exists(chemin)) {
        if (lieu.EcritureInterdite) return LitConfigTexte(LignesConfigDefaut(version).join(CrLf()));
        QDir().mkpath(lieu.DossierCfg); // error ignored
        EcritLignes(chemin, LignesConfigDefaut(version), Encodage::Utf8, nullptr);
    }
    // 7. Read line by line.
    const auto octets = LitOctets(chemin);
    if (!octets) return LitConfigTexte(LignesConfigDefaut(version).join(CrLf()));
    Encodage enc = Encodage::Utf8;
    const QString texte = DecodeOctets(*octets, enc);
    Config c = LitConfigTexte(texte);
    c.Enc = enc;
    return c;
}

// --- EcritConfig

QStringList RemplaceCle(const QStringList& lignes, const QString& cle, const QString& valeur,
                        const QString& version) {
    const QString cleNue = RTrim(cle);
    const QString cleMaj = UCase(cleNue);
    const QString v = Trim(valeur);
    const QString nouvelle = v.isEmpty() ? cleNue : cleNue + u' ' + v;
    QStringList r;
    bool vue = false;
    for (int i = 0; i < lignes.size(); ++i) {
        const QString& l = lignes[i];
        if (i == 0) {
            r << EnteteConfig(version);
        } else if (UCase(l).startsWith(cleMaj)) {
            r << nouvelle;
            vue = true;
        } else {
            r << l;
        }
    }
    if (!vue) {
        qsizetype ou = r.size();
        // "LangueMasq =" goes ahead of the "FichierDat =" line, so that old
        // files gain it in the right place.
        if (cleMaj == UCase(CleCfg::LangueMasq)) {
            for (qsizetype i = 0; i < r.size(); ++i)
                if (UCase(r[i]).startsWith(UCase(CleCfg::FichierDat))) { ou = i; break; }
        }
        r.insert(ou, nouvelle);
    }
    return r;
}

bool EcritConfig(const EmplacementConfig& lieu, const QString& cle, const QString& valeur,
                 const QString& version) {
    if (lieu.EcritureInterdite) return false;
    const QString chemin = lieu.Fichier();
    const QString ancien = lieu.DossierCfg + NomFichierCfgAncien;
    // Read the whole file, split at the line ends; the last empty element is dropped.
    QStringList lignes;
    Encodage enc = Encodage::Utf8;
    if (const auto octets = LitOctets(chemin)) {
        lignes = DecoupeLignes(DecodeOctets(*octets, enc));
        if (!lignes.isEmpty() && lignes.last().isEmpty()) lignes.removeLast();
    } else {
        lignes = LignesConfigDefaut(version);
    }
    // "Mirel$cfg.old": deleted if it exists, then the file renamed to it.
    if (QFileInfo::exists(ancien)) QFile::remove(ancien);
    const bool renomme = QFile::rename(chemin, ancien);
    const bool ok = EcritLignes(chemin, RemplaceCle(lignes, cle, valeur, version), enc, nullptr);
    if (!ok && renomme && !QFileInfo::exists(chemin)) {
        QFile::rename(ancien, chemin); // the old file back
        return false;
    }
    QFile::remove(ancien); // trapped: a failure is ignored
    return ok;
}

// --- Languages

int NombreLangues(const TableChaines& table) { return int(ValVb(table.Texte(3))); }

QString NomLangue(const TableChaines& table, int index) {
    return index > 0 ? table.Texte(5 + DecalageLangue(index)) : QString();
}

QString CodeLangue(const TableChaines& table, int index) {
    return table.Texte(8 + DecalageLangue(index > 0 ? index : 1));
}

int IndexLangue(const TableChaines& table, const QString& nom) {
    if (Trim(nom).isEmpty()) return 0;
    const QString u = UCase(Trim(nom));
    const int n = NombreLangues(table);
    for (int i = 1; i <= n; ++i)
        if (UCase(NomLangue(table, i)) == u) return i;
    return 0;
}

ChoixLangues LanguesDeConfig(const Config& c, const TableChaines& table) {
    return {IndexLangue(table, c.Langue), IndexLangue(table, c.LangueMenu),
            IndexLangue(table, c.LangueAide), IndexLangue(table, c.LangueMasq)};
}

ChoixLangues LanguesDeReglages(const Reglages& r) {
    auto index = [](int decalage) { return decalage / PasLangue + 1; };
    return {index(r.LangueMessages), index(r.LangueMenus), index(r.LangueAide), index(r.LangueMasque)};
}

void AppliqueConfig(const Config& c, const TableChaines& table, Reglages& r) {
    r.Zmm = c.Zmm;
    r.Patchs = c.Patchs;
    const ChoixLangues l = LanguesDeConfig(c, table);
    r.LangueMessages = DecalageLangue(l[CadreMessages]);
    r.LangueMenus = DecalageLangue(l[CadreMenus]);
    r.LangueAide = DecalageLangue(l[CadreAide]);
    r.LangueMasque = DecalageLangue(l[CadreMasque]);
}

void AppliqueEmplacement(const EmplacementConfig& lieu, Reglages& r) {
    r.DossierProgramme = lieu.DossierProgramme;
    r.DossierTravail = lieu.DossierDepart;
    r.DossierFichier = lieu.DossierFichier;
    r.DossierCfg = lieu.DossierCfg;
}

bool LanguesAChoisir(const Config& c, const TableChaines& table, const QString& version) {
    if (!VersionConforme(c.PremiereLigne, version)) return true; // messages count as unset
    for (int i : LanguesDeConfig(c, table))
        if (i == 0) return true;
    return false;
}

// --- Form3

QString NomFichierAide(const QString& code) {
    return QStringLiteral("Mirel_") + code + QStringLiteral(".chm");
}

namespace {

// The template that Form3 copies: program folder + "Mirel_" + code + ".DaN";
// when the program folder is not usable, `DossierCfg` first. The template
// compiled into the program closes the search.
QString SourceModeleLangue(const EmplacementConfig& lieu, const QString& code) {
    const QString nom = QStringLiteral("Mirel_") + code + QStringLiteral(".DaN");
    QStringList essais;
    if (!lieu.ProgrammeUtilisable) essais << lieu.DossierCfg + nom;
    essais << lieu.DossierProgramme + nom << QStringLiteral(":/strings/") + nom;
    for (const QString& e : essais)
        if (QFileInfo(e).isFile()) return e;
    return {};
}

} // namespace

QString ValideLangues(const ChoixLangues& choix, const EmplacementConfig& lieu, Config& c,
                      const TableChaines& table, const QString& version) {
    ChoixLangues l = choix;
    for (int& i : l)
        if (i == 0) i = 1;
    const QString noms[4] = {NomLangue(table, l[0]), NomLangue(table, l[1]),
                             NomLangue(table, l[2]), NomLangue(table, l[3])};
    c.Langue = noms[0];
    c.LangueMenu = noms[1];
    c.LangueAide = noms[2];
    c.LangueMasq = noms[3];
    EcritConfig(lieu, CleCfg::Langue, noms[0], version);
    EcritConfig(lieu, CleCfg::LangueMenu, noms[1], version);
    EcritConfig(lieu, CleCfg::LangueAide, noms[2], version);
    EcritConfig(lieu, CleCfg::LangueMasq, noms[3], version);
    // The template of the message language over "Mirel.DaN" in DossierCfg
    // (not in the read-only case: nothing is written there then).
    const QString source = SourceModeleLangue(lieu, CodeLangue(table, l[CadreMessages]));
    if (!source.isEmpty() && !lieu.EcritureInterdite) {
        if (const auto octets = LitOctets(source)) {
            Encodage enc = Encodage::Utf8;
            if (DecodeOctets(*octets, enc).size() > 5)
                EcritOctets(lieu.DossierCfg + QStringLiteral("Mirel.DaN"), *octets); // trapped
        }
    }
    return lieu.DossierProgramme + NomFichierAide(CodeLangue(table, l[CadreMasque]));
}

// --- Patches

QString InvitePatchs(int patchs, const TableChaines& table, int decalage) {
    QStringList actifs;
    for (int n = 1; n <= 16; ++n)
        if (PatchActif(patchs, n)) actifs << QString::number(n);
    return table.Texte(121 + decalage) + actifs.join(u',') + QStringLiteral("\n\n") +
           table.Texte(122 + decalage);
}

SaisiePatch AppliqueSaisiePatch(const QString& saisie, int& patchs) {
    if (saisie.isEmpty()) return SaisiePatch::Quitter;
    const double v = ValVb(saisie);
    if (std::fabs(v) > 32767) return SaisiePatch::Redemander;
    const long n = std::lrint(v); // the integer of the box, rounded as CInt
    if (n == 0 || n > 15 || n < -15) return SaisiePatch::Redemander;
    if (n > 0)
        patchs |= 1 << (n - 1);
    else
        patchs &= ~(1 << (-n - 1));
    patchs = Entier16Bits(patchs);
    return SaisiePatch::Appliquee;
}

bool Mnu_Patchs(int& patchs, const std::function<QString(const QString& invite)>& demande,
                const TableChaines& table, int decalage, const EmplacementConfig& lieu,
                const QString& version) {
    return Mnu_Patchs(patchs, demande, table, decalage, [&](const QString& valeur) {
        EcritConfig(lieu, CleCfg::Patchs, valeur, version);
    });
}

bool Mnu_Patchs(int& patchs, const std::function<QString(const QString& invite)>& demande,
                const TableChaines& table, int decalage,
                const std::function<void(const QString& valeur)>& ecrit) {
    for (;;) {
        const QString s = demande(InvitePatchs(patchs, table, decalage));
        int p = patchs;
        switch (AppliqueSaisiePatch(s, p)) {
        case SaisiePatch::Quitter: return false;
        case SaisiePatch::Redemander: continue;
        case SaisiePatch::Appliquee:
            patchs = p;
            ecrit(QString::number(patchs));
            return true;
        }
    }
}

// --- Help

EtatMenuAide MenuAide(const ChoixLangues& choix, const TableChaines& table,
                      const QString& dossierProgramme) {
    EtatMenuAide m;
    const int menu = DecalageLangue(choix[CadreMenus]);
    if (choix[CadreMasque] == choix[CadreMenus]) {
        m.LegendeAide25 = table.Texte(71 + menu);
        m.AideVisible = false;
        m.NonDocVisible =
            QFileInfo::exists(AvecBarre(dossierProgramme) + QStringLiteral("Mirel_fr/Non_Doc_fr.chm"));
    } else {
        m.LegendeAide25 = table.Texte(87 + menu);
        m.LegendeAide = table.Texte(71 + menu);
        m.AideVisible = true;
    }
    return m;
}

DemandeAide AideDe(CommandeAide commande, const QString& fichierAide, const QString& dossierProgramme,
                   const QString& codeMenu, const QString& codeMasque, const QString& mot) {
    const QString p = AvecBarre(dossierProgramme);
    DemandeAide d;
    switch (commande) {
    case CommandeAide::Aide25: d.Fichier = fichierAide; break;
    case CommandeAide::Aide: d.Fichier = p + QStringLiteral("Mirel-200_") + codeMenu + QStringLiteral(".chm"); break;
    case CommandeAide::MAJ_Aide: d.Fichier = p + QStringLiteral("Mirel_MAJ_") + codeMasque + QStringLiteral(".chm"); break;
    case CommandeAide::ResumeSyntaxes:
        d.Fichier = p + NomFichierAide(codeMenu);
        d.Quoi = DemandeAide::Sujet::Resume;
        break;
    case CommandeAide::Non_Doc: d.Fichier = p + QStringLiteral("Mirel_fr/Non_Doc_fr.chm"); break;
    case CommandeAide::AideMot:
        d.Fichier = p + NomFichierAide(codeMenu);
        d.Quoi = DemandeAide::Sujet::Numero;
        d.Numero = SujetAide(mot);
        break;
    }
    return d;
}

QString MotAide(const QString& texte, int curseur, const QString& selection,
                const QString& separateur1) {
    if (!selection.isEmpty()) return selection;
    const QChar sep = separateur1.isEmpty() ? QChar(u',') : separateur1[0];
    auto limite = [&](QChar c) {
        return c == u'\r' || c == u'\n' || c == u' ' || c == u'\'' || c == sep || c == u'=';
    };
    curseur = std::clamp(curseur, 0, int(texte.size()));
    int debut = curseur;
    while (debut > 0 && !limite(texte[debut - 1])) --debut;
    int fin = curseur;
    while (fin < texte.size() && !limite(texte[fin])) ++fin;
    QString mot = texte.mid(debut, fin - debut);
    if (mot.isEmpty() && curseur < texte.size()) {
        mot = texte.mid(curseur, 1);
        if (mot == u"\r") mot = QStringLiteral(" ");
    }
    return mot;
}

namespace {

// The topics of Mnu_AideMot, the words of each separated by blanks.
struct GroupeAide {
    int Sujet;
    const char* Mots;
};
constexpr GroupeAide GroupesAide[] = {
    {2100, "CT CENTREE CENTREI CENTREEI"},
    {2200, "TRAIT CERCLE CERCLEI CERCLEP CERCLEPI PLUS + X"},
    {2300, "PERCER PERCERX CADRE CADREP CADREA CADREAP POLY POLYP POLYR POLYRP FLECHE FLECHEP "
           "VOYANT DEMILUNE DEMILUNEP"},
    {2400, "TEXTE TEXTEC"},
    {2500, "EPAIST COULEUR TAILLEP POLICE SEPARATEUR ZOOMINI ZOOMINII REFCUR ANGROT"},
    {2600, "FORMATI NPAGE"},
    {2700, "DECAL ARC DROITE DROITEV GRAD GRAD1 VAL VALD VALR VAL1 VAL1D VAL1R SECT SECTP "
           "INVERSION EXPOSANT BEZIER_AGR"},
    {2800, "PLOT PLOTS PLOTP OPEN LVAR"},
    {2900, "IF IFT GOTO STOP ! INPUT"},
    {3000, "? LISTEVAR"},
    {3100, "IMAGE PALCOUL PALCOUL2 PALCOUL3 QA QA1 QA2 QA12 CHAIN COTE"},
    {3200, "FICHIER"},
};

} // namespace

QVector<int> SujetsAide() {
    QVector<int> r;
    for (const GroupeAide& g : GroupesAide) r << g.Sujet;
    return r << 5000;
}

int SujetAide(const QString& mot) {
    const QString u = UCase(mot);
    if (!u.isEmpty() && !u.contains(u' ')) {
        for (const GroupeAide& g : GroupesAide)
            if ((u' ' + QLatin1String(g.Mots) + u' ').contains(u' ' + u + u' ')) return g.Sujet;
    }
    if (u.startsWith(u'%')) return 2500;
    if (u.startsWith(u'!')) return 2900;
    if (u.startsWith(u"MCE_")) return 3200;
    return 5000;
}

namespace CHelp {

namespace {
QString CheminFenetre(const QString& fichier, const QString& fenetre) {
    return fenetre.isEmpty() ? fichier : fichier + u'>' + fenetre;
}
} // namespace

AppelAide Show(const QString& fichier, const QString& fenetre, std::optional<int> numero) {
    AppelAide a;
    a.Chemin = CheminFenetre(fichier, fenetre);
    a.Commande = numero ? 15 : 1;
    a.Numero = numero.value_or(0);
    return a;
}

AppelAide ShowIndex(const QString& fichier, const QString& fenetre) {
    AppelAide a;
    a.Chemin = CheminFenetre(fichier, fenetre);
    a.Commande = 2;
    return a;
}

AppelAide ShowSearch(const QString& fichier, const QString& fenetre) {
    AppelAide a;
    a.Chemin = CheminFenetre(fichier, fenetre);
    a.Commande = 3;
    a.Requete = QStringLiteral("TEST");
    return a;
}

} // namespace CHelp
