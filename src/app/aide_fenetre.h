// The help viewer: a window with a `QTextBrowser` that shows the pages of
// src/app/core/aide, generated from the string table.
#pragma once

#include "app/core/aide.h"

#include <QWidget>

class QTextBrowser;

class FenetreAide : public QWidget {
    Q_OBJECT
public:
    explicit FenetreAide(QWidget* parent = nullptr);
    // Shows the page, scrolled to its anchor, and raises the window.
    void Montre(const PageAide& page);
    QTextBrowser* Navigateur() const { return navigateur_; }
    QString AncreMontree; // the anchor of the last page shown (the tests read it)

private:
    QTextBrowser* navigateur_;
};
