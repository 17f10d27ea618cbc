// The code editor: keyword spelling, line colouring, keys and paste.
#include "app/core/aide.h"
#include "outils_fenetre.h"

#include <QClipboard>
#include <QMimeData>
#include <QSignalSpy>

namespace {

struct Ed {
    Editeur ed;
    QStringList externes{"MCE_Cadran"};
    explicit Ed(const QString& lignes = QString()) {
        ed.CommandesExternes = &externes;
        ed.resize(500, 300);
        ed.show();
        ed.ChargeTexte(Programme(lignes));
    }
    QString L(int n) const { return Ligne(ed, n); }
    QColor C(int ligne, int col) const { return CouleurLigne(ed, ligne, col); }
    void Caret(int ligne, int col, int selection = 0) {
        QTextCursor c(ed.document()->findBlockByNumber(ligne));
        c.setPosition(c.position() + col);
        c.setPosition(c.position() + selection, QTextCursor::KeepAnchor);
        ed.setTextCursor(c);
    }
};

} // namespace

// A loaded text: keywords take their spelling and blue, comments green, the
// rest black. Spots are "line:column" and B (blue), N (black) or V (green).
TEST(Editeur, LoadedLinesTakeTheKeywordSpellingAndColours) {
    // With the caret on a line marked red as an error, or a selection backwards into it, the next
    // text loaded is coloured as usual.
    for (int selection : {0, -3}) {
        Ed t("Cercle = 1, 2\nfoo = 2\n");
        t.ed.MarqueRouge(t.ed.document()->findBlockByNumber(1).position(), 7);
        t.Caret(1, 7, selection);
        t.ed.ChargeTexte("abc = 1\r\nArc = 1, 2, 3\r\n");
        EXPECT_TRUE(t.C(0, 0) == Editeur::Noir && t.C(1, 0) == Editeur::Bleu && t.C(1, 6) == Editeur::Noir);
    }
    const char* const cas[][3] = {
        {"arc = 30, 150, 60\ncentreei = 105, 148.5\n  epaist=0.3mm",
         "Arc = 30, 150, 60\nCentreEI = 105, 148.5\n  EpaisT=0.3mm", "0:0B 0:2B 0:4N 2:2B 2:8N"},
        {"  ' a comment = with a sign", nullptr, "0:2V 0:20V"},
        // A trailing comment, but not on Texte lines nor inside quotes.
        {"Droite = 1,2 ' x\nTexte = 1,2,It's\nListeVar = it's\nCT = 1, \"'\" ' c", nullptr,
         "0:11N 0:13V 0:15V 1:14N 2:13N 3:9N 3:12V"},
        {"si %a > 1 Goto fin\nSIT %a > b Goto fin\nrotang = 30\nSINON",
         "If %a > 1 Goto fin\nIfT %a > b Goto fin\nAngRot = 30\nElseN", "3:4B"},
        // Variables, labels and unknown words stay as they are, black.
        {"%a = 1 ' c\nfin:\ntrucmuche = 2", nullptr, "0:0N 0:8N 1:0N 2:0N"},
        {"mce_cadran = 1, 2", "MCE_Cadran = 1, 2", "0:0B"},
        // If's keyword ends at the first blank; Goto is blue and keeps its case.
        {"if %a=1 Goto fin", "If %a=1 Goto fin", "0:0B 0:3N"},
        {"If %a > 1 goto fin", nullptr, "0:10B 0:13B 0:15N"},
        // After Then the rest is coloured as a line of its own.
        {"If %a > 1 Then trait = 1, 2 ' c", "If %a > 1 Then Trait = 1, 2 ' c", "0:10B 0:15B 0:23N 0:29V"},
        // A continuation line takes the colour ahead of the "_".
        {"' comment _\nstill comment\nArc = 1, _\n2, 3", nullptr, "1:0V 3:0N"},
    };
    for (const auto& [texte, attendu, taches] : cas) {
        Ed t(texte);
        EXPECT_EQ(t.ed.TexteCrLf(), Programme(QString(attendu ? attendu : texte) + "\n")) << texte;
        for (const QString& p : QString(taches).split(u' ')) {
            const QStringList l = p.chopped(1).split(u':');
            const QColor c = p.back() == u'B' ? Editeur::Bleu : p.back() == u'V' ? Editeur::Vert : Editeur::Noir;
            EXPECT_EQ(t.C(l[0].toInt(), l[1].toInt()), c) << texte << " @" << p.toStdString();
        }
        EXPECT_FALSE(t.ed.Modifie);
    }
}

