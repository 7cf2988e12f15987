// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/options/tool_options_panel.h"

#include "tools/common/separator_line.h"
#include "widgets/icon_button.h"
#include "widgets/modern_combo_box.h"
#include "widgets/scroll_bar_style.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QLabel>
#include <QListWidgetItem>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace {

constexpr int kTitleSize = 18;
constexpr int kHeadingSize = 14;
constexpr int kTextSize = 14;
constexpr int kNoteSize = 12;
constexpr int kBoxHeight = 48;
constexpr int kStartHeight = 45;

constexpr int kSide = 20;
constexpr int kTop = 20;
constexpr int kBottom = 16;
constexpr int kSpacing = 8;
constexpr int kSectionGap = 16;
constexpr int kPartGap = 12;
constexpr int kScrollBarWidth = 8;

// %1 white, %2 texts, %3 notes, %4 scroll bars
constexpr QLatin1String kStyleSheet{R"(
QWidget#toolOptionsPanel, QWidget#toolOptionsSections { background: %1; }
QScrollArea#toolOptionsScrollArea { background: transparent; border: none; }
QLabel#toolOptionsTitle, QLabel#toolOptionsHeading, QLabel#toolOptionsText { color: %2; background: transparent; }
QLabel#toolOptionsNote { color: %3; background: transparent; }
%4
)"};

QLabel *textLabel(const QString &name, const QString &text, const QFont &font, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setFont(font);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(leadingSide(parent->layoutDirection()) | Qt::AlignVCenter);
    return label;
}

QLabel *headingLabel(const QString &text, QWidget *parent)
{
    return textLabel(QStringLiteral("toolOptionsHeading"), text,
                     widgetFont(kHeadingSize | kBoldFont), parent);
}

} // namespace

ToolOptionsPanel::ToolOptionsPanel(const QString &title, const QString &startText,
                                   OutputLocation::Source source, QWidget *parent)
    : QWidget(parent)
    , m_location(OutputLocation::createBox(source, this))
{
    setObjectName(QStringLiteral("toolOptionsPanel"));
    setAttribute(Qt::WA_StyledBackground);
    setFixedWidth(kWidth);
    ScrollBarLook scrollBar;
    scrollBar.thickness = kScrollBarWidth;
    setStyleSheet(kStyleSheet.arg(Theme::white.name(), Theme::ink.name(),
                                  Theme::textSecondary.name(), scrollBarStyleSheet(scrollBar)));

    auto *sections = new QWidget(this);
    sections->setObjectName(QStringLiteral("toolOptionsSections"));
    m_sections = new QVBoxLayout;
    m_sections->setContentsMargins(0, 0, 0, 0);
    m_sections->setSpacing(kSpacing);
    auto *inset = new QVBoxLayout(sections);
    inset->setContentsMargins(kSide, 0, kSide, 0);
    inset->addLayout(m_sections);
    inset->addSpacing(kPartGap);
    inset->addStretch();
    auto *scrollArea = new QScrollArea(this);
    scrollArea->setObjectName(QStringLiteral("toolOptionsScrollArea"));
    scrollArea->setWidgetResizable(true);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea->setFocusPolicy(Qt::NoFocus);
    scrollArea->setWidget(sections);
    // Shows that sections which are cut off there go on.
    QLabel *cut = createSeparator(Qt::Horizontal, this);
    cut->hide();
    // The bar takes its room from the margin, so that all controls of the panel end at one line.
    connect(scrollArea->verticalScrollBar(), &QScrollBar::rangeChanged, inset,
            [inset, cut](int minimum, int maximum) {
                const bool scrolls = maximum > minimum;
                cut->setVisible(scrolls);
                inset->setContentsMargins(kSide, 0, kSide - (scrolls ? kScrollBarWidth : 0), 0);
            });

    auto *start = new IconButton(startText, this);
    start->setObjectName(QStringLiteral("toolStartButton"));
    start->setFillColor(Theme::accent);
    start->setHoverFillColor(Theme::accentHover);
    start->setFixedHeight(kStartHeight);
    connect(start, &IconButton::clicked, this, &ToolOptionsPanel::startClicked);

    auto *top = new QVBoxLayout;
    top->setContentsMargins(kSide, 0, kSide, 0);
    top->addWidget(textLabel(QStringLiteral("toolOptionsTitle"), title,
                             widgetFont(kTitleSize | kBoldFont), this));
    auto *bottom = new QVBoxLayout;
    bottom->setContentsMargins(kSide, 0, kSide, 0);
    bottom->setSpacing(kSpacing);
    bottom->addWidget(headingLabel(tr("文件位置"), this));
    bottom->addWidget(m_location);
    bottom->addSpacing(kPartGap - kSpacing);
    bottom->addWidget(start);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, kTop, 0, kBottom);
    column->setSpacing(0);
    column->addLayout(top);
    column->addSpacing(kPartGap);
    column->addWidget(scrollArea, 1);
    column->addWidget(cut);
    column->addSpacing(kPartGap);
    column->addLayout(bottom);
}

TaskRequest ToolOptionsPanel::buildRequest() const
{
    TaskRequest request;
    OutputLocation::fill(*m_location, request);
    return request;
}

void ToolOptionsPanel::addHeading(const QString &text)
{
    if (m_sections->count() > 0) {
        m_sections->addSpacing(kSectionGap - kSpacing);
    }
    m_sections->addWidget(headingLabel(text, this));
}

void ToolOptionsPanel::addControl(QWidget *control)
{
    m_sections->addWidget(control);
}

void ToolOptionsPanel::addText(const QString &text)
{
    m_sections->addWidget(
        textLabel(QStringLiteral("toolOptionsText"), text, widgetFont(kTextSize), this));
}

void ToolOptionsPanel::addNote(const QString &text)
{
    m_sections->addWidget(
        textLabel(QStringLiteral("toolOptionsNote"), text, widgetFont(kNoteSize), this));
}

void ToolOptionsPanel::addSeparator()
{
    QLabel *line = createSeparator(Qt::Horizontal, this);
    m_sections->addSpacing(kSectionGap - kSpacing);
    m_sections->addWidget(line);
}

ModernComboBox *ToolOptionsPanel::addChoice(const QString &objectName, const QStringList &texts,
                                            int firstValue)
{
    auto *box = new ModernComboBox(this, true);
    box->setObjectName(objectName);
    box->setFixedHeight(kBoxHeight);
    int value = firstValue;
    for (const QString &text : texts) {
        box->addItem(text)->setData(kValueRole, value++);
    }
    box->setCurrentItem(box->item(0));
    m_sections->addWidget(box);
    return box;
}

int ToolOptionsPanel::valueOf(const ModernComboBox &box)
{
    return box.currentItem()->data(kValueRole).toInt();
}
