// The example programs render to PDF, SVG and PNG and run on the screen without a box, with ink where expected.
#include "app/core/encodage.h"
#include "app/core/rendu.h"
#include "outils.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>

#include <functional>
#include <map>

namespace {

const QString Dossier = QStringLiteral(MIREL_SOURCE_DIR "/examples/");
constexpr double Dpi = 100, PxMm = Dpi / 25.4;

QString Lit(const QString& nom) {
    QFile f(Dossier + nom);
    Encodage enc;
    return f.open(QIODevice::ReadOnly) ? NormaliseFinsDeLigne(DecodeOctets(f.readAll(), enc)) : QString();
}

// A run in the examples folder finds the library's external commands (MCE_*.dmk).
Reglages RegExemples() {
    Reglages r;
    r.DossierProgramme = r.DossierTravail = r.DossierFichier = Dossier;
    return r;
}

QImage Rendu(const QString& nom, const QString& sortie) {
    OptionsRendu o;
    o.dpi = Dpi;
    const ResultatRendu r = RendProgramme(Lit(nom), Dossier + nom, sortie, o, RegExemples());
    EXPECT_EQ(r.statut, 0) << sortie.toStdString() << ": " << r.messages.join(" | ").toStdString();
    EXPECT_TRUE(r.messages.isEmpty());
    EXPECT_GT(QFileInfo(sortie).size(), 200);
    return QImage(sortie);
}

// The pixels matching `test` in the square of half side r (mm) about a page point (mm, y up from the bottom).
int Pixels(const QImage& im, double x, double y, double r, const std::function<bool(QColor)>& test) {
    const int px = int(x * PxMm), py = int((297 - y) * PxMm), n = int(r * PxMm) + 1;
    int total = 0;
    for (int j = py - n; j <= py + n; ++j)
        for (int i = px - n; i <= px + n; ++i) total += im.valid(i, j) && test(QColor(im.pixel(i, j)));
    return total;
}

// Where each dial must have ink (page millimetres): its needle pivot, the top of its scale, a value.
const std::map<QString, std::vector<std::pair<double, double>>> Places = {
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

// The first texts of each dial, in order, and texts that must be somewhere.
const std::map<QString, std::pair<QStringList, QStringList>> Textes = {
    {"voltmetre.dat", {{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}, {}}},
    {"vumetre.dat", {{"20", "10", "7", "5", "3", "2", "1", "0", "1", "2", "3"}, {}}},
    {"ohmmetre.dat", {{"1Ω", "10Ω", "100Ω", "1kΩ", "10kΩ", "100kΩ", "1MΩ"}, {"1E-3", "500k"}}},
    {"zones.dat", {{}, {"100 %"}}},
    {"facade.dat", {{}, {"30 V", "13.8 V"}}},
    {"plan_facade.dat", {{}, {"160", "100", "30", "60", "130", "20", "42", "64", "12", "92", "46", "5", "Ø22"}}},
};

// Red bands: the VU meter's at deviation 120 (where the needle ray meets the band's circle about the
// drawn centre), the zone dial's at 93 %.
const std::map<QString, std::pair<double, double>> Rouges = {{"vumetre.dat", {131.9, 156.6}},
                                                             {"zones.dat", {105 + 53 * 0.64, 150 + 53 * 0.77}}};

} // namespace

TEST(Exemples, EveryExampleRendersAndRunsWithoutABox) {
    const QStringList noms = QDir(Dossier).entryList({"*.dat"}, QDir::Files, QDir::Name);
    for (const auto& [nom, places] : Places) EXPECT_TRUE(noms.contains(nom)) << nom.toStdString();
    for (const QString& nom : noms) {
        SCOPED_TRACE(nom.toStdString());
        QTemporaryDir d;
        Rendu(nom, d.filePath("o.pdf"));
        Rendu(nom, d.filePath("o.svg"));
        const QImage im = Rendu(nom, d.filePath("o.png"));
        EXPECT_EQ(im.width(), int(std::lround(210 * PxMm)));
        Session s(Lit(nom)); // on the screen pane, as the window runs it
        s.regl = RegExemples();
        s.etat.FichierPrincipal = Dossier + nom;
        s.Execute();
        EXPECT_TRUE(s.hote.Messages().isEmpty()) << Messages(s).join("|").toStdString();
        EXPECT_FALSE(s.journal.isEmpty());
        QStringList textes;
        for (const OpSurface& o : Ops(s, OpSurface::Texte)) textes << o.texte;
        if (const auto t = Textes.find(nom); t != Textes.end()) {
            EXPECT_EQ(textes.mid(0, t->second.first.size()), t->second.first);
            for (const QString& x : t->second.second) EXPECT_TRUE(textes.contains(x)) << x.toStdString();
        }
        // The library's commands are meant to be called: alone they draw about
        // the page's corner, partly off the sheet.
        if (nom.startsWith("MCE_")) continue;
        EXPECT_GT(Pixels(im, 105, 148.5, 150, [](QColor c) { return c.lightness() < 200; }), 100);
        const auto p = Places.find(nom);
        for (const auto& [x, y] : p == Places.end() ? std::vector<std::pair<double, double>>() : p->second)
            EXPECT_GT(Pixels(im, x, y, 1, [](QColor c) { return c.lightness() < 160; }), 0) << x << ", " << y;
        if (const auto r = Rouges.find(nom); r != Rouges.end())
            EXPECT_GT(Pixels(im, r->second.first, r->second.second, 3,
                             [](QColor c) { return c.red() > 200 && c.green() < 60 && c.blue() < 60; }), 0);
    }
}
