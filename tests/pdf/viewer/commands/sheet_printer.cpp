// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/commands/sheet_printer.h"

SheetPrinter::SheetPrinter(const QPageLayout &layout, int resolution)
    : QPrinter(QPrinter::HighResolution)
    , m_engine(m_paint, layout, resolution)
{
    setEngines(&m_engine, &m_paint);
}

SheetPrinter::Paint::Paint()
    : QPaintEngine(AllFeatures)
{}

void SheetPrinter::Paint::drawImage(const QRectF &place, const QImage &image, const QRectF &part,
                                    Qt::ImageConversionFlags /*flags*/)
{
    Drawing drawing{sheet, place.toRect(), image.size(), {}, image.sizeInBytes()};
    if (part != QRectF(image.rect())) {
        drawing.size = {};
    }
    for (int row = 0; row < image.height(); ++row) {
        drawing.left.append(image.pixel(0, row));
    }
    drawings.append(drawing);
}

SheetPrinter::Engine::Engine(Paint &paint, const QPageLayout &layout, int resolution)
    : m_paint(paint)
    , m_layout(layout)
    , m_resolution(resolution)
{}

QVariant SheetPrinter::Engine::property(PrintEnginePropertyKey key) const
{
    switch (key) {
    case PPK_Resolution:
        return m_resolution;
    case PPK_QPageLayout:
        return QVariant::fromValue(m_layout);
    default:
        return {};
    }
}

bool SheetPrinter::Engine::newPage()
{
    ++m_paint.sheet;
    return true;
}

bool SheetPrinter::Engine::abort()
{
    state = QPrinter::Aborted;
    return true;
}

int SheetPrinter::Engine::metric(QPaintDevice::PaintDeviceMetric metric) const
{
    const QSize size = m_layout.paintRectPixels(m_resolution).size();
    switch (metric) {
    case QPaintDevice::PdmWidth:
        return size.width();
    case QPaintDevice::PdmHeight:
        return size.height();
    case QPaintDevice::PdmDpiX:
    case QPaintDevice::PdmDpiY:
    case QPaintDevice::PdmPhysicalDpiX:
    case QPaintDevice::PdmPhysicalDpiY:
        return m_resolution;
    case QPaintDevice::PdmDevicePixelRatio:
        return 1;
    default:
        return 0;
    }
}
