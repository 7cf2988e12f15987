// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/main_page.h"

#include "app/custom_tab_bar.h"
#include "app/custom_tab_widget.h"
#include "app/home_page.h"
#include "app/tool_table.h"
#include "app/window_shape.h"
#include "pdf/viewer/pdf_show_page.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "taskcenter/task_center.h"
#include "widgets/icon_paths.h"
#include "widgets/modern_message_box.h"
#include "widgets/theme.h"

#include <QDir>
#include <QFileInfo>
#include <QIcon>
#include <QPointer>
#include <QTabBar>
#include <QVBoxLayout>

namespace {

constexpr char kToolTypeProperty[] = "plenvoToolType";
constexpr char kFilePathProperty[] = "plenvoFilePath";

// %1 background, %2 radius
constexpr QLatin1String kStyleSheet("QWidget#mainPage { background: %1;"
                                    " border-bottom-left-radius: %2px;"
                                    " border-bottom-right-radius: %2px; }");
// %1 background, %2 radius
constexpr QLatin1String kTabsStyleSheet(
    "QTabWidget#mainTabWidget, QTabWidget#mainTabWidget::pane {"
    " border-bottom-left-radius: %2px; border-bottom-right-radius: %2px; }"
    "QTabWidget#mainTabWidget SideNavigationBar { border-bottom-left-radius: %2px; }"
    "QTabWidget#mainTabWidget RecentFilesPage { background: %1;"
    " border-bottom-right-radius: %2px; }");

/// The path under which an open file is found again; empty if `path` names none.
QString normalizedFilePath(const QString &path)
{
    if (path.trimmed().isEmpty()) {
        return {};
    }
    const QFileInfo file(path);
    QString resolved = file.canonicalFilePath();
    if (resolved.isEmpty()) {
        resolved = file.absoluteFilePath();
    }
    return QDir::cleanPath(QDir::fromNativeSeparators(resolved));
}

} // namespace

