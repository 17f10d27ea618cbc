// Undo, redo, find and replace in the editor, driven by real key events.
#include "outils.h"
#include "outils_fenetre.h"

#include "app/recherche.h"

#include <QCheckBox>
#include <QPushButton>

namespace {

// Types a key script: \n Enter, \b Backspace, ~ Delete, < Left, { Shift+Left, ^ Ctrl-X,
// @ the colour menu (inserts "RVB 1 2 3"), ! the release of an Enter pressed in a closed dialog.
void Joue(Form1& f, const QString& script) {
    for (const QChar c : script) {
        switch (c.unicode()) {
        case '\n': QTest::keyClick(f.RTB1, Qt::Key_Return); break;
        case '\b': QTest::keyClick(f.RTB1, Qt::Key_Backspace); break;
        case '~': QTest::keyClick(f.RTB1, Qt::Key_Delete); break;
        case '<': QTest::keyClick(f.RTB1, Qt::Key_Left); break;
        case '{': QTest::keyClick(f.RTB1, Qt::Key_Left, Qt::ShiftModifier); break;
        case '^': QTest::keyClick(f.RTB1, Qt::Key_X, Qt::ControlModifier); break;
        case '@': f.Mnu_Couleur->trigger(); break;
        case '!': QTest::keyRelease(f.RTB1, Qt::Key_Return); break;
        default: QTest::keyClick(f.RTB1, c.toLatin1()); break;
        }
    }
}

QString Texte(const Form1& f) { return f.RTB1->toPlainText(); }
void CtrlZ(Form1& f) { QTest::keyClick(f.RTB1, Qt::Key_Z, Qt::ControlModifier); }
void CtrlY(Form1& f) { QTest::keyClick(f.RTB1, Qt::Key_Y, Qt::ControlModifier); }
void Selection(Form1& f, int ancre, int position) {
    QTextCursor c = f.RTB1->textCursor();
    c.setPosition(ancre);
    c.setPosition(position, QTextCursor::KeepAnchor);
    f.RTB1->setTextCursor(c);
}

const QString Commentaires = "' abc\n' Abc abcd\n' ABC\n";

} // namespace

TEST(Annulation, EachKindOfKeyRunIsOneLevel) {
    const struct {
        const char* script;
        QStringList niveaux; // the text now, then after each undo
    } cas[] = {
        {"abc def", {"abc def", ""}}, {"abc\ndef", {"abc\ndef", "abc\n", ""}},
        {"ab\n\ncd", {"ab\n\ncd", "ab\n\n", ""}}, {"abc\b\bx", {"ax", "a", "abc", ""}},
        {"abc<<~~", {"a", "abc", ""}}, {"ab<<cd", {"cdab", ""}}, {"abcd<<{^\b", {"cd", "abcd", ""}},
        {"CT = @x", {"CT = RVB 1 2 3x", "CT = ", ""}}, {"ab!cd", {"abcd", ""}},
    };
    for (const auto& c : cas) {
        Banc b;
        b.boites.couleur = QColor(1, 2, 3);
        Form1& f = b.Demarre(QString());
        Joue(f, c.script);
        EXPECT_TRUE(f.Modifie()) << c.script;
        QStringList niveaux{Texte(f)};
        for (; f.Mnu_Defaire->isEnabled(); niveaux << Texte(f)) CtrlZ(f);
        EXPECT_EQ(niveaux, c.niveaux) << c.script;
    }
}

TEST(Annulation, RingKeepsTwentyStepsAndTypingClearsRedo) {
    Banc b;
    Form1& f = b.Demarre(QString());
    const QString w = "w\n";
    for (int i = 0; i < 25; ++i) Joue(f, w);
    EXPECT_EQ(f.Text4->text(), "5 : 21  0  ");
    for (int i = 0; i < 21; ++i) CtrlZ(f); // the last one finds the menu off
    EXPECT_EQ(Texte(f), w.repeated(5));
    EXPECT_EQ(f.Text4->text(), "6 : 1  20  ");
    EXPECT_FALSE(f.Mnu_Defaire->isEnabled());
    CtrlY(f);
    CtrlY(f);
    Joue(f, "v");
    EXPECT_FALSE(f.Mnu_Refaire->isEnabled());
    CtrlY(f);
    EXPECT_EQ(Texte(f), w.repeated(7) + u'v');
    CtrlZ(f);
    EXPECT_EQ(Texte(f), w.repeated(7));
}

