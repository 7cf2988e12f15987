// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/modern_message_box.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QLayout>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <memory>

namespace {

const QString kCancel = QStringLiteral("messageBoxCancelButton");
const QString kDiscard = QStringLiteral("messageBoxDiscardButton");
const QString kConfirm = QStringLiteral("messageBoxConfirmButton");

MessageBoxOptions optionsWithAllButtons()
{
    MessageBoxOptions options;
    options.title = QStringLiteral("保存修改");
    options.message = QStringLiteral("当前 PDF 已修改，是否保存？");
    options.showCancel = true;
    options.showDiscard = true;
    return options;
}

/// With more lines than fit on a screen.
MessageBoxOptions optionsWithALongMessage()
{
    MessageBoxOptions options;
    options.title = QStringLiteral("部分页面提取失败");
    options.message = QStringLiteral("第 12 页\n").repeated(300);
    return options;
}

QPushButton *buttonOf(const QWidget &box, const QString &name)
{
    return box.findChild<QPushButton *>(name);
}

QStringList buttonsOf(const QWidget &box)
{
    QList<QPushButton *> buttons = box.findChildren<QPushButton *>();
    std::sort(buttons.begin(), buttons.end(),
              [](const QPushButton *a, const QPushButton *b) { return a->x() < b->x(); });
    QStringList names;
    for (const QPushButton *button : buttons) {
        names.append(button->objectName());
    }
    return names;
}

QWidget *backdropOf(const QWidget &window)
{
    return window.findChild<QWidget *>(QStringLiteral("modalBackdrop"), Qt::FindDirectChildrenOnly);
}

/// The colour in the middle of a child of the box.
QColor colorOf(QWidget &box, const QWidget &child, QPoint offset)
{
    return box.grab().toImage().pixelColor(child.mapTo(&box, offset));
}

/// Lets `answer` handle the box that is run next.
void answerNext(const std::function<void(ModernMessageBox *)> &answer)
{
    QTimer::singleShot(0, qApp, [answer] {
        auto *box = qobject_cast<ModernMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box);
        answer(box);
    });
}

} // namespace

class TestModernMessageBox final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void defaultOptionsAreAnInformationBoxWithOneButton();
    void boxIsNamedByItsTitle();
    void boxIsModalFramelessAndTranslucent();
    void cardHasAShadow();
    void emptyTextsHaveNoLabels();
    void markupIsNeverInterpreted();
    void buttonsAreInTheirOrder_data();
    void buttonsAreInTheirOrder();
    void buttonsHaveTheirUsualTexts();
    void buttonsHaveTheGivenTexts();
    void kindSelectsTheAccentColour_data();
    void kindSelectsTheAccentColour();
    void dangerBoxHasARedConfirmButtonWithADarkBorder();
    void otherKindsHaveAnAccentConfirmButton();
    void buttonsGiveTheirResults_data();
    void buttonsGiveTheirResults();
    void enterConfirms();
    void escapeCancels();
    void closingCancels();
    void nonClosableBoxIgnoresEscapeAndClose();
    void cancelOnANonClosableBoxOnlySetsTheResult();
    void busyBoxShowsAnEndlessBarAndClosesOnlyByItsOwner();

    void backdropCoversTheWindowWhileTheBoxIsShown();
    void backdropOfANestedParentCoversTheTopLevelWindow();
    void backdropGoesWithADeletedBox();
    void backdropIsUnseenAsSoonAsItsBoxCloses_data();
    void backdropIsUnseenAsSoonAsItsBoxCloses();
    void boxThatIsShownAgainHasABackdropAgain();
    void boxThatIsShownAgainForgetsItsAnswer();
    void backdropHasTheShapeOfItsWindow();
    void boxWithoutParentHasNoBackdropAndIsCentredOnItsScreen();
    void boxIsCentredOnItsWindow();
    void widthStaysInItsLimits_data();
    void widthStaysInItsLimits();
    void longWordsAreBroken();
    void textsTooLongForTheScreenScroll();
    void scrolledTextsStandBelowTheTitle();
    void boxAsHighAsTheScreenStaysOnIt_data();
    void boxAsHighAsTheScreenStaysOnIt();

    void questionReturnsTheAnswer_data();
    void questionReturnsTheAnswer();
    void questionWithDiscardReturnsTheAnswer_data();
    void questionWithDiscardReturnsTheAnswer();
    void messagesShowTheirKindAndOneButton_data();
    void messagesShowTheirKindAndOneButton();
    void deletingTheParentDuringAQuestionIsSafe_data();
    void deletingTheParentDuringAQuestionIsSafe();

