#include "IPC/DBUS/Src/MetadataSearchWK_DBus.h"

#include <source_location>
#include <variant>
#include <vector>

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DBusCall.h"
#include "gen/dbus/metadatasearch-generated.h"

namespace {

constexpr ServiceDescription kService{
    .interface = "org.vantrel.hbbtv.IMetaDataSearch",
    .client = "CMetaDataSearchWK",
    .failureClient = nullptr,  // five classes: the lines name the operation's signature
    .creation = "imeta_data_search_proxy_new_sync()",
    .creationFailure = "imeta_data_search_proxy_new_sync",
    .logsProxy = true,
};

// A variant array of tuples, one for each entry. An entry that cannot be built is logged and left out.
template <typename Entries, typename Build>
GVariantPtr ArrayOf(const char* tuple, const Entries& entries, Build build, const char* what,
                    std::source_location where = std::source_location::current()) {
    std::vector<GVariant*> children;
    children.reserve(entries.size());
    for (const auto& entry : entries) {
        if (GVariant* const child = build(entry))
            children.push_back(child);
        else
            HBBTV_LOG_ERROR("%s failed to serialise %s", where.function_name(), what);
    }
    return GVariantPtr(
        g_variant_ref_sink(g_variant_new_array(G_VARIANT_TYPE(tuple), children.data(), children.size())));
}

}  // namespace

MetadataSearchService InitMDSWKDBus() {
    static std::weak_ptr<DBusService<IMetaDataSearch>> s_proxy;
    MetadataSearchService service = s_proxy.lock();
    if (!service) {
        service = std::make_shared<DBusService<IMetaDataSearch>>(kService, imeta_data_search_proxy_new_sync,
                                                                 nullptr, nullptr, CallSite(__func__));
        s_proxy = service;
    }
    return service;
}

bool CMetadataSearchManagerWK::StartSearch(uint32_t id) {
    return m_service->Call(__func__, imeta_data_search_call_start_search_sync, id);
}

void CMetadataSearchManagerWK::AbortSearch(uint32_t id) {
    m_service->Call(__func__, imeta_data_search_call_abort_search_sync, id);
}

void CMetadataSearchManagerWK::CancelSearch(uint32_t id) {
    m_service->Call(__func__, imeta_data_search_call_cancel_search_sync, id);
}

void CMetadataSearchManagerWK::SendCancelSearch(uint32_t id) {
    m_service->Send(__func__, imeta_data_search_call_cancel_search, id);
}

bool CMetadataSearchCacheWK::Retain(uint32_t id) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_retain_sync, id, kResult);
}

void CMetadataSearchCacheWK::Release(uint32_t id) {
    m_service->Send(__func__, imeta_data_search_call_mds_release, id);
}

uint64_t CMetadataSearchCacheWK::Life() const {
    return m_service->Life();
}

uint32_t CMetadataSearchCacheWK::Add(int target) {
    return m_service->Call<uint32_t>(__func__, imeta_data_search_call_mds_add_sync, target, kResult);
}

bool CMetadataSearchCacheWK::SetQuery(uint32_t id, uint32_t queryId) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_set_query_sync, id, queryId, kResult);
}

bool CMetadataSearchCacheWK::GetQuery(uint32_t id, uint32_t& queryId) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_get_query_sync, id, Out(queryId),
                                 kResult);
}

bool CMetadataSearchCacheWK::GetResults(uint32_t id, uint32_t& resultsId) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_get_results_sync, id, Out(resultsId),
                                 kResult);
}

bool CMetadataSearchCacheWK::GetTarget(uint32_t id, int& target) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_get_target_sync, id, Out(target),
                                 kResult);
}

bool CMetadataSearchCacheWK::SetOrderBy(uint32_t id, const TOrderBy& orderBy) {
    const GVariantPtr array = ArrayOf(
        "(ub)", orderBy,
        [](const auto& entry) { return g_variant_new("(ub)", guint{entry.first}, gboolean{entry.second}); },
        "orderBy");
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_set_order_by_sync, id, array, kResult);
}

bool CMetadataSearchCacheWK::GetOrderBy(uint32_t id, TOrderBy& orderBy) const {
    const auto append = [&orderBy](GVariant* array) {
        GVariantIter entries;
        g_variant_iter_init(&entries, array);
        guint type = 0;
        gboolean ascending = FALSE;
        while (g_variant_iter_next(&entries, "(ub)", &type, &ascending))
            orderBy.emplace_back(static_cast<EQueryType>(type), ascending != FALSE);
    };
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_get_order_by_sync, id, OutWith(append),
                                 kResult);
}

bool CMetadataSearchCacheWK::ExpandOrderBy(uint32_t id, std::pair<EQueryType, bool> entry) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_expand_order_by_sync, id, entry.first,
                                 entry.second, kResult);
}

bool CMetadataSearchCacheWK::AddConstraints(uint32_t id, uint32_t constraintId, bool& result) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_add_constraints_sync, id, constraintId,
                                 Out(result), kResult);
}

