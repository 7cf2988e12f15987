// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "taskcenter/task_center.h"
#include "tests/support/dialog_answers.h"
#include "tools/files/file_drop_zone_widget.h"
#include "tools/office_to_pdf_page.h"
#include "tools/options/tool_options_panel.h"
#include "tools/pdf_merge_page.h"
#include "tools/pdf_to_office_page.h"
#include "widgets/modern_message_box.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QStandardPaths>
#include <QTest>
#include <QUrl>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using NewPage = std::function<ToolPage *()>;

const QString kFile = u"/files/a.pdf"_s;

/// Lets a file be dragged in; true if it would be taken.
bool dragIn(QWidget &target, const QMimeData &data)
{
    QDragEnterEvent event({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(&target, &event);
    return event.isAccepted() && event.dropAction() == Qt::CopyAction;
}

/// Drops a file as another program does, which goes on when this returns; true if it was taken.
bool drop(QWidget &target)
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(kFile)});
    if (!dragIn(target, data)) {
        return false;
    }
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(&target, &event);
    return event.isAccepted() && event.dropAction() == Qt::CopyAction;
}

} // namespace

/// What becomes of files that are dropped on the page of a tool.
class TestToolDrops final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void whoDropsFilesGoesOnBeforeTheyAreListed_data();
    void whoDropsFilesGoesOnBeforeTheyAreListed();
    void whoDropsFilesGoesOnBeforeABoxOpens_data();
    void whoDropsFilesGoesOnBeforeABoxOpens();
    void tasksTakeNoDrops();
};

void TestToolDrops::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    initResources();
}

void TestToolDrops::whoDropsFilesGoesOnBeforeTheyAreListed_data()
{
    QTest::addColumn<bool>("onDropZone");
    QTest::newRow("drop zone") << true;
    QTest::newRow("options") << false;
}

void TestToolDrops::whoDropsFilesGoesOnBeforeTheyAreListed()
{
    QFETCH(const bool, onDropZone);
    PdfMergePage page;
    QWidget *target = page.optionsPanel()->parentWidget();
    if (onDropZone) {
        target = page.findChild<FileDropZoneWidget *>();
    }
    QVERIFY(drop(*target));
    QVERIFY(page.inputFiles().isEmpty());
    QTRY_COMPARE(page.inputFiles(), QStringList{kFile});
}

void TestToolDrops::whoDropsFilesGoesOnBeforeABoxOpens_data()
{
    QTest::addColumn<NewPage>("newPage");
    QTest::newRow("to Office") << NewPage([] { return new PdfToOfficePage; });
    QTest::newRow("from Office") << NewPage([] { return new OfficeToPdfPage; });
}

void TestToolDrops::whoDropsFilesGoesOnBeforeABoxOpens()
{
    QFETCH(const NewPage, newPage);
    const std::unique_ptr<ToolPage> page(newPage());
    const DialogAnswers answers;
    QVERIFY(drop(*page->findChild<FileDropZoneWidget *>()));
    QVERIFY(answers.seen().isEmpty());
    QTRY_COMPARE(answers.kinds(), QList<int>{ModernMessageBox::Information});
}

void TestToolDrops::tasksTakeNoDrops()
{
    PdfMergePage page;
    QVERIFY(drop(*page.optionsPanel()->parentWidget()));
    QTRY_COMPARE(page.inputFiles(), QStringList{kFile});
    page.onStart();
    QTRY_COMPARE(TaskCenter::instance().unfinishedTasks(), 0);
    QVERIFY(page.inputFiles().isEmpty());
    // Nothing says that files would be taken.
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(kFile)});
    QVERIFY(!dragIn(*page.optionsPanel()->parentWidget(), data));
}

QTEST_MAIN(TestToolDrops)
#include "tst_tool_drops.moc"
