// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/file_tool_page.h"

/// The page of the tool that removes the password of PDF files.
class PdfDecryPage final : public FileToolPage
{
    Q_OBJECT

public:
    static constexpr QLatin1String kIconPath{":/res/icons/modern/decrypt-big.png"};

    explicit PdfDecryPage(QWidget *parent = nullptr);

    [[nodiscard]] QList<TaskRequest> requestsFor(const QStringList &files) const override;
};
