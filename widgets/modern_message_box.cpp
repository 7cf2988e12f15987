// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/modern_message_box.h"

#include "widgets/rounded_window.h"
#include "widgets/scroll_bar_style.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"

#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QTextLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kMinimumWidth = 560;
constexpr int kMaximumWidth = 680;
constexpr int kShadowMargin = 20;
constexpr int kCardRadius = 18;
constexpr QColor kCardBorder{0xD9, 0xDE, 0xE7};
constexpr QMargins kCardMargins{32, 28, 32, 28};
constexpr QSize kAccentSize{34, 4};
constexpr int kAccentSpacing = 18;
constexpr int kMessageSpacing = 12;
constexpr int kDetailsSpacing = 8;
constexpr int kProgressSpacing = 20;
constexpr int kProgressHeight = 8;
constexpr int kButtonRowSpacing = 28;
constexpr int kButtonSpacing = 12;
constexpr QSize kButtonSize{92, 42};
// Least distance of the box from the upper and lower edges of the screen.
constexpr int kScreenMargin = 20;

// %1 accent of the kind, %2 white, %3 to %5 accent, hovered, pressed, %6 strong ink,
// %7 border and %8 radius of the card
constexpr QLatin1String kStyleSheet{R"(
QFrame#messageBoxCard { background: %2; border: 1px solid %7; border-radius: %8px; }
QFrame#messageBoxAccent { background: %1; border: none; border-radius: 2px; }
QLabel#messageBoxTitle {
    color: %6; background: transparent; font-size: 24px; font-weight: 600;
}
QLabel#messageBoxMessage {
    color: #1F2937; background: transparent; font-size: 16px; font-weight: 500;
}
QLabel#messageBoxDetails { color: #8A94A6; background: transparent; font-size: 14px; }
QProgressBar#messageBoxProgress { background: #E8ECF3; border: none; border-radius: 4px; }
QProgressBar#messageBoxProgress::chunk { background: %3; border-radius: 4px; }
QPushButton { padding: 0 20px; border-radius: 21px; font-size: 15px; font-weight: 600; }
QPushButton#messageBoxCancelButton { color: #1F2937; background: %2; border: 1px solid #D7DCE5; }
QPushButton#messageBoxCancelButton:hover { background: #F5F7FA; }
QPushButton#messageBoxCancelButton:pressed { background: #ECEFF4; }
QPushButton#messageBoxDiscardButton { color: #C9364F; background: %2; border: 1px solid #F1B7C1; }
QPushButton#messageBoxDiscardButton:hover { background: #FFF1F3; }
QPushButton#messageBoxDiscardButton:pressed { background: #FFE5E9; }
QPushButton#messageBoxConfirmButton { color: %2; background: %3; border: 1px solid %3; }
QPushButton#messageBoxConfirmButton:hover { background: %4; border-color: %4; }
QPushButton#messageBoxConfirmButton:pressed { background: %5; }
QPushButton#messageBoxConfirmButton[danger="true"] {
    background: #F0445B; border-color: %6; border-width: 2px;
}
QPushButton#messageBoxConfirmButton[danger="true"]:hover { background: #E73750; }
QPushButton#messageBoxConfirmButton[danger="true"]:pressed { background: #CF2E45; }
QScrollArea#messageBoxScrollArea, QWidget#messageBoxTexts { background: transparent; border: none; }
)"};

// %1 colour
constexpr QLatin1String kBackdropStyleSheet{"background: %1;"};

constexpr QColor kBackdropColor = Theme::shadow(38);
constexpr QColor kShadowColor = Theme::shadow(65);
constexpr int kShadowBlur = 40;
constexpr int kShadowOffset = 12;

QColor accentOf(int kind)
{
    switch (kind) {
    case ModernMessageBox::Success:
        return Theme::success;
    case ModernMessageBox::Warning:
        return Theme::warning;
    case ModernMessageBox::Danger:
        return Theme::danger;
    default:
        return Theme::accent;
    }
}

