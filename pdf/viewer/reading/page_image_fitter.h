// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"

#include <QImage>
#include <QObject>
#include <QSize>
#include <QThreadPool>

/// Brings page images into the form in which painting them costs least, on a thread of its own:
/// 32-bit pixels, one for each pixel of the screen. Images come from the engine with 24 bits, and
/// on usual screens larger than they are shown, so that every step of scrolling would convert and
/// scale all that is in view anew.
///
/// Lives on the interface thread; its destructor waits for the image in work.
class PageImageFitter final : public QObject
{
    Q_OBJECT

public:
    explicit PageImageFitter(QObject *parent = nullptr);
    ~PageImageFitter() override;

    /// The form of an image that is shown in `shown` device pixels. One that is smaller than that
    /// keeps its size: scaled up it would cost more memory than it saves time.
    [[nodiscard]] static QImage fittedTo(const QImage &image, QSize shown);
    /// Whether the image has that form.
    [[nodiscard]] static bool isFitted(const QImage &image, QSize shown);

    /// Starts bringing the image into its form; fitted() follows.
    void fit(PdfPageId id, const QImage &image, QSize shown);

signals:
    /// `originalKey` is the QImage::cacheKey() of the image that was given.
    void fitted(PdfPageId id, qint64 originalKey, QImage image);

private:
    QThreadPool m_pool;
};
