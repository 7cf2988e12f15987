// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/file_input_page.h"

/// The page of the tool that protects PDF files with a password.
class PdfEncryPage final : public FileInputPage
{
    Q_OBJECT

public:
    static constexpr QLatin1String kIconPath{":/res/icons/modern/encrypt-big.png"};

    explicit PdfEncryPage(QWidget *parent = nullptr);
};