private:
    std::unique_ptr<QWidget> m_window;
};

void TestModernMessageBox::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->setGeometry(60, 40, 700, 500);
    m_window->show();
}

void TestModernMessageBox::cleanup()
{
    m_window.reset();
}

void TestModernMessageBox::defaultOptionsAreAnInformationBoxWithOneButton()
{
    const MessageBoxOptions options;
    QCOMPARE(options.kind, 0);
    QVERIFY(options.showConfirm && options.closable);
    QVERIFY(!options.showCancel && !options.showDiscard && !options.showProgress);
    const ModernMessageBox box(options);
    QCOMPARE(buttonsOf(box), QStringList{kConfirm});
    QCOMPARE(box.result(), 0);
}

void TestModernMessageBox::boxIsNamedByItsTitle()
{
    const ModernMessageBox box(optionsWithAllButtons(), m_window.get());
    QCOMPARE(box.windowTitle(), QStringLiteral("保存修改"));
}

void TestModernMessageBox::boxIsModalFramelessAndTranslucent()
{
    const ModernMessageBox box(optionsWithAllButtons());
    QVERIFY(box.isModal());
    QVERIFY(box.windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(box.windowFlags().testFlag(Qt::Dialog));
    QVERIFY(box.testAttribute(Qt::WA_TranslucentBackground));
}

void TestModernMessageBox::cardHasAShadow()
{
    ModernMessageBox box(optionsWithAllButtons());
    box.show();
    const auto *card = box.findChild<QFrame *>(QStringLiteral("messageBoxCard"));
    QVERIFY(card);
    QCOMPARE(card->geometry(), box.rect().adjusted(20, 20, -20, -20));
    const auto *shadow = qobject_cast<QGraphicsDropShadowEffect *>(card->graphicsEffect());
    QVERIFY(shadow);
    QCOMPARE(shadow->blurRadius(), 40.0);
    QCOMPARE(shadow->offset(), QPointF(0, 12));
    QCOMPARE(shadow->color(), QColor(15, 23, 42, 65));
    QCOMPARE(card->layout()->contentsMargins(), QMargins(32, 28, 32, 28));
    const QRect content = card->contentsRect().marginsRemoved({32, 28, 32, 28});
    const auto *accent = box.findChild<QFrame *>(QStringLiteral("messageBoxAccent"));
    QCOMPARE(accent->geometry(), QRect(content.topLeft(), QSize(34, 4)));
    const auto *title = box.findChild<QLabel *>(QStringLiteral("messageBoxTitle"));
    QCOMPARE(title->y(), content.top() + 4 + 18);
    QCOMPARE(title->font().pixelSize(), 24);
}

void TestModernMessageBox::emptyTextsHaveNoLabels()
{
    MessageBoxOptions options;
    options.title = QStringLiteral("标题");
    const ModernMessageBox box(options);
    QVERIFY(box.findChild<QLabel *>(QStringLiteral("messageBoxTitle")));
    QVERIFY(!box.findChild<QLabel *>(QStringLiteral("messageBoxMessage")));
    QVERIFY(!box.findChild<QLabel *>(QStringLiteral("messageBoxDetails")));
    QVERIFY(!box.findChild<QProgressBar *>());
}

void TestModernMessageBox::markupIsNeverInterpreted()
{
    const QString markup = QStringLiteral("<b>bold</b> &amp; <img src='x'>");
    MessageBoxOptions options;
    options.title = markup;
    options.message = markup;
    options.details = markup;
    const ModernMessageBox box(options);
    for (const char *name : {"messageBoxTitle", "messageBoxMessage", "messageBoxDetails"}) {
        const auto *label = box.findChild<QLabel *>(QLatin1String(name));
        QVERIFY(label);
        QCOMPARE(label->text(), markup);
        QCOMPARE(label->textFormat(), Qt::PlainText);
        QVERIFY(label->wordWrap());
    }
}

void TestModernMessageBox::buttonsAreInTheirOrder_data()
{
    QTest::addColumn<bool>("cancel");
    QTest::addColumn<bool>("discard");
    QTest::addColumn<bool>("confirm");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("all") << true << true << true << QStringList{kCancel, kDiscard, kConfirm};
    QTest::newRow("question") << true << false << true << QStringList{kCancel, kConfirm};
    QTest::newRow("confirm") << false << false << true << QStringList{kConfirm};
    QTest::newRow("cancel") << true << false << false << QStringList{kCancel};
    QTest::newRow("none") << false << false << false << QStringList{};
}

void TestModernMessageBox::buttonsAreInTheirOrder()
{
    QFETCH(bool, cancel);
    QFETCH(bool, discard);
    QFETCH(bool, confirm);
    MessageBoxOptions options;
    options.showCancel = cancel;
    options.showDiscard = discard;
    options.showConfirm = confirm;
    ModernMessageBox box(options);
    box.show();
    QTEST(buttonsOf(box), "names");
    for (const QPushButton *button : box.findChildren<QPushButton *>()) {
        QCOMPARE(button->minimumSize(), QSize(92, 42));
        QCOMPARE(button->height(), 42);
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
    }
}

void TestModernMessageBox::buttonsHaveTheirUsualTexts()
{
    const ModernMessageBox box(optionsWithAllButtons());
    QCOMPARE(buttonOf(box, kConfirm)->text(), QStringLiteral("确定"));
    QCOMPARE(buttonOf(box, kDiscard)->text(), QStringLiteral("不保存"));
    QCOMPARE(buttonOf(box, kCancel)->text(), QStringLiteral("取消"));
}

void TestModernMessageBox::buttonsHaveTheGivenTexts()
{
    MessageBoxOptions options = optionsWithAllButtons();
    options.confirmText = QStringLiteral("一");
    options.discardText = QStringLiteral("二");
    options.cancelText = QStringLiteral("三");
    const ModernMessageBox box(options);
    QCOMPARE(buttonOf(box, kConfirm)->text(), options.confirmText);
    QCOMPARE(buttonOf(box, kDiscard)->text(), options.discardText);
    QCOMPARE(buttonOf(box, kCancel)->text(), options.cancelText);
}

void TestModernMessageBox::kindSelectsTheAccentColour_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QColor>("color");
    QTest::newRow("information") << 0 << QColor(0x4F, 0x46, 0xE5);
    QTest::newRow("success") << 1 << QColor(0x20, 0xA6, 0x6A);
    QTest::newRow("warning") << 2 << QColor(0xE8, 0x9A, 0x3C);
    QTest::newRow("danger") << 3 << QColor(0xE0, 0x52, 0x52);
    QTest::newRow("unknown") << 4 << QColor(0x4F, 0x46, 0xE5);
    QTest::newRow("negative") << -1 << QColor(0x4F, 0x46, 0xE5);
}

