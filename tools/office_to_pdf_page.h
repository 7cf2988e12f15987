// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tools/office_tool_page.h"

/// The page of the tool that turns Office documents into PDF files.
class OfficeToPdfPage final : public OfficeToolPage
{
    Q_OBJECT

public:
    static constexpr QLatin1String kIconPath{":/res/icons/modern/convert-big.png"};

    explicit OfficeToPdfPage(QWidget *parent = nullptr);
};
