#include "app/usage_fenetre.h"

#include "app/core/config.h"
#include "app/core/fichiers.h"
#include "app/core/meter.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "app/secours.h"
#include "language/chaines.h"

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QLibraryInfo>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QScrollBar>
#include <QTimer>
#include <QTranslator>
#include <QUrl>

QStringList AjouteRecent(const QStringList& liste, const QString& chemin) {
    QStringList r{chemin};
    for (const QString& c : liste)
        if (c != chemin && r.size() < NombreRecents) r << c;
    return r;
}

QString FichierDepose(const QMimeData* donnees) {
    if (!donnees || !donnees->hasUrls() || donnees->urls().size() != 1) return {};
    const QUrl u = donnees->urls().first();
    if (!u.isLocalFile()) return {};
    const QString chemin = u.toLocalFile();
    const bool texte = QFileInfo(chemin).suffix().compare(ExtensionEnregistrer, Qt::CaseInsensitive) == 0;
    return texte || EstFichierMeter(chemin) ? chemin : QString();
}

bool TraduitQt(int decalage, QObject* proprietaire) {
    const QString nom = QStringLiteral("MirelTraductionQt");
    delete proprietaire->findChild<QTranslator*>(nom, Qt::FindDirectChildrenOnly);
    // The section's language code (row 8); Qt's own texts are English already.
    const QString code = LoadResString(8 + decalage);
    if (code.isEmpty() || code == QLatin1String("en")) return false;
    auto* t = new QTranslator(proprietaire);
    t->setObjectName(nom);
    if (!t->load(QStringLiteral("qt_") + code, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete t;
        return false;
    }
    QCoreApplication::installTranslator(t);
    return true;
}

// --- the window's part

UsageFenetre::UsageFenetre(Form1& fenetre) : QObject(&fenetre), f_(fenetre) {
    f_.Mnu_Ouvrir->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_O));
    f_.Mnu_Nouveau->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_N));
    f_.Mnu_EnregistrerS->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_S));
    f_.Mnu_Quitter->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    f_.Mnu_Visualiser->setShortcut(QKeySequence(Qt::Key_F5));

    Mnu_Recents = new QMenu(&f_);
    Mnu_Recents->setObjectName(QStringLiteral("Mnu_Recents"));
    f_.Mnu_Fichier->insertMenu(f_.Mnu_OuvrirMeter, Mnu_Recents);
    connect(Mnu_Recents, &QMenu::aboutToShow, this, &UsageFenetre::RemplitRecents);

    veille_ = new QFileSystemWatcher(this);
    connect(veille_, &QFileSystemWatcher::fileChanged, this, [this](const QString& chemin) {
        if (chemin != suivi_) return;
        // Writers that replace the file drop it from the watch: a moment
        // later it is watched again and compared.
        QTimer::singleShot(150, this, [this] {
            if (!suivi_.isEmpty() && QFileInfo::exists(suivi_) && !veille_->files().contains(suivi_))
                veille_->addPath(suivi_);
            VerifieDisque();
        });
    });

    // The caption's "*" follows the text; the change is read once the
    // editor has noted it.
    connect(f_.RTB1->document(), &QTextDocument::contentsChanged, this, [this] { f_.EcritCaption(); },
            Qt::QueuedConnection);

    f_.setAcceptDrops(true);
    f_.installEventFilter(this);
    f_.RTB1->viewport()->installEventFilter(this);
    Legendes();
}

void UsageFenetre::Legendes() {
    Mnu_Recents->setTitle(LoadResString(395 + f_.regl.LangueMenus));
    Mnu_Recents->menuAction()->setEnabled(!f_.Config.Recents.isEmpty());
}

void UsageFenetre::RemplitRecents() {
    Mnu_Recents->clear();
    // Files gone from the disk leave the list.
    QStringList restent;
    for (const QString& c : f_.Config.Recents) {
        if (!QFileInfo(c).isFile()) continue;
        restent << c;
        QString nom = c;
        nom.replace(u'&', QStringLiteral("&&")); // no accelerator from the path
        QAction* a = Mnu_Recents->addAction(QStringLiteral("&%1  %2").arg(restent.size()).arg(nom));
        connect(a, &QAction::triggered, this, [this, c] { Ouvre(c); });
    }
    f_.Config.Recents = restent;
}

void UsageFenetre::EnregistreReglages() {
    f_.s_.config->EcritConfig(CleCfg::Recents, u' ' + f_.Config.Recents.join(u'|'));
    const QRect g = f_.normalGeometry();
    f_.s_.config->EcritConfig(CleCfg::Fenetre, QStringLiteral(" %1 %2 %3 %4%5")
                                                   .arg(g.x()).arg(g.y()).arg(g.width()).arg(g.height())
                                                   .arg(f_.isMaximized() ? QStringLiteral(" max") : QString()));
}

