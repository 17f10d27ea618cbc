// Opening, saving and creating command files.
#include "app/core/fichiers.h"

#include "app/core/dmk.h"
#include "drawing/repere.h"
#include "language/chaines.h"
#include "language/etat.h"
#include "language/vb.h"

#include <QDir>
#include <QFileInfo>

using namespace vb;

// --- LitFic

float ZoomIniDe(const QString& texte) {
    static constexpr QLatin1StringView Mot("ZOOMINI");
    // Every occurrence of "ZOOMINI" in the text without regard to case, so
    // that "ZoomIni" and "zoomini" count alike; positions are those of the text.
    for (qsizetype pos = texte.indexOf(Mot, 0, Qt::CaseInsensitive); pos >= 0;
         pos = texte.indexOf(Mot, pos + 1, Qt::CaseInsensitive)) {
        qsizetype debut = pos;
        while (debut > 0 && texte[debut - 1] != u'\n' && texte[debut - 1] != u'\r') --debut;
        qsizetype fin = pos;
        while (fin < texte.size() && texte[fin] != u'\n' && texte[fin] != u'\r') ++fin;
        const QString ligne = LTrim(texte.mid(debut, fin - debut).remove(u'\t'));
        if (ligne.startsWith(u'\'')) continue;
        const int egal = InStr(ligne, QStringLiteral("="));
        return ZoomDepartDe(ValVb(egal > 0 ? Mid(ligne, egal + 1) : Mid(ligne, 8)));
    }
    return 1;
}

QString LignesCrLf(const QString& texte) {
    QString t = NormaliseFinsDeLigne(texte);
    if (!t.isEmpty() && !t.endsWith(CrLf())) t += CrLf();
    return t;
}

TexteLu LitFic(const QByteArray& octets) {
    TexteLu lu;
    lu.Texte = LignesCrLf(DecodeOctets(octets, lu.Enc));
    lu.ZoomDepart = ZoomIniDe(lu.Texte);
    return lu;
}

std::optional<TexteLu> LitFic(const QString& chemin, QString* erreur) {
    const auto octets = LitOctets(chemin, erreur);
    if (!octets) return std::nullopt;
    return LitFic(*octets);
}

// --- Names and texts

bool EstDesinstalleur(const QString& nom) {
    return UCase(Right(nom, 4)) == u".DAT" && Len(nom) >= 11 &&
           UCase(Mid(nom, Len(nom) - 11, 7)) == u"UNINS00";
}

QString MessageDesinstalleur(const QString& nom) {
    return nom + QStringLiteral("\nN'est pas un fichier Mirel\nIs not a Mirel file\nIst keine Mirel Datei.");
}

QString FiltreOuvrir(int d) { return LoadResString(105 + d) + QStringLiteral(" (*.dat)|*.dat|") + FiltreListe(d); }

QString FiltreEnregistrer(int d) {
    return LoadResString(105 + d) + QStringLiteral(" (*.dat)|*.dat|") + LoadResString(106 + d) +
           QStringLiteral(" (*.*)|*.*");
}

QString FiltreListe(int d) { return LoadResString(106 + d) + QStringLiteral(" (*.*)|*.*|"); }

QString FiltreQt(const QString& filtre) {
    // Pairs "label|pattern"; the label already shows the pattern.
    const QStringList p = filtre.split(u'|');
    QStringList r;
    for (qsizetype i = 0; i + 1 < p.size(); i += 2)
        if (!p[i].isEmpty()) r << p[i];
    return r.join(QStringLiteral(";;"));
}

QString DossierDe(const QString& chemin) {
    const qsizetype i = std::max(chemin.lastIndexOf(u'/'), chemin.lastIndexOf(u'\\'));
    return i < 0 ? QString() : chemin.left(i + 1);
}

QString CoupeDeuxPoints(const QString& nom) {
    const QString dossier = DossierDe(nom);
    const QString fichier = nom.mid(dossier.size());
    if (fichier.count(u'.') < 2) return nom;
    return dossier + fichier.left(fichier.lastIndexOf(u'.'));
}

bool EstExportCode(const QString& nom) { return UCase(nom).endsWith(u".JPG#"); }

bool EstFichierMeter(const QString& nom) { return UCase(nom).endsWith(u".MTR"); }

QString CleSansCasse(const QString& nom) {
    QString cle;
    cle.reserve(nom.size());
    for (char32_t c : nom.toUcs4()) cle += QChar::fromUcs4(QChar::toCaseFolded(c));
    return cle;
}

QString TrouveSansCasse(const QString& dossier, const QString& nom) {
    if (dossier.isEmpty()) return {};
    const QDir d(dossier);
    if (d.exists(nom) && QFileInfo(d.filePath(nom)).isFile()) return d.filePath(nom);
    const QString cle = CleSansCasse(nom);
    for (const QString& n : d.entryList(QDir::Files | QDir::Hidden))
        if (CleSansCasse(n) == cle) return d.filePath(n);
    return {};
}

