// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

#include "tests/pdfcore/fidelity/fidelity_document.h"
#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_outline.h"

#include <QTemporaryDir>

#include <qpdf/Pl_String.hh>
#include <qpdf/QPDFJob.hh>
#include <qpdf/QPDFLogger.hh>

namespace FidelitySoundness {

namespace {

bool hasName(QPDFObjectHandle dictionary, const char *key, const char *name)
{
    QPDFObjectHandle value = dictionary.getKey(key);
    return value.isName() && value.getName() == name;
}

bool contains(const std::vector<QPDFObjectHandle> &objects, const QPDFObjectHandle &object)
{
    for (const QPDFObjectHandle &candidate : objects) {
        if (candidate.isIndirect() && candidate.getObjGen() == object.getObjGen()) {
            return true;
        }
    }
    return false;
}

/// Takes out what newer releases of the checker say of annotations that stand in a source the same
/// way. Saves keep them as they are, and the other checks here see to what saves do to annotations.
std::string withoutTasteInAnnotations(const std::string &messages)
{
    QStringList kept;
    for (const QString &line : QString::fromStdString(messages).split(QLatin1Char('\n'))) {
        const bool isTaste =
            line.contains(QLatin1String("Annots is not an array")) ||
            line.contains(QLatin1String("Annots has duplicate entry")) ||
            line.contains(QLatin1String("this widget annotation is not reachable from /AcroForm"));
        if (!isTaste) {
            kept.append(line);
        }
    }
    return kept.join(QLatin1Char('\n')).toStdString();
}

/// What QPDF says when it is called with these arguments; nothing when all is well.
QStringList problemsOfJob(const std::vector<std::string> &arguments)
{
    std::string messages;
    Pl_String sink("messages", nullptr, messages);
    const std::shared_ptr<Pipeline> output(&sink, [](Pipeline *) {});
    const std::shared_ptr<QPDFLogger> logger = QPDFLogger::create();
    logger->setInfo(output);
    logger->setWarn(output);
    logger->setError(output);
    try {
        QPDFJob job;
        job.setLogger(logger);
        std::vector<const char *> words;
        for (const std::string &argument : arguments) {
            words.push_back(argument.c_str());
        }
        words.push_back(nullptr);
        job.initializeFromArgv(words.data());
        job.run();
        const std::string serious = withoutTasteInAnnotations(messages);
        const bool isSilenced = serious != messages && job.getExitCode() == QPDFJob::EXIT_WARNING &&
                                serious.find("WARNING") == std::string::npos;
        if (job.getExitCode() == 0 || isSilenced) {
            return {};
        }
        messages = serious;
    } catch (const std::exception &exception) {
        messages += exception.what();
    }
    // On a line of its own, because what the checker says first depends on the release.
    return {QStringLiteral("syntax:\n") + QString::fromStdString(messages)};
}

/// Walks the structure from its root.
struct StructureWalker
{
    FidelityDocument &document;
    QStringList problems;
    std::set<QPDFObjGen> elements;

    void complain(QPDFObjectHandle element, const QString &what)
    {
        problems.append(
            QStringLiteral("structure element %1 %2")
                .arg(QString::fromStdString(element.getKey("/S").unparseResolved()), what));
    }

    void checkPage(QPDFObjectHandle owner, QPDFObjectHandle element)
    {
        if (owner.hasKey("/Pg") && document.indexOf(owner.getKey("/Pg")) < 0) {
            complain(element, QStringLiteral("belongs to a page that is gone"));
        }
    }

    /// An entry of /K: an element, a marked content reference, an object reference or a number.
    void walkKid(QPDFObjectHandle kid, QPDFObjectHandle parent)
    {
        if (!kid.isDictionary()) {
            return;
        }
        // Only elements have to have a kind; the others need not say what they are.
        const bool isElement = kid.hasKey("/S");
        if (hasName(kid, "/Type", "/MCR") || (!isElement && kid.hasKey("/MCID"))) {
            checkPage(kid, parent);
        } else if (hasName(kid, "/Type", "/OBJR") || (!isElement && kid.hasKey("/Obj"))) {
            checkPage(kid, parent);
            bool isOnPage = false;
            for (qsizetype i = 0; i < document.marks().size(); ++i) {
                isOnPage = isOnPage || contains(document.annotations(i), kid.getKey("/Obj"));
            }
            if (!isOnPage) {
                complain(parent, QStringLiteral("refers to an annotation that is on no page"));
            }
        } else {
            walkElement(kid, parent);
        }
    }

