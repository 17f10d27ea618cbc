// Benchmarks of the scale engine (scales and graduations): whole runs through a
// headless Session, recording every Surface operation, as `mirel dump` does.
#include "app/core/session.h"

#include "principal.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

namespace {

QString Programme(const char* lignes) {
    QString t = QString::fromUtf8(lignes);
    t.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    return t;
}

// A dial: an arc of 270 degrees with 500 ticks in three sizes.
const char* const Cadran = "CentreE = 148, 105, N\n"
                           "Arc = -45, 225, 80\n"
                           "Grad = 500, 3\n"
                           "Grad = 100, 6\n"
                           "Grad = 10, 10, , , 2\n";

// The same dial decentred: every tick takes the DistDecal and ArcSinus path.
const char* const CadranDecentre = "CentreE = 148, 105, N\n"
                                   "Decal = -100\n"
                                   "Arc = 30, 150, 80\n"
                                   "Grad = 500, 3\n";

// Three decades of log ticks at 0.1 intervals.
const char* const Log = "CentreE = 20, 105, N\n"
                        "Exposant = L, 3\n"
                        "Droite = 0, 250\n"
                        "Grad = 0.1, 3\n";

void Run(benchmark::State& state, const char* programme) {
    Session s(Programme(programme));
    std::size_t ops = 0;
    for (auto _ : state) {
        s.Execute();
        ops = std::size_t(s.journal.size());
        benchmark::DoNotOptimize(ops);
    }
    state.counters["ops"] = double(ops);
    state.SetItemsProcessed(state.iterations() * int64_t(ops));
}

void BM_Cadran500Traits(benchmark::State& state) { Run(state, Cadran); }
void BM_CadranDecentre500Traits(benchmark::State& state) { Run(state, CadranDecentre); }
void BM_LogTroisDecades(benchmark::State& state) { Run(state, Log); }

BENCHMARK(BM_Cadran500Traits)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CadranDecentre500Traits)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LogTroisDecades)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) { return LanceBenchmarks(argc, argv); }
