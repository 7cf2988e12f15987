// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/bars/pdf_top_tool_bar.h"

#include "pdf/viewer/bars/bar_metrics.h"
#include "pdf/viewer/bars/pdf_tools_menu_style.h"
#include "pdf/viewer/bars/tool_bar_button.h"
#include "pdf/viewer/common/rounded_popup_menu.h"
#include "widgets/icon_paths.h"
#include "widgets/popup_hover.h"
#include "widgets/theme.h"

#include <QAction>
#include <QButtonGroup>
#include <QEvent>
#include <QHBoxLayout>
#include <QIcon>
#include <QSignalBlocker>

#include <array>

namespace {

constexpr int kMinimumHeight = 58;
constexpr QMargins kMargins{12, 8, 12, 8};
constexpr int kSpacing = 4;
constexpr int kGroupSpacing = 3;
constexpr int kWideSpacing = 8;
constexpr int kModeSpacing = 10;

constexpr QSize kViewModeGroupSize{98, 42};
constexpr QSize kViewModeButtonSize{48, 40};
constexpr QSize kThumbnailButtonSize{48, 42};
constexpr QSize kToolsButtonSize{110, 42};
constexpr int kHandButtonWidth = 40;
constexpr QSize kLargeIconSize{27, 27};
constexpr int kMoreMenuGap = 2;

constexpr QLatin1String kHandToolId{"hand"};

// For buttons only, as the tool tip of a button takes the button's style sheet too.
constexpr QLatin1String kIconStyleSheet{"QPushButton { qproperty-icon: url(%1); }"};

// %1 white, %2 ink, %3 border, %4 hovered, %5 pressed, %6 disabled text, %7 and %8 chosen entry and
// its text, %9 ink of the tools button, %10 radius of the menus
constexpr QLatin1String kStyleSheet{R"(
#pdfTopToolBar { background: %1; }
QPushButton {
    min-height: 36px; padding: 0 11px; color: %2; background: transparent;
    border: 1px solid transparent; border-radius: 7px; font-size: 13px;
}
QPushButton:hover { background: %4; border-color: %3; }
QPushButton:pressed { background: %5; border-color: %3; }
QPushButton:checked { color: %8; background: #E8F0FF; border-color: #D7E3FF; }
QPushButton:disabled { color: %6; background: transparent; border-color: transparent; }
QPushButton#pdfHandToolButton { padding: 0; }
QPushButton#pdfThumbnailButton {
    min-width: 46px; min-height: 40px; padding: 0; border-radius: 8px;
}
#pdfViewModeGroup { background: %1; border: 1px solid #DCE1E8; border-radius: 8px; }
#pdfViewModeGroup QPushButton {
    min-width: 48px; min-height: 40px; padding: 0; border: none; border-radius: 0;
}
#pdfViewModeGroup QPushButton:checked { background: #E5EEFF; }
QPushButton#pdfDocumentViewButton {
    min-width: 47px; border-right: 1px solid #DCE1E8;
    border-top-left-radius: 7px; border-bottom-left-radius: 7px;
}
QPushButton#pdfPageManageViewButton {
    border-top-right-radius: 7px; border-bottom-right-radius: 7px;
}
QPushButton#pdfToolsButton {
    min-width: 70px; min-height: 40px; padding: 0 27px 0 11px; color: %9;
    background: #F4F4F5; border-radius: 8px; font-size: 16px;
}
QPushButton#pdfToolsButton:hover { background: #EDEEF1; }
QPushButton#pdfToolsButton:pressed, QPushButton#pdfToolsButton:open { background: #E4E6EA; }
QPushButton#pdfToolsButton:disabled { color: %6; }
QPushButton#pdfToolsButton::menu-indicator {
    image: url(:/res/icons/modern/chevron-down.png); width: 14px; height: 14px;
    subcontrol-origin: padding; subcontrol-position: right center; right: 8px;
}
#pdfToolbarSeparator { background: %3; }
QMenu {
    color: %2; background: %1; border: 1px solid %3; border-radius: %10px; padding: 7px;
    font-size: 14px;
}
QMenu::item {
    min-width: 210px; min-height: 34px; color: %2; background: transparent;
    padding: 0 16px 0 14px; border-radius: 6px;
}
QMenu::item:selected { color: %8; background: %7; }
QMenu::icon { left: 8px; }
)"};

