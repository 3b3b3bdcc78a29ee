// org.vantrel.hbbtv.IMetaDataSearch: searches, queries, results and programmes.
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "gen/dbus/metadatasearch-generated.h"

namespace Receiver {

namespace {

using Id = std::uint32_t;
using Metadata = MetadataSearch;

template <auto Store>
bool retain(Metadata& metadata, Id id) {
    return Metadata::retain((metadata.*Store)(), id);
}
template <auto Store>
void release(Metadata& metadata, Id id) {
    Metadata::release((metadata.*Store)(), id);
}

Id addConstraintsQuery(Metadata& metadata, GVariant* list) {
    std::vector<Constraint> constraints;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, list);
    guint field = 0;
    guint number = 0;
    const char* text = nullptr;
    while (g_variant_iter_next(&iterator, "(uu&su)", &field, nullptr, &text, &number) != FALSE)
        constraints.push_back({field, *text != 0 ? QueryValue(text) : QueryValue(number)});
    return metadata.addQuery(constraints);
}

template <typename Value>
Id addQuery(Metadata& metadata, Id field, Id mode, Value value) {
    return metadata.addQuery(field, mode, QueryValue(value));
}

template <Metadata::Junction Junction>
std::optional<Id> join(Metadata& metadata, Id left, Id right) {
    return metadata.join(Junction, left, right);
}

bool setOrderBy(Metadata& metadata, Id id, GVariant* list) {
    OrderBy orderBy;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, list);
    guint field = 0;
    gboolean ascending = FALSE;
    while (g_variant_iter_next(&iterator, "(ub)", &field, &ascending) != FALSE)
        orderBy.emplace_back(field, ascending != FALSE);
    return metadata.setOrderBy(id, orderBy);
}

// Of an object of the store, if it has that one.
template <auto Store, auto Member>
auto memberOf(Metadata& metadata, Id id) {
    const auto* object = (metadata.*Store)().find(id);
    return object == nullptr ? std::nullopt : std::optional(object->*Member);
}

// Whether the object has taken the numbers, and whether it is known.
template <auto Store, auto Change>
std::tuple<bool, bool> changed(Metadata& metadata, Id id, std::int32_t first, std::int32_t second) {
    const bool known = (metadata.*Store)().find(id) != nullptr;
    return {(metadata.*Change)(id, first, second), known};
}

std::tuple<bool, bool> addConstraints(Metadata& metadata, Id id, Id queryId) {
    const bool known = metadata.searches().find(id) != nullptr;
    return {metadata.addConstraints(id, queryId), known};
}

// A search that failed has no results to tell of.
std::tuple<bool, Id, Id, Id, bool> queryResults(Metadata& metadata, Id id) {
    const auto* results = metadata.results().find(id);
    if (results == nullptr || results->failed)
        return {false, 0, 0, 0, false};
    return {results->complete, results->offset, results->shown(), static_cast<Id>(results->programmes.size()),
            true};
}

std::tuple<bool, Id, bool> itemAtIndex(Metadata& metadata, Id id, Id index) {
    const auto* results = metadata.results().find(id);
    if (results == nullptr)
        return {false, 0, false};
    if (index >= results->shown())
        return {false, 0, true};
    return {true, results->programmes[results->offset + index], true};
}

auto programme(Metadata& metadata, Id id) {
    const auto entry = metadata.programme(id);
    const auto programme = entry ? *entry->programme : Programme();
    return std::make_tuple(entry ? entry->channel->id : 0, Id{programme.eventId}, programme.name,
                           programme.description, programme.id, entry ? static_cast<Id>(entry->start) : 0,
                           programme.durationMinutes * 60, Id{programme.rating}, entry.has_value());
}

// Programmes live in the scenario; there is nothing to pin.
bool retainProgramme(Metadata& metadata, Id id) {
    return metadata.programme(id).has_value();
}
void releaseProgramme(Metadata&, Id) {}

void fillQueries(IMetaDataSearchIface& table) {
    table.handle_qc_retain = answer<imeta_data_search_complete_qc_retain, &retain<&Metadata::queries>>;
    table.handle_qc_release = answer<imeta_data_search_complete_qc_release, &release<&Metadata::queries>>;
    table.handle_qc_add_op = answer<imeta_data_search_complete_qc_add_op,
                                    [](Metadata& metadata, Id op) { return metadata.addQuery(op); }>;
    table.handle_qc_add_data_mode = answer<imeta_data_search_complete_qc_add_data_mode, &addQuery<Id>>;
    table.handle_qc_add_data_mode_str =
        answer<imeta_data_search_complete_qc_add_data_mode_str, &addQuery<const char*>>;
    table.handle_qc_add_constraints =
        answer<imeta_data_search_complete_qc_add_constraints, &addConstraintsQuery>;
    table.handle_qc_and = answer<imeta_data_search_complete_qc_and, &join<Metadata::Junction::And>>;
    table.handle_qc_or = answer<imeta_data_search_complete_qc_or, &join<Metadata::Junction::Or>>;
    table.handle_qc_not = answer<imeta_data_search_complete_qc_not, &Metadata::negate>;
}

