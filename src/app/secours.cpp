#include "app/secours.h"

#include "app/core/encodage.h"
#include "app/core/fichiers.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "language/chaines.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QLockFile>
#include <QStandardPaths>
#include <QTextDocument>
#include <QUuid>

#include <algorithm>

namespace {

// The first line of a copy; the file Save writes and the caption's name follow,
// one line each, then the text.
const QByteArray Entete = QByteArrayLiteral("Mirel recovery copy");

QString Verrou(const QString& copie) { return copie.left(copie.size() - 4) + QStringLiteral(".lock"); }

} // namespace

QString DossierSecoursStandard() {
    QString base = qEnvironmentVariable("XDG_STATE_HOME");
    if (base.isEmpty() || QDir::isRelativePath(base))
        base = QStandardPaths::writableLocation(QStandardPaths::HomeLocation) + QStringLiteral("/.local/state");
    return base + QStringLiteral("/mirel");
}

Secours::Secours(Editeur* ed, QString dossier, const QString& fichier, const QString& nom,
                 const bool& horsDisque)
    : ed_(ed), dossier_(std::move(dossier)), fichier_(fichier), nom_(nom), horsDisque_(horsDisque) {
    if (dossier_.isEmpty()) return;
    base_ = dossier_ + QStringLiteral("/secours-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    // Each key is written as it is released, so that a process killed in
    // the middle of typing loses none of the keys it has handled; any other
    // change (a paste, an undo, a replacement, a run's rewrite) once the
    // editor is idle again, which makes one write of a burst of changes.
    minuteur_.setSingleShot(true);
    minuteur_.setInterval(0);
    QObject::connect(&minuteur_, &QTimer::timeout, [this] { Ecrit(); });
    QObject::connect(ed_->document(), &QTextDocument::contentsChange, &minuteur_,
                     [this] { minuteur_.start(); });
    QObject::connect(ed_, &Editeur::toucheRelachee, &minuteur_, [this] { Ecrit(); });
}

Secours::~Secours() = default;

bool Secours::ARisque() const {
    return (ed_->Modifie || horsDisque_) && !ed_->document()->isEmpty();
}

void Secours::Ecrit() {
    if (dossier_.isEmpty()) return;
    if (!ARisque()) {
        Supprime();
        return;
    }
    const QByteArray contenu = Entete + '\n' + fichier_.toUtf8() + '\n' + nom_.toUtf8() + '\n' +
                               ed_->TexteCrLf().toUtf8();
    if (contenu == ecrit_) return;
    if (!verrou_) {
        QDir().mkpath(dossier_);
        verrou_ = std::make_unique<QLockFile>(base_ + QStringLiteral(".lock"));
        if (!verrou_->tryLock(0)) {
            verrou_.reset();
            return;
        }
    }
    if (EcritOctets(Chemin(), contenu)) ecrit_ = contenu;
}

void Secours::Supprime() {
    if (dossier_.isEmpty()) return;
    QFile::remove(Chemin());
    ecrit_.clear();
    verrou_.reset(); // unlocks, and removes the lock file
}

namespace {

// Whether the file of a copy holds the copy's text, read as Open reads it. A
// file written after the copy may hold another text (another program wrote
// it): the copy is then offered still.
bool FichierTientLeTexte(const CopieSecours& c) {
    if (c.Fichier.isEmpty()) return false;
    const std::optional<TexteLu> lu = LitFic(c.Fichier);
    return lu && lu->Texte == LignesCrLf(c.Texte);
}

} // namespace

QList<CopieSecours> Secours::Abandonnees() const {
    QList<CopieSecours> r;
    if (dossier_.isEmpty()) return r;
    const QDir d(dossier_);
    for (const QFileInfo& fi : d.entryInfoList({QStringLiteral("secours-*.txt")}, QDir::Files)) {
        const QString chemin = fi.absoluteFilePath();
        if (chemin == QFileInfo(Chemin()).absoluteFilePath()) continue;
        CopieSecours c;
        c.Verrou = std::make_shared<QLockFile>(Verrou(chemin));
        // A lock is stale only when its process is gone, however old it is.
        c.Verrou->setStaleLockTime(0);
        if (!c.Verrou->tryLock(0)) continue; // its window still lives
        QFile f(chemin);
        if (!f.open(QIODevice::ReadOnly)) continue;
        const QByteArray octets = f.readAll();
        const qsizetype a = octets.indexOf('\n');
        const qsizetype b = a < 0 ? -1 : octets.indexOf('\n', a + 1);
        const qsizetype z = b < 0 ? -1 : octets.indexOf('\n', b + 1);
        if (z < 0 || octets.left(a) != Entete) continue;
        c.Chemin = chemin;
        c.Fichier = QString::fromUtf8(octets.mid(a + 1, b - a - 1));
        c.Nom = QString::fromUtf8(octets.mid(b + 1, z - b - 1));
        c.Texte = QString::fromUtf8(octets.mid(z + 1));
        c.Date = fi.lastModified();
        if (FichierTientLeTexte(c)) {
            Jette(c); // nothing to take back: the file holds that text
            continue;
        }
        r.append(c);
    }
    std::sort(r.begin(), r.end(), [](const CopieSecours& a, const CopieSecours& b) { return a.Date > b.Date; });
    return r;
}

void Secours::Jette(CopieSecours& c) {
    QFile::remove(c.Chemin);
    c.Verrou.reset();
}

// --- the window's side

void Form1::ReprendSecours() {
    for (CopieSecours& c : secours->Abandonnees()) {
        const QString nom = !c.Nom.isEmpty() ? c.Nom : !c.Fichier.isEmpty() ? c.Fichier : Chaine(386);
        const QString date = QLocale(Chaine(8)).toString(c.Date, QLocale::ShortFormat);
        if (s_.boites->Message(this, TitreBoite, Chaine(385).arg(nom, date), Boutons::OuiNon,
                               Icone::Question) != Reponse::Oui) {
            Secours::Jette(c);
            continue;
        }
        // The copy's text in the editor, under its names, modified and not on disk.
        CommandeFichier([&c](EtatFichiers& ef, FenetreFichiers& p) {
            TexteLu lu;
            lu.Texte = c.Texte;
            lu.ZoomDepart = ZoomIniDe(c.Texte);
            if (!c.Fichier.isEmpty()) {
                ef.DossierFichier = DossierDe(c.Fichier);
                p.ChangeDossier(ef.DossierFichier);
                if (const auto fichier = ::LitFic(c.Fichier)) lu.Enc = fichier->Enc;
            }
            p.ChargeTexte(lu);
            ef.Enc = lu.Enc;
            ef.NomCourant = c.Nom;
            ef.FichierCourant = c.Fichier;
            ef.Modifie = true;
            p.EcritLegende(ef.NomCourant);
            return true;
        });
        secours->Ecrit();
        Secours::Jette(c);
        return;
    }
}

bool Form1::AccepteFermeture() {
    if (!secours->ARisque()) return true;
    // After a failed save the question says so, and Yes offers another name.
    const bool horsDisque = fichiers_.HorsDisque && !Modifie();
    const QString question = horsDisque ? Chaine(384) + u'\n' + Chaine(118) : Chaine(118);
    switch (s_.boites->Message(this, TitreBoite, question, Boutons::OuiNonAnnuler, Icone::Question)) {
    case Reponse::Annuler: return false;
    case Reponse::Non: return true;
    default: break;
    }
    if (horsDisque) Mnu_Enregistrer_Click();
    else Mnu_EnregistrerS_Click();
    // A save that did not put the text on disk keeps the window open.
    return !secours->ARisque();
}
