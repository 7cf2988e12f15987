#pragma once

#include "pdfcore/pdf_editor_backend.h"

#include <QString>
#include <QWidget>

#include <optional>

class PdfDocumentModel;
class PdfDocumentView;
class PdfRenderManager;
class QSplitter;
class QStackedWidget;

/// The workspace of one open PDF: owns the document and its renderer and shows its pages.
///
/// Pages are counted from zero.
class PdfViewerWidget final : public QWidget
{
    Q_OBJECT

public:
    explicit PdfViewerWidget(QWidget *parent = nullptr);
    ~PdfViewerWidget() override;

    /// Opens a file in place of the document shown, asking for a password as long as it needs
    /// another one. False when nothing was opened; the document shown then stays. The user has
    /// been told of a failure; giving up at the password is none.
    bool openFile(const QString &path, const QString &password);

    /// True when the document may be replaced or closed.
    [[nodiscard]] bool maybeSave();

    /// Tells the user that the engine failed: a sentence for `error` and the engine's own `detail`.
    void showBackendError(const QString &title, PdfBackendError error, const QString &detail);

signals:
    void currentPageChanged(int page);
    void pageCountChanged(int count);
    void zoomChanged(double zoom);
    void zoomFactorChanged(double factor);
    void modifiedChanged(bool modified);
    void documentLoaded(const QString &path);
    void documentClosed();
    void convertPdfToOfficeRequested(const QString &path);
    void externalToolRequested(const QString &toolId, const QString &path);
    /// The finished image of the current page was painted for the first time in this document.
    void firstPagePainted();

public slots:
    void setCurrentPage(int page);
    void goToPage(int page);
    void setZoomFactor(double factor);
    void zoomIn();
    void zoomOut();
    void fitWidth();
    void fitPage();
    void fitHeight();

private:
    void buildInterface();
    void connectParts();
    void refreshPageState();
    /// Nothing when the user gives up.
    [[nodiscard]] std::optional<QString> askPassword(const QString &label);

    PdfDocumentModel *m_model;
    PdfRenderManager *m_renderManager;
    QSplitter *m_splitter = nullptr;
    QStackedWidget *m_viewStack = nullptr;
    PdfDocumentView *m_documentView = nullptr;
};