void TestModernMessageBox::kindSelectsTheAccentColour()
{
    QFETCH(int, kind);
    MessageBoxOptions options;
    options.kind = kind;
    ModernMessageBox box(options);
    box.show();
    const auto *accent = box.findChild<QFrame *>(QStringLiteral("messageBoxAccent"));
    QTEST(colorOf(box, *accent, {17, 2}), "color");
}

void TestModernMessageBox::dangerBoxHasARedConfirmButtonWithADarkBorder()
{
    MessageBoxOptions options;
    options.kind = 3;
    ModernMessageBox box(options);
    box.show();
    const QPushButton *confirm = buttonOf(box, kConfirm);
    QVERIFY(confirm->property("danger").toBool());
    QCOMPARE(colorOf(box, *confirm, {46, 0}), QColor(0x11, 0x18, 0x27));
    QCOMPARE(colorOf(box, *confirm, {46, 1}), QColor(0x11, 0x18, 0x27));
    QCOMPARE(colorOf(box, *confirm, {46, 2}), QColor(0xF0, 0x44, 0x5B));
}

void TestModernMessageBox::otherKindsHaveAnAccentConfirmButton()
{
    for (const int kind : {0, 1, 2, 7}) {
        MessageBoxOptions options;
        options.kind = kind;
        ModernMessageBox box(options);
        box.show();
        const QPushButton *confirm = buttonOf(box, kConfirm);
        QVERIFY(!confirm->property("danger").toBool());
        QCOMPARE(colorOf(box, *confirm, {46, 0}), Theme::accent);
        QCOMPARE(colorOf(box, *confirm, {46, 3}), Theme::accent);
    }
}

