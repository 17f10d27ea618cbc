// The example programs (design.md §7): every examples/*.dat renders to PDF,
// SVG and PNG without a message box, on the screen too, and the PNG has ink
// where the drawing should be.
#include "app/core/encodage.h"
#include "app/core/rendu.h"
#include "outils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>

#include <map>

namespace {

const QString Dossier = QStringLiteral(MIREL_SOURCE_DIR "/examples/");
constexpr double Dpi = 100;
constexpr double PxMm = Dpi / 25.4;

QString Lit(const QString& nom) {
    QFile f(Dossier + nom);
    if (!f.open(QIODevice::ReadOnly)) return QString();
    Encodage enc;
    return NormaliseFinsDeLigne(DecodeOctets(f.readAll(), enc));
}

// The settings of a run in the examples folder: the external commands of the
// library (MCE_*.dmk) are found there.
Reglages RegExemples() {
    Reglages r;
    r.DossierProgramme = Dossier;
    r.DossierTravail = Dossier;
    r.DossierFichier = Dossier;
    return r;
}

// Ink in the square of half side r (mm) about a page point (mm, y up from the
// bottom of A4).
bool Encre(const QImage& im, double x, double y, double r = 1.0) {
    const int px = int(x * PxMm), py = int((297 - y) * PxMm), n = int(r * PxMm) + 1;
    for (int j = py - n; j <= py + n; ++j)
        for (int i = px - n; i <= px + n; ++i)
            if (im.valid(i, j) && QColor(im.pixel(i, j)).lightness() < 160) return true;
    return false;
}

int PixelsEncre(const QImage& im) {
    int n = 0;
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x)
            if (QColor(im.pixel(x, y)).lightness() < 200) ++n;
    return n;
}

bool Rouge(const QImage& im, double x, double y, double r) {
    const int px = int(x * PxMm), py = int((297 - y) * PxMm), n = int(r * PxMm) + 1;
    for (int j = py - n; j <= py + n; ++j)
        for (int i = px - n; i <= px + n; ++i) {
            if (!im.valid(i, j)) continue;
            const QColor c(im.pixel(i, j));
            if (c.red() > 200 && c.green() < 60 && c.blue() < 60) return true;
        }
    return false;
}

// Where each dial must have ink: its needle pivot, the top of its scale, a
// value. Page millimetres.
struct Point { double x, y; };
const std::map<QString, std::vector<Point>>& Places() {
    static const std::map<QString, std::vector<Point>> p = {
        // Pivot at (105, 95); arc of radius 60, the "5" centred at radius 71.
        {"voltmetre.dat", {{105, 95}, {105, 155}, {105, 166}, {105 - 71 * 0.766, 95 + 71 * 0.643}}},
        // Pivot at (105, 110); the decentred arc's top at 48.08 above it.
        {"vumetre.dat", {{105, 110}, {105, 158.08}}},
        // Pivot at (105, 120); arc of radius 65; "1kΩ" at radius 75 on top.
        {"ohmmetre.dat", {{105, 120}, {105, 185}, {105, 195}}},
        // Pivot disc at (105, 150); arc of radius 60; "50" at radius 70.
        {"zones.dat", {{105, 150}, {105, 210}, {105, 220}}},
        // A dark key and the reading in the display window.
        {"facade.dat", {{137.5, 117.5}, {105, 172}}},
        {"origines.dat", {{55, 148.5}}},
        // The scale about (105, 118.5), radius 55, with a screw hole at its pivot.
        {"bibliotheque.dat", {{105, 118.5}, {105, 173.5}}},
    };
    return p;
}

} // namespace

