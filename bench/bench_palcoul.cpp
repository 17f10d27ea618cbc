// The largest colour chart: `PalCoul2` with n = 100, a million patches, run to
// the raster pane, and to the recording surface of the dump for comparison.
#include "app/core/session.h"
#include "drawing/repere.h"

#include "pane_raster.h"
#include "principal.h"

#include <benchmark/benchmark.h>

namespace {

const QString Programme = QStringLiteral("CentreE = 10, 10, N\r\nPalCoul2 = 100, 270, 190\r\n");

void BM_PalCoul2_100_Pane(benchmark::State& state) {
    Session s(Programme);
    PaneRaster pane;
    AttachePane(s.etat, pane.surface.get());
    for (auto _ : state) s.Execute();
    if (!s.hote.Messages().isEmpty()) state.SkipWithError("the program showed a box");
}

void BM_PalCoul2_100_Enregistre(benchmark::State& state) {
    Session s(Programme);
    for (auto _ : state) s.Execute();
    state.counters["ops"] = double(s.journal.size());
}

BENCHMARK(BM_PalCoul2_100_Pane)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PalCoul2_100_Enregistre)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) { return LanceBenchmarks(argc, argv); }
