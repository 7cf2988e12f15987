// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/window_picture.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QImage>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

class TestWindowPicture final : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void isOffUnlessRequested();
    void windowWithoutAViewerIsTakenWhenShown();
    void unwritableFileGivesOne();
    void timeoutTakesWhatIsThere();
    void timeoutInANestedLoopEndsIt();

private:
    QString picturePath() const { return m_folder.filePath(QStringLiteral("picture.png")); }

    QTemporaryDir m_folder;
    std::unique_ptr<QWidget> m_window;
};

void TestWindowPicture::init()
{
    QFile::remove(picturePath());
    m_window = std::make_unique<QWidget>();
    m_window->setStyleSheet(QStringLiteral("background: #00FF00"));
    m_window->resize(200, 120);
    m_window->show();
}

void TestWindowPicture::isOffUnlessRequested()
{
    qunsetenv("QUILLORA_SCREENSHOT");
    QVERIFY(!WindowPicture::requestedFor(*m_window));
    qputenv("QUILLORA_SCREENSHOT", "");
    QVERIFY(!WindowPicture::requestedFor(*m_window));
    qputenv("QUILLORA_SCREENSHOT", picturePath().toLocal8Bit());
    QVERIFY(WindowPicture::requestedFor(*m_window));
    qunsetenv("QUILLORA_SCREENSHOT");
}

void TestWindowPicture::windowWithoutAViewerIsTakenWhenShown()
{
    WindowPicture picture(*m_window, picturePath());
    picture.takeWhenReady();
    QVERIFY(!picture.isFinished());
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(picture.isFinished());
    QCOMPARE(picture.exitCode(), 0);
    const QImage image(picturePath());
    QCOMPARE(image.size(), QSize(200, 120));
    QCOMPARE(image.pixelColor(100, 60), QColor(Qt::green));
}

void TestWindowPicture::unwritableFileGivesOne()
{
    WindowPicture picture(*m_window, m_folder.filePath(QStringLiteral("none/picture.png")));
    picture.takeWhenReady();
    QCOMPARE(QCoreApplication::exec(), 1);
}

void TestWindowPicture::timeoutTakesWhatIsThere()
{
    const WindowPicture picture(*m_window, picturePath(), std::chrono::milliseconds(50));
    QCOMPARE(QCoreApplication::exec(), 1);
    QVERIFY(picture.isFinished());
    QCOMPARE(QImage(picturePath()).size(), QSize(200, 120));
}

void TestWindowPicture::timeoutInANestedLoopEndsIt()
{
    const WindowPicture picture(*m_window, picturePath(), std::chrono::milliseconds(50));
    QDialog box(m_window.get());
    box.exec();
    QVERIFY(picture.isFinished());
    QCOMPARE(picture.exitCode(), 1);
    QVERIFY(QFile::exists(picturePath()));
}

QTEST_MAIN(TestWindowPicture)
#include "tst_window_picture.moc"
