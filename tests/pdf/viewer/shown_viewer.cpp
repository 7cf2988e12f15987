// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_viewer.h"

#include "res/resources.h"
#include "tests/pdf/viewer/page_numbers.h"
#include "tests/support/pdf_fixture.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QPushButton>
#include <QStackedWidget>
#include <QStandardPaths>

ShownViewer::ShownViewer(QSize size)
{
    QStandardPaths::setTestModeEnabled(true);
    initResources();
    viewer = std::make_unique<PdfViewerWidget>();
    viewer->resize(size);
    viewer->show();
    QCoreApplication::processEvents();
}

ShownViewer::~ShownViewer() = default;

QString ShownViewer::path(const QString &name) const
{
    return m_folder.filePath(name);
}

QString ShownViewer::add(const QString &name, const QByteArray &data) const
{
    QString file = path(name);
    return PdfFixture::write(file, data) ? file : QString();
}

bool ShownViewer::openPages(int count) const
{
    return viewer->openFile(add(QStringLiteral("report.pdf"), PdfFixture::pagesByNumber(count)),
                            {});
}

PdfWorkspaceMode ShownViewer::gridMode() const
{
    return part<PageManagerListView>().mode();
}

QStackedWidget &ShownViewer::views() const
{
    return *qobject_cast<QStackedWidget *>(view().parentWidget());
}

QPushButton &ShownViewer::button(const char *objectName) const
{
    return *viewer->findChild<QPushButton *>(QLatin1String(objectName));
}

QAction &ShownViewer::menuEntry(const char *menuName, const QString &text) const
{
    for (QAction *action : viewer->findChild<QMenu *>(QLatin1String(menuName))->actions()) {
        if (action->text() == text) {
            return *action;
        }
    }
    qFatal("no such entry: %ls", qUtf16Printable(text));
}

QList<int> ShownViewer::numbers() const
{
    return PageNumbers::numbersOf(model().sourcePages());
}

QList<int> ShownViewer::rotations() const
{
    QList<int> rotations;
    for (const PdfPageRecord &page : model().pages()) {
        rotations.append(page.rotation);
    }
    return rotations;
}

void ShownViewer::movePage(int row, int beforeRow) const
{
    model().moveRows({}, row, 1, {}, beforeRow);
    // A move becomes a step of the history as soon as the event loop runs.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
}

void ShownViewer::select(const QList<int> &rows) const
{
    QSet<PdfPageId> ids;
    for (const int row : rows) {
        ids.insert(idAt(row));
    }
    model().setSelectedPageIds(ids);
}