// The line under edit, with its continuation lines, stays black until the
// caret leaves the block (arrow or Enter).
TEST(Editeur, BlockUnderEditIsColouredWhenTheCaretLeavesIt) {
    Ed t("CT = 1, 1\n\nCT = 2, 2\nArc = 1, _\n2, _\n3");
    t.Caret(1, 0);
    QTest::keyClicks(&t.ed, "cercle = 1, 2, 3");
    EXPECT_TRUE(t.ed.LigneSale && t.C(1, 0) == Editeur::Noir);
    QTest::keyClick(&t.ed, Qt::Key_Down);
    EXPECT_TRUE(!t.ed.LigneSale && t.L(1) == "Cercle = 1, 2, 3" && t.C(1, 0) == Editeur::Bleu);
    t.Caret(4, 0);
    QTest::keyClick(&t.ed, Qt::Key_Space);
    EXPECT_EQ(QPoint(t.ed.LigneDebut, t.ed.LigneFin), QPoint(3, 5));
    EXPECT_EQ(t.C(3, 0), Editeur::Noir);
    QTest::keyClick(&t.ed, Qt::Key_Down); // still in the block
    EXPECT_TRUE(t.ed.LigneSale);
    QTest::keyClick(&t.ed, Qt::Key_Down);
    EXPECT_TRUE(!t.ed.LigneSale && t.C(3, 0) == Editeur::Bleu);
    QTest::keyClicks(&t.ed, "plus = 1, 2, 3");
    QTest::keyClick(&t.ed, Qt::Key_Return);
    EXPECT_TRUE(t.L(6) == "Plus = 1, 2, 3" && t.C(6, 0) == Editeur::Bleu && t.ed.LigneCaret() == 7);
}