TEST(Annulation, CaretSelectionAndColoursComeBackWithTheirLevel) {
    Banc b;
    Form1& f = b.Demarre("' c\r\n");
    QTest::keyClick(f.RTB1, Qt::Key_Down);
    Joue(f, "ab\n");
    QTest::keyClick(f.RTB1, Qt::Key_Up, Qt::ShiftModifier);
    QTest::keyClick(f.RTB1, Qt::Key_Escape); // a key of its own: the copy keeps the selection
    CtrlZ(f);
    EXPECT_EQ(f.RTB1->textCursor().position(), 7);
    EXPECT_FALSE(f.RTB1->textCursor().hasSelection());
    CtrlY(f);
    EXPECT_EQ(f.RTB1->textCursor().selectionStart(), 4);
    EXPECT_EQ(f.RTB1->textCursor().selectionEnd(), 7);
    CtrlZ(f);
    CtrlZ(f);
    EXPECT_EQ(Texte(f), "' c\n");
    EXPECT_EQ(CouleurLigne(*f.RTB1, 0, 0), Editeur::Vert);
}

TEST(Recherche, F3FindsTheNextMatchByWholeWordAndCase) {
    const struct {
        bool motEntier, casse;
        std::vector<int> trouves;
    } cas[] = {{false, false, {2, 8, 12, 19}}, {true, false, {2, 8, 19}}, {false, true, {2, 12}}, {true, true, {2}}};
    for (const auto& c : cas) {
        Banc b;
        Form1& f = b.Demarre(Programme(Commentaires));
        FrmFind& d = *f.recherche->Find;
        d.Text1->setText("abc");
        d.Check1->setChecked(c.motEntier);
        d.Check2->setChecked(c.casse);
        std::vector<int> trouves;
        for (size_t i = 0; i < c.trouves.size(); ++i) {
            QTest::keyClick(f.RTB1, Qt::Key_F3);
            trouves.push_back(f.RTB1->textCursor().selectionStart());
            EXPECT_EQ(f.RTB1->textCursor().selectedText().toLower(), "abc");
        }
        EXPECT_EQ(trouves, c.trouves);
        // Past the last match the caret stays behind it, and Replace waits.
        QTest::keyClick(f.RTB1, Qt::Key_F3);
        EXPECT_FALSE(f.RTB1->textCursor().hasSelection());
        EXPECT_EQ(f.RTB1->textCursor().position(), c.trouves.back() + 3);
        EXPECT_FALSE(d.Remplacer->isEnabled());
        // With no match standing, the search starts again from the top: after the last one, or
        // after the caret moved.
        QTest::keyClick(f.RTB1, Qt::Key_F3);
        EXPECT_EQ(f.RTB1->textCursor().selectionStart(), c.trouves.front());
        QTest::keyClick(f.RTB1, Qt::Key_End, Qt::ControlModifier);
        QTest::keyClick(f.RTB1, Qt::Key_F3);
        EXPECT_EQ(f.RTB1->textCursor().selectionStart(), c.trouves.front());
    }
    // A text that is nowhere leaves the caret where it was.
    {
        Banc b;
        Form1& f = b.Demarre(Programme(Commentaires));
        f.recherche->Find->Text1->setText("zzz");
        Selection(f, 9, 9);
        QTest::keyClick(f.RTB1, Qt::Key_F3);
        EXPECT_EQ(f.RTB1->textCursor().position(), 9);
        // A line separator inside a line is found as it was typed.
        f.RTB1->ChargeTexte(QStringLiteral("' a\u2028b\r\n"));
        f.recherche->Find->Text1->setText(QStringLiteral("a\u2028b"));
        QTest::keyClick(f.RTB1, Qt::Key_F3);
        EXPECT_EQ(f.RTB1->textCursor().selectionStart(), 2);
    }
    // A whole word that begins inside a rejected candidate is still found.
    for (const auto& [texte, mot, trouve] : {std::tuple{"Grad = 110,10, 5", "10,", 11}, {"' ba a a", "a a", 5}}) {
        Banc b;
        Form1& f = b.Demarre(Programme(texte));
        f.recherche->Find->Text1->setText(mot);
        f.recherche->Find->Check1->setChecked(true);
        QTest::keyClick(f.RTB1, Qt::Key_F3);
        EXPECT_EQ(f.RTB1->textCursor().selectionStart(), trouve) << texte;
    }
}

