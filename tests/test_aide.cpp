// The help pages generated from the string table, and the window's help menu.
#include "app/aide_fenetre.h"
#include "app/core/aide.h"
#include "outils_fenetre.h"

#include <QMenu>
#include <QTextBrowser>

// Every topic has its anchor, in order, every command its syntax and parameters under it; "$" shows as "§".
TEST(Aide, ContentsPutEveryCommandUnderItsTopic) {
    const QString h = PageContenu(TableChaines::Standard(), 0);
    int avant = -1;
    for (int sujet : {2100, 2200, 2300, 2400, 2500, 2600, 2700, 2800, 2900, 3000, 3100, 3200, 5000}) {
        const int p = int(h.indexOf(QString("name=\"s%1\"").arg(sujet)));
        ASSERT_GT(p, avant) << sujet;
        avant = p;
    }
    const int arc = int(h.indexOf(LoadResString(203).toHtmlEscaped()));
    EXPECT_GT(arc, int(h.indexOf("name=\"s2700\"")));
    EXPECT_LT(arc, int(h.indexOf("name=\"s2800\"")));
    EXPECT_TRUE(h.contains("<b>Echelle en arc de cercle</b>"));
    EXPECT_TRUE(h.contains("<li>Rayon de l'aiguille (mm)</li>"));
    EXPECT_TRUE(h.contains("Angle de fin § [Angle de rotation autour de 0,0]"));
    EXPECT_FALSE(h.contains("@I ")); // a description's picture line is the dialog's, not text
    for (const RangeeSyntaxe& r : RangeesSyntaxe()) EXPECT_TRUE(h.contains(LoadResString(r.Syntaxe).toHtmlEscaped()));
    const QString resume = PageResume(TableChaines::Standard(), 0);
    for (const char* lien : {"<a href=\"#s2700\">ARC</a>", "<a href=\"#s2100\">CT</a>", "<a href=\"#s2500\">%</a>",
                             "name=\"s2700\""})
        EXPECT_TRUE(resume.contains(lien)) << lien;
}

// The word at the caret opens its topic (5000 for a word of none); Shift-F2 the summary.
TEST(Aide, WordAtTheCaretOpensItsTopic) {
    Banc b;
    Form1& f = b.Demarre("CT = 1, 1\r\nGrad = 10, 5\r\n");
    for (auto [ligne, colonne, ancre] : {std::tuple{1, 2, "s2700"}, {0, 0, "s2100"}, {1, 11, "s5000"}}) {
        QTextCursor c(f.RTB1->document()->findBlockByNumber(ligne));
        c.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, colonne);
        f.RTB1->setTextCursor(c);
        f.Mnu_AideMot->trigger();
        ASSERT_NE(f.FenetreDAide(), nullptr);
        EXPECT_EQ(f.FenetreDAide()->AncreMontree, ancre);
    }
    EXPECT_TRUE(f.FenetreDAide()->Navigateur()->toHtml().contains("Echelle en arc de cercle"));
    QTest::keyClick(f.RTB1, Qt::Key_F2, Qt::ShiftModifier);
    EXPECT_TRUE(f.FenetreDAide()->isVisible());
    EXPECT_TRUE(f.FenetreDAide()->Navigateur()->toHtml().contains("#s2700"));
}

// Menus in another language than the mask: the first help entry is the mask's, a second the menus'.
TEST(Aide, MenusInEnglishWithAFrenchMask) {
    Banc b;
    b.config.Pose(CleCfg::LangueMenu, "English");
    Form1& f = b.Demarre("CT = 1, 1\r\n");
    EXPECT_EQ(f.Mnu_Fichier->title(), "&File");
    EXPECT_EQ(f.Mnu_Visualiser->text(), LoadResString(437) + " (F4)");
    EXPECT_EQ(f.Mnu_ExportPdf->text(), "E&xport to PDF...");
    EXPECT_EQ(f.Mnu_Aide25->text(), LoadResString(487));
    ASSERT_TRUE(f.Mnu_Aide->isVisible());
    ASSERT_TRUE(f.Mnu_Aide->isEnabled());
    f.Mnu_Aide25->trigger();
    EXPECT_TRUE(f.FenetreDAide()->Navigateur()->toHtml().contains("Echelle en arc de cercle"));
    f.Mnu_Aide->trigger();
    EXPECT_TRUE(f.FenetreDAide()->Navigateur()->toHtml().contains("Scale on a circular arc"));
}