QString CheminModele(const QString& dossierTravail, const QString& dossierCfg,
                     const QString& dossierProgramme, const QString& code) {
    // 1. "Mirel.daN" in the working folder.
    const QString travail = TrouveSansCasse(dossierTravail, QStringLiteral("Mirel.daN"));
    if (!travail.isEmpty()) return travail;
    const QString nom = QStringLiteral("Mirel_") + code + QStringLiteral(".DaN");
    // 2. DossierCfg, 3. the program folder, then the compiled-in template.
    for (const QString& dossier : {dossierCfg, dossierProgramme}) {
        if (dossier.isEmpty()) continue;
        const QString c = TrouveSansCasse(dossier, nom);
        if (!c.isEmpty()) return c;
    }
    const QString ressource = QStringLiteral(":/strings/") + nom;
    if (QFileInfo(ressource).isFile()) return ressource;
    return {};
}

QString TexteListeFichiers(const QStringList& fichiers, const QString& separateur1) {
    if (fichiers.isEmpty()) return {};
    if (fichiers.size() == 1) return fichiers.first();
    // Several files: the folder, then each bare name, joined by the separator.
    QStringList morceaux{QFileInfo(fichiers.first()).absolutePath()};
    for (const QString& f : fichiers) morceaux << QFileInfo(f).fileName();
    return morceaux.join(separateur1);
}

bool EcritTexteCommande(const QString& chemin, const QString& texte, Encodage& enc, QString* erreur) {
    return EcritOctets(chemin, EncodeTexte(texte, enc), erreur);
}

bool ExportDmkDisponible() {
#ifdef MIREL_EXPORT_DMK
    return true;
#else
    return false;
#endif
}

// --- The commands

void FenetreFichiers::ChangeDossier(const QString& dossier) {
    if (!dossier.isEmpty()) QDir::setCurrent(dossier);
}

namespace {

// After a save wrote the text or failed: the caption and Modifie are updated
// even after a failure, and a text at risk that failed to go on disk is then
// off the disk.
bool ApresEcriture(EtatFichiers& e, bool ok) {
    e.HorsDisque = !ok && (e.Modifie || e.HorsDisque);
    e.Modifie = false;
    return ok;
}

} // namespace

bool DemandeSauvegarde(EtatFichiers& e, const Reglages& r, FenetreFichiers& f) {
    if (f.TexteEditeur().isEmpty() || !(e.Modifie || e.HorsDisque)) return true;
    switch (f.Message(LoadResString(118 + r.LangueMessages), Boutons::OuiNonAnnuler)) {
    case Reponse::Annuler: return false;
    // A save that did not happen (Save as cancelled, a failed write) keeps the text.
    case Reponse::Oui: return Mnu_EnregistrerS(e, r, f);
    default: return true;
    }
}

bool ChargeFichier(EtatFichiers& e, FenetreFichiers& f, const QString& chemin, bool visualiser) {
    // 3. The folder of the file.
    e.DossierFichier = DossierDe(chemin);
    f.ChangeDossier(e.DossierFichier);
    // 4. Busy; LitFic; the caption.
    f.Occupe(true);
    QString erreur;
    const auto lu = LitFic(chemin, &erreur);
    if (!lu) {
        f.Occupe(false);
        f.Message(erreur, Boutons::Ok);
        return false;
    }
    DonneTexte(e, f, chemin, *lu, visualiser);
    return true;
}

void DonneTexte(EtatFichiers& e, FenetreFichiers& f, const QString& chemin, const TexteLu& lu,
                bool visualiser) {
    f.ChargeTexte(lu);
    e.Enc = lu.Enc;
    e.NomCourant = chemin;
    f.EcritLegende(e.NomCourant);
    // A run; the file is the current one.
    if (visualiser) f.Visualiser();
    e.FichierCourant = chemin;
    e.Modifie = false;
    e.HorsDisque = false;
    f.DebutAnnulation();
    f.Occupe(false);
}

bool Mnu_Ouvrir(EtatFichiers& e, const Reglages& r, FenetreFichiers& f) {
    if (!DemandeSauvegarde(e, r, f)) return false;
    // 1. The dialog; cancel with an empty editor gives a new text.
    const QString nom = f.DialogueOuvrir(e.DossierFichier, FiltreOuvrir(r.LangueMessages));
    if (nom.isEmpty()) {
        if (f.TexteEditeur().isEmpty()) Mnu_Nouveau(e, r, f, false);
        return false;
    }
    // 2. The uninstaller's data file.
    if (EstDesinstalleur(nom)) {
        f.Message(MessageDesinstalleur(nom), Boutons::Ok);
        return false;
    }
    return ChargeFichier(e, f, nom);
}

