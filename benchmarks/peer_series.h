// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A command to time as a whole process; what it prints is thrown away.
struct TimedCommand
{
    QString program;
    QStringList arguments;
};

/// Figures of two commands that ran in turn, A B A B ..., so that a machine that gets faster or
/// slower in between touches both alike.
struct PairedSeries
{
    double medianA = 0;     ///< Milliseconds.
    double medianB = 0;     ///< Milliseconds.
    double medianRatio = 0; ///< Median of A / B, pair by pair.
    QString problem;        ///< Why there are no figures; empty on success.
};

/// Runs both commands once to warm up and then `runs` times in turn.
PairedSeries runPaired(const TimedCommand &a, const TimedCommand &b, int runs);

/// Prints a line with both medians, their ratio and the limit it is held against, if there is one.
void printRatio(const QString &what, const PairedSeries &series, double limit = 0);

/// Runs this program with the arguments `own`, which prints the milliseconds that its work took,
/// and after it the commands of a peer, one with each of these lists of arguments; several times in
/// turn. Prints the ratio of its time to that of the commands together; files are removed from the
/// folders after each turn. False when a run failed.
bool printRunRatio(const QString &what, const QStringList &own, const QString &peer,
                   const QList<QStringList> &peerArguments, const QStringList &folders,
                   double limit);

/// The middle value; the list may be in any order and must not be empty.
double median(QList<double> values);

/// Highest memory use of this process so far in MiB, or -1 where the system does not tell.
double peakMemoryMiB();
