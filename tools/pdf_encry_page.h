// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/file_tool_page.h"

/// The page of the tool that protects PDF files with a password.
class PdfEncryPage final : public FileToolPage
{
    Q_OBJECT

public:
    static constexpr QLatin1String kIconPath{":/res/icons/modern/encrypt-big.png"};

    explicit PdfEncryPage(QWidget *parent = nullptr);

    [[nodiscard]] QList<TaskRequest> requestsFor(const QStringList &files) const override;

protected:
    /// Asks where the password was not typed the same way twice: nobody could open the files with
    /// one that is not known.
    [[nodiscard]] bool confirmStart() override;
};
