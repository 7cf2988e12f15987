// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/tool_table.h"

#include "tools/image_to_pdf_page.h"
#include "tools/office_to_pdf_page.h"
#include "tools/pdf_compress_page.h"
#include "tools/pdf_convert_page.h"
#include "tools/pdf_decry_page.h"
#include "tools/pdf_encry_page.h"
#include "tools/pdf_merge_page.h"
#include "tools/pdf_to_office_page.h"
#include "tools/tool_type.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace {

template <typename Page>
QWidget *createPage(QWidget *parent)
{
    return new Page(parent);
}

template <typename Page>
void addInputFile(QWidget *page, const QString &filePath)
{
    if (auto *toolPage = qobject_cast<Page *>(page)) {
        toolPage->addInputFile(filePath);
    }
}

/// A tool whose page takes files.
template <typename Page>
constexpr Tool fileTool(ToolType type, const char *title, QLatin1String icon)
{
    return {type, title, icon, Page::kIconPath, createPage<Page>, addInputFile<Page>};
}

/// A tool whose page takes none.
template <typename Page>
constexpr Tool plainTool(ToolType type, const char *title, QLatin1String icon)
{
    return {type, title, icon, Page::kIconPath, createPage<Page>, nullptr};
}

constexpr std::array kTools{
    fileTool<PdfCompressPage>(CompressPdfTool, QT_TRANSLATE_NOOP("MainPage", "压缩PDF"),
                              QLatin1String(":/res/icons/modern/compress.png")),
    plainTool<PdfToOfficePage>(PdfToOfficeTool, QT_TRANSLATE_NOOP("MainPage", "PDF转为Office"),
                               QLatin1String(":/res/icons/modern/convert.png")),
    plainTool<OfficeToPdfPage>(OfficeToPdfTool, QT_TRANSLATE_NOOP("MainPage", "Office转为PDF"),
                               QLatin1String(":/res/icons/modern/convert.png")),
    plainTool<ImageToPdfPage>(ImagesToPdfTool, QT_TRANSLATE_NOOP("MainPage", "图像转PDF"),
                              QLatin1String(":/res/icons/modern/image.png")),
    fileTool<PdfConvertPage>(PdfToImagesTool, QT_TRANSLATE_NOOP("MainPage", "PDF转为图像"),
                             QLatin1String(":/res/icons/modern/image.png")),
    fileTool<PdfDecryPage>(DecryptPdfTool, QT_TRANSLATE_NOOP("MainPage", "PDF解密"),
                           QLatin1String(":/res/icons/modern/decrypt.png")),
    fileTool<PdfEncryPage>(EncryptPdfTool, QT_TRANSLATE_NOOP("MainPage", "PDF加密"),
                           QLatin1String(":/res/icons/modern/encrypt.png")),
    plainTool<PdfMergePage>(MergePdfTool, QT_TRANSLATE_NOOP("MainPage", "合并PDF"),
                            QLatin1String(":/res/icons/modern/merge.png")),
};

} // namespace

std::span<const Tool> toolTable()
{
    return kTools;
}

const Tool *findTool(int type)
{
    const auto tool = std::find_if(kTools.cbegin(), kTools.cend(), [type](const Tool &candidate) {
        return candidate.type == type;
    });
    return tool == kTools.cend() ? nullptr : &*tool;
}