void TestModernMessageBox::buttonsGiveTheirResults_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("result");
    QTest::newRow("cancel") << kCancel << 0;
    QTest::newRow("confirm") << kConfirm << 1;
    QTest::newRow("discard") << kDiscard << 2;
}

void TestModernMessageBox::buttonsGiveTheirResults()
{
    QFETCH(QString, button);
    ModernMessageBox box(optionsWithAllButtons(), m_window.get());
    box.show();
    QTest::mouseClick(buttonOf(box, button), Qt::LeftButton);
    QVERIFY(!box.isVisible());
    QTEST(box.result(), "result");
}

void TestModernMessageBox::enterConfirms()
{
    ModernMessageBox box(optionsWithAllButtons(), m_window.get());
    box.show();
    QTest::keyClick(&box, Qt::Key_Return);
    QVERIFY(!box.isVisible());
    QCOMPARE(box.result(), 1);
}

void TestModernMessageBox::escapeCancels()
{
    ModernMessageBox box(optionsWithAllButtons(), m_window.get());
    box.show();
    QTest::keyClick(&box, Qt::Key_Escape);
    QVERIFY(!box.isVisible());
    QCOMPARE(box.result(), 0);
}

void TestModernMessageBox::closingCancels()
{
    ModernMessageBox box(optionsWithAllButtons(), m_window.get());
    box.show();
    QVERIFY(box.close());
    QVERIFY(!box.isVisible());
    QCOMPARE(box.result(), 0);
}

void TestModernMessageBox::nonClosableBoxIgnoresEscapeAndClose()
{
    MessageBoxOptions options = optionsWithAllButtons();
    options.closable = false;
    ModernMessageBox box(options, m_window.get());
    box.show();
    QTest::keyClick(&box, Qt::Key_Escape);
    QVERIFY(box.isVisible());
    QVERIFY(!box.close());
    QVERIFY(box.isVisible());
    QVERIFY(backdropOf(*m_window));
}

void TestModernMessageBox::cancelOnANonClosableBoxOnlySetsTheResult()
{
    MessageBoxOptions options = optionsWithAllButtons();
    options.closable = false;
    ModernMessageBox box(options, m_window.get());
    box.show();
    QTest::mouseClick(buttonOf(box, kDiscard), Qt::LeftButton);
    QCOMPARE(box.result(), 2);
    box.show();
    QTest::mouseClick(buttonOf(box, kCancel), Qt::LeftButton);
    QVERIFY(box.isVisible());
    QCOMPARE(box.result(), 0);
}

