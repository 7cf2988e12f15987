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

constexpr std::array<Tool, 8> kTools{{
    {1, QT_TRANSLATE_NOOP("MainPage", "压缩PDF"), QLatin1String(":/res/icons/modern/compress.png"),
     QLatin1String(":/res/icons/modern/compress-big.png"), createPage<PdfCompressPage>,
     addInputFile<PdfCompressPage>},
    {2, QT_TRANSLATE_NOOP("MainPage", "PDF转为Office"),
     QLatin1String(":/res/icons/modern/convert.png"),
     QLatin1String(":/res/icons/modern/convert-big.png"), createPage<PdfToOfficePage>, nullptr},
    {3, QT_TRANSLATE_NOOP("MainPage", "Office转为PDF"),
     QLatin1String(":/res/icons/modern/convert.png"),
     QLatin1String(":/res/icons/modern/convert-big.png"), createPage<OfficeToPdfPage>, nullptr},
    {4, QT_TRANSLATE_NOOP("MainPage", "图像转PDF"), QLatin1String(":/res/icons/modern/image.png"),
     QLatin1String(":/res/icons/modern/image-big.png"), createPage<ImageToPdfPage>, nullptr},
    {5, QT_TRANSLATE_NOOP("MainPage", "PDF转为图像"), QLatin1String(":/res/icons/modern/image.png"),
     QLatin1String(":/res/icons/modern/image-big.png"), createPage<PdfConvertPage>,
     addInputFile<PdfConvertPage>},
    {6, QT_TRANSLATE_NOOP("MainPage", "PDF解密"), QLatin1String(":/res/icons/modern/decrypt.png"),
     QLatin1String(":/res/icons/modern/decrypt-big.png"), createPage<PdfDecryPage>,
     addInputFile<PdfDecryPage>},
    {7, QT_TRANSLATE_NOOP("MainPage", "PDF加密"), QLatin1String(":/res/icons/modern/encrypt.png"),
     QLatin1String(":/res/icons/modern/encrypt-big.png"), createPage<PdfEncryPage>,
     addInputFile<PdfEncryPage>},
    {8, QT_TRANSLATE_NOOP("MainPage", "合并PDF"), QLatin1String(":/res/icons/modern/merge.png"),
     QLatin1String(":/res/icons/modern/merge-big.png"), createPage<PdfMergePage>, nullptr},
}};

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
