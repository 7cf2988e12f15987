// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/more_option.h"

#include "widgets/control_painting.h"
#include "widgets/icon_paths.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QEvent>
#include <QIcon>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kHeight = 42;
constexpr int kMinimumWidth = 96;
constexpr int kPadding = 12;
constexpr int kIndicatorSide = 20;
constexpr int kGap = 8;
constexpr int kRadius = 5;
constexpr int kInset = 1;
constexpr int kFont = 14;
constexpr QColor kLine{0xDD, 0xDD, 0xDD};

} // namespace

MoreOption::MoreOption(const QString &text, QWidget *parent)
    : QCheckBox(text, parent)
{
    setFont(widgetFont(kFont));
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

MoreOption::~MoreOption() = default;

QSize MoreOption::sizeHint() const
{
    ensurePolished();
    const int textWidth = fontMetrics().size(Qt::TextSingleLine, text()).width();
    return {std::max(kPadding + kIndicatorSide + kGap + textWidth + kPadding, kMinimumWidth),
            kHeight};
}

QSize MoreOption::minimumSizeHint() const
{
    return {kMinimumWidth, kHeight};
}

bool MoreOption::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && width() < sizeHint().width() &&
        ControlPainting::showWholeText(*event, *this, text())) {
        return true;
    }
    return QCheckBox::event(event);
}

bool MoreOption::hitButton(const QPoint &position) const
{
    return rect().contains(position);
}

void MoreOption::paintEvent(QPaintEvent * /*event*/)
{
    QColor fill = Theme::white;
    if (isDown()) {
        fill = Theme::pressed;
    } else if (isEnabled() && underMouse()) {
        fill = Theme::hover;
    }
    QPainter painter(this);
    painter.setOpacity(isEnabled() ? 1.0 : Theme::disabledCardOpacity);
    ControlPainting::drawBox(painter, rect(),
                             {.fill = fill, .border = kLine, .radius = kRadius, .inset = kInset});

    const auto placed = [this](const QRect &part) {
        return QStyle::visualRect(layoutDirection(), rect(), part);
    };
    const QRect indicator(kPadding, (height() - kIndicatorSide) / 2, kIndicatorSide,
                          kIndicatorSide);
    painter.setOpacity(isEnabled() ? 1.0 : Theme::disabledOpacity);
    ControlPainting::drawIcon(painter, placed(indicator),
                              QIcon(isChecked() ? kCheckedIcon : kUncheckedIcon));
    painter.setOpacity(1.0);
    if (hasFocus()) {
        ControlPainting::drawFocusRing(painter, rect(), kRadius + kInset);
    }
    const int textLeft = indicator.right() + 1 + kGap;
    painter.setPen(isEnabled() ? Theme::ink : Theme::textMuted);
    ControlPainting::drawText(painter,
                              placed({textLeft, 0, width() - kPadding - textLeft, height()}),
                              text(), leadingSide(layoutDirection()) | Qt::AlignVCenter);
}