/// A word-wrapped plain-text label that also breaks words wider than itself, such as paths.
class WrappedLabel final : public QLabel
{
public:
    WrappedLabel(const QString &objectName, const QString &text, QWidget *parent)
        : QLabel(text, parent)
    {
        setObjectName(objectName);
        setTextFormat(Qt::PlainText);
        setWordWrap(true);
    }

    [[nodiscard]] QSize minimumSizeHint() const override
    {
        return {kButtonSize.width(), QLabel::minimumSizeHint().height()};
    }

    [[nodiscard]] int heightForWidth(int width) const override
    {
        ensurePolished();
        return qCeil(LaidOutText(*this, width).height());
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        painter.setPen(palette().color(foregroundRole()));
        LaidOutText(*this, width()).draw(painter);
    }

private:
    class LaidOutText final
    {
    public:
        LaidOutText(const QLabel &label, int width)
            : m_layout(label.text().replace(u'\n', QChar(QChar::LineSeparator)), label.font())
        {
            QTextOption option(leadingSide(label.layoutDirection()));
            option.setTextDirection(label.layoutDirection());
            option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
            m_layout.setTextOption(option);
            m_layout.beginLayout();
            for (QTextLine line = m_layout.createLine(); line.isValid();
                 line = m_layout.createLine()) {
                line.setLineWidth(width);
                line.setPosition({0.0, m_height});
                m_height += line.height();
            }
            m_layout.endLayout();
        }

        [[nodiscard]] qreal height() const { return m_height; }

        void draw(QPainter &painter) const { m_layout.draw(&painter, {}); }

    private:
        QTextLayout m_layout;
        qreal m_height = 0.0;
    };
};

QPushButton *createButton(const QString &objectName, const QString &text, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(objectName);
    button->setMinimumSize(kButtonSize);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoDefault(false);
    return button;
}

/// Runs a box to its end. A box that goes with its parent meanwhile counts as cancelled.
int run(const MessageBoxOptions &options, QWidget *parent)
{
    const QPointer<ModernMessageBox> box(new ModernMessageBox(options, parent));
    box->exec();
    const int result = box != nullptr ? box->result() : ModernMessageBox::Cancelled;
    delete box;
    return result;
}

int maximumHeightOn(const QScreen &screen)
{
    return screen.availableGeometry().height() - 2 * kScreenMargin;
}

QString textOr(const QString &text, const QString &fallback)
{
    return text.isEmpty() ? fallback : text;
}

} // namespace

