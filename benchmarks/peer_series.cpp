// SPDX-License-Identifier: AGPL-3.0-or-later
#include "benchmarks/peer_series.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTextStream>

#include <algorithm>

namespace {

constexpr int kProcessTimeout = 300'000;

/// Milliseconds that the command took, or a negative value when it failed.
double timeOnce(const TimedCommand &command, QString *problem)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer timer;
    timer.start();
    process.start(command.program, command.arguments);
    if (!process.waitForStarted() || !process.waitForFinished(kProcessTimeout)) {
        *problem = command.program + QStringLiteral(": ") + process.errorString();
        return -1;
    }
    const double milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        *problem = command.program + QStringLiteral(" ended with code %1").arg(process.exitCode());
        return -1;
    }
    return milliseconds;
}

} // namespace

PairedSeries runPaired(const TimedCommand &a, const TimedCommand &b, int runs)
{
    PairedSeries series;
    QList<double> timesA;
    QList<double> timesB;
    QList<double> ratios;
    for (int run = -1; run < runs; ++run) {
        const double timeA = timeOnce(a, &series.problem);
        const double timeB = timeA < 0 ? -1 : timeOnce(b, &series.problem);
        if (timeA < 0 || timeB < 0) {
            return series;
        }
        if (run < 0) {
            continue;
        }
        timesA.append(timeA);
        timesB.append(timeB);
        ratios.append(timeA / timeB);
    }
    series.medianA = median(timesA);
    series.medianB = median(timesB);
    series.medianRatio = median(ratios);
    return series;
}

void printRatio(const QString &what, const PairedSeries &series, double limit)
{
    QTextStream out(stdout);
    if (!series.problem.isEmpty()) {
        out << what << ": " << series.problem << Qt::endl;
        return;
    }
    out << QStringLiteral("%1  %2 ms / %3 ms = %4")
               .arg(what, -44)
               .arg(series.medianA, 8, 'f', 1)
               .arg(series.medianB, 8, 'f', 1)
               .arg(series.medianRatio, 5, 'f', 2);
    if (limit > 0) {
        out << QStringLiteral(" (at most %1)%2")
                   .arg(limit, 0, 'f', 2)
                   .arg(series.medianRatio <= limit ? QString() : QStringLiteral("  MISSED"));
    }
    out << Qt::endl;
}

bool printRunRatio(const QString &what, const QStringList &own, const QString &peer,
                   const QList<QStringList> &peerArguments, const QStringList &folders,
                   double limit)
{
    constexpr int kRuns = 7;
    QList<double> ours;
    QList<double> peers;
    QList<double> ratios;
    for (int run = 0; run < kRuns; ++run) {
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(), own);
        process.waitForFinished(-1);
        if (process.exitCode() != 0) {
            return false;
        }
        ours.append(process.readAllStandardOutput().trimmed().toDouble());
        double together = 0;
        for (const QStringList &arguments : peerArguments) {
            const TimedCommand command{peer, arguments};
            const PairedSeries series = runPaired(command, command, 1);
            if (!series.problem.isEmpty()) {
                return false;
            }
            together += series.medianA;
        }
        peers.append(together);
        ratios.append(ours.constLast() / together);
        for (const QString &path : folders) {
            QDir(path).removeRecursively();
            QDir().mkpath(path);
        }
    }
    printRatio(what, {median(ours), median(peers), median(ratios), {}}, limit);
    return true;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    const qsizetype middle = values.size() / 2;
    return values.size() % 2 == 1 ? values.at(middle)
                                  : (values.at(middle - 1) + values.at(middle)) / 2;
}

double peakMemoryMiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return -1;
    }
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:")) {
            return line.mid(6).trimmed().split(' ').constFirst().toDouble() / 1024;
        }
    }
    return -1;
}
