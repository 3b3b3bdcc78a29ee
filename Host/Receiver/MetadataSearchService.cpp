// org.vantrel.hbbtv.IMetaDataSearch: searches, queries, results and programmes.
#include <algorithm>

#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "Host/Receiver/Variants.h"
#include "gen/dbus/metadatasearch-generated.h"

namespace Receiver {

namespace {

using Id = std::uint32_t;
using Found = std::tuple<std::uint32_t, bool>;

Found found(const std::optional<Id>& id) {
    return {id.value_or(0), id.has_value()};
}

std::vector<Constraint> readConstraints(GVariant* list) {
    std::vector<Constraint> constraints;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, list);
    guint field = 0;
    guint number = 0;
    const char* text = nullptr;
    while (g_variant_iter_next(&iterator, "(uu&su)", &field, nullptr, &text, &number) != FALSE)
        constraints.push_back({field, *text != 0 ? QueryValue(text) : QueryValue(number)});
    return constraints;
}

OrderBy readOrderBy(GVariant* list) {
    OrderBy orderBy;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, list);
    guint field = 0;
    gboolean ascending = FALSE;
    while (g_variant_iter_next(&iterator, "(ub)", &field, &ascending) != FALSE)
        orderBy.emplace_back(field, ascending != FALSE);
    return orderBy;
}

// A search that failed has no results to tell of.
std::tuple<bool, Id, Id, Id, bool> queryResults(Caller& caller, Id id) {
    const auto* results = caller.search().results().find(id);
    if (results == nullptr || results->failed)
        return {false, 0, 0, 0, false};
    return {results->complete, results->offset, results->shown(), static_cast<Id>(results->programmes.size()),
            true};
}

std::tuple<bool, Id, bool> itemAtIndex(Caller& caller, Id id, Id index) {
    const auto* results = caller.search().results().find(id);
    if (results == nullptr)
        return {false, 0, false};
    if (index >= results->shown())
        return {false, 0, true};
    return {true, results->programmes[results->offset + index], true};
}

// (accepted, known)
std::tuple<bool, bool> setResultsWindow(Caller& caller, Id resultsId, std::int32_t start,
                                        std::int32_t count) {
    const bool known = caller.search().results().find(resultsId) != nullptr;
    return {caller.search().setWindow(resultsId, start, count), known};
}

std::tuple<bool, bool> setSearchBounds(Caller& caller, Id searchId, std::int32_t first, std::int32_t most) {
    const bool known = caller.search().searches().find(searchId) != nullptr;
    return {caller.search().setBounds(searchId, first, most), known};
}

auto programme(Caller& caller, Id id) {
    const auto entry = caller.search().programme(id);
    const auto programme = entry ? *entry->programme : Programme();
    return std::make_tuple(entry ? entry->channel->id : 0, Id{programme.eventId}, programme.name,
                           programme.description, programme.id, entry ? static_cast<Id>(entry->start) : 0,
                           programme.durationMinutes * 60, Id{programme.rating}, entry.has_value());
}

void fillQueries(IMetaDataSearchIface& table) {
    table.handle_qc_retain = answer<imeta_data_search_complete_qc_retain, [](Caller& caller, Id id) {
        return MetadataSearch::retain(caller.search().queries(), id);
    }>;
    table.handle_qc_release = answer<imeta_data_search_complete_qc_release, [](Caller& caller, Id id) {
        MetadataSearch::release(caller.search().queries(), id);
    }>;
    table.handle_qc_add_op = answer<imeta_data_search_complete_qc_add_op,
                                    [](Caller& caller, Id op) { return caller.search().addQuery(op); }>;
    table.handle_qc_add_data_mode =
        answer<imeta_data_search_complete_qc_add_data_mode,
               [](Caller& caller, std::uint32_t field, std::uint32_t mode, std::uint32_t value) {
                   return caller.search().addQuery(field, mode, QueryValue(value));
               }>;
    table.handle_qc_add_data_mode_str =
        answer<imeta_data_search_complete_qc_add_data_mode_str,
               [](Caller& caller, std::uint32_t field, std::uint32_t mode, const char* value) {
                   return caller.search().addQuery(field, mode, QueryValue(value));
               }>;
    table.handle_qc_add_constraints =
        answer<imeta_data_search_complete_qc_add_constraints, [](Caller& caller, GVariant* list) {
            return caller.search().addQuery(readConstraints(list));
        }>;
    table.handle_qc_and = answer<imeta_data_search_complete_qc_and, [](Caller& caller, Id left, Id right) {
        return found(caller.search().join(MetadataSearch::Junction::And, left, right));
    }>;
    table.handle_qc_or = answer<imeta_data_search_complete_qc_or, [](Caller& caller, Id left, Id right) {
        return found(caller.search().join(MetadataSearch::Junction::Or, left, right));
    }>;
    table.handle_qc_not = answer<imeta_data_search_complete_qc_not,
                                 [](Caller& caller, Id id) { return found(caller.search().negate(id)); }>;
}

