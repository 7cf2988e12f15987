// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/framed_line_edit.h"

#include "widgets/field_frame.h"
#include "widgets/widget_font.h"

#include <QPainter>

namespace {

constexpr int kHeight = 36;
constexpr int kPadding = 8;
constexpr int kFont = 14;

} // namespace

FramedLineEdit::FramedLineEdit(QWidget *parent)
    : QLineEdit(parent)
{
    setAttribute(Qt::WA_Hover);
    setFont(widgetFont(kFont));
    setFrame(false);
    setTextMargins(kPadding, 0, kPadding, 0);
    setMinimumHeight(kHeight);
    setStyleSheet(FieldFrame::kLineEditStyleSheet);
}

FramedLineEdit::~FramedLineEdit() = default;

QSize FramedLineEdit::sizeHint() const
{
    return {QLineEdit::sizeHint().width(), kHeight};
}

void FramedLineEdit::setLineWidth(int width)
{
    if (width != m_lineWidth) {
        m_lineWidth = width;
        update();
        emit lineWidthChanged(width);
    }
}

void FramedLineEdit::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(this);
        FieldFrame::draw(painter, rect(),
                         {.focused = hasFocus(), .hovered = underMouse(), .enabled = isEnabled()},
                         m_lineWidth);
    }
    QLineEdit::paintEvent(event);
}
