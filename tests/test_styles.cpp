// Colours and line styles: reading a colour, line widths, and the dash pattern.
#include "outils_peint.h"

#include "drawing/repere.h"
#include "drawing/styles.h"
#include "drawing/surface_peinte.h"
#include "app/core/rendu.h"

#include <QBuffer>
#include <QSvgGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace {

using Trait4 = std::array<double, 4>; // x1, y1, x2, y2

// A session whose screen pane has the given millimetres per pixel.
std::unique_ptr<Session> SessionPane(const QString& lignes, double mmParPixel) {
    auto s = std::make_unique<Session>(Programme(lignes));
    s->pane = std::make_unique<SurfaceEnregistree>(GenreSurface::Ecran, 297 / mmParPixel, 210 / mmParPixel, mmParPixel);
    s->pane->SetJournal(&s->journal);
    AttachePane(s->etat, s->pane.get());
    s->Execute();
    return s;
}

void AttendTraits(const Session& s, const std::vector<Trait4>& attendu) {
    const auto l = Lignes(s);
    ASSERT_EQ(size_t(l.size()), attendu.size());
    for (size_t i = 0; i < attendu.size(); ++i) {
        const Trait4 a{l[i].x1, l[i].y1, l[i].x2, l[i].y2}, b = attendu[i];
        auto proche = [](double u, double v) { return std::abs(u - v) <= 0.001; };
        EXPECT_TRUE(std::equal(a.begin(), a.end(), b.begin(), proche))
            << i << ": (" << a[0] << ", " << a[1] << ") to (" << a[2] << ", " << a[3] << ")";
    }
}

} // namespace

TEST(Styles, ReadsColourNamesAndRgbTriples) {
    const std::pair<const char*, std::optional<int>> cas[] = {
        {"noir", 0}, {"RED", 255}, {"vert", 65280}, {"Jaune", 65535}, {"BLUE", 16711680},
        {"CYAN", 16776960}, {"VIOLET", 16776960}, {"MAGENTA", 16711935}, {"blanc", 16777215},
        {"n", -1}, {"", std::nullopt}, {"ORANGE", std::nullopt},
        // The part behind the separator is a second colour; "/" serves when there is no "§".
        {"ROUGE§BLEU", 255}, {"ROUGE/BLEU", 255}, {"BLEU, 3, 4", 16711680},
        // Trimmed once, before the cut: a blank before "§" spoils the name.
        {" Rouge§Bleu", 255}, {"ROUGE §BLEU", std::nullopt},
        {"rvb 100 255 100", 6618980}, {"RGB 100 255 100", 6618980},
        {"RVB   100    255  100", 6618980}, {"  RVB 1 2 3 ", 1 + 2 * 256 + 3 * 65536},
    };
    Etat e;
    for (const auto& [texte, couleur] : cas) EXPECT_EQ(LitCouleur(e, QString::fromUtf8(texte)), couleur) << texte;
}

TEST(Styles, UnknownOrBlankColourTakesTheDefault) {
    auto s = Lance("Couleur = BLEU\nTrait = 0,0,10,0,,ORANGE\nTrait = 0,0,10,0,, ");
    const auto l = Lignes(*s);
    ASSERT_EQ(l.size(), 2);
    EXPECT_TRUE(l[0].couleur == 16711680 && l[1].couleur == 16711680);
    EXPECT_EQ(Variable(*s, "%Coul"), QStringLiteral("BLEU"));
    // A default colour N draws nothing but moves the pen.
    AttendTraits(*Lance("Couleur = N\nTrait = 0,0,10,5\nTrait = 1R,1R,5,0,,ROUGE"), {{11, 6, 5, 0}});
    // Nor does a scale's arc or band that takes that default: the red disc under them stays whole.
    auto peint = [](const QString& lignes) {
        Session z(Programme("CentreE = 100, 50, N\nCercleP = 0, 0, 30,,,ROUGE\n" + lignes));
        const QImage im = PeintEcran(z);
        EXPECT_TRUE(Messages(z).isEmpty()) << Messages(z).join("|").toStdString();
        return im;
    };
    EXPECT_TRUE(peint("Couleur = N\nArc = 30, 150, 20\nSectP = 40, 140, 10, 15") == peint(""));
    // Nor anything in an SVG, where an engraver would cut even an invisible path.
    QTemporaryDir d;
    const ResultatRendu r = RendProgramme(Programme("Couleur = N\nArc = 30, 150, 20\nSectP = 40, 140, 10, 15"),
                                          d.filePath("n.dat"), d.filePath("n.svg"), OptionsRendu(), Reglages());
    QFile svg(d.filePath("n.svg"));
    ASSERT_TRUE(r.statut == 0 && svg.open(QIODevice::ReadOnly));
    EXPECT_FALSE(svg.readAll().contains("<path"));
    // A red fill inside an outline in N: the fill, and no invisible stroke around it.
    QBuffer tampon;
    QSvgGenerator gen;
    gen.setOutputDevice(&tampon);
    gen.setSize(QSize(100, 100));
    {
        SurfacePeinte p(GenreSurface::Ecran, 100, 100, 0.25, [&](int) -> QPaintDevice* { return &gen; });
        p.FillStyle = 0;
        p.ForeColor = -1;
        p.FillColor = RGB(255, 0, 0);
        p.Polygon({{10, 10}, {50, 10}, {50, 50}});
        p.EndDoc();
    }
    EXPECT_TRUE(tampon.data().contains("fill=\"#ff0000\"") && !tampon.data().contains("stroke-opacity=\"0\""))
        << tampon.data().toStdString();
}

