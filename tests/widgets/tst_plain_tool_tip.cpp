// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/icon_button.h"
#include "widgets/plain_tool_tip.h"

#include <QCoreApplication>
#include <QHelpEvent>
#include <QTest>
#include <QTextDocumentFragment>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {

/// What a tool tip with that text says.
QString read(const QString &toolTip)
{
    return Qt::mightBeRichText(toolTip) ? QTextDocumentFragment::fromHtml(toolTip).toPlainText()
                                        : toolTip;
}

} // namespace

/// Tool tips that show a text letter by letter.
class TestPlainToolTip final : public QObject
{
    Q_OBJECT

private slots:
    void textIsShownAsItIs_data();
    void textIsShownAsItIs();
    void wholeTextOfAButtonIsShownAsItIs_data() { textIsShownAsItIs_data(); }
    void wholeTextOfAButtonIsShownAsItIs();
    void plainTextIsLeftAlone();
};

void TestPlainToolTip::textIsShownAsItIs_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << u"/x/报告 1.pdf"_s;
    QTest::newRow("ampersand") << u"R&D \"A\" & 'B' &amp; C"_s;
    QTest::newRow("markup") << u"/x/<b>x</b>.pdf"_s;
    QTest::newRow("entity") << u"a &lt;b&gt; c"_s;
    QTest::newRow("comparison") << u"1 < 2 > 0"_s;
}

void TestPlainToolTip::textIsShownAsItIs()
{
    QFETCH(QString, text);
    QCOMPARE(read(plainToolTip(text)), text);
}

void TestPlainToolTip::wholeTextOfAButtonIsShownAsItIs()
{
    QFETCH(QString, text);
    IconButton button(text);
    button.resize(20, 30);
    button.show();
    QHelpEvent help(QEvent::ToolTip, QPoint(5, 5), button.mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(&button, &help);
    const QString shown = QToolTip::text();
    QToolTip::hideText();
    QCOMPARE(read(shown), text);
}

void TestPlainToolTip::plainTextIsLeftAlone()
{
    QCOMPARE(plainToolTip(u"/x/a & b.pdf"_s), u"/x/a & b.pdf"_s);
    QCOMPARE(plainToolTip(QString()), QString());
}

QTEST_MAIN(TestPlainToolTip)
#include "tst_plain_tool_tip.moc"