void TestModernMessageBox::busyBoxShowsAnEndlessBarAndClosesOnlyByItsOwner()
{
    MessageBoxOptions options;
    options.title = QStringLiteral("正在保存 PDF");
    options.showConfirm = false;
    options.showProgress = true;
    options.closable = false;
    ModernMessageBox box(options, m_window.get());
    box.show();
    const auto *bar = box.findChild<QProgressBar *>(QStringLiteral("messageBoxProgress"));
    QVERIFY(bar);
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), 0);
    QCOMPARE(bar->height(), 8);
    QVERIFY(!bar->isTextVisible());
    QVERIFY(buttonsOf(box).isEmpty());
    QTest::keyClick(&box, Qt::Key_Return);
    QTest::keyClick(&box, Qt::Key_Escape);
    QVERIFY(box.isVisible());
    box.accept();
    QVERIFY(!box.isVisible());
}

void TestModernMessageBox::backdropCoversTheWindowWhileTheBoxIsShown()
{
    ModernMessageBox box(optionsWithAllButtons(), m_window.get());
    QVERIFY(!backdropOf(*m_window));
    m_window->setStyleSheet(QStringLiteral("QWidget { background: #FFFFFF; }"));
    box.show();
    const QWidget *backdrop = backdropOf(*m_window);
    QVERIFY(backdrop);
    QVERIFY(backdrop->isVisible());
    QCOMPARE(backdrop->geometry(), m_window->rect());
    // 38 of 255 of (15, 23, 42) over white.
    QCOMPARE(m_window->grab().toImage().pixelColor(5, 5), QColor(0xDB, 0xDC, 0xDF));
    box.hide();
    QTRY_VERIFY(!backdropOf(*m_window));
}

void TestModernMessageBox::backdropOfANestedParentCoversTheTopLevelWindow()
{
    auto *inner = new QWidget(m_window.get());
    inner->setGeometry(10, 10, 50, 50);
    inner->show();
    ModernMessageBox box(optionsWithAllButtons(), inner);
    box.show();
    QVERIFY(backdropOf(*m_window));
    QCOMPARE(backdropOf(*m_window)->geometry(), m_window->rect());
    QCOMPARE(box.frameGeometry().center(), m_window->frameGeometry().center());
}

void TestModernMessageBox::backdropGoesWithADeletedBox()
{
    auto box = std::make_unique<ModernMessageBox>(optionsWithAllButtons(), m_window.get());
    box->show();
    QVERIFY(backdropOf(*m_window));
    box.reset();
    QTRY_VERIFY(!backdropOf(*m_window));
}

void TestModernMessageBox::backdropIsUnseenAsSoonAsItsBoxCloses_data()
{
    QTest::addColumn<std::function<void(ModernMessageBox *)>>("close");
    using Close = std::function<void(ModernMessageBox *)>;
    QTest::newRow("answered") << Close([](ModernMessageBox *box) { box->accept(); });
    QTest::newRow("cancelled") << Close([](ModernMessageBox *box) { box->reject(); });
    QTest::newRow("hidden") << Close([](ModernMessageBox *box) { box->hide(); });
    QTest::newRow("deleted") << Close([](ModernMessageBox *box) { delete box; });
}

void TestModernMessageBox::backdropIsUnseenAsSoonAsItsBoxCloses()
{
    // What follows a question, as a save, may begin without a turn of the event loop.
    QFETCH(const std::function<void(ModernMessageBox *)>, close);
    m_window->setStyleSheet(QStringLiteral("QWidget { background: #FFFFFF; }"));
    const QPointer<ModernMessageBox> box(
        new ModernMessageBox(optionsWithAllButtons(), m_window.get()));
    box->show();
    QVERIFY(m_window->grab().toImage().pixelColor(5, 5) != QColor(Qt::white));
    close(box);
    QCOMPARE(m_window->grab().toImage().pixelColor(5, 5), QColor(Qt::white));
    delete box;
}

void TestModernMessageBox::boxThatIsShownAgainHasABackdropAgain()
{
    ModernMessageBox box(optionsWithAllButtons(), m_window.get());
    m_window->setStyleSheet(QStringLiteral("QWidget { background: #FFFFFF; }"));
    box.show();
    const QColor darkened = m_window->grab().toImage().pixelColor(5, 5);
    box.hide();
    box.show();
    QCOMPARE(m_window->grab().toImage().pixelColor(5, 5), darkened);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(m_window->grab().toImage().pixelColor(5, 5), darkened);
    QCOMPARE(m_window->findChildren<QWidget *>(QStringLiteral("modalBackdrop")).size(), 1);
}