bool CMetadataSearchCacheWK::RemoveConstraints(uint32_t id, EQueryType type) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_remove_constraints_sync, id, type,
                                 kResult);
}

bool CMetadataSearchCacheWK::ClearConstraints(uint32_t id) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_clear_constraints_sync, id, kResult);
}

bool CMetadataSearchCacheWK::SetQueryWindow(uint32_t id, int start, int count, bool& result) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_mds_set_query_window_sync, id, start, count,
                                 Out(result), kResult);
}

bool CQueryCacheWK::Retain(uint32_t id) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_qc_retain_sync, id, kResult);
}

void CQueryCacheWK::Release(uint32_t id) {
    m_service->Send(__func__, imeta_data_search_call_qc_release, id);
}

uint64_t CQueryCacheWK::Life() const {
    return m_service->Life();
}

uint32_t CQueryCacheWK::Add(EQueryType type) {
    return m_service->Call<uint32_t>(__func__, imeta_data_search_call_qc_add_op_sync, type, kResult);
}

uint32_t CQueryCacheWK::Add(EQueryType type, EQueryMode mode, uint32_t value) {
    return m_service->Call<uint32_t>(__func__, imeta_data_search_call_qc_add_data_mode_sync, type, mode,
                                     value, kResult);
}

uint32_t CQueryCacheWK::Add(EQueryType type, EQueryMode mode, const std::string& value) {
    return m_service->Call<uint32_t>(__func__, imeta_data_search_call_qc_add_data_mode_str_sync, type, mode,
                                     value, kResult);
}

uint32_t CQueryCacheWK::Add(const TConstraints& constraints) {
    // The second field of an entry is always 0.
    const auto build = [](const auto& entry) {
        const auto& [type, constraint] = entry;
        const auto* const text = std::get_if<std::string>(&constraint);
        const guint number = text != nullptr ? 0 : std::get<uint32_t>(constraint);
        return g_variant_new("(uusu)", guint{type}, 0U,
                             WireString(text != nullptr ? text->c_str() : "").c_str(), number);
    };
    const GVariantPtr array = ArrayOf("(uusu)", constraints, build, "constraint");
    return m_service->Call<uint32_t>(__func__, imeta_data_search_call_qc_add_constraints_sync, array,
                                     kResult);
}

bool CQueryCacheWK::And(uint32_t a, uint32_t b, uint32_t& result) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_qc_and_sync, a, b, Out(result), kResult);
}

bool CQueryCacheWK::Or(uint32_t a, uint32_t b, uint32_t& result) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_qc_or_sync, a, b, Out(result), kResult);
}

bool CQueryCacheWK::Not(uint32_t a, uint32_t& result) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_qc_not_sync, a, Out(result), kResult);
}

bool CSearchResultsCacheWK::Retain(uint32_t id) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_sr_retain_sync, id, kResult);
}

void CSearchResultsCacheWK::Release(uint32_t id) {
    m_service->Send(__func__, imeta_data_search_call_sr_release, id);
}

uint64_t CSearchResultsCacheWK::Life() const {
    return m_service->Life();
}

uint32_t CSearchResultsCacheWK::Add(uint32_t mdsId) {
    return m_service->Call<uint32_t>(__func__, imeta_data_search_call_sr_add_sync, mdsId, kResult);
}

bool CSearchResultsCacheWK::Parent(uint32_t id, uint32_t& mdsId) const {
    return m_service->Call<bool>(__func__, imeta_data_search_call_sr_parent_sync, id, Out(mdsId), kResult);
}

bool CSearchResultsCacheWK::QueryResults(uint32_t id, bool& complete, uint32_t& offset, uint32_t& count,
                                         uint32_t& size) const {
    return m_service->Call<bool>(__func__, imeta_data_search_call_sr_query_results_sync, id, Out(complete),
                                 Out(offset), Out(count), Out(size), kResult);
}

bool CSearchResultsCacheWK::ItemAtIndex(uint32_t id, uint32_t index, bool& result,
                                        uint32_t& programmeId) const {
    return m_service->Call<bool>(__func__, imeta_data_search_call_sr_item_at_index_sync, id, index,
                                 Out(result), Out(programmeId), kResult);
}

bool CSearchResultsCacheWK::SetQueryWindow(uint32_t id, int start, int count, bool& result) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_sr_set_query_window_sync, id, start, count,
                                 Out(result), kResult);
}

bool CProgrammeCacheWK::Retain(uint32_t id) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_pc_retain_sync, id, kResult);
}

void CProgrammeCacheWK::Release(uint32_t id) {
    m_service->Send(__func__, imeta_data_search_call_pc_release, id);
}

bool CProgrammeCacheWK::Get(uint32_t id, uint32_t* channelId, uint32_t* eventId, std::string* name,
                            std::string* desc, std::string* crid, uint32_t* start, uint32_t* duration,
                            uint32_t* rating) {
    return m_service->Call<bool>(__func__, imeta_data_search_call_pc_get_sync, id, Out(channelId),
                                 Out(eventId), Out(name), Out(desc), Out(crid), Out(start), Out(duration),
                                 Out(rating), kResult);
}
