// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/language_dialog.h"

#include "app/language_manager.h"
#include "app/language_table.h"
#include "widgets/modern_message_box.h"
#include "widgets/rounded_window.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"

#include <QButtonGroup>
#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

constexpr int kWidth = 620;
constexpr int kShadowMargin = 20;
constexpr int kShadowBlur = 36;
constexpr int kShadowOffset = 10;
constexpr QColor kShadowColor = Theme::shadow(55);
constexpr int kCardRadius = 16;
constexpr QColor kCardBorder{0xDD, 0xE2, 0xEA};
constexpr int kCardColumns = 2;
constexpr int kCardSpacing = 10;
constexpr int kCardHeight = 58;
constexpr QSize kButtonSize(88, 40);
constexpr char kCodeProperty[] = "languageCode";

// For what is on the card: the boxes that the dialog opens have a style of their own.
// %1 muted text, %2 hovered, %3 to %5 accent, hovered, pressed, %6 white, %7 title, %8 radius,
// %9 border of the card
constexpr QLatin1String kStyleSheet(
    "QFrame#languageCard { background: %6; border: 1px solid %9; border-radius: %8px; }"
    "QLabel#languageTitle { color: %7; background: transparent; font-size: 21px;"
    " font-weight: 600; }"
    "QLabel#languageDescription { color: %1; background: transparent; font-size: 13px; }"
    "#languageCard QRadioButton { color: #283347; background: %6; border: 1px solid #E0E5ED;"
    " border-radius: 10px; padding: 10px 16px; font-size: 14px; spacing: 12px; }"
    "#languageCard QRadioButton:hover { background: %2; border-color: #B8B3F5; }"
    "#languageCard QRadioButton:checked { background: #F2F1FF; border: 2px solid %3;"
    " padding: 9px 15px; }"
    "#languageCard QRadioButton::indicator { width: 18px; height: 18px; }"
    "#languageCard QPushButton { min-width: 88px; border-radius: 8px; padding: 0 16px;"
    " font-size: 14px; font-weight: 600; }"
    "QPushButton#languageCancelButton { color: #334155; background: %6;"
    " border: 1px solid #D8DEE8; }"
    "QPushButton#languageCancelButton:hover { background: #F4F6F9; }"
    "QPushButton#languageApplyButton { color: %6; background: %3; border: 1px solid %3; }"
    "QPushButton#languageApplyButton:hover { background: %4; }"
    "QPushButton#languageApplyButton:pressed { background: %5; }");

} // namespace

LanguageDialog::LanguageDialog(QWidget *parent)
    : QDialog(parent)
    , m_cards(new QButtonGroup(this))
    , m_applyButton(new QPushButton(tr("应用"), this))
{
    setModal(true);
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    showAsShape(*this, {.margin = kShadowMargin, .radius = kCardRadius, .edge = kCardBorder});
    setFixedWidth(kWidth);
    setStyleSheet(kStyleSheet.arg(
        Theme::textMuted.name(), Theme::accentTintLight.name(), Theme::accent.name(),
        Theme::accentHover.name(), Theme::accentPressed.name(), Theme::white.name(),
        Theme::inkStrong.name(), QString::number(kCardRadius), kCardBorder.name()));
    m_cards->setExclusive(true);

    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(kShadowMargin, kShadowMargin, kShadowMargin, kShadowMargin);
    outer->addWidget(createFrame());
}

void LanguageDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    // The base class reckons with a frame, which this window has none of.
    if (parentWidget() != nullptr) {
        QRect box = geometry();
        box.moveCenter(parentWidget()->window()->geometry().center());
        move(box.topLeft());
    }
}

void LanguageDialog::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    // Around the card the dialog is seen through.
    const QRect card =
        rect().marginsRemoved({kShadowMargin, kShadowMargin, kShadowMargin, kShadowMargin});
    setProperty(ModernMessageBox::kBackdropShapeProperty,
                QVariant::fromValue(roundedRegion(card, kCardRadius)));
}