void fillResults(IMetaDataSearchIface& table) {
    table.handle_sr_retain = answer<imeta_data_search_complete_sr_retain, [](Caller& caller, Id id) {
        return MetadataSearch::retain(caller.search().results(), id);
    }>;
    table.handle_sr_release = answer<imeta_data_search_complete_sr_release, [](Caller& caller, Id id) {
        MetadataSearch::release(caller.search().results(), id);
    }>;
    table.handle_sr_add = answer<imeta_data_search_complete_sr_add, [](Caller& caller, Id searchId) {
        return caller.search().addResults(searchId);
    }>;
    table.handle_sr_parent = answer<imeta_data_search_complete_sr_parent, [](Caller& caller, Id id) {
        const auto* results = caller.search().results().find(id);
        return Found{results == nullptr ? 0 : results->searchId, results != nullptr};
    }>;
    table.handle_sr_query_results = answer<imeta_data_search_complete_sr_query_results,
                                           [](Caller& caller, Id id) { return queryResults(caller, id); }>;
    table.handle_sr_item_at_index =
        answer<imeta_data_search_complete_sr_item_at_index,
               [](Caller& caller, Id id, std::uint32_t index) { return itemAtIndex(caller, id, index); }>;
    table.handle_sr_set_query_window =
        answer<imeta_data_search_complete_sr_set_query_window,
               [](Caller& caller, Id id, std::int32_t start, std::int32_t count) {
                   return setResultsWindow(caller, id, start, count);
               }>;
    // Programmes live in the scenario; there is nothing to pin.
    table.handle_pc_retain = answer<imeta_data_search_complete_pc_retain, [](Caller& caller, Id id) {
        return caller.search().programme(id).has_value();
    }>;
    table.handle_pc_release = answer<imeta_data_search_complete_pc_release, [](Caller&, Id) {}>;
    table.handle_pc_get = answer<imeta_data_search_complete_pc_get,
                                 [](Caller& caller, Id id) { return programme(caller, id); }>;
}

void fillSearches(IMetaDataSearchIface& table) {
    table.handle_start_search = answer<imeta_data_search_complete_start_search,
                                       [](Caller& caller, Id id) { caller.search().start(id); }>;
    table.handle_abort_search = answer<imeta_data_search_complete_abort_search,
                                       [](Caller& caller, Id id) { caller.search().abort(id); }>;
    table.handle_cancel_search = answer<imeta_data_search_complete_cancel_search,
                                        [](Caller& caller, Id id) { caller.search().cancel(id); }>;
    table.handle_mds_retain = answer<imeta_data_search_complete_mds_retain, [](Caller& caller, Id id) {
        return MetadataSearch::retain(caller.search().searches(), id);
    }>;
    table.handle_mds_release = answer<imeta_data_search_complete_mds_release, [](Caller& caller, Id id) {
        MetadataSearch::release(caller.search().searches(), id);
    }>;
    table.handle_mds_add =
        answer<imeta_data_search_complete_mds_add,
               [](Caller& caller, std::int32_t target) { return caller.search().addSearch(target); }>;
    table.handle_mds_set_query =
        answer<imeta_data_search_complete_mds_set_query,
               [](Caller& caller, Id id, Id queryId) { return caller.search().setQuery(id, queryId); }>;
    table.handle_mds_get_query = answer<imeta_data_search_complete_mds_get_query, [](Caller& caller, Id id) {
        const auto* search = caller.search().searches().find(id);
        return Found{search == nullptr ? 0 : search->queryId, search != nullptr};
    }>;
    table.handle_mds_get_results =
        answer<imeta_data_search_complete_mds_get_results,
               [](Caller& caller, Id id) { return found(caller.search().resultsOf(id)); }>;
    table.handle_mds_get_target =
        answer<imeta_data_search_complete_mds_get_target, [](Caller& caller, Id id) {
            const auto* search = caller.search().searches().find(id);
            return std::make_tuple(search == nullptr ? 0 : search->target, search != nullptr);
        }>;
}

void fillSearchDetails(IMetaDataSearchIface& table) {
    table.handle_mds_set_order_by =
        answer<imeta_data_search_complete_mds_set_order_by, [](Caller& caller, Id id, GVariant* orderBy) {
            return caller.search().setOrderBy(id, readOrderBy(orderBy));
        }>;
    table.handle_mds_get_order_by =
        answer<imeta_data_search_complete_mds_get_order_by, [](Caller& caller, Id id) {
            const auto* search = caller.search().searches().find(id);
            return std::make_tuple(variantOf(search == nullptr ? OrderBy() : search->orderBy),
                                   search != nullptr);
        }>;
    table.handle_mds_expand_order_by = answer<imeta_data_search_complete_mds_expand_order_by,
                                              [](Caller& caller, Id id, std::uint32_t field, bool ascending) {
                                                  return caller.search().expandOrderBy(id, field, ascending);
                                              }>;
    table.handle_mds_add_constraints =
        answer<imeta_data_search_complete_mds_add_constraints, [](Caller& caller, Id id, Id queryId) {
            const bool known = caller.search().searches().find(id) != nullptr;
            return std::make_tuple(caller.search().addConstraints(id, queryId), known);
        }>;
    table.handle_mds_remove_constraints = answer<imeta_data_search_complete_mds_remove_constraints,
                                                 [](Caller& caller, Id id, std::uint32_t field) {
                                                     return caller.search().removeConstraints(id, field);
                                                 }>;
    table.handle_mds_clear_constraints =
        answer<imeta_data_search_complete_mds_clear_constraints,
               [](Caller& caller, Id id) { return caller.search().clearConstraints(id); }>;
    table.handle_mds_set_query_window =
        answer<imeta_data_search_complete_mds_set_query_window,
               [](Caller& caller, Id id, std::int32_t start, std::int32_t count) {
                   return setSearchBounds(caller, id, start, count);
               }>;
}

}  // namespace

Skeleton makeMetadataSearch(World& world, CallDispatcher& dispatcher) {
    const auto fill = [](gpointer table, gpointer) {
        auto& handlers = *static_cast<IMetaDataSearchIface*>(table);
        fillQueries(handlers);
        fillResults(handlers);
        fillSearches(handlers);
        fillSearchDetails(handlers);
    };
    return makeSkeleton(
        {"ReceiverMetadataSearch", TYPE_IMETA_DATA_SEARCH_SKELETON, TYPE_IMETA_DATA_SEARCH, fill}, &world,
        &dispatcher);
}

}  // namespace Receiver
