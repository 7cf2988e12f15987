// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QString>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <functional>

/// Measures the longest time between two passes of the event loop.
class LoopWatch
{
public:
    /// Runs the operation from inside the event loop and the loop for a while after it.
    double worstDuring(const std::function<void()> &operation, int settleMs = 1'500)
    {
        m_worst = 0;
        m_timer.start();
        QTimer tick;
        QObject::connect(&tick, &QTimer::timeout, &tick, [this] { pass(); });
        tick.start(0);
        QEventLoop loop;
        QTimer::singleShot(0, &loop, operation);
        QTimer::singleShot(settleMs, &loop, &QEventLoop::quit);
        loop.exec();
        return m_worst;
    }

private:
    void pass()
    {
        m_worst = std::max(m_worst, static_cast<double>(m_timer.nsecsElapsed()) / 1e6);
        m_timer.start();
    }

    QElapsedTimer m_timer;
    double m_worst = 0;
};

/// Prints a line with the longest time, held against 50 ms.
inline void reportGap(const QString &what, double milliseconds)
{
    constexpr double kLimitMs = 50;
    QTextStream(stdout) << QStringLiteral("%1  longest gap %2 ms (at most %3)%4")
                               .arg(what, -44)
                               .arg(milliseconds, 7, 'f', 1)
                               .arg(kLimitMs, 0, 'f', 0)
                               .arg(milliseconds <= kLimitMs ? QString()
                                                             : QStringLiteral("  MISSED"))
                        << Qt::endl;
}