void TestModernMessageBox::boxThatIsShownAgainForgetsItsAnswer()
{
    ModernMessageBox box(optionsWithAllButtons(), m_window.get());
    box.show();
    QTest::mouseClick(buttonOf(box, kDiscard), Qt::LeftButton);
    QCOMPARE(box.result(), 2);
    box.show();
    QTest::keyClick(&box, Qt::Key_Escape);
    QVERIFY(!box.isVisible());
    QCOMPARE(box.result(), 0);
}

void TestModernMessageBox::backdropHasTheShapeOfItsWindow()
{
    const QRegion shape(QRect(10, 20, 100, 50));
    m_window->setStyleSheet(QStringLiteral("QWidget { background: #FFFFFF; }"));
    m_window->setProperty(ModernMessageBox::kBackdropShapeProperty, shape);
    ModernMessageBox box(optionsWithAllButtons(), m_window.get());
    box.show();
    const QImage window = m_window->grab().toImage();
    QVERIFY(window.pixelColor(10, 20) != QColor(Qt::white));
    QVERIFY(window.pixelColor(109, 69) != QColor(Qt::white));
    QCOMPARE(window.pixelColor(9, 20), QColor(Qt::white));
    QCOMPARE(window.pixelColor(109, 70), QColor(Qt::white));
}

void TestModernMessageBox::boxWithoutParentHasNoBackdropAndIsCentredOnItsScreen()
{
    ModernMessageBox box(optionsWithAllButtons());
    box.show();
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        QVERIFY(!backdropOf(*window));
    }
    QCOMPARE(box.frameGeometry().center(), box.screen()->availableGeometry().center());
}

void TestModernMessageBox::boxIsCentredOnItsWindow()
{
    ModernMessageBox box(optionsWithAllButtons(), m_window.get());
    box.show();
    QCOMPARE(box.frameGeometry().center(), m_window->frameGeometry().center());
}

void TestModernMessageBox::widthStaysInItsLimits_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("none") << QString();
    QTest::newRow("short") << QStringLiteral("好");
    QTest::newRow("long") << QStringLiteral("A sentence of some words. ").repeated(20);
    QTest::newRow("one word") << QString(400, u'w');
}

void TestModernMessageBox::widthStaysInItsLimits()
{
    QFETCH(QString, message);
    MessageBoxOptions options = optionsWithAllButtons();
    options.message = message;
    ModernMessageBox box(options);
    box.show();
    QVERIFY(box.width() >= 560);
    QVERIFY(box.width() <= 680);
    for (const QLabel *label : box.findChildren<QLabel *>()) {
        QVERIFY(label->height() >= label->heightForWidth(label->width()));
    }
}

void TestModernMessageBox::longWordsAreBroken()
{
    MessageBoxOptions options;
    options.details = QString(100, u'w');
    ModernMessageBox box(options);
    box.show();
    const auto *details = box.findChild<QLabel *>(QStringLiteral("messageBoxDetails"));
    const int needed = QFontMetrics(details->font()).horizontalAdvance(options.details);
    QVERIFY(needed > details->width());
    QVERIFY(details->height() >= 2 * QFontMetrics(details->font()).height());
}

void TestModernMessageBox::textsTooLongForTheScreenScroll()
{
    ModernMessageBox box(optionsWithALongMessage(), m_window.get());
    box.show();
    QVERIFY(box.height() <= box.screen()->availableGeometry().height());
    const auto *scrollArea = box.findChild<QScrollArea *>();
    QVERIFY(scrollArea);
    const auto *message = box.findChild<QLabel *>(QStringLiteral("messageBoxMessage"));
    QVERIFY(scrollArea->isAncestorOf(message));
    QVERIFY(message->height() > scrollArea->height());
    const QPushButton *confirm = buttonOf(box, kConfirm);
    QVERIFY(box.rect().contains(QRect(confirm->mapTo(&box, QPoint()), confirm->size())));
}

