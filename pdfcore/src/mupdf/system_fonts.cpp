// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/mupdf/system_fonts.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <optional>
#include <unordered_map>

#include <ft2build.h>
#include FT_FREETYPE_H

namespace pdfcore {

namespace {

/// Faces of one collection file that are looked at.
constexpr FT_Long kMaxFaces = 64;

struct FontFile
{
    QByteArray path; ///< UTF-8.
    int face = 0;
};

/// "ABCDEF+Times New Roman,Bold" as "timesnewromanbold": how names are compared.
QByteArray plainName(const QByteArray &name)
{
    QByteArray plain;
    for (const char ch : name) {
        if (ch != ' ' && ch != '-' && ch != ',' && ch != '_') {
            plain += static_cast<char>(ch >= 'A' && ch <= 'Z' ? ch - 'A' + 'a' : ch);
        }
    }
    return plain;
}

/// The family part of a PostScript font name, which is what stands before the style.
QByteArray familyPart(const QByteArray &name)
{
    const qsizetype dash = name.indexOf('-');
    const qsizetype comma = name.indexOf(',');
    QByteArray family = name;
    if (dash > 0) {
        family = name.left(dash);
    } else if (comma > 0) {
        family = name.left(comma);
    }
    for (const char *ending : {"PSMT", "PS", "MT"}) {
        if (family.size() > 6 && family.endsWith(ending)) {
            family.chop(static_cast<qsizetype>(qstrlen(ending)));
            break;
        }
    }
    return family;
}

QByteArray styledKey(const QByteArray &family, bool bold, bool italic)
{
    return plainName(family) + (bold ? "/b" : "/") + (italic ? "i" : "");
}

/// The fonts of the computer by PostScript name and by family and style. Immutable once built.
class SystemFonts
{
public:
    static const SystemFonts &instance()
    {
        static const SystemFonts fonts;
        return fonts;
    }

    [[nodiscard]] std::optional<FontFile> byName(const QByteArray &name) const
    {
        return find(m_byName, plainName(name));
    }

    [[nodiscard]] std::optional<FontFile> byFamily(const QByteArray &name, bool bold,
                                                   bool italic) const
    {
        return find(m_byFamily, styledKey(familyPart(name), bold, italic));
    }

private:
    using Table = std::unordered_map<QByteArray, FontFile>;

    SystemFonts()
    {
        FT_Library library = nullptr;
        if (FT_Init_FreeType(&library) != 0) {
            return;
        }
        const QStringList folders =
            QStandardPaths::standardLocations(QStandardPaths::FontsLocation);
        for (const QString &folder : folders) {
            QDirIterator files(folder,
                               {QStringLiteral("*.ttf"), QStringLiteral("*.otf"),
                                QStringLiteral("*.ttc"), QStringLiteral("*.otc")},
                               QDir::Files, QDirIterator::Subdirectories);
            while (files.hasNext()) {
                add(library, files.next());
            }
        }
        FT_Done_FreeType(library);
    }

    void add(FT_Library library, const QString &path)
    {
        const QByteArray utf8 = path.toUtf8();
        FT_Long faces = 1;
        for (FT_Long i = 0; i < faces && i < kMaxFaces; ++i) {
            FT_Face face = nullptr;
            if (FT_New_Face(library, QFile::encodeName(path).constData(), i, &face) != 0) {
                return;
            }
            faces = face->num_faces;
            const FontFile file{utf8, static_cast<int>(i)};
            if (const char *name = FT_Get_Postscript_Name(face)) {
                m_byName.try_emplace(plainName(name), file);
            }
            if (face->family_name != nullptr) {
                const QByteArray style = plainName(QByteArray(face->style_name));
                const bool bold = (face->style_flags & FT_STYLE_FLAG_BOLD) != 0;
                const bool italic = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
                const bool isBasicStyle =
                    style.isEmpty() || style == "regular" || style == "bold" || style == "italic" ||
                    style == "bolditalic" || style == "oblique" || style == "boldoblique" ||
                    style == "book" || style == "normal";
                if (isBasicStyle) {
                    m_byFamily.try_emplace(styledKey(face->family_name, bold, italic), file);
                }
            }
            FT_Done_Face(face);
        }
    }

    static std::optional<FontFile> find(const Table &table, const QByteArray &key)
    {
        const auto found = table.find(key);
        return found == table.end() ? std::nullopt : std::optional(found->second);
    }

    Table m_byName;
    Table m_byFamily;
};

/// Null when the file cannot be used; MuPDF then takes a font of its own.
fz_font *load(fz_context *ctx, const char *name, const FontFile &file)
{
    fz_font *font = nullptr;
    const char *path = file.path.constData();
    const int face = file.face;
    fz_var(font);
    fz_try(ctx) font = fz_new_font_from_file(ctx, name, path, face, 0);
    fz_catch(ctx) font = nullptr;
    return font;
}

fz_font *loadSystemFont(fz_context *ctx, const char *name, int bold, int italic,
                        int needsExactMetrics)
{
    // Where a document relies on the metrics of the standard fonts, MuPDF's own have them.
    if (name == nullptr || needsExactMetrics != 0) {
        return nullptr;
    }
    const SystemFonts &fonts = SystemFonts::instance();
    std::optional<FontFile> file = fonts.byName(name);
    if (!file) {
        file = fonts.byFamily(name, bold != 0, italic != 0);
    }
    return file ? load(ctx, name, *file) : nullptr;
}

fz_font *loadSystemCjkFont(fz_context *ctx, const char *name, int /*ordering*/, int /*serif*/)
{
    if (name == nullptr) {
        return nullptr;
    }
    const std::optional<FontFile> file = SystemFonts::instance().byName(name);
    return file ? load(ctx, name, *file) : nullptr;
}

fz_font *loadNoFallbackFont(fz_context * /*ctx*/, int /*script*/, int /*language*/, int /*serif*/,
                            int /*bold*/, int /*italic*/)
{
    return nullptr;
}

} // namespace

void useSystemFonts(fz_context *ctx)
{
    fz_install_load_system_font_funcs(ctx, &loadSystemFont, &loadSystemCjkFont,
                                      &loadNoFallbackFont);
}

} // namespace pdfcore