QFrame *LanguageDialog::createFrame()
{
    auto *frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("languageCard"));
    auto *shadow = new QGraphicsDropShadowEffect(frame);
    shadow->setBlurRadius(kShadowBlur);
    shadow->setOffset(0, kShadowOffset);
    shadow->setColor(kShadowColor);
    frame->setGraphicsEffect(shadow);

    auto *title = new QLabel(tr("语言设置"), frame);
    title->setObjectName(QStringLiteral("languageTitle"));
    title->setAlignment(kAlwaysLeft);
    auto *description = new QLabel(tr("选择 Quillora 的界面语言"), frame);
    description->setObjectName(QStringLiteral("languageDescription"));
    description->setAlignment(kAlwaysLeft);

    auto *layout = new QVBoxLayout(frame);
    layout->setContentsMargins(28, 26, 28, 24);
    layout->setSpacing(0);
    layout->addWidget(title);
    layout->addSpacing(6);
    layout->addWidget(description);
    layout->addSpacing(20);
    layout->addLayout(createCards());
    layout->addSpacing(24);
    layout->addLayout(createButtons());
    return frame;
}

QGridLayout *LanguageDialog::createCards()
{
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(kCardSpacing);
    grid->setVerticalSpacing(kCardSpacing);
    const QString current = LanguageManager::instance()->currentLanguage();
    int position = 0;
    for (const Language &language : languageTable()) {
        const QString code = language.code;
        auto *card = new QRadioButton(
            QStringLiteral("%1\n%2").arg(tr(language.name), languageTag(code)), this);
        card->setProperty(kCodeProperty, code);
        card->setMinimumHeight(kCardHeight);
        card->setCursor(Qt::PointingHandCursor);
        card->setChecked(code == current);
        m_cards->addButton(card, position);
        grid->addWidget(card, position / kCardColumns, position % kCardColumns);
        ++position;
    }
    for (int column = 0; column < kCardColumns; ++column) {
        grid->setColumnStretch(column, 1);
    }
    return grid;
}

QHBoxLayout *LanguageDialog::createButtons()
{
    auto *cancelButton = new QPushButton(tr("取消"), this);
    cancelButton->setObjectName(QStringLiteral("languageCancelButton"));
    cancelButton->setMinimumSize(kButtonSize);
    cancelButton->setCursor(Qt::PointingHandCursor);
    cancelButton->setFocusPolicy(Qt::NoFocus);
    cancelButton->setAutoDefault(false);
    connect(cancelButton, &QPushButton::clicked, this, &LanguageDialog::reject);

    m_applyButton->setObjectName(QStringLiteral("languageApplyButton"));
    m_applyButton->setMinimumSize(kButtonSize);
    m_applyButton->setCursor(Qt::PointingHandCursor);
    m_applyButton->setFocusPolicy(Qt::NoFocus);
    m_applyButton->setDefault(true);
    connect(m_applyButton, &QPushButton::clicked, this, &LanguageDialog::apply);

    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    row->addStretch(1);
    row->addWidget(cancelButton);
    row->addWidget(m_applyButton);
    return row;
}

void LanguageDialog::apply()
{
    const QAbstractButton *card = m_cards->checkedButton();
    if (card == nullptr) {
        return;
    }
    const QString code = card->property(kCodeProperty).toString();
    if (code == LanguageManager::instance()->currentLanguage()) {
        accept();
        return;
    }
    const QString name = card->text().section(QLatin1Char('\n'), 0, 0);
    const int answer = ModernMessageBox::question(
        this, tr("切换语言？"), tr("界面语言将切换为“%1”。").arg(name),
        tr("当前打开的工具标签页将关闭。"), tr("切换"), tr("取消"), ModernMessageBox::Information);
    if (answer != ModernMessageBox::Confirmed) {
        return;
    }
    if (!LanguageManager::instance()->setLanguage(code)) {
        ModernMessageBox::showError(this, tr("无法切换语言"), tr("未能加载所选语言的翻译文件。"),
                                    QString());
        return;
    }
    accept();
}
