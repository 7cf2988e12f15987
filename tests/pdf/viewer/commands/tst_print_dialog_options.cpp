// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/print_dialog_options.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/commands/document_printing.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QPalette>
#include <QPrintDialog>
#include <QPrinter>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

#include <memory>

/// What the print dialog offers where Qt brings the dialog.
class TestPrintDialogOptions final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void fileTakesNoWorkOfThePrintServer_data() { addServerControls(); }
    void fileTakesNoWorkOfThePrintServer();
    void dialogForAFileTakesNoneFromTheStart_data() { addServerControls(); }
    void dialogForAFileTakesNoneFromTheStart();
    void printServerDoesItsWork_data() { addServerControls(); }
    void printServerDoesItsWork();
    void disabledTextIsPalerThanEnabledText();
    void userIsAskedByThisDialog();

private:
    static void addServerControls();
    [[nodiscard]] QWidget *control(const QString &name) const
    {
        return m_dialog->findChild<QWidget *>(name);
    }
    /// The file is the last of the printers.
    static void chooseFile(const QPrintDialog &dialog)
    {
        auto *printers = dialog.findChild<QComboBox *>(QStringLiteral("printers"));
        printers->setCurrentIndex(printers->count() - 1);
    }
    /// The darkest pixel of a control on its ground.
    [[nodiscard]] static int darkest(QWidget *widget);

    std::unique_ptr<QPrinter> m_printer;
    std::unique_ptr<QPrintDialog> m_dialog;
};

void TestPrintDialogOptions::initTestCase()
{
    // The program has the same ink for all states.
    QPalette palette = QApplication::palette();
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setBrush(QPalette::All, role, QColor(0x17, 0x20, 0x33));
    }
    QApplication::setPalette(palette);
    qApp->setStyleSheet(QStringLiteral("QToolTip { padding: 6px; }"));
}

void TestPrintDialogOptions::init()
{
    m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    m_dialog = std::make_unique<QPrintDialog>(m_printer.get());
    m_dialog->setMinMax(1, 9);
    offerWhatIsPrinted(*m_dialog);
    if (control(QStringLiteral("pagesRadioButton")) == nullptr) {
        QSKIP("The dialog is the system's own.");
    }
    chooseFile(*m_dialog);
}

void TestPrintDialogOptions::cleanup()
{
    m_dialog.reset();
    m_printer.reset();
}

void TestPrintDialogOptions::addServerControls()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"copies", "collate", "reverse"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void TestPrintDialogOptions::fileTakesNoWorkOfThePrintServer()
{
    QFETCH(QString, name);
    m_dialog->show();
    QVERIFY(!m_printer->supportsMultipleCopies());
    QVERIFY(!control(name)->isEnabled());
}

void TestPrintDialogOptions::dialogForAFileTakesNoneFromTheStart()
{
    QFETCH(QString, name);
    QPrintDialog dialog(m_printer.get());
    auto *taken = dialog.findChild<QWidget *>(name);
    taken->setEnabled(true);
    dialog.findChild<QWidget *>(QStringLiteral("pagesRadioButton"))->setEnabled(false);
    offerWhatIsPrinted(dialog);
    QVERIFY(!taken->isEnabled());
}

void TestPrintDialogOptions::printServerDoesItsWork()
{
    QFETCH(QString, name);
    // As the dialog does when a printer is chosen that has a server.
    control(QStringLiteral("pagesRadioButton"))->setEnabled(true);
    QVERIFY(control(name)->isEnabled());
    control(QStringLiteral("pagesRadioButton"))->setEnabled(false);
    QVERIFY(!control(name)->isEnabled());
}

int TestPrintDialogOptions::darkest(QWidget *widget)
{
    const QImage image = widget->grab().toImage();
    int lightness = 255;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = image.width() / 3; x < image.width(); ++x) {
            lightness = std::min(lightness, image.pixelColor(x, y).lightness());
        }
    }
    return lightness;
}

void TestPrintDialogOptions::disabledTextIsPalerThanEnabledText()
{
    m_dialog->show();
    QWidget *enabled = control(QStringLiteral("printRange"));
    QWidget *disabled = control(QStringLiteral("reverse"));
    QVERIFY(darkest(enabled) < 80);
    QVERIFY2(darkest(disabled) > 110, qPrintable(QString::number(darkest(disabled))));
}

void TestPrintDialogOptions::userIsAskedByThisDialog()
{
    PdfDocumentModel document;
    PdfPageRecord page;
    page.id = 1;
    page.pageSize = kBlankPageSize;
    page.origin = PdfPageOrigin::Blank;
    document.setPages({page}, false);
    bool asked = false;
    QTimer::singleShot(0, &document, [&] {
        auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        asked = true;
        chooseFile(*dialog);
        const bool takesCopies =
            dialog->findChild<QWidget *>(QStringLiteral("copies"))->isEnabled();
        dialog->reject();
        QVERIFY(!takesCopies);
    });
    printAskingUser(document, nullptr);
    QVERIFY(asked);
}

QTEST_MAIN(TestPrintDialogOptions)
#include "tst_print_dialog_options.moc"
