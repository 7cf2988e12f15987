// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/pdf_show_page.h"

#include "pdf/viewer/common/external_tools.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "tools/tool_type.h"

#include <QVBoxLayout>

namespace {

struct ExternalTool
{
    QLatin1String id;
    ToolType toolType;
};

constexpr ExternalTool kExternalTools[] = {
    {ExternalTools::kCompress, CompressPdfTool},
    {ExternalTools::kImages, PdfToImagesTool},
    {ExternalTools::kDecrypt, DecryptPdfTool},
    {ExternalTools::kEncrypt, EncryptPdfTool},
};

} // namespace

PdfShowPage::PdfShowPage(QWidget *parent)
    : QWidget(parent)
    , m_viewer(new PdfViewerWidget(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_viewer);
    setFocusProxy(m_viewer);

    connect(m_viewer, &PdfViewerWidget::convertPdfToOfficeRequested, this,
            [this](const QString &path) { emit toolRequested(PdfToOfficeTool, path); });
    connect(m_viewer, &PdfViewerWidget::externalToolRequested, this, &PdfShowPage::requestTool);
}

PdfShowPage::~PdfShowPage() = default;

bool PdfShowPage::openFile(const QString &path)
{
    return m_viewer->openFile(path, QString());
}

void PdfShowPage::requestTool(const QString &toolId, const QString &filePath)
{
    for (const ExternalTool &tool : kExternalTools) {
        if (tool.id == toolId) {
            emit toolRequested(tool.toolType, filePath);
        }
    }
}
