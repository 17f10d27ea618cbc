// Curves from data files: scaled lines, blocks, statistics, symbols, failures.
#include "outils.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>

namespace {
// A folder with a main program beside its data file.
struct Dossier {
    QTemporaryDir d;
    explicit Dossier(const QByteArray& donnees, const char* nom = "mesure.txt") {
        QFile f(d.filePath(nom));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly) && f.write(donnees) == donnees.size());
    }
    std::unique_ptr<Session> Lance(const QString& lignes) {
        auto s = std::make_unique<Session>(Programme(lignes));
        s->etat.FichierPrincipal = d.filePath("courbe.dat");
        s->Execute();
        return s;
    }
};

double Longueur(const OpSurface& op) { return std::hypot(op.x2 - op.x1, op.y2 - op.y1); }

// The short line "9" is passed over, "3,5" reads 3.5, "1R" is 1 + 1; blocks are not joined.
TEST(Plot, LinesFollowTheFactorsAndBlocksStaySeparate) {
    Dossier d("'x;y\n0;0\n1;2\n2;3,5\n9\n'EOD\n5;1\n6;1R\n'EOD NP\n'eod\n"); // no data behind the last two
    auto s = d.Lance("Plot = mesure§59, 1, 2, 0, 10, 0, 10, 0, , , %N\n");
    EXPECT_TRUE(Messages(*s).isEmpty()) << Messages(*s).join("|").toStdString();
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 3);
    EXPECT_MM(Longueur(l[0]), std::hypot(10, 20));
    EXPECT_MM(Longueur(l[1]), std::hypot(10, 15));
    EXPECT_MM(Longueur(l[2]), std::hypot(10, 10));
    EXPECT_EQ(Variable(*s, "%N"), "3+2");
    // A pen change in the data acts from its place on (the drawing tool writes them); STOP ends the reading.
    Dossier p("0;0\n1;1\nCOULEUR = Rouge\n2;2\nSTOP\n3;3\n");
    const auto lp = Lignes(*p.Lance("Plot = mesure§59, 1, 2, 0, 10, 0, 10, 0\n"));
    ASSERT_EQ(lp.size(), 2);
    EXPECT_TRUE(lp[0].couleur == 0 && lp[1].couleur == 255);
    // PlotP fills each block, unless "NP" follows its 'EOD.
    for (const auto& [fin, surfaces] : {std::pair{"", 1}, {"'EOD\n", 2}, {"'EOD NP\n", 1}}) {
        Dossier t(QByteArray("0;0\n1;1\n2;0\n") + fin + "5;0\n6;1\n7;0\n");
        EXPECT_EQ(Ops(*t.Lance("PlotP = mesure§59, 1, 2, 0, 10, 0, 10, 0\n"), OpSurface::Polygone).size(), surfaces) << fin;
    }
}

// The values of a curve over the line index: plain numbers, and what only
// the number reader reads (an exponent, a second point, letters, tabs); CR,
// LF and CR LF end lines alike. With the point as separator the decimal
// commas become separators too.
TEST(Plot, DataValuesAndLineEnds) {
    const struct { const char* donnees; const char* ligne; std::vector<double> y; } cas[] = {
        {"0\n-3.25\n+4.\n.5\n 7 \n2,5\n\t6\n1e2\n1.2.3\nabc\n-\n1R\n0.1234567890123456789\n",
         "Plot = mesure§59, 0, 1, 0, 1, 0, 1", {0, -3.25, 4, 0.5, 7, 2.5, 6, 100, 1.2, 0, 0, 1, 0.123457}},
        {"0\r1\r\n2\n\r3", "Plot = mesure§59, 0, 1, 0, 1, 0, 1", {0, 1, 2, 3}},
        {"0.0\n1,5.2,5\n", "Plot = mesure§46, 0, 2, 0, 1, 0, 1", {0, 5}},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.donnees);
        Dossier d(c.donnees);
        auto s = d.Lance(c.ligne);
        const auto l = Lignes(*s);
        ASSERT_EQ(l.size() + 1, c.y.size());
        for (qsizetype i = 0; i < l.size(); ++i) {
            EXPECT_MM(l[i].y1 - l[0].y1, c.y[i]);
            EXPECT_MM(l[i].y2 - l[0].y1, c.y[i + 1]);
        }
    }
}

TEST(Plot, SizesLimitsAndStatistics) {
    Dossier d("0;0\n1;5\n2;10\n4;20\n");
    const struct { const char* ligne; int traits; double premier; /* first segment */ } cas[] = {
        {"Plot = mesure§59, 1, 2, 0, 0§40, 0, 0§20\n", 3, std::hypot(10, 5)}, // 40 x 20 mm over the range
        {"Plot = mesure§59, 1, 2, 0, 1, 0, 1§§§0§10\n", 2, std::hypot(1, 5)},  // Y limited to 0..10
        {"Plot = mesure§59, 1, 2§0§2, 0, 1, 0, 1\n", 2, std::hypot(2, 10)},    // step 2, and the last point
        {"Plot = mesure§59, 1, 2, 0, 10mm, 0, 1mm\n", 3, std::hypot(10, 5)},  // a unit after a factor
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.ligne);
        const auto l = Lignes(*d.Lance(c.ligne));
        ASSERT_EQ(l.size(), c.traits);
        EXPECT_MM(Longueur(l[0]), c.premier);
    }
    auto s = d.Lance("Plot = mesure§59, 1, 2, 0, 1, 0, 1, 0, %X, %Y, %N\n");
    EXPECT_TRUE(Lignes(*s).isEmpty());
    EXPECT_EQ(Variable(*s, "%X"), "0, 4, 1.75");
    EXPECT_EQ(Variable(*s, "%Y"), "0, 20, 8.75");
    EXPECT_EQ(Variable(*s, "%N"), "4");
    s = d.Lance("Plot = mesure§59, 1, 2, 0, %U, 0, 1\n");
    ASSERT_EQ(Messages(*s).size(), 1);
    EXPECT_TRUE(Messages(*s)[0].contains("%U : non initialisée")) << Messages(*s)[0].toStdString();
}

