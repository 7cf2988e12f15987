// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/document_printing.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/commands/page_printer.h"
#include "pdf/viewer/commands/print_dialog_options.h"
#include "pdf/viewer/commands/wait_cursor.h"
#include "widgets/modern_message_box.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>

namespace {

/// The steps of printing one document.
class DocumentPrinting
{
    Q_DECLARE_TR_FUNCTIONS(DocumentPrinting)

public:
    /// Sets a printer up for all pages of the document.
    static void setUp(QPrinter &printer, const PdfDocumentModel &document)
    {
        printer.setDocName(QFileInfo(document.documentPath()).fileName());
        printer.setFromTo(1, document.rowCount());
    }

    /// Lets the user choose printer and pages; false if he cancels or `parent` is deleted.
    static bool askUser(QPrinter &printer, int pageCount, QWidget *parent)
    {
        const QPointer<QWidget> owner(parent);
        const QPointer<QPrintDialog> dialog(new QPrintDialog(&printer, parent));
        dialog->setWindowTitle(tr("打印 PDF"));
        dialog->setMinMax(1, pageCount);
        offerWhatIsPrinted(*dialog);
        const bool accepted = dialog->exec() == QDialog::Accepted && dialog != nullptr;
        delete dialog;
        return accepted && owner != nullptr;
    }

    /// Prints the pages that the user chose out of `pageCount`.
    static PagePrinter::Outcome print(PagePrinter &pages, QPrinter &printer,
                                      const PdfDocumentModel &document, int pageCount)
    {
        const WaitCursor cursor;
        return pages.print(document.pages(),
                           printRange(printer.fromPage(), printer.toPage(), pageCount), printer);
    }

    static void tellOutcome(PagePrinter::Outcome outcome, const QString &reason, QWidget *parent)
    {
        switch (outcome) {
        case PagePrinter::Outcome::Printed:
        case PagePrinter::Outcome::Cancelled:
            break;
        case PagePrinter::Outcome::NotStarted:
            ModernMessageBox::showError(parent, tr("打印失败"), tr("无法启动打印任务。"),
                                        QString());
            break;
        case PagePrinter::Outcome::Incomplete:
            ModernMessageBox::showError(parent, tr("打印未完成"), reason, QString());
            break;
        }
    }
};

} // namespace

void printAskingUser(const PdfDocumentModel &document, QWidget *parent)
{
    const int pageCount = document.rowCount();
    if (pageCount == 0) {
        return;
    }
    QPrinter printer(QPrinter::HighResolution);
    DocumentPrinting::setUp(printer, document);
    if (!DocumentPrinting::askUser(printer, pageCount, parent)) {
        return;
    }
    PagePrinter pages;
    const PagePrinter::Outcome outcome =
        DocumentPrinting::print(pages, printer, document, pageCount);
    DocumentPrinting::tellOutcome(outcome, pages.reason(), parent);
}