// %1 white, %2 ink, %3 border, %4 and %5 chosen entry and its text, %6 radius
constexpr QLatin1String kToolsMenuStyleSheet{R"(
QMenu {
    color: %2; background: %1; border: 1px solid %3; border-radius: %6px; padding: 7px;
}
QMenu::item {
    min-width: 210px; min-height: 38px; margin: 2px 5px; padding: 3px 16px 3px 8px;
    border-radius: 6px;
}
QMenu::item:selected { color: %5; background: %4; }
QMenu::icon { width: 28px; height: 28px; left: 8px; }
QMenu::separator { height: 1px; background: %3; margin: 5px 10px; }
)"};

void setIconPath(QPushButton *button, QLatin1String path)
{
    button->setStyleSheet(QString(kIconStyleSheet).arg(path));
}

/// For buttons whose meaning is in the icon and the tool tip.
void dropText(QPushButton *button)
{
    button->setAccessibleName(button->text());
    button->setText(QString());
}

} // namespace

struct PdfTopToolBar::Command
{
    ToolBarButton *PdfTopToolBar::*button;
    QLatin1String objectName;
    const char *text; ///< Null for a button with an icon only.
    const char *toolTip;
    QLatin1String iconPath;
    bool checkable;
    /// What a click asks for; null if that takes more than a click.
    void (PdfTopToolBar::*request)();
};

struct PdfTopToolBar::AnnotationAction
{
    QLatin1String id;
    QLatin1String objectName;
    const char *toolTip;
    QLatin1String iconPath;
};

struct PdfTopToolBar::MenuEntry
{
    const char *text; ///< Null for a separator.
    QLatin1String iconPath;
    void (PdfTopToolBar::*request)();
};

PdfTopToolBar::PdfTopToolBar(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("pdfTopToolBar"));
    setAttribute(Qt::WA_StyledBackground);
    setMinimumHeight(kMinimumHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    createButtons();
    createButtonGroups();
    createHandToolGroup();
    createMenus();
    connectToggles();
    buildLayout();
    setStyleSheet(QString(kStyleSheet)
                      .arg(Theme::white.name(), Theme::ink.name(), Theme::border.name(),
                           Theme::hover.name(), Theme::pressed.name(), Theme::textDisabled.name(),
                           Theme::accentTint.name(), Theme::chosen.name(), Theme::inkNeutral.name(),
                           QString::number(RoundedPopupMenu::kCornerRadius)));

    setViewMode(static_cast<int>(PdfViewMode::DocumentView));
    setThumbnailChecked(true);
    setSelectionActionsEnabled(false);
    setUndoRedoEnabled(false, false);
}

PdfTopToolBar::~PdfTopToolBar() = default;

void PdfTopToolBar::setViewMode(int mode)
{
    m_viewMode = static_cast<PdfViewMode>(mode);
    const bool documentShown = m_viewMode == PdfViewMode::DocumentView;
    m_viewModeGroup->setExclusive(false);
    m_documentViewButton->setChecked(documentShown);
    m_pageManageViewButton->setChecked(m_viewMode == PdfViewMode::PageManageView);
    m_viewModeGroup->setExclusive(true);
    m_handToolGroup->setVisible(documentShown);
    m_thumbnailButton->setVisible(documentShown);
    m_pageEditGroup->setVisible(!documentShown);
    fitTexts();
}

void PdfTopToolBar::setWorkspaceMode(int mode)
{
    m_workspaceMode = static_cast<PdfWorkspaceMode>(mode);
    m_workspaceModeGroup->setExclusive(false);
    m_insertButton->setChecked(m_workspaceMode == PdfWorkspaceMode::InsertMode);
    m_extractButton->setChecked(m_workspaceMode == PdfWorkspaceMode::ExtractMode);
    m_splitButton->setChecked(m_workspaceMode == PdfWorkspaceMode::SplitMode);
    m_workspaceModeGroup->setExclusive(true);
}

