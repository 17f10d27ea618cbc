// The small windows of the main window: the syntax tip `Form2`, the zoom
// dialog `Form4`, the reference dialog `Form5`, the about box; and `Form3`,
// the language dialog (its widget only: what OK writes is the configuration
// service's).
#pragma once

#include "app/services.h"

#include <QDialog>
#include <QWidget>

#include <array>
#include <functional>

class QButtonGroup;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class Boites;

// `Form2`: a small window without caption, Times New Roman 12, sized to its
// text plus 5 pixels, kept inside the main window.
class Form2 : public QWidget {
    Q_OBJECT
public:
    explicit Form2(QWidget* fenetre);
    // Shows the text with its top left near `global`, inside `cadre` (global).
    void Montre(const QString& texte, QPoint global, const QRect& cadre);
    QString Texte() const;

protected:
    void keyReleaseEvent(QKeyEvent* ev) override;

private:
    QLabel* label_;
};

// `Form4`: ZoomE and Zmm (F7).
class Form4 : public QDialog {
    Q_OBJECT
public:
    Form4(QWidget* parent, int langueMenus, float zoomE, float zmm, Boites* boites);
    QLineEdit* Text1; // ZoomE
    QLineEdit* Text2; // Zmm
    QPushButton* Command1;
    float ZoomE, Zmm;
    bool ZmmChange = false; // "Zmm = " is to be written to the configuration
    // The OK button and Enter: false (and the dialog stays) on a non-numeric field.
    bool Valide();

protected:
    void keyPressEvent(QKeyEvent* ev) override;

private:
    Boites* boites_;
};

// `Form5`: the reference point of the mouse read-out (F8).
class Form5 : public QDialog {
    Q_OBJECT
public:
    // `applique` takes the field's text; false keeps the dialog open.
    Form5(QWidget* parent, int langueMenus, const QString& champ,
          std::function<bool(const QString&)> applique);
    QLineEdit* Text1;
    QPushButton* Command1;
    bool Valide();

protected:
    void keyPressEvent(QKeyEvent* ev) override;

private:
    std::function<bool(const QString&)> applique_;
};

// `Form3`: four rows of language options (messages, menus, help, mask).
class Form3 : public QDialog {
    Q_OBJECT
public:
    Form3(QWidget* parent, const ValeursConfig& v);
    // The choice, as language names (entry 5 of each section).
    ValeursConfig Choix(ValeursConfig v) const;
    // Column c (0 messages .. 3 mask), language i (0 French .. 3 Spanish).
    QRadioButton* Option(int c, int i) const { return options_[c][i]; }

private:
    void Clic(int colonne, int langue);
    std::array<std::array<QRadioButton*, 4>, 4> options_{};
    std::array<QButtonGroup*, 4> groupes_{};
};

// The about box: string 104 as title, the program, the version, the author
// line and strings 101 to 103.
QString TexteAPropos(int langue, const QString& version);
void AProposDe(QWidget* parent, int langue, const QString& version);
