// `FrmCmd`, the command dialog (F2, `Mnu_Masque`): one command line edited
// parameter by parameter.
//
// The form is built at run time from the command's parameter description
// (string table rows 301 to 370 in the dialog's language, or the "'$" header
// of an external command). Each ";" field of the description is a parameter
// of the line; each "$" alternative of a field is a row, holding one
// sub-parameter. OK puts the rows back together and writes the line over the
// old logical line as one undo level; Cancel changes nothing.
#pragma once

#include <QDialog>
#include <QList>
#include <QRectF>
#include <QString>
#include <QVector>

#include <functional>
#include <optional>

class Boites;
class DialoguesImpression;
class Form1;
class QLabel;
class QLineEdit;
class QPushButton;
class QTextDocument;
struct Reglages;

// The logical line under the caret: the document range that OK replaces and
// its text (`LigneMasque`), continuation lines joined, tabs removed, an end
// of line comment left out.
struct LigneSousCaret {
    int Debut = 0, Fin = 0; // document positions, Fin exclusive
    QString Texte;
};
LigneSousCaret LigneLogique(const QTextDocument& doc, int ligneCaret);

// `Masque`: the description of a keyword in upper case (cut at an inner "%",
// which stays as its last character), in the language section `decalage`, or
// from the header of an external command. `valide` is cleared for a command
// the dialog cannot write back (no description, an external one without a
// section). None for an unknown keyword.
std::optional<QString> Masque(const QString& cle, const Reglages& r, int decalage, bool& valide);

// One row of the form.
struct RangMasque {
    QString Libelle;      // ParaTxt
    QString Valeur;       // ParaVal
    bool Second = false;  // SepAvant: the second separator stands ahead of it
    bool Optionnel = false;
    int Champ = 0;        // the parameter (0-based) the row belongs to
};

// What the form shows and what OK needs to write the line back.
struct ModeleMasque {
    enum class Genre { Commande, Variable, Condition, Saisie, Liste };
    Genre Sorte = Genre::Liste;
    QString Titre;        // Label1
    QString Cle;          // the upper-case key of the description
    QString Prefixe;      // the line's indentation
    QString Mot;          // `MotCle`: the keyword as written
    bool Egal = false;    // the line joins keyword and parameters by " =", else by a blank
    QList<RangMasque> Rangs;
    QString Commentaire;  // the comment area
    Qt::Alignment Alignement = Qt::AlignLeft;
    bool CommentaireGras = false;
    int Image = 0;        // `@I`: the strip's picture (0: none) and its place
    QRectF PlaceImage;    // fractions of the form's width and height
    bool Valide = false;
    QString Sep1 = QStringLiteral(","), Sep2 = QStringLiteral("§");
    int Decalage = 0;     // the dialog's language section
};

// Builds the form's model of a line. `sep1`, `sep2`: the separators of the dialog.
ModeleMasque ConstruitMasque(const QString& ligne, const Reglages& r, int decalage, const QString& sep1,
                             const QString& sep2);
// OK: the line put together again from the rows' values.
QString AssembleLigne(const ModeleMasque& m);
// `RepAVLV`: the control vector in rows n, n + 1 (1-based) of a Bezier form,
// given as x, y about the point of rows n - 2, n - 1, becomes "Angle°", "Length".
void RepAVLV(QList<RangMasque>& rangs, int n);

class FrmCmd : public QDialog {
    Q_OBJECT
public:
    FrmCmd(QWidget* parent, ModeleMasque modele, Boites& boites, const QString& dossier);

    QLabel* Label1 = nullptr;
    QVector<QLabel*> ParaTxt;
    QVector<QLineEdit*> ParaVal;
    QLabel* Commentaire = nullptr;
    QPushButton* Cmd_OK = nullptr;
    QPushButton* Cmd_Annuler = nullptr;
    QString LigneMasque;   // the line written by OK; empty after Cancel
    bool ChargeFini = false;

    // Alt-P's font list: the window's, the same as its own font list.
    DialoguesImpression* Polices = nullptr;

    const ModeleMasque& Modele() const { return m_; }
    void OK();
    void Annuler();

protected:
    void keyPressEvent(QKeyEvent* ev) override;
    // Alt-C, Alt-P and Alt-L typed in a row: its field would take the letter.
    bool eventFilter(QObject* objet, QEvent* ev) override;
    void closeEvent(QCloseEvent* ev) override;
    void paintEvent(QPaintEvent* ev) override;
    void resizeEvent(QResizeEvent* ev) override;

private:
    int RangActif() const;
    void Remplit(const QString& t); // the focused row takes t, as if typed
    void ActiveOK();                // a change of a row: OK on, once the form is ready
    // Alt-C, Alt-P, Alt-L (Ctrl with P: screen fonts; with L: several files); true when taken.
    bool ToucheAlt(QKeyEvent* ev);
    void Couleur();
    void Police(bool ecran);
    void Fichiers(bool plusieurs);
    ModeleMasque m_;
    Boites& boites_;
    QString dossier_;
};

// `Mnu_Masque`: the form on the caret's logical line of the window's editor.
// `interaction` stands in for the modal loop (tests); without it the dialog
// runs modal. True when a line was written.
bool OuvreMasque(Form1& f, Boites& boites, const std::function<void(FrmCmd&)>& interaction = {});
