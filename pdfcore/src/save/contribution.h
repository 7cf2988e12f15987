// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/interactive/action_targets.h"
#include "pdfcore/src/save/interactive/form_fields.h"
#include "pdfcore/src/save/interactive/link_pruner.h"
#include "pdfcore/src/save/interactive/outline.h"
#include "pdfcore/src/save/interactive/page_labels.h"
#include "pdfcore/src/save/source/object_copier.h"
#include "pdfcore/src/save/source/source_document.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace pdfcore {

/// What one source document gives to an output: first pruned to the pages that the output has, then
/// copied into it unless it is the output itself.
class Contribution
{
public:
    explicit Contribution(SourceDocument &source)
        : m_source(source)
    {}

    [[nodiscard]] SourceDocument &source() const { return m_source; }
    [[nodiscard]] const Outline &outline() const { return m_outline; }
    [[nodiscard]] const FormFields &fields() const { return m_fields; }
    [[nodiscard]] const SourceLabels &labels() const { return *m_labels; }
    /// See LinkPruner::brokenNames().
    [[nodiscard]] const std::set<std::string> &brokenNames() const { return m_brokenNames; }
    /// Null in the main document.
    [[nodiscard]] ObjectCopier *copier() const { return m_copier.get(); }

    /// Takes everything out that leads to pages that are gone.
    void prune(LinkPruner::Role role);
    /// Makes the kept pages pages of the output. Of the main document they are that already.
    void bringPages(QPDF &output, bool isMain);
    /// Makes the actions that name fields and attachments by their old names name them by the new
    /// ones.
    void renameTargets(const ActionTargets::Names &fields, const ActionTargets::Names &attachments);

    /// A kept page in the output.
    [[nodiscard]] QPDFObjectHandle pageInOutput(int index) const;
    /// The rotation that the page has in the source document.
    [[nodiscard]] QPDFObjectHandle ownRotation(int index) const;

private:
    std::set<QPDFObjGen> keepAnnotations();
    void dropGonePages();

    SourceDocument &m_source;
    Outline m_outline;
    FormFields m_fields;
    std::optional<SourceLabels> m_labels;
    std::unique_ptr<ObjectCopier> m_copier;
    std::map<int, QPDFObjectHandle> m_pages;
    std::map<int, QPDFObjectHandle> m_rotations;
    std::set<std::string> m_brokenNames;
};

} // namespace pdfcore
