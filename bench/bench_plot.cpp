// The largest curve the language allows: a Plot of 50,100 points from a data
// file, run to the raster pane, to the recording surface, and its recorded
// lines painted again on the raster pane: Raster - Rejeu is what the
// interpreter adds to the painting.
#include "app/core/session.h"
#include "drawing/repere.h"

#include "pane_raster.h"
#include "principal.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

// A damped sine over 50,100 lines "t;y".
struct Donnees {
    QTemporaryDir d;
    Donnees() {
        QFile f(d.filePath("courbe.txt"));
        if (!f.open(QIODevice::WriteOnly)) return;
        QByteArray t;
        for (int i = 0; i < 50100; ++i)
            t += QByteArray::number(i * 0.01, 'f', 2) + ';' +
                 QByteArray::number(std::exp(-i / 20000.0) * std::sin(i / 500.0), 'f', 4) + '\n';
        f.write(t);
    }
    std::unique_ptr<Session> Prepare() {
        auto s = std::make_unique<Session>(QStringLiteral(
            "CentreE = 20, 105, N\r\nPlot = courbe§59, 1, 2, 0, 0§250, 0, 0§80§-40\r\n"));
        s->etat.FichierPrincipal = d.filePath("plot.dat");
        return s;
    }
};

void BM_Plot50100PointsRaster(benchmark::State& state) {
    Donnees d;
    auto s = d.Prepare();
    PaneRaster pane;
    AttachePane(s->etat, pane.surface.get());
    for (auto _ : state) s->Execute();
    if (!s->hote.Messages().isEmpty()) state.SkipWithError("the program showed a box");
}

void BM_Plot50100PointsEnregistre(benchmark::State& state) {
    Donnees d;
    auto s = d.Prepare();
    for (auto _ : state) {
        s->Execute();
        benchmark::DoNotOptimize(s->journal.size());
    }
    state.counters["ops"] = double(s->journal.size());
}

// The recorded operations of a run painted again, alone: the clearing of
// the pane and the curve's lines, with the width each one had.
void BM_Plot50100PointsRejeu(benchmark::State& state) {
    Donnees d;
    auto s = d.Prepare();
    s->Execute();
    const Journal journal = s->journal;
    PaneRaster pane;
    AttachePane(s->etat, pane.surface.get()); // the user window of a run
    s->Execute();
    Surface& surface = *pane.surface;
    for (auto _ : state) {
        for (const OpSurface& op : journal) {
            surface.DrawWidth = op.largeur;
            if (op.genre == OpSurface::Ligne) surface.Line(op.x1, op.y1, op.x2, op.y2, op.couleur);
            else if (op.genre == OpSurface::Effacement) surface.Cls();
            else state.SkipWithError("an operation other than a line or a clearing");
        }
    }
    state.counters["ops"] = double(journal.size());
}

BENCHMARK(BM_Plot50100PointsRaster)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Plot50100PointsRejeu)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Plot50100PointsEnregistre)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) { return LanceBenchmarks(argc, argv); }
