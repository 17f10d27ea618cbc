// Pictures placed by `Image`: sizes, alignment, look-up, failures and output.
#include "outils.h"

#include "app/core/rendu.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {
constexpr double Px = 25.4 / 96; // one picture pixel at zoom 1, in mm

// A folder holding a red PNG picture of 96 x 48 pixels.
struct Dossier {
    QTemporaryDir d;
    Dossier() {
        QImage im(96, 48, QImage::Format_RGB32);
        im.fill(QColor(255, 0, 0));
        EXPECT_TRUE(im.save(d.filePath("logo.png")));
    }
    std::unique_ptr<Session> Lance(const QString& lignes, bool imprimante = false, float zoom = 1) {
        auto s = std::make_unique<Session>(Programme(lignes));
        s->etat.FichierPrincipal = d.filePath("panneau.dat");
        imprimante ? s->ExecuteImprimante() : s->Execute(zoom);
        return s;
    }
};

// The last picture drawn: left and top edges, width, height drawn downward.
void ExpectPlace(const Session& s, double x, double y, double w, double h) {
    const auto im = Ops(s, OpSurface::Image);
    ASSERT_FALSE(im.isEmpty());
    EXPECT_MM(im.back().x1, x);
    EXPECT_MM(im.back().y1, y);
    EXPECT_MM(im.back().x2, w);
    EXPECT_MM(im.back().y2, h);
}
} // namespace

TEST(Images, SizeFormsAndLetters) {
    Dossier d;
    const double W = 96 * Px, H = 48 * Px;
    const struct { const char* ligne; double x, y, w, h; } cas[] = {
        {"Image = logo.png, 10, 20", 10, 20 + H, W, -H},
        {"Image = logo.png, 10, 20, 2", 10, 20 + 2 * H, 2 * W, -2 * H},
        {"Image = logo.png, 10, 20, 2§§1", 10, 20 + H, 2 * W, -H},
        {"Image = logo.png, 10, 20, x§50", 10, 45, 50, -25},
        {"Image = logo.png, 10, 20, X§0", 10, 20 + H, W, -H},
        {"Image = logo.png, 10, 20, Y§30", 10, 50, 60, -30},
        {"Image = logo.png, 10, 20, Z§40§40", 10, 60, 40, -40},
        // A wide picture in a square frame fits the width, in a flat one the height.
        {"Image = logo.png, 10, 20, A§40§40", 10, 40, 40, -20},
        {"Image = logo.png, 10, 20, A§100§10", 10, 30, 20, -10},
        {"Image = logo.png, 10, 20, , cd", 10 - W / 2, 20 + H / 2, W, -H},
        {"Image = logo.png, 10, 20, 0, DH", 10 - W, 20, W, -H},
        {"Image = logo.png, 10, 20, , X", 10 - W / 2, 20 + H, W, -H},
        {"Image = logo.png, 10, 20, , Y", 10, 20 + H / 2, W, -H},
        // The position turns about 0,0; the picture stays upright.
        {"Image = logo.png, 10, 0§90, , H", 0, 10, W, -H},
        {"CentreE = 100, 50, N\nImage = logo.png, 10, 20, , H", 110, 70, W, -H},
        {"Image = logo.png, 10, 20\nImage = logo.png, 5R, 0R, , H", 15, 20 + H, W, -H},
    };
    for (const auto& c : cas) {
        SCOPED_TRACE(c.ligne);
        ExpectPlace(*d.Lance(c.ligne), c.x, c.y, c.w, c.h);
    }
    // The size counts screen pixels at zoom 1: the same millimetres at any zoom and on the printer.
    for (const auto& [imprimante, zoom] : {std::pair{false, 2.5f}, {true, 1.0f}}) {
        SCOPED_TRACE(zoom);
        ExpectPlace(*d.Lance("Image = logo.png, 10, 20, 2", imprimante, zoom), 10, 20 + 2 * H, 2 * W, -2 * H);
    }
}

// The names are taken as written, even when the variable exists; nothing is drawn.
TEST(Images, SizeInPixelsIntoVariables) {
    Dossier d;
    auto s = d.Lance("%Lx = 5\nImage = logo.png, , , V§%Lx§%Ly");
    EXPECT_TRUE(Messages(*s).isEmpty());
    EXPECT_TRUE(Ops(*s, OpSurface::Image).isEmpty());
    EXPECT_EQ(Variable(*s, "%Lx"), "96");
    EXPECT_EQ(Variable(*s, "%Ly"), "48");
    EXPECT_EQ(s->etat.EtatOrdre & 64, 0);
}

