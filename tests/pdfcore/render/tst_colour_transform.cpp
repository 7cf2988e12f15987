// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/colour_transform.h"

#include "tests/pdfcore/engine_calls.h"
#include "tests/pdfcore/icc_profiles.h"
#include "tests/pdfcore/ink_colours.h"

#include <QTest>

#include <array>
#include <cstdlib>

using pdfcore::ColourTransform;

/// What becomes of single colours and pixels.
class TestColourTransform : public QObject
{
    Q_OBJECT

private slots:
    void transformOfStandardProfilesIsNone_data();
    void transformOfStandardProfilesIsNone();
    void transformOfUnusableProfilesIsNone_data();
    void transformOfUnusableProfilesIsNone();
    void transformConvertsColoursAndPixelsAlike();
    void transformIsSharedBetweenUses();
    void pressColours_data();
    void pressColours();
};

void TestColourTransform::transformOfStandardProfilesIsNone_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("components");
    QTest::addColumn<bool>("converts");
    QTest::newRow("sRGB") << IccProfiles::standardRgb() << 3 << false;
    QTest::newRow("grey with the curve of sRGB") << IccProfiles::standardGray() << 1 << false;
    QTest::newRow("linear RGB") << IccProfiles::linearRgb() << 3 << true;
    QTest::newRow("swapped RGB") << IccProfiles::swappedRgb() << 3 << true;
    QTest::newRow("linear grey") << IccProfiles::linearGray() << 1 << true;
    QTest::newRow("CMYK") << IccProfiles::swappedCmyk() << 4 << true;
}

void TestColourTransform::transformOfStandardProfilesIsNone()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, components);
    QFETCH(const bool, converts);
    const auto transform = ColourTransform::fromProfile(bytes, components);
    QCOMPARE(transform != nullptr, converts);
    if (transform) {
        QCOMPARE(transform->components(), components);
    }
}

void TestColourTransform::transformOfUnusableProfilesIsNone_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("components");
    QTest::newRow("nothing") << QByteArray() << 3;
    QTest::newRow("text") << QByteArray("no profile").repeated(40) << 3;
    QTest::newRow("cut") << IccProfiles::linearRgb().left(200) << 3;
    QTest::newRow("RGB for one component") << IccProfiles::linearRgb() << 1;
    QTest::newRow("RGB for four components") << IccProfiles::linearRgb() << 4;
    QTest::newRow("CMYK for three components") << IccProfiles::swappedCmyk() << 3;
}

void TestColourTransform::transformOfUnusableProfilesIsNone()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, components);
    QVERIFY(!ColourTransform::fromProfile(bytes, components));
}

void TestColourTransform::transformConvertsColoursAndPixelsAlike()
{
    const auto transform = ColourTransform::pressCmyk();
    QVERIFY(transform);
    for (int c = 0; c <= 255; c += 85) {
        for (int k = 0; k <= 255; k += 51) {
            const std::array<unsigned char, 4> pixel{static_cast<unsigned char>(c),
                                                     static_cast<unsigned char>(255 - c), 40,
                                                     static_cast<unsigned char>(k)};
            std::array<unsigned char, 3> rgb{};
            transform->convertPixels(pixel.data(), rgb.data(), 1);
            std::array<float, 4> colour{};
            for (std::size_t i = 0; i < 4; ++i) {
                colour[i] = static_cast<float>(pixel[i]) / 255;
            }
            std::array<float, 3> converted{};
            transform->convertColour(colour.data(), converted.data());
            for (std::size_t i = 0; i < 3; ++i) {
                QVERIFY(std::abs(converted[i] * 255 - static_cast<float>(rgb[i])) <= 1.5F);
            }
        }
    }
    const std::array<float, 4> outOfRange{9, -3, 0, 0};
    std::array<float, 3> clamped{};
    transform->convertColour(outOfRange.data(), clamped.data());
    COMPARE_COLOUR(QColor::fromRgbF(clamped[0], clamped[1], clamped[2]), kCyan, 1);
}

void TestColourTransform::transformIsSharedBetweenUses()
{
    // Made once: a profile carries the time of its making.
    const QByteArray linear = IccProfiles::linearRgb();
    QCOMPARE(ColourTransform::fromProfile(linear, 3), ColourTransform::fromProfile(linear, 3));
    QVERIFY(ColourTransform::fromProfile(linear, 3) !=
            ColourTransform::fromProfile(IccProfiles::swappedRgb(), 3));
}

void TestColourTransform::pressColours_data()
{
    QTest::addColumn<QList<int>>("percent");
    QTest::addColumn<QColor>("expected");
    const auto row = [](const char *name, const QList<int> &percent, const QColor &expected) {
        QTest::newRow(name) << percent << expected;
    };
    row("paper", {0, 0, 0, 0}, Qt::white);
    row("cyan", {100, 0, 0, 0}, kCyan);
    row("magenta", {0, 100, 0, 0}, kMagenta);
    row("yellow", {0, 0, 100, 0}, kYellow);
    row("black", {0, 0, 0, 100}, kBlack);
    row("blue", {100, 100, 0, 0}, kCyanMagenta);
    row("red", {0, 100, 100, 0}, kMagentaYellow);
    row("green", {100, 0, 100, 0}, kCyanYellow);
    row("all inks", {100, 100, 100, 100}, Qt::black);
    row("half cyan", {50, 0, 0, 0}, kHalfCyan);
    row("half black", {0, 0, 0, 50}, {145, 143, 144});
}

void TestColourTransform::pressColours()
{
    QFETCH(const QList<int>, percent);
    QFETCH(const QColor, expected);
    std::array<float, 4> inks{};
    for (std::size_t i = 0; i < 4; ++i) {
        inks[i] = static_cast<float>(percent.at(static_cast<qsizetype>(i))) / 100;
    }
    std::array<float, 3> rgb{};
    ColourTransform::pressCmyk()->convertColour(inks.data(), rgb.data());
    COMPARE_COLOUR(QColor::fromRgbF(rgb[0], rgb[1], rgb[2]), expected, 2);
}

QTEST_APPLESS_MAIN(TestColourTransform)
#include "tst_colour_transform.moc"
