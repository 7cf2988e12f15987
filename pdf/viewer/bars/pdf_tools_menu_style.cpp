// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/bars/pdf_tools_menu_style.h"

namespace {

constexpr int kMenuIconSize = 28;

} // namespace

PdfToolsMenuStyle::PdfToolsMenuStyle() = default;

PdfToolsMenuStyle::~PdfToolsMenuStyle() = default;

int PdfToolsMenuStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                                   const QWidget *widget) const
{
    return metric == PM_SmallIconSize ? kMenuIconSize
                                      : QProxyStyle::pixelMetric(metric, option, widget);
}
