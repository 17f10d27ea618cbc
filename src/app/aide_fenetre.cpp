#include "app/aide_fenetre.h"

#include <QDesktopServices>
#include <QKeyEvent>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

FenetreAide::FenetreAide(QWidget* parent) : QWidget(parent, Qt::Window) {
    setWindowTitle(QStringLiteral("Mirel"));
    setObjectName(QStringLiteral("FenetreAide"));
    navigateur_ = new QTextBrowser(this);
    navigateur_->setOpenLinks(true);
    auto* l = new QVBoxLayout(this);
    l->setContentsMargins(0, 0, 0, 0);
    l->addWidget(navigateur_);
    resize(720, 640);
    Ouvreur = [](const QString& chemin) { return QDesktopServices::openUrl(QUrl::fromLocalFile(chemin)); };
}

void FenetreAide::Montre(const PageAide& page) {
    navigateur_->setHtml(page.Html);
    AncreMontree = page.Ancre;
    if (!page.Ancre.isEmpty()) navigateur_->scrollToAnchor(page.Ancre);
    show();
    raise();
    activateWindow();
}

bool FenetreAide::OuvreFichier(const QString& chemin) { return Ouvreur && Ouvreur(chemin); }

void FenetreAide::keyPressEvent(QKeyEvent* ev) {
    if (ev->key() == Qt::Key_Escape) {
        close();
        return;
    }
    QWidget::keyPressEvent(ev);
}
