// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/wrapped_check_box.h"

#include "widgets/icon_paths.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"

#include <QIcon>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace {

constexpr int kIndicatorSide = 20;
constexpr int kGap = 8;
constexpr int kPadding = 4;
constexpr int kEndPadding = 8;
constexpr int kMinimumWidth = 120;
constexpr int kFontPixelSize = 13;
constexpr int kRadius = 6;

constexpr int kTextFlags = Qt::AlignVCenter | Qt::TextWordWrap | Qt::TextShowMnemonic;
/// What stands beside the text.
constexpr int kBesideText = kPadding + kIndicatorSide + kGap + kEndPadding;

} // namespace

WrappedCheckBox::WrappedCheckBox(const QString &text, QWidget *parent)
    : QCheckBox(text, parent)
{
    QFont textFont = font();
    textFont.setPixelSize(kFontPixelSize);
    setFont(textFont);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

WrappedCheckBox::~WrappedCheckBox() = default;

QSize WrappedCheckBox::sizeHint() const
{
    const QSize size = fontMetrics().size(Qt::TextShowMnemonic, text());
    return {size.width() + kBesideText, std::max(size.height(), kIndicatorSide) + 2 * kPadding};
}

QSize WrappedCheckBox::minimumSizeHint() const
{
    return {kMinimumWidth, std::max(fontMetrics().height(), kIndicatorSide) + 2 * kPadding};
}

int WrappedCheckBox::heightForWidth(int width) const
{
    return std::max(textSize(width).height(), kIndicatorSide) + 2 * kPadding;
}

bool WrappedCheckBox::hitButton(const QPoint &position) const
{
    return contentRect().contains(position);
}

void WrappedCheckBox::paintEvent(QPaintEvent * /*event*/)
{
    const bool hovered = isEnabled() && underMouse();
    const QRect content = contentRect();
    const QRect inner = content.adjusted(kPadding, kPadding, -kEndPadding, -kPadding);
    // The indicator stands beside the first line.
    const int firstLine = std::max(fontMetrics().height(), kIndicatorSide);
    const QRect indicator(inner.left(), inner.top() + (firstLine - kIndicatorSide) / 2,
                          kIndicatorSide, kIndicatorSide);
    const QRect texts = inner.adjusted(kIndicatorSide + kGap, 0, 0, 0);
    const auto placed = [&](const QRect &part) {
        return QStyle::visualRect(layoutDirection(), content, part);
    };

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isDown() || hovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(isDown() ? Theme::pressed : Theme::hover);
        painter.drawRoundedRect(content, kRadius, kRadius);
    }
    if (hasFocus()) {
        painter.setPen(QPen(Theme::accent, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(content).adjusted(0.75, 0.75, -0.75, -0.75), kRadius,
                                kRadius);
    }

    painter.setOpacity(isEnabled() ? 1.0 : Theme::disabledOpacity);
    QIcon(isChecked() ? kCheckedIcon : kUncheckedIcon).paint(&painter, placed(indicator));
    painter.setOpacity(1.0);

    const int alignment = static_cast<int>(leadingSide(layoutDirection()));
    painter.setPen(isEnabled() ? Theme::ink : Theme::textMuted);
    painter.drawText(placed(texts), kTextFlags | alignment, text());
}

QSize WrappedCheckBox::textSize(int width) const
{
    const int available = std::max(width - kBesideText, 1);
    return fontMetrics()
        .boundingRect(QRect(0, 0, available, QWIDGETSIZE_MAX), kTextFlags, text())
        .size();
}

QRect WrappedCheckBox::contentRect() const
{
    const QSize texts = textSize(width());
    const QSize size(std::min(texts.width() + kBesideText, width()),
                     std::min(std::max(texts.height(), kIndicatorSide) + 2 * kPadding, height()));
    const QRect content(QPoint(0, (height() - size.height()) / 2), size);
    return QStyle::visualRect(layoutDirection(), rect(), content);
}