TEST(Editeur, CtrlKRecoloursTheWholeTextKeepingTheSelection) {
    Ed t("CT = 1, 1\nCT = 2, 2");
    t.ed.ColorationActive = false;
    QTextCursor c(t.ed.document());
    c.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    c.insertText("ct = 0, 0\nct = 3, 3");
    t.ed.ColorationActive = true;
    t.Caret(1, 2, 3);
    QTest::keyClick(&t.ed, Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(t.ed.TexteCrLf(), "CT = 0, 0\r\nCT = 3, 3");
    EXPECT_TRUE(t.C(1, 0) == Editeur::Bleu && t.ed.textCursor().selectedText() == " = ");
}

// Ctrl-V pastes the clipboard's plain text, coloured; without text it does nothing.
TEST(Editeur, CtrlVPastesPlainTextOnly) {
    Ed t("CT = 1, 1\n");
    auto* image = new QMimeData;
    image->setImageData(QImage(4, 4, QImage::Format_RGB32));
    QGuiApplication::clipboard()->setMimeData(image);
    t.Caret(1, 0);
    QTest::keyClick(&t.ed, Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(t.ed.TexteCrLf() == "CT = 1, 1\r\n" && !t.ed.Modifie);
    auto* m = new QMimeData;
    m->setHtml("<b>ignored</b>");
    m->setText("arc = 30, 150, 60\r\ncercle = 0, 0, 5");
    QGuiApplication::clipboard()->setMimeData(m);
    QTest::keyClick(&t.ed, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(t.ed.TexteCrLf(), "CT = 1, 1\r\nArc = 30, 150, 60\r\nCercle = 0, 0, 5");
    EXPECT_TRUE(t.C(1, 0) == Editeur::Bleu && t.C(2, 0) == Editeur::Bleu && t.ed.Modifie);
    EXPECT_FALSE(t.ed.textCursor().hasSelection());
    EXPECT_EQ(QPoint(t.ed.LigneCaret(), t.ed.LigneDebut), QPoint(2, 2));
    // The context menu's paste and a drop colour every line as Ctrl-V does.
    m = new QMimeData;
    m->setText("\r\ngrad = 1, 2\r\nval = 1, 0, 10, 5");
    QGuiApplication::clipboard()->setMimeData(m);
    t.ed.paste();
    EXPECT_EQ(t.ed.TexteCrLf(), "CT = 1, 1\r\nArc = 30, 150, 60\r\nCercle = 0, 0, 5\r\nGrad = 1, 2\r\nVal = 1, 0, 10, 5");
    EXPECT_TRUE(t.C(3, 0) == Editeur::Bleu && t.C(4, 0) == Editeur::Bleu);
    QMimeData depose;
    depose.setText("plus = 1, 1\r\nx = 2, 2\r\n");
    t.Caret(0, 0);
    const QPoint ici = t.ed.cursorRect().center();
    QDragEnterEvent entre(ici, Qt::CopyAction, &depose, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(t.ed.viewport(), &entre);
    QDropEvent drop(ici, Qt::CopyAction, &depose, Qt::LeftButton, Qt::NoModifier);
    QSignalSpy niveaux(&t.ed, &Editeur::insere); // one undo level
    QApplication::sendEvent(t.ed.viewport(), &drop);
    EXPECT_EQ(niveaux.size(), 1);
    ASSERT_TRUE(t.ed.TexteCrLf().startsWith("Plus = 1, 1\r\nX = 2, 2\r\nCT = 1, 1\r\n")) << t.ed.TexteCrLf().toStdString();
    EXPECT_TRUE(t.C(0, 0) == Editeur::Bleu && t.C(1, 0) == Editeur::Bleu && t.C(2, 0) == Editeur::Bleu);
}

// Every loaded line ends with CR LF, and only there; CR LF positions and the document's convert (a CR or
// LF: the line's end).
TEST(Editeur, LoadedTextEndsEveryLineWithCrLfAndPositionsConvert) {
    Ed t("CT = 1, 1");
    EXPECT_EQ(t.ed.TexteCrLf(), "CT = 1, 1\r\n");
    t.ed.ChargeTexte("ab\r\ncde\r\n\r\nf");
    EXPECT_EQ(t.ed.TexteCrLf(), "ab\r\ncde\r\n\r\nf\r\n");
    for (auto [doc, crlf] : {std::pair{0, 0}, {3, 4}, {8, 11}}) EXPECT_EQ(t.ed.VersCrLf(doc), crlf);
    for (auto [crlf, doc] : {std::pair{4, 3}, {11, 8}, {2, 2}, {3, 2}}) EXPECT_EQ(t.ed.VersDocument(crlf), doc);
    for (int d = 0; d < t.ed.document()->characterCount() - 1; ++d) EXPECT_EQ(t.ed.VersDocument(t.ed.VersCrLf(d)), d);
    // The characters that a text document would take for line or frame breaks stay inside their
    // line, loaded or pasted; Shift+Enter breaks the line as Enter does.
    const QString durs = QStringLiteral("' a\u2028b\u2029c\uFDD0d\uFDD1e\r\n");
    t.ed.ChargeTexte(durs);
    EXPECT_EQ(t.ed.TexteCrLf(), durs);
    EXPECT_EQ(t.ed.document()->blockCount(), 2);
    t.ed.InsereTexte(durs);
    EXPECT_EQ(t.ed.TexteCrLf(), durs + durs);
    t.ed.selectAll(); // copied out with the file's own characters
    t.ed.copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString(durs + durs).replace("\r\n", "\n"));
    t.ed.moveCursor(QTextCursor::Start);
    t.ed.moveCursor(QTextCursor::Down);
    QTest::keyClick(&t.ed, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(t.ed.TexteCrLf(), durs + "\r\n" + durs); // at the caret, behind the pasted line
    EXPECT_EQ(t.ed.document()->blockCount(), 4);
}

// The editor's keys raise their commands and type nothing; only Ctrl-Z counts as a change; a move
// tells the window the caret's line and the count, and drops the find position unless F3 keeps the block.
TEST(Editeur, KeysRaiseTheirCommandsAndTypeNothing) {
    Ed t("CT = 1, 1\nCT = 2, 2\nCT = 3, 3");
    t.ed.LigneDebut = t.ed.LigneFin = 0;
    t.ed.PositionRecherche = 5;
    QTest::keyClick(&t.ed, Qt::Key_F3);
    EXPECT_EQ(t.ed.PositionRecherche, 5);
    QSignalSpy ligne(&t.ed, &Editeur::ligneChangee);
    QTest::keyClick(&t.ed, Qt::Key_Down);
    ASSERT_TRUE(t.ed.PositionRecherche == -1 && !ligne.isEmpty());
    EXPECT_EQ(ligne.last(), QVariantList({2, 4})); // the last, empty line counts
    const struct { Qt::Key touche; Qt::KeyboardModifiers mods; void (Editeur::*signal)(); } touches[] = {
        {Qt::Key_F2, {}, &Editeur::masque}, {Qt::Key_F2, Qt::ControlModifier, &Editeur::masque},
        {Qt::Key_F2, Qt::ShiftModifier, &Editeur::resumeSyntaxes},
        {Qt::Key_F2, Qt::AltModifier, &Editeur::bulleSyntaxe},
        {Qt::Key_F3, {}, &Editeur::suivant}, {Qt::Key_Escape, {}, &Editeur::arret},
        {Qt::Key_F, Qt::ControlModifier, &Editeur::rechercher}, {Qt::Key_H, Qt::ControlModifier, &Editeur::remplacer},
        {Qt::Key_Y, Qt::ControlModifier, &Editeur::refaire}, {Qt::Key_Z, Qt::ControlModifier, &Editeur::defaire},
    };
    for (const auto& k : touches) {
        QSignalSpy espion(&t.ed, k.signal);
        QTest::keyClick(&t.ed, k.touche, k.mods);
        EXPECT_EQ(espion.size(), 1) << k.touche << " " << k.mods.toInt();
        EXPECT_EQ(t.ed.Modifie, k.signal == &Editeur::defaire);
    }
    QTest::keyClick(&t.ed, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(t.ed.textCursor().selectedText().size(), t.ed.document()->characterCount() - 1);
    EXPECT_EQ(t.ed.TexteCrLf(), "CT = 1, 1\r\nCT = 2, 2\r\nCT = 3, 3\r\n");
}

// The syntax tip's key of a line and the row of its one-line syntax.
TEST(Editeur, SyntaxRowOfALine) {
    for (auto [ligne, suite, mot, rang] :
         {std::tuple{"If %a = 1 Goto fin", false, "IF", 247}, {"Ift %a = b Goto fin", false, "IFT", 260},
          {"  ' comment", false, "COM", 201}, {"2, 3", true, "SUITE", 202}, {"Arc = 1, 2, 3", false, "ARC", 203},
          {"Goto fin", false, "GOTO", 249}, {"%a = 1", false, "%A", 248}, {"Truc = 1", false, "TRUC", 241}}) {
        EXPECT_EQ(Editeur::MotSyntaxe(ligne, suite), mot) << ligne;
        EXPECT_EQ(RangSyntaxe(mot), rang) << ligne;
    }
}
