// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

/// The batch tools by their numbers, which are stable: signals and page properties carry them as
/// integers.
enum ToolType : int {
    CompressPdfTool = 1,
    PdfToOfficeTool = 2,
    OfficeToPdfTool = 3,
    ImagesToPdfTool = 4,
    PdfToImagesTool = 5,
    DecryptPdfTool = 6,
    EncryptPdfTool = 7,
    MergePdfTool = 8,
};
