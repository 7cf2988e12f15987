// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// What a file says, spelled in one way: all objects that can be reached, numbered as they are met,
/// with the decoded data of their streams. The identity of the file is left out, and so is how it
/// is packed. A file that cannot be read is a sentence about that.
[[nodiscard]] QByteArray canonicalForm(const QString &path, const QString &password = {});
