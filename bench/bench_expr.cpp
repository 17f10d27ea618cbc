// The expression evaluator on typical parameters: a plain
// number, a substituted "%R*2+5", a function, nested parentheses; and the
// logic of an If condition. No Qt application is needed: only QString.
#include "language/etat.h"
#include "language/expr.h"
#include "language/nombre.h"

#include <benchmark/benchmark.h>

namespace {

void EvalUne(benchmark::State& state, const char* expression) {
    Etat e;
    const QString source = QString::fromLatin1(expression);
    for (auto _ : state) {
        QString t = source;
        benchmark::DoNotOptimize(EvalExpr(e, t));
    }
}

void BM_EvalExpr_Nombre(benchmark::State& s) { EvalUne(s, "12"); }
void BM_EvalExpr_Substitue(benchmark::State& s) { EvalUne(s, "25*2+5"); }
void BM_EvalExpr_Sinus(benchmark::State& s) { EvalUne(s, "SIN(30)*40"); }
void BM_EvalExpr_Parentheses(benchmark::State& s) { EvalUne(s, "((1+2)*(3+(4-1)))/2"); }

void BM_EvalTexte_Logique(benchmark::State& state) {
    Etat e;
    const QString source = QStringLiteral("12 > 5 AND (3*2 = 6 OR NOT 1 = 1)");
    for (auto _ : state) benchmark::DoNotOptimize(EvalTexte(e, source));
}

void BM_StrF(benchmark::State& state) {
    float v = 3.1415927f;
    for (auto _ : state) {
        benchmark::DoNotOptimize(StrF(v));
        v += 1.0f;
    }
}

} // namespace

BENCHMARK(BM_EvalExpr_Nombre);
BENCHMARK(BM_EvalExpr_Substitue);
BENCHMARK(BM_EvalExpr_Sinus);
BENCHMARK(BM_EvalExpr_Parentheses);
BENCHMARK(BM_EvalTexte_Logique);
BENCHMARK(BM_StrF);

BENCHMARK_MAIN();
