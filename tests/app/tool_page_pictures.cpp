// SPDX-License-Identifier: AGPL-3.0-or-later
// Makes pictures of the tool pages in all their states, to be looked at:
//
//   tool_page_pictures FOLDER LANGUAGE WIDTH HEIGHT FILE...
//
// The files are what the pages list; QT_SCALE_FACTOR sets the density of the pixels.
#include "app/frameless_window.h"
#include "app/language_manager.h"
#include "app/main_page.h"
#include "app/startup.h"
#include "taskcenter/task_center.h"
#include "tools/file_tool_page.h"
#include "tools/options/tool_options_panel.h"
#include "tools/tool_type.h"

#include <QApplication>
#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTest>

#include <cstdio>

namespace {

void take(QWidget &window, const QString &path)
{
    QTest::qWait(50);
    if (!window.grab().save(path)) {
        std::fprintf(stderr, "%s cannot be written\n", qPrintable(path));
    }
}

/// The page of a tool, empty, with files and with tasks.
void takeTool(FramelessWindow &window, int tool, const QString &base, const QStringList &files)
{
    auto *main = window.findChild<MainPage *>();
    main->openTool(tool);
    take(window, base + QStringLiteral("-1.png"));
    auto *page = qobject_cast<FileToolPage *>(
        main->findChild<QTabWidget *>(QStringLiteral("mainTabWidget"))->currentWidget());
    if (page == nullptr) {
        return;
    }
    for (const QString &file : files) {
        page->addInputFile(file);
    }
    take(window, base + QStringLiteral("-2.png"));
    page->onStart();
    static_cast<void>(
        QTest::qWaitFor([] { return TaskCenter::instance().unfinishedTasks() == 0; }, 60'000));
    take(window, base + QStringLiteral("-3.png"));
}

} // namespace

int main(int argc, char **argv)
{
    Startup::setAttributes();
    const QApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() < 4) {
        std::fputs("tool_page_pictures FOLDER LANGUAGE WIDTH HEIGHT FILE...\n", stderr);
        return 2;
    }
    const QString folder = arguments.takeFirst();
    const QString language = arguments.takeFirst();
    const int width = arguments.takeFirst().toInt();
    const int height = arguments.takeFirst().toInt();
    QStandardPaths::setTestModeEnabled(true);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder);
    Startup::setIdentity();
    LanguageManager::instance()->initialize();
    LanguageManager::instance()->setLanguage(language);
    Startup::setAppearance();
    QDir().mkpath(folder);

    const auto window = Startup::showMainWindow();
    window->resize(width, height);
    for (int tool = CompressPdfTool; tool <= MergePdfTool; ++tool) {
        takeTool(
            *window, tool,
            QDir(folder).filePath(QStringLiteral("%1-%2-%3").arg(language).arg(width).arg(tool)),
            arguments);
    }
    TaskCenter::instance().shutdown();
    return 0;
}
