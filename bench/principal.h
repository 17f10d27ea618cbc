// The main of the benchmark programs: Qt on the offscreen platform (unless
// another is asked for), then Google Benchmark. `Application` is
// QGuiApplication, or QApplication where widgets are measured; `enregistre`
// registers the benchmarks known only at run time (one per example).
#pragma once

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <functional>

template <class Application = QGuiApplication>
int LanceBenchmarks(int argc, char** argv, const std::function<void()>& enregistre = {}) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    Application app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    if (enregistre) enregistre();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
