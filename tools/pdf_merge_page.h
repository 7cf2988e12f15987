// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/file_tool_page.h"

/// The page of the tool that merges several PDF files into one.
class PdfMergePage final : public FileToolPage
{
    Q_OBJECT

public:
    static constexpr QLatin1String kIconPath{":/res/icons/modern/merge-big.png"};

    explicit PdfMergePage(QWidget *parent = nullptr);

    [[nodiscard]] QList<TaskRequest> requestsFor(const QStringList &files) const override;
};
