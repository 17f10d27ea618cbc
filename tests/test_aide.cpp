// The help pages (Part 4.5's help commands on pages generated from the string
// table, design.md section 2) and the help menu of the window.
#include "app/aide_fenetre.h"
#include "app/core/aide.h"
#include "outils_fenetre.h"

#include <QTextBrowser>

namespace {

const TableChaines& T() { return TableChaines::Standard(); }

} // namespace

TEST(Aide, ContentsPutEveryCommandUnderItsTopic) {
    const QString h = PageContenu(T(), 0);
    // Every topic of Mnu_AideMot has its anchor, in order.
    int avant = -1;
    for (int sujet : {2100, 2200, 2300, 2400, 2500, 2600, 2700, 2800, 2900, 3000, 3100, 3200, 5000}) {
        const int p = int(h.indexOf(QStringLiteral("name=\"s%1\"").arg(sujet)));
        ASSERT_GT(p, avant) << sujet;
        avant = p;
    }
    // Arc: its syntax line and its parameter description under 2700.
    const int arc = int(h.indexOf(LoadResString(203).toHtmlEscaped()));
    EXPECT_GT(arc, int(h.indexOf(QStringLiteral("name=\"s2700\""))));
    EXPECT_LT(arc, int(h.indexOf(QStringLiteral("name=\"s2800\""))));
    EXPECT_TRUE(h.contains(QStringLiteral("<b>Echelle en arc de cercle</b>")));
    EXPECT_TRUE(h.contains(QStringLiteral("<li>Rayon de l&#x27;aiguille (mm)</li>")) ||
                h.contains(QStringLiteral("<li>Rayon de l'aiguille (mm)</li>")));
    // A "$" of Part 4.4's grammar is shown as "§".
    EXPECT_TRUE(h.contains(QStringLiteral("Angle de fin § [Angle de rotation autour de 0,0]")));
    // Every syntax row but the unknown command's is on the page.
    for (const RangeeSyntaxe& r : RangeesSyntaxe())
        EXPECT_TRUE(h.contains(LoadResString(r.Syntaxe).toHtmlEscaped())) << r.Syntaxe;
}

TEST(Aide, PagesAreInTheSectionsLanguage) {
    const QString en = PageContenu(T(), 400);
    EXPECT_TRUE(en.contains(LoadResString(603).toHtmlEscaped().section(u';', 0, 0)));
    EXPECT_TRUE(en.contains(LoadResString(406).toHtmlEscaped()));
    EXPECT_FALSE(en.contains(QStringLiteral("Echelle en arc de cercle")));
}

TEST(Aide, SummaryLinksEachSyntaxToItsTopic) {
    const QString h = PageResume(T(), 0);
    EXPECT_TRUE(h.contains(QStringLiteral("<a href=\"#s2700\">ARC</a>")));
    EXPECT_TRUE(h.contains(QStringLiteral("<a href=\"#s2100\">CT</a>")));
    EXPECT_TRUE(h.contains(QStringLiteral("<a href=\"#s2500\">%</a>")));
    EXPECT_TRUE(h.contains(QStringLiteral("name=\"s2700\""))); // the links lead somewhere
}

TEST(Aide, WordAtTheCaretOpensItsTopic) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\nGrad = 10, 5\r\n"));
    ASSERT_TRUE(f.Mnu_AideMot->isEnabled());
    QTextCursor c(f.RTB1->document()->findBlockByNumber(1));
    c.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, 2);
    f.RTB1->setTextCursor(c);
    f.Mnu_AideMot->trigger();
    ASSERT_NE(f.FenetreDAide(), nullptr);
    EXPECT_EQ(f.FenetreDAide()->AncreMontree, QStringLiteral("s2700"));
    EXPECT_TRUE(f.FenetreDAide()->Navigateur()->toHtml().contains(QStringLiteral("Echelle en arc de cercle")));
    // On "CT" the topic is 2100; a word of no topic opens 5000.
    f.RTB1->setTextCursor(QTextCursor(f.RTB1->document()));
    f.Mnu_AideMot->trigger();
    EXPECT_EQ(f.FenetreDAide()->AncreMontree, QStringLiteral("s2100"));
    c = QTextCursor(f.RTB1->document()->findBlockByNumber(1));
    c.movePosition(QTextCursor::EndOfBlock);
    c.movePosition(QTextCursor::Left);
    f.RTB1->setTextCursor(c); // on "5"
    f.Mnu_AideMot->trigger();
    EXPECT_EQ(f.FenetreDAide()->AncreMontree, QStringLiteral("s5000"));
}

TEST(Aide, ShiftF2OpensTheSummary) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    QTest::keyClick(f.RTB1, Qt::Key_F2, Qt::ShiftModifier);
    ASSERT_NE(f.FenetreDAide(), nullptr);
    EXPECT_TRUE(f.FenetreDAide()->isVisible());
    EXPECT_TRUE(f.FenetreDAide()->Navigateur()->toHtml().contains(QStringLiteral("#s2700")));
}

// Part 4.5: with mask and menus in different languages, Mnu_Aide25 is the
// mask's help and Mnu_Aide the menus'.
TEST(Aide, Aide25InTheMasksLanguageAideInTheMenus) {
    Banc b;
    b.config.Valeurs.LangueMenu = QStringLiteral("English");
    Form1& f = b.Demarre(QStringLiteral("CT = 1, 1\r\n"));
    ASSERT_TRUE(f.Mnu_Aide->isVisible());
    ASSERT_TRUE(f.Mnu_Aide->isEnabled());
    f.Mnu_Aide25->trigger();
    EXPECT_TRUE(f.FenetreDAide()->Navigateur()->toHtml().contains(QStringLiteral("Echelle en arc de cercle")));
    f.Mnu_Aide->trigger();
    EXPECT_TRUE(f.FenetreDAide()->Navigateur()->toHtml().contains(QStringLiteral("Scale on a circular arc")));
}
