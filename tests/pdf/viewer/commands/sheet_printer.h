// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QPageLayout>
#include <QPaintEngine>
#include <QPrintEngine>
#include <QPrinter>
#include <QRect>

#include <functional>

/// A printer that takes pictures as any other and only remembers where they were drawn.
class SheetPrinter final : public QPrinter
{
public:
    struct Drawing
    {
        int sheet = 0;    ///< From 0.
        QRect place;      ///< In device pixels of the printable area.
        QSize size;       ///< In pixels of its own.
        QList<QRgb> left; ///< The first pixel of each row.
        qsizetype bytes = 0;
    };

    SheetPrinter(const QPageLayout &layout, int resolution);

    [[nodiscard]] const QList<Drawing> &drawings() const { return m_paint.drawings; }
    [[nodiscard]] bool isAborted() const { return m_engine.state == QPrinter::Aborted; }

private:
    class Paint final : public QPaintEngine
    {
    public:
        Paint();
        bool begin(QPaintDevice * /*device*/) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState & /*state*/) override {}
        void drawPixmap(const QRectF & /*place*/, const QPixmap & /*pixmap*/,
                        const QRectF & /*part*/) override
        {}
        void drawImage(const QRectF &place, const QImage &image, const QRectF &part,
                       Qt::ImageConversionFlags flags) override;
        [[nodiscard]] Type type() const override { return User; }

        QList<Drawing> drawings;
        int sheet = 0;
    };

    class Engine final : public QPrintEngine
    {
    public:
        Engine(Paint &paint, const QPageLayout &layout, int resolution);
        void setProperty(PrintEnginePropertyKey /*key*/, const QVariant & /*value*/) override {}
        [[nodiscard]] QVariant property(PrintEnginePropertyKey key) const override;
        bool newPage() override;
        bool abort() override;
        [[nodiscard]] int metric(QPaintDevice::PaintDeviceMetric metric) const override;
        [[nodiscard]] QPrinter::PrinterState printerState() const override { return state; }

        QPrinter::PrinterState state = QPrinter::Active;

    private:
        Paint &m_paint;
        QPageLayout m_layout;
        int m_resolution;
    };

    Paint m_paint;
    Engine m_engine;
};
