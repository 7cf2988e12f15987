// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/file_input_page.h"

/// The page of the tool that removes the password of PDF files.
class PdfDecryPage final : public FileInputPage
{
    Q_OBJECT

public:
    explicit PdfDecryPage(QWidget *parent = nullptr);
};