// Beside the main file (else beside an included file), variables substituted, the built-in icon in any case
// and folder; a missing or damaged file fails with its name and ends the run.
TEST(Images, FileLookUp) {
    Dossier d;
    QFile casse(d.d.filePath("casse.png"));
    ASSERT_TRUE(casse.open(QIODevice::WriteOnly) && casse.write("\x89PNG not a picture") > 0);
    casse.close();
    // Names compare without regard to case.
    for (const QString& l : {QString("%N = logo.png\nImage = %N, 0, 0"), "%D = " + d.d.path() + "\nImage = %D/logo.png, 0, 0",
                             QString("Image = LOGO.Png, 0, 0")})
        EXPECT_EQ(Ops(*d.Lance(l), OpSurface::Image).value(0).fichier, d.d.filePath("logo.png"));
    // Inside an included file, a picture missing beside the main file is taken beside the included one.
    ASSERT_TRUE(QDir(d.d.path()).mkdir("lib") && QFile::copy(d.d.filePath("logo.png"), d.d.filePath("lib/voisin.png")));
    QFile inclus(d.d.filePath("lib/inclus.dat"));
    ASSERT_TRUE(inclus.open(QIODevice::WriteOnly) && inclus.write("Image = voisin.png, 0, 0\r\n") > 0);
    inclus.close();
    EXPECT_EQ(Ops(*d.Lance("Fichier = " + inclus.fileName() + ", 0, 0"), OpSurface::Image).value(0).fichier,
              d.d.filePath("lib/voisin.png"));
    // "\" separates folders as "/" does.
    EXPECT_EQ(Ops(*d.Lance("Image = " + d.d.path() + "\\lib\\Voisin.png, 0, 0"), OpSurface::Image).value(0).fichier,
              d.d.filePath("lib/voisin.png"));
    for (const char* icone : {"Image = mirel.ico, 0, 0", "Image = C:\\ailleurs\\MiReL.IcO, 0, 0"})
        EXPECT_MM(Ops(*d.Lance(icone), OpSurface::Image).value(0).x2, 32 * Px);
    for (const char* nom : {"absent.png", "casse.png"}) {
        SCOPED_TRACE(nom);
        auto s = d.Lance(QStringLiteral("Image = %1, , , V§%L§%H\nCercle = 0, 0, 5").arg(nom));
        ASSERT_EQ(Messages(*s).size(), 1);
        EXPECT_TRUE(Messages(*s)[0].contains(d.d.filePath(nom) + " : fichier non trouvé [File not found]"));
        EXPECT_EQ(Variable(*s, "%L"), "");
        EXPECT_TRUE(Ops(*s, OpSurface::Cercle).isEmpty());
    }
}

// 40 x 20 mm in every output, its lower left corner at 50, 100 mm on the page.
TEST(Images, RenderedAtTrueSize) {
    Dossier d;
    OptionsRendu o;
    o.dpi = 100;
    const QString png = d.d.filePath("sortie.png"), svg = d.d.filePath("sortie.svg"), pdf = d.d.filePath("sortie.pdf");
    for (const QString& sortie : {png, svg, pdf})
        ASSERT_EQ(RendProgramme(Programme("Image = logo.png, 50, 100, X§40"), d.d.filePath("panneau.dat"), sortie, o,
                                Reglages()).statut, 0);
    const QImage im(png);
    auto pixel = [&](double x, double y) { return im.pixelColor(int(x / 25.4 * 100), int((297 - y) / 25.4 * 100)); };
    EXPECT_EQ(pixel(51, 101), QColor(255, 0, 0));
    EXPECT_EQ(pixel(89, 119), QColor(255, 0, 0));
    EXPECT_EQ(pixel(91, 121), QColor(Qt::white));
    // SVG: an embedded picture in the 600 dpi view box.
    QFile f(svg), p(pdf);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const auto m = QRegularExpression(R"re(<image[^>]*width="([\d.]+)"[^>]*height="([\d.]+)"[^>]*href="data:image)re")
                       .match(QString::fromUtf8(f.readAll()));
    ASSERT_TRUE(m.hasMatch());
    EXPECT_NEAR(m.captured(1).toDouble(), 40 / 25.4 * 600, 0.5);
    EXPECT_NEAR(m.captured(2).toDouble(), 20 / 25.4 * 600, 0.5);
    EXPECT_TRUE(p.open(QIODevice::ReadOnly) && p.readAll().contains("/Subtype /Image"));
}
