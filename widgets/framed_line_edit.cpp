// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/framed_line_edit.h"

#include "widgets/field_frame.h"

#include <QEvent>
#include <QPainter>

namespace {

constexpr int kHeight = 36;
constexpr int kPadding = 8;

} // namespace

FramedLineEdit::FramedLineEdit(QWidget *parent)
    : QLineEdit(parent)
{
    setAttribute(Qt::WA_Hover);
    setFrame(false);
    setTextMargins(kPadding, 0, kPadding, 0);
    setMinimumHeight(kHeight);
    FieldFrame::dress(*this);
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

void FramedLineEdit::changeEvent(QEvent *event)
{
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) {
        FieldFrame::dress(*this);
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