void PdfTopToolBar::setDocumentActionsEnabled(bool enabled)
{
    for (QWidget *part :
         std::initializer_list<QWidget *>{m_pageManageViewButton, m_thumbnailButton, m_toolsButton,
                                          m_handToolGroup, m_pageEditGroup, m_moreButton}) {
        part->setEnabled(enabled);
    }
}

void PdfTopToolBar::setSelectionActionsEnabled(bool enabled)
{
    for (QWidget *button : {m_rotateLeftButton, m_rotateRightButton, m_deleteButton}) {
        button->setEnabled(enabled);
    }
}

void PdfTopToolBar::setUndoRedoEnabled(bool canUndo, bool canRedo)
{
    m_undoButton->setEnabled(canUndo);
    m_redoButton->setEnabled(canRedo);
}

void PdfTopToolBar::setThumbnailChecked(bool checked)
{
    const QSignalBlocker blocker(m_thumbnailButton);
    m_thumbnailButton->setChecked(checked);
}

void PdfTopToolBar::setSelectAllChecked(bool checked)
{
    // The icon is a style sheet, which is too dear to be set for every change of the selection.
    if (m_selectAllButton->isChecked() == checked) {
        return;
    }
    const QSignalBlocker blocker(m_selectAllButton);
    m_selectAllButton->setChecked(checked);
    updateSelectAllIcon();
}

bool PdfTopToolBar::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        fitTexts();
    }
    return handled;
}

void PdfTopToolBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    fitTexts();
}

