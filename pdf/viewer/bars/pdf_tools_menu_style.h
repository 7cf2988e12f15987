// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QProxyStyle>

/// Draws the tools menu with larger icons; everything else is left to the application's style.
class PdfToolsMenuStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    PdfToolsMenuStyle();
    ~PdfToolsMenuStyle() override;

    [[nodiscard]] int pixelMetric(PixelMetric metric, const QStyleOption *option = nullptr,
                                  const QWidget *widget = nullptr) const override;
};