MainPage::MainPage(QWidget *parent)
    : QWidget(parent)
    , m_tabs(new CustomTabWidget(this))
    , m_home(new HomePage(this))
{
    setObjectName(QStringLiteral("mainPage"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(
        kStyleSheet.arg(Theme::white.name(), QString::number(WindowShape::kCornerRadius)));

    m_tabs->setObjectName(QStringLiteral("mainTabWidget"));
    m_tabs->setStyleSheet(
        m_tabs->styleSheet() %
        kTabsStyleSheet.arg(Theme::white.name(), QString::number(WindowShape::kInnerCornerRadius)));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    const int homeIndex =
        m_tabs->addTab(m_home, QIcon(QStringLiteral(":/res/icons/modern/home.png")), tr("首页"));
    m_tabs->tabBar()->setTabData(homeIndex, CustomTabBar::kHomeTabData);
    layout->addWidget(m_tabs);

    connect(m_home, &HomePage::toolClicked, this, &MainPage::openTool);
    connect(m_home, &HomePage::openFile, this, &MainPage::openFile);
    connect(m_home, &HomePage::fileClicked, this, &MainPage::openFileInTab);
}

int MainPage::indexOfTool(int toolType) const
{
    for (int index = 0; index < m_tabs->count(); ++index) {
        const QVariant type = m_tabs->widget(index)->property(kToolTypeProperty);
        if (type.isValid() && type.toInt() == toolType) {
            return index;
        }
    }
    return -1;
}

void MainPage::openTool(int toolType)
{
    if (const int index = indexOfTool(toolType); index >= 0) {
        m_tabs->setCurrentIndex(index);
        return;
    }
    const Tool *tool = findTool(toolType);
    if (tool == nullptr) {
        return;
    }
    QWidget *page = tool->createPage(this);
    page->setProperty(kToolTypeProperty, toolType);
    const QString title = tr(tool->title);
    const int index = m_tabs->addTab(page, QIcon(tool->icon), title);
    m_tabs->setTabToolTip(index, title);
    m_tabs->setCurrentIndex(index);
}

void MainPage::openToolWithFile(int toolType, const QString &filePath)
{
    openTool(toolType);
    const int index = indexOfTool(toolType);
    if (index < 0) {
        return;
    }
    if (const Tool *tool = findTool(toolType); tool != nullptr && tool->addInputFile != nullptr) {
        tool->addInputFile(m_tabs->widget(index), filePath);
    }
}

void MainPage::openFileInTab(const QString &path)
{
    const QString normalizedPath = normalizedFilePath(path);
    if (normalizedPath.isEmpty()) {
        return;
    }
    if (const int index = indexOfFile(normalizedPath); index >= 0) {
        m_tabs->setCurrentIndex(index);
        return;
    }

    auto *page = new PdfShowPage(this);
    page->setProperty(kFilePathProperty, normalizedPath);
    if (!page->openFile(normalizedPath)) {
        page->deleteLater();
        return;
    }
    connect(page, &PdfShowPage::toolRequested, this, &MainPage::openToolWithFile);
    connect(page->viewer(), &PdfViewerWidget::documentSaved, this,
            [this, page](const QString &saved) { noteSaved(page, normalizedFilePath(saved)); });
    const int index = m_tabs->addTab(page, QIcon(kPdfFileIcon), QString());
    setFileOf(page, normalizedPath);
    m_tabs->setCurrentIndex(index);
}

void MainPage::setFileOf(QWidget *page, const QString &path)
{
    page->setProperty(kFilePathProperty, path);
    const int index = m_tabs->indexOf(page);
    m_tabs->setTabText(index, QFileInfo(path).fileName());
    m_tabs->setTabToolTip(index, QDir::toNativeSeparators(path));
}

void MainPage::noteSaved(QWidget *page, const QString &path)
{
    setFileOf(page, path);
    for (PdfShowPage *other : viewerPages()) {
        const bool showsThatFile =
            other != page &&
            QFileInfo(other->property(kFilePathProperty).toString()) == QFileInfo(path);
        if (!showsThatFile || other->viewer()->isModified()) {
            continue;
        }
        m_tabs->removeTab(m_tabs->indexOf(other));
        other->deleteLater();
    }
}

bool MainPage::maybeClose()
{
    const QPointer<MainPage> self(this);
    // Saving one document may close the tab of another.
    for (const QPointer<PdfShowPage> &page : viewerPages()) {
        if (page == nullptr || !page->viewer()->isModified()) {
            continue;
        }
        m_tabs->setCurrentWidget(page);
        const bool mayClose = page->viewer()->maybeSave();
        if (self == nullptr || !mayClose) {
            return false;
        }
    }
    return maybeStopTasks();
}

bool MainPage::maybeStopTasks()
{
    return TaskCenter::instance().unfinishedTasks() == 0 ||
           ModernMessageBox::question(this, tr("任务仍在进行"),
                                      tr("关闭程序将停止尚未完成的任务。"), QString(),
                                      tr("停止并关闭"), QString(),
                                      ModernMessageBox::Warning) == ModernMessageBox::Confirmed;
}

void MainPage::openFile(const QString &path)
{
    openFileInTab(path);
    m_home->recordFile(path);
}

QList<QPointer<PdfShowPage>> MainPage::viewerPages() const
{
    QList<QPointer<PdfShowPage>> pages;
    for (int index = 0; index < m_tabs->count(); ++index) {
        if (auto *page = qobject_cast<PdfShowPage *>(m_tabs->widget(index))) {
            pages.append(page);
        }
    }
    return pages;
}

int MainPage::indexOfFile(const QString &normalizedPath) const
{
    for (int index = 0; index < m_tabs->count(); ++index) {
        const QVariant path = m_tabs->widget(index)->property(kFilePathProperty);
        if (path.isValid() && path.toString().compare(normalizedPath, Qt::CaseInsensitive) == 0) {
            return index;
        }
    }
    return -1;
}