TEST(Exemples, ChacunSeRendEnPdfSvgPngSansMessage) {
    const QStringList noms = QDir(Dossier).entryList({"*.dat"}, QDir::Files, QDir::Name);
    ASSERT_GE(noms.size(), 5);
    for (const char* attendu : {"voltmetre.dat", "vumetre.dat", "ohmmetre.dat", "zones.dat", "facade.dat"})
        EXPECT_TRUE(noms.contains(attendu)) << attendu;
    const Reglages regl = RegExemples();
    for (const QString& nom : noms) {
        SCOPED_TRACE(nom.toStdString());
        const QString texte = Lit(nom);
        ASSERT_FALSE(texte.isEmpty());
        QTemporaryDir d;
        OptionsRendu o;
        o.dpi = Dpi;
        for (const char* ext : {"pdf", "svg", "png"}) {
            const QString sortie = d.filePath(QStringLiteral("o.") + ext);
            const ResultatRendu r = RendProgramme(texte, Dossier + nom, sortie, o, regl);
            EXPECT_EQ(r.statut, 0) << ext << ": " << r.messages.join(" | ").toStdString();
            EXPECT_TRUE(r.messages.isEmpty()) << ext;
            EXPECT_GT(QFileInfo(sortie).size(), 200) << ext;
        }
        const QImage im(d.filePath("o.png"));
        ASSERT_FALSE(im.isNull());
        EXPECT_EQ(im.width(), int(std::lround(210 * PxMm)));
        // The library's commands (MCE_*) are meant to be called: alone they
        // draw about the page's corner, partly off the sheet.
        if (nom.startsWith("MCE_")) continue;
        EXPECT_GT(PixelsEncre(im), 100);
        const auto p = Places().find(nom);
        if (p == Places().end()) continue;
        for (const Point& q : p->second) EXPECT_TRUE(Encre(im, q.x, q.y)) << q.x << ", " << q.y;
    }
}

// The same programs on the screen pane, as the window runs them.
TEST(Exemples, ChacunTourneALEcranSansMessage) {
    const QStringList noms = QDir(Dossier).entryList({"*.dat"}, QDir::Files, QDir::Name);
    for (const QString& nom : noms) {
        SCOPED_TRACE(nom.toStdString());
        Session s(Lit(nom));
        s.regl = RegExemples();
        s.etat.FichierPrincipal = Dossier + nom;
        s.Execute();
        EXPECT_TRUE(s.hote.Messages().isEmpty()) << Messages(s).join("|").toStdString();
        EXPECT_FALSE(s.journal.isEmpty());
    }
}

// The dials' values are where the programs say.
TEST(Exemples, ValeursDesCadrans) {
    auto textes = [](const QString& nom) {
        Session s(Lit(nom));
        s.regl = RegExemples();
        s.Execute();
        QStringList r;
        for (const OpSurface& o : s.journal)
            if (o.genre == OpSurface::Texte) r << o.texte;
        return r;
    };
    const QStringList v = textes("voltmetre.dat");
    EXPECT_EQ(v.mid(0, 11), QStringList({"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}));
    const QStringList vu = textes("vumetre.dat");
    EXPECT_EQ(vu.mid(0, 11), QStringList({"20", "10", "7", "5", "3", "2", "1", "0", "1", "2", "3"}));
    const QStringList o = textes("ohmmetre.dat");
    EXPECT_EQ(o.mid(0, 7), QStringList({"1Ω", "10Ω", "100Ω", "1kΩ", "10kΩ", "100kΩ", "1MΩ"}));
    EXPECT_TRUE(o.contains("1E-3"));
    EXPECT_TRUE(o.contains("500k"));
    const QStringList z = textes("zones.dat");
    EXPECT_TRUE(z.contains("100 %"));
    const QStringList f = textes("facade.dat");
    EXPECT_TRUE(f.contains("30 V"));
    EXPECT_TRUE(f.contains("13.8 V"));
}

// The red zones come out red on the page: the VU meter's band at deviation
// 120 (where the needle ray meets the band's circle about the drawn centre),
// the zone dial's band at 93 %.
TEST(Exemples, ZonesRougesVisibles) {
    for (const auto& [nom, x, y] : {std::tuple{"vumetre.dat", 131.9, 156.6},
                                    std::tuple{"zones.dat", 105 + 53 * 0.64, 150 + 53 * 0.77}}) {
        SCOPED_TRACE(nom);
        QTemporaryDir d;
        OptionsRendu opt;
        opt.dpi = Dpi;
        const ResultatRendu r = RendProgramme(Lit(nom), Dossier + nom, d.filePath("o.png"), opt,
                                              RegExemples());
        ASSERT_EQ(r.statut, 0);
        const QImage im(d.filePath("o.png"));
        EXPECT_TRUE(Rouge(im, x, y, 3)) << x << ", " << y;
    }
}