void fillResults(IMetaDataSearchIface& table) {
    table.handle_sr_retain = answer<imeta_data_search_complete_sr_retain, &retain<&Metadata::results>>;
    table.handle_sr_release = answer<imeta_data_search_complete_sr_release, &release<&Metadata::results>>;
    table.handle_sr_add = answer<imeta_data_search_complete_sr_add, &Metadata::addResults>;
    table.handle_sr_parent = answer<imeta_data_search_complete_sr_parent,
                                    &memberOf<&Metadata::results, &Metadata::Results::searchId>>;
    table.handle_sr_query_results = answer<imeta_data_search_complete_sr_query_results, &queryResults>;
    table.handle_sr_item_at_index = answer<imeta_data_search_complete_sr_item_at_index, &itemAtIndex>;
    table.handle_sr_set_query_window = answer<imeta_data_search_complete_sr_set_query_window,
                                              &changed<&Metadata::results, &Metadata::setWindow>>;
    table.handle_pc_retain = answer<imeta_data_search_complete_pc_retain, &retainProgramme>;
    table.handle_pc_release = answer<imeta_data_search_complete_pc_release, &releaseProgramme>;
    table.handle_pc_get = answer<imeta_data_search_complete_pc_get, &programme>;
}

void fillSearches(IMetaDataSearchIface& table) {
    table.handle_start_search = answer<imeta_data_search_complete_start_search, &Metadata::start>;
    table.handle_abort_search = answer<imeta_data_search_complete_abort_search, &Metadata::abort>;
    table.handle_cancel_search = answer<imeta_data_search_complete_cancel_search, &Metadata::cancel>;
    table.handle_mds_retain = answer<imeta_data_search_complete_mds_retain, &retain<&Metadata::searches>>;
    table.handle_mds_release = answer<imeta_data_search_complete_mds_release, &release<&Metadata::searches>>;
    table.handle_mds_add = answer<imeta_data_search_complete_mds_add, &Metadata::addSearch>;
    table.handle_mds_set_query = answer<imeta_data_search_complete_mds_set_query, &Metadata::setQuery>;
    table.handle_mds_get_query = answer<imeta_data_search_complete_mds_get_query,
                                        &memberOf<&Metadata::searches, &Metadata::Search::queryId>>;
    table.handle_mds_get_results = answer<imeta_data_search_complete_mds_get_results, &Metadata::resultsOf>;
    table.handle_mds_get_target = answer<imeta_data_search_complete_mds_get_target,
                                         &memberOf<&Metadata::searches, &Metadata::Search::target>>;
    table.handle_mds_set_order_by = answer<imeta_data_search_complete_mds_set_order_by, &setOrderBy>;
    table.handle_mds_get_order_by = answer<imeta_data_search_complete_mds_get_order_by,
                                           &memberOf<&Metadata::searches, &Metadata::Search::orderBy>>;
    table.handle_mds_expand_order_by =
        answer<imeta_data_search_complete_mds_expand_order_by, &Metadata::expandOrderBy>;
    table.handle_mds_add_constraints =
        answer<imeta_data_search_complete_mds_add_constraints, &addConstraints>;
    table.handle_mds_remove_constraints =
        answer<imeta_data_search_complete_mds_remove_constraints, &Metadata::removeConstraints>;
    table.handle_mds_clear_constraints =
        answer<imeta_data_search_complete_mds_clear_constraints, &Metadata::clearConstraints>;
    table.handle_mds_set_query_window = answer<imeta_data_search_complete_mds_set_query_window,
                                               &changed<&Metadata::searches, &Metadata::setBounds>>;
}

}  // namespace

Skeleton makeMetadataSearch(World& world, CallDispatcher& dispatcher) {
    const auto fill = [](gpointer table, gpointer) {
        auto& handlers = *static_cast<IMetaDataSearchIface*>(table);
        fillQueries(handlers);
        fillResults(handlers);
        fillSearches(handlers);
    };
    return makeSkeleton({TYPE_IMETA_DATA_SEARCH_SKELETON, TYPE_IMETA_DATA_SEARCH, fill}, &world, &dispatcher);
}

}  // namespace Receiver
