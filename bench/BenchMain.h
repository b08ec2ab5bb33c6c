#pragma once

// The main function of a benchmark program that needs a Qt application of type `App`: runs
// headless unless a platform is chosen.

#include <benchmark/benchmark.h>

#include <QtGlobal>

#define KESTRUM_BENCHMARK_MAIN(App)                                                                \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {                                      \
            qputenv("QT_QPA_PLATFORM", "offscreen");                                               \
        }                                                                                          \
        App app(argc, argv);                                                                       \
        benchmark::Initialize(&argc, argv);                                                        \
        benchmark::RunSpecifiedBenchmarks();                                                       \
        benchmark::Shutdown();                                                                     \
        return 0;                                                                                  \
    }