ModernMessageBox::ModernMessageBox(const MessageBoxOptions &options, QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
    , m_options(options)
    , m_card(new QFrame(this))
    , m_texts(new QVBoxLayout)
{
    setModal(true);
    showAsShape(*this, {.margin = kShadowMargin, .radius = kCardRadius, .edge = kCardBorder});
    setWindowTitle(m_options.title);
    setMinimumWidth(kMinimumWidth);
    setMaximumWidth(kMaximumWidth);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(kShadowMargin, kShadowMargin, kShadowMargin, kShadowMargin);
    layout->addWidget(m_card);
    fillCard();
    setStyleSheet(QString(kStyleSheet)
                      .arg(accentOf(m_options.kind).name(), Theme::white.name(),
                           Theme::accent.name(), Theme::accentHover.name(),
                           Theme::accentPressed.name(), Theme::inkStrong.name(), kCardBorder.name(),
                           QString::number(kCardRadius)) %
                  scrollBarStyleSheet({.hoveredHandle = Theme::borderStrong}));
    fitSize();
}

ModernMessageBox::~ModernMessageBox()
{
    // The backdrop of a box that is deleted while visible goes with hideEvent(), which the base
    // class's destructor would no longer reach.
    hide();
}

int ModernMessageBox::question(QWidget *parent, const QString &title, const QString &message,
                               const QString &details, const QString &confirmText,
                               const QString &cancelText, int kind)
{
    MessageBoxOptions options;
    options.kind = kind;
    options.title = title;
    options.message = message;
    options.details = details;
    options.confirmText = confirmText;
    options.cancelText = cancelText;
    options.showCancel = true;
    return run(options, parent);
}

int ModernMessageBox::questionWithDiscard(QWidget *parent, const QString &title,
                                          const QString &message, const QString &details,
                                          const QString &confirmText, const QString &discardText,
                                          const QString &cancelText, int kind)
{
    MessageBoxOptions options;
    options.kind = kind;
    options.title = title;
    options.message = message;
    options.details = details;
    options.confirmText = confirmText;
    options.discardText = discardText;
    options.cancelText = cancelText;
    options.showDiscard = true;
    options.showCancel = true;
    return run(options, parent);
}

void ModernMessageBox::showMessage(QWidget *parent, int kind, const QString &title,
                                   const QString &message, const QString &details)
{
    MessageBoxOptions options;
    options.kind = kind;
    options.title = title;
    options.message = message;
    options.details = details;
    run(options, parent);
}

void ModernMessageBox::showSuccess(QWidget *parent, const QString &title, const QString &message,
                                   const QString &details)
{
    showMessage(parent, Success, title, message, details);
}

void ModernMessageBox::showWarning(QWidget *parent, const QString &title, const QString &message,
                                   const QString &details)
{
    showMessage(parent, Warning, title, message, details);
}

void ModernMessageBox::showError(QWidget *parent, const QString &title, const QString &message,
                                 const QString &details)
{
    showMessage(parent, Danger, title, message, details);
}

void ModernMessageBox::reject()
{
    if (!m_options.closable) {
        return;
    }
    m_result = Cancelled;
    QDialog::reject();
}

void ModernMessageBox::showEvent(QShowEvent *event)
{
    showBackdrop();
    QDialog::showEvent(event);
    moveToCentre();
}

void ModernMessageBox::hideEvent(QHideEvent *event)
{
    if (m_backdrop != nullptr) {
        m_backdrop->hide();
        m_backdrop->deleteLater();
        m_backdrop.clear();
    }
    QDialog::hideEvent(event);
}

void ModernMessageBox::fillCard()
{
    m_card->setObjectName(QStringLiteral("messageBoxCard"));
    auto *shadow = new QGraphicsDropShadowEffect(m_card);
    shadow->setBlurRadius(kShadowBlur);
    shadow->setOffset(0, kShadowOffset);
    shadow->setColor(kShadowColor);
    m_card->setGraphicsEffect(shadow);

    auto *layout = new QVBoxLayout(m_card);
    layout->setContentsMargins(kCardMargins);
    layout->setSpacing(0);

    auto *accent = new QFrame(m_card);
    accent->setObjectName(QStringLiteral("messageBoxAccent"));
    accent->setFixedSize(kAccentSize);
    layout->addWidget(accent);
    layout->addSpacing(kAccentSpacing);
    layout->addWidget(new WrappedLabel(QStringLiteral("messageBoxTitle"), m_options.title, m_card));

    layout->addLayout(m_texts);
    m_texts->setSpacing(0);
    if (!m_options.message.isEmpty()) {
        m_texts->addSpacing(kMessageSpacing);
        m_texts->addWidget(
            new WrappedLabel(QStringLiteral("messageBoxMessage"), m_options.message, m_card));
    }
    if (!m_options.details.isEmpty()) {
        m_texts->addSpacing(kDetailsSpacing);
        m_texts->addWidget(
            new WrappedLabel(QStringLiteral("messageBoxDetails"), m_options.details, m_card));
    }

    if (m_options.showProgress) {
        auto *progress = new QProgressBar(m_card);
        progress->setObjectName(QStringLiteral("messageBoxProgress"));
        progress->setRange(0, 0);
        progress->setFixedHeight(kProgressHeight);
        progress->setTextVisible(false);
        layout->addSpacing(kProgressSpacing);
        layout->addWidget(progress);
    }

    QHBoxLayout *buttons = createButtons();
    if (!buttons->isEmpty()) {
        layout->addSpacing(kButtonRowSpacing);
    }
    layout->addLayout(buttons);
}

QHBoxLayout *ModernMessageBox::createButtons()
{
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kButtonSpacing);
    row->setAlignment(Qt::AlignRight);
    if (m_options.showCancel) {
        QPushButton *cancel = createButton(QStringLiteral("messageBoxCancelButton"),
                                           textOr(m_options.cancelText, tr("取消")), m_card);
        connect(cancel, &QPushButton::clicked, this, [this] {
            m_result = Cancelled;
            reject();
        });
        row->addWidget(cancel);
    }
    if (m_options.showDiscard) {
        QPushButton *discard = createButton(QStringLiteral("messageBoxDiscardButton"),
                                            textOr(m_options.discardText, tr("不保存")), m_card);
        connect(discard, &QPushButton::clicked, this, [this] { finishWith(Discarded); });
        row->addWidget(discard);
    }
    if (m_options.showConfirm) {
        QPushButton *confirm = createButton(QStringLiteral("messageBoxConfirmButton"),
                                            textOr(m_options.confirmText, tr("确定")), m_card);
        confirm->setProperty("danger", m_options.kind == Danger);
        confirm->setDefault(true);
        connect(confirm, &QPushButton::clicked, this, [this] { finishWith(Confirmed); });
        row->addWidget(confirm);
    }
    return row;
}

