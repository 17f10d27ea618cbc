// `FrmDessin`, the freehand drawing tool (F9): strokes drawn with the mouse on
// the pane, Shift held, become a data file of points for `Plot`, and a `Plot`
// line on the clipboard that draws them again.
//
// The points go, as they are drawn, into the work file "$Dessin_tmp.txt" of
// the working folder, which the second OK renames to the chosen name (or adds
// to the file of that name). Coordinates are written relative to the mouse
// reference point RefCur; "'EOD" ends each stroke.
#pragma once

#include <QDialog>
#include <QFile>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class Boites;
class Form1;
class QLabel;
class QLineEdit;
class QPushButton;

// --- the file's rules, without widgets

// The name of the work file, in the working folder.
inline const QString NomTravailDessin = QStringLiteral("$Dessin_tmp.txt");

// The points and strokes of a drawing file as the tool announces them: NbP
// counts the line ends, less the header line, less the comment lines; NbT
// counts the "'EOD" marks, plus one when there are more than two and the last
// line is not one.
struct CompteDessin {
    int NbP = 0, NbT = 0;
};
CompteDessin CompteFichierDessin(const QStringList& lignes);

// The number format of the decimals field: "0", "1", "2" give "0", "0.0",
// "0.00"; anything else "0.0#" (one or two decimals). The coordinates are
// written in it by `FormatNombrePoint`.
QString FormatDecimales(const QString& champ);

// The name field as a file name: trimmed, "Dessin" when empty, ".txt" added
// when it holds no ".".
QString NomFichierDessin(const QString& champ);

// The `Plot` line that draws a drawing file: columns 1 and 2 separated by ";"
// (code 59), the header line skipped, 1 mm per unit, the smoothing as the
// moving average of the y column.
QString LignePlotDessin(const QString& nom, int lissage, const QString& sep1 = QStringLiteral(","),
                        const QString& sep2 = QStringLiteral("§"));

// The end of a segment from `depart` drawn with the right button: kept
// horizontal when |dy/dx| is below 0.5, vertical from 2 on, at 45 degrees in
// between (|dx| across, dy taking its sign).
QPointF ContraintSegment(QPointF depart, QPointF ici);

// The data points of a drawing file: their values as written, relative ones
// ("r" before the number) added to the point before in the same stroke.
struct PointDessin {
    double x = 0, y = 0;
    int ligne = 0;  // 0-based line of the file
    int trait = 0;  // rank of its stroke, from 0
};
struct LectureDessin {
    QVector<PointDessin> points;
    int pointsTraitOuvert = 0; // points behind the last "'EOD"
};
// Comments, blank lines and the pen lines (STOP, EPAIST, COULEUR, BEZIER)
// are passed over.
LectureDessin LitDessin(const QStringList& lignes);

// --- the dialog

class FrmDessin : public QDialog {
    Q_OBJECT
public:
    // The three answers of the box of an existing file at the second OK.
    enum class Choix { Ajouter, Remplacer, Annuler };

    FrmDessin(Form1& fenetre, Boites* boites);
    ~FrmDessin() override;

    QLineEdit *TxtNom, *TxtCouleur, *TxtEpais, *TxtFond, *TxtDistance, *TxtLissage, *TxtDecimales,
        *TxtRelatif;
    QLabel *Label10, *LblAide;
    QPushButton *CmdOK, *CmdAnnuler;

    // The box of an existing file at the second OK (string 181 with the
    // buttons 182, 183, 184); `ajout` false disables adding. Tests replace it.
    std::function<Choix(const QString& texte, bool ajout)> FrmMsgBox;

    // The state of the drawing, for the window's hooks and the tests.
    bool EnDessin() const { return dessin_; }
    QString CheminTravail() const;
    QString LigneClipboard() const { return lignePlot_; }

    // `Mnu_Dessin`: shows the dialog, or brings it forward when open.
    void Ouvre();
    // At the end of each run of the window while the tool is open: the
    // drawing so far put back on the new picture, RefCur shown anew.
    void ApresRun();
    // ";" (key code 59) typed in the window while drawing: the code shown,
    // and the focus back to the tool.
    void ReprendClavier();
    void CmdOK_Click();
    void CmdAnnuler_Click();
    // Backspace, Delete: the last point taken off.
    void EffacePoint();
    // "RefCur = x, y": the reference point, shown again wherever it was changed.
    void MajRefCur();

    // The gestures on the pane, in Surface units; true when the event was the tool's.
    bool Appui(QPointF p, Qt::MouseButton bouton, Qt::KeyboardModifiers mods);
    bool Deplacement(QPointF p, Qt::MouseButtons boutons, Qt::KeyboardModifiers mods);

protected:
    bool eventFilter(QObject* objet, QEvent* ev) override;
    void keyPressEvent(QKeyEvent* ev) override;
    // Esc and the close box: Cancel.
    void reject() override;

private:
    void Reglages();
    void Enregistre();
    void Ferme();
    void Verrouille(bool oui);
    void MenusDessin(bool ouvert);
    bool OuvreTravail(QIODevice::OpenMode mode);
    void Ecrit(const QString& ligne);
    void EcritPoint(QPointF p, bool relatif);
    void Trace(QPointF a, QPointF b, int couleur);
    void Rejoue();
    void ReprendEtat(const QStringList& lignes);
    QString Chemin(const QString& nom) const;
    QString Chaine(int n) const;
    QString Annonce(int n, const char* marque, const QString& nom, const QStringList& lignes) const;
    QString ChaineMenu(int n) const;

    Form1& f_;
    Boites* boites_;
    QFile travail_;               // channel 4: the work file, open for append
    bool dessin_ = false;         // drawing state: settings accepted
    QString format_ = QStringLiteral("0.0#");
    bool relatif_ = false;
    int couleur_ = 0, largeur_ = 1;
    int fond_ = -1;               // the background colour, -1 for none
    double distance_ = 0;
    int lissage_ = 0;
    QString nomCharge_;           // the file loaded by Yes, whose adding is refused
    QString lignePlot_;
    QPointF dernier_;             // the last point, Surface units
    double ecritX_ = 0, ecritY_ = 0; // its values as written, for the relative ones
    int pointsTrait_ = 0;         // points of the stroke in work
    QList<QAction*> menusCoupes_; // the entries disabled while the tool is open
    QList<bool> etatsMenus_;
};

// `Mnu_Dessin` of the window: the one dialog of the window, made at its first use.
FrmDessin* Mnu_Dessin_Click(Form1& fenetre, Boites* boites);
