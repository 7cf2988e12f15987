// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/file_input_page.h"

/// The page of the tool that saves the pages of PDF files as images.
class PdfConvertPage final : public FileInputPage
{
    Q_OBJECT

public:
    static constexpr QLatin1String kIconPath{":/res/icons/modern/image-big.png"};

    explicit PdfConvertPage(QWidget *parent = nullptr);
};