void PdfTopToolBar::createButtons()
{
    using Bar = PdfTopToolBar;
    static constexpr std::array<Command, 14> kCommands{{
        {&Bar::m_documentViewButton, QLatin1String("pdfDocumentViewButton"), QT_TR_NOOP("文档"),
         QT_TR_NOOP("文档阅读视图"), QLatin1String(":/res/icons/pdfviewer/document-view.png"), true,
         &Bar::documentViewRequested},
        {&Bar::m_pageManageViewButton, QLatin1String("pdfPageManageViewButton"), QT_TR_NOOP("页面"),
         QT_TR_NOOP("页面管理视图"), QLatin1String(":/res/icons/pdfviewer/page-grid.png"), true,
         &Bar::pageManageViewRequested},
        {&Bar::m_thumbnailButton, QLatin1String("pdfThumbnailButton"), nullptr,
         QT_TR_NOOP("显示或隐藏缩略图"), QLatin1String(":/res/icons/pdfviewer/thumbnail-panel.png"),
         true, nullptr},
        {&Bar::m_toolsButton, QLatin1String("pdfToolsButton"), QT_TR_NOOP("工具"),
         QT_TR_NOOP("PDF 工具"), QLatin1String(":/res/icons/pdfviewer/tools-grid.png"), false,
         nullptr},
        {&Bar::m_insertButton, QLatin1String("pdfInsertButton"), QT_TR_NOOP("插入"),
         QT_TR_NOOP("插入 PDF 或空白页"), QLatin1String(":/res/icons/modern/add-file.png"), true,
         &Bar::insertModeRequested},
        {&Bar::m_extractButton, QLatin1String("pdfExtractButton"), QT_TR_NOOP("提取"),
         QT_TR_NOOP("提取选定页面"), QLatin1String(":/res/icons/modern/open-file.png"), true,
         &Bar::extractModeRequested},
        {&Bar::m_splitButton, QLatin1String("pdfSplitButton"), QT_TR_NOOP("拆分"),
         QT_TR_NOOP("拆分 PDF"), QLatin1String(":/res/icons/modern/merge.png"), true,
         &Bar::splitModeRequested},
        {&Bar::m_rotateLeftButton, QLatin1String("pdfRotateLeftButton"), nullptr,
         QT_TR_NOOP("向左旋转"), QLatin1String(":/res/icons/pdfviewer/rotate-left.png"), false,
         &Bar::rotateLeftRequested},
        {&Bar::m_rotateRightButton, QLatin1String("pdfRotateRightButton"), nullptr,
         QT_TR_NOOP("向右旋转"), QLatin1String(":/res/icons/pdfviewer/rotate-right.png"), false,
         &Bar::rotateRightRequested},
        {&Bar::m_deleteButton, QLatin1String("pdfDeleteButton"), nullptr,
         QT_TR_NOOP("删除选定页面"), QLatin1String(":/res/icons/modern/trash.png"), false,
         &Bar::deleteRequested},
        {&Bar::m_selectAllButton, QLatin1String("pdfSelectAllButton"), QT_TR_NOOP("全选"),
         QT_TR_NOOP("选择全部页面"), kUncheckedIcon, true, nullptr},
        {&Bar::m_undoButton, QLatin1String("pdfUndoButton"), nullptr, QT_TR_NOOP("撤销"),
         QLatin1String(":/res/icons/pdfviewer/undo.png"), false, &Bar::undoRequested},
        {&Bar::m_redoButton, QLatin1String("pdfRedoButton"), nullptr, QT_TR_NOOP("重做"),
         QLatin1String(":/res/icons/pdfviewer/redo.png"), false, &Bar::redoRequested},
        {&Bar::m_moreButton, QLatin1String("pdfMoreButton"), nullptr, QT_TR_NOOP("更多"),
         QLatin1String(":/res/icons/pdfviewer/more.png"), false, nullptr},
    }};
    for (const Command &command : kCommands) {
        ToolBarButton *button =
            createButton(command.text != nullptr ? tr(command.text) : QString(),
                         tr(command.toolTip), command.iconPath, command.checkable);
        button->setObjectName(command.objectName);
        if (command.request != nullptr) {
            connect(button, &QPushButton::clicked, this, command.request);
        }
        this->*command.button = button;
    }
    for (ToolBarButton *button : {m_documentViewButton, m_pageManageViewButton}) {
        dropText(button);
        button->setFixedSize(kViewModeButtonSize);
    }
    for (ToolBarButton *button :
         {m_documentViewButton, m_pageManageViewButton, m_thumbnailButton, m_toolsButton}) {
        button->setIconSize(kLargeIconSize);
    }
    m_thumbnailButton->setFixedSize(kThumbnailButtonSize);
    // Longer translations make the tools button wider rather than being cut off.
    m_toolsButton->setMinimumWidth(kToolsButtonSize.width());
    m_toolsButton->setFixedHeight(kToolsButtonSize.height());
    m_toolsButton->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

void PdfTopToolBar::createButtonGroups()
{
    m_viewModeGroup = new QButtonGroup(this);
    m_viewModeGroup->addButton(m_documentViewButton);
    m_viewModeGroup->addButton(m_pageManageViewButton);

    m_workspaceModeGroup = new QButtonGroup(this);
    m_workspaceModeGroup->addButton(m_insertButton);
    m_workspaceModeGroup->addButton(m_extractButton);
    m_workspaceModeGroup->addButton(m_splitButton);
}

void PdfTopToolBar::createHandToolGroup()
{
    static constexpr std::array<AnnotationAction, 1> kActions{{
        {kHandToolId, QLatin1String("pdfHandToolButton"), QT_TR_NOOP("手形工具"),
         QLatin1String(":/res/icons/pdfviewer/hand.png")},
    }};
    m_handToolGroup = new QWidget(this);
    m_handToolGroup->setObjectName(QStringLiteral("pdfHandToolGroup"));
    auto *layout = new QHBoxLayout(m_handToolGroup);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kGroupSpacing);
    for (const AnnotationAction &action : kActions) {
        layout->addWidget(createAnnotationButton(action));
    }
}

