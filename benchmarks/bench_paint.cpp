// SPDX-License-Identifier: AGPL-3.0-or-later
// What a step of scrolling costs the interface thread in a window of 1920 × 1080 that is full of
// pages, against painting a picture of the size of the window.
//
//     bench_paint                both densities
//     bench_paint --work ZOOM    prints the milliseconds of a step, then those of the picture

#include "benchmarks/peer_series.h"
#include "benchmarks/sample_files.h"
#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/reading/pdf_document_view.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QProcessEnvironment>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

constexpr QSize kWindow(1920, 1080);
constexpr int kPages = 12;
constexpr int kSteps = 60;
constexpr int kStepPixels = 45;
constexpr int kRuns = 3;
constexpr double kLimitMs = 4.0;
/// The page as wide as the window, and two pages' heights in view.
constexpr double kZooms[] = {3.0, 0.6};
/// Long enough for the pages in view to be rendered and brought into their form.
constexpr qint64 kSettleMs = 4000;

void settle(qint64 milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// The median of the steps, painting included.
double stepTime(PdfDocumentView &view)
{
    QList<double> times;
    QScrollBar *bar = view.verticalScrollBar();
    for (int step = 0; step < kSteps; ++step) {
        QElapsedTimer timer;
        timer.start();
        // There and back, so that no new pages come into view.
        bar->setValue(bar->value() + (step % 2 == 0 ? kStepPixels : -kStepPixels));
        view.viewport()->repaint();
        times.append(milliseconds(timer));
        settle(1);
    }
    return median(times);
}

double pictureTime(double ratio)
{
    QImage window(kWindow * ratio, QImage::Format_RGB32);
    QImage picture(kWindow * ratio, QImage::Format_RGB32);
    picture.fill(Qt::lightGray);
    QList<double> times;
    for (int i = 0; i < kSteps; ++i) {
        QElapsedTimer timer;
        timer.start();
        QPainter(&window).drawImage(0, 0, picture);
        times.append(milliseconds(timer));
    }
    return median(times);
}

int measure(double zoom)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("text.pdf"));
    PdfDocumentModel model;
    if (!SampleFiles::writeText(path, kPages) || !model.loadDocument(path, {}, nullptr, nullptr)) {
        return 1;
    }
    PdfRenderManager manager;
    PdfDocumentView view;
    view.setRenderManager(&manager);
    view.setModel(&model);
    view.resize(kWindow);
    view.show();
    view.setZoomFactor(zoom);
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum() / 2);
    settle(kSettleMs);
    const double ratio = view.devicePixelRatioF();
    QTextStream(stdout) << stepTime(view) << ' ' << pictureTime(ratio) << ' ' << ratio << Qt::endl;
    return 0;
}

bool compare(double zoom, const QString &density)
{
    QList<double> steps;
    QList<double> pictures;
    QList<double> ratios;
    for (int run = 0; run < kRuns; ++run) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_SCALE_FACTOR"), density);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(),
                      {QStringLiteral("--work"), QString::number(zoom)});
        process.waitForFinished(-1);
        const QList<QByteArray> figures = process.readAllStandardOutput().trimmed().split(' ');
        if (process.exitCode() != 0 || figures.size() != 3) {
            return false;
        }
        steps.append(figures.at(0).toDouble());
        pictures.append(figures.at(1).toDouble());
        ratios.append(steps.constLast() / pictures.constLast());
    }
    const double step = median(steps);
    QTextStream(stdout) << QStringLiteral("density %1, zoom %2: %3 ms a step (at most %4)%5, %6 of "
                                          "a picture of that size\n")
                               .arg(density)
                               .arg(zoom)
                               .arg(step, 0, 'f', 2)
                               .arg(kLimitMs)
                               .arg(step <= kLimitMs ? QString() : QStringLiteral("  MISSED"))
                               .arg(median(ratios), 0, 'f', 2);
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--work")) {
        return measure(arguments.value(2).toDouble());
    }
    for (const QString &density : {QStringLiteral("1"), QStringLiteral("2")}) {
        for (const double zoom : kZooms) {
            if (!compare(zoom, density)) {
                return 1;
            }
        }
    }
    return 0;
}