// The point a printed text sets far off the page to ready the page stays in the
// run's record, but reaches no file: an engraver would take it into its job.
TEST(Styles, PageMarkOffThePageReachesNoFile) {
    const QString lignes = "CentreE = 100, 150, N\nArc = 40, 140, 48\nVal = 5, 0, 50, 11";
    EXPECT_EQ(Ops(*LanceImprimante(lignes), OpSurface::Point).size(), 1);
    QTemporaryDir d;
    const ResultatRendu r = RendProgramme(Programme(lignes), d.filePath("v.dat"), d.filePath("v.svg"), OptionsRendu(), Reglages());
    QFile svg(d.filePath("v.svg"));
    ASSERT_TRUE(r.statut == 0 && svg.open(QIODevice::ReadOnly));
    const QByteArray contenu = svg.readAll();
    EXPECT_TRUE(contenu.contains("<text") && !contenu.contains("<rect")) << contenu.constData();
}

// The segments of a rounded frame or of a broken line, end to end in one
// pen, reach an SVG as one polyline: an engraver follows it in one pass.
TEST(Styles, OutlineDrawnEndToEndIsOnePolylineInAnSvg) {
    QTemporaryDir d;
    for (const char* ligne : {"CadreA = 10, 10, 50R, 30R, 5", "Trait = 0, 0, 10, 0, 10, 10, 0, 10, 0, 0"}) {
        const QString programme = Programme(QString("CentreE = 100, 150, N\n") + ligne);
        ASSERT_EQ(RendProgramme(programme, d.filePath("o.dat"), d.filePath("o.svg"), OptionsRendu(), Reglages()).statut, 0);
        QFile svg(d.filePath("o.svg"));
        ASSERT_TRUE(svg.open(QIODevice::ReadOnly));
        EXPECT_EQ(svg.readAll().count("<polyline"), 1) << ligne;
    }
}

TEST(Styles, LineWidthInMillimetresOrDeviceDots) {
    // 3 mm at 0.25 mm a pixel; 6 dots of the 600 dpi printer; 13 dots on a 96 dpi screen.
    EXPECT_EQ(Lignes(*SessionPane("EpaisT = 3 mm\nTrait = 0,0,10,0", 0.25)).value(0).largeur, 12);
    EXPECT_EQ(Lignes(*LanceImprimante("EpaisT = 6\nTrait = 0,0,10,0")).value(0).largeur, 6);
    EXPECT_EQ(Lignes(*Lance("EpaisT = 13\nTrait = 0,0,10,0")).value(0).largeur, 2);
}

TEST(Styles, EpaisTAloneWritesTheCurrentWidthIntoTheLine) {
    EXPECT_EQ(SessionPane("EpaisT = 3mm\nEpaisT", 0.25)->hote.TexteEditeur(),
              Programme("EpaisT = 3mm\nEpaisT 12  ' 3.mm"));
    EXPECT_EQ(Lance("EpaisT")->hote.TexteEditeur(), Programme("EpaisT 1  ' .26mm"));
}

TEST(Styles, CommandOwnStyleIsGivenBackAfterIt) {
    auto s = Lance("EpaisT = 1§§2\nTrait = 0,0,10,0,13§§0\nTrait = 0,5,3,5");
    AttendTraits(*s, {{0, 0, 10, 0}, {0, 5, 2, 5}});
    EXPECT_TRUE(Lignes(*s).value(0).largeur == 2 && Lignes(*s).value(1).largeur == 1);
}

