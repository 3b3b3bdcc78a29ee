#include "JavaScript/Src/CParentalRatingSchemeCollectionImpl.h"

#include "JavaScript/Src/CParentalRatingSchemeImpl.h"

namespace OipfJavaScript {

std::unique_ptr<jiParentalRatingScheme> CParentalRatingSchemeCollectionImpl::GetParentalRatingScheme(
    const std::string& name) {
    return First([&name](const CParentalRatingSchemeImpl& scheme) { return scheme.GetName() == name; });
}

}  // namespace OipfJavaScript