bool Mnu_Nouveau(EtatFichiers& e, const Reglages& r, FenetreFichiers& f, bool demander) {
    if (demander && !DemandeSauvegarde(e, r, f)) return false;
    f.Occupe(true);
    f.VideEditeur();
    // The template; none is no error.
    const QString code = LoadResString(8 + r.LangueMessages);
    const QString modele = CheminModele(r.DossierTravail, r.DossierCfg, r.DossierProgramme, code);
    if (!modele.isEmpty()) {
        if (const auto lu = LitFic(modele)) f.ChargeTexte(*lu);
    }
    e.NomCourant.clear();
    f.EcritLegende(e.NomCourant);
    f.Visualiser();
    e.FichierCourant.clear();
    e.Enc = Encodage::Utf8; // new files are saved in UTF-8
    e.Modifie = false;
    e.HorsDisque = false;
    f.Occupe(false);
    return true;
}

bool Mnu_EnregistrerS(EtatFichiers& e, const Reglages& r, FenetreFichiers& f) {
    // An imported meter file is never written over: Save as.
    if (e.FichierCourant.isEmpty() || EstFichierMeter(e.FichierCourant)) return Mnu_Enregistrer(e, r, f);
    QString erreur;
    const bool ok = EcritTexteCommande(e.FichierCourant, f.TexteEditeur(), e.Enc, &erreur);
    if (!ok) f.Message(erreur, Boutons::Ok);
    f.EcritLegende(e.NomCourant);
    return ApresEcriture(e, ok);
}

bool Mnu_Enregistrer(EtatFichiers& e, const Reglages& r, FenetreFichiers& f) {
    // An imported meter file is offered as a command file of the same name:
    // one Enter must not write the program over the meter's description.
    const QString offert = EstFichierMeter(e.NomCourant)
                               ? e.NomCourant.left(e.NomCourant.lastIndexOf(u'.')) + QStringLiteral(".dat")
                               : e.NomCourant;
    QString nom = f.DialogueEnregistrer(offert, FiltreEnregistrer(r.LangueMessages), ExtensionEnregistrer);
    nom = CoupeDeuxPoints(nom);
    if (nom.isEmpty()) return false; // cancel: the old name stays
    if (EstExportCode(nom)) return ExportCode(e, f, nom);
    QString erreur;
    const bool ok = EcritTexteCommande(nom, f.TexteEditeur(), e.Enc, &erreur);
    if (!ok) f.Message(erreur, Boutons::Ok);
    // Only the name of the caption changes: the file that Save writes stays the
    // one opened, and a new or imported text keeps going through Save as.
    e.NomCourant = nom;
    if (ok) e.NomEcrit = QFileInfo(nom).absoluteFilePath();
    f.EcritLegende(e.NomCourant);
    return ApresEcriture(e, ok);
}

bool ExportCode(EtatFichiers& e, FenetreFichiers& f, const QString& nom) {
    // The name without ".JPG#".
    const QString base = Left(nom, Len(nom) - 5);
    auto refuse = [&]() {
        f.Message(TexteNonCompatible, Boutons::Ok);
        e.NomCourant = base + QStringLiteral(".dat");
        f.EcritLegende(e.NomCourant);
        return false;
    };
    if (!e.ExportPermis) return refuse();
    const QString texte = f.TexteEditeur();
    if (!texte.contains(MarqueFinDmk)) return refuse();
    // 1. Coded and decoded again in memory: a coded file that cannot be read
    // back is never written.
    const auto code = CodeDmk(texte, e.Ale);
    if (!code) return refuse();
    const auto relu = DecodeDmk(*code);
    if (!relu || *relu != RTrim(texte)) {
        f.Message(TexteNonCompatible, Boutons::Ok);
        return false;
    }
    // 2. The name loses its last 4 characters ("JPG#") and takes "dmk".
    const QString chemin = Left(nom, Len(nom) - 4) + QStringLiteral("dmk");
    QString erreur;
    if (!EcritOctets(chemin, *code, &erreur)) {
        f.Message(erreur, Boutons::Ok);
        return false;
    }
    // 3. The current name: ".dat" in place of ".dmk".
    e.NomCourant = Left(chemin, Len(chemin) - 4) + QStringLiteral(".dat");
    f.EcritLegende(e.NomCourant);
    return true;
}

QString Mnu_Liste_Fic(const Reglages& r, FenetreFichiers& f, const QString& separateur1, bool ctrl) {
    return TexteListeFichiers(f.DialogueListe(FiltreListe(r.LangueMessages), ctrl), separateur1);
}
