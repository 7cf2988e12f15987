// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/grid/page_grid_zoom_control.h"

#include "pdf/viewer/cards/page_card_geometry.h"
#include "widgets/theme.h"

#include <QHBoxLayout>
#include <QSlider>
#include <QToolButton>

namespace {

constexpr int kSingleStep = 5;
constexpr int kPageStep = 10;
constexpr int kSliderWidth = 140;
constexpr int kHandleSide = 14;
constexpr int kButtonSide = 20;
constexpr int kIconSide = 16;
constexpr QMargins kMargins{10, 8, 10, 8};
constexpr int kSpacing = 8;

// %1 lines and handle
constexpr QLatin1String kStyleSheet{R"(
#pdfPageGridZoomControl {
    background: #191919; border: 1px solid #323232; border-radius: 5px;
}
#pdfPageGridZoomControl QToolButton {
    background: transparent; border: 1px solid %1; border-radius: 10px; padding: 0px;
}
#pdfPageGridZoomControl QToolButton:hover { background: #333333; }
#pdfPageGridZoomControl QToolButton:pressed { background: #474747; }
#pdfPageGridZoomControl QToolButton:disabled { border-color: #6B6B6B; }
#pdfPageGridZoomControl QSlider { background: transparent; }
#pdfPageGridZoomControl QSlider::groove:horizontal {
    height: 4px; background: #4C4C4C; border-radius: 2px;
}
#pdfPageGridZoomControl QSlider::sub-page:horizontal { background: %1; border-radius: 2px; }
#pdfPageGridZoomControl QSlider::handle:horizontal {
    width: 14px; height: 14px; margin: -5px 0px; background: %1; border-radius: 7px;
}
)"};

} // namespace

PageGridZoomControl::PageGridZoomControl(QWidget *parent)
    : QFrame(parent)
    , m_zoomOut(makeButton(QStringLiteral("pdfPageGridZoomOut"),
                           QStringLiteral(":/res/icons/pdfviewer/zoom-out.png"), tr("缩小")))
    , m_slider(new QSlider(Qt::Horizontal, this))
    , m_zoomIn(makeButton(QStringLiteral("pdfPageGridZoomIn"),
                          QStringLiteral(":/res/icons/pdfviewer/zoom-in.png"), tr("放大")))
{
    setObjectName(QStringLiteral("pdfPageGridZoomControl"));
    setStyleSheet(QString(kStyleSheet).arg(Theme::white.name()));
    // A larger page is to the right in every interface language, as in the grid.
    setLayoutDirection(Qt::LeftToRight);
    setCursor(Qt::ArrowCursor);

    m_slider->setObjectName(QStringLiteral("pdfPageGridZoomSlider"));
    m_slider->setRange(kMinimumGridZoom, kMaximumGridZoom);
    m_slider->setSingleStep(kSingleStep);
    m_slider->setPageStep(kPageStep);
    m_slider->setValue(kInitialGridZoom);
    m_slider->setFixedSize(kSliderWidth, kHandleSide + 2);
    m_slider->setFocusPolicy(Qt::NoFocus);
    m_slider->setCursor(Qt::PointingHandCursor);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(kMargins);
    layout->setSpacing(kSpacing);
    layout->addWidget(m_zoomOut);
    layout->addWidget(m_slider);
    layout->addWidget(m_zoomIn);

    connect(m_zoomOut, &QToolButton::clicked, m_slider,
            [this] { m_slider->triggerAction(QAbstractSlider::SliderPageStepSub); });
    connect(m_zoomIn, &QToolButton::clicked, m_slider,
            [this] { m_slider->triggerAction(QAbstractSlider::SliderPageStepAdd); });
    connect(m_slider, &QSlider::valueChanged, this, [this](int percent) {
        updateButtons();
        emit zoomChanged(percent);
    });
    updateButtons();
}

PageGridZoomControl::~PageGridZoomControl() = default;

QToolButton *PageGridZoomControl::makeButton(const QString &name, const QString &icon,
                                             const QString &toolTip)
{
    auto *button = new QToolButton(this);
    button->setObjectName(name);
    button->setIcon(QIcon(icon));
    button->setIconSize(QSize(kIconSide, kIconSide));
    button->setFixedSize(kButtonSide, kButtonSide);
    button->setToolTip(toolTip);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setCursor(Qt::PointingHandCursor);
    return button;
}

void PageGridZoomControl::updateButtons()
{
    m_zoomOut->setEnabled(m_slider->value() > m_slider->minimum());
    m_zoomIn->setEnabled(m_slider->value() < m_slider->maximum());
}