void UsageFenetre::RestaurePlace() {
    const QStringList v = f_.Config.Fenetre.split(u' ', Qt::SkipEmptyParts);
    if (v.size() < 4) return;
    int n[4];
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        n[i] = v[i].toInt(&ok);
        if (!ok) return;
    }
    const QRect g(n[0], n[1], n[2], n[3]);
    if (g.width() < 300 || g.height() < 200) return;
    // The screen it stands on: the one under its centre, else one it touches.
    // None (a screen unplugged since, a value edited by hand): the default
    // place. A window larger than its screen is brought back to the screen's
    // size (a window of 40000 pixels would take gigabytes to paint).
    const QScreen* ecran = QGuiApplication::screenAt(g.center());
    for (const QScreen* s : QGuiApplication::screens())
        if (!ecran && s->availableGeometry().intersects(g)) ecran = s;
    if (!ecran) return;
    f_.setGeometry(QRect(g.topLeft(), g.size().boundedTo(ecran->availableGeometry().size())));
    if (v.value(4) == QLatin1String("max")) f_.setWindowState(Qt::WindowMaximized);
}

bool UsageFenetre::Ouvre(const QString& chemin) {
    if (f_.EnExecution()) return false;
    const Reglages& r = f_.regl;
    return f_.CommandeFichier([&](EtatFichiers& ef, FenetreFichiers& p) {
        if (!DemandeSauvegarde(ef, r, p)) return false;
        if (EstDesinstalleur(chemin)) {
            p.Message(MessageDesinstalleur(chemin), Boutons::Ok);
            return false;
        }
        return ChargeSelonType(ef, r, p, chemin);
    });
}

void UsageFenetre::ApresCommandeFichier(const QString& ecrit) {
    const QString c = f_.FichierCourant.isEmpty() ? QString() : QFileInfo(f_.FichierCourant).absoluteFilePath();
    auto ajoute = [this](const QString& chemin) {
        if (!chemin.isEmpty()) f_.Config.Recents = AjouteRecent(f_.Config.Recents, chemin);
    };
    // A file just written by Save as comes before the one it was written
    // from, and after the one the command went on to (Open or New after
    // their question to save): the file in the window is the most recent.
    if (c != suivi_) {
        ajoute(ecrit);
        ajoute(c);
    } else {
        ajoute(c);
        ajoute(ecrit);
    }
    Mnu_Recents->menuAction()->setEnabled(!f_.Config.Recents.isEmpty());
    if (c != suivi_) {
        if (!suivi_.isEmpty()) veille_->removePath(suivi_);
        suivi_ = c;
    }
    if (!c.isEmpty() && QFileInfo::exists(c) && !veille_->files().contains(c)) veille_->addPath(c);
    empreinte_ = EmpreinteDe(c);
}

UsageFenetre::Empreinte UsageFenetre::EmpreinteDe(const QString& chemin) {
    const QFileInfo fi(chemin);
    if (chemin.isEmpty() || !fi.isFile()) return {};
    return {fi.lastModified(), fi.size()};
}

bool UsageFenetre::VerifieDisque() {
    if (question_ || suivi_.isEmpty() || f_.EnExecution()) return false;
    const Empreinte maintenant = EmpreinteDe(suivi_);
    if (maintenant == empreinte_) return false;
    // Asked once for each change. A file gone is not a change to offer, but
    // the text is then on no disk: it counts as not saved (the caption's "*",
    // the close question, the recovery copy).
    empreinte_ = maintenant;
    if (maintenant.taille < 0) {
        f_.SetModifie(true);
        f_.EcritCaption();
        f_.secours->Ecrit();
        return false;
    }
    question_ = true;
    // Two questions of two lines each: the second when reloading would lose
    // changes not saved.
    const QStringList questions = LoadResString(394 + f_.regl.LangueMessages).split(u'\n');
    const bool perte = f_.secours->ARisque();
    const QString question = questions.mid(perte ? 2 : 0, 2).join(u'\n').arg(suivi_);
    Boites& b = *f_.s_.boites;
    const Reponse r = perte ? b.QuestionRisquee(&f_, TitreBoite, question)
                            : b.Message(&f_, TitreBoite, question, Boutons::OuiNon, Icone::Question);
    question_ = false;
    if (r != Reponse::Oui) return false;
    const QString chemin = suivi_;
    const Reglages& reg = f_.regl;
    const int caret = f_.RTB1->textCursor().position(), defilement = f_.RTB1->verticalScrollBar()->value();
    if (!f_.CommandeFichier([&](EtatFichiers& ef, FenetreFichiers& p) { return ChargeSelonType(ef, reg, p, chemin); }))
        return false;
    // The same file: the caret and the scroll stay where the user was.
    f_.RTB1->RetrouvePlace(caret, 0, defilement);
    f_.RTB1->MajLigne();
    return true;
}

bool UsageFenetre::eventFilter(QObject* objet, QEvent* ev) {
    switch (ev->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto* d = static_cast<QDropEvent*>(ev);
        if (FichierDepose(d->mimeData()).isEmpty()) break;
        d->acceptProposedAction();
        return true;
    }
    case QEvent::Drop: {
        auto* d = static_cast<QDropEvent*>(ev);
        const QString chemin = FichierDepose(d->mimeData());
        if (chemin.isEmpty()) break;
        d->acceptProposedAction();
        // The drag ends before the question or the run.
        QTimer::singleShot(0, this, [this, chemin] { Ouvre(chemin); });
        return true;
    }
    case QEvent::WindowActivate:
        if (objet == &f_) QTimer::singleShot(0, this, [this] { VerifieDisque(); });
        break;
    default:
        break;
    }
    return QObject::eventFilter(objet, ev);
}
