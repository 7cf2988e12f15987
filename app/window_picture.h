// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <memory>

class QWidget;

/// Saves one picture of the main window and quits: a facility for build servers and containers,
/// where nobody sits at a display.
///
/// It is requested by the environment variable QUILLORA_SCREENSHOT, which names the file to write.
/// The picture is taken when the first page of the open document is painted or, without a
/// document, when the window is shown and nothing is left to do. The program then exits with 0;
/// with 1 if the picture could not be saved, or if it was not time for it within a minute and it
/// shows just what was there.
class WindowPicture final : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds kTimeout = std::chrono::minutes(1);

    /// Returns the facility for `window`, which must outlive it, or null if it is not requested.
    [[nodiscard]] static std::unique_ptr<WindowPicture> requestedFor(QWidget &window);

    /// Will save a picture of `window` to `filePath`. The timeout starts to count at once.
    WindowPicture(QWidget &window, const QString &filePath,
                  std::chrono::milliseconds timeout = kTimeout);

    /// Tells whether the picture was taken or given up, also in an event loop before the main one.
    [[nodiscard]] bool isFinished() const { return m_finished; }
    [[nodiscard]] int exitCode() const { return m_exitCode; }

    /// Waits for the viewer of `window`, if it has one, and for the window; both by the event loop.
    void takeWhenReady();

private:
    void takeSoon();
    void take(bool inTime);

    QWidget &m_window;
    QString m_filePath;
    QTimer m_timeout;
    bool m_finished = false;
    int m_exitCode = 1;
};
