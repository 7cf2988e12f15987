// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/common/elided_label.h"

#include "widgets/plain_tool_tip.h"
#include "widgets/text_alignment.h"

#include <QEvent>
#include <QFontMetrics>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace {

/// The least of a text that is of use.
constexpr int kFewCharacters = 8;

/// How high a line of the text is in whichever fonts it needs, which may be higher than the one
/// that it is set in.
int lineHeight(const QString &text, const QFont &font)
{
    QTextLayout layout(text, font);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    const int usual = QFontMetrics(font).height();
    return line.isValid() ? std::max(usual, static_cast<int>(std::ceil(line.height()))) : usual;
}

} // namespace

ElidedLabel::ElidedLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    setAlignment(leadingSide(layoutDirection()) | Qt::AlignVCenter);
}

void ElidedLabel::setFullText(const QString &text)
{
    if (text == m_text) {
        return;
    }
    m_text = text;
    updateGeometry();
    elide();
}

QSize ElidedLabel::sizeHint() const
{
    // Rounding may need one pixel more than the text is wide.
    return {fontMetrics().horizontalAdvance(m_text) + 1, lineHeight(m_text, font())};
}

QSize ElidedLabel::minimumSizeHint() const
{
    const int few = fontMetrics().averageCharWidth() * kFewCharacters;
    const QSize whole = sizeHint();
    return {std::min(few, whole.width()), whole.height()};
}

void ElidedLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    elide();
}

void ElidedLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) {
        setAlignment(leadingSide(layoutDirection()) | Qt::AlignVCenter);
    }
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        updateGeometry();
        elide();
    }
}

void ElidedLabel::elide()
{
    const QString shown = fontMetrics().elidedText(m_text, Qt::ElideMiddle, width());
    if (shown != text()) {
        setText(shown);
    }
    setToolTip(shown == m_text ? QString() : plainToolTip(m_text));
}
