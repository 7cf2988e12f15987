// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "tools/file_location_selector.h"
#include "widgets/theme.h"

#include <QEnterEvent>
#include <QImage>
#include <QTest>
#include <QTransform>

#include <memory>

namespace {

constexpr QSize kSize{300, 62};

/// Lets the mouse enter or leave a widget, wherever the pointer of the window system is.
void setHovered(QWidget &widget, bool hovered)
{
    QEnterEvent enter({40, 30}, {40, 30}, widget.mapToGlobal(QPointF(40, 30)));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&widget, hovered ? &enter : &leave);
}

/// Whether a pixel within the columns differs from the background in the middle of the face.
bool isPaintedBetween(const QImage &image, int left, int right)
{
    const QRgb background = image.pixel(image.width() - 34, image.height() / 2);
    for (int x = left; x < right; ++x) {
        for (int y = 6; y < image.height() - 6; ++y) {
            if (image.pixel(x, y) != background) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

/// What the button that shows a folder looks like.
class TestFileLocationSelectorFace final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void init();
    void cleanup() { m_selector.reset(); }

    void looksOfTheStates();
    void longPathIsElided();
    void faceIsMirrored();

private:
    std::unique_ptr<FileLocationSelector> m_selector;
};

void TestFileLocationSelectorFace::init()
{
    m_selector = std::make_unique<FileLocationSelector>();
    m_selector->resize(kSize);
}

void TestFileLocationSelectorFace::looksOfTheStates()
{
    const auto background = [this] {
        return m_selector->grab().toImage().pixelColor(kSize.width() - 34, kSize.height() / 2);
    };
    const auto border = [this] {
        return m_selector->grab().toImage().pixelColor(kSize.width() / 2, 0);
    };
    m_selector->show();
    m_selector->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_selector.get()));
    m_selector->clearFocus();
    setHovered(*m_selector, false);
    QCOMPARE(background(), Theme::white);
    QCOMPARE(border(), Theme::border);

    setHovered(*m_selector, true);
    QCOMPARE(background(), Theme::hover);
    QCOMPARE(border(), Theme::borderStrong);

    m_selector->setDown(true);
    QCOMPARE(background(), Theme::pressed);
    m_selector->setDown(false);

    m_selector->setFocus();
    QCOMPARE(border(), Theme::accent);
    m_selector->clearFocus();

    const QImage enabled = m_selector->grab().toImage();
    m_selector->setEnabled(false);
    QCOMPARE(background(), Theme::white);
    QVERIFY(m_selector->grab().toImage() != enabled);
}

void TestFileLocationSelectorFace::longPathIsElided()
{
    m_selector->setSourceFolder(QStringLiteral("/") + QString(300, u'm'));
    const QImage image = m_selector->grab().toImage();
    // From left to right: icon, texts, a gap, the chevron.
    QVERIFY(isPaintedBetween(image, 12, 36));
    QVERIFY(isPaintedBetween(image, 48, 264));
    QVERIFY(!isPaintedBetween(image, 264, 272));
    QVERIFY(isPaintedBetween(image, 272, 288));
    QVERIFY(!isPaintedBetween(image, 288, 298));
}

void TestFileLocationSelectorFace::faceIsMirrored()
{
    m_selector->setSourceFolder(QStringLiteral("/") + QString(300, u'm'));
    m_selector->setLayoutDirection(Qt::RightToLeft);
    const QImage image = m_selector->grab().toImage().transformed(QTransform::fromScale(-1, 1));
    QVERIFY(isPaintedBetween(image, 12, 36));
    QVERIFY(!isPaintedBetween(image, 36, 48));
    QVERIFY(isPaintedBetween(image, 48, 264));
    QVERIFY(!isPaintedBetween(image, 264, 272));
    QVERIFY(isPaintedBetween(image, 272, 288));
}

QTEST_MAIN(TestFileLocationSelectorFace)
#include "tst_file_location_selector_face.moc"
