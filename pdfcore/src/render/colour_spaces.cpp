// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/colour_spaces.h"

#include "pdfcore/src/mupdf/mupdf_context.h"
#include "pdfcore/src/mupdf/mupdf_internals.h"

#include <algorithm>

namespace pdfcore {

namespace {

/// Nesting of forms, patterns and masks that is followed.
constexpr int kMaxDepth = 12;

enum fz_colorspace_type typeFor(int components)
{
    switch (components) {
    case 1:
        return FZ_COLORSPACE_GRAY;
    case 3:
        return FZ_COLORSPACE_RGB;
    default:
        return FZ_COLORSPACE_CMYK;
    }
}

/// The limits of a* and b* in an L*a*b* space.
std::array<float, 4> limitsOf(fz_context *ctx, pdf_obj *space)
{
    constexpr float kLeast = -128;
    constexpr float kMost = 127;
    std::array<float, 4> limits{-100, 100, -100, 100};
    pdf_obj *range = pdf_dict_get(ctx, pdf_array_get(ctx, space, 1), PDF_NAME(Range));
    for (int i = 0; i + 1 < std::min(pdf_array_len(ctx, range), 4); i += 2) {
        const float low = pdf_array_get_real(ctx, range, i);
        const float high = pdf_array_get_real(ctx, range, i + 1);
        if (low >= kLeast && low < high && high <= kMost + 1) {
            limits[static_cast<std::size_t>(i)] = low;
            limits[static_cast<std::size_t>(i) + 1] = std::min(high, kMost);
        }
    }
    return limits;
}

} // namespace

ColourSpaces::ColourSpaces(MupdfContext &context)
    : m_context(context)
{}

ColourSpaces::~ColourSpaces()
{
    for (const auto &[number, space] : m_spacesByStream) {
        fz_drop_colorspace(m_context.get(), space);
    }
}

void ColourSpaces::prepare(pdf_document *document, pdf_obj *page)
{
    m_context.run(
        [&](fz_context *ctx) {
            visit(ctx, document, pdf_dict_get_inheritable(ctx, page, PDF_NAME(Resources)), 0);
            visitColourSpace(ctx, document, pdf_dict_getp(ctx, page, "Group/CS"), 0);
            pdf_obj *annotations = pdf_dict_get(ctx, page, PDF_NAME(Annots));
            const int count = pdf_array_len(ctx, annotations);
            for (int i = 0; i < count; ++i) {
                pdf_obj *normal = pdf_dict_getp(ctx, pdf_array_get(ctx, annotations, i), "AP/N");
                if (pdf_is_stream(ctx, normal) != 0) {
                    visit(ctx, document, pdf_dict_get(ctx, normal, PDF_NAME(Resources)), 0);
                    continue;
                }
                const int states = pdf_dict_len(ctx, normal);
                for (int state = 0; state < states; ++state) {
                    visit(ctx, document,
                          pdf_dict_get(ctx, pdf_dict_get_val(ctx, normal, state),
                                       PDF_NAME(Resources)),
                          0);
                }
            }
        },
        nullptr);
}

const ColourTransform *ColourSpaces::transformOf(const fz_colorspace *space) const
{
    if (space == nullptr) {
        return nullptr;
    }
    if (const auto found = m_transforms.find(space); found != m_transforms.end()) {
        return found->second.get();
    }
    return isCmyk(space) ? ColourTransform::pressCmyk().get() : nullptr;
}

const ColourTransform *ColourSpaces::labPixels() const
{
    return m_labPixels ? m_labPixels.get() : ColourTransform::lab().get();
}

bool ColourSpaces::enter(fz_context *ctx, pdf_obj *object) noexcept
{
    const int number = pdf_to_num(ctx, object);
    return number == 0 || m_visited.insert(number).second;
}

void ColourSpaces::visit(fz_context *ctx, pdf_document *document, pdf_obj *resources,
                         int depth) noexcept
{
    if (depth > kMaxDepth || (pdf_is_dict(ctx, resources) == 0) || !enter(ctx, resources)) {
        return;
    }

    const auto forEach = [&](pdf_obj *category, auto &&action) {
        pdf_obj *dictionary = pdf_dict_get(ctx, resources, category);
        const int count = pdf_dict_len(ctx, dictionary);
        for (int i = 0; i < count; ++i) {
            pdf_obj *value = pdf_dict_get_val(ctx, dictionary, i);
            fz_try(ctx) action(value);
            fz_catch(ctx) continue;
        }
    };

    forEach(PDF_NAME(ColorSpace),
            [&](pdf_obj *space) { visitColourSpace(ctx, document, space, depth + 1); });
    forEach(PDF_NAME(XObject), [&](pdf_obj *object) {
        if (!enter(ctx, object)) {
            return;
        }
        visitColourSpace(ctx, document, pdf_dict_get(ctx, object, PDF_NAME(ColorSpace)), depth + 1);
        visitColourSpace(ctx, document, pdf_dict_getp(ctx, object, "Group/CS"), depth + 1);
        visit(ctx, document, pdf_dict_get(ctx, object, PDF_NAME(Resources)), depth + 1);
    });
    forEach(PDF_NAME(Shading), [&](pdf_obj *shading) {
        visitColourSpace(ctx, document, pdf_dict_get(ctx, shading, PDF_NAME(ColorSpace)),
                         depth + 1);
    });
    forEach(PDF_NAME(Pattern), [&](pdf_obj *pattern) {
        if (!enter(ctx, pattern)) {
            return;
        }
        visitColourSpace(ctx, document, pdf_dict_getp(ctx, pattern, "Shading/ColorSpace"),
                         depth + 1);
        visit(ctx, document, pdf_dict_get(ctx, pattern, PDF_NAME(Resources)), depth + 1);
    });
    forEach(PDF_NAME(Font), [&](pdf_obj *font) {
        visit(ctx, document, pdf_dict_get(ctx, font, PDF_NAME(Resources)), depth + 1);
    });
    forEach(PDF_NAME(ExtGState), [&](pdf_obj *state) {
        pdf_obj *group = pdf_dict_getp(ctx, state, "SMask/G");
        visitColourSpace(ctx, document, pdf_dict_getp(ctx, group, "Group/CS"), depth + 1);
        visit(ctx, document, pdf_dict_get(ctx, group, PDF_NAME(Resources)), depth + 1);
    });
}

void ColourSpaces::visitColourSpace(fz_context *ctx, pdf_document *document, pdf_obj *space,
                                    int depth) noexcept
{
    if (depth > kMaxDepth || (pdf_is_array(ctx, space) == 0)) {
        return;
    }
    pdf_obj *kind = pdf_array_get(ctx, space, 0);
    if (pdf_name_eq(ctx, kind, PDF_NAME(ICCBased)) != 0) {
        registerProfile(ctx, document, space);
    } else if (pdf_name_eq(ctx, kind, PDF_NAME(Lab)) != 0) {
        noteLab(ctx, space);
    } else if ((pdf_name_eq(ctx, kind, PDF_NAME(Indexed)) != 0) ||
               (pdf_name_eq(ctx, kind, PDF_NAME(Pattern)) != 0)) {
        visitColourSpace(ctx, document, pdf_array_get(ctx, space, 1), depth + 1);
    } else if ((pdf_name_eq(ctx, kind, PDF_NAME(Separation)) != 0) ||
               (pdf_name_eq(ctx, kind, PDF_NAME(DeviceN)) != 0)) {
        visitColourSpace(ctx, document, pdf_array_get(ctx, space, 2), depth + 1);
    }
}

void ColourSpaces::registerProfile(fz_context *ctx, pdf_document *document, pdf_obj *space) noexcept
{
    pdf_obj *stream = pdf_array_get(ctx, space, 1);
    const int number = pdf_to_num(ctx, stream);
    if (number == 0) {
        return;
    }

    auto known = m_spacesByStream.find(number);
    if (known == m_spacesByStream.end()) {
        const int components = pdf_dict_get_int(ctx, stream, PDF_NAME(N));
        if (components != 1 && components != 3 && components != 4) {
            return;
        }
        fz_buffer *buffer = pdf_load_stream_number(ctx, document, number);
        unsigned char *data = nullptr;
        const std::size_t size = fz_buffer_storage(ctx, buffer, &data);
        std::shared_ptr<const ColourTransform> transform = ColourTransform::fromProfile(
            QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)),
            components);
        fz_drop_buffer(ctx, buffer);
        fz_colorspace *created = nullptr;
        if (transform) {
            fz_var(created);
            fz_try(ctx) created =
                fz_new_colorspace(ctx, typeFor(components), 0, components, "ICCBased");
            fz_catch(ctx) created = nullptr;
            if (created != nullptr) {
                m_transforms.emplace(created, std::move(transform));
            }
        }
        known = m_spacesByStream.emplace(number, created).first;
    }
    if (known->second == nullptr) {
        return;
    }
    pdf_obj *key = storeKeyOf(ctx, space);
    void *stored = pdf_find_item(ctx, &fz_drop_colorspace_imp, key);
    if (stored != nullptr) {
        fz_drop_colorspace(ctx, static_cast<fz_colorspace *>(stored));
    } else {
        pdf_store_item(ctx, key, known->second, sizeof(fz_colorspace));
    }
}

void ColourSpaces::noteLab(fz_context *ctx, pdf_obj *space) noexcept
{
    if (!m_labPixels) {
        m_labPixels = ColourTransform::fromLab(limitsOf(ctx, space));
    }
}

} // namespace pdfcore
