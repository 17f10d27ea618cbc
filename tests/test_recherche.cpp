// Undo, redo, find and replace in the editor, driven by real key events.
#include "outils.h"
#include "outils_fenetre.h"

#include "app/recherche.h"

#include <QCheckBox>
#include <QPushButton>

namespace {

// Plays a key script in the editor: characters are typed, and a few stand
// for keys: \n Enter, \b Backspace, ~ Delete, < Left, { Shift+Left, ^ Ctrl-X,
// @ the colour menu (inserts "RVB 1 2 3"), ! the release of an Enter pressed
// in a dialog that has just closed.
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

// The texts from now back to the oldest level, one Ctrl-Z at a time.
QStringList Defaits(Form1& f) {
    QStringList r{Texte(f)};
    while (f.Mnu_Defaire->isEnabled()) {
        CtrlZ(f);
        r << Texte(f);
    }
    return r;
}

const char* const Commentaires = "' abc\n' Abc abcd\n' ABC\n";

} // namespace

TEST(Annulation, EachKindOfKeyRunIsOneLevel) {
    const struct {
        const char* script;
        QStringList niveaux; // the text now, then after each undo
    } cas[] = {
        {"abc def", {"abc def", ""}},
        {"abc\ndef", {"abc\ndef", "abc\n", ""}},
        {"ab\n\ncd", {"ab\n\ncd", "ab\n\n", ""}},
        {"abc\b\bx", {"ax", "a", "abc", ""}},
        {"abc<<~~", {"a", "abc", ""}},
        {"ab<<cd", {"cdab", ""}},
        {"abcd<<{^\b", {"cd", "abcd", ""}},
        {"CT = @x", {"CT = RVB 1 2 3x", "CT = ", ""}},
        {"ab!cd", {"abcd", ""}},
    };
    for (const auto& c : cas) {
        Banc b;
        b.boites.couleur = QColor(1, 2, 3);
        Form1& f = b.Demarre(QString());
        Joue(f, QString::fromLatin1(c.script));
        EXPECT_EQ(Defaits(f), c.niveaux) << c.script;
        EXPECT_TRUE(f.Modifie()) << c.script;
    }
}

TEST(Annulation, RingKeepsTwentyStepsAndTypingClearsRedo) {
    Banc b;
    Form1& f = b.Demarre(QString());
    for (int i = 0; i < 25; ++i) Joue(f, QStringLiteral("w\n"));
    EXPECT_EQ(f.Text4->text(), QStringLiteral("5 : 21  0  "));
    for (int i = 0; i < 21; ++i) CtrlZ(f); // the last one finds the menu off
    EXPECT_EQ(Texte(f), QStringLiteral("w\n").repeated(5));
    EXPECT_EQ(f.Text4->text(), QStringLiteral("6 : 1  20  "));
    EXPECT_FALSE(f.Mnu_Defaire->isEnabled());
    CtrlY(f);
    CtrlY(f);
    EXPECT_EQ(Texte(f), QStringLiteral("w\n").repeated(7));
    Joue(f, QStringLiteral("v"));
    EXPECT_FALSE(f.Mnu_Refaire->isEnabled());
    CtrlY(f);
    EXPECT_EQ(Texte(f), QStringLiteral("w\n").repeated(7) + u'v');
    CtrlZ(f);
    EXPECT_EQ(Texte(f), QStringLiteral("w\n").repeated(7));
}

TEST(Annulation, CaretSelectionAndColoursComeBackWithTheirLevel) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("' c\r\n"));
    QTest::keyClick(f.RTB1, Qt::Key_Down);
    Joue(f, QStringLiteral("ab\n"));
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
    EXPECT_EQ(Texte(f), QStringLiteral("' c\n"));
    EXPECT_EQ(CouleurLigne(*f.RTB1, 0, 0), Editeur::Vert);
}

TEST(Recherche, F3FindsTheNextMatchByWholeWordAndCase) {
    const struct {
        bool motEntier, casse;
        std::vector<int> trouves;
    } cas[] = {
        {false, false, {2, 8, 12, 19}},
        {true, false, {2, 8, 19}},
        {false, true, {2, 12}},
        {true, true, {2}},
    };
    for (const auto& c : cas) {
        Banc b;
        Form1& f = b.Demarre(Programme(QString::fromLatin1(Commentaires)));
        FrmFind& d = *f.recherche->Find;
        d.Text1->setText(QStringLiteral("abc"));
        d.Check1->setChecked(c.motEntier);
        d.Check2->setChecked(c.casse);
        std::vector<int> trouves;
        for (size_t i = 0; i < c.trouves.size(); ++i) {
            QTest::keyClick(f.RTB1, Qt::Key_F3);
            trouves.push_back(f.RTB1->textCursor().selectionStart());
            EXPECT_EQ(f.RTB1->textCursor().selectedText().toLower(), QStringLiteral("abc"));
        }
        EXPECT_EQ(trouves, c.trouves);
        // Past the last match the caret stays behind it, and Replace waits.
        QTest::keyClick(f.RTB1, Qt::Key_F3);
        EXPECT_FALSE(f.RTB1->textCursor().hasSelection());
        EXPECT_EQ(f.RTB1->textCursor().position(), c.trouves.back() + 3);
        EXPECT_FALSE(d.Remplacer->isEnabled());
    }
}

