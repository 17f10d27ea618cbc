// Part 4.1: the editor RTB1 and its line colouring (Part 1.2's keyword
// normalising included).
#include "app/core/aide.h"
#include "outils_fenetre.h"

#include <QClipboard>
#include <QImage>
#include <QMimeData>
#include <QSignalSpy>
#include <QTextBlock>

namespace {

struct Ed {
    Editeur ed;
    QStringList externes;
    explicit Ed(const QString& lignes = QString()) {
        ed.CommandesExternes = &externes;
        ed.resize(500, 300);
        ed.show();
        ed.ChargeTexte(CrLf(lignes));
    }
    QString L(int n) const { return Ligne(ed, n); }
    QColor C(int ligne, int col) const { return CouleurLigne(ed, ligne, col); }
    void Caret(int ligne, int colonne) {
        QTextCursor c(ed.document()->findBlockByNumber(ligne));
        c.setPosition(c.position() + colonne);
        ed.setTextCursor(c);
    }
};

} // namespace

TEST(Editeur, KeywordTakesItsCanonicalSpellingInBlue) {
    Ed t("arc = 30, 150, 60\ncentreei = 105, 148.5\n  epaist=0.3mm");
    EXPECT_EQ(t.L(0), QStringLiteral("Arc = 30, 150, 60"));
    EXPECT_EQ(t.L(1), QStringLiteral("CentreEI = 105, 148.5"));
    EXPECT_EQ(t.L(2), QStringLiteral("  EpaisT=0.3mm"));
    EXPECT_EQ(t.C(0, 0), Editeur::Bleu);
    EXPECT_EQ(t.C(0, 2), Editeur::Bleu);
    EXPECT_EQ(t.C(0, 4), Editeur::Noir);
    EXPECT_EQ(t.C(2, 2), Editeur::Bleu);
    EXPECT_EQ(t.C(2, 8), Editeur::Noir);
    EXPECT_FALSE(t.ed.Modifie);
}

TEST(Editeur, CommentLineIsGreen) {
    Ed t("  ' a comment = with a sign\nCT = 1, 1");
    EXPECT_EQ(t.C(0, 2), Editeur::Vert);
    EXPECT_EQ(t.C(0, 20), Editeur::Vert);
    EXPECT_EQ(Editeur::Vert, QColor(0, 128, 0));
}

TEST(Editeur, TrailingCommentIsGreenExceptOnTexteLines) {
    Ed t("Droite = 1,2 ' x\nTexte = 1,2,It's\nListeVar = it's");
    EXPECT_EQ(t.C(0, 11), Editeur::Noir);
    EXPECT_EQ(t.C(0, 13), Editeur::Vert);
    EXPECT_EQ(t.C(0, 15), Editeur::Vert);
    EXPECT_EQ(t.C(1, 14), Editeur::Noir);
    EXPECT_EQ(t.C(2, 13), Editeur::Noir);
}

TEST(Editeur, QuotedApostropheDoesNotStartAComment) {
    Ed t("CT = 1, \"'\" ' c");
    EXPECT_EQ(t.C(0, 9), Editeur::Noir);
    EXPECT_EQ(t.C(0, 12), Editeur::Vert);
}

TEST(Editeur, AliasesOfTheEditor) {
    Ed t("si %a > 1 Goto fin\nSIT %a > b Goto fin\nrotang = 30");
    EXPECT_EQ(t.L(0), QStringLiteral("If %a > 1 Goto fin"));
    EXPECT_EQ(t.L(1), QStringLiteral("IfT %a > b Goto fin"));
    EXPECT_EQ(t.L(2), QStringLiteral("AngRot = 30"));
}

TEST(Editeur, SinonBecomesElseN) {
    Ed t("SINON");
    EXPECT_EQ(t.L(0), QStringLiteral("ElseN"));
    EXPECT_EQ(t.C(0, 4), Editeur::Bleu);
}

