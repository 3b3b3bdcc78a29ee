#include "Host/Receiver/Variants.h"

#include <algorithm>

namespace Receiver {

GVariant* variantOf(const std::vector<std::uint32_t>& numbers) {
    return g_variant_new_fixed_array(G_VARIANT_TYPE_UINT32, numbers.data(), numbers.size(),
                                     sizeof(std::uint32_t));
}

GVariant* variantOf(const std::vector<std::uint8_t>& bytes) {
    return g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, bytes.data(), bytes.size(), sizeof(std::uint8_t));
}

GVariant* variantOf(const std::vector<std::vector<std::uint8_t>>& lists) {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("aay"));
    for (const auto& bytes : lists)
        g_variant_builder_add_value(&builder, variantOf(bytes));
    return g_variant_builder_end(&builder);
}

GVariant* variantOf(const std::vector<Component>& components) {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a(isbnqysbi)"));
    for (const auto& component : components)
        g_variant_builder_add(&builder, "(isbnqysbi)", static_cast<gint32>(component.type),
                              component.encoding.c_str(), gboolean{component.encrypted}, gint{component.pid},
                              guint{component.caSid}, guint{component.tag}, component.language.c_str(),
                              gboolean{component.impaired}, component.extra);
    return g_variant_builder_end(&builder);
}

GVariant* variantOf(const std::vector<ScheduledProgramme>& programmes) {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a(ssuuyis)"));
    for (const auto& [programme, start] : programmes)
        g_variant_builder_add(&builder, "(ssuuyis)", programme->name.c_str(), programme->description.c_str(),
                              static_cast<guint32>(std::clamp<std::int64_t>(start, 0, 0xFFFFFFFF)),
                              programme->durationMinutes * 60, guint{programme->rating},
                              gint{programme->eventId}, programme->id.c_str());
    return g_variant_builder_end(&builder);
}

GVariant* variantOf(const OrderBy& orderBy) {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a(ub)"));
    for (const auto& [field, ascending] : orderBy)
        g_variant_builder_add(&builder, "(ub)", field, gboolean{ascending});
    return g_variant_builder_end(&builder);
}

}  // namespace Receiver