TEST(Recherche, F3AndCtrlFWithoutTextOpenTheDialogOnTheSelection) {
    for (const auto touche : {Qt::Key_F3, Qt::Key_F}) {
        Banc b;
        Form1& f = b.Demarre(Programme(QString::fromLatin1(Commentaires)));
        QTextCursor c = f.RTB1->textCursor();
        c.setPosition(8);
        c.setPosition(11, QTextCursor::KeepAnchor);
        f.RTB1->setTextCursor(c);
        QTest::keyClick(f.RTB1, touche, touche == Qt::Key_F ? Qt::ControlModifier : Qt::NoModifier);
        EXPECT_TRUE(f.recherche->Find->isVisible());
        EXPECT_EQ(f.recherche->Find->Text1->text(), QStringLiteral("Abc"));
        EXPECT_EQ(f.recherche->Find->Suivant->text(), QStringLiteral("Suivant (F3)"));
    }
}

TEST(Recherche, DialogKeysAndCtrlHReplaceOneMatchAtATime) {
    Banc b;
    Form1& f = b.Demarre(Programme(QString::fromLatin1(Commentaires)));
    f.Mnu_Rechercher->trigger();
    FrmFind& d = *f.recherche->Find;
    QTest::keyClicks(d.Text1, "abc");
    d.Text2->setText(QStringLiteral("Z"));
    QTest::keyClick(d.Text1, Qt::Key_Return);
    EXPECT_EQ(f.RTB1->textCursor().selectionStart(), 2);
    QTest::keyClick(d.Text1, Qt::Key_H, Qt::ControlModifier);
    QTest::keyClick(f.RTB1, Qt::Key_H, Qt::ControlModifier);
    EXPECT_EQ(Texte(f), QStringLiteral("' Z\n' Z abcd\n' ABC\n"));
    EXPECT_EQ(f.RTB1->textCursor().selectionStart(), 8); // the next match stands selected
    EXPECT_TRUE(f.Modifie());
    // The replacements one after the other are one level.
    CtrlZ(f);
    EXPECT_EQ(Texte(f), QString::fromLatin1(Commentaires));
    // A move of the caret drops the match: Ctrl-H then replaces nothing.
    QTest::keyClick(f.RTB1, Qt::Key_F3);
    QTest::keyClick(f.RTB1, Qt::Key_Down);
    EXPECT_FALSE(d.Remplacer->isEnabled());
    QTest::keyClick(d.Text1, Qt::Key_Escape);
    EXPECT_FALSE(d.isVisible());
}

TEST(Recherche, ReplaceAllCountsKeepsTheCaretAndIsOneLevel) {
    Banc b;
    Form1& f = b.Demarre(Programme(QString::fromLatin1(Commentaires)));
    FrmFind& d = *f.recherche->Find;
    QTextCursor c = f.RTB1->textCursor();
    c.setPosition(7);
    f.RTB1->setTextCursor(c);
    d.Text1->setText(QStringLiteral("nothing"));
    d.RemplacerTout->click();
    EXPECT_EQ(d.Compte->text(), QString());
    EXPECT_EQ(f.RTB1->textCursor().position(), 7);
    d.Text1->setText(QStringLiteral("abc"));
    d.Text2->setText(QStringLiteral("abcabc")); // holds the found text: each match is replaced once
    d.RemplacerTout->click();
    EXPECT_EQ(Texte(f), QStringLiteral("' abcabc\n' abcabc abcabcd\n' abcabc\n"));
    EXPECT_EQ(d.Compte->text(), QStringLiteral("4 remplacements"));
    EXPECT_EQ(f.RTB1->textCursor().position(), 7);
    CtrlZ(f);
    EXPECT_EQ(Texte(f), QString::fromLatin1(Commentaires));
}

TEST(Recherche, ColourWordsTranslateBothWays) {
    const struct {
        const char* mot;
        const char* avant;
        const char* apres;
        const char* compte;
    } cas[] = {
        {"*COLORS", "' Rouge, vert; RVB Paysage Rouges\n", "' Red, Green; RGB Landscape Rouges\n",
         "4 remplacements"},
        {"*couleurs", "' White black RGB Lands Landscape Whites\n", "' Blanc Noir RVB Paysage Paysage Whites\n",
         "5 remplacements"},
    };
    for (const auto& c : cas) {
        Banc b;
        Form1& f = b.Demarre(Programme(QString::fromUtf8(c.avant)));
        FrmFind& d = *f.recherche->Find;
        d.Text1->setText(QString::fromLatin1(c.mot));
        d.RemplacerTout->click();
        EXPECT_EQ(Texte(f), QString::fromUtf8(c.apres)) << c.mot;
        EXPECT_EQ(d.Compte->text(), QString::fromLatin1(c.compte)) << c.mot;
        EXPECT_TRUE(d.Text1->text().isEmpty());
        EXPECT_FALSE(d.Check1->isChecked()); // whole word only for the translation
        CtrlZ(f);
        EXPECT_EQ(Texte(f), QString::fromUtf8(c.avant)) << c.mot;
    }
}
