// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tests/pdfcore/fidelity/fidelity_case.h"

#include <vector>

/// Pieces of which tests of odd documents are made.
namespace FidelityPieces {

/// References to objects called `name` and a number, from 0 on.
QByteArray references(const QByteArray &name, int count);

/// `count` pages that share all that a plain document has, content included.
FidelityAssembly withManyPages(int count, const QByteArray &pageEntries);

/// Saves a list of pages that must be as many in the new file.
void saveList(const FidelityCase &test, const QString &list);

/// What stands below an object under these keys, one after the other; null when it ends.
QPDFObjectHandle below(QPDFObjectHandle object, const std::vector<const char *> &keys);

/// Every object of the file with the data of streams.
QByteArray everythingIn(FidelityDocument &document);

/// A document of `count` pages whose form has the given entries.
FidelityAssembly withForm(const QByteArray &prefix, int count, const QByteArray &form);

/// Adds a widget with the given entries.
void addWidget(FidelityAssembly &document, const QByteArray &name, const QByteArray &entries);

/// Gives a page, counted from 1, its annotations.
void annotate(FidelityAssembly &document, int page, const QByteArray &annotations);

} // namespace FidelityPieces
