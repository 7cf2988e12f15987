// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/window_picture.h"

#include "pdf/viewer/pdf_viewer_widget.h"

#include <QCoreApplication>
#include <QPixmap>
#include <QWidget>

namespace {

/// What the first paint has set in motion (layouts, icons, neighbouring pages) settles in it.
constexpr std::chrono::milliseconds kSettlingTime{300};

} // namespace

std::unique_ptr<WindowPicture> WindowPicture::requestedFor(QWidget &window)
{
    const QString filePath = qEnvironmentVariable("QUILLORA_SCREENSHOT");
    return filePath.isEmpty() ? nullptr : std::make_unique<WindowPicture>(window, filePath);
}

WindowPicture::WindowPicture(QWidget &window, const QString &filePath,
                             std::chrono::milliseconds timeout)
    : m_window(window)
    , m_filePath(filePath)
{
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this, [this] { take(false); });
    m_timeout.start(timeout);
}

void WindowPicture::takeWhenReady()
{
    if (const auto *viewer = m_window.findChild<PdfViewerWidget *>()) {
        connect(viewer, &PdfViewerWidget::firstPagePainted, this, &WindowPicture::takeSoon);
    } else {
        takeSoon();
    }
}

void WindowPicture::takeSoon()
{
    QTimer::singleShot(kSettlingTime, this, [this] { take(true); });
}

void WindowPicture::take(bool inTime)
{
    if (m_finished) {
        return;
    }
    m_finished = true;
    m_timeout.stop();
    const bool saved = m_window.grab().save(m_filePath);
    m_exitCode = saved && inTime ? 0 : 1;
    QCoreApplication::exit(m_exitCode);
}