void PdfTopToolBar::createMenus()
{
    using Bar = PdfTopToolBar;
    static constexpr std::array<MenuEntry, 10> kToolsEntries{{
        {QT_TR_NOOP("压缩"), QLatin1String(":/res/icons/modern/compress.png"),
         &Bar::compressRequested},
        {QT_TR_NOOP("PDF 转为 Office"), QLatin1String(":/res/icons/modern/convert.png"),
         &Bar::convertToOfficeRequested},
        {QT_TR_NOOP("PDF 转为图像"), QLatin1String(":/res/icons/modern/image.png"),
         &Bar::convertToImagesRequested},
        {QT_TR_NOOP("加密 PDF"), QLatin1String(":/res/icons/modern/encrypt.png"),
         &Bar::encryptRequested},
        {QT_TR_NOOP("解锁 PDF"), QLatin1String(":/res/icons/modern/decrypt.png"),
         &Bar::decryptRequested},
        {QT_TR_NOOP("页面编号"), QLatin1String(":/res/icons/modern/file-pdf.png"),
         &Bar::pageNumberRequested},
        {nullptr, QLatin1String(), nullptr},
        {QT_TR_NOOP("插入"), QLatin1String(":/res/icons/modern/add-file.png"),
         &Bar::insertModeRequested},
        {QT_TR_NOOP("提取"), QLatin1String(":/res/icons/modern/open-file.png"),
         &Bar::extractModeRequested},
        {QT_TR_NOOP("拆分"), QLatin1String(":/res/icons/modern/merge.png"),
         &Bar::splitModeRequested},
    }};
    static constexpr std::array<MenuEntry, 4> kMoreEntries{{
        {QT_TR_NOOP("保存文件"), QLatin1String(":/res/icons/modern/save.png"), &Bar::saveRequested},
        {QT_TR_NOOP("将文件保存为…"), QLatin1String(":/res/icons/modern/save-as.png"),
         &Bar::saveAsRequested},
        {QT_TR_NOOP("打印"), QLatin1String(":/res/icons/modern/print.png"), &Bar::printRequested},
        {QT_TR_NOOP("在文件夹中显示"), kFolderIcon, &Bar::revealInFolderRequested},
    }};

    m_toolsMenu = new RoundedPopupMenu(this);
    m_toolsMenu->setObjectName(QStringLiteral("pdfToolsMenu"));
    auto *style = new PdfToolsMenuStyle;
    style->setParent(m_toolsMenu);
    m_toolsMenu->setStyle(style);
    m_toolsMenu->setStyleSheet(QString(kToolsMenuStyleSheet)
                                   .arg(Theme::white.name(), Theme::ink.name(),
                                        Theme::border.name(), Theme::accentTint.name(),
                                        Theme::chosen.name(),
                                        QString::number(RoundedPopupMenu::kCornerRadius)));
    for (const MenuEntry &entry : kToolsEntries) {
        addEntry(m_toolsMenu, entry);
    }
    m_toolsButton->setMenu(m_toolsMenu);
    endHoverWithPopup(*m_toolsMenu, *m_toolsButton);

    m_moreMenu = new RoundedPopupMenu(this);
    m_moreMenu->setObjectName(QStringLiteral("pdfMoreMenu"));
    for (const MenuEntry &entry : kMoreEntries) {
        addEntry(m_moreMenu, entry);
    }
    connect(m_moreButton, &QPushButton::clicked, this, &PdfTopToolBar::popUpMoreMenu);
    endHoverWithPopup(*m_moreMenu, *m_moreButton);
}

void PdfTopToolBar::connectToggles()
{
    connect(m_thumbnailButton, &QPushButton::toggled, this, &PdfTopToolBar::thumbnailToggled);
    connect(m_selectAllButton, &QPushButton::toggled, this, [this](bool checked) {
        updateSelectAllIcon();
        emit selectAllToggled(checked);
    });
}

void PdfTopToolBar::buildLayout()
{
    auto *viewModeFrame = new QWidget(this);
    viewModeFrame->setObjectName(QStringLiteral("pdfViewModeGroup"));
    viewModeFrame->setAttribute(Qt::WA_StyledBackground);
    viewModeFrame->setFixedSize(kViewModeGroupSize);
    auto *viewModeLayout = new QHBoxLayout(viewModeFrame);
    viewModeLayout->setContentsMargins(1, 1, 1, 1);
    viewModeLayout->setSpacing(0);
    viewModeLayout->addWidget(m_documentViewButton);
    viewModeLayout->addWidget(m_pageManageViewButton);

    m_pageEditGroup = createPageEditGroup();

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(kMargins);
    layout->setSpacing(kSpacing);
    layout->addWidget(viewModeFrame);
    layout->addSpacing(kWideSpacing);
    layout->addWidget(m_thumbnailButton);
    layout->addSpacing(kWideSpacing);
    layout->addWidget(m_toolsButton);
    layout->addWidget(createSeparator());
    layout->addWidget(m_handToolGroup);
    layout->addWidget(m_pageEditGroup);
    layout->addStretch(1);
    layout->addWidget(m_undoButton);
    layout->addWidget(m_redoButton);
    layout->addWidget(createSeparator());
    layout->addWidget(m_moreButton);
}

