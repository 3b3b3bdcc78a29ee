// The five clients of org.vantrel.hbbtv.IMetaDataSearch. They share one proxy, which the first of them makes.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "API/Src/IMetadataSearchCacheCommon.h"
#include "API/Src/IMetadataSearchManagerCommon.h"
#include "API/Src/IProgrammeCacheCommon.h"
#include "API/Src/IQueryCacheCommon.h"
#include "API/Src/ISearchResultsCacheCommon.h"

template <typename Proxy>
class DBusService;
struct _IMetaDataSearch;

using MetadataSearchService = std::shared_ptr<DBusService<_IMetaDataSearch>>;

// The service that the clients share: made anew when no client has it.
[[nodiscard]] MetadataSearchService InitMDSWKDBus();

class CMetadataSearchManagerWK final : public IMetadataSearchManagerCommon {
 public:
    [[nodiscard]] bool StartSearch(uint32_t id) override;
    void AbortSearch(uint32_t id) override;
    void CancelSearch(uint32_t id) override;
    void SendCancelSearch(uint32_t id) override;

 private:
    MetadataSearchService m_service = InitMDSWKDBus();
};

class CMetadataSearchCacheWK final : public IMetadataSearchCacheCommon {
 public:
    bool Retain(uint32_t id) override;
    void Release(uint32_t id) override;
    [[nodiscard]] uint64_t Life() const override;
    [[nodiscard]] uint32_t Add(int target) override;
    bool SetQuery(uint32_t id, uint32_t queryId) override;
    bool GetQuery(uint32_t id, uint32_t& queryId) override;
    bool GetResults(uint32_t id, uint32_t& resultsId) override;
    bool GetTarget(uint32_t id, int& target) override;
    bool SetOrderBy(uint32_t id, const TOrderBy& orderBy) override;
    bool GetOrderBy(uint32_t id, TOrderBy& orderBy) const override;
    bool ExpandOrderBy(uint32_t id, std::pair<EQueryType, bool> entry) override;
    bool AddConstraints(uint32_t id, uint32_t constraintId, bool& result) override;
    bool RemoveConstraints(uint32_t id, EQueryType type) override;
    bool ClearConstraints(uint32_t id) override;
    bool SetQueryWindow(uint32_t id, int start, int count, bool& result) override;

 private:
    MetadataSearchService m_service = InitMDSWKDBus();
};

class CQueryCacheWK final : public IQueryCacheCommon {
 public:
    bool Retain(uint32_t id) override;
    void Release(uint32_t id) override;
    [[nodiscard]] uint64_t Life() const override;
    [[nodiscard]] uint32_t Add(EQueryType type) override;
    [[nodiscard]] uint32_t Add(EQueryType type, EQueryMode mode, uint32_t value) override;
    [[nodiscard]] uint32_t Add(EQueryType type, EQueryMode mode, const std::string& value) override;
    [[nodiscard]] uint32_t Add(const TConstraints& constraints) override;
    bool And(uint32_t a, uint32_t b, uint32_t& result) override;
    bool Or(uint32_t a, uint32_t b, uint32_t& result) override;
    bool Not(uint32_t a, uint32_t& result) override;

 private:
    MetadataSearchService m_service = InitMDSWKDBus();
};

class CSearchResultsCacheWK final : public ISearchResultsCacheCommon {
 public:
    bool Retain(uint32_t id) override;
    void Release(uint32_t id) override;
    [[nodiscard]] uint64_t Life() const override;
    [[nodiscard]] uint32_t Add(uint32_t mdsId) override;
    bool Parent(uint32_t id, uint32_t& mdsId) const override;
    bool QueryResults(uint32_t id, bool& complete, uint32_t& offset, uint32_t& count,
                      uint32_t& size) const override;
    bool ItemAtIndex(uint32_t id, uint32_t index, bool& result, uint32_t& programmeId) const override;
    bool SetQueryWindow(uint32_t id, int start, int count, bool& result) override;

 private:
    MetadataSearchService m_service = InitMDSWKDBus();
};

class CProgrammeCacheWK final : public IProgrammeCacheCommon {
 public:
    bool Retain(uint32_t id) override;
    void Release(uint32_t id) override;
    bool Get(uint32_t id, uint32_t* channelId, uint32_t* eventId, std::string* name, std::string* desc,
             std::string* crid, uint32_t* start, uint32_t* duration, uint32_t* rating) override;

 private:
    MetadataSearchService m_service = InitMDSWKDBus();
};

// The one client of each kind of the process, made on first use. They are never destroyed: objects that die
// while the process ends still release what they refer to.
template <class Client, class Interface>
class TheOne {
 public:
    TheOne() = delete;
    [[nodiscard]] static Interface* GetInstance() {
        static auto* const instance = new Client;
        return instance;
    }
};

using IMetadataSearchManagerWK = TheOne<CMetadataSearchManagerWK, IMetadataSearchManagerCommon>;
using IMetadataSearchCacheWK = TheOne<CMetadataSearchCacheWK, IMetadataSearchCacheCommon>;
using IQueryCacheWK = TheOne<CQueryCacheWK, IQueryCacheCommon>;
using ISearchResultsCacheWK = TheOne<CSearchResultsCacheWK, ISearchResultsCacheCommon>;
using IProgrammeCacheWK = TheOne<CProgrammeCacheWK, IProgrammeCacheCommon>;
