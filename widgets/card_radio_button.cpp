// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/card_radio_button.h"

#include "widgets/choice_card.h"
#include "widgets/control_painting.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QEvent>
#include <QPainter>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kHeight = 70;
constexpr int kMinimumWidth = 120;
constexpr int kPadding = 16;
constexpr int kMarkSide = 16;
constexpr int kGap = 12;
constexpr int kTitleHeight = 22;
constexpr int kDescriptionHeight = 20;
constexpr int kTitleFont = 14 | kBoldFont;
constexpr int kDescriptionFont = 12;

ChoiceCard::State stateOf(const QRadioButton &button)
{
    return {.checked = button.isChecked(),
            .hovered = button.underMouse(),
            .pressed = button.isDown(),
            .focused = button.hasFocus(),
            .enabled = button.isEnabled()};
}

/// The radio button with all that stands on the card.
class CardFace final : public QRadioButton
{
public:
    CardFace(const QString &title, const QString &description, QWidget *parent)
        : QRadioButton(title, parent)
        , m_description(description)
    {
        setFont(widgetFont(kTitleFont));
        setCursor(Qt::PointingHandCursor);
        setFocusPolicy(Qt::NoFocus);
        setAttribute(Qt::WA_Hover);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        setAccessibleDescription(description);
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        return {textWidth() + kMarkSide + kGap + 2 * kPadding, kHeight};
    }

    [[nodiscard]] QSize minimumSizeHint() const override { return {kMinimumWidth, kHeight}; }

protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override
    {
        return rect().contains(position);
    }

    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::ToolTip && width() < sizeHint().width() &&
            ControlPainting::showWholeText(*event, *this, text() + u'\n' + m_description)) {
            return true;
        }
        return QRadioButton::event(event);
    }

    void paintEvent(QPaintEvent * /*event*/) override
    {
        const ChoiceCard::State state = stateOf(*this);
        const auto placed = [this](const QRect &part) {
            return QStyle::visualRect(layoutDirection(), rect(), part);
        };
        const QRect mark(kPadding, (height() - kMarkSide) / 2, kMarkSide, kMarkSide);
        const int textLeft = mark.right() + 1 + kGap;
        const int textTop = (height() - kTitleHeight - kDescriptionHeight) / 2;
        const int width = std::max(rect().width() - kPadding - textLeft, 0);
        const QRect title(textLeft, textTop, width, kTitleHeight);
        const QRect description(textLeft, textTop + kTitleHeight, width, kDescriptionHeight);

        QPainter painter(this);
        ChoiceCard::drawRadioMark(painter, placed(mark), state);
        const Qt::Alignment side = leadingSide(layoutDirection()) | Qt::AlignVCenter;
        painter.setPen(ChoiceCard::titleColor(state));
        ControlPainting::drawText(painter, placed(title), text(), side);
        painter.setFont(widgetFont(kDescriptionFont));
        painter.setPen(state.enabled ? Theme::textSecondary : Theme::textMuted);
        ControlPainting::drawText(painter, placed(description), m_description, side);
    }

private:
    [[nodiscard]] int textWidth() const
    {
        const QFontMetrics titleMetrics(font());
        const QFontMetrics descriptionMetrics(widgetFont(kDescriptionFont));
        return std::max(titleMetrics.size(Qt::TextSingleLine, text()).width(),
                        descriptionMetrics.size(Qt::TextSingleLine, m_description).width());
    }

    QString m_description;
};

} // namespace

CardRadioButton::CardRadioButton(const QString &title, const QString &description, QWidget *parent)
    : QWidget(parent)
    , m_radioButton(new CardFace(title, description, this))
{
    setFixedHeight(kHeight);
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(title);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_radioButton);
    m_radioButton->installEventFilter(this);
    connect(m_radioButton, &QRadioButton::toggled, this, [this](bool checked) {
        update();
        emit toggled(checked);
    });
}

CardRadioButton::~CardRadioButton() = default;

bool CardRadioButton::isChecked() const
{
    return m_radioButton->isChecked();
}

void CardRadioButton::setChecked(bool checked)
{
    m_radioButton->setChecked(checked);
}

bool CardRadioButton::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverLeave:
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::EnabledChange:
        update();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void CardRadioButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    ChoiceCard::drawCard(painter, rect(), stateOf(*m_radioButton));
}
