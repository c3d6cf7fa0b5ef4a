#include <benchmark/benchmark.h>

#include <QGuiApplication>

#include "micro/benchmarks.h"

/// Takes Google Benchmark's options, for instance --benchmark_filter=png/text.
int main(int argumentCount, char** arguments) {
    // Text is drawn without a desktop.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argumentCount, arguments);
    bench::registerPngBenchmarks();
    bench::registerDecisionBenchmarks();
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