TEST(Editeur, VariableAndLabelLinesAreLeftAlone) {
    Ed t("%a = 1 ' c\nfin:\ntrucmuche = 2");
    EXPECT_EQ(t.L(0), QStringLiteral("%a = 1 ' c"));
    EXPECT_EQ(t.C(0, 0), Editeur::Noir);
    EXPECT_EQ(t.C(0, 8), Editeur::Noir); // nothing more happens
    EXPECT_EQ(t.C(1, 0), Editeur::Noir);
    EXPECT_EQ(t.L(2), QStringLiteral("trucmuche = 2"));
    EXPECT_EQ(t.C(2, 0), Editeur::Noir);
}

TEST(Editeur, ExternalCommandTakesTheSpellingOfTheTable) {
    Ed t;
    t.externes << QStringLiteral("MCE_Cadran");
    t.ed.ChargeTexte(CrLf("mce_cadran = 1, 2"));
    EXPECT_EQ(t.L(0), QStringLiteral("MCE_Cadran = 1, 2"));
    EXPECT_EQ(t.C(0, 0), Editeur::Bleu);
}

TEST(Editeur, IfKeywordEndsAtTheFirstBlank) {
    Ed t("if %a=1 Goto fin");
    EXPECT_EQ(t.L(0), QStringLiteral("If %a=1 Goto fin"));
    EXPECT_EQ(t.C(0, 0), Editeur::Bleu);
    EXPECT_EQ(t.C(0, 3), Editeur::Noir);
}

TEST(Editeur, IfGotoPaintsTheFourLettersOfGoto) {
    Ed t("If %a > 1 goto fin");
    EXPECT_EQ(t.L(0), QStringLiteral("If %a > 1 goto fin")); // Goto keeps its case
    for (int i = 10; i < 14; ++i) EXPECT_EQ(t.C(0, i), Editeur::Bleu) << i;
    EXPECT_EQ(t.C(0, 15), Editeur::Noir);
}

TEST(Editeur, IfThenColoursTheRestAsALine) {
    Ed t("If %a > 1 Then trait = 1, 2 ' c");
    EXPECT_EQ(t.L(0), QStringLiteral("If %a > 1 Then Trait = 1, 2 ' c"));
    EXPECT_EQ(t.C(0, 10), Editeur::Bleu); // Then
    EXPECT_EQ(t.C(0, 15), Editeur::Bleu); // Trait
    EXPECT_EQ(t.C(0, 23), Editeur::Noir);
    EXPECT_EQ(t.C(0, 29), Editeur::Vert);
}

TEST(Editeur, ContinuationLineTakesTheColourAheadOfTheMark) {
    Ed t("' comment _\nstill comment\nArc = 1, _\n2, 3");
    EXPECT_EQ(t.C(1, 0), Editeur::Vert);
    EXPECT_EQ(t.C(3, 0), Editeur::Noir);
}

TEST(Editeur, ErrorLineStaysRedUntilEdited) {
    Ed t("CT = 1, 1\nfoo = 2\nCT = 2, 2");
    const int debut = t.ed.document()->findBlockByNumber(1).position();
    t.ed.MarqueRouge(debut, 7);
    EXPECT_EQ(t.ed.LigneCaret(), 1);
    EXPECT_EQ(t.C(1, 0), Editeur::Rouge);
    t.ed.Cmd_Ctrl_K();
    EXPECT_EQ(t.C(1, 3), Editeur::Rouge);
    // An edit of the line paints it black.
    t.Caret(1, 7);
    QTest::keyClick(&t.ed, Qt::Key_3);
    EXPECT_EQ(t.L(1), QStringLiteral("foo = 23"));
    EXPECT_EQ(t.C(1, 0), Editeur::Noir);
    EXPECT_TRUE(t.ed.Modifie);
}