// A symbol command other than Plot in %CmdSymb is refused and the default symbol drawn;
// a symbol's variables are the caller's.
TEST(Plot, SymbolsAndRefusedSymbol) {
    Dossier d("0;0\n1;2\n2;4\n");
    auto s = d.Lance("PlotS = MESURE§59, 1, 2, 0, 1, 0, 1\n"); // the file's name in any case
    EXPECT_EQ(Ops(*s, OpSurface::Cercle).size(), 3);
    EXPECT_TRUE(Lignes(*s).isEmpty());
    s = d.Lance("%CmdSymb = PlotS\nPlotS = mesure§59, 1, 2, 0, 1, 0, 1\n");
    ASSERT_EQ(Messages(*s).size(), 1);
    EXPECT_TRUE(Messages(*s)[0].startsWith("Pas de commande Plot dans %CmdSymb"));
    EXPECT_EQ(Ops(*s, OpSurface::Cercle).size(), 3);
    // Any symbol takes the caller's variables; one left undefined fails the line once.
    s = d.Lance("%CmdSymb = Plus=#X,#Y,%T\n%T = 2\nPlotS = mesure§59, 1, 2, 0, 1, 0, 1\n");
    EXPECT_TRUE(Messages(*s).isEmpty());
    ASSERT_EQ(Lignes(*s).size(), 6);
    EXPECT_MM(Longueur(Lignes(*s)[0]), 4);
    s = d.Lance("%CmdSymb = Plus=#X,#Y,%T\nPlotS = mesure§59, 1, 2, 0, 1, 0, 1\n");
    ASSERT_EQ(Messages(*s).size(), 1);
    EXPECT_TRUE(Messages(*s)[0].contains("%T : non initialisée")) << Messages(*s)[0].toStdString();
    // #SYMB takes the element at the point's index (from 1, in its block) modulo the list's length.
    Dossier b("0;0\n1;2\n2;4\n'EOD\n0;0\n1;1\n");
    s = b.Lance("%SYMB = 1,2,3\n%CmdSymb = Cercle=#X,#Y,#SYMB\nPlotS = mesure§59, 1, 2, 0, 1, 0, 1\n");
    QList<double> rayons;
    for (const OpSurface& op : Ops(*s, OpSurface::Cercle)) rayons.append(op.r);
    EXPECT_EQ(rayons, (QList<double>{2, 3, 1, 2, 3}));
    // Under AngRot the symbols stand on the turned curve, whatever their kind.
    for (const char* symbole : {"Cercle=#X,#Y,1", "Plus=#X,#Y,2"}) {
        s = d.Lance(QString("AngRot = 90\n%CmdSymb = %1\nPlotS = mesure§59, 1, 2, 0, 10, 0, 10\n").arg(symbole));
        const auto cercles = Ops(*s, OpSurface::Cercle);
        const auto lignes = Lignes(*s);
        const QPointF centre = cercles.isEmpty() ? QPointF((lignes[0].x1 + lignes[0].x2) / 2, (lignes[0].y1 + lignes[0].y2) / 2)
                                                 : QPointF(cercles[0].x1, cercles[0].y1);
        EXPECT_MM(centre.x(), -0.0) << symbole; // the first point, (0, 0) turned
        EXPECT_MM(centre.y(), 0) << symbole;
        const QPointF second = cercles.size() > 1 ? QPointF(cercles[1].x1, cercles[1].y1)
                                                  : QPointF((lignes[2].x1 + lignes[2].x2) / 2, (lignes[2].y1 + lignes[2].y2) / 2);
        EXPECT_MM(second.x(), -20) << symbole; // (10, 20) turned by 90 degrees
        EXPECT_MM(second.y(), 10) << symbole;
    }
}

// A missing or too short file shows the file error, in a box titled as the others, and the run goes on.
TEST(Plot, MissingOrShortFileShowsTheFileError) {
    Dossier d("1;1\n", "court.txt");
    for (const char* ligne : {"Plot = absent, 1, 2, 0\n%Z = 1\n", "Plot = court§59, 1, 2, 5\n%Z = 1\n"}) {
        SCOPED_TRACE(ligne);
        auto s = d.Lance(ligne);
        ASSERT_EQ(Messages(*s).size(), 1);
        EXPECT_TRUE(Messages(*s)[0].startsWith("Erreur fichier: ")) << Messages(*s)[0].toStdString();
        EXPECT_EQ(s->hote.Messages()[0].titre, "Mirel");
        EXPECT_EQ(Variable(*s, "%Z"), "1");
        EXPECT_EQ(s->etat.ErreursAffichees, 1); // an error box for the exit status of dump and render
    }
}

// The lines it skips at the top are copied as they stand.
TEST(Plot, OffsetFormRewritesTheFile) {
    Dossier d("X;Y\n'tête\nCouleur = 255\n1;2\n0,5;1R\n");
    const QString avant = QDir::currentPath();
    QDir::setCurrent(d.d.path());
    auto s = d.Lance("Plot = mesure§59, 1, 2, 1, 1, 10, 1, 0.25§OFFSET\n");
    QDir::setCurrent(avant);
    EXPECT_TRUE(Lignes(*s).isEmpty());
    QFile f(d.d.filePath("Plot_Offset.txt"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(f.readAll()), "X;Y\r\n'tête\r\nCouleur = 255\r\n11.0;2.25\r\n10.5;1.0r\r\n");
}
} // namespace
