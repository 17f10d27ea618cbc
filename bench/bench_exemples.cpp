// Benchmarks of the example programs: the whole run of each
// examples/*.dat
//   - to a recording surface (a headless Session, as `mirel dump` runs),
//   - to a raster pane (a SurfacePeinte over a QImage of the 297 x 210 mm
//     pane at 96 dpi, as the window paints),
//   - and the replay of the recorded journal on the same raster device,
// so that the interpreter's own cost can be compared with the painting it
// orders: Raster - Replay is about what the interpreter adds.
//   - and, for an example that includes files, the raster run with its
//     included files read from disk each time (RasterRelu): what the
//     included-file cache saves at each re-run.
#include "app/core/encodage.h"
#include "app/core/inclusion.h"
#include "app/core/session.h"
#include "drawing/repere.h"
#include "drawing/surface_peinte.h"

#include "pane_raster.h"
#include "principal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

const QString Dossier = QStringLiteral(MIREL_SOURCE_DIR "/examples/");

QString Lit(const QString& nom) {
    QFile f(Dossier + nom);
    if (!f.open(QIODevice::ReadOnly)) return QString();
    Encodage enc;
    return NormaliseFinsDeLigne(DecodeOctets(f.readAll(), enc));
}

// A Session in the examples folder (the library's external commands are there).
std::unique_ptr<Session> Prepare(const QString& nom) {
    auto s = std::make_unique<Session>(Lit(nom));
    s->regl.DossierProgramme = Dossier;
    s->regl.DossierTravail = Dossier;
    s->regl.DossierFichier = Dossier;
    s->etat.FichierPrincipal = Dossier + nom;
    s->regl.Fichiers = std::make_shared<CacheFichiers>(); // as the window keeps them
    return s;
}

// Replays recorded operations on a Surface, with the pen state each one had.
void Rejoue(Surface& s, const Journal& j) {
    for (const OpSurface& op : j) {
        switch (op.genre) {
        case OpSurface::Ligne:
            s.DrawWidth = op.largeur;
            s.Line(op.x1, op.y1, op.x2, op.y2, op.couleur);
            break;
        case OpSurface::Cercle:
            s.DrawWidth = op.largeur;
            s.FillStyle = op.remplissage ? 0 : 1;
            if (op.remplissage) s.FillColor = *op.remplissage;
            s.Circle(op.x1, op.y1, op.r, op.couleur, op.debut, op.fin, op.aspect);
            break;
        case OpSurface::Polygone:
            s.DrawWidth = op.largeur;
            s.ForeColor = op.couleur;
            s.FillStyle = op.remplissage ? 0 : 1;
            if (op.remplissage) s.FillColor = *op.remplissage;
            s.PolygonUnites(op.points);
            break;
        case OpSurface::Texte:
            s.Font.Name = op.police;
            s.Font.Size = op.taille;
            s.Font.Bold = op.gras;
            s.Font.Italic = op.italique;
            s.Font.Underline = op.souligne;
            s.ForeColor = op.couleur;
            s.TextOut(op.x1, op.y1, op.angle, op.texte);
            break;
        case OpSurface::Point: s.PSet(op.x1, op.y1, op.couleur); break;
        case OpSurface::Effacement: s.Cls(); break;
        case OpSurface::Image:
        case OpSurface::NouvellePage: break;
        }
    }
    s.FillStyle = 1;
}

// The whole run to the recording surface.
void Enregistre(benchmark::State& state, QString nom) {
    auto s = Prepare(nom);
    for (auto _ : state) {
        s->Execute();
        benchmark::DoNotOptimize(s->journal.size());
    }
    state.counters["ops"] = double(s->journal.size());
}

// The whole run to the raster pane, nothing recorded.
void Raster(benchmark::State& state, QString nom) {
    auto s = Prepare(nom);
    PaneRaster pane;
    AttachePane(s->etat, pane.surface.get());
    for (auto _ : state) s->Execute();
    state.counters["pixels_encre"] = [&] {
        int n = 0;
        for (int y = 0; y < pane.image.height(); y += 4)
            for (int x = 0; x < pane.image.width(); x += 4)
                if (qGray(pane.image.pixel(x, y)) < 200) ++n;
        return double(n);
    }();
}

// The raster run with no included file kept from one run to the next.
void RasterRelu(benchmark::State& state, QString nom) {
    auto s = Prepare(nom);
    PaneRaster pane;
    AttachePane(s->etat, pane.surface.get());
    for (auto _ : state) {
        s->regl.Fichiers->Vide();
        s->Execute();
    }
}

// The recorded operations replayed on the same raster device.
void Rejeu(benchmark::State& state, QString nom) {
    auto s = Prepare(nom);
    s->Execute();
    const Journal journal = s->journal;
    PaneRaster pane;
    AttachePane(s->etat, pane.surface.get()); // the same user window as a run sets
    s->Execute();
    for (auto _ : state) {
        pane.surface->Cls();
        Rejoue(*pane.surface, journal);
    }
    state.counters["ops"] = double(journal.size());
}

// One benchmark of each kind for each examples/*.dat.
void EnregistreExemples() {
    const QStringList noms = QDir(Dossier).entryList({"*.dat"}, QDir::Files, QDir::Name);
    for (const QString& nom : noms) {
        // The library's commands are meant to be called, not run alone.
        if (nom.startsWith(QLatin1String("MCE_"))) continue;
        const std::string n = QFileInfo(nom).baseName().toStdString();
        benchmark::RegisterBenchmark(("Enregistre/" + n).c_str(), Enregistre, nom)
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("Raster/" + n).c_str(), Raster, nom)
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("Rejeu/" + n).c_str(), Rejeu, nom)
            ->Unit(benchmark::kMicrosecond);
        if (Lit(nom).contains(QLatin1String("Fichier =")))
            benchmark::RegisterBenchmark(("RasterRelu/" + n).c_str(), RasterRelu, nom)
                ->Unit(benchmark::kMicrosecond);
    }
}

} // namespace

int main(int argc, char** argv) { return LanceBenchmarks(argc, argv, EnregistreExemples); }
