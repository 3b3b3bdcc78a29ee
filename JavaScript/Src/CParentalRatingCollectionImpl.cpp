#include "JavaScript/Src/CParentalRatingCollectionImpl.h"

#include <memory>

#include "JavaScript/Src/CParentalRatingImpl.h"

namespace OipfJavaScript {

void CParentalRatingCollectionImpl::AddParentalRating(const std::string& scheme, const std::string& name,
                                                      int32_t value, int32_t labels,
                                                      const std::optional<std::string>& region) {
    m_items.emplace_back(
        std::make_unique<CParentalRatingImpl>(name, scheme, value, labels, region.value_or("")));
}

void CParentalRatingCollectionImpl::AddAge(int32_t age) {
    m_items.emplace_back(std::make_unique<CParentalRatingImpl>(age));
}

}  // namespace OipfJavaScript