void TestModernMessageBox::scrolledTextsStandBelowTheTitle()
{
    ModernMessageBox box(optionsWithALongMessage(), m_window.get());
    box.show();
    const auto *title = box.findChild<QLabel *>(QStringLiteral("messageBoxTitle"));
    const auto *message = box.findChild<QLabel *>(QStringLiteral("messageBoxMessage"));
    QVERIFY(box.findChild<QScrollArea *>());
    QCOMPARE(message->mapTo(&box, QPoint()).x(), title->mapTo(&box, QPoint()).x());
}

void TestModernMessageBox::boxAsHighAsTheScreenStaysOnIt_data()
{
    QTest::addColumn<int>("shift");
    QTest::newRow("window at the top") << -300;
    QTest::newRow("window in the middle") << 0;
    QTest::newRow("window at the bottom") << 300;
}

void TestModernMessageBox::boxAsHighAsTheScreenStaysOnIt()
{
    QFETCH(int, shift);
    const QRect screen = m_window->screen()->availableGeometry();
    m_window->move(screen.center() - m_window->rect().center() + QPoint(0, shift));
    ModernMessageBox box(optionsWithALongMessage(), m_window.get());
    box.show();
    QVERIFY(screen.top() <= box.frameGeometry().top());
    QVERIFY(screen.bottom() >= box.frameGeometry().bottom());
    QCOMPARE(box.frameGeometry().center().x(), m_window->frameGeometry().center().x());
}

void TestModernMessageBox::questionReturnsTheAnswer_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("result");
    QTest::newRow("cancel") << kCancel << 0;
    QTest::newRow("confirm") << kConfirm << 1;
    QTest::newRow("escape") << QString() << 0;
}

void TestModernMessageBox::questionReturnsTheAnswer()
{
    QFETCH(QString, button);
    answerNext([button](ModernMessageBox *box) {
        QCOMPARE(buttonsOf(*box), QStringList({kCancel, kConfirm}));
        QCOMPARE(buttonOf(*box, kConfirm)->text(), QStringLiteral("重启"));
        QCOMPARE(buttonOf(*box, kCancel)->text(), QStringLiteral("取消"));
        if (button.isEmpty()) {
            QTest::keyClick(box, Qt::Key_Escape);
        } else {
            QTest::mouseClick(buttonOf(*box, button), Qt::LeftButton);
        }
    });
    const int answer = ModernMessageBox::question(
        m_window.get(), QStringLiteral("切换语言？"), QStringLiteral("m"), QStringLiteral("d"),
        QStringLiteral("重启"), QString(), ModernMessageBox::Information);
    QTEST(answer, "result");
}

void TestModernMessageBox::questionWithDiscardReturnsTheAnswer_data()
{
    buttonsGiveTheirResults_data();
}

void TestModernMessageBox::questionWithDiscardReturnsTheAnswer()
{
    QFETCH(QString, button);
    answerNext([button](ModernMessageBox *box) {
        QCOMPARE(buttonsOf(*box), QStringList({kCancel, kDiscard, kConfirm}));
        QCOMPARE(buttonOf(*box, kConfirm)->text(), QStringLiteral("保存"));
        QCOMPARE(buttonOf(*box, kDiscard)->text(), QStringLiteral("丢弃"));
        QCOMPARE(buttonOf(*box, kCancel)->text(), QStringLiteral("返回"));
        QTest::mouseClick(buttonOf(*box, button), Qt::LeftButton);
    });
    const int answer = ModernMessageBox::questionWithDiscard(
        m_window.get(), QStringLiteral("t"), QStringLiteral("m"), QString(), QStringLiteral("保存"),
        QStringLiteral("丢弃"), QStringLiteral("返回"), ModernMessageBox::Warning);
    QTEST(answer, "result");
}

