// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

class QWidget;

/// Asks for the password of a file in a dialog over `parent`; `label` says what for. Returns
/// nothing if the user cancels or `parent` is deleted while the dialog is open.
[[nodiscard]] std::optional<QString> askForPassword(QWidget *parent, const QString &label);