void ModernMessageBox::fitSize()
{
    const int width = std::clamp(sizeHint().width(), kMinimumWidth, kMaximumWidth);
    const int maximumHeight = maximumHeightOn(*screen());
    int height = layout()->totalHeightForWidth(width);
    if (height > maximumHeight) {
        makeTextsScroll();
        height = maximumHeight;
    }
    resize(width, height);
}

void ModernMessageBox::makeTextsScroll()
{
    auto *texts = new QWidget;
    texts->setObjectName(QStringLiteral("messageBoxTexts"));
    auto *scrollArea = new QScrollArea(m_card);
    scrollArea->setObjectName(QStringLiteral("messageBoxScrollArea"));
    scrollArea->setFrameShape(QFrame::NoFrame);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea->setWidgetResizable(true);

    auto *cardLayout = static_cast<QVBoxLayout *>(m_card->layout());
    const int position = cardLayout->indexOf(m_texts);
    cardLayout->removeItem(m_texts);
    m_texts->setParent(nullptr);
    texts->setLayout(m_texts);
    m_texts->setContentsMargins(0, 0, 0, 0);
    scrollArea->setWidget(texts);
    cardLayout->insertWidget(position, scrollArea, 1);
    m_card->updateGeometry();
}

void ModernMessageBox::showBackdrop()
{
    if (parentWidget() == nullptr || m_backdrop != nullptr) {
        return;
    }
    QWidget *window = parentWidget()->window();
    m_backdrop = new QWidget(window);
    m_backdrop->setObjectName(QStringLiteral("modalBackdrop"));
    m_backdrop->setGeometry(window->rect());
    if (const QVariant shape = window->property(kBackdropShapeProperty); shape.isValid()) {
        m_backdrop->setMask(shape.value<QRegion>());
    }
    m_backdrop->setStyleSheet(kBackdropStyleSheet.arg(kBackdropColor.name(QColor::HexArgb)));
    m_backdrop->show();
    m_backdrop->raise();
}

void ModernMessageBox::moveToCentre()
{
    const QRect screenArea = screen()->availableGeometry();
    const QRect area =
        parentWidget() != nullptr ? parentWidget()->window()->frameGeometry() : screenArea;
    QRect box = frameGeometry();
    box.moveCenter(area.center());
    if (box.height() >= maximumHeightOn(*screen())) {
        // As high as the screen, it would leave that with its title or its buttons elsewhere.
        box.moveTop(screenArea.top() + kScreenMargin);
    }
    move(box.topLeft());
}

void ModernMessageBox::finishWith(Result result)
{
    m_result = result;
    accept();
}
