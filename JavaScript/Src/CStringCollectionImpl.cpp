#include "JavaScript/Src/CStringCollectionImpl.h"

namespace OipfJavaScript {

std::string CStringCollectionImpl::Item(uint32_t index) {
    if (index < m_strings.size())
        return m_strings[index];
    m_status = kUndefined;
    return {};
}

}  // namespace OipfJavaScript