TEST(Editeur, LineInWorkIsBlackUntilTheCaretLeavesItsBlock) {
    Ed t("CT = 1, 1\n\nCT = 2, 2");
    t.Caret(1, 0);
    QTest::keyClicks(&t.ed, "cercle = 1, 2, 3");
    EXPECT_TRUE(t.ed.LigneSale);
    EXPECT_EQ(t.ed.LigneDebut, 1);
    EXPECT_EQ(t.ed.LigneFin, 1);
    EXPECT_EQ(t.L(1), QStringLiteral("cercle = 1, 2, 3"));
    EXPECT_EQ(t.C(1, 0), Editeur::Noir);
    QTest::keyClick(&t.ed, Qt::Key_Down);
    EXPECT_FALSE(t.ed.LigneSale);
    EXPECT_EQ(t.L(1), QStringLiteral("Cercle = 1, 2, 3"));
    EXPECT_EQ(t.C(1, 0), Editeur::Bleu);
    EXPECT_EQ(t.ed.LigneDebut, 2);
}

TEST(Editeur, TheBlockTakesInContinuationLines) {
    Ed t("CT = 1, 1\nArc = 1, _\n2, _\n3\nCT = 2, 2");
    t.Caret(2, 0);
    QTest::keyClick(&t.ed, Qt::Key_Space);
    EXPECT_EQ(t.ed.LigneDebut, 1);
    EXPECT_EQ(t.ed.LigneFin, 3);
    EXPECT_EQ(t.C(1, 0), Editeur::Noir); // the whole block is black
    QTest::keyClick(&t.ed, Qt::Key_Down); // still in the block
    EXPECT_TRUE(t.ed.LigneSale);
    QTest::keyClick(&t.ed, Qt::Key_Down);
    EXPECT_FALSE(t.ed.LigneSale);
    EXPECT_EQ(t.C(1, 0), Editeur::Bleu);
}

TEST(Editeur, EnterRecoloursTheLineItLeaves) {
    Ed t("CT = 1, 1");
    t.Caret(1, 0);
    QTest::keyClicks(&t.ed, "plus = 1, 2, 3");
    QTest::keyClick(&t.ed, Qt::Key_Return);
    EXPECT_EQ(t.L(1), QStringLiteral("Plus = 1, 2, 3"));
    EXPECT_EQ(t.C(1, 0), Editeur::Bleu);
    EXPECT_EQ(t.ed.LigneCaret(), 2);
}