TEST(Recherche, F3AndCtrlFWithoutTextOpenTheDialogOnTheSelection) {
    for (const auto touche : {Qt::Key_F3, Qt::Key_F}) {
        Banc b;
        Form1& f = b.Demarre(Programme(Commentaires));
        Selection(f, 8, 11);
        QTest::keyClick(f.RTB1, touche, touche == Qt::Key_F ? Qt::ControlModifier : Qt::NoModifier);
        EXPECT_TRUE(f.recherche->Find->isVisible());
        EXPECT_EQ(f.recherche->Find->Text1->text(), "Abc");
        EXPECT_EQ(f.recherche->Find->Suivant->text(), "Suivant (F3)");
    }
}

TEST(Recherche, DialogKeysAndCtrlHReplaceOneMatchAtATime) {
    Banc b;
    Form1& f = b.Demarre(Programme(Commentaires));
    f.Mnu_Rechercher->trigger();
    FrmFind& d = *f.recherche->Find;
    QTest::keyClicks(d.Text1, "abc");
    d.Text2->setText("Z");
    QTest::keyClick(d.Text1, Qt::Key_Return);
    EXPECT_EQ(f.RTB1->textCursor().selectionStart(), 2);
    QTest::keyClick(d.Text1, Qt::Key_H, Qt::ControlModifier);
    QTest::keyClick(f.RTB1, Qt::Key_H, Qt::ControlModifier);
    EXPECT_EQ(Texte(f), "' Z\n' Z abcd\n' ABC\n");
    EXPECT_EQ(f.RTB1->textCursor().selectionStart(), 8); // the next match stands selected
    EXPECT_TRUE(f.Modifie());
    CtrlZ(f); // the replacements one after the other are one level
    EXPECT_EQ(Texte(f), Commentaires);
    // A move of the caret drops the match: Ctrl-H then replaces nothing.
    QTest::keyClick(f.RTB1, Qt::Key_F3);
    QTest::keyClick(f.RTB1, Qt::Key_Down);
    EXPECT_FALSE(d.Remplacer->isEnabled());
    QTest::keyClick(d.Text1, Qt::Key_Escape);
    EXPECT_FALSE(d.isVisible());
    // A match typed over is not replaced: Ctrl-H looks again from the caret.
    f.RTB1->ChargeTexte("' abc abc\r\n");
    QTest::keyClick(f.RTB1, Qt::Key_F3);
    QTest::keyClick(f.RTB1, Qt::Key_Q);
    QTest::keyClick(f.RTB1, Qt::Key_H, Qt::ControlModifier);
    EXPECT_EQ(Texte(f), "' q abc\n");
    EXPECT_EQ(f.RTB1->textCursor().selectionStart(), 4);
}

TEST(Recherche, ReplaceAllCountsKeepsTheCaretAndIsOneLevel) {
    Banc b;
    Form1& f = b.Demarre(Programme(Commentaires));
    FrmFind& d = *f.recherche->Find;
    Selection(f, 7, 7);
    d.Text1->setText("nothing");
    ASSERT_EQ(f.recherche->Annulation.UndoNb, 1);
    d.RemplacerTout->click();
    EXPECT_EQ(d.Compte->text(), QString());
    EXPECT_EQ(f.recherche->Annulation.UndoNb, 2); // a level, even with nothing replaced
    d.Text1->setText("abc");
    d.Text2->setText("abcabc"); // holds the found text: each match is replaced once
    d.RemplacerTout->click();
    EXPECT_EQ(Texte(f), "' abcabc\n' abcabc abcabcd\n' abcabc\n");
    EXPECT_EQ(d.Compte->text(), "4 remplacements");
    EXPECT_EQ(f.RTB1->textCursor().position(), 7);
    CtrlZ(f);
    EXPECT_EQ(Texte(f), Commentaires);
}

TEST(Recherche, ColourWordsTranslateBothWays) {
    for (auto [mot, avant, apres, compte] :
         {std::tuple{"*COLORS", "' Rouge, vert; RVB Paysage Rouges\n", "' Red, Green; RGB Landscape Rouges\n", "4"},
          {"*couleurs", "' White black RGB Lands Landscape Whites\n", "' Blanc Noir RVB Paysage Paysage Whites\n",
           "5"}}) {
        Banc b;
        Form1& f = b.Demarre(Programme(avant));
        FrmFind& d = *f.recherche->Find;
        d.Text1->setText(mot);
        d.RemplacerTout->click();
        EXPECT_EQ(Texte(f), apres);
        EXPECT_EQ(d.Compte->text(), compte + QString(" remplacements"));
        EXPECT_TRUE(d.Text1->text().isEmpty());
        EXPECT_FALSE(d.Check1->isChecked()); // whole word only for the translation
        CtrlZ(f);
        EXPECT_EQ(Texte(f), avant);
    }
}
