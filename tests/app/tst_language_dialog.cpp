// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/language_dialog.h"
#include "app/language_manager.h"
#include "res/resources.h"
#include "res/translate/translations.h"
#include "tests/app/app_test.h"
#include "tests/support/dialog_answers.h"
#include "widgets/modern_message_box.h"

#include <QApplication>
#include <QButtonGroup>
#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

class TestLanguageDialog final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void frameAndSizes();
    void cardsInOrder_data();
    void cardsInOrder();
    void languageInForceIsChecked();
    void cardsAreExclusive();
    void cardKeepsItsSizeWhenChecked();
    void standsInTheMiddleOfItsWindow();
    void questionsLookAsElsewhere();
    void questionsShadeTheCardOnly();

    void languageInForceClosesWithoutAQuestion();
    void cancelClosesWithoutChange();
    void escapeClosesWithoutChange();
    void cancelledQuestionLeavesThePickerOpen();
    void confirmedQuestionSwitchesAndCloses();
    void enterApplies();
    void missingTranslationFileIsReported();

private:
    QRadioButton *card(const QString &code) const;
    QPushButton *button(const char *name) const
    {
        return m_dialog->findChild<QPushButton *>(QLatin1String(name));
    }

    std::unique_ptr<AppTestFolders> m_folders;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<LanguageDialog> m_dialog;
};

void TestLanguageDialog::initTestCase()
{
    initResources();
    m_folders = std::make_unique<AppTestFolders>(QStringLiteral("tst_language_dialog"));
}

void TestLanguageDialog::init()
{
    LanguageManager::instance()->setLanguage(QStringLiteral("zh_CN"));
    m_window = std::make_unique<QWidget>();
    m_window->resize(1000, 700);
    m_window->show();
    m_dialog = std::make_unique<LanguageDialog>(m_window.get());
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
}

void TestLanguageDialog::cleanup()
{
    m_dialog.reset();
    m_window.reset();
}

QRadioButton *TestLanguageDialog::card(const QString &code) const
{
    const auto cards = m_dialog->findChildren<QRadioButton *>();
    for (QRadioButton *each : cards) {
        if (each->property("languageCode").toString() == code) {
            return each;
        }
    }
    return nullptr;
}

