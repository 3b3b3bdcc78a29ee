// What a search found, as a page reads it.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "InjectedBundle/gen/js/CSearchResultsBase.h"
#include "JavaScript/Src/SearchSession.h"

namespace OipfJavaScript {

class jiProgramme;

class CSearchResultsImpl final : public CSearchResultsBase {
 public:
    explicit CSearchResultsImpl(std::shared_ptr<SearchSession> session) : m_session(std::move(session)) {}

    [[nodiscard]] uint32_t GetLength() const { return m_session->Length(); }
    [[nodiscard]] uint32_t GetOffset() const { return m_session->Offset(); }
    [[nodiscard]] uint32_t GetTotalSize() const { return m_session->TotalSize(); }

    // False: results are never there at once.
    bool GetResults(uint32_t offset, uint32_t count);
    void Abort() { m_session->Abort(); }
    // Undefined past the end; null when the receiver has forgotten the programme.
    [[nodiscard]] std::unique_ptr<jiProgramme> Item(uint32_t index);

 private:
    std::shared_ptr<SearchSession> m_session;
};

}  // namespace OipfJavaScript