ToolBarButton *PdfTopToolBar::createButton(const QString &text, const QString &toolTip,
                                           const QString &iconPath, bool checkable)
{
    auto *button = new ToolBarButton(this);
    button->setText(text);
    button->setToolTip(toolTip);
    button->setAccessibleName(text.isEmpty() ? toolTip : text);
    button->setCheckable(checkable);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::NoFocus);
    button->setStyleSheet(QString(kIconStyleSheet).arg(iconPath));
    button->setIconSize(kBarIconSize);
    return button;
}

ToolBarButton *PdfTopToolBar::createAnnotationButton(const AnnotationAction &action)
{
    ToolBarButton *button = createButton(QString(), tr(action.toolTip), action.iconPath, true);
    button->setObjectName(action.objectName);
    button->setFixedWidth(kHandButtonWidth);
    if (action.id == kHandToolId) {
        connect(button, &QPushButton::toggled, this, &PdfTopToolBar::handToolToggled);
    } else {
        connect(button, &QPushButton::clicked, this,
                [this, id = QString(action.id)] { emit annotationActionRequested(id); });
    }
    return button;
}

QWidget *PdfTopToolBar::createSeparator()
{
    auto *separator = new QWidget(this);
    separator->setObjectName(QStringLiteral("pdfToolbarSeparator"));
    separator->setAttribute(Qt::WA_StyledBackground);
    separator->setFixedSize(kBarSeparatorSize);
    return separator;
}

QWidget *PdfTopToolBar::createPageEditGroup()
{
    auto *group = new QWidget(this);
    group->setObjectName(QStringLiteral("pdfPageEditGroup"));
    auto *layout = new QHBoxLayout(group);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kGroupSpacing);
    for (QWidget *button : {m_insertButton, m_extractButton, m_splitButton}) {
        layout->addWidget(button);
    }
    layout->addSpacing(kModeSpacing);
    for (QWidget *button :
         {m_rotateLeftButton, m_rotateRightButton, m_deleteButton, m_selectAllButton}) {
        layout->addWidget(button);
    }
    return group;
}

void PdfTopToolBar::addEntry(QMenu *menu, const MenuEntry &entry)
{
    if (entry.text == nullptr) {
        menu->addSeparator();
        return;
    }
    const QAction *action = menu->addAction(QIcon(entry.iconPath), tr(entry.text));
    connect(action, &QAction::triggered, this,
            [this, request = entry.request] { emit(this->*request)(); });
}

void PdfTopToolBar::popUpMoreMenu()
{
    const QPoint offset(m_moreButton->width() - m_moreMenu->sizeHint().width(),
                        m_moreButton->height() + kMoreMenuGap);
    m_moreMenu->popup(m_moreButton->mapToGlobal(offset));
}

void PdfTopToolBar::updateSelectAllIcon()
{
    setIconPath(m_selectAllButton, m_selectAllButton->isChecked() ? kCheckedIcon : kUncheckedIcon);
    m_selectAllButton->repaint();
}

void PdfTopToolBar::fitTexts()
{
    const std::array<ToolBarButton *, 3> modeButtons{m_insertButton, m_extractButton,
                                                     m_splitButton};
    int fullWidth = layout()->sizeHint().width();
    const auto addHiddenText = [this, &fullWidth](const ToolBarButton *button) {
        fullWidth += button->isTextShown() || m_pageEditGroup->isHidden() ? 0 : button->textWidth();
    };
    addHiddenText(m_selectAllButton);
    for (const ToolBarButton *button : modeButtons) {
        addHiddenText(button);
    }

    m_selectAllButton->setTextShown(fullWidth <= width());
    const bool modeTextsShown = fullWidth - m_selectAllButton->textWidth() <= width();
    for (ToolBarButton *button : modeButtons) {
        button->setTextShown(modeTextsShown);
    }
}