void TestLanguageDialog::frameAndSizes()
{
    QVERIFY(m_dialog->isModal());
    QVERIFY(m_dialog->windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(m_dialog->windowFlags().testFlag(Qt::Dialog));
    QVERIFY(m_dialog->testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(m_dialog->width(), 620);
    QCOMPARE(m_dialog->layout()->contentsMargins(), QMargins(20, 20, 20, 20));
    const auto *frame = m_dialog->findChild<QFrame *>(QStringLiteral("languageCard"));
    QCOMPARE(frame->layout()->contentsMargins(), QMargins(28, 26, 28, 24));
    QCOMPARE(frame->layout()->spacing(), 0);
    const auto *shadow = qobject_cast<QGraphicsDropShadowEffect *>(frame->graphicsEffect());
    QVERIFY(shadow);
    QCOMPARE(shadow->blurRadius(), 36.0);
    QCOMPARE(shadow->offset(), QPointF(0, 10));
    QCOMPARE(shadow->color(), QColor(15, 23, 42, 55));
    QCOMPARE(m_dialog->findChild<QLabel *>(QStringLiteral("languageTitle"))->text(),
             QStringLiteral("语言设置"));
    QCOMPARE(m_dialog->findChild<QLabel *>(QStringLiteral("languageDescription"))->text(),
             QStringLiteral("选择 Quillora 的界面语言"));
    QCOMPARE(button("languageCancelButton")->text(), QStringLiteral("取消"));
    QCOMPARE(button("languageApplyButton")->text(), QStringLiteral("应用"));
    QVERIFY(button("languageApplyButton")->isDefault());
    for (const char *name : {"languageCancelButton", "languageApplyButton"}) {
        QCOMPARE(button(name)->minimumSize().expandedTo(QSize(88, 40)),
                 button(name)->minimumSize());
    }
}

void TestLanguageDialog::cardsInOrder_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("text");
    int position = 0;
    const auto row = [&position](const char *code, const QString &text) {
        QTest::newRow(code) << position++ << QString::fromLatin1(code) << text;
    };
    row("zh_CN", QStringLiteral("简体中文\nzh-CN"));
    row("en_US", QStringLiteral("英语\nen-US"));
    row("de_DE", QStringLiteral("德语\nde-DE"));
    row("fr_FR", QStringLiteral("法语\nfr-FR"));
    row("es_ES", QStringLiteral("西班牙语\nes-ES"));
    row("ar_SA", QStringLiteral("阿拉伯语\nar-SA"));
    row("ja_JP", QStringLiteral("日语\nja-JP"));
}

void TestLanguageDialog::cardsInOrder()
{
    QFETCH(int, position);
    QFETCH(QString, code);
    QFETCH(QString, text);
    const auto *grid = m_dialog->findChild<QGridLayout *>();
    QCOMPARE(grid->count(), 7);
    QCOMPARE(grid->horizontalSpacing(), 10);
    QCOMPARE(grid->verticalSpacing(), 10);
    const auto *item = grid->itemAtPosition(position / 2, position % 2);
    const auto *radio = qobject_cast<QRadioButton *>(item->widget());
    QVERIFY(radio);
    QCOMPARE(radio->text(), text);
    QCOMPARE(radio->property("languageCode").toString(), code);
    QCOMPARE(radio->minimumHeight(), 58);
    QCOMPARE(radio->cursor().shape(), Qt::PointingHandCursor);
    QVERIFY(!grid->itemAtPosition(3, 1));
}

void TestLanguageDialog::languageInForceIsChecked()
{
    const auto *group = m_dialog->findChild<QButtonGroup *>();
    QCOMPARE(group->checkedButton(), card(QStringLiteral("zh_CN")));
    LanguageManager::instance()->setLanguage(QStringLiteral("ar_SA"));
    const LanguageDialog dialog;
    QCOMPARE(dialog.findChild<QButtonGroup *>()->checkedButton()->property("languageCode"),
             QVariant(QStringLiteral("ar_SA")));
}

void TestLanguageDialog::cardsAreExclusive()
{
    QTest::mouseClick(card(QStringLiteral("fr_FR")), Qt::LeftButton);
    QVERIFY(card(QStringLiteral("fr_FR"))->isChecked());
    QVERIFY(!card(QStringLiteral("zh_CN"))->isChecked());
}

void TestLanguageDialog::cardKeepsItsSizeWhenChecked()
{
    QRadioButton *french = card(QStringLiteral("fr_FR"));
    const QSize before = french->sizeHint();
    french->setChecked(true);
    QCOMPARE(french->sizeHint(), before);
}

void TestLanguageDialog::standsInTheMiddleOfItsWindow()
{
    const QPoint distance = m_dialog->geometry().center() - m_window->geometry().center();
    QVERIFY2(distance.manhattanLength() <= 1, qPrintable(QString::number(distance.x())));
}

void TestLanguageDialog::questionsLookAsElsewhere()
{
    const auto buttonWidths = [](QWidget *parent) {
        QList<int> widths;
        QTimer::singleShot(0, parent, [&widths] {
            const QWidget *box = QApplication::activeModalWidget();
            for (QPushButton *button : box->findChildren<QPushButton *>()) {
                widths.append(button->width());
            }
            box->findChildren<QPushButton *>().constFirst()->click();
        });
        ModernMessageBox::question(parent, QStringLiteral("?"), QStringLiteral("?"), QString(),
                                   QStringLiteral("Yes"), QStringLiteral("No"),
                                   ModernMessageBox::Information);
        return widths;
    };
    QCOMPARE(buttonWidths(m_dialog.get()), buttonWidths(m_window.get()));
}

void TestLanguageDialog::questionsShadeTheCardOnly()
{
    bool isSeen = false;
    QTimer::singleShot(0, m_dialog.get(), [&] {
        const auto *backdrop = m_dialog->findChild<QWidget *>(QStringLiteral("modalBackdrop"));
        const QRect card =
            m_dialog->findChild<QFrame *>(QStringLiteral("languageCard"))->geometry();
        isSeen = backdrop != nullptr && backdrop->mask().boundingRect() == card &&
                 !backdrop->mask().contains(card.topLeft()) &&
                 backdrop->mask().contains(card.center());
        QApplication::activeModalWidget()->findChildren<QPushButton *>().constFirst()->click();
    });
    ModernMessageBox::question(m_dialog.get(), QStringLiteral("?"), QStringLiteral("?"), QString(),
                               QStringLiteral("Yes"), QStringLiteral("No"),
                               ModernMessageBox::Information);
    QVERIFY(isSeen);
}

void TestLanguageDialog::languageInForceClosesWithoutAQuestion()
{
    QSignalSpy changed(LanguageManager::instance(), &LanguageManager::languageChanged);
    QSignalSpy accepted(m_dialog.get(), &QDialog::accepted);
    QTest::mouseClick(button("languageApplyButton"), Qt::LeftButton);
    QCOMPARE(accepted.size(), 1);
    QVERIFY(!m_dialog->isVisible());
    QVERIFY(changed.isEmpty());
}

void TestLanguageDialog::cancelClosesWithoutChange()
{
    QSignalSpy rejected(m_dialog.get(), &QDialog::rejected);
    QTest::mouseClick(card(QStringLiteral("fr_FR")), Qt::LeftButton);
    QTest::mouseClick(button("languageCancelButton"), Qt::LeftButton);
    QCOMPARE(rejected.size(), 1);
    QCOMPARE(LanguageManager::instance()->currentLanguage(), QStringLiteral("zh_CN"));
}

void TestLanguageDialog::escapeClosesWithoutChange()
{
    QTest::mouseClick(card(QStringLiteral("fr_FR")), Qt::LeftButton);
    QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(LanguageManager::instance()->currentLanguage(), QStringLiteral("zh_CN"));
}

void TestLanguageDialog::cancelledQuestionLeavesThePickerOpen()
{
    QSignalSpy changed(LanguageManager::instance(), &LanguageManager::languageChanged);
    QTest::mouseClick(card(QStringLiteral("de_DE")), Qt::LeftButton);
    const DialogAnswers answers({QStringLiteral("messageBoxCancelButton")});
    QTest::mouseClick(button("languageApplyButton"), Qt::LeftButton);
    QVERIFY(answers.allGiven());
    QCOMPARE(answers.seen(),
             (QStringList{QStringLiteral("切换语言？"), QStringLiteral("界面语言将切换为“德语”。"),
                          QStringLiteral("当前打开的工具标签页将关闭。")}));
    QVERIFY(m_dialog->isVisible());
    QVERIFY(card(QStringLiteral("de_DE"))->isChecked());
    QCOMPARE(LanguageManager::instance()->currentLanguage(), QStringLiteral("zh_CN"));
    QVERIFY(changed.isEmpty());
}

void TestLanguageDialog::confirmedQuestionSwitchesAndCloses()
{
    QSignalSpy accepted(m_dialog.get(), &QDialog::accepted);
    bool visibleWhenTold = false;
    const QObject context;
    connect(LanguageManager::instance(), &LanguageManager::languageChanged, &context,
            [this, &visibleWhenTold] { visibleWhenTold = m_dialog->isVisible(); });
    QTest::mouseClick(card(QStringLiteral("de_DE")), Qt::LeftButton);
    const DialogAnswers answers({QStringLiteral("messageBoxConfirmButton")});
    QTest::mouseClick(button("languageApplyButton"), Qt::LeftButton);
    QVERIFY(answers.allGiven());
    QCOMPARE(answers.kinds().size(), 1);
    QCOMPARE(LanguageManager::instance()->currentLanguage(), QStringLiteral("de_DE"));
    QCOMPARE(accepted.size(), 1);
    QVERIFY(visibleWhenTold);
    QVERIFY(!m_dialog->isVisible());
}

void TestLanguageDialog::enterApplies()
{
    QTest::mouseClick(card(QStringLiteral("ja_JP")), Qt::LeftButton);
    const DialogAnswers answers({QStringLiteral("messageBoxConfirmButton")});
    QTest::keyClick(card(QStringLiteral("ja_JP")), Qt::Key_Return);
    QVERIFY(answers.allGiven());
    QCOMPARE(answers.kinds().size(), 1);
    QCOMPARE(LanguageManager::instance()->currentLanguage(), QStringLiteral("ja_JP"));
}

void TestLanguageDialog::missingTranslationFileIsReported()
{
    QTest::mouseClick(card(QStringLiteral("es_ES")), Qt::LeftButton);
    const DialogAnswers answers(
        {QStringLiteral("messageBoxConfirmButton"), QStringLiteral("messageBoxConfirmButton")});
    Q_CLEANUP_RESOURCE(translations);
    QTest::mouseClick(button("languageApplyButton"), Qt::LeftButton);
    initTranslations();
    QVERIFY(answers.allGiven());
    QCOMPARE(answers.seen().size(), 6);
    QCOMPARE(answers.seen().at(3), QStringLiteral("无法切换语言"));
    QCOMPARE(answers.seen().at(4), QStringLiteral("未能加载所选语言的翻译文件。"));
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(LanguageManager::instance()->currentLanguage(), QStringLiteral("zh_CN"));
}

QTEST_MAIN(TestLanguageDialog)
#include "tst_language_dialog.moc"
