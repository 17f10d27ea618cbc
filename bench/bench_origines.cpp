// A program of a few hundred origin and CT lines, run headless to the
// recording surface (issue 2): the cost of the interpreter's spine.
#include "app/core/session.h"

#include "principal.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

namespace {

QString ProgrammeOrigines(int n) {
    QString t = QStringLiteral("CentreE = 148, 105\r\n%R = 40\r\n");
    for (int i = 0; i < n; ++i) {
        t += QStringLiteral("CT = %1, %2\r\n").arg(i % 50).arg((i * 7) % 40);
        t += QStringLiteral("CT = 1R, 1R§%1, ROUGE\r\n").arg(i % 360);
        t += QStringLiteral("' a comment line\r\n");
    }
    return t;
}

void BM_OriginesEnregistrees(benchmark::State& state) {
    Session s(ProgrammeOrigines(int(state.range(0))));
    for (auto _ : state) {
        s.Execute();
        benchmark::DoNotOptimize(s.journal.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * 3);
}
BENCHMARK(BM_OriginesEnregistrees)->Arg(100)->Arg(300);

} // namespace

int main(int argc, char** argv) { return LanceBenchmarks(argc, argv); }