TEST(Editeur, CtrlKRecoloursTheWholeTextKeepingTheSelection) {
    Ed t("CT = 1, 1\nCT = 2, 2");
    t.ed.ColorationActive = false;
    QTextCursor c(t.ed.document());
    c.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    QTextCharFormat f;
    f.setForeground(Editeur::Noir);
    c.mergeCharFormat(f);
    c.insertText(QStringLiteral("ct = 0, 0\nct = 3, 3"));
    t.ed.ColorationActive = true;
    t.Caret(1, 2);
    QTextCursor s = t.ed.textCursor();
    s.setPosition(s.position() + 3, QTextCursor::KeepAnchor);
    t.ed.setTextCursor(s);
    QTest::keyClick(&t.ed, Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(t.L(0), QStringLiteral("CT = 0, 0"));
    EXPECT_EQ(t.L(1), QStringLiteral("CT = 3, 3"));
    EXPECT_EQ(t.C(1, 0), Editeur::Bleu);
    EXPECT_EQ(t.ed.textCursor().selectedText(), QStringLiteral(" = "));
}

TEST(Editeur, CtrlVWithoutTextDoesNothingAndIsSwallowed) {
    Ed t("CT = 1, 1\n");
    auto* m = new QMimeData;
    QImage im(4, 4, QImage::Format_RGB32);
    im.fill(Qt::red);
    m->setImageData(im);
    QGuiApplication::clipboard()->setMimeData(m);
    ASSERT_FALSE(QGuiApplication::clipboard()->mimeData()->hasText());
    const QString avant = t.ed.TexteCrLf();
    t.Caret(1, 0);
    QTest::keyClick(&t.ed, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(t.ed.TexteCrLf(), avant);
    EXPECT_FALSE(t.ed.Modifie);
}

TEST(Editeur, CtrlVPastesPlainTextAndColoursIt) {
    Ed t("CT = 1, 1\n");
    auto* m = new QMimeData;
    m->setHtml(QStringLiteral("<b>ignored</b>"));
    m->setText(QStringLiteral("arc = 30, 150, 60\r\ncercle = 0, 0, 5"));
    QGuiApplication::clipboard()->setMimeData(m);
    t.Caret(1, 0);
    QTest::keyClick(&t.ed, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(t.ed.TexteCrLf(), QStringLiteral("CT = 1, 1\r\nArc = 30, 150, 60\r\nCercle = 0, 0, 5"));
    EXPECT_EQ(t.C(1, 0), Editeur::Bleu);
    EXPECT_EQ(t.C(2, 0), Editeur::Bleu);
    EXPECT_FALSE(t.ed.textCursor().hasSelection());
    EXPECT_EQ(t.ed.LigneCaret(), 2);
    EXPECT_EQ(t.ed.LigneDebut, 2);
    EXPECT_TRUE(t.ed.Modifie);
}

TEST(Editeur, LoadedTextEndsEveryLineWithCrLf) {
    Ed t;
    t.ed.ChargeTexte(QStringLiteral("CT = 1, 1"));
    EXPECT_EQ(t.ed.TexteCrLf(), QStringLiteral("CT = 1, 1\r\n"));
    t.ed.ChargeTexte(QStringLiteral("a\r\n\r\nb\r\n"));
    EXPECT_EQ(t.ed.TexteCrLf(), QStringLiteral("a\r\n\r\nb\r\n"));
    EXPECT_EQ(t.ed.LigneDebut, 0);
    EXPECT_EQ(t.ed.LigneCaret(), 0);
}

TEST(Editeur, PositionsOfTheRunAndOfTheDocument) {
    Ed t("ab\ncde\n\nf");
    // CR LF text: "ab\r\ncde\r\n\r\nf\r\n"
    EXPECT_EQ(t.ed.VersCrLf(0), 0);
    EXPECT_EQ(t.ed.VersCrLf(3), 4);  // "c"
    EXPECT_EQ(t.ed.VersCrLf(8), 11); // "f"
    EXPECT_EQ(t.ed.VersDocument(4), 3);
    EXPECT_EQ(t.ed.VersDocument(11), 8);
    EXPECT_EQ(t.ed.VersDocument(2), 2); // on the CR: the line's end
    EXPECT_EQ(t.ed.VersDocument(3), 2); // on the LF
    for (int d = 0; d < t.ed.document()->characterCount() - 1; ++d)
        EXPECT_EQ(t.ed.VersDocument(t.ed.VersCrLf(d)), d) << d;
}

TEST(Editeur, KeyUpTellsTheCaretLine) {
    Ed t("CT = 1, 1\nCT = 2, 2\nCT = 3, 3");
    QSignalSpy espion(&t.ed, &Editeur::ligneChangee);
    QTest::keyClick(&t.ed, Qt::Key_Down);
    ASSERT_FALSE(espion.isEmpty());
    EXPECT_EQ(espion.last().at(0).toInt(), 2);
    EXPECT_EQ(espion.last().at(1).toInt(), 4); // the last, empty line counts
}

TEST(Editeur, EditorKeysOfPart41) {
    Ed t("CT = 1, 1");
    QSignalSpy masque(&t.ed, &Editeur::masque), resume(&t.ed, &Editeur::resumeSyntaxes),
        bulle(&t.ed, &Editeur::bulleSyntaxe), suivant(&t.ed, &Editeur::suivant),
        arret(&t.ed, &Editeur::arret), rech(&t.ed, &Editeur::rechercher),
        rempl(&t.ed, &Editeur::remplacer), def(&t.ed, &Editeur::defaire), ref(&t.ed, &Editeur::refaire);
    QTest::keyClick(&t.ed, Qt::Key_F2);
    QTest::keyClick(&t.ed, Qt::Key_F2, Qt::ControlModifier);
    QTest::keyClick(&t.ed, Qt::Key_F2, Qt::ShiftModifier);
    QTest::keyClick(&t.ed, Qt::Key_F2, Qt::AltModifier);
    QTest::keyClick(&t.ed, Qt::Key_F3);
    QTest::keyClick(&t.ed, Qt::Key_Escape);
    QTest::keyClick(&t.ed, Qt::Key_F, Qt::ControlModifier);
    QTest::keyClick(&t.ed, Qt::Key_H, Qt::ControlModifier);
    QTest::keyClick(&t.ed, Qt::Key_Y, Qt::ControlModifier);
    EXPECT_FALSE(t.ed.Modifie);
    QTest::keyClick(&t.ed, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(t.ed.Modifie);
    EXPECT_EQ(masque.size(), 2);
    EXPECT_EQ(resume.size(), 1);
    EXPECT_EQ(bulle.size(), 1);
    EXPECT_EQ(suivant.size(), 1);
    EXPECT_EQ(arret.size(), 1);
    EXPECT_EQ(rech.size(), 1);
    EXPECT_EQ(rempl.size(), 1);
    EXPECT_EQ(def.size(), 1);
    EXPECT_EQ(ref.size(), 1);
    QTest::keyClick(&t.ed, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(t.ed.textCursor().selectedText(), QStringLiteral("CT = 1, 1") + QChar::ParagraphSeparator);
    EXPECT_EQ(t.ed.TexteCrLf(), QStringLiteral("CT = 1, 1\r\n")); // no key went into the text
}

TEST(Editeur, FindPositionResetWhenTheCaretLeavesTheBlock) {
    Ed t("CT = 1, 1\nCT = 2, 2");
    t.ed.LigneDebut = t.ed.LigneFin = 0;
    t.ed.PositionRecherche = 5;
    QTest::keyClick(&t.ed, Qt::Key_F3); // F3 keeps it
    EXPECT_EQ(t.ed.PositionRecherche, 5);
    QTest::keyClick(&t.ed, Qt::Key_Down);
    EXPECT_EQ(t.ed.PositionRecherche, -1);
}

TEST(Editeur, SyntaxKeyOfALine) {
    EXPECT_EQ(Editeur::MotSyntaxe(QStringLiteral("If %a = 1 Goto fin"), false), QStringLiteral("IF"));
    EXPECT_EQ(Editeur::MotSyntaxe(QStringLiteral("Ift %a = b Goto fin"), false), QStringLiteral("IFT"));
    EXPECT_EQ(Editeur::MotSyntaxe(QStringLiteral("  ' comment"), false), QStringLiteral("COM"));
    EXPECT_EQ(Editeur::MotSyntaxe(QStringLiteral("2, 3"), true), QStringLiteral("SUITE"));
    EXPECT_EQ(Editeur::MotSyntaxe(QStringLiteral("Arc = 1, 2, 3"), false), QStringLiteral("ARC"));
    EXPECT_EQ(Editeur::MotSyntaxe(QStringLiteral("Goto fin"), false), QStringLiteral("GOTO"));
    EXPECT_EQ(RangSyntaxe(QStringLiteral("COM")), 201);
    EXPECT_EQ(RangSyntaxe(QStringLiteral("SUITE")), 202);
    EXPECT_EQ(RangSyntaxe(QStringLiteral("ARC")), 203);
    EXPECT_EQ(RangSyntaxe(QStringLiteral("VALR")), 236);
    EXPECT_EQ(RangSyntaxe(QStringLiteral("%A")), 248);
    EXPECT_EQ(RangSyntaxe(QStringLiteral("REFCUR")), 209);
    EXPECT_EQ(RangSyntaxe(QStringLiteral("PRINTA")), 264);
    EXPECT_EQ(RangSyntaxe(QStringLiteral("TRUC")), 241);
    // Every row names its keyword (French section).
    for (const char* m : {"ARC", "CADRE", "TEXTE", "TRAIT", "GOTO", "ANGROT", "COTE", "ENDIF"}) {
        const QString row = LoadResString(RangSyntaxe(QString::fromLatin1(m)));
        EXPECT_TRUE(row.toUpper().contains(QString::fromLatin1(m))) << m << " " << row.toStdString();
    }
}
