// `RTB1`, the code editor of the main window, and its line colouring:
// `ColoreLigneNo`, `ColoreTexte`, `ColoreBloc`, `VideLigneSale`, `Cmd_Ctrl_K`,
// the keyword normalising and the plain-text paste.
//
// Positions. The document of a QPlainTextEdit separates lines by one
// character; the command text of a run separates them by CR LF.
// The routines of this class take document positions (0-based); `VersCrLf` and
// `VersDocument` convert at the one place where the run's positions meet the
// editor (the `Hote` of the window).
#pragma once

#include <QColor>
#include <QHash>
#include <QPlainTextEdit>
#include <QStringList>

#include <optional>

class Editeur : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit Editeur(QWidget* parent = nullptr);

    // --- editing state
    bool ColorationActive = true; // while clear, the change event does nothing
    bool LigneSale = false;       // the line under edit has not been recoloured yet
    int LigneDebut = -1, LigneFin = -1; // the block under edit, 0-based lines
    bool Modifie = false;         // the text differs from the file
    int PositionRecherche = -1;   // find position of FrmFind
    // The external commands: their names give the spelling.
    const QStringList* CommandesExternes = nullptr;

    // --- the text as the run sees it
    // Lines ended by CR LF; the same text, kept, while the document is
    // unchanged (a run that comes again finds its lines already read).
    QString TexteCrLf() const;
    // A text as the document holds it: lines ended by "\n", and the characters
    // that a text document would take for breaks (U+2028, U+2029, U+FDD0,
    // U+FDD1) held by private-use stand-ins, which TexteCrLf gives back.
    static QString TexteDocument(QString texteCrLf);
    // A piece of the document's text with those characters given back.
    static QString TexteHorsDocument(QString texte);
    // LitFic's editor half: the editor emptied, each line appended with CR LF
    // and coloured; caret at 0, block at the first line.
    void ChargeTexte(const QString& texteCrLf);
    // The whole document replaced by a text in black, before any colouring.
    void TexteNoir(const QString& texte);
    // After a new text: the selection from `debut`, `longueur` characters,
    // and the vertical scroll, as the user had them (kept within the text).
    void RetrouvePlace(int debut, int longueur, int defilement);
    int VersCrLf(int positionDocument) const;
    int VersDocument(int positionCrLf) const;
    // Line (0-based) of a document position.
    int LigneDe(int positionDocument) const;
    int LigneCaret() const;
    int NombreLignes() const;

    // --- colouring
    void ColoreLigneNo(int ligne);
    void ColoreTexte(int debut, int longueur);
    void ColoreBloc();
    void VideLigneSale();
    void Cmd_Ctrl_K();
    // `MajLigne`: the caret's line recomputed; `ligneChangee` tells the window (Text1).
    void MajLigne();
    // Ctrl-V: the clipboard's plain text, coloured; nothing without text.
    void Colle();
    // Plain text in place of the selection, its lines coloured, the caret
    // behind it: Ctrl-V, the context menu's paste and a drop.
    void InsereColore(const QString& texte);
    // The red marking of the line where a run failed; with `caret`, the
    // caret is left at `debut` with no selection.
    void MarqueRouge(int debut, int longueur, bool caret = true);
    // A programmatic rewrite (`?`, `EpaisT`...): the change event stays out.
    void Remplace(int debut, int longueur, const QString& texte);
    // The insertion of text at the caret as selected text (coordinates, colour).
    void InsereTexte(const QString& texte);

    // The keyword of a line as the colouring splits it:
    // 0-based start and end (exclusive) in `ligne`, tabs already blanks.
    static void BornesMotCle(const QString& ligne, int& debut, int& fin);
    // The first "'" of a line from `depuis` that is not the sequence double
    // quote, apostrophe, double quote (an apostrophe written as a text); -1
    // when there is none.
    static int DebutCommentaire(const QString& ligne, int depuis = 0);
    // The spelling of a keyword: canonical, alias or external command; empty
    // when the word is none of them. Colouring a line rewrites its keyword so.
    QString Orthographe(const QString& mot) const;
    // The colour of the character at a document position.
    QColor CouleurA(int position) const;

    // The syntax tip (Alt-F2): the key of the caret's line (COM, SUITE, IF...)
    // and the row of its one-line syntax, 201 to 264.
    QString MotSyntaxeCaret() const;
    static QString MotSyntaxe(const QString& ligne, bool apresSuite);

    static const QColor Noir, Bleu, Vert, Rouge;
    // The editor's font, which the printed listing takes too.
    static QFont Police();

signals:
    void ligneChangee(int ligne, int total);
    void masque();          // F2, Ctrl-F2: Mnu_Masque, the command dialog
    void resumeSyntaxes();  // Shift-F2: the summary of syntaxes
    void bulleSyntaxe();    // Alt-F2: Form2
    void suivant();         // F3: find next
    void arret();           // Esc: hides FrmFind, sets ArretDemande
    void rechercher();      // Ctrl-F: find
    void remplacer();       // Ctrl-H: replace
    void defaire();         // Ctrl-Z: undo
    void refaire();         // Ctrl-Y: redo
    void coupe(int longueurTexte); // Ctrl-X: the text's length, for the undo logic
    void insere();          // a text inserted by menu or dialog (InsereTexte)
    void toucheRelachee(int touche, Qt::KeyboardModifiers mods);
    void sourisEnfoncee();
    void sourisRelachee();

protected:
    void keyPressEvent(QKeyEvent* ev) override;
    void keyReleaseEvent(QKeyEvent* ev) override;
    void mousePressEvent(QMouseEvent* ev) override;
    void mouseReleaseEvent(QMouseEvent* ev) override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;
    QMimeData* createMimeDataFromSelection() const override;
    void dropEvent(QDropEvent* ev) override;

private:
    mutable std::optional<QString> texteCrLf_;
    bool depot_ = false; // a drop under way: its insertion takes no undo level of its own
    void Changement(int position, int retires, int ajoutes);
    void ColoreSegment(int ligne, int decalage, int profondeur);
    void Peint(int debut, int longueur, const QColor& c);
    bool LigneRouge(int ligne) const;
    void ApresDeplacement(int touche, bool clavier, Qt::KeyboardModifiers mods);
    QHash<QString, QString> mots_; // upper-case keyword -> canonical spelling
};
