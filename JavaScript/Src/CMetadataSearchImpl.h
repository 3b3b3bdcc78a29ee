// A search as a page sets it up. Its state lives in the session that it shares with its results.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "InjectedBundle/gen/js/CMetadataSearchBase.h"
#include "JavaScript/Src/SearchSession.h"

namespace OipfJavaScript {

class jiChannel;
class jiChannelList;
class jiQuery;

class CMetadataSearchImpl final : public CMetadataSearchBase {
 public:
    CMetadataSearchImpl(int32_t target, std::shared_ptr<SearchSession> session)
        : m_target(target), m_session(std::move(session)) {}

    [[nodiscard]] int32_t GetSearchTarget() const { return m_target; }
    // The results and the query belong to the search's JavaScript object, which gives the same ones each
    // time.
    [[nodiscard]] JSValueRef getCustomResult(JSContextRef context, JSObjectRef search) const;
    [[nodiscard]] JSValueRef getCustomQuery(JSContextRef context, JSObjectRef search) const;

    [[nodiscard]] JSValueRef customSetQuery(const CallArguments& call);
    void AddChannelConstraint(jiChannelList* channels);
    // Null takes the constraints away.
    void AddChannelConstraint(std::optional<jiChannel*> channel);
    // Null for unknown fields and comparisons.
    [[nodiscard]] std::unique_ptr<jiQuery> CreateQuery(JSContextRef context, const std::string& field,
                                                       int32_t comparison, const std::string& value);
    [[nodiscard]] std::unique_ptr<jiQuery> CreateQuery(JSContextRef context, const std::string& field,
                                                       int32_t comparison, uint32_t value);
    void FindProgrammesFromStream(JSContextRef context, jiChannel* channel, std::optional<uint32_t> startTime,
                                  std::optional<uint32_t> count);

 private:
    template <typename Operand>
    [[nodiscard]] std::unique_ptr<jiQuery> Create(JSContextRef context, const std::string& field,
                                                  int32_t comparison, const Operand& value);

    int32_t m_target;
    std::shared_ptr<SearchSession> m_session;
};

}  // namespace OipfJavaScript
