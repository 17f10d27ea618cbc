// Loops of the language (issue 6): rounds per second of a label, a numeric
// assignment and a conditional Goto, run headless.
#include "app/core/session.h"

#include "principal.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

namespace {

void BM_BoucleGoto(benchmark::State& state) {
    const int tours = int(state.range(0));
    Session s(QStringLiteral("%I = 0\r\nE1:\r\n%I == %I+1\r\nIf %I < %1 Goto E1\r\n").arg(tours));
    for (auto _ : state) s.Execute();
    state.SetItemsProcessed(state.iterations() * tours);
    state.counters["rounds/s"] = benchmark::Counter(double(state.iterations()) * tours, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_BoucleGoto)->Arg(5000);

void BM_BoucleBloc(benchmark::State& state) {
    const int tours = int(state.range(0));
    Session s(QStringLiteral("%I = 0\r\nE1:\r\n%I == %I+1\r\nIf %I MOD 2 = 0 Then\r\nCT = %I, 0, N\r\nElse\r\n"
                             "CT = 0, %I, N\r\nEndIf\r\nIf %I < %1 Goto E1\r\n").arg(tours));
    for (auto _ : state) s.Execute();
    state.counters["rounds/s"] = benchmark::Counter(double(state.iterations()) * tours, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_BoucleBloc)->Arg(2000);

} // namespace

int main(int argc, char** argv) { return LanceBenchmarks(argc, argv); }
