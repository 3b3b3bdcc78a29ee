// A condition on programmes, kept by the receiver. It never changes; combining queries makes new ones.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "IPC/DBUS/Src/MetadataSearchWK_DBus.h"
#include "InjectedBundle/Src/PageBound.h"
#include "InjectedBundle/gen/js/CQueryBase.h"
#include "JavaScript/Src/RetainedId.h"

namespace OipfJavaScript {

class CQueryImpl final : public CQueryBase, private PageBound {
 public:
    CQueryImpl(JSContextRef context, RetainedId<IQueryCacheWK> query)
        : PageBound(context), m_query(std::move(query)) {}

    // Null when the receiver cannot make it or keep it, or this page is left.
    [[nodiscard]] std::unique_ptr<jiQuery> And(const jiQuery* query);
    [[nodiscard]] std::unique_ptr<jiQuery> Or(const jiQuery* query);
    [[nodiscard]] std::unique_ptr<jiQuery> Not();

    [[nodiscard]] uint32_t Id() const { return m_query.Get(); }

 private:
    void OnPageLeft() override { m_query.Release(); }
    [[nodiscard]] std::unique_ptr<jiQuery> Made(bool isMade, uint32_t id);

    RetainedId<IQueryCacheWK> m_query;
};

}  // namespace OipfJavaScript