    void walkElement(QPDFObjectHandle element, QPDFObjectHandle parent)
    {
        if (!elements.insert(element.getObjGen()).second) {
            complain(element, QStringLiteral("comes twice"));
            return;
        }
        if (element.getKey("/P").getObjGen() != parent.getObjGen()) {
            complain(element, QStringLiteral("has another parent"));
        }
        checkPage(element, element);
        walkKids(element);
    }

    void walkKids(QPDFObjectHandle element)
    {
        QPDFObjectHandle kids = element.getKey("/K");
        if (!kids.isArray()) {
            walkKid(kids, element);
            return;
        }
        for (int i = 0; i < kids.getArrayNItems(); ++i) {
            walkKid(kids.getArrayItem(i), element);
        }
    }

    void checkReachable(QPDFObjectHandle element, long long key)
    {
        if (element.isDictionary() && !elements.contains(element.getObjGen())) {
            problems.append(
                QStringLiteral("entry %1 of the parent tree is no element of the tree").arg(key));
        }
    }
};

/// Keys of the parent tree that pages and annotations hold.
std::map<long long, int> usedStructureKeys(FidelityDocument &document, QStringList &problems)
{
    std::map<long long, int> used;
    const auto use = [&](QPDFObjectHandle key, const QString &what) {
        if (key.isInteger() && ++used[key.getIntValue()] > 1) {
            problems.append(
                QStringLiteral("%1 shares the structure key %2").arg(what).arg(key.getIntValue()));
        }
    };
    for (qsizetype i = 0; i < document.marks().size(); ++i) {
        const QString name = document.marks().at(i);
        use(document.page(i).getKey("/StructParents"), name);
        for (QPDFObjectHandle annotation : document.annotations(i)) {
            if (annotation.isDictionary()) {
                use(annotation.getKey("/StructParent"), QStringLiteral("annotation on ") + name);
            }
        }
    }
    return used;
}

} // namespace

QStringList syntaxProblems(const QString &path)
{
    return problemsOfJob({"qpdf", "--check", path.toLocal8Bit().toStdString()});
}

QStringList readingProblems(const QString &path)
{
    const QTemporaryDir folder;
    return problemsOfJob({"qpdf", "--stream-data=uncompress", "--decode-level=all",
                          "--object-streams=disable", path.toLocal8Bit().toStdString(),
                          folder.filePath(QStringLiteral("read.pdf")).toLocal8Bit().toStdString()});
}

QStringList pageProblems(FidelityDocument &document)
{
    QStringList problems;
    std::map<QPDFObjGen, qsizetype> owners;
    for (qsizetype i = 0; i < document.marks().size(); ++i) {
        for (const QPDFObjectHandle &annotation : document.annotations(i)) {
            const auto [owner, isNew] = owners.emplace(annotation.getObjGen(), i);
            if (annotation.isIndirect() && !isNew) {
                problems.append(QStringLiteral("pages %1 and %2 share an annotation")
                                    .arg(owner->second + 1)
                                    .arg(i + 1));
            }
        }
    }
    for (QPDFObjectHandle object : document.pdf().getAllObjects()) {
        if (object.isDictionary() && hasName(object, "/Type", "/Page") &&
            document.indexOf(object) < 0) {
            problems.append(QStringLiteral("object %1 is a page outside the page tree")
                                .arg(object.getObjectID()));
        }
    }
    QPDFObjectHandle count = document.catalogue().getKey("/Pages").getKey("/Count");
    if (!count.isInteger() || count.getIntValue() != document.marks().size()) {
        problems.append(QStringLiteral("the page tree has a wrong count"));
    }
    return problems;
}

QStringList annotationProblems(FidelityDocument &document)
{
    QStringList problems;
    for (qsizetype i = 0; i < document.marks().size(); ++i) {
        const std::vector<QPDFObjectHandle> annotations = document.annotations(i);
        for (QPDFObjectHandle annotation : annotations) {
            if (!annotation.isDictionary()) {
                problems.append(QStringLiteral("page %1 has a broken annotation").arg(i + 1));
                continue;
            }
            const QString text =
                QStringLiteral("page %1, %2 \"%3\": ")
                    .arg(i + 1)
                    .arg(QString::fromStdString(annotation.getKey("/Subtype").unparseResolved()),
                         fidelityText(annotation.getKey("/Contents")));
            QPDFObjectHandle page = annotation.getKey("/P");
            if (!page.isNull() && document.indexOf(page) != i) {
                problems.append(text + QStringLiteral("/P is not the page"));
            }
            for (const char *key : {"/Popup", "/IRT"}) {
                if (annotation.hasKey(key) && !contains(annotations, annotation.getKey(key))) {
                    problems.append(text + QLatin1String(key) +
                                    QStringLiteral(" is not on the page"));
                }
            }
            QPDFObjectHandle popup = annotation.getKey("/Popup");
            if (popup.isDictionary() &&
                popup.getKey("/Parent").getObjGen() != annotation.getObjGen()) {
                problems.append(text + QStringLiteral("its pop-up has another parent"));
            }
            if (hasName(annotation, "/Subtype", "/Popup") &&
                !contains(annotations, annotation.getKey("/Parent"))) {
                problems.append(text + QStringLiteral("the parent is not on the page"));
            }
        }
    }
    return problems;
}

QStringList destinationProblems(FidelityDocument &document)
{
    QStringList problems;
    const auto check = [&](const FidelityTarget &target, const QString &what) {
        if (target.isPage && target.index < 0) {
            problems.append(what + QStringLiteral(" leads to no page"));
        }
    };
    for (qsizetype i = 0; i < document.marks().size(); ++i) {
        for (QPDFObjectHandle annotation : document.annotations(i)) {
            if (annotation.isDictionary()) {
                check(document.targetOf(annotation),
                      QStringLiteral("the link \"%1\" on page %2")
                          .arg(fidelityText(annotation.getKey("/Contents")))
                          .arg(i + 1));
            }
        }
    }
    QList<FidelityOutlineEntry> waiting = FidelityOutline::read(document, &problems);
    while (!waiting.isEmpty()) {
        const FidelityOutlineEntry entry = waiting.takeLast();
        check(entry.target, QStringLiteral("the outline entry ") + entry.title);
        waiting += entry.children;
    }
    QPDFObjectHandle oldNames = document.catalogue().getKey("/Dests");
    if (oldNames.isDictionary()) {
        for (const std::string &key : oldNames.getKeys()) {
            check(document.targetOfDestination(QPDFObjectHandle::newName(key)),
                  QStringLiteral("the name ") + QString::fromStdString(key));
        }
    }
    for (const char *tree : {"/Dests", "/EmbeddedFiles"}) {
        std::string previous;
        bool isFirst = true;
        for (const auto &[name, value] : document.names(tree)) {
            if (!isFirst && name <= previous) {
                problems.append(QStringLiteral("the name %1 of %2 is out of order")
                                    .arg(QString::fromStdString(name), QLatin1String(tree)));
            }
            previous = name;
            isFirst = false;
        }
    }
    for (const auto &[name, value] : document.names("/Dests")) {
        check(document.targetOfDestination(value),
              QStringLiteral("the name ") + QString::fromStdString(name));
    }
    QPDFObjectHandle opening = document.catalogue().getKey("/OpenAction");
    if (opening.isArray()) {
        check(document.targetOfDestination(opening), QStringLiteral("the open action"));
    } else if (opening.isDictionary() && hasName(opening, "/S", "/GoTo")) {
        check(document.targetOfDestination(opening.getKey("/D")),
              QStringLiteral("the open action"));
    }
    return problems;
}

QStringList structureProblems(FidelityDocument &document)
{
    QStringList problems;
    const std::map<long long, int> used = usedStructureKeys(document, problems);
    QPDFObjectHandle root = document.catalogue().getKey("/StructTreeRoot");
    if (!root.isDictionary()) {
        if (!used.empty()) {
            problems.append(QStringLiteral("pages have structure keys, the document no structure"));
        }
        return problems;
    }
    StructureWalker walker{document, problems, {}};
    walker.walkKids(root);
    const std::map<long long, QPDFObjectHandle> entries =
        FidelityDocument::numbers(root.getKey("/ParentTree"));
    for (const auto &[key, count] : used) {
        if (!entries.contains(key)) {
            walker.problems.append(
                QStringLiteral("the structure key %1 is not in the parent tree").arg(key));
        }
    }
    for (auto [key, entry] : entries) {
        if (!used.contains(key)) {
            walker.problems.append(
                QStringLiteral("no page has the entry %1 of the parent tree").arg(key));
        }
        walker.checkReachable(entry, key);
        for (int i = 0; entry.isArray() && i < entry.getArrayNItems(); ++i) {
            walker.checkReachable(entry.getArrayItem(i), key);
        }
    }
    return walker.problems;
}

QStringList problems(const QString &path)
{
    FidelityDocument document(path);
    return problems(path, document);
}

QStringList problems(const QString &path, FidelityDocument &document)
{
    QStringList problems = syntaxProblems(path);
    if (!document.problem().isEmpty()) {
        return problems + QStringList{document.problem()};
    }
    problems += pageProblems(document);
    problems += annotationProblems(document);
    problems += destinationProblems(document);
    problems += structureProblems(document);
    problems += FidelityFields::problems(document);
    return problems;
}

} // namespace FidelitySoundness
