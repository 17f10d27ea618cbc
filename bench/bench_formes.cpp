// The largest shapes the language allows, run to the raster pane: a polygon
// of 1000 points and a filled Bezier chain near its 10000-point outline.
#include "app/core/session.h"
#include "drawing/repere.h"

#include "pane_raster.h"
#include "principal.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

QString Polygone() {
    QString t = QStringLiteral("CentreE = 148, 105, N\r\nPolyP = VERT, 80, 0");
    for (int i = 1; i < 1000; ++i) {
        const double a = i * 6.283185 / 1000, r = 60 + 20 * std::sin(12 * a);
        t += QStringLiteral(", %1, %2").arg(r * std::cos(a), 0, 'f', 3).arg(r * std::sin(a), 0, 'f', 3);
    }
    return t + QStringLiteral("\r\n");
}

// 190 curves of 51 steps each: 9,690 outline points.
QString Chaine() {
    QString t = QStringLiteral("CentreE = 20, 105, N\r\nBezierP = , , BLEU, 0,0, 0,20, 1,0, 1,20");
    for (int i = 1; i < 190; ++i) t += QStringLiteral(", 0R,%1R, 1R,0R, 1R,%2R").arg(i % 2 ? -20 : 20).arg(i % 2 ? -20 : 20);
    return t + QStringLiteral("\r\n");
}

void Run(benchmark::State& state, const QString& programme) {
    Session s(programme);
    PaneRaster pane;
    AttachePane(s.etat, pane.surface.get());
    for (auto _ : state) s.Execute();
    if (!s.hote.Messages().isEmpty()) state.SkipWithError("the program showed a box");
}

void BM_Polygone1000Points(benchmark::State& state) { Run(state, Polygone()); }
void BM_BezierP190Courbes(benchmark::State& state) { Run(state, Chaine()); }

BENCHMARK(BM_Polygone1000Points)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BezierP190Courbes)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) { return LanceBenchmarks(argc, argv); }
