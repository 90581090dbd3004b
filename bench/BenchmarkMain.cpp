#include "archive/ApplicationSupport.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

// One main for every benchmark: a GUI application without a display, since text layout,
// images and PDF writing need one.
int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    // Preferences and safety backups of a benchmark never land in the poet's own folder.
    QTemporaryDir support;
    ApplicationSupport::setDirectory(support.path());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
