// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/password_input.h"

#include "widgets/control_painting.h"
#include "widgets/field_frame.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>

namespace {

constexpr int kHeight = 42;
constexpr int kSideMargin = 10;
constexpr int kSpacing = 8;
constexpr int kLockSide = 18;
constexpr int kEyeSide = 16;

constexpr QLatin1String kLockIcon{":/res/icons/modern/lock.png"};
constexpr QLatin1String kEyeIcon{":/res/icons/modern/eye.png"};
constexpr QLatin1String kCrossedEyeIcon{":/res/icons/modern/eye-off.png"};

} // namespace

PasswordInput::PasswordInput(QWidget *parent)
    : QWidget(parent)
    , m_edit(new QLineEdit(this))
    , m_eye(m_edit->addAction(QIcon(kEyeIcon), QLineEdit::TrailingPosition))
{
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::IBeamCursor);
    // A click beside the text means the field too; set before the proxy, which would get it.
    setFocusPolicy(Qt::ClickFocus);
    setFocusProxy(m_edit);
    setMinimumHeight(kHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    auto *lock = new QLabel(this);
    lock->setPixmap(
        ControlPainting::pixmapOf(QIcon(kLockIcon), {kLockSide, kLockSide}, devicePixelRatioF()));
    lock->setFixedSize(kLockSide, kLockSide);
    m_edit->setEchoMode(QLineEdit::Password);
    FieldFrame::dress(*m_edit);
    m_edit->installEventFilter(this);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(kSideMargin, 0, kSideMargin, 0);
    layout->setSpacing(kSpacing);
    layout->addWidget(lock);
    layout->addWidget(m_edit);

    m_eye->setVisible(false);
    refreshEye();
    connect(m_eye, &QAction::triggered, this, &PasswordInput::toggleEcho);
    connect(m_edit, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_eye->setVisible(!text.isEmpty()); });
}

PasswordInput::~PasswordInput() = default;

QString PasswordInput::text() const
{
    return m_edit->text();
}

void PasswordInput::setError(bool error)
{
    m_error = error;
    update();
}

void PasswordInput::setPlaceholderText(const QString &text)
{
    m_edit->setPlaceholderText(text);
}

void PasswordInput::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) {
        update();
    }
}

bool PasswordInput::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        update();
        break;
    case QEvent::LayoutDirectionChange:
        FieldFrame::dress(*m_edit);
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void PasswordInput::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    FieldFrame::draw(painter, rect(),
                     {.focused = m_edit->hasFocus(),
                      .hovered = underMouse(),
                      .error = m_error,
                      .enabled = isEnabled()});
}

void PasswordInput::toggleEcho()
{
    m_edit->setEchoMode(isShown() ? QLineEdit::Password : QLineEdit::Normal);
    refreshEye();
}

bool PasswordInput::isShown() const
{
    return m_edit->echoMode() == QLineEdit::Normal;
}

void PasswordInput::refreshEye()
{
    const QIcon icon(isShown() ? kCrossedEyeIcon : kEyeIcon);
    m_eye->setIcon(
        QIcon(ControlPainting::pixmapOf(icon, {kEyeSide, kEyeSide}, devicePixelRatioF())));
    m_eye->setText(isShown() ? tr("隐藏密码") : tr("显示密码"));
}
