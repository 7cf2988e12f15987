#include "pdf/viewer/pdf_viewer_widget.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/pdf_document_view.h"
#include "widgets/modern_message_box.h"
#include "widgets/theme.h"

#include <QInputDialog>
#include <QPointer>
#include <QSplitter>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

// %1 handle
constexpr QLatin1String kSplitterStyleSheet{
    "QSplitter#pdfViewerSplitter::handle { background: %1; }"};
constexpr int kSplitterHandleWidth = 1;
constexpr int kPasswordDialogWidth = 360;

bool needsPassword(PdfBackendError error)
{
    return error == PdfBackendError::PasswordRequired || error == PdfBackendError::InvalidPassword;
}

} // namespace

PdfViewerWidget::PdfViewerWidget(QWidget *parent)
    : QWidget(parent)
    , m_model(new PdfDocumentModel(this))
    , m_renderManager(new PdfRenderManager(this))
{
    buildInterface();
    connectParts();
    refreshPageState();
}

PdfViewerWidget::~PdfViewerWidget() = default;

bool PdfViewerWidget::openFile(const QString &path, const QString &password)
{
    if (path.isEmpty() || (m_model->isModified() && !maybeSave())) {
        return false;
    }
    m_renderManager->cancelAll();
    m_renderManager->clearCache();

    const QPointer<PdfViewerWidget> self(this);
    PdfBackendError error = PdfBackendError::None;
    QString message;
    bool loaded = m_model->loadDocument(path, password, &error, &message);
    while (!loaded && needsPassword(error)) {
        const std::optional<QString> answer = askPassword(
            error == PdfBackendError::PasswordRequired ? tr("此 PDF 已加密，请输入密码：")
                                                       : tr("密码错误，请重新输入 PDF 密码："));
        if (!self) {
            return false;
        }
        if (!answer) {
            m_documentView->restartRequests();
            return false;
        }
        loaded = m_model->loadDocument(path, *answer, &error, &message);
    }
    if (!loaded) {
        m_documentView->restartRequests();
        showBackendError(tr("无法打开 PDF"), error, message);
        return false;
    }

    m_documentView->fitWidth();
    m_documentView->goToPage(0);
    refreshPageState();
    emit documentLoaded(m_model->documentPath());
    return true;
}

bool PdfViewerWidget::maybeSave()
{
    return !m_model->isModified();
}

void PdfViewerWidget::showBackendError(const QString &title, PdfBackendError error,
                                       const QString &detail)
{
    QString sentence;
    switch (error) {
    case PdfBackendError::FileNotFound:
        sentence = tr("文件不存在或已被移动。");
        break;
    case PdfBackendError::PasswordRequired:
        sentence = tr("PDF 需要密码。");
        break;
    case PdfBackendError::InvalidPassword:
        sentence = tr("PDF 密码错误。");
        break;
    case PdfBackendError::InvalidDocument:
        sentence = tr("PDF 已损坏或格式不受支持。");
        break;
    case PdfBackendError::RenderFailed:
        sentence = tr("页面渲染失败。");
        break;
    case PdfBackendError::WriteFailed:
        sentence = tr("无法写入目标文件，请检查权限和磁盘空间。");
        break;
    case PdfBackendError::None:
    default:
        sentence = tr("操作未完成。");
        break;
    }
    ModernMessageBox::showError(this, title, sentence, detail.trimmed());
}

void PdfViewerWidget::setCurrentPage(int page)
{
    m_documentView->goToPage(page);
}

void PdfViewerWidget::goToPage(int page)
{
    m_documentView->goToPage(page);
}

void PdfViewerWidget::setZoomFactor(double factor)
{
    m_documentView->setZoomFactor(factor);
}

void PdfViewerWidget::zoomIn()
{
    m_documentView->zoomIn();
}

void PdfViewerWidget::zoomOut()
{
    m_documentView->zoomOut();
}

void PdfViewerWidget::fitWidth()
{
    m_documentView->fitWidth();
}

void PdfViewerWidget::fitPage()
{
    m_documentView->fitPage();
}

void PdfViewerWidget::fitHeight()
{
    fitPage();
}

void PdfViewerWidget::buildInterface()
{
    setObjectName(QStringLiteral("pdfViewerWidget"));

    m_documentView = new PdfDocumentView;
    m_documentView->setModel(m_model);
    m_documentView->setRenderManager(m_renderManager);

    m_viewStack = new QStackedWidget;
    m_viewStack->addWidget(m_documentView);

    m_splitter = new QSplitter(Qt::Horizontal, this);
    m_splitter->setObjectName(QStringLiteral("pdfViewerSplitter"));
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(kSplitterHandleWidth);
    m_splitter->setStyleSheet(QString(kSplitterStyleSheet).arg(Theme::border.name()));
    m_splitter->addWidget(m_viewStack);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_splitter, 1);
    setFocusProxy(m_documentView);
}

void PdfViewerWidget::connectParts()
{
    connect(m_documentView, &PdfDocumentView::currentPageChanged, this,
            &PdfViewerWidget::currentPageChanged);
    connect(m_documentView, &PdfDocumentView::zoomFactorChanged, this, [this](double factor) {
        emit zoomChanged(factor);
        emit zoomFactorChanged(factor);
    });
    connect(m_documentView, &PdfDocumentView::firstPagePainted, this,
            &PdfViewerWidget::firstPagePainted);

    connect(m_model, &PdfDocumentModel::modelReset, this, &PdfViewerWidget::refreshPageState);
    connect(m_model, &PdfDocumentModel::rowsInserted, this, &PdfViewerWidget::refreshPageState);
    connect(m_model, &PdfDocumentModel::rowsRemoved, this, &PdfViewerWidget::refreshPageState);
    connect(m_model, &PdfDocumentModel::modifiedChanged, this, &PdfViewerWidget::modifiedChanged);
}

void PdfViewerWidget::refreshPageState()
{
    emit pageCountChanged(m_model->rowCount());
}

std::optional<QString> PdfViewerWidget::askPassword(const QString &label)
{
    // The dialog belongs to the viewer, which may be deleted while it is open.
    const QPointer<QInputDialog> dialog(new QInputDialog(this));
    dialog->setWindowTitle(tr("需要密码"));
    dialog->setLabelText(label);
    dialog->setTextEchoMode(QLineEdit::Password);
    dialog->setOkButtonText(tr("确定"));
    dialog->setCancelButtonText(tr("取消"));
    dialog->resize(kPasswordDialogWidth, dialog->sizeHint().height());
    std::optional<QString> answer;
    if (dialog->exec() == QDialog::Accepted && dialog) {
        answer = dialog->textValue();
    }
    delete dialog;
    return answer;
}
