// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/common/elided_label.h"

#include <QFontMetrics>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString &longText()
{
    static const QString text = u"A long name of a file that ends with a number 12345.pdf"_s;
    return text;
}

} // namespace

/// A line of text that loses its middle.
class TestElidedLabel final : public QObject
{
    Q_OBJECT

private slots:
    void textThatFitsIsShown();
    void textThatDoesNotFitLosesItsMiddle();
    void widthDecides();
    void asksForRoomForAll();
    void needsRoomForAFewCharacters();
    void largerFontTakesMoreRoom();
    void beginsAtTheLeadingSide();
    void textIsPlainAndCanBeTakenAway();
};

void TestElidedLabel::textThatFitsIsShown()
{
    ElidedLabel label;
    label.setFullText(longText());
    label.resize(label.sizeHint());
    label.show();
    QCOMPARE(label.text(), longText());
    QCOMPARE(label.fullText(), longText());
    QCOMPARE(label.toolTip(), QString());
}

void TestElidedLabel::textThatDoesNotFitLosesItsMiddle()
{
    ElidedLabel label;
    label.setFullText(longText());
    label.resize(label.sizeHint().width() / 2, 20);
    label.show();
    QCOMPARE(label.text(),
             label.fontMetrics().elidedText(longText(), Qt::ElideMiddle, label.width()));
    QVERIFY(label.text().startsWith(u"A long") && label.text().endsWith(u"5.pdf"));
    QCOMPARE(label.fullText(), longText());
    QCOMPARE(label.toolTip(), longText());
}

void TestElidedLabel::widthDecides()
{
    ElidedLabel label;
    label.setFullText(longText());
    label.show();
    const int whole = label.sizeHint().width();
    for (const auto &[width, fits] :
         {std::pair(whole, true), std::pair(whole / 3, false), std::pair(whole * 2, true)}) {
        label.resize(width, 20);
        QCOMPARE(label.text() == longText(), fits);
        QCOMPARE(label.toolTip().isEmpty(), fits);
    }
}

void TestElidedLabel::asksForRoomForAll()
{
    ElidedLabel label;
    label.setFullText(longText());
    label.resize(30, 20);
    QVERIFY(label.sizeHint().width() >= label.fontMetrics().horizontalAdvance(longText()));
    QCOMPARE(label.sizeHint().height(), label.fontMetrics().height());
}

void TestElidedLabel::needsRoomForAFewCharacters()
{
    ElidedLabel label;
    label.setFullText(longText());
    const int least = label.minimumSizeHint().width();
    QVERIFY(least > label.fontMetrics().horizontalAdvance(u"abc"_s));
    QVERIFY(least < label.sizeHint().width() / 3);
    label.setFullText(u"a"_s);
    QCOMPARE(label.minimumSizeHint().width(), label.sizeHint().width());
}

void TestElidedLabel::largerFontTakesMoreRoom()
{
    ElidedLabel label;
    label.setFullText(longText());
    const QSize before = label.sizeHint();
    label.resize(before);
    label.show();
    QFont font = label.font();
    font.setPixelSize(QFontMetrics(font).height() * 2);
    label.setFont(font);
    label.resize(before);
    QVERIFY(label.sizeHint().width() > before.width());
    QVERIFY(label.text() != longText());
    QCOMPARE(label.toolTip(), longText());
}

void TestElidedLabel::beginsAtTheLeadingSide()
{
    ElidedLabel label;
    QVERIFY(label.alignment().testFlag(Qt::AlignLeft));
    label.setLayoutDirection(Qt::RightToLeft);
    QVERIFY(label.alignment().testFlag(Qt::AlignRight));
    // Also a name that runs the other way.
    QVERIFY(label.alignment().testFlag(Qt::AlignAbsolute));
    label.setLayoutDirection(Qt::LeftToRight);
    QVERIFY(label.alignment().testFlag(Qt::AlignLeft));
}

void TestElidedLabel::textIsPlainAndCanBeTakenAway()
{
    ElidedLabel label;
    QCOMPARE(label.textFormat(), Qt::PlainText);
    label.setFullText(u"a"_s);
    label.setFullText(QString());
    QCOMPARE(label.text(), QString());
    QCOMPARE(label.toolTip(), QString());
}

QTEST_MAIN(TestElidedLabel)
#include "tst_elided_label.moc"