TEST(Styles, SquareEndDrawsAPolygonAroundAThinLine) {
    auto s = LanceImprimante("EpaisT = 20§C\nTrait = 0,0,10,0");
    const auto p = Ops(*s, OpSurface::Polygone);
    ASSERT_TRUE(p.size() == 1 && p[0].points.size() == 4);
    const double point = 25.4 / 600; // half a width of 20 dots each side
    EXPECT_NEAR(p[0].points[0].y(), -10 * point, point);
    EXPECT_NEAR(p[0].points[1].y(), 10 * point, point);
    EXPECT_TRUE(Lignes(*s).size() == 1 && Lignes(*s)[0].largeur == 1);
    // Dashed, a segment of no length after a long one is a dot, not the last one's bar.
    s = LanceImprimante("EpaisT = 20§C§3\nTrait = 0,0,10,0,,,10,0");
    const auto q = Ops(*s, OpSurface::Polygone);
    ASSERT_FALSE(q.isEmpty());
    EXPECT_NEAR(q.last().points[0].y(), q.last().points[1].y(), point);
    EXPECT_EQ(Lignes(*s).last().largeur, 1);
}

TEST(Styles, DashPatternCutsTheLines) {
    const std::pair<const char*, std::vector<Trait4>> cas[] = {
        // L2 and L3 missing take L1.
        {"EpaisT = 1§§2\nTrait = 0,0,9,0", {{0, 0, 2, 0}, {4, 0, 6, 0}, {8, 0, 9, 0}}},
        // 2, 1, 3, 1 runs on round a vertex; a gap ending exactly on a vertex is taken again whole.
        {"EpaisT = 1§§2§1§3\nTrait = 0,0,10,0,,,10,5,10,14",
         {{0, 0, 2, 0}, {3, 0, 6, 0}, {7, 0, 9, 0}, {10, 1, 10, 4}, {10, 6, 10, 8}, {10, 9, 10, 12},
          {10, 13, 10, 14}}},
        {"EpaisT = 1§§2§1§3\nTrait = 0,0,10,0\nTrait = 10,0,20,0",
         {{0, 0, 2, 0}, {3, 0, 6, 0}, {7, 0, 9, 0}, {11, 0, 14, 0}, {15, 0, 17, 0}, {18, 0, 20, 0}}},
        // A Trait starting within 0.01 mm of the last end goes on with the piece in progress.
        {"EpaisT = 1§§2§1\nTrait = 0,0,1,0\nTrait = 1.005,0,6,0",
         {{0, 0, 1, 0}, {1.005, 0, 2.005, 0}, {3.005, 0, 5.005, 0}}},
        // Farther away, it starts again with a whole L1.
        {"EpaisT = 1§§2§1\nTrait = 0,0,1,0\nTrait = 1.02,0,6,0", {{0, 0, 1, 0}, {1.02, 0, 3.02, 0}, {4.02, 0, 6, 0}}},
        {"EpaisT = 1§§2§1\nTrait = 0,0,1,0\nTrait = 1,0.5,6,0.5", {{0, 0, 1, 0}, {1, 0.5, 3, 0.5}, {4, 0.5, 6, 0.5}}},
        // Along a 3-4-5 slope.
        {"EpaisT = 1§§2§1§1\nTrait = 0,0,5.7,7.6",
         {{0, 0, 1.2, 1.6}, {1.8, 2.4, 2.4, 3.2}, {3, 4, 4.2, 5.6}, {4.8, 6.4, 5.4, 7.2}}},
        {"EpaisT = 1§§2\nTrait = 3,3,3,3", {{3, 3, 3, 3}}},
        // A dash of 0 makes lines solid again.
        {"EpaisT = 1§§2\nTrait = 0,0,5,0\nEpaisT = 1§§0\nTrait = 0,5,10,5",
         {{0, 0, 2, 0}, {4, 0, 5, 0}, {0, 5, 10, 5}}},
        // A command's style without L1 reads it as 0: that line is solid.
        {"EpaisT = 1§§2\nTrait = 0,0,5,0,1§R\nTrait = 0,5,5,5", {{0, 0, 5, 0}, {0, 5, 2, 5}, {4, 5, 5, 5}}},
    };
    for (const auto& [prog, traits] : cas) {
        SCOPED_TRACE(prog);
        AttendTraits(*Lance(QString::fromUtf8(prog)), traits);
    }
}
