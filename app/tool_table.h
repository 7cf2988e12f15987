// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QLatin1String>
#include <QString>

#include <span>

class QWidget;

/// One batch tool: its number and what the workspace shows of it.
struct Tool
{
    /// A value of ToolType, as carried by signals and by the pages' "plenvoToolType".
    int type;
    /// Title of the tool's tab, to be translated in the context "MainPage".
    const char *title;
    /// Resource path of the tab's icon.
    QLatin1String icon;
    /// Resource path of the icon for larger sizes.
    QLatin1String bigIcon;
    /// Creates the tool's page; `parent` owns it.
    QWidget *(*createPage)(QWidget *parent);
    /// Hands an input file to a page made by createPage(); null if the tool takes none.
    void (*addInputFile)(QWidget *page, const QString &filePath);
};

/// The tools in the order of their numbers.
[[nodiscard]] std::span<const Tool> toolTable();

/// The tool `type`, or null for a number that is no value of ToolType.
[[nodiscard]] const Tool *findTool(int type);
