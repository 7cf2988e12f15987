// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/bars/tool_bar_button.h"

#include <QStyle>
#include <QStyleOptionButton>

ToolBarButton::ToolBarButton(QWidget *parent)
    : QPushButton(parent)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

ToolBarButton::~ToolBarButton() = default;

void ToolBarButton::setTextShown(bool shown)
{
    if (m_textShown != shown) {
        m_textShown = shown;
        updateGeometry();
        update();
    }
}

int ToolBarButton::textWidth() const
{
    ensurePolished();
    return text().isEmpty() ? 0 : fontMetrics().size(Qt::TextShowMnemonic, text()).width();
}

QSize ToolBarButton::sizeHint() const
{
    return m_textShown ? fullSize() : iconOnlySize();
}

QSize ToolBarButton::minimumSizeHint() const
{
    return iconOnlySize();
}

void ToolBarButton::initStyleOption(QStyleOptionButton *option) const
{
    QPushButton::initStyleOption(option);
    if (!m_textShown) {
        option->text.clear();
    }
}

QSize ToolBarButton::fullSize() const
{
    QSize size = QPushButton::sizeHint();
    if (menu() != nullptr) {
        // The style sheet's padding holds the arrow already.
        size.rwidth() -= style()->pixelMetric(QStyle::PM_MenuButtonIndicator, nullptr, this);
    }
    return size;
}

QSize ToolBarButton::iconOnlySize() const
{
    return fullSize() - QSize(textWidth(), 0);
}
