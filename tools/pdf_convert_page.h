// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/file_tool_page.h"

/// The page of the tool that saves the pages of PDF files as images.
class PdfConvertPage final : public FileToolPage
{
    Q_OBJECT

public:
    static constexpr QLatin1String kIconPath{":/res/icons/modern/image-big.png"};

    explicit PdfConvertPage(QWidget *parent = nullptr);

    [[nodiscard]] QList<TaskRequest> requestsFor(const QStringList &files) const override;
};
