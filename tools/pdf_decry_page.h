// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/file_input_page.h"

/// The page of the tool that removes the password of PDF files.
class PdfDecryPage final : public FileInputPage
{
    Q_OBJECT

public:
    static constexpr QLatin1String kIconPath{":/res/icons/modern/decrypt-big.png"};

    explicit PdfDecryPage(QWidget *parent = nullptr);
};