void TestModernMessageBox::messagesShowTheirKindAndOneButton_data()
{
    QTest::addColumn<int>("entry");
    QTest::addColumn<QColor>("color");
    QTest::newRow("message") << 0 << Theme::accent;
    QTest::newRow("success") << 1 << Theme::success;
    QTest::newRow("warning") << 2 << Theme::warning;
    QTest::newRow("error") << 3 << Theme::danger;
}

void TestModernMessageBox::messagesShowTheirKindAndOneButton()
{
    QFETCH(int, entry);
    QFETCH(QColor, color);
    bool shown = false;
    answerNext([color, &shown](ModernMessageBox *box) {
        shown = true;
        QCOMPARE(buttonsOf(*box), QStringList{kConfirm});
        QCOMPARE(buttonOf(*box, kConfirm)->text(), QStringLiteral("确定"));
        QCOMPARE(box->findChild<QLabel *>(QStringLiteral("messageBoxTitle"))->text(),
                 QStringLiteral("标题"));
        QCOMPARE(box->findChild<QLabel *>(QStringLiteral("messageBoxMessage"))->text(),
                 QStringLiteral("内容"));
        QCOMPARE(box->findChild<QLabel *>(QStringLiteral("messageBoxDetails"))->text(),
                 QStringLiteral("详情"));
        const auto *accent = box->findChild<QFrame *>(QStringLiteral("messageBoxAccent"));
        QCOMPARE(colorOf(*box, *accent, {17, 2}), color);
        box->close();
    });
    const QString title = QStringLiteral("标题");
    const QString message = QStringLiteral("内容");
    const QString details = QStringLiteral("详情");
    switch (entry) {
    case 0:
        ModernMessageBox::showMessage(m_window.get(), 0, title, message, details);
        break;
    case 1:
        ModernMessageBox::showSuccess(m_window.get(), title, message, details);
        break;
    case 2:
        ModernMessageBox::showWarning(m_window.get(), title, message, details);
        break;
    default:
        ModernMessageBox::showError(m_window.get(), title, message, details);
        break;
    }
    QVERIFY(shown);
}

void TestModernMessageBox::deletingTheParentDuringAQuestionIsSafe_data()
{
    using Ask = std::function<int(QWidget *)>;
    QTest::addColumn<Ask>("ask");
    QTest::newRow("question") << Ask([](QWidget *parent) {
        return ModernMessageBox::question(parent, QStringLiteral("t"), QStringLiteral("m"),
                                          QString(), QString(), QString(),
                                          ModernMessageBox::Warning);
    });
    QTest::newRow("question with discard") << Ask([](QWidget *parent) {
        return ModernMessageBox::questionWithDiscard(
            parent, QStringLiteral("t"), QStringLiteral("m"), QString(), QString(), QString(),
            QString(), ModernMessageBox::Warning);
    });
    QTest::newRow("message") << Ask([](QWidget *parent) {
        ModernMessageBox::showError(parent, QStringLiteral("t"), QStringLiteral("m"), QString());
        return 0;
    });
}

void TestModernMessageBox::deletingTheParentDuringAQuestionIsSafe()
{
    QFETCH(std::function<int(QWidget *)>, ask);
    // A part of the window, such as a tab, and then the window itself.
    auto *part = new QWidget(m_window.get());
    QPointer<ModernMessageBox> seen;
    answerNext([part, &seen](ModernMessageBox *box) {
        seen = box;
        delete part;
    });
    QCOMPARE(ask(part), 0);
    QVERIFY(!seen);
    QVERIFY(!QApplication::activeModalWidget());
    QTRY_VERIFY(!backdropOf(*m_window));

    bool answered = false;
    answerNext([this, &answered](ModernMessageBox *) {
        answered = true;
        m_window.reset();
    });
    QCOMPARE(ask(m_window.get()), 0);
    QVERIFY(answered);
    QVERIFY(!QApplication::activeModalWidget());
}

QTEST_MAIN(TestModernMessageBox)
#include "tst_modern_message_box.moc"
