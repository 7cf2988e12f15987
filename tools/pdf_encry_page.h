// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/file_input_page.h"

/// The page of the tool that protects PDF files with a password.
class PdfEncryPage final : public FileInputPage
{
    Q_OBJECT

public:
    explicit PdfEncryPage(QWidget *parent = nullptr);
};
