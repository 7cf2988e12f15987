// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

class PdfDocumentModel;
class QWidget;

/// Prints a document after the user has chosen how in a dialog over `parent`, and tells him when
/// that fails. Does nothing with a document without pages. Returns when everything is printed;
/// `parent`, together with the document, may be deleted while a dialog is open.
void printAskingUser(const PdfDocumentModel &document, QWidget *parent);
