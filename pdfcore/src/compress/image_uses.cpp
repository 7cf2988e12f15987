// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/image_uses.h"

#include "pdfcore/src/qpdf/qpdf_objects.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <optional>

namespace pdfcore {

namespace {

/// Forms within forms, and how many of them are looked at in one document.
constexpr int kMaxDepth = 40;
constexpr std::size_t kMaxVisits = 200'000;
constexpr double kPointsPerInch = 72;

bool isImage(QPDFObjectHandle object)
{
    return object.isStream() && hasName(object.getDict(), "/Subtype", "/Image");
}

bool isForm(QPDFObjectHandle object)
{
    return object.isStream() && hasName(object.getDict(), "/Subtype", "/Form");
}

/// Whether content with these resources can draw an image.
bool canDraw(QPDFObjectHandle resources)
{
    QPDFObjectHandle objects = entryOf(resources, "/XObject");
    QPDFObjectHandle states = entryOf(resources, "/ExtGState");
    const bool hasObjects = objects.isDictionary() && !objects.getKeys().empty();
    const bool hasStates = states.isDictionary() && !states.getKeys().empty();
    return hasObjects || hasStates;
}

using Rect = std::array<double, 4>;

/// The corners of a rectangle, the lower left one first; nothing when it is none.
std::optional<Rect> rectOf(QPDFObjectHandle array)
{
    const std::vector<QPDFObjectHandle> items = itemsOf(array);
    if (items.size() != 4) {
        return std::nullopt;
    }
    Rect rect{};
    for (std::size_t i = 0; i < items.size(); ++i) {
        QPDFObjectHandle item = items[i];
        if (!item.isNumber()) {
            return std::nullopt;
        }
        rect[i] = item.getNumericValue();
    }
    return Rect{std::min(rect[0], rect[2]), std::min(rect[1], rect[3]), std::max(rect[0], rect[2]),
                std::max(rect[1], rect[3])};
}

/// What contains a rectangle once it is transformed.
Rect transformed(const Rect &rect, const Transform &by)
{
    constexpr double kFar = std::numeric_limits<double>::infinity();
    Rect around{kFar, kFar, -kFar, -kFar};
    for (const double x : {rect[0], rect[2]}) {
        for (const double y : {rect[1], rect[3]}) {
            const double newX = by.a * x + by.c * y + by.e;
            const double newY = by.b * x + by.d * y + by.f;
            around = {std::min(around[0], newX), std::min(around[1], newY),
                      std::max(around[2], newX), std::max(around[3], newY)};
        }
    }
    return around;
}

/// How many times larger one length is; 1 where there is none.
double ratio(double length, double of)
{
    return of > 0 ? length / of : 1;
}

} // namespace

ImageUses::ImageUses(const std::vector<QPDFObjectHandle> &pages, const PdfCancelFlag &cancel)
    : m_cancel(cancel)
    , m_contents(cancel)
{
    for (const QPDFObjectHandle &page : pages) {
        if (!m_isComplete || m_cancel.isSet()) {
            break;
        }
        visitPage(page);
    }
    m_known.clear();
    m_visited.clear();
}

const ImageUse *ImageUses::of(QPDFObjGen image) const
{
    const auto found = m_uses.find(image);
    return m_isComplete && found != m_uses.end() ? &found->second : nullptr;
}

void ImageUses::visitPage(QPDFObjectHandle page)
{
    QPDFObjectHandle unit = page.getKey("/UserUnit");
    const double points =
        unit.isNumber() && unit.getNumericValue() > 0 ? unit.getNumericValue() : 1;
    Transform base;
    base.a = points / kPointsPerInch;
    base.d = points / kPointsPerInch;
    m_tasks.push_back({page, page.getKey("/Resources"), base, 0});
    addAppearances(page, base);
    run();
}

void ImageUses::addAppearances(QPDFObjectHandle page, const Transform &base)
{
    for (const QPDFObjectHandle &annotation : itemsOf(page.getKey("/Annots"))) {
        QPDFObjectHandle appearances = entryOf(annotation, "/AP");
        QPDFObjectHandle rect = entryOf(annotation, "/Rect");
        for (const char *key : {"/N", "/R", "/D"}) {
            QPDFObjectHandle appearance = entryOf(appearances, key);
            if (appearance.isStream()) {
                addAppearance(appearance, rect, base);
            } else if (appearance.isDictionary()) {
                for (const auto &[state, stream] : appearance.getDictAsMap()) {
                    addAppearance(stream, rect, base);
                }
            }
        }
    }
}

/// An appearance is brought into the rectangle of its annotation (ISO 32000-2, 12.5.5).
void ImageUses::addAppearance(QPDFObjectHandle appearance, QPDFObjectHandle rect,
                              const Transform &base)
{
    if (!appearance.isStream()) {
        return;
    }
    QPDFObjectHandle dict = appearance.getDict();
    const std::optional<Rect> box = rectOf(dict.getKey("/BBox"));
    const std::optional<Rect> place = rectOf(rect);
    Transform fit;
    if (box && place) {
        const Rect from = transformed(*box, transformOf(dict.getKey("/Matrix")));
        fit.a = ratio((*place)[2] - (*place)[0], from[2] - from[0]);
        fit.d = ratio((*place)[3] - (*place)[1], from[3] - from[1]);
    }
    addForm(appearance, QPDFObjectHandle::newNull(), fit.then(base), 1);
}

void ImageUses::addForm(QPDFObjectHandle form, QPDFObjectHandle resources, const Transform &base,
                        int depth)
{
    if (depth > kMaxDepth) {
        m_isComplete = false;
        return;
    }
    QPDFObjectHandle dict = form.getDict();
    QPDFObjectHandle own = dict.getKey("/Resources");
    const Transform placed = transformOf(dict.getKey("/Matrix")).then(base);
    // Where it stands does not matter. What has no resources of its own takes those of the page.
    std::array<char, 160> key{};
    const std::string name = form.getObjGen().unparse(',');
    std::snprintf(key.data(), key.size(), "%s %d %.5g %.5g %.5g %.5g", name.c_str(),
                  own.isDictionary() ? 0 : resources.getObjGen().getObj(), placed.a, placed.b,
                  placed.c, placed.d);
    if (!m_visited.insert(key.data()).second) {
        return;
    }
    if (m_visited.size() > kMaxVisits) {
        m_isComplete = false;
        return;
    }
    m_tasks.push_back({form, own.isDictionary() ? own : resources, placed, depth});
}

void ImageUses::addPatterns(QPDFObjectHandle resources, const Transform &base, int depth)
{
    QPDFObjectHandle patterns = entryOf(resources, "/Pattern");
    if (!patterns.isDictionary()) {
        return;
    }
    for (const auto &[name, pattern] : patterns.getDictAsMap()) {
        QPDFObjectHandle stream = pattern;
        if (stream.isStream()) {
            // It is in the coordinates in which the content that uses it begins (ISO 32000-2,
            // 8.7.3.1).
            addForm(stream, resources, base, depth + 1);
        }
    }
}

void ImageUses::addGlyphs(QPDFObjectHandle resources)
{
    QPDFObjectHandle fonts = entryOf(resources, "/Font");
    if (!fonts.isDictionary()) {
        return;
    }
    for (const auto &[name, value] : fonts.getDictAsMap()) {
        QPDFObjectHandle font = value;
        if (!hasName(font, "/Subtype", "/Type3") ||
            (font.isIndirect() && !m_fontsSeen.insert(font.getObjGen()).second)) {
            continue;
        }
        QPDFObjectHandle own = font.getKey("/Resources");
        QPDFObjectHandle objects = entryOf(own.isDictionary() ? own : resources, "/XObject");
        if (!objects.isDictionary()) {
            continue;
        }
        for (const auto &[key, object] : objects.getDictAsMap()) {
            if (isImage(object)) {
                m_uses[object.getObjGen()].isInGlyph = true;
            } else if (isForm(object)) {
                m_isComplete = false;
            }
        }
    }
}

void ImageUses::run()
{
    while (!m_tasks.empty() && m_isComplete && !m_cancel.isSet()) {
        Task task = m_tasks.back();
        m_tasks.pop_back();
        addPatterns(task.resources, task.base, task.depth);
        addGlyphs(task.resources);
        if (!canDraw(task.resources)) {
            continue;
        }
        const std::vector<Draw> *draws = drawsOf(task);
        if (draws == nullptr) {
            m_isComplete = false;
            return;
        }
        for (const Draw &one : *draws) {
            draw(one, task);
        }
    }
}

const std::vector<Draw> *ImageUses::drawsOf(Task &task)
{
    if (!task.stream.isStream()) {
        std::optional<std::vector<Draw>> draws = m_contents.ofPage(task.stream);
        if (!draws) {
            return nullptr;
        }
        m_page = std::move(*draws);
        return &m_page;
    }
    auto known = m_known.find(task.stream.getObjGen());
    if (known == m_known.end()) {
        std::optional<std::vector<Draw>> draws = m_contents.ofStream(task.stream);
        if (!draws) {
            return nullptr;
        }
        known = m_known.emplace(task.stream.getObjGen(), std::move(*draws)).first;
    }
    return &known->second;
}

void ImageUses::draw(const Draw &draw, const Task &task)
{
    const Transform place = draw.transform.then(task.base);
    if (draw.kind == Draw::Kind::GraphicsState) {
        QPDFObjectHandle state = entryOf(entryOf(task.resources, "/ExtGState"), draw.name);
        QPDFObjectHandle group = entryOf(entryOf(state, "/SMask"), "/G");
        if (group.isStream()) {
            addForm(group, task.resources, place, task.depth + 1);
        }
        return;
    }
    QPDFObjectHandle object = entryOf(entryOf(task.resources, "/XObject"), draw.name);
    if (isImage(object)) {
        addImage(object, place);
    } else if (isForm(object)) {
        addForm(object, task.resources, place, task.depth + 1);
    }
}

/// An image is drawn as the square from 0 to 1 (ISO 32000-2, 8.9.4).
void ImageUses::addImage(QPDFObjectHandle image, const Transform &place)
{
    const double inchesWide = std::hypot(place.a, place.b);
    const double inchesHigh = std::hypot(place.c, place.d);
    const auto add = [&](QPDFObjectHandle shown, bool isSoftMask) {
        QPDFObjectHandle width = shown.getDict().getKey("/Width");
        QPDFObjectHandle height = shown.getDict().getKey("/Height");
        if (!width.isInteger() || !height.isInteger() || !(inchesWide > 0) || !(inchesHigh > 0)) {
            return;
        }
        const double dots = std::min(static_cast<double>(width.getIntValue()) / inchesWide,
                                     static_cast<double>(height.getIntValue()) / inchesHigh);
        ImageUse &use = m_uses[shown.getObjGen()];
        const bool isFirst = !use.isDrawn && !use.isSoftMask;
        use.dotsPerInch = isFirst ? dots : std::min(use.dotsPerInch, dots);
        (isSoftMask ? use.isSoftMask : use.isDrawn) = true;
    };
    add(image, false);
    QPDFObjectHandle mask = image.getDict().getKey("/SMask");
    if (mask.isStream()) {
        add(mask, true);
        if (mask.getDict().hasKey("/Matte")) {
            m_preblended.insert(image.getObjGen());
            m_preblended.insert(mask.getObjGen());
        }
    }
}

} // namespace pdfcore
