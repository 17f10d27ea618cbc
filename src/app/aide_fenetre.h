// The help viewer: a window with a `QTextBrowser` that shows the pages of
// src/app/core/aide, generated from the string table. Esc closes it.
#pragma once

#include "app/core/aide.h"

#include <QWidget>

#include <functional>

class QTextBrowser;

class FenetreAide : public QWidget {
    Q_OBJECT
public:
    explicit FenetreAide(QWidget* parent = nullptr);
    // Shows the page, scrolled to its anchor, and raises the window.
    void Montre(const PageAide& page);
    // A help file of its own format, given to the desktop's viewer for its type.
    bool OuvreFichier(const QString& chemin);
    QTextBrowser* Navigateur() const { return navigateur_; }
    QString AncreMontree; // the anchor of the last page shown (the tests read it)
    // How a file reaches the desktop's viewer (the tests catch it).
    std::function<bool(const QString& chemin)> Ouvreur;

protected:
    void keyPressEvent(QKeyEvent* ev) override;

private:
    QTextBrowser* navigateur_;
};
