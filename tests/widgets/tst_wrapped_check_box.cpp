// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "widgets/theme.h"
#include "widgets/wrapped_check_box.h"

#include <QImage>
#include <QPainter>
#include <QTest>

namespace {

const QString kLongText =
    QStringLiteral("Ausgewählte Seiten in eine einzige Datei extrahieren und dort ablegen");

} // namespace

/// The check box with a text of several lines.
class TestWrappedCheckBox final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void growsWithItsText();
    void textStandsInOneLineAtThePreferredWidth();
    void longTextShowsWhole();
    void clickOnEachLineToggles();
    void clickBesideTheTextDoesNothing();
    void indicatorComesFromThePictures_data();
    void indicatorComesFromThePictures();
    void indicatorIsMirrored();
    void looksOfTheStates();
};

void TestWrappedCheckBox::growsWithItsText()
{
    const WrappedCheckBox box(kLongText);
    const int oneLine = box.heightForWidth(1000);
    QCOMPARE(oneLine, box.sizeHint().height());
    QVERIFY(oneLine >= 20);
    QVERIFY(box.heightForWidth(300) > oneLine);
    QVERIFY(box.heightForWidth(160) > box.heightForWidth(300));
    QVERIFY(box.sizePolicy().hasHeightForWidth());
}

void TestWrappedCheckBox::textStandsInOneLineAtThePreferredWidth()
{
    for (const QString &text : {QStringLiteral("PDF 文件"), kLongText}) {
        const WrappedCheckBox box(text);
        const QSize preferred = box.sizeHint();
        QCOMPARE(box.heightForWidth(preferred.width()), preferred.height());
    }
}

void TestWrappedCheckBox::longTextShowsWhole()
{
    WrappedCheckBox box(kLongText);
    box.resize(200, box.heightForWidth(200));
    const QImage fitting = box.grab().toImage();
    // With room to spare the same ink stands there, in the middle.
    box.resize(200, box.height() + 40);
    const QImage roomy = box.grab().toImage();
    QCOMPARE(roomy.copy(0, 20, 200, fitting.height()), fitting);
    const QImage above = roomy.copy(0, 0, 200, 20);
    QImage blank(above.size(), above.format());
    blank.fill(above.pixelColor(0, 0));
    QCOMPARE(above, blank);
}

void TestWrappedCheckBox::clickOnEachLineToggles()
{
    WrappedCheckBox box(kLongText);
    box.resize(200, box.heightForWidth(200));
    for (const QPoint &point : {QPoint(10, 10), QPoint(60, 10), QPoint(60, box.height() - 10)}) {
        const bool before = box.isChecked();
        QTest::mouseClick(&box, Qt::LeftButton, {}, point);
        QCOMPARE(box.isChecked(), !before);
    }
}

void TestWrappedCheckBox::clickBesideTheTextDoesNothing()
{
    WrappedCheckBox box(QStringLiteral("PDF"));
    box.resize(400, box.sizeHint().height());
    QTest::mouseClick(&box, Qt::LeftButton, {}, {300, 10});
    QVERIFY(!box.isChecked());
    box.setLayoutDirection(Qt::RightToLeft);
    QTest::mouseClick(&box, Qt::LeftButton, {}, {100, 10});
    QVERIFY(!box.isChecked());
    QTest::mouseClick(&box, Qt::LeftButton, {}, {385, 10});
    QVERIFY(box.isChecked());
}

void TestWrappedCheckBox::indicatorComesFromThePictures_data()
{
    QTest::addColumn<bool>("checked");
    QTest::addColumn<QString>("path");
    QTest::newRow("checked") << true << QStringLiteral(":/res/checkbox/checkbox-checked.png");
    QTest::newRow("unchecked") << false << QStringLiteral(":/res/checkbox/checkbox-unchecked.png");
}

void TestWrappedCheckBox::indicatorComesFromThePictures()
{
    QFETCH(bool, checked);
    QFETCH(QString, path);
    WrappedCheckBox box(QStringLiteral("PDF"));
    box.setChecked(checked);
    box.resize(box.sizeHint());
    QImage image(box.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    box.render(&image, {}, {}, {});
    QImage expected(20, 20, QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter(&expected).drawImage(0, 0, QImage(path));
    QCOMPARE(image.copy(4, (box.height() - 20) / 2, 20, 20), expected);
}

void TestWrappedCheckBox::indicatorIsMirrored()
{
    WrappedCheckBox box(QStringLiteral("PDF"));
    box.setChecked(true);
    box.resize(200, box.sizeHint().height());
    const int middle = box.height() / 2;
    QCOMPARE(box.grab().toImage().pixelColor(7, middle), Theme::accent);
    box.setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(box.grab().toImage().pixelColor(200 - 7, middle), Theme::accent);
}

void TestWrappedCheckBox::looksOfTheStates()
{
    WrappedCheckBox box(QStringLiteral("PDF"));
    box.resize(box.sizeHint());
    const QImage normal = box.grab().toImage();
    box.setDown(true);
    QCOMPARE(box.grab().toImage().pixelColor(2, box.height() / 2), Theme::pressed);
    box.setDown(false);
    QCOMPARE(box.grab().toImage(), normal);
    box.setEnabled(false);
    QVERIFY(box.grab().toImage() != normal);
}

QTEST_MAIN(TestWrappedCheckBox)
#include "tst_wrapped_check_box.moc"
